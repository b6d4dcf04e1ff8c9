#!/usr/bin/env bash
# startup.sh [BIN]: from start to the first drawn frame and out again, against a bare Qt window that
# leaves once it was painted; and the memory that the editor holds with an empty scene. Runs on an X
# server of its own.
set -euo pipefail
if [ -z "${VL_BENCH_DISPLAY:-}" ]; then
    support=$(cd "$(dirname "${BASH_SOURCE[0]}")/../tests/support" && pwd)
    VL_BENCH_DISPLAY=own exec "$support/with_display.sh" "${BASH_SOURCE[0]}" "$@"
fi
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"
export QT_QPA_PLATFORM=xcb
cd "$scratch"

# start TITLE LINE [run_measured's options...] -- vlEditor's arguments...
start() {
    local title="start to $1" options=(--until "$2")
    shift 2
    while [ "$1" != -- ]; do
        options+=("$1")
        shift
    done
    "$bin/run_measured" --title "$title" --runs "$(runs 15 3)" "${options[@]}" \
        "vlEditor" env VLEDITOR_LEAVE_AFTER_FRAMES=1 "$bin/vlEditor" "${@:2}" \
        ::: "a bare Qt window" "$bin/bare_qt_window"
}
start "first frame, empty scene" drawn --goal 3 --
start "all drawn, gallery" complete -- "$root/samples/gallery/gallery.vls"

# Resident memory of an idle editor, in MB.
settled_memory() {
    local editor seconds=0 before=0 now=1
    "$bin/vlEditor" >/dev/null &
    editor=$!
    # Settled once it stays the same for a second.
    while [ "$seconds" -lt 20 ] && [ "$before" != "$now" ]; do
        sleep 1
        seconds=$((seconds + 1))
        before=$now
        now=$(awk '/^VmRSS/ { print $2 }' "/proc/$editor/status")
    done
    kill -TERM "$editor"
    wait "$editor" || true
    awk -v kilobytes="$now" 'BEGIN { printf "%.1f", kilobytes / 1024 }'
}
memory=$(settled_memory)
awk -v memory="$memory" 'BEGIN {
    printf ">> resident memory, empty scene, idle | %s MB | 150 MB, the goal | %.2f\n", memory, memory / 150
}'
