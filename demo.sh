#!/usr/bin/env bash
# Installs what is missing, builds the library and its examples, and shows what this machine is
# doing in the live monitor. Without a display it watches for 20 seconds and writes a picture. Can be
# called again cheaply.
#
#   ./demo.sh                 the live monitor
#   ./demo.sh FILE.csv        the viewer of CSV files
set -euo pipefail

file=${1:+$(realpath -- "$1")}
cd "$(dirname "${BASH_SOURCE[0]}")"
build=build/demo

cmake/install-packages.sh build-essential g++ cmake ninja-build qtbase5-dev libqt5svg5-dev \
    qttools5-dev qttools5-dev-tools qttranslations5-l10n fonts-dejavu-core

# A warning that only another compiler knows must not spoil a demonstration.
cmake --preset release -B "$build" -DQUARVCHART_BUILD_TESTS=OFF -DQUARVCHART_BUILD_BENCHMARKS=OFF \
    -DQUARVCHART_WARNINGS_AS_ERRORS=OFF
cmake --build "$build" --target monitor csvviewer

has_display() {
    [[ -n ${DISPLAY:-} || -n ${WAYLAND_DISPLAY:-} ]]
}

if [[ -n $file ]]; then
    command=("$build/examples/csvviewer/quarvchart5-csvviewer" "$file")
    picture=$build/csvviewer.png
    for_picture=()
else
    command=("$build/examples/monitor/quarvchart5-monitor" --separate)
    picture=$build/monitor.png
    # High enough for ten panes.
    for_picture=(--seconds 20 --window 20 --size 1200x1400)
fi

if has_display; then
    exec "${command[@]}"
fi
echo "There is no display; a picture comes in its place."
"${command[@]}" "${for_picture[@]}" --screenshot "$picture"
echo "Here it is: $PWD/$picture"
