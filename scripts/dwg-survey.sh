#!/usr/bin/env bash
# Plots every layout of every DWG drawing under a folder and says how many
# drawings plotted all their layouts, and why the others did not.
#
#   bash scripts/dwg-survey.sh FOLDER [OUTPUT_FOLDER]
#
# Each drawing is plotted by a run of its own over a one-row list ("Toutes
# les présentations"): a drawing that cannot be opened ends the run of an
# all-layouts row at its counting pass, so one run for all would stop at the
# first. The drawings are left where they are; lists, logs and sheets go to
# OUTPUT_FOLDER (default out/dwg-survey), one numbered folder per drawing,
# and a summary to OUTPUT_FOLDER/resume.txt. Uses the program of the build
# folder (SHEAFWORK_BUILD_DIR, default build/). A run that takes longer than
# SURVEY_TIME_LIMIT seconds (default 600) counts as hung.
set -euo pipefail

if [[ $# -lt 1 || ! -d $1 ]]; then
  echo "utilisation : bash scripts/dwg-survey.sh DOSSIER [DOSSIER_DE_SORTIE]" >&2
  exit 2
fi
root="$(cd "$(dirname "$0")/.." && pwd)"
program="${SHEAFWORK_BUILD_DIR:-$root/build}/src/app/sheafwork"
[[ -x $program ]] || { echo "programme introuvable : $program (construisez d'abord)" >&2; exit 2; }
source_folder="$(cd "$1" && pwd)"
out="${2:-$root/out/dwg-survey}"
rm -rf "$out"
mkdir -p "$out"
out="$(cd "$out" && pwd)"
summary="$out/resume.txt"

mapfile -d '' drawings < <(find "$source_folder" -type f \( -iname '*.dwg' -o -iname '*.dwt' \) -print0 | sort -z)
[[ ${#drawings[@]} -gt 0 ]] || { echo "aucun dessin DWG dans $source_folder" >&2; exit 2; }

plotted=0 empty=0 failed=0 hung=0 crashed=0 index=0
start=$(date +%s)
for drawing in "${drawings[@]}"; do
  index=$((index + 1))
  folder="$out/$index"
  mkdir -p "$folder/pdf"
  list="$folder/liste.qx3"
  "$program" list add "$list" "$drawing" --layout "Toutes les présentations" --device PDF.pc3 \
    --plot-file "$folder/pdf/feuille.pdf" >/dev/null
  "$program" list set "$list" --journal on --journal-file "$folder/journal.log" \
    --journal-mode overwrite --error-log on --error-file "$folder/erreurs.log" \
    --error-mode overwrite >/dev/null
  set +e
  timeout "${SURVEY_TIME_LIMIT:-600}" "$program" plot "$list" >"$folder/sortie.txt" 2>"$folder/erreurs.txt"
  status=$?
  set -e
  sheets=$(find "$folder/pdf" -name '*.pdf' | wc -l)
  case $status in
    0)
      if [[ $sheets -gt 0 ]]; then
        plotted=$((plotted + 1)) verdict="tracé ($sheets feuille(s))"
      else
        empty=$((empty + 1)) verdict="aucune présentation à tracer"
      fi
      ;;
    1) failed=$((failed + 1)); verdict="échec : $(grep -v '^sheafwork: [0-9]* ligne' "$folder/erreurs.txt" | head -n 1)" ;;
    124) hung=$((hung + 1)); verdict="bloqué (plus de ${SURVEY_TIME_LIMIT:-600} s)" ;;
    *) crashed=$((crashed + 1)); verdict="arrêt anormal (état $status)" ;;
  esac
  printf '%s\t%s\n' "$drawing" "$verdict" >>"$summary"
  printf '\r%d/%d' "$index" "${#drawings[@]}" >&2
done
printf '\n' >&2

total=${#drawings[@]}
{
  echo "dessins : $total, durée : $(($(date +%s) - start)) s"
  echo "toutes les présentations tracées : $plotted ($((100 * plotted / total)) %)"
  echo "sans présentation : $empty, en échec : $failed, bloqués : $hung, arrêts anormaux : $crashed"
  echo "détail par dessin : $summary"
} | tee -a "$summary"
[[ $hung -eq 0 && $crashed -eq 0 ]]
