#!/usr/bin/env bash
# Sets everything up, builds, and plots the example drawings of a small house
# to PDF files, as a nightly script would: it builds a batch list with
# `sheafwork list`, checks it with `sheafwork check`, then plots it with
# `sheafwork plot`. One row of the list names a layout that does not exist,
# on purpose, to show how a failing row is reported.
set -euo pipefail
cd "$(dirname "$0")/.."

# SHEAFWORK_BUILD_DIR and SHEAFWORK_DEMO_OUT choose other folders than
# build/ and out/demo/.
build="${SHEAFWORK_BUILD_DIR:-build}"
out="${SHEAFWORK_DEMO_OUT:-$PWD/out/demo}"

bash scripts/setup.sh
bash scripts/build.sh "$build" --target sheafwork
sheafwork="$(cd "$build" && pwd)/src/app/sheafwork"

rm -rf "$out"
mkdir -p "$out/pdf"
# The drawings are copied: the host writes its reference logs beside them.
cp -r examples/plans "$out/plans"
# A DWG drawing (release 2018, from LibreDWG's test data): converted to DXF by
# tools/dwg2dxf on the way in.
cp tests/data/dwg/samples/example_2018.dwg "$out/plans/exemple-2018.dwg"
plans="$out/plans"
list="$out/demo.qx3"

echo "== La liste de traçage : $list"
# A new list's row keeps every default: the layout active when the drawing was
# saved, the layout's own device, a PDF file beside the drawing.
"$sheafwork" list new "$list" "$plans/rez-de-chaussee.dxf"
# The A1 layout plotted through the drawing's "A3 paysage" page setup, without
# the furniture and the dimensions.
"$sheafwork" list add "$list" "$plans/rez-de-chaussee.dxf" --layout "Plan A1" \
  --setup "A3 paysage" --layers "MOBILIER 0 COTES 0" --plot-file "$out/pdf/rdc-a3-sans-mobilier.pdf"
# The model tab through a model-type page setup: the extents at 1:50 on A3.
"$sheafwork" list add "$list" "$plans/rez-de-chaussee.dxf" --layout "Objet" \
  --setup "Objet A3 1:50" --plot-file "$out/pdf/rdc-objet.pdf"
"$sheafwork" list add "$list" "$plans/etage.dxf" --layout "Toutes les présentations" \
  --plot-file "$out/pdf/etage.pdf"
"$sheafwork" list add "$list" "$plans/facades.dxf" --layout "Façade nord" --device "PDF.pc3"
# A page setup taken from another drawing: the south elevation fitted on A1.
"$sheafwork" list add "$list" "$plans/facades.dxf" --layout "Façade sud" \
  --setup "$plans/rez-de-chaussee.dxf|A1 paysage" --plot-file "$out/pdf/facade-sud-a1.pdf"
"$sheafwork" list add "$list" "$plans/ancien-r12.dxf" --layout "Toutes les présentations" \
  --device "PDF.pc3" --plot-file "$out/pdf/ancien-r12.pdf"
# The sample sheet: every kind of entity the plot engine draws, on A3.
"$sheafwork" list add "$list" "$plans/planche-essais.dxf" --layout "Planche A3" \
  --device "PDF.pc3" --plot-file "$out/pdf/planche-essais.pdf"
# The model of a DWG drawing (its paper layouts are empty).
"$sheafwork" list add "$list" "$plans/exemple-2018.dwg" --layout "Objet" \
  --device "PDF.pc3" --plot-file "$out/pdf/exemple-2018-objet.pdf"
# Fails by design: the drawing has no layout of that name.
"$sheafwork" list add "$list" "$plans/facades.dxf" --layout "Coupe BB" \
  --plot-file "$out/pdf/coupe-bb.pdf"
"$sheafwork" list set "$list" --journal on --journal-file "$out/QXJOURNL.LOG" \
  --journal-mode overwrite --journal-header "Démonstration Sheafwork" \
  --journal-comment "Lot de nuit" --error-log on --error-file "$out/QXERROR.LOG" \
  --error-mode overwrite
"$sheafwork" list show "$list"

# Exit status 1 means "the run went through, and some row failed" (or the
# plot test found an error); anything else is a real failure of the demo.
expect_status_1() {
  local what="$1" status="$2"
  if [ "$status" -ne 1 ]; then
    echo "démo : ÉCHEC - $what s'est terminé avec le code $status (1 attendu)" >&2
    exit 1
  fi
}

echo
echo "== Essai de traçage (sheafwork check)"
status=0
"$sheafwork" check "$list" --save "$out/essai.txt" || status=$?
# facades.dxf refers to a missing drawing and a missing font, and one row
# names a missing layout: the plot test reports them.
expect_status_1 "l'essai de traçage" "$status"

echo
echo "== Traçage (sheafwork plot)"
status=0
"$sheafwork" plot "$list" || status=$?
expect_status_1 "le traçage" "$status"
if ! grep -q "Coupe BB\|facades.dxf" "$out/QXERROR.LOG"; then
  echo "démo : ÉCHEC - la ligne en échec n'est pas dans le journal des erreurs" >&2
  exit 1
fi
pdf_count=$(find "$out" -name '*.pdf' | wc -l)
if [ "$pdf_count" -ne 11 ]; then
  echo "démo : ÉCHEC - $pdf_count fichiers PDF produits, 11 attendus" >&2
  exit 1
fi

echo
echo "== Journal ($out/QXJOURNL.LOG)"
iconv -f WINDOWS-1252 -t UTF-8 "$out/QXJOURNL.LOG" | tr -d '\r'
echo
echo "== Journal des erreurs ($out/QXERROR.LOG)"
iconv -f WINDOWS-1252 -t UTF-8 "$out/QXERROR.LOG" | tr -d '\r'

echo
echo "== Fichiers produits"
find "$out" \( -name '*.pdf' -o -name '*.LOG' -o -name '*.txt' -o -name '*.xlg' \) -printf '%10s  %p\n' |
  sort -k2
echo
echo "démo : terminée. Les PDF sont dans $out/pdf et $out/plans (à côté de facades.dxf),"
echo "       les journaux dans $out (QXJOURNL.LOG, QXERROR.LOG, essai.txt)."
