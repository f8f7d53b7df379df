#!/usr/bin/env bash
# Builds the Debian packages into build/packages and has lintian look at them. Installs what is
# missing. Can be called again cheaply.
#
# CPACK_PACKAGE_CONTACT, "Name <address>", says who answers for them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=build/packages

cmake/install-packages.sh build-essential cmake ninja-build qtbase5-dev libqt5svg5-dev qttools5-dev \
    qttools5-dev-tools dpkg-dev file lintian

# The distribution's flags; debug information would be stripped again. CMake has no flags for the
# preprocessor alone.
export DEB_BUILD_MAINT_OPTIONS=hardening=+all DEB_CXXFLAGS_STRIP=-g
CXXFLAGS="$(dpkg-buildflags --get CXXFLAGS) $(dpkg-buildflags --get CPPFLAGS)"
LDFLAGS=$(dpkg-buildflags --get LDFLAGS)
export CXXFLAGS LDFLAGS

# Under /usr the linker finds the library by itself.
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
    -DCMAKE_SKIP_INSTALL_RPATH=ON -DQUARVCHART_BUILD_TESTS=OFF \
    ${CPACK_PACKAGE_CONTACT:+"-DCPACK_PACKAGE_CONTACT=$CPACK_PACKAGE_CONTACT"}
cmake --build "$build"
rm -f "$build"/*.deb
(cd "$build" && cpack -G DEB)

for package in "$build"/*.deb; do
    echo "$package"
    dpkg-deb -c "$package"
done
lintian --allow-root --fail-on error "$build"/*.deb
