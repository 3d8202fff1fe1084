#!/usr/bin/env bash
# Sets everything up and runs every test: the sanitizer build, a short fuzz
# run of each reader, then the test suite of the normal build (last, so that
# its summary closes the output).
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
bash scripts/start-cups.sh

echo "== sanitizer build (address, undefined behaviour)"
bash scripts/build.sh build-asan -DSHEAFWORK_SANITIZE=ON
(cd build-asan && ctest --output-on-failure -j2 >ctest.log 2>&1) || {
  cat build-asan/ctest.log; echo "test: the sanitizer build failed its tests" >&2; exit 1; }
grep -E "tests passed|tests failed" build-asan/ctest.log | sed 's/^/sanitizer build: /'

echo "== fuzzing the readers"
bash scripts/fuzz.sh "${SHEAFWORK_FUZZ_SECONDS:-20}"

echo "== Windows build (mingw-w64), its tests under Wine"
mkdir -p build-win
bash scripts/test-windows.sh build-win >build-win/test.log 2>&1 || {
  cat build-win/test.log; echo "test: the Windows build failed its tests" >&2; exit 1; }
grep -E "tests passed|tests failed" build-win/test.log | sed 's/^/Windows build: /'

echo "== test suite"
bash scripts/build.sh build -DSHEAFWORK_SANITIZE=OFF
cd build && ctest --output-on-failure -j2
