#!/usr/bin/env bash
# sheafwork.exe with the COM host against the test server, as a user runs it:
#   exe_com_check.sh PREFIX SHEAFWORK_EXE SERVER_EXE DATA_DIR
# A list of drawings with one the server refuses to open (error 53): the
# journal has a line per plotted row, the error log the failing row's lines,
# status 1. Then a server that dies at the second drawing: the run ends at
# once, status 1, the error log naming the host gone. Skipped (77) while the
# program is not built for Windows.
set -u
prefix=$1 exe=$2 server=$3 data=$4
if [ -z "$exe" ] || [ ! -f "$exe" ]; then
  echo "skipped: sheafwork.exe is not built"
  exit 77
fi
export WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" LC_ALL=C.UTF-8
unset DISPLAY WAYLAND_DISPLAY
work=$(mktemp -d)
control="$(dirname "$server")/sheafwork-test-host.control"
trap 'rm -rf "$work" "$control"' EXIT
fail() { echo "exe_com_check: $*" >&2; exit 1; }
win() { winepath -w "$1" 2>/dev/null; }

cp "$data"/*.dxf "$work"/
wine "$server" /RegServer || fail "the test server did not register"
list=$(win "$work/Liste.qx3")
wine "$exe" list new "$list" "$(win "$work/Plan.dxf")" "$(win "$work/Erreur53.dxf")" \
  "$(win "$work/Coupe.dxf")" >/dev/null || fail "list new failed"
wine "$exe" list set "$list" --journal on --journal-file "$(win "$work/J.LOG")" \
  --journal-mode overwrite --error-log on --error-file "$(win "$work/E.LOG")" \
  --error-mode overwrite >/dev/null || fail "list set failed"

# The server's drawings (its scripted host; the embedded host reads the
# files themselves) and what it does wrong, read when it starts.
plot() {
  : >"$control"
  for d in Plan Erreur53 Coupe; do echo "drawing|$(win "$work/$d.dxf")|Présentation1"; done >>"$control"
  cat "$1" >>"$control"
  start=$(date +%s)
  timeout 60 wine "$exe" plot "$list" --host com --progid Sheafwork.TestHost.1 >/dev/null 2>&1
  status=$?
  [ $(($(date +%s) - start)) -lt 30 ] || fail "the run took too long"
  [ "$status" -eq 1 ] || fail "status $status, not 1"
}

plot "$data/error53.control"
[ "$(grep -c -e '^Plan.dxf, ' -e '^Coupe.dxf, ' "$work/J.LOG")" -eq 2 ] || fail "journal: $(cat "$work/J.LOG")"
LC_ALL=C grep -q "ERREUR: Impossible d'ouvrir le dessin: .*Erreur53.dxf" "$work/E.LOG" || fail "error log: $(cat "$work/E.LOG")"
LC_ALL=C grep -q "ERREUR: Echec du tra.*Erreur53.dxf" "$work/E.LOG" || fail "error log: $(cat "$work/E.LOG")"

plot "$data/dies-at-second-open.control"
[ "$(grep -c '^Plan.dxf, ' "$work/J.LOG")" -eq 1 ] || fail "journal: $(cat "$work/J.LOG")"
LC_ALL=C grep -q "automatisation ne r" "$work/E.LOG" || fail "error log: $(cat "$work/E.LOG")"
echo "exe_com_check: passed"
