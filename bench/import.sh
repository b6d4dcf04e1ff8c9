#!/usr/bin/env bash
# import.sh [BIN]: bringing a model into a project and drawing the project, against reading the same
# files once and against parsing the model with a library that does nothing else.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

model() {
    local folder=$bin/../models/$1
    [ -e "$folder/ball.obj" ] || "$bin/make_obj" "$1" "$folder" >&2
    cd "$folder" && pwd
}

# measure TITLE TIMES ARGUMENT...: cold, then warm
measure() {
    local title=$1 times=$2
    shift 2
    "$bin/run_measured" --title "$title, cold" --runs "$times" --drop-caches --before "$before" "$@"
    "$bin/run_measured" --title "$title, warm" --runs "$times" --before "$before" "$@"
}

project=$scratch/project/ball.vls
for triangles in 100000 1000000; do
    folder=$(model "$triangles")
    obj=$folder/ball.obj
    before="rm -rf '$scratch/project' '$XDG_CACHE_HOME'; mkdir '$scratch/project'"
    measure "import of $triangles triangles" "$(runs 5 2)" \
        "vlEditor --import" "$bin/vlEditor" --import "$obj" --into "$project" \
        ::: "tinyobjloader alone" "$bin/floor_tinyobj" "$obj" \
        ::: "reading once" "$bin/floor_read" "$obj"

    sh -c "$before"
    "$bin/vlEditor" --import "$obj" --into "$project" >/dev/null
    mapfile -t files < <(find "$scratch/project" -type f)
    before="rm -rf '$XDG_CACHE_HOME'"
    measure "render of $triangles triangles at 1280x720" "$(runs 5 2)" \
        "vlEditor --render" "$bin/vlEditor" --render "$scratch/picture.png" --size 1280x720 "$project" \
        ::: "reading once" "$bin/floor_read" "${files[@]}"
done
