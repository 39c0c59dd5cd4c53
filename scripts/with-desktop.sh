#!/usr/bin/env bash
# Runs a command on a private X display with a window manager, and ends both when the command ends, however.
# The exit code is the command's.
# Usage: with-desktop.sh COMMAND [ARGUMENT...]
# SHOTLY_SCREEN is the size and depth of the display (default 1280x1024x24), SHOTLY_SERVER_OPTIONS more options of
# the X server. SHOTLY_MANAGER=none leaves the window manager out.
set -euo pipefail

if (($# == 0)); then
    echo "usage: with-desktop.sh COMMAND [ARGUMENT...]" >&2
    exit 2
fi

work=$(mktemp -d)
processes=() # newest last

finish() {
    trap - EXIT HUP INT TERM
    local index
    for ((index = ${#processes[@]} - 1; index >= 0; --index)); do
        kill "${processes[index]}" 2>/dev/null || true
        wait "${processes[index]}" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap finish EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

fail() {
    echo "with-desktop: $1" >&2
    cat "$work"/*.log >&2 || true
    exit 1
}

# The server chooses a free display and tells its number. Should this script be killed without a chance to
# clean up, the kernel ends server, window manager and command with it.
mkfifo "$work/number"
exec 7<>"$work/number"
read -ra options <<<"${SHOTLY_SERVER_OPTIONS:-}"
setpriv --pdeathsig TERM Xvfb -displayfd 7 -screen 0 "${SHOTLY_SCREEN:-1280x1024x24}" -dpi 96 -noreset \
    -nolisten tcp "${options[@]}" >"$work/server.log" 2>&1 &
processes+=($!)
read -r -t 30 number <&7 || fail "the X server does not start"
exec 7>&-

export DISPLAY=:$number
unset WAYLAND_DISPLAY XAUTHORITY QT_QPA_PLATFORM

manager_is_up() {
    local window
    window=$(xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | sed -n 's/.*# *//p')
    [[ -n $window ]] && xprop -id "$window" _NET_WM_NAME 2>/dev/null | grep -q Openbox
}
if [[ ${SHOTLY_MANAGER:-} != none ]]; then
    XDG_CONFIG_HOME=$work setpriv --pdeathsig TERM openbox --sm-disable >"$work/manager.log" 2>&1 &
    processes+=($!)
    for ((attempt = 0; attempt < 300; ++attempt)); do
        manager_is_up && break
        kill -0 "${processes[1]}" 2>/dev/null || fail "the window manager has ended"
        sleep 0.1
    done
    manager_is_up || fail "the window manager does not come up"
fi

# In the background, so that a signal is served at once; with the input that a background job would lose.
setpriv --pdeathsig TERM -- "$@" <&0 &
processes+=($!)
code=0
wait "$!" || code=$?
exit "$code"
