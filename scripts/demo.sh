#!/usr/bin/env bash
# Records the demonstration: Shotly on a private display, driven with real mouse and key events, makes a guide
# of a few clicks in two other programs. Everything it makes lies in DIR afterwards.
# Usage: demo.sh [DIR]   (default: demo in the project's folder)
# SHOTLY_BUILD is the build folder of the program (default build/release).
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

directory=$(realpath -m "${1:-$root/demo}")
if [[ -e $directory && ! -e $directory/.shotly-demo && -n $(ls -A "$directory" 2>/dev/null) ]]; then
    echo "demo: $directory holds other files; please name an empty folder" >&2
    exit 2
fi
rm -rf "$directory"
mkdir -p "$directory"
touch "$directory/.shotly-demo"

SHOTLY_SCREEN=${SHOTLY_SCREEN:-1280x900x24} exec dbus-run-session -- \
    "$root/scripts/with-desktop.sh" /usr/bin/python3 "$root/scripts/demo_session.py" \
    "${SHOTLY_BUILD:-$root/build/release}" "$directory"
