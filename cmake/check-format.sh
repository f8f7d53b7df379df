#!/usr/bin/env bash
# Fails if a source is not formatted as .clang-format says. With --fix, formats it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

mode=(--dry-run -Werror)
if [[ ${1:-} == --fix ]]; then
    mode=(-i)
fi
git ls-files -z '*.h' '*.cpp' | xargs -0 clang-format "${mode[@]}"
