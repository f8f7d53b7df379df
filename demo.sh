#!/usr/bin/env bash
# Installs what is missing, builds the library and the viewer of CSV files, and shows a recording in
# it. Without a display it writes a picture instead. Can be called again cheaply.
#
#   ./demo.sh [FILE.csv]        default: a recording of a machine
set -euo pipefail

file=$(realpath -- "${1:-$(dirname "${BASH_SOURCE[0]}")/examples/csvviewer/data/machine.csv}")
cd "$(dirname "${BASH_SOURCE[0]}")"
build=build/demo

cmake/install-packages.sh build-essential g++ cmake ninja-build qtbase5-dev libqt5svg5 \
    fonts-dejavu-core

# A warning that only another compiler knows must not spoil a demonstration.
cmake --preset release -B "$build" -DQUARVCHART_BUILD_TESTS=OFF -DQUARVCHART_BUILD_BENCHMARKS=OFF \
    -DQUARVCHART_WARNINGS_AS_ERRORS=OFF
cmake --build "$build" --target csvviewer

viewer=$build/examples/csvviewer/csvviewer
if [[ -n ${DISPLAY:-} || -n ${WAYLAND_DISPLAY:-} ]]; then
    exec "$viewer" "$file"
fi
picture=$build/csvviewer.png
"$viewer" "$file" --screenshot "$picture"
echo "There is no display, so here is a picture: $PWD/$picture"
