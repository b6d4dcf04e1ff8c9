#!/usr/bin/env bash
# Installs what is missing of packages.txt. Silent where everything is there.
# Debian 12 has no package of the Vulkan memory allocator (one header), so Debian 13's is fetched with
# an apt configuration of its own and unpacked into build/deps: the system's lists stay untouched.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
deps=$root/build/deps

fail() { printf 'setup: %s\n' "$1" >&2; exit 1; }
command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
    fail "this script installs Debian packages and found no apt-get; see cmake/packages.txt for what is needed"

missing_packages() {
    local installed
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' 2>/dev/null | awk '$1 == "installed" { print $2 }')
    sed 's/#.*//' "$root/cmake/packages.txt" | awk 'NF { print $1 }' |
        grep -vxF -f <(printf '%s\n' "$installed") || true
}

log=$(mktemp)
private=
trap 'rm -rf "$log" "$private"' EXIT
quietly() {
    "$@" >"$log" 2>&1 && return
    tail -n 20 "$log" >&2
    fail "'$*' failed"
}

missing=$(missing_packages | tr '\n' ' ')
if [ -n "$missing" ]; then
    if [ "$(id -u)" -eq 0 ]; then as_root=()
    elif command -v sudo >/dev/null && sudo -n true 2>/dev/null; then as_root=(sudo)
    else fail "packages are missing and only an administrator may install them; run:
  sudo apt-get install --no-install-recommends $missing"
    fi
    printf 'setup: installing %s\n' "$missing" >&2
    # A foreign source that does not answer fails the update though Debian's own lists are fresh, so
    # only the installation decides.
    "${as_root[@]}" apt-get update >"$log" 2>&1 || true
    # shellcheck disable=SC2086
    quietly "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends $missing
fi

# An apt of its own that knows the given suites only; its files lie in $private.
private_apt() {
    private=$(mktemp -d)
    mkdir -p "$private/lists/partial" "$private/archives/partial" "$private/empty"
    printf 'deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] http://deb.debian.org/debian %s main\n' \
        "$@" >"$private/sources.list"
    apt=(apt-get -o "Dir::Etc::SourceList=$private/sources.list" -o "Dir::Etc::SourceParts=$private/empty"
        -o "Dir::State::Lists=$private/lists" -o "Dir::Cache::Archives=$private/archives"
        -o "Dir::Cache::pkgcache=" -o "Dir::Cache::srcpkgcache=" -o "APT::Sandbox::User=$(id -un)"
        -o "Debug::NoLocking=1")
    quietly "${apt[@]}" update
}

# unpack_archives FOLDER: what private_apt fetched, all of it or nothing
unpack_archives() {
    local folder=$1 file
    rm -rf "$folder.part"
    mkdir -p "$folder.part"
    for file in "$private"/archives/*.deb; do dpkg -x "$file" "$folder.part"; done
    mv "$folder.part" "$folder"
}

# unpack SUITE PACKAGE FOLDER: a package of another suite, beside the system
unpack() {
    local suite=$1 package=$2 folder=$3
    [ -d "$folder/usr" ] && return
    private_apt "$suite"
    (cd "$private/archives" && quietly "${apt[@]}" download "$package")
    unpack_archives "$folder"
    rm -rf "$private"
}

# unpack_with_libraries SUITE BASE PACKAGE FOLDER: the same with everything that the package needs and
# the installed system, of suite BASE, lacks or has too old
unpack_with_libraries() {
    local suite=$1 base=$2 package=$3 folder=$4
    [ -d "$folder/usr" ] && return
    private_apt "$base" "$suite"
    quietly "${apt[@]}" install -y --reinstall --download-only --no-install-recommends -t "$suite" "$package"
    unpack_archives "$folder"
    rm -rf "$private"
}

case ${1:-} in
    --unpack) unpack "$2" "$3" "$4"; exit ;;
    --unpack-with-libraries) unpack_with_libraries "$2" "$3" "$4" "$5"; exit ;;
esac
mkdir -p "$deps"
unpack trixie libvulkan-memory-allocator-dev "$deps/vma"
