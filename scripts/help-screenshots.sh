#!/usr/bin/env bash
# Makes the pictures of the help anew, from the running program on a private display: help/pictures/*.png.
# Run it when a screen has changed, look at the pictures and commit them.
# Usage: help-screenshots.sh
# SHOTLY_BUILD is the build folder of the program (default build/release).
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

work=$(mktemp -d --tmpdir shotly-XXXX)
trap 'rm -rf "$work"' EXIT
mkdir -p "$root/help/pictures"
SHOTLY_SCREEN=1280x900x24 dbus-run-session -- \
    "$root/scripts/with-desktop.sh" /usr/bin/python3 "$root/scripts/help_session.py" \
    "${SHOTLY_BUILD:-$root/build/release}" "$work" "$root/help/pictures"
