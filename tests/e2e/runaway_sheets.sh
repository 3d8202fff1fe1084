#!/bin/sh
# The built sheafwork on drawings that would keep it busy for minutes or
# take all memory (tests/data/dxf/fan-out):
# - Ctrl+C during the sheet of blocks.dxf (10^9 lines) stops it within a
#   second; the row is reported cancelled and the error log says so;
# - with SHEAFWORK_SHEET_LIMIT set low, that row fails naming the limit;
# - xref-6.dxf (six levels of ten references each) plots and checks in
#   seconds, each referenced file read once.
# Usage: runaway_sheets.sh SHEAFWORK FAN_OUT_FOLDER
set -u
exe=$1
data=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
XDG_DATA_HOME="$work/xdg"
export XDG_DATA_HOME
unset DISPLAY WAYLAND_DISPLAY
errors=0
fail() {
  echo "ÉCHEC : $*"
  errors=$((errors + 1))
}
now_ms() { echo $(($(date +%s%N) / 1000000)); }

cp "$data"/blocks.dxf "$data"/xref-*.dxf "$work"/
"$exe" list add "$work/blocs.qx3" "$work/blocks.dxf" --plot-file "$work/blocs" >/dev/null
"$exe" list add "$work/xrefs.qx3" "$work/xref-6.dxf" --plot-file "$work/xrefs" >/dev/null

# Ctrl+C while the sheet is drawn. A shell starts its background commands
# with SIGINT ignored, and the program keeps a signal ignored at its start
# ignored (as under nohup): it is given back its default, as from a terminal.
env --default-signal=INT "$exe" plot "$work/blocs.qx3" 2>"$work/cancel.err" &
pid=$!
# Ends it after 60 s at most, or as soon as it is gone.
(
  for _ in $(seq 600); do
    kill -0 $pid 2>/dev/null || exit 0
    sleep 0.1
  done
  kill -KILL $pid 2>/dev/null
) &
tries=0
until grep -q "ligne 1/1 :" "$work/cancel.err" || [ $tries -ge 100 ]; do
  sleep 0.1
  tries=$((tries + 1))
done
sleep 1
sent=$(now_ms)
kill -INT $pid
wait $pid
status=$?
took=$(($(now_ms) - sent))
[ $status -eq 1 ] || fail "Ctrl+C : statut $status, 1 attendu"
[ $took -lt 1500 ] || fail "Ctrl+C : arrêt au bout de $took ms"
grep -q "ligne 1/1 : annulé" "$work/cancel.err" || fail "Ctrl+C : ligne non dite annulée"
grep -q "traçage annulé" "$work/cancel.err" || fail "Ctrl+C : pas de résumé"
# The log is in Windows-1252: its bytes are matched as they are.
tail -n 1 "$work/xdg/sheafwork/QXERROR.LOG" | LC_ALL=C grep -q "interrompu par l'utilisateur.*blocks.dxf" ||
  fail "Ctrl+C : journal des erreurs incomplet"
[ ! -e "$work/blocs.pdf" ] || fail "Ctrl+C : un PDF a été écrit"

# A limit on the entities of a sheet.
SHEAFWORK_SHEET_LIMIT=100000 timeout -s KILL 60 "$exe" plot "$work/blocs.qx3" 2>"$work/limit.err"
status=$?
[ $status -eq 1 ] || fail "limite : statut $status, 1 attendu"
grep -q "plus de 100000 entités" "$work/limit.err" || fail "limite : message absent"

# References fanning out.
timeout -s KILL 60 "$exe" plot "$work/xrefs.qx3" 2>"$work/xrefs.err"
status=$?
[ $status -eq 0 ] || fail "xréfs : statut $status, 0 attendu"
[ -s "$work/xrefs.pdf" ] || fail "xréfs : pas de PDF"
timeout -s KILL 60 "$exe" check "$work/xrefs.qx3" >"$work/check.out" 2>&1
status=$?
[ $status -ne 137 ] || fail "xréfs : essai de traçage arrêté au bout de 60 s"
if grep -q "XREF manquante\|XREF non chargée" "$work/check.out"; then
  fail "xréfs : références non chargées selon l'essai de traçage"
fi

if [ $errors -gt 0 ]; then
  for f in "$work"/*.err "$work/check.out"; do
    echo "--- $f"
    cat "$f"
  done
  exit 1
fi
echo "ok"
