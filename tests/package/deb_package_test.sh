#!/usr/bin/env bash
# Builds the Debian package of a build folder, unpacks it into a scratch root
# (dpkg -x, nothing installed on the machine) and uses the unpacked program
# as a user would, from a folder of its own: plots an example drawing to PDF,
# to PNG (the Qt module from lib/sheafwork/) and from DWG when Node.js is
# there; reads its manual page; completes its commands; checks the desktop
# entry and the .qx3 type.
#   deb_package_test.sh BUILD_DIR SOURCE_DIR
# Exit 77 (skipped) when cpack or dpkg-deb is missing.
set -euo pipefail
build=$(cd "$1" && pwd)
source=$(cd "$2" && pwd)

for tool in cpack dpkg-deb dpkg-shlibdeps; do
  if ! command -v "$tool" >/dev/null 2>&1; then
    echo "skipped: $tool is not installed (scripts/setup.sh installs it)"
    exit 77
  fi
done

scratch=$(mktemp -d /tmp/sheafwork-deb-XXXXXX)
trap 'rm -rf "$scratch"' EXIT
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }

# The package.
(cd "$scratch" && cpack -G DEB -B "$scratch/deb" --config "$build/CPackConfig.cmake" >cpack.log 2>&1) ||
  { cat "$scratch/cpack.log"; fail "cpack -G DEB"; exit 1; }
deb=$(ls "$scratch"/deb/sheafwork_*.deb)
depends=$(dpkg-deb -f "$deb" Depends)
recommends=$(dpkg-deb -f "$deb" Recommends)
for needed in libc6 libqt6widgets6 libqt6printsupport6 libqt6svg6 libcups2 libfontconfig1 libharfbuzz0b; do
  [[ $depends == *"$needed"* ]] || fail "Depends lacks $needed: $depends"
done
[[ $recommends == *nodejs* ]] || fail "Recommends lacks nodejs: $recommends"

root="$scratch/root"
dpkg-deb -x "$deb" "$root"
for file in usr/bin/sheafwork usr/lib/sheafwork/sheafwork-qt.so \
            usr/share/sheafwork/plotters/PDF.pc3 usr/share/sheafwork/plotstyles/monochrome.ctb \
            usr/share/sheafwork/help/UsingTheSheafworkUtility.html \
            usr/share/sheafwork/dwg2dxf/dwg2dxf.js \
            usr/share/man/man1/sheafwork.1.gz usr/share/applications/sheafwork.desktop \
            usr/share/icons/hicolor/scalable/apps/sheafwork.svg \
            usr/share/mime/packages/sheafwork.xml \
            usr/share/bash-completion/completions/sheafwork usr/share/doc/sheafwork/copyright; do
  [ -f "$root/$file" ] || fail "the package lacks /$file"
done
[ -d "$root/usr/share/sheafwork/fonts" ] || fail "the package lacks /usr/share/sheafwork/fonts/"

# The unpacked program, run from a folder of the user's with a home of its
# own and no display.
work="$scratch/travail"
mkdir -p "$work/home"
cp "$source/examples/plans/rez-de-chaussee.dxf" "$work/"
run() {
  (cd "$work" && env -u DISPLAY -u WAYLAND_DISPLAY -u SHEAFWORK_DWG_CONVERTER HOME="$work/home" \
     XDG_DATA_HOME="$work/home/data" XDG_CACHE_HOME="$work/home/cache" "$root/usr/bin/sheafwork" "$@")
}
run list add lot.qx3 rez-de-chaussee.dxf --layout "Plan A3" --plot-file "$work/rdc.pdf" >/dev/null
run list add lot.qx3 rez-de-chaussee.dxf --layout "Plan A3" --device PNG.pc3 \
  --plot-file "$work/rdc.png" >/dev/null
if command -v node >/dev/null 2>&1; then
  cp "$source/tests/data/dwg/samples/example_2018.dwg" "$work/exemple.dwg"
  run list add lot.qx3 exemple.dwg --layout Objet --plot-file "$work/exemple.pdf" >/dev/null
else
  echo "note: Node.js is not installed, the DWG row is left out"
fi
if ! run plot lot.qx3 >"$scratch/plot.log" 2>&1; then
  cat "$scratch/plot.log"
  fail "sheafwork plot with the unpacked data"
fi
for out in rdc.pdf rdc.png $(command -v node >/dev/null 2>&1 && echo exemple.pdf); do
  [ -s "$work/$out" ] || fail "the plot did not write $out"
done

# The manual page: groff reads it without a warning and it lists every
# command, the per-user fonts folder among its files.
page=$(zcat "$root/usr/share/man/man1/sheafwork.1.gz" |
       groff -man -ww -Tutf8 -k 2>"$scratch/groff.log" | col -b)
[ -s "$scratch/groff.log" ] && { cat "$scratch/groff.log"; fail "groff warns about the manual page"; }
for text in "NOM" "sheafwork list add" "sheafwork plot" "sheafwork check" "--combine" \
            "sheafwork logs merge" "--shard K/N" ".local/share/sheafwork/fonts/"; do
  [[ $page == *"$text"* ]] || fail "the manual page lacks « $text »"
done

# The completion, with the unpacked program's own help, in the user's folder
# (its files are offered beside the commands).
complete_words() {
  cd "$work" && PATH="$root/usr/bin:$PATH" bash -c '
    source "$1"; shift
    COMP_WORDS=("$@"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); COMPREPLY=()
    _sheafwork; printf "%s\n" "${COMPREPLY[@]}" | sort | tr "\n" " "' \
    _ "$root/usr/share/bash-completion/completions/sheafwork" "$@"
}
expect_completion() {
  local expected=$1; shift
  local got; got=$(complete_words "$@")
  [ "$got" = "$expected" ] || fail "completing « $* »: « $got » instead of « $expected »"
}
expect_completion "plot " sheafwork pl
expect_completion "add append " sheafwork list a
expect_completion "--combine " sheafwork plot --co
expect_completion "--append-journal " sheafwork check lot.qx3 --ap
expect_completion "merge " sheafwork logs m
expect_completion "--shards " sheafwork logs merge lot.qx3 --sh

# The desktop entry and the list file type.
if command -v desktop-file-validate >/dev/null 2>&1; then
  desktop-file-validate "$root/usr/share/applications/sheafwork.desktop" || fail "desktop entry"
fi
if command -v update-mime-database >/dev/null 2>&1; then
  mkdir -p "$scratch/mime/packages"
  cp "$root/usr/share/mime/packages/sheafwork.xml" "$scratch/mime/packages/"
  update-mime-database "$scratch/mime" 2>"$scratch/mime.log" || fail "update-mime-database"
  grep -q 'application/x-sheafwork-list:\*\.qx3' "$scratch/mime/globs" ||
    fail "the .qx3 type is not registered: $(cat "$scratch/mime.log")"
fi

if [ "$failures" -ne 0 ]; then exit 1; fi
echo "ok: $(basename "$deb") unpacked and used from $work"
