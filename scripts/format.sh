#!/usr/bin/env bash
# Formats all C++ files after .clang-format. With --check it changes nothing and fails where something differs.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

how=(-i)
[[ ${1:-} != --check ]] || how=(--dry-run --Werror)
git ls-files -z --cached --others --exclude-standard -- '*.h' '*.cpp' |
    xargs -0 --no-run-if-empty clang-format --style=file "${how[@]}"
