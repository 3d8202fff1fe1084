#!/bin/bash
# A list plotted as four shards run by GNU parallel (each with two worker
# processes), then merged, gives the journal and error log of one run over
# the whole list, elapsed times aside.
# The merge refuses, naming the file and writing nothing, a missing shard, a
# shard of another list or of another split, a log changed since, and a
# shard killed in the middle of a row; `plot --shard` refuses values it
# cannot use.
#
# Usage: shards.sh SHEAFWORK SOURCE_DIR
source "$(dirname "$0")/script_setup.sh"
if ! command -v parallel >/dev/null 2>&1; then
  echo "GNU parallel is not installed (scripts/setup.sh installs it)"
  exit 77
fi
data="$source_dir/tests/data/shards"
# The drawings copied: a row without an output folder plots beside its
# drawing.
cp -r "$source_dir/examples/plans" "$work/plans" || exit 1
plans="$work/plans"
cd "$work" || exit 1


# make_list LIST LOG_FOLDER ROWS: a list of the rows of a table of
# tests/data/shards/, writing plan.log and plan.err in LOG_FOLDER.
make_list() {
  local list=$1 logs=$2 drawing layout device
  mkdir -p "$logs"
  rm -f "$list"  # created by its first row
  while IFS=$'\t' read -r drawing layout device; do
    [[ -z $drawing || $drawing == \#* ]] && continue
    [[ $drawing == /* ]] || drawing="$plans/$drawing"
    local options=()
    [[ -n $layout ]] && options+=(--layout "$layout")
    [[ -n $device ]] && options+=(--device "$device")
    "$exe" list add "$list" "$drawing" "${options[@]}" >/dev/null 2>&1 || exit 1
  done <"$3"
  "$exe" list set "$list" --journal on --journal-file "$logs/plan.log" \
    --journal-header "En-tête" --journal-comment "Lot d'essai" \
    --error-log on --error-file "$logs/plan.err" --error-header "Erreurs" >/dev/null || exit 1
}

# A log with its elapsed times masked.
masked() { sed -E 's/, -?[0-9]+:-?[0-9]+:-?[0-9]+\r$/, ##:##:##\r/' "$1"; }

make_list lot.qx3 "$work/logs" "$data/rows.tsv"

"$exe" plot lot.qx3 --output-dir serial-sheets >serial.txt 2>&1
mkdir serial && mv logs/plan.log logs/plan.err serial/ || fail "the serial run wrote no logs"

# Each shard with two worker processes of its own.
parallel --halt never "$exe" plot lot.qx3 --quiet --output-dir shard-sheets-{} --shard {}/4 \
  --jobs 2 ::: 1 2 3 4 >shards.txt 2>&1
[ "$(ls logs/plan.shard-*-of-4.log.json | wc -l)" -eq 4 ] || fail "four shard records expected: $(ls logs)"
"$exe" logs merge lot.qx3 >merge.txt 2>&1
status=$?
# Rows of the list fail (a missing drawing, layouts that cannot be set up):
# status 1, as the serial run's.
[ "$status" -eq 1 ] || fail "merge: status $status, 1 expected: $(cat merge.txt)"
for log in plan.log plan.err; do
  cmp -s <(masked "serial/$log") <(masked "logs/$log") ||
    fail "merged $log differs from the serial run's: $(diff <(masked "serial/$log") <(masked "logs/$log"))"
done
grep -q "4 part(s) réunie(s) : 7 ligne(s) tracée(s), 3 en échec" merge.txt ||
  fail "merge summary: $(cat merge.txt)"
grep -q "ligne(s) tracée(s)" serial.txt || fail "serial run: $(cat serial.txt)"
cp -a logs good

# Logs in append mode, two runs, the missing drawing there for the second:
# each shard's record says where its run starts in its logs, and the merge
# adds the merged run to the list's logs.
cp lot.qx3 ajout.qx3
"$exe" list set ajout.qx3 --journal-file "$work/ajout/plan.log" --journal-mode append \
  --error-file "$work/ajout/plan.err" --error-mode append >/dev/null || exit 1
mkdir ajout
for run in 1 2; do
  [ "$run" -eq 2 ] && cp "$plans/etage.dxf" "$plans/absent.dxf"
  "$exe" plot ajout.qx3 --quiet --output-dir ajout-sheets >/dev/null 2>&1
done
mkdir ajout-serial && mv ajout/plan.log ajout/plan.err ajout-serial/
rm "$plans/absent.dxf"
for run in 1 2; do
  [ "$run" -eq 2 ] && cp "$plans/etage.dxf" "$plans/absent.dxf"
  parallel "$exe" plot ajout.qx3 --quiet --output-dir ajout-sheets-{} --shard {}/3 \
    ::: 1 2 3 >/dev/null 2>&1
  "$exe" logs merge ajout.qx3 >/dev/null 2>&1
done
rm "$plans/absent.dxf"
for log in plan.log plan.err; do
  cmp -s <(masked "ajout-serial/$log") <(masked "ajout/$log") ||
    fail "appended $log differs from two serial runs': $(diff <(masked "ajout-serial/$log") <(masked "ajout/$log"))"
done

# Each case starts from the four good shards, changes something, and expects
# the merge to refuse with status 2, naming the file, and to write nothing.
other_list() {
  make_list autre.qx3 "$work/logs" "$data/other-rows.tsv"
  "$exe" plot autre.qx3 --quiet --output-dir other-sheets --shard 2/4 >/dev/null 2>&1
}
other_split() { "$exe" plot lot.qx3 --quiet --output-dir split-sheets --shard 1/3 >/dev/null 2>&1; }
missing() { rm logs/plan.shard-3-of-4.log.json; }
changed_log() { printf 'ajout\r\n' >>logs/plan.shard-4-of-4.err; }
renamed() { mv logs/plan.shard-3-of-4.log.json logs/plan.shard-2-of-4.log.json; }
cut_short() { head -c 200 good/plan.shard-1-of-4.log.json >logs/plan.shard-1-of-4.log.json; }

cases=(
  # setup        | file named in the message                   | reason
  "missing       |logs/plan.shard-3-of-4.log.json|part manquante.*3/4$"
  "other_list    |logs/plan.shard-2-of-4.log.json|vient d'une autre liste.* $work/autre.qx3"
  "other_split   |lot.qx3|découpages différents .*(en 3, 4 parts)"
  "changed_log   |logs/plan.shard-4-of-4.err|ne correspond pas au relevé"
  "renamed       |logs/plan.shard-2-of-4.log.json|autre découpage.*part 3/4$"
  "cut_short     |logs/plan.shard-1-of-4.log.json|relevé de part illisible"
)
for case in "${cases[@]}"; do
  IFS='|' read -r setup file reason <<<"$case"
  setup=${setup// /}
  rm -rf logs && cp -a good logs && rm logs/plan.log logs/plan.err
  "$setup"
  "$exe" logs merge lot.qx3 >refused.txt 2>&1
  status=$?
  [ "$status" -eq 2 ] || fail "$setup: status $status, 2 expected: $(cat refused.txt)"
  grep -qE "^sheafwork: $work/$file: .*$reason" refused.txt ||
    fail "$setup: the file and reason are not named: $(cat refused.txt)"
  [ ! -e logs/plan.log ] && [ ! -e logs/plan.err ] || fail "$setup: the merge wrote a log"
done

# The split chosen among two: the four shards merge again.
rm -rf logs && cp -a good logs && other_split
"$exe" logs merge lot.qx3 --shards 4 >merge.txt 2>&1
[ $? -eq 1 ] && cmp -s <(masked serial/plan.log) <(masked logs/plan.log) ||
  fail "--shards 4 among two splits: $(cat merge.txt)"

# A shard killed while it converts a drawing: its record says it did not
# finish.
touch lent.dwg
printf '%s\n' "$work/lent.dwg" etage.dxf cartouche.dxf >slow-rows.tsv
make_list lent.qx3 "$work/slow-logs" slow-rows.tsv
"$exe" plot lent.qx3 --quiet --shard 2/2 >/dev/null 2>&1
SHEAFWORK_DWG_CONVERTER="$data/slow-converter.sh" SLOW_CONVERTER_PID="$work/converter.pid" \
  "$exe" plot lent.qx3 --quiet --shard 1/2 >/dev/null 2>&1 &
shard=$!
for _ in $(seq 1 500); do
  [ -s converter.pid ] && break
  sleep 0.02
done
[ -s converter.pid ] || fail "killed: the converter did not start"
kill -KILL "$shard"
wait "$shard" 2>/dev/null
[ -s converter.pid ] && kill "$(cat converter.pid)" 2>/dev/null
"$exe" logs merge lent.qx3 >killed.txt 2>&1
status=$?
[ "$status" -eq 2 ] || fail "killed: status $status, 2 expected: $(cat killed.txt)"
grep -q "^sheafwork: $work/slow-logs/plan.shard-1-of-2.log.json: cette part ne s'est pas terminée" \
  killed.txt || fail "killed: $(cat killed.txt)"
[ ! -e slow-logs/plan.log ] || fail "killed: the merge wrote the journal"

# Values of --shard that cannot be used, and a list whose two logs are one
# file, which the merge could not split by row: status 2, a French message,
# nothing plotted.
cp lot.qx3 un-seul.qx3
"$exe" list set un-seul.qx3 --error-file "$work/logs/plan.log" >/dev/null || exit 1
refusals=(
  "un-seul.qx3 --shard 1/2|le journal et le journal des erreurs de la liste sont un même fichier"
  "lot.qx3 --shard 0/4|--shard attend K/N"
  "lot.qx3 --shard 5/4|--shard attend K/N"
  "lot.qx3 --shard a/b|--shard attend K/N"
  "$plans/etage.dxf --shard 1/2|--shard demande un fichier liste"
)
for refusal in "${refusals[@]}"; do
  IFS='|' read -r arguments message <<<"$refusal"
  rm -rf refused-sheets
  # shellcheck disable=SC2086
  "$exe" plot $arguments --output-dir refused-sheets >refused.txt 2>&1
  status=$?
  [ "$status" -eq 2 ] || fail "plot $arguments: status $status, 2 expected"
  grep -q "^sheafwork: $message" refused.txt || fail "plot $arguments: $(cat refused.txt)"
  [ ! -e refused-sheets ] || fail "plot $arguments: something was plotted"
done

exit $failed
