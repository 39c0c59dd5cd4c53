#!/usr/bin/env bash
# Runs clang-tidy (.clang-tidy) over the sources of a finished build; any finding is an error.
# Usage: lint.sh [BUILD-FOLDER [FILE-PATTERN]]   (default: build/dev and all sources)
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$(realpath "${1:-$root/build/dev}")
pattern=${2:-}
log=$(mktemp)
trap 'rm -f "$log"' EXIT

code=0
run-clang-tidy -p "$build" -j "$(nproc)" -quiet -header-filter="^$root/(src|tests|bench)/" \
    "^$root/(src|bench|tests)/.*$pattern" >"$log" 2>&1 || code=$?
# Without colours, command lines and the counts of what was suppressed in system headers.
sed -e 's/\x1b\[[0-9;]*m//g' "$log" |
    grep -vE '^[^ ]*clang-tidy[-0-9]* |^[0-9]+ warnings? (generated|treated)|^Suppressed|^Use -header|^$' || true
((code == 0)) && echo "clang-tidy: no findings"
exit "$code"
