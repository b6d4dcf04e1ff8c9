#!/usr/bin/env bash
# Builds everything and runs the tests. Arguments are ctest's: ./test.sh -R vlGraphics
# VL_WARNINGS_AS_ERRORS=ON (or OFF) in the environment changes that option of the build.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
front=test.sh
source "$root/cmake/front.sh"

# Every start of the engine within a test has the validation layers watch it.
export VLGRAPHICS_VALIDATION=1

set_up
configure release ${VL_WARNINGS_AS_ERRORS:+"-DVL_WARNINGS_AS_ERRORS=$VL_WARNINGS_AS_ERRORS"}
build release all all_verify_interface_header_sets
say "running the tests"
ctest --test-dir "$root/build/release" -j2 --output-on-failure --no-label-summary "$@"
