#!/usr/bin/env bash
# run.sh [--quick] [BIN]: every bench, one after the other, and a table of what came out. Builds them
# first unless the folder of built programs is given. --quick makes fewer runs: a look, not a figure.
set -euo pipefail
bench=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(dirname "$bench")
QUICK=0
if [ "${1:-}" = --quick ]; then
    QUICK=1
    shift
fi
export QUICK
if [ $# -eq 0 ]; then
    # shellcheck disable=SC2034
    front=bench/run.sh
    # shellcheck source=cmake/front.sh
    source "$root/cmake/front.sh"
    set_up
    configure bench
    build bench vl_bench
fi
bin=$(cd "${1:-$root/build/bench/bin}" && pwd)

log=$(dirname "$bin")/bench.log
printf '%s, %s processors, load %s\n' "$(uname -sr)" "$(nproc)" "$(cut -d' ' -f1-3 /proc/loadavg)" |
    tee "$log"
few() { [ "$QUICK" = 1 ]; }
one() {
    printf '\n== %s\n' "$1" | tee -a "$log"
    "${@:2}" 2>&1 | tee -a "$log"
}
entities=("$bin/entities")
messages=("$bin/messages")
layout=("$bin/layout_window")
log_burst=("$bin/log_burst")
programs=("$bin/programs")
shader_edit=("$bin/shader_edit")
resources=("$bin/resources")
if few; then
    entities+=(--rounds 3 --frames 8)
    messages+=(--benchmark_repetitions=3 --benchmark_min_time=0.05)
    layout+=(3)
    log_burst+=(3)
    programs+=(2 200)
    shader_edit+=(10)
    resources+=(2)
fi
one messages "${messages[@]}"
one log "${log_burst[@]}"
one resources "${resources[@]}"
one entities "${entities[@]}"
one programs "${programs[@]}"
one edit "${shader_edit[@]}"
one layout "${layout[@]}"
one start "$bench/startup.sh" "$bin"
one import "$bench/import.sh" "$bin"

printf '\n== table: median (least to most); load at the end %s; all of it in %s\n' \
    "$(cut -d' ' -f1-3 /proc/loadavg)" "$log"
awk -F ' *[|] *' '
    /^>> / {
        sub(/^>> /, "")
        for (i = 1; i <= 4; ++i) {
            cell[rows, i] = $i
            if (length($i) > width[i]) width[i] = length($i)
        }
        ++rows
    }
    END {
        for (row = 0; row < rows; ++row) {
            line = ""
            for (i = 1; i <= 4; ++i) line = line sprintf("%-" (width[i] + 2) "s", cell[row, i])
            sub(/ +$/, "", line)
            print line
        }
    }' "$log"
