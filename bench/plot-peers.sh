#!/usr/bin/env bash
# DXF to PDF, ours beside two open peers, on the same drawings: generated
# drawings of about 2 000, 20 000 and 200 000 entities and the example plans.
#
#   ours      sheafwork plot LIST     (a list made with `sheafwork list`, the
#                                      PDF.pc3 device, the model layout)
#   librecad  librecad dxf2pdf -a     (fitted to the page, offscreen Qt)
#   ezdxf     python3 -m ezdxf draw   (matplotlib backend, .pdf output)
#
# Every program is timed the same way, by bench/run_measured (built here):
# it execs the program itself, with no shell, `time` or `timeout` process
# around it, and takes the wall time on the monotonic clock from fork to
# wait4, peak memory from wait4 (ru_maxrss), and kills the program's process
# group at the time limit. On each drawing each program first runs once
# unmeasured, so that the drawing, the program and its libraries are in the
# page cache for all alike, then --runs times (3), and the medians of time and
# of memory are kept. A first run longer than --long seconds (10) is kept as
# the only one: a peer taking a minute runs once, and at that length the page
# cache does not matter. A PDF counts as empty when its first page renders
# all white. Prints a Markdown table.
#
#   bench/plot-peers.sh [--sizes "2000 20000 200000"] [--timeout SECONDS]
#                         [--runs N] [--long SECONDS] [--no-peers] [--no-examples]
#
# The peers are installed with apt-get when missing (they are not needed to
# build or use Sheafwork). Release build in build-bench/ (or
# $SHEAFWORK_BENCH_BUILD_DIR); drawings and PDFs in out/bench-plot/.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

sizes="2000 20000 200000"
limit=300
runs=3
long=10
peers=1
examples=1
while [ $# -gt 0 ]; do
  case "$1" in
    --sizes) sizes="$2"; shift 2 ;;
    --timeout) limit="$2"; shift 2 ;;
    --runs) runs="$2"; shift 2 ;;
    --long) long="$2"; shift 2 ;;
    --no-peers) peers=0; shift ;;
    --no-examples) examples=0; shift ;;
    *) echo "usage: $0 [--sizes LIST] [--timeout SECONDS] [--runs N] [--long SECONDS]" \
            "[--no-peers] [--no-examples]" >&2; exit 2 ;;
  esac
done
[[ "$runs" =~ ^[1-9][0-9]*$ ]] || { echo "--runs wants a whole number >= 1" >&2; exit 2; }
[[ "$long" =~ ^[0-9]+([.][0-9]+)?$ ]] || { echo "--long wants a number of seconds" >&2; exit 2; }

build=$(realpath -m "${SHEAFWORK_BENCH_BUILD_DIR:-build-bench}")
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DSHEAFWORK_TESTS=OFF >/dev/null
cmake --build "$build" --target sheafwork make_examples run_measured >/dev/null
sheafwork="$build/src/app/sheafwork"
runner="$build/bench/run_measured"
pybin=/usr/bin/python3  # the system Python, where the Debian packages are

