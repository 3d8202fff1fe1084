#!/usr/bin/env bash
# Builds the DXF reader benchmark in Release (build-bench/) and runs it: the
# tokenizer and the whole reader on a large generated drawing (about 50 MB)
# and on a small example plan, beside two peers on the same bytes (splitting
# lines with memchr; a getline/strtol tag loop). Prints MB/s and the ratios
# to the peers.
#
#   scripts/bench.sh [extra Google Benchmark options...]
set -euo pipefail
cd "$(dirname "$0")/.."

build="${SHEAFWORK_BENCH_BUILD_DIR:-build-bench}"
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DSHEAFWORK_TESTS=OFF >/dev/null
cmake --build "$build" --target dxf_read_bench

json="$build/dxf_read_bench.json"
"$build/bench/dxf_read_bench" --benchmark_out="$json" --benchmark_out_format=json "$@"

# bytes_per_second of every run, then each figure beside its peers.
awk '
  /"name":/ { gsub(/[",]/, "", $2); name = $2 }
  /"bytes_per_second":/ { gsub(/,/, "", $2); speed[name] = $2 }
  END {
    split("0 1", args, " ")
    label["0"] = "grand dessin"; label["1"] = "petit plan"
    print ""
    printf "%-14s %12s %12s %14s %16s\n", "", "lecteur MB/s", "jetons MB/s", "jetons/memchr", "jetons/getline"
    for (i = 1; i <= 2; i++) {
      a = args[i]
      r = speed["Reader/" a] / 1e6; t = speed["Tokenizer/" a] / 1e6
      l = speed["PeerLines/" a] / 1e6; g = speed["PeerGetline/" a] / 1e6
      printf "%-14s %12.0f %12.0f %14.2f %16.2f\n", label[a], r, t, (l ? t / l : 0), (g ? t / g : 0)
    }
  }' "$json"
