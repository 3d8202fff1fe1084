#!/bin/bash
# A plot run sent SIGTERM or SIGHUP stops as after the first Ctrl+C: after the
# sheet under way, with its summary, status 1, complete logs and no temporary
# file left. A run killed outright may leave the temporary of the plot file it
# was writing; the next run that writes that file removes it.
#
# Usage: stop_signals.sh SHEAFWORK SOURCE_DIR
source "$(dirname "$0")/script_setup.sh"

cp "$source_dir/tests/data/dxf/slow/slow.dxf" "$work/"
mkdir -p "$work/out"
list="$work/lot.qx3"
for n in 1 2 3; do
  "$exe" list add "$list" "$work/slow.dxf" --device PDF.pc3 --plot-file "$work/out/feuille$n.pdf" \
    >/dev/null || exit 1
done
"$exe" list set "$list" --journal on --journal-file "$work/journal.log" --journal-mode overwrite \
  --error-log on --error-file "$work/erreurs.log" --error-mode overwrite >/dev/null || exit 1

# Starts a run in the background and waits until its first row is under way.
start_run() {
  rm -f "$work/err.txt"
  "$exe" plot "$list" </dev/null >/dev/null 2>"$work/err.txt" &
  pid=$!
  for _ in $(seq 1 200); do
    grep -q "ligne 1/3" "$work/err.txt" 2>/dev/null && break
    sleep 0.05
  done
  sleep 0.2
}

temporaries() { find "$work/out" -name '*.sheafwork-*.tmp' | wc -l; }

for signal in TERM HUP; do
  start_run
  kill -s "$signal" "$pid"
  wait "$pid" 2>/dev/null
  status=$?
  [ "$status" -eq 1 ] || fail "SIG$signal: status $status, 1 expected"
  summary=$(tail -n 1 "$work/err.txt")
  case "$summary" in
    *"traçage annulé"*"journal : $work/journal.log"*) ;;
    *) fail "SIG$signal: no summary of a cancelled run: $summary" ;;
  esac
  plotted=$(printf '%s\n' "$summary" | sed -n 's/^sheafwork: \([0-9]*\) ligne.*/\1/p')
  [ -n "$plotted" ] && [ "$plotted" -lt 3 ] || fail "SIG$signal: the run did not stop ($summary)"
  # The journal: its two header lines and one line per plotted row, each whole.
  lines=$(grep -c $'\r$' "$work/journal.log")
  [ "$lines" -eq $((2 + ${plotted:-0})) ] || fail "SIG$signal: $lines journal lines for $plotted rows"
  [ "$(tail -c 2 "$work/journal.log" | od -An -c | tr -d ' ')" = '\r\n' ] ||
    fail "SIG$signal: the journal does not end with a whole line"
  [ "$(temporaries)" -eq 0 ] || fail "SIG$signal: temporaries left: $(find "$work/out" -name '*.tmp')"
done

# Killed outright while writing a sheet: the temporary stays, until the next
# run writes that sheet.
start_run
for _ in $(seq 1 200); do
  [ "$(temporaries)" -gt 0 ] && break
  sleep 0.05
done
kill -s KILL "$pid"
wait "$pid" 2>/dev/null
left=$(temporaries)
[ "$left" -gt 0 ] || fail "no temporary while the first sheet was written"
SHEAFWORK_LOG_LOCK_WAIT=0 "$exe" plot "$list" </dev/null >/dev/null 2>"$work/err.txt" ||
  fail "the run after a killed one failed: $(cat "$work/err.txt")"
[ "$(temporaries)" -eq 0 ] || fail "temporaries left after a killed run ($left) and a whole one"

exit $failed