if [ "$peers" = 1 ]; then
  missing=()
  command -v librecad >/dev/null || missing+=(librecad)
  "$pybin" -c 'import ezdxf' 2>/dev/null || missing+=(python3-ezdxf)
  "$pybin" -c 'import matplotlib' 2>/dev/null || missing+=(python3-matplotlib)
  if [ ${#missing[@]} -gt 0 ]; then
    echo "Installation des comparaisons : ${missing[*]}" >&2
    as_root=()
    [ "$(id -u)" = 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}" >&2
  fi
fi

work="$root/out/bench-plot"
rm -rf "$work"
mkdir -p "$work/drawings" "$work/pdf"
drawings=()
for n in $sizes; do
  file="$work/drawings/genere-$n.dxf"
  "$build/tools/dxfgen/make_examples" --large "$n" "$file"
  drawings+=("$file")
done
if [ "$examples" = 1 ]; then
  for file in examples/plans/*.dxf; do
    cp "$file" "$work/drawings/"
    drawings+=("$work/drawings/$(basename "$file")")
  done
fi

# run NAME COMMAND... : runs COMMAND once under run_measured and the time
# limit, its output in $work/NAME.out; prints "seconds kilobytes status"
# (status: ok, timeout, crash(N) or crash(SIGNAME)). Stops the script when
# COMMAND cannot be started.
run() {
  local name=$1
  shift
  local line ms kb status
  line=$("$runner" --timeout "$limit" --stdout "$work/$name.out" --stderr "$work/$name.out" \
         -- "$@") || { echo "cannot time $*" >&2; exit 1; }
  read -r ms kb status <<<"$line"
  awk -v ms="$ms" -v kb="$kb" -v st="$status" 'BEGIN { printf "%.6f %d %s\n", ms / 1e3, kb, st }'
}

median() { printf '%s\n' "$@" | sort -g | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

# measure NAME PDF COMMAND... : the warm-up run, then $runs measured ones
# (or the first one only when it took longer than $long seconds), the PDF
# removed before each; prints "seconds kilobytes status times": the medians,
# the first status that is not ok (warm-up included), and the kept times.
measure() {
  local name=$1 pdf=$2
  shift 2
  local line s kb st status=ok times=() kbs=()
  rm -f "$pdf"
  line=$(run "$name" "$@") || exit 1
  read -r s kb st <<<"$line"
  [ "$st" = ok ] || status=$st
  if awk -v s="$s" -v long="$long" 'BEGIN { exit !(s > long) }'; then
    times=("$s"); kbs=("$kb")
  else
    local attempt
    for ((attempt = 1; attempt <= runs; attempt++)); do
      rm -f "$pdf"
      line=$(run "$name" "$@") || exit 1
      read -r s kb st <<<"$line"
      times+=("$s"); kbs+=("$kb")
      [ "$st" = ok ] || [ "$status" != ok ] || status=$st
    done
  fi
  local listed
  listed=$(printf '%.3f,' "${times[@]}")
  echo "$(median "${times[@]}") $(median "${kbs[@]}") $status ${listed%,}"
}

# The first page's share of non-white pixels, at a low resolution; "none"
# when there is no readable PDF.
ink() {
  local pdf=$1
  [ -s "$pdf" ] || { echo none; return; }
  timeout 300 pdftoppm -r 12 -gray -f 1 -l 1 "$pdf" "$work/ink" 2>/dev/null || { echo none; return; }
  local pgm
  pgm=$(ls "$work"/ink*.pgm 2>/dev/null | head -n 1)
  [ -n "$pgm" ] || { echo none; return; }
  "$pybin" - "$pgm" <<'EOF'
import sys
data = open(sys.argv[1], "rb").read()
# P5 header: magic, width, height, maxval, then one byte per pixel.
fields, pos = [], 0
while len(fields) < 4:
    while data[pos:pos + 1].isspace(): pos += 1
    if data[pos:pos + 1] == b"#":
        pos = data.index(b"\n", pos)
        continue
    end = pos
    while not data[end:end + 1].isspace(): end += 1
    fields.append(data[pos:end]); pos = end
pixels = data[pos + 1:]
print(f"{sum(1 for p in pixels if p < 250) / max(len(pixels), 1):.4f}")
EOF
  rm -f "$work"/ink*.pgm
}

# verdict STATUS PDF: "ok", or what went wrong.
verdict() {
  local status=$1 pdf=$2
  [ "$status" = ok ] || { echo "$status"; return; }
  local share
  share=$(ink "$pdf")
  if [ "$share" = none ]; then echo "no-PDF"
  elif "$pybin" -c "import sys; sys.exit(0 if float('$share') == 0 else 1)"; then echo "empty-PDF"
  else echo ok; fi
}

table="$work/table.md"
{
  echo "| Drawing | Entities | MB | Sheafwork s | Sheafwork MB | librecad s | librecad MB | librecad / ours | ezdxf s | ezdxf MB | ezdxf / ours |"
  echo "|---|---|---|---|---|---|---|---|---|---|---|"
} >"$table"

for dxf in "${drawings[@]}"; do
  stem=$(basename "$dxf" .dxf)
  size=$(awk -v b="$(stat -c %s "$dxf")" 'BEGIN { printf (b < 1e6 ? "%.2f" : "%.1f"), b / 1e6 }')
  entities=$(awk 'prev == "  0" && $0 != "VERTEX" && $0 != "SEQEND" && $0 != "ATTRIB" && inside { n++ }
                  { gsub(/\r/, ""); if (prev == "  2" && $0 == "ENTITIES") inside = 1
                    if (inside && prev == "  0" && $0 == "ENDSEC") inside = 0; prev = $0 }
                  END { print n + 0 }' "$dxf")
  echo "== $stem ($size MB)" >&2

  # Ours: a one-row list, the model layout, the PDF device.
  list="$work/$stem.qx3"
  ours_pdf="$work/pdf/$stem-ours.pdf"
  rm -f "$list"  # `list add` makes it
  "$sheafwork" list add "$list" "$dxf" --layout Objet --device PDF.pc3 --plot-file "$ours_pdf" >/dev/null
  read -r ours_s ours_kb status times < <(measure "$stem-ours" "$ours_pdf" "$sheafwork" plot "$list")
  ours_state=$(verdict "$status" "$ours_pdf")
  echo "   sheafwork: $times s, $ours_kb kB, $ours_state" >&2

  cells=()
  if [ "$peers" = 1 ]; then
    # Its -o takes no value here: -t names the folder, the file keeps the
    # drawing's name.
    mkdir -p "$work/pdf/librecad"
    lc_pdf="$work/pdf/librecad/$stem.pdf"
    read -r s kb st times < <(QT_QPA_PLATFORM=offscreen measure "$stem-librecad" "$lc_pdf" \
                                librecad dxf2pdf -a -t "$work/pdf/librecad" "$dxf")
    state=$(verdict "$st" "$lc_pdf")
    echo "   librecad: $times s, $kb kB, $state" >&2
    cells+=("$s" "$kb" "$state")
    ez_pdf="$work/pdf/$stem-ezdxf.pdf"
    read -r s kb st times < <(measure "$stem-ezdxf" "$ez_pdf" "$pybin" -m ezdxf draw -o "$ez_pdf" "$dxf")
    state=$(verdict "$st" "$ez_pdf")
    echo "   ezdxf: $times s, $kb kB, $state" >&2
    cells+=("$s" "$kb" "$state")
  fi

  awk -v stem="$stem" -v n="$entities" -v mb="$size" -v s="$ours_s" -v kb="$ours_kb" \
      -v st="$ours_state" -v peers="${cells[*]:-}" '
    function seconds(sec) { return sprintf(sec < 0.1 ? "%.4f" : sec < 1 ? "%.3f" : "%.2f", sec) }
    function cell(sec, state) { return state == "ok" ? seconds(sec) : seconds(sec) " (" state ")" }
    function ratio(sec, state) {
      if (s <= 0) return "–"
      r = sec / s
      f = r < 10 ? "%.1f×" : "%.0f×"
      return state == "ok" ? sprintf(f, r) : sprintf("≥ " f " (%s)", r, state)
    }
    BEGIN {
      line = sprintf("| %s | %d | %s | %s | %.0f |", stem, n, mb, cell(s, st), kb / 1024)
      k = split(peers, p, " ")
      for (i = 1; i + 2 <= k; i += 3)
        line = line sprintf(" %s | %.0f | %s |", seconds(p[i]), p[i + 1] / 1024, ratio(p[i], p[i + 2]))
      if (k == 0) line = line " – | – | – | – | – | – |"
      print line
    }' >>"$table"
done

echo
echo "Machine: $(nproc) cores, $(awk -F': ' '/model name/ { print $2; exit }' /proc/cpuinfo)," \
     "$(date -u +%Y-%m-%d), load $(cut -d' ' -f1-3 /proc/loadavg)"
echo
cat "$table"
