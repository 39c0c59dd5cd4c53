#!/usr/bin/env bash
# Lets each single call fail with which Shotly changes files, one round per call, and checks each time that nothing
# is lost or half done, that the failure is told, and that trying again succeeds. Prints one line of figures for each
# work; ends with an error when a round fails, the folder of that work stays.
# Usage: failing_calls.sh [WORK [ROUNDS]]   (default: every work, every call)
#        WORK is a part of the names of works, "" for all: capture, generate, output, picture, backup
#        ROUNDS is how many of a work's calls are tried, spread over all of them; "N-M" tries the N-th to the M-th
# SHOTLY_BUILD is the build folder of the program and the tests (default build/release), SHOTLY_MODES says how calls
# fail (default "once full short"): only one; all that need room from one on; a write in its middle.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export DBUS_SESSION_BUS_ADDRESS=disabled: SHOTLY_SCREEN=${SHOTLY_SCREEN:-800x600x24}
exec "$root/scripts/with-desktop.sh" /usr/bin/python3 "$root/scripts/failing_calls.py" \
    "${SHOTLY_BUILD:-$root/build/release}" "$@"
