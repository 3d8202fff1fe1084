#!/usr/bin/env bash
# Configures and builds one build folder with Ninja, tests included.
#   scripts/build.sh BUILD_DIR [--target TARGET] [extra cmake options...]
set -euo pipefail
cd "$(dirname "$0")/.."
dir="$1"; shift
target=()
if [ "${1:-}" = "--target" ]; then target=(--target "$2"); shift 2; fi
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSHEAFWORK_WERROR=ON \
  -DSHEAFWORK_TESTS=ON "$@" >/dev/null
cmake --build "$dir" "${target[@]}"
