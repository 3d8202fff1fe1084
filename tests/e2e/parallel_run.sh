#!/bin/bash
# A run whose rows are plotted by worker processes (--jobs) writes the same
# journal, error log and progress lines as a run that plots them itself,
# elapsed times aside, and puts the same sheets under the same names in an
# output folder and the same pages in a combined PDF; a worker that dies (aborts, or is killed from
# outside) fails its row with the reason and the run goes on; Ctrl+C stops
# every worker after its sheet and leaves whole logs and no worker behind.
#
# Usage: parallel_run.sh SHEAFWORK SOURCE_DIR
source "$(dirname "$0")/script_setup.sh"

out="$work/out"
mkdir -p "$out"
list="$work/lot.qx3"
while IFS=$'\t' read -r drawing options; do
  case "$drawing" in '#'* | '') continue ;; esac
  eval "set -- ${options//OUT/$out}"
  "$exe" list add "$list" "$source_dir/$drawing" "$@" >/dev/null 2>&1 || exit 1
done <"$source_dir/tests/data/parallel/rows.txt"
"$exe" list set "$list" --journal on --journal-file "$work/journal.log" --journal-mode overwrite \
  --error-log on --error-file "$work/erreurs.log" --error-mode overwrite >/dev/null || exit 1
rows=$(grep -c '^"DWG#[0-9]*FILENAME"' "$list")

# The logs and the progress lines of a run, elapsed times masked.
plot() {
  local name=$1
  shift
  "$exe" plot "$list" "$@" </dev/null >/dev/null 2>"$work/$name.err"
  echo $? >"$work/$name.status"
  # In UTF-8 for grep; the bytes compared stand one for one for the logs'.
  sed 's/[0-9][0-9]:[0-9][0-9]:[0-9][0-9]\r$/hh:mm:ss/' "$work/journal.log" |
    iconv -f WINDOWS-1252 -t UTF-8 >"$work/$name.journal"
  iconv -f WINDOWS-1252 -t UTF-8 "$work/erreurs.log" >"$work/$name.errors"
}

# Both runs also put every sheet in an output folder and a combined PDF, at
# the same places, kept after each run under the run's name.
for run in serial:1 parallel:3; do
  plot "${run%:*}" --jobs "${run#*:}" --output-dir "$work/sheets" --combine "$work/combined.pdf"
  mv "$work/sheets" "$work/${run%:*}.sheets" && mv "$work/combined.pdf" "$work/${run%:*}.pdf" ||
    fail "--jobs ${run#*:}: no output folder or combined PDF"
done
[ "$(cat "$work/serial.status")" = 1 ] || fail "serial run: status $(cat "$work/serial.status")"
for part in status journal errors err; do
  cmp -s "$work/serial.$part" "$work/parallel.$part" ||
    fail "--jobs 3: the $part differs from a serial run's:
$(diff "$work/serial.$part" "$work/parallel.$part" | head -20)"
done
grep -q "tables.dxf" "$work/parallel.journal" || fail "the journal lacks a plotted row"
# The same sheets under the same names (the "-2", "-3" of a drawing plotted
# twice given in row order), and the same combined pages in the same order.
# The page count and every page's size of PDF file $1; of each file of folder
# $1, after its name.
page_sizes() { pdfinfo -f 1 -l 999 "$1" | grep -E '^(Pages|Page +[0-9]+ size):'; }
sheet_sizes() {
  for sheet in "$1"/*; do
    echo "${sheet##*/}"
    page_sizes "$sheet"
  done
}
diff <(sheet_sizes "$work/serial.sheets") <(sheet_sizes "$work/parallel.sheets") >"$work/sheets.diff" ||
  fail "--jobs 3: the output folder differs: $(cat "$work/sheets.diff")"
[ "$(ls -A "$work/parallel.sheets" | wc -l)" -ge 8 ] || fail "too few sheets: $(ls -A "$work/parallel.sheets")"
# Every page has the same size; every page but the last is drawn alike (the
# last is the slow drawing's, seconds to rasterise, its sheet placed by the
# same code as the others').
diff <(page_sizes "$work/serial.pdf") <(page_sizes "$work/parallel.pdf") >"$work/pages.diff" ||
  fail "combined PDF: the pages differ: $(cat "$work/pages.diff")"
pages=$(pdfinfo "$work/serial.pdf" | sed -n 's/^Pages: *//p')
[ "${pages:-0}" -ge 8 ] || fail "combined PDF: ${pages:-no} pages"
mkdir "$work/pages"
pdftoppm -r 6 -png -l $((pages - 1)) "$work/serial.pdf" "$work/pages/serial" ||
  fail "serial combined PDF unreadable"
