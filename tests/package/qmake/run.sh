#!/usr/bin/env bash
# Builds and runs the consumer with qmake.
#
#   run.sh PREFIX WORK
set -euo pipefail
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")
prefix=$1
work=$2

rm -rf "$work"
mkdir -p "$work"
cd "$work"
qmake -qt=5 "PRI=$(find "$prefix" -name quarvchart5.pri)" "$here/consumer.pro"
make
LD_LIBRARY_PATH=$(dirname "$(find "$prefix" -name 'libQUARVChart5.so.1')") ./consumer
