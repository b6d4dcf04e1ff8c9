# shellcheck shell=bash disable=SC2034
# What the benches' scripts share; sourced. Their first argument is the folder of the programs; QUICK=1
# makes fewer runs.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
bin=$(cd "${1:-$root/build/bench/bin}" && pwd)
runs() { if [ "${QUICK:-0}" = 1 ]; then echo "$2"; else echo "$1"; fi; }

# A folder of this run's own, on a disk: what lies in memory only is never cold. Nobody's settings are
# read or written.
scratch=$(mktemp -d "$(dirname "$bin")/bench.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
export XDG_CACHE_HOME=$scratch/cache XDG_CONFIG_HOME=$scratch/config
unset VLGRAPHICS_VALIDATION
