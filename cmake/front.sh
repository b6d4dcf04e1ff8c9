# shellcheck shell=bash disable=SC2154
# What run.sh, test.sh and .ci/run share; sourced, with `root` set and `front` the caller's name.

say() { printf '%s: %s\n' "$front" "$1" >&2; }

# Installs what is missing. Silent when all is there.
set_up() { bash "$root/cmake/setup.sh"; }

# configure PRESET [cmake option...]: once for each build folder, unless there are options to take up.
# Later changes to the build's description are seen by the build itself.
configure() {
    local preset=$1 log
    shift
    [ $# -eq 0 ] && [ -e "$root/build/$preset/build.ninja" ] && return
    say "configuring build/$preset"
    mkdir -p "$root/build"
    log=$root/build/configure-$preset.log
    if ! (cd "$root" && cmake --preset "$preset" "$@") >"$log" 2>&1; then
        cat "$log" >&2
        say "could not configure build/$preset"
        return 1
    fi
}

# build PRESET target...: a progress line on a terminal; elsewhere every hundredth step, and what went wrong.
build() {
    local preset=$1
    shift
    say "building build/$preset"
    if [ -t 2 ]; then
        ninja -C "$root/build/$preset" "$@" >&2
    else
        ninja -C "$root/build/$preset" "$@" 2>&1 | awk '
            /^\[[0-9]+\/[0-9]+\] / { if (++steps % 100 == 0) print; fflush(); next }
            /^(ninja: (Entering|no work)|-- )/ { next }
            { print; fflush() }' >&2
    fi || {
        say "could not build build/$preset"
        return 1
    }
}
