#!/bin/bash
# Two plot runs at once on the same logs, in overwrite mode, lose no line: the
# second waits for the first and then writes its own whole journal, or, when
# it may not wait that long, refuses to start, naming the log and the
# process that holds it, and leaves the first run's journal whole.
#
# Usage: concurrent_logs.sh SHEAFWORK SOURCE_DIR
source "$(dirname "$0")/script_setup.sh"

rows=400
for run in a b; do
  # Each run plots a drawing of its own, so that its journal lines tell it;
  # its rows keep the run busy a second or more.
  cp "$source_dir/examples/plans/rez-de-chaussee.dxf" "$work/$run-plan.dxf"
  list="$work/$run.qx3"
  drawings=()
  for _ in $(seq 1 "$rows"); do drawings+=("$work/$run-plan.dxf"); done
  "$exe" list add "$list" "${drawings[@]}" --device PDF.pc3 --plot-file "$work/$run.pdf" \
    >/dev/null || exit 1
  "$exe" list set "$list" --journal on --journal-file "$work/journal.log" \
    --journal-mode overwrite --journal-header "en-tête $run" --journal-comment "lot $run" \
    --error-log on --error-file "$work/erreurs.log" --error-mode overwrite >/dev/null || exit 1
done

# The journal of one whole run: its header, its comment and one whole line
# per row, all of that run, nothing else.
check_journal() {
  local run=$1 journal="$work/journal.log"
  local whole lines
  whole=$(grep -c $'\r$' "$journal")
  lines=$(wc -l <"$journal")
  [ "$whole" -eq $((rows + 2)) ] && [ "$lines" -eq $((rows + 2)) ] ||
    fail "$2: $whole whole lines of $lines in the journal, $((rows + 2)) expected"
  [ "$(head -n 2 "$journal" | iconv -f WINDOWS-1252 -t UTF-8 | tr -d '\r' | tr '\n' '|')" = \
    "en-tête $run|lot $run|" ] || fail "$2: the journal does not begin with run $run's header"
  [ "$(tail -n +3 "$journal" | grep -c "^$run-")" -eq "$rows" ] ||
    fail "$2: the journal's rows are not all run $run's"
}

# Starts the first run and waits until it plots.
start_first() {
  rm -f "$work/a.txt"
  SHEAFWORK_LOG_LOCK_WAIT=120000 "$exe" plot "$work/a.qx3" </dev/null >/dev/null 2>"$work/a.txt" &
  first=$!
  for _ in $(seq 1 400); do
    grep -q "ligne 1/" "$work/a.txt" 2>/dev/null && return
    sleep 0.02
  done
}

# The second one may wait as long as it takes.
start_first
SHEAFWORK_LOG_LOCK_WAIT=120000 "$exe" plot "$work/b.qx3" </dev/null >/dev/null 2>"$work/b.txt" &
second=$!
wait "$first" || fail "waiting: the first run failed: $(cat "$work/a.txt")"
wait "$second" || fail "waiting: the second run failed: $(cat "$work/b.txt")"
check_journal b "waiting"

# The second one may wait only a moment: it refuses, the first run's journal
# is whole.
rm -f "$work/b.pdf"
start_first
SHEAFWORK_LOG_LOCK_WAIT=200 "$exe" plot "$work/b.qx3" </dev/null >/dev/null 2>"$work/b.txt"
status=$?
[ "$status" -eq 1 ] || fail "refusing: the second run's status is $status, 1 expected"
grep -q "(processus $first)" "$work/b.txt" ||
  fail "refusing: the holder $first is not named: $(tail -n 2 "$work/b.txt")"
grep -q "^sheafwork: $work/.*\.log: .*traçage non lancé" "$work/b.txt" ||
  fail "refusing: the log is not named: $(tail -n 2 "$work/b.txt")"
wait "$first" || fail "refusing: the first run failed: $(cat "$work/a.txt")"
check_journal a "refusing"
[ ! -e "$work/b.pdf" ] || fail "refusing: the second run plotted"

exit $failed
