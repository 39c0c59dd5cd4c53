#!/usr/bin/env bash
# Works Shotly for longer than anybody would: one capture run of thousands of snapshots with real clicks, the viewer
# and the paint editor opened and closed hundreds of times, and the demonstration under the address sanitizer with its
# check for leaks. Memory, descriptors, threads, shared memory and what the X server keeps must be the same at the end
# as at the beginning. Prints the figures; ends with an error when one is beyond its limit.
# Usage: soak.sh [SNAPSHOTS [OPENINGS]]   (default 5000, which takes a quarter of an hour and 1.2 GB of TMPDIR, and 500)
# SHOTLY_BUILD is the build folder of the program (default build/release); build/asan is built here.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# No session bus: nothing that is checked here wants one.
DBUS_SESSION_BUS_ADDRESS=disabled: SHOTLY_SCREEN=640x480x24 "$root/scripts/with-desktop.sh" \
    /usr/bin/python3 "$root/scripts/soak.py" "${SHOTLY_BUILD:-$root/build/release}" "${1:-5000}" "${2:-500}"

# The engine of web pages frees things of its own by other sizes than it made them.
"$root/scripts/build.sh" asan shotly
directory=$(mktemp -d)
code=0
ASAN_OPTIONS=detect_leaks=1:exitcode=99:new_delete_type_mismatch=0 \
    LSAN_OPTIONS=suppressions=$root/tests/support/leaks.supp SHOTLY_BUILD=$root/build/asan \
    "$root/scripts/demo.sh" "$directory" || code=$?
if ((code != 0)) || grep -E 'ERROR: (Address|Leak)Sanitizer|runtime error:' "$directory/programs.log"; then
    echo "soak: the demonstration under the sanitizers: see $directory/programs.log" >&2
    exit 1
fi
rm -rf "$directory"
echo "the demonstration under the sanitizers: no error, no leak"
