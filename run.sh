#!/usr/bin/env bash
# Builds Shotly and starts it; the arguments are handed on to it.
# Usage: run.sh [ARGUMENT...]      on this desktop
#        run.sh --demo [FOLDER]    a demonstration on a display of its own, its pictures in FOLDER
# Without a display the demonstration is what it does.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

"$root/scripts/setup.sh"
"$root/scripts/build.sh" release shotly
if [[ ${1:-} == --demo ]]; then
    shift
    exec "$root/scripts/demo.sh" "$@"
fi
if [[ -z ${DISPLAY:-} ]]; then
    echo "run: there is no X display here, so this is the demonstration (run.sh --demo)"
    exec "$root/scripts/demo.sh"
fi
exec "$root/build/release/src/app/shotly" "$@"
