#!/usr/bin/env bash
# Provokes faults around the running program and checks each time that it stays alive, says what is due, and loses
# nothing. Prints one line per fault; ends with an error when one fails, the folder of that one stays.
# Usage: fault_rounds.sh [NAME]   (default all; NAME is a part of the names of faults)
# SHOTLY_BUILD is the build folder of the program (default build/release). File systems that fill up are mounted
# in a name space of this script's own: the kernel must allow those.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export DBUS_SESSION_BUS_ADDRESS=disabled: SHOTLY_SCREEN=${SHOTLY_SCREEN:-800x600x24}

code=0
faults() { # group, name
    unshare --map-root-user --mount "$root/scripts/with-desktop.sh" /usr/bin/python3 \
        "$root/scripts/fault_rounds.py" "${SHOTLY_BUILD:-$root/build/release}" "$@" || code=1
}
faults desktop "${1:-}"
SHOTLY_SCREEN=1280x960x24 faults "large display" "${1:-}"
SHOTLY_MANAGER=none faults "no window manager" "${1:-}"
for extension in MIT-SHM XInputExtension RECORD RANDR; do
    SHOTLY_SERVER_OPTIONS="-extension $extension" faults "no $extension" "${1:-}"
done
exit "$code"
