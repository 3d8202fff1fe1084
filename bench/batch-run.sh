#!/usr/bin/env bash
# A whole batch, timed: a list of 2 400 rows over drawings of several sizes
# (the example plans, with their layouts, hatches and text; large drawings
# exported by a commercial CAD program, as DXF and as DWG through the DWG
# converter; a netDxf sample), plotted to PDF
#
#   serial     sheafwork plot LIST --jobs 1
#   jobs 2     sheafwork plot LIST --jobs 2
#   halves     two sheafwork plot at once, each over half of the rows (two
#              lists): what two processes reach on this machine, the ceiling
#   shards     sheafwork plot LIST --shard K/2, K = 1, 2, run by GNU parallel
#              (only when `sheafwork plot --help` offers --shard)
#
# The journals and error logs of the serial run and of --jobs 2 are compared,
# elapsed times masked. Wall times on the monotonic clock (`date +%s.%N`);
# the load average before each run is printed, since other work on the
# machine skews the figures. Prints a Markdown table.
#
#   bench/batch-run.sh [--rounds N]      (N x 240 rows; 10 by default)
#
# The program is $SHEAFWORK, else build-bench/ (Release, built here); the
# drawings, lists, logs and sheets go to out/bench-batch/.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

rounds=10
while [ $# -gt 0 ]; do
  case "$1" in
    --rounds) rounds="$2"; shift 2 ;;
    *) echo "usage: $0 [--rounds N]" >&2; exit 2 ;;
  esac
done
[[ "$rounds" =~ ^[1-9][0-9]*$ && "$rounds" -ge 2 ]] || { echo "--rounds wants a whole number >= 2" >&2; exit 2; }

if [ -n "${SHEAFWORK:-}" ]; then
  sheafwork=$(realpath "$SHEAFWORK")
else
  build=$(realpath -m "${SHEAFWORK_BENCH_BUILD_DIR:-build-bench}")
  cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DSHEAFWORK_TESTS=OFF >/dev/null
  cmake --build "$build" --target sheafwork >/dev/null
  sheafwork="$build/src/app/sheafwork"
fi
samples=/work/shared/dwg-samples
[ -d "$samples" ] || samples="$root/tests/data/dwg/samples"

