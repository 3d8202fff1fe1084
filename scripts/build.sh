#!/usr/bin/env bash
# Configures and builds one build folder with Ninja.
#   scripts/build.sh BUILD_DIR [extra cmake options...]
set -euo pipefail
cd "$(dirname "$0")/.."
dir="$1"; shift
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSHEAFWORK_WERROR=ON "$@" >/dev/null
cmake --build "$dir"
