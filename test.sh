#!/usr/bin/env bash
# Installs what is missing, builds the library with everything that belongs to it, and runs all
# tests. Can be called again cheaply.
#
#   ./test.sh [PRESET [OPTION...]]    default: dev (others: release, asan, tsan); the options are
#                                     those of ctest
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

preset=${1:-dev}
options=("${@:2}")

cmake/install-packages.sh build-essential cmake ninja-build qtbase5-dev libqt5svg5-dev \
    qttools5-dev qttools5-dev-tools qttranslations5-l10n pkg-config fonts-dejavu-core xvfb \
    xdotool
if [[ $preset == release ]]; then
    cmake/install-packages.sh libbenchmark-dev
fi

cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" "${options[@]}"
