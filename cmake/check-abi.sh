#!/usr/bin/env bash
# Compares the binary interface of the library, the exported symbols and the layout of exported
# classes, with the one that is kept in abi/. Fails if they differ.
#
#   check-abi.sh            compares
#   check-abi.sh --update   keeps the present one
#
# A difference that only adds does no harm to programs that are there: keep it. Any other one needs
# a new SOVERSION, or a way round it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

kept=abi/libQUARVChart5.abi
build=build/abi
library=$build/libQUARVChart5.so

cmake/install-packages.sh build-essential cmake ninja-build qtbase5-dev abigail-tools
# As it is delivered, but with debug information, which tells the layout.
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DQUARVCHART_BUILD_TESTS=OFF \
    -DQUARVCHART_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$build" --target QUARVChart5

# Places of the sources are none of its business.
present=$build/libQUARVChart5.abi
abidw --no-show-locs --drop-private-types --exported-interfaces-only --headers-dir . \
    --no-corpus-path --no-comp-dir-path --out-file "$present" "$library"
sed -i "s#='$PWD/#='#" "$present"

if [[ ${1:-} == --update ]]; then
    mkdir -p "$(dirname "$kept")"
    cp "$present" "$kept"
    exit 0
fi
# The order of the parts and the numbers of the types depend on where the sources lie.
parts() {
    sed -E 's/type-id-[0-9]+/type/g' "$1" | sort
}
# By the text: abidiff passes over a class that is reached by way of a container only.
if ! diff <(parts "$kept") <(parts "$present") >"$build/changes"; then
    abidiff --no-show-locs "$kept" "$library" || true
    head -40 "$build/changes"
    echo "The binary interface is not the one in $kept." >&2
    echo "If that is intended: cmake/check-abi.sh --update" >&2
    exit 1
fi
