#!/usr/bin/env bash
# Builds the editor, if need be, and starts it. Arguments are the editor's own (see --help); without any
# it opens the sample project.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
front=run.sh
source "$root/cmake/front.sh"

needs_display() {
    local argument
    for argument in "$@"; do
        case $argument in
            --render | --render=* | --import | --import=* | --validate | --validate=* | --headless | \
                --version | --help | -h) return 1 ;;
        esac
    done
}

if needs_display "$@" && [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    say "there is no display to open a window on; for a picture without one:
  $0 --render out.png $root/samples/gallery/gallery.vls"
    exit 1
fi

set_up
configure release
build release vlEditor
[ $# -gt 0 ] || set -- "$root/samples/gallery/gallery.vls"
exec "$root/build/release/bin/vlEditor" "$@"
