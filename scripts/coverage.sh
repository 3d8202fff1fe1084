#!/usr/bin/env bash
# Line coverage of src/ by the whole test suite, per library.
#
#   bash scripts/coverage.sh [BUILD_DIR]
#
# Builds with --coverage into BUILD_DIR (default build-coverage), runs every
# test, and prints the share of lines run in each library folder of src/
# (one line per library, then the total). The full report per file is left in
# BUILD_DIR/coverage.json. Needs Debian's gcovr.
set -euo pipefail
cd "$(dirname "$0")/.."
dir="${1:-build-coverage}"
command -v gcovr >/dev/null || { echo "coverage : gcovr manque (apt-get install gcovr)" >&2; exit 2; }

cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DSHEAFWORK_TESTS=ON -DSHEAFWORK_WERROR=OFF \
  -DCMAKE_CXX_FLAGS="--coverage -O0" -DCMAKE_C_FLAGS="--coverage -O0" \
  -DCMAKE_EXE_LINKER_FLAGS=--coverage -DCMAKE_SHARED_LINKER_FLAGS=--coverage >/dev/null
cmake --build "$dir"
find "$dir" -name '*.gcda' -delete
# Failing tests still count for coverage; say so, but go on to the report.
ctest --test-dir "$dir" -j "$(nproc)" --output-on-failure >"$dir/ctest.log" 2>&1 ||
  echo "coverage : des tests échouent, voir $dir/ctest.log" >&2
gcovr --root . --object-directory "$dir" --filter 'src/' --json-summary "$dir/coverage.json" \
  --json-summary-pretty >/dev/null

python3 - "$dir/coverage.json" <<'EOF'
import json, sys
from collections import defaultdict
files = json.load(open(sys.argv[1]))["files"]
lines = defaultdict(lambda: [0, 0])
for f in files:
    parts = f["filename"].split("/")
    library = "/".join(parts[:3] if parts[1] == "embedded" else parts[:2])
    lines[library][0] += f["line_covered"]
    lines[library][1] += f["line_total"]
covered = total = 0
for library in sorted(lines):
    c, t = lines[library]
    covered += c
    total += t
    print(f"{library:28} {c:6} / {t:6}  {100 * c / t:5.1f} %")
print(f"{'src (total)':28} {covered:6} / {total:6}  {100 * covered / total:5.1f} %")
EOF