work="$root/out/bench-batch"
rm -rf "$work"
mkdir -p "$work/drawings" "$work/logs"
export XDG_DATA_HOME="$work/xdg"
cp "$root"/examples/plans/*.dxf "$work/drawings/"
cp "$samples"/example_*.dxf "$samples"/example_*.dwg "$work/drawings/"
[ -f "$samples/COPYING" ] && cp "$samples/COPYING" "$work/drawings/COPYING-dwg-samples"
netdxf=/work/shared/dxf-samples/netdxf-sample.dxf
[ -f "$netdxf" ] && cp "$netdxf" "$work/drawings/"

d="$work/drawings"
plans=("$d"/ancien-r12.dxf "$d"/cartouche.dxf "$d"/etage.dxf "$d"/facades.dxf
  "$d"/planche-essais.dxf "$d"/rez-de-chaussee.dxf)
layouts=("$d"/planche-essais.dxf "$d"/facades.dxf)
exported=("$d"/example_*.dxf)
dwg=("$d"/example_*.dwg)
extra=()
[ -f "$d/netdxf-sample.dxf" ] && extra=("$d/netdxf-sample.dxf")

# Repeats the drawings given until `count` rows.
repeat() {
  local count=$1
  shift
  local files=("$@") i
  for ((i = 0; i < count; i++)); do printf '%s\n' "${files[i % ${#files[@]}]}"; done
}

# One round: 240 rows of every kind; a list holds the rounds given.
add_round() {
  local list=$1
  mapfile -t rows < <(repeat 151 "${plans[@]}")
  "$sheafwork" list add "$list" "${rows[@]}" --device PDF.pc3 >/dev/null 2>&1
  mapfile -t rows < <(repeat 30 "${layouts[@]}")
  "$sheafwork" list add "$list" "${rows[@]}" --device PDF.pc3 \
    --layout 'Toutes les présentations' >/dev/null 2>&1
  mapfile -t rows < <(repeat 28 "${exported[@]}")
  "$sheafwork" list add "$list" "${rows[@]}" --device PDF.pc3 --area extents >/dev/null 2>&1
  mapfile -t rows < <(repeat 21 "${dwg[@]}")
  "$sheafwork" list add "$list" "${rows[@]}" --device PDF.pc3 --area extents >/dev/null 2>&1
  mapfile -t rows < <(repeat 10 "${extra[@]:-${plans[0]}}")
  "$sheafwork" list add "$list" "${rows[@]}" --device PDF.pc3 --area extents >/dev/null 2>&1
}

make_list() {
  local list=$1 name=$2 from=$3 to=$4 r
  for ((r = from; r <= to; r++)); do add_round "$list"; done
  "$sheafwork" list set "$list" --journal on --journal-file "$work/logs/$name-journal.log" \
    --journal-mode overwrite --error-log on --error-file "$work/logs/$name-erreurs.log" \
    --error-mode overwrite >/dev/null
}

make_list "$work/lot.qx3" lot 1 "$rounds"
half=$((rounds / 2))
make_list "$work/moitie-1.qx3" moitie-1 1 "$half"
make_list "$work/moitie-2.qx3" moitie-2 $((half + 1)) "$rounds"
rows=$(grep -c '^"DWG#[0-9]*FILENAME"' "$work/lot.qx3")

now() { date +%s.%N; }
load() { cut -d' ' -f1 /proc/loadavg; }
declare -A seconds loads

# Times a command; its stderr goes to out/bench-batch/<name>.err.
measure() {
  local name=$1
  shift
  loads[$name]=$(load)
  local start end
  start=$(now)
  "$@" </dev/null >/dev/null 2>"$work/$name.err" || true
  end=$(now)
  seconds[$name]=$(echo "$end - $start" | bc)
  echo "$name : ${seconds[$name]} s (charge ${loads[$name]})" >&2
}

# Warms the page cache and the font lookups once, unmeasured.
"$sheafwork" plot "$work/moitie-1.qx3" --jobs 1 </dev/null >/dev/null 2>&1 || true

masked() { sed 's/[0-9][0-9]:[0-9][0-9]:[0-9][0-9]\r$/hh:mm:ss/' "$1"; }

measure serial "$sheafwork" plot "$work/lot.qx3" --jobs 1
masked "$work/logs/lot-journal.log" >"$work/serial-journal.txt"
cp "$work/logs/lot-erreurs.log" "$work/serial-erreurs.txt"

measure jobs2 "$sheafwork" plot "$work/lot.qx3" --jobs 2
same="oui"
cmp -s "$work/serial-journal.txt" <(masked "$work/logs/lot-journal.log") || same="non"
cmp -s "$work/serial-erreurs.txt" "$work/logs/lot-erreurs.log" || same="non"

halves() {
  "$sheafwork" plot "$work/moitie-1.qx3" </dev/null >/dev/null 2>"$work/moitie-1.err" &
  local first=$!
  "$sheafwork" plot "$work/moitie-2.qx3" </dev/null >/dev/null 2>"$work/moitie-2.err" || true
  wait "$first" || true
}
measure halves halves

shards="sautée : « plot --help » n'offre pas --shard"
if "$sheafwork" plot --help 2>/dev/null | grep -q -- '--shard'; then
  if command -v parallel >/dev/null; then
    measure shards parallel -j 2 "$sheafwork" plot "$work/lot.qx3" --shard {}/2 ::: 1 2
    shards=""
  else
    shards="sautée : GNU parallel manque (scripts/setup.sh l'installe)"
  fi
fi

serial=${seconds[serial]}
ratio() { echo "scale=2; $serial / $1" | bc; }
echo
echo "Liste de $rows lignes, $(nproc) cœurs, $("$sheafwork" --version)"
echo
echo "| Tracé | Secondes | Accélération | Charge avant |"
echo "|---|---:|---:|---:|"
echo "| --jobs 1 | $serial | 1.00 | ${loads[serial]} |"
echo "| --jobs 2 | ${seconds[jobs2]} | $(ratio "${seconds[jobs2]}") | ${loads[jobs2]} |"
echo "| deux moitiés à la fois | ${seconds[halves]} | $(ratio "${seconds[halves]}") | ${loads[halves]} |"
if [ -z "$shards" ]; then
  echo "| deux parts (GNU parallel) | ${seconds[shards]} | $(ratio "${seconds[shards]}") | ${loads[shards]} |"
else
  echo "| deux parts (GNU parallel) | $shards | | |"
fi
echo
echo "Journal et journal des erreurs de --jobs 2 identiques au tracé en série (temps masqués) : $same"
