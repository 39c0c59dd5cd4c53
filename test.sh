#!/usr/bin/env bash
# Builds everything and runs all tests: those that need no display side by side, then those on a real desktop,
# one after the other. Fails when a test fails or when there is none to run.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

"$root/scripts/setup.sh"
"$root/scripts/build.sh" dev

summary=()
code=0
run_tests() {
    local name=$1 output result=0
    shift
    output=$(mktemp)
    "$@" --test-dir "$root/build/dev" --output-on-failure --no-tests=error 2>&1 | tee "$output" || result=$?
    ((result == 0)) || code=1
    summary+=("$name: $(grep -E 'tests passed|No tests were found' "$output" || echo "ended with code $result")")
    rm -f "$output"
}
run_tests "without a display" ctest --parallel "$(nproc)" --label-regex '^(plain|widget|office)$'
run_tests "on a desktop" "$root/scripts/with-desktop.sh" ctest --label-regex '^desktop$'

echo
echo "Tests"
printf '  %s\n' "${summary[@]}"
exit "$code"
