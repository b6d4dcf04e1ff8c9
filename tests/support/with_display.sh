#!/usr/bin/env bash
# with_display.sh COMMAND...: runs a command under an X server of its own and ends the server with it.
set -euo pipefail
folder=$(mktemp -d)
server=
finish() {
    if [ -n "$server" ]; then
        kill "$server" 2>/dev/null || true
        wait "$server" 2>/dev/null || true
    fi
    rm -rf "$folder"
}
trap finish EXIT
trap 'exit 143' TERM
trap 'exit 130' INT

# The server itself takes the first free display and writes its number once it answers.
mkfifo "$folder/number"
Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp -noreset \
    3>"$folder/number" >"$folder/log" 2>&1 </dev/null &
server=$!
if ! read -r -t 30 number <"$folder/number"; then
    cat "$folder/log" >&2
    printf 'with_display: no X server came up\n' >&2
    exit 1
fi

export DISPLAY=:$number XDG_RUNTIME_DIR=$folder
unset WAYLAND_DISPLAY QT_QPA_PLATFORM
status=0
"$@" || status=$?
exit "$status"
