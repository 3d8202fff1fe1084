#!/usr/bin/env bash
# Builds the fuzzers (list file, DXF reader, plot style tables, MTEXT reader,
# the reader of our own PDF files)
# with clang and the sanitizers, and runs each for its share of a bounded time
# on a copy of its seed corpus.
#
#   scripts/fuzz.sh [seconds]     (default 20, split between the fuzzers)
#
# The build goes to build-fuzz/ (or $SHEAFWORK_FUZZ_BUILD_DIR). New corpus
# files stay in a temporary folder; a crashing input is kept in
# <build>/fuzz-artifacts/. Exits non-zero when a fuzzer finds a problem, and
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

# name, corpus folder, maximum input length, extra options
fuzzers=(
  "list_file_fuzzer|list_file|4096|"
  "dxf_fuzzer|dxf|16384|-dict=$root/fuzz/dxf.dict"
  "plot_style_fuzzer|plot_style|16384|"
  "mtext_fuzzer|mtext|2048|-dict=$root/fuzz/mtext.dict"
  "pdf_part_fuzzer|pdf_part|16384|-dict=$root/fuzz/pdf.dict"
)

CXX=clang++ cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DSHEAFWORK_FUZZ=ON -DSHEAFWORK_SANITIZE=ON -DSHEAFWORK_TESTS=OFF >/dev/null
targets=()
for entry in "${fuzzers[@]}"; do targets+=("${entry%%|*}"); done
cmake --build "$build" --target "${targets[@]}" -j "$(nproc 2>/dev/null || echo 2)"

work="$(mktemp -d "${TMPDIR:-/tmp}/sheafwork-fuzz.XXXXXX")"
trap 'rm -rf "$work"' EXIT
mkdir -p "$build/fuzz-artifacts"

# Each fuzzer gets an equal share of the time, at least one second.
share=$(( seconds / ${#fuzzers[@]} ))
[ "$share" -ge 1 ] || share=1

failed=0
for entry in "${fuzzers[@]}"; do
  IFS='|' read -r name corpus maxlen extra <<<"$entry"
  mkdir -p "$work/$name"
  cp "$root"/fuzz/corpus/"$corpus"/* "$work/$name/"
  status=0
  # shellcheck disable=SC2086
  "$build/fuzz/$name" "$work/$name" -max_total_time="$share" -max_len="$maxlen" \
    -timeout=10 -print_final_stats=1 -artifact_prefix="$build/fuzz-artifacts/" $extra \
    >"$work/$name.log" 2>&1 || status=$?
  runs="$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$work/$name.log" | grep -o '[0-9]*$' || true)"
  if [ "$status" -ne 0 ]; then
    tail -n 60 "$work/$name.log"
    echo "fuzz: FAILED - $name found a problem (exit $status); see $build/fuzz-artifacts/"
    failed=1
    continue
  fi
  echo "fuzz: OK - $name ran ${share}s clean (${runs:-?} runs)"
done
exit "$failed"