pdftoppm -r 6 -png -l $((pages - 1)) "$work/parallel.pdf" "$work/pages/parallel" ||
  fail "parallel combined PDF unreadable"
[ "$(ls "$work/pages" | grep -c '^parallel')" -eq $((pages - 1)) ] ||
  fail "combined PDF: $(ls "$work/pages")"
for page in "$work"/pages/serial-*.png; do
  cmp -s "$page" "${page/serial-/parallel-}" || fail "combined PDF: ${page##*/} differs"
done
grep -q "absent.dxf" "$work/parallel.errors" || fail "the error log lacks the failed row"

# A worker that dies while it plots row 4 fails that row with the reason; the
# other rows go as before.
SHEAFWORK_WORKER_ABORT_ROW=4 plot aborted --jobs 2
grep -q "signal 6 (SIGABRT)" "$work/aborted.errors" ||
  fail "the dead worker's reason is not in the error log: $(cat "$work/aborted.errors")"
grep -A1 "signal 6" "$work/aborted.errors" | grep -q "Echec du traçage du dessin: .*tables.dxf" ||
  fail "the row of the dead worker is not failed"
diff <(grep -v tables.dxf "$work/serial.journal") "$work/aborted.journal" >/dev/null ||
  fail "the journal of the other rows changed when a worker died"
[ "$(cat "$work/aborted.status")" = 1 ] || fail "run with a dead worker: status 1 expected"

# The same, the worker killed from outside while it plots a slow row: the
# row fails naming the signal, the others are plotted.
slow="$work/slow.qx3"
for n in $(seq 1 4); do
  "$exe" list add "$slow" "$source_dir/tests/data/dxf/slow/slow.dxf" --device PDF.pc3 \
    --plot-file "$out/slow-$n.pdf" >/dev/null || exit 1
done
"$exe" list set "$slow" --journal on --journal-file "$work/journal.log" --journal-mode overwrite \
  --error-log on --error-file "$work/erreurs.log" --error-mode overwrite >/dev/null || exit 1

# Starts a run of the slow rows with two workers; sets `pid` and `workers`.
start_slow() {
  env --default-signal=INT "$exe" plot "$slow" --jobs 2 </dev/null >/dev/null 2>"$work/$1.err" &
  pid=$!
  workers=""
  for _ in $(seq 1 200); do
    workers=$(pgrep -P "$pid" | tr '\n' ' ')
    [ "$(wc -w <<<"$workers")" -eq 2 ] && break
    sleep 0.05
  done
  sleep 0.3
}

# Waits for the run started by start_slow NAME, which must end with status 1
# and a summary matching PATTERN; sets `summary`.
end_slow() {
  local name=$1 pattern=$2 status
  wait "$pid"
  status=$?
  [ "$status" -eq 1 ] || fail "$name: status $status, 1 expected"
  summary=$(tail -n 1 "$work/$name.err")
  [[ "$summary" == $pattern ]] || fail "$name: unexpected summary: $summary"
}

start_slow killed
victim=${workers%% *}
[ -n "$victim" ] && kill -s TERM "$victim"
end_slow killed "*3 ligne(s) tracée(s), 1 en échec ;*"
iconv -f WINDOWS-1252 -t UTF-8 "$work/erreurs.log" | grep -q "signal 15 (SIGTERM)" ||
  fail "killed worker: the signal is not named in the error log"

# Ctrl+C during a run of slow rows: every worker stops after its sheet, the
# logs are whole and no worker is left.
start_slow int
kill -s INT "$pid"
end_slow int "* 0 en échec, traçage annulé*"
plotted=$(printf '%s\n' "$summary" | sed -n 's/^sheafwork: \([0-9]*\) ligne.*/\1/p')
[ -n "$plotted" ] && [ "$plotted" -lt 4 ] || fail "Ctrl+C: the run did not stop ($summary)"
lines=$(grep -c $'\r$' "$work/journal.log")
[ "$lines" -eq $((2 + ${plotted:-0})) ] || fail "Ctrl+C: $lines journal lines for $plotted rows"
[ "$(tail -c 2 "$work/erreurs.log" | od -An -c | tr -d ' ')" = '\r\n' ] ||
  fail "Ctrl+C: the error log does not end with a whole line"
for worker in $workers; do
  kill -0 "$worker" 2>/dev/null && fail "Ctrl+C: worker $worker is still running"
done
[ -n "$workers" ] || fail "Ctrl+C: no worker was seen"
[ "$rows" -gt 0 ] || fail "no row in the list"

exit $failed
