#!/usr/bin/env bash
# Installs those of the named Debian packages that are missing; without any missing it changes
# nothing and asks nothing.
#
#   install-packages.sh PACKAGE...
set -euo pipefail

is_installed() {
    # A package that was removed but not purged is known to dpkg too.
    dpkg -s "$1" 2>/dev/null | grep -q '^Status: .* installed$'
}

as_root() {
    if ((EUID == 0)); then
        "$@"
    else
        sudo "$@"
    fi
}

if ! command -v dpkg >/dev/null || ! command -v apt-get >/dev/null; then
    echo "install-packages.sh: no Debian here; needed, under the names that they have there: $*" >&2
    exit 0
fi

missing=()
for package in "$@"; do
    is_installed "$package" || missing+=("$package")
done
if ((${#missing[@]} == 0)); then
    exit 0
fi

echo "Installing ${missing[*]}"
as_root apt-get update -q
as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
    "${missing[@]}"
