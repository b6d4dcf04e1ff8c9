#!/usr/bin/env bash
# Unpacks a newer software driver (Mesa 25: ray tracing, descriptor indexing) into build/deps/mesa25,
# beside the system's, and prints the variables that choose it:
#   env $(tests/support/mesa25.sh) build/release/bin/vlEditor --render out.png project.vls
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
folder=$root/build/deps/mesa25
mkdir -p "$root/build/deps"
"$root/cmake/setup.sh" --unpack-with-libraries bookworm-backports bookworm mesa-vulkan-drivers "$folder" >&2

# The file's name carries the architecture in some releases, and the path within points at the system.
driver=$(find "$folder/usr/lib" -name libvulkan_lvp.so | head -n 1)
shipped=$(find "$folder/usr/share/vulkan/icd.d" -name 'lvp_icd*.json' | head -n 1)
if [ -z "$driver" ] || [ -z "$shipped" ]; then
    printf 'mesa25: no software driver in %s\n' "$folder" >&2
    exit 1
fi
sed "s|\"library_path\": *\"[^\"]*\"|\"library_path\": \"$driver\"|" "$shipped" >"$folder/lvp.json.$$"
mv "$folder/lvp.json.$$" "$folder/lvp.json"
printf 'VK_DRIVER_FILES=%s LD_LIBRARY_PATH=%s\n' "$folder/lvp.json" \
    "$(dirname "$driver")${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}"
