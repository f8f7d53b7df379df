#!/usr/bin/env bash
# Builds and runs the consumer with a plain Makefile.
#
#   run.sh PREFIX WORK
set -euo pipefail
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")
prefix=$1
work=$2

rm -rf "$work"
mkdir -p "$work"
export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name quarvchart5.pc)")
make -C "$work" -f "$here/Makefile" SOURCE="$here/../consumer.cpp"
LD_LIBRARY_PATH=$(pkg-config --variable=libdir quarvchart5) "$work/consumer"
