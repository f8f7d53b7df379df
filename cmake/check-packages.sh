#!/usr/bin/env bash
# Checks the packages that build-packages.sh has left in build/packages.
#
#   check-packages.sh                unpacked into a folder: nothing is missing, a program of
#                                    somebody else builds and runs, the programs draw
#   check-packages.sh --clean-root   further in a fresh Debian in a folder (as root, with a mirror in
#                                    reach): installed by apt, run, removed without a trace
#   check-packages.sh --system       the same on this very machine: for machines that are thrown away
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
packages=$PWD/build/packages
work=$packages/check
root=$work/root
names=(libquarvchart5-1 libquarvchart5-dev quarvchart5-designer quarvchart5-examples)
debs=("$packages"/*.deb)

fail() {
    echo "check-packages.sh: $*" >&2
    exit 1
}

unpack() {
    rm -rf "$work"
    mkdir -p "$root" "$work/home"
    for deb in "${debs[@]}"; do
        dpkg-deb -x "$deb" "$root"
    done
    libdir=$(dirname "$(find "$root" -name 'libQUARVChart5.so.1')")
    binaries=("$root"/usr/bin/* "$libdir"/libQUARVChart5.so.1 "$libdir"/qt5/plugins/designer/*.so)
}

finds_libraries_by_the_linker_alone() {
    local binary
    for binary in "${binaries[@]}"; do
        if readelf -d "$binary" | grep -E 'R(UN)?PATH'; then
            fail "$binary has a search path of its own"
        fi
        if LD_LIBRARY_PATH=$libdir ldd "$binary" | grep 'not found'; then
            fail "$binary lacks libraries"
        fi
    done
}

serves_program_of_somebody_else() {
    cmake -S tests/package/find_package -B "$work/consumer" -G Ninja \
        -DCMAKE_PREFIX_PATH="$root/usr"
    cmake --build "$work/consumer"
    env HOME="$work/home" QT_QPA_PLATFORM=offscreen "$work/consumer/consumer"
}

# draws COMMAND...: the command writes the picture that is named last.
draws() {
    "$@"
    [[ -s ${!#} ]] || fail "no picture ${!#}"
}

is_removed_without_trace() {
    local file
    while read -r file; do
        [[ ! -e $1$file ]] || fail "$file has stayed"
    done <"$work/files"
}

# Files alone: folders may belong to other packages too.
list_files() {
    find "$root" -not -type d -printf '/%P\n' >"$work/files"
}

check_in_clean_root() {
    local clean=$work/clean
    cmake/install-packages.sh mmdebstrap
    # shellcheck source=/dev/null
    mmdebstrap --variant=apt --customize-hook='mkdir -p "$1/packages"' \
        --customize-hook="copy-in ${debs[*]} /packages" \
        --customize-hook='chroot "$1" sh -c "apt-get install -y --no-install-recommends /packages/*.deb"' \
        "$(. /etc/os-release && echo "$VERSION_CODENAME")" "$clean"
    cp examples/csvviewer/data/machine.csv "$clean/packages"
    draws_in_root "$clean"
    chroot "$clean" apt-get remove -y "${names[@]}"
    is_removed_without_trace "$clean"
    rm -rf "$clean"
}

draws_in_root() {
    chroot "$1" env HOME=/tmp quarvchart5-csvviewer --screenshot /tmp/chart.png /packages/machine.csv
    [[ -s $1/tmp/chart.png ]] || fail "no picture in the clean root"
}

check_on_this_machine() {
    apt-get install -y --no-install-recommends "${debs[@]}"
    draws env HOME="$work/home" quarvchart5-csvviewer examples/csvviewer/data/machine.csv \
        --screenshot "$work/system.png"
    apt-get remove -y "${names[@]}"
    is_removed_without_trace ""
}

unpack
list_files
finds_libraries_by_the_linker_alone
serves_program_of_somebody_else
draws env HOME="$work/home" LD_LIBRARY_PATH="$libdir" "$root/usr/bin/quarvchart5-csvviewer" \
    examples/csvviewer/data/machine.csv --screenshot "$work/unpacked.png"
cmake/install-packages.sh desktop-file-utils
desktop-file-validate "$root"/usr/share/applications/*.desktop

case ${1:-} in
    --clean-root) check_in_clean_root ;;
    --system) check_on_this_machine ;;
esac
echo "The packages are good"
