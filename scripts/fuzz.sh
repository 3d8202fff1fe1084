#!/usr/bin/env bash
# Builds the list-file fuzzer with clang and the sanitizers, and runs it for a
# bounded time on a copy of the seed corpus.
#
#   scripts/fuzz.sh [seconds]     (default 20)
#
# The build goes to build-fuzz/ (or $SHEAFWORK_FUZZ_BUILD_DIR). New corpus
# files stay in a temporary folder; a crashing input is kept in
# <build>/fuzz-artifacts/. Exits non-zero when the fuzzer finds a problem, and
# 0 with a notice when clang++ is not installed.
set -euo pipefail

seconds="${1:-20}"
if ! [[ "$seconds" =~ ^[0-9]+$ ]] || [ "$seconds" -eq 0 ]; then
  echo "usage: $0 [seconds]" >&2
  exit 2
fi

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${SHEAFWORK_FUZZ_BUILD_DIR:-$root/build-fuzz}"

if ! command -v clang++ >/dev/null 2>&1; then
  echo "fuzz: SKIPPED - clang++ is not installed"
  exit 0
fi

CXX=clang++ cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DSHEAFWORK_FUZZ=ON -DSHEAFWORK_SANITIZE=ON -DSHEAFWORK_TESTS=OFF >/dev/null
cmake --build "$build" --target list_file_fuzzer -j "$(nproc 2>/dev/null || echo 2)"

work="$(mktemp -d "${TMPDIR:-/tmp}/sheafwork-fuzz.XXXXXX")"
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/corpus" "$build/fuzz-artifacts"
cp "$root"/fuzz/corpus/list_file/* "$work/corpus/"

status=0
"$build/fuzz/list_file_fuzzer" "$work/corpus" -max_total_time="$seconds" -max_len=4096 \
  -timeout=10 -print_final_stats=1 -artifact_prefix="$build/fuzz-artifacts/" \
  >"$work/fuzz.log" 2>&1 || status=$?

runs="$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$work/fuzz.log" | grep -o '[0-9]*$' || true)"
if [ "$status" -ne 0 ]; then
  tail -n 60 "$work/fuzz.log"
  echo "fuzz: FAILED - list_file_fuzzer found a problem (exit $status); see $build/fuzz-artifacts/"
  exit 1
fi
echo "fuzz: OK - list_file_fuzzer ran ${seconds}s clean (${runs:-?} runs)"
