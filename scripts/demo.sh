#!/usr/bin/env bash
# Sets everything up, builds, and shows what the program does today: it builds
# a batch list from the command line exactly as a nightly script would, then
# reads it back, and reads the example list that ships in examples/.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh
bash scripts/build.sh build --target sheafwork
sheafwork=build/src/app/sheafwork

out="$PWD/out/demo"
rm -rf "$out"
mkdir -p "$out"
list="$out/demo.qx3"
plans="$PWD/examples/plans"

echo "== Une liste construite par un script : $list"
"$sheafwork" list new "$list" "$plans/rez-de-chaussee.dwg"
"$sheafwork" list add "$list" "$plans/etage.dwg" --layout "Toutes les présentations" \
  --device "PDF.pc3" --plot-file "$out/etage.pdf"
"$sheafwork" list add "$list" "$plans/facades.dwg" --layout "Façade nord" \
  --setup "$plans/gabarit.dwt|A1 paysage" --layers "COTES 0 MURS 1" --area "#E" \
  --scale "1#100" --custom-scale --scale-lineweights
"$sheafwork" list set "$list" --journal-file "$out/QXJOURNL.LOG" --error-file "$out/QXERROR.LOG" \
  --journal-header "Démonstration Sheafwork" --journal-comment "Lot de nuit"
"$sheafwork" list show "$list"

echo
echo "== La même liste en JSON"
"$sheafwork" list show --json "$list"

echo
echo "== La liste d'exemple livrée dans examples/"
"$sheafwork" list show examples/sample.qx3

echo
echo "démo : le fichier liste est $list (Windows-1252, fins de ligne CR LF)."
