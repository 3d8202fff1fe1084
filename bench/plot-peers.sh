#!/usr/bin/env bash
# DXF to PDF, ours beside two open peers, on the same drawings: generated
# drawings of about 2 000, 20 000 and 200 000 entities and the example plans.
#
#   ours      sheafwork plot LIST     (a list made with `sheafwork list`, the
#                                      PDF.pc3 device, the model layout)
#   librecad  librecad dxf2pdf -a     (fitted to the page, offscreen Qt)
#   ezdxf     python3 -m ezdxf draw   (matplotlib backend, .pdf output)
#
# Each run has a time limit; wall time is taken around it in milliseconds,
# peak memory comes from GNU time.
# A PDF counts as empty when its first page renders all white. Ours runs
# three times (the median is kept), each peer once. Prints a Markdown table.
#
#   bench/plot-peers.sh [--sizes "2000 20000 200000"] [--timeout SECONDS]
#                         [--no-peers] [--no-examples]
#
# The peers are installed with apt-get when missing (they are not needed to
# build or use Sheafwork). Release build in build-bench/ (or
# $SHEAFWORK_BENCH_BUILD_DIR); drawings and PDFs in out/bench-plot/.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

sizes="2000 20000 200000"
limit=300
peers=1
examples=1
while [ $# -gt 0 ]; do
  case "$1" in
    --sizes) sizes="$2"; shift 2 ;;
    --timeout) limit="$2"; shift 2 ;;
    --no-peers) peers=0; shift ;;
    --no-examples) examples=0; shift ;;
    *) echo "usage: $0 [--sizes LIST] [--timeout SECONDS] [--no-peers] [--no-examples]" >&2; exit 2 ;;
  esac
done

build=$(realpath -m "${SHEAFWORK_BENCH_BUILD_DIR:-build-bench}")
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DSHEAFWORK_TESTS=OFF >/dev/null
cmake --build "$build" --target sheafwork make_examples >/dev/null
sheafwork="$build/src/app/sheafwork"
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
command -v /usr/bin/time >/dev/null || { echo "GNU time is needed (package time)" >&2; exit 1; }

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

# run NAME COMMAND... : runs COMMAND under GNU time and the time limit;
# prints "seconds kilobytes status" (status: ok, timeout, crash).
run() {
  local name=$1
  shift
  local log="$work/$name.time"
  local rc=0 start end
  start=$(date +%s%N)
  /usr/bin/time -o "$log" -f "%e %M" timeout "$limit" "$@" >"$work/$name.out" 2>&1 || rc=$?
  end=$(date +%s%N)
  # GNU time counts in hundredths; the clock around it in milliseconds
  # (small drawings take a few of them).
  local seconds kb
  read -r _ kb < <(tail -n 1 "$log")
  seconds=$(awk -v a="$start" -v b="$end" 'BEGIN { printf "%.3f", (b - a) / 1e9 }')
  local status=ok
  if [ "$rc" = 124 ]; then status=timeout; elif [ "$rc" != 0 ]; then status="crash($rc)"; fi
  echo "$seconds $kb $status"
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

median() { printf '%s\n' "$@" | sort -g | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

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
  times=() ; kbs=() ; status=ok
  for attempt in 1 2 3; do
    rm -f "$ours_pdf"
    read -r s kb st < <(run "$stem-ours" "$sheafwork" plot "$list")
    times+=("$s"); kbs+=("$kb")
    [ "$st" = ok ] || status=$st
  done
  ours_s=$(median "${times[@]}")
  ours_kb=$(median "${kbs[@]}")
  ours_state=$(verdict "$status" "$ours_pdf")
  echo "   sheafwork: ${times[*]} s, $ours_kb kB, $ours_state" >&2

  cells=()
  if [ "$peers" = 1 ]; then
    # Its -o takes no value here: -t names the folder, the file keeps the
    # drawing's name.
    mkdir -p "$work/pdf/librecad"
    lc_pdf="$work/pdf/librecad/$stem.pdf"
    read -r s kb st < <(QT_QPA_PLATFORM=offscreen run "$stem-librecad" librecad dxf2pdf -a -t "$work/pdf/librecad" "$dxf")
    state=$(verdict "$st" "$lc_pdf")
    echo "   librecad: $s s, $kb kB, $state" >&2
    cells+=("$s" "$kb" "$state")
    ez_pdf="$work/pdf/$stem-ezdxf.pdf"
    read -r s kb st < <(run "$stem-ezdxf" "$pybin" -m ezdxf draw -o "$ez_pdf" "$dxf")
    state=$(verdict "$st" "$ez_pdf")
    echo "   ezdxf: $s s, $kb kB, $state" >&2
    cells+=("$s" "$kb" "$state")
  fi

  awk -v stem="$stem" -v n="$entities" -v mb="$size" -v s="$ours_s" -v kb="$ours_kb" \
      -v st="$ours_state" -v peers="${cells[*]:-}" '
    function seconds(sec) { return sprintf(sec < 1 ? "%.3f" : "%.2f", sec) }
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
