#!/usr/bin/env bash
# Kills Shotly again and again at random moments of a capture run and of its stop, and checks each time that every
# journalled snapshot comes back exactly once. Ends with one line of figures; the first violation ends it with an
# error, and the folder of that round stays.
# Usage: kill_rounds.sh [ROUNDS]   (default 100)
#        kill_rounds.sh calls      kills before each single system call of the stop that changes a file
# SHOTLY_BUILD is the build folder of the program (default build/release), SHOTLY_SEED makes a run of the rounds
# repeatable as far as its choices go.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# No session bus: nothing that is checked here wants one.
DBUS_SESSION_BUS_ADDRESS=disabled: SHOTLY_SCREEN=${SHOTLY_SCREEN:-800x600x24} exec \
    "$root/scripts/with-desktop.sh" /usr/bin/python3 "$root/scripts/kill_rounds.py" \
    "${SHOTLY_BUILD:-$root/build/release}" "${1:-100}" "${SHOTLY_SEED:-}"
