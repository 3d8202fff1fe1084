#!/usr/bin/env bash
# Builds the desktop application's picture tool and takes a picture of the main
# window with a loaded list, of every dialog and of the plot test's results on
# a virtual display. The pictures go to out/screenshots/.
#
#   scripts/screenshots.sh [BUILD_FOLDER]
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build="${1:-$root/build}"
out="$root/out/screenshots"

if [ ! -f "$build/build.ninja" ]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
fi
cmake --build "$build" --target ui_screenshots

# The drawings of the pictures' project live in a folder of their own.
work="${TMPDIR:-/tmp}/Agence"
runtime="$(mktemp -d)"
rm -rf "$work"
trap 'rm -rf "$work" "$runtime"' EXIT
rm -rf "$out"
mkdir -p "$out"

# A real X server (Xvfb) so that fonts, styles and window sizes are those of a
# desktop; 96 dpi like most screens.
XDG_RUNTIME_DIR="$runtime" QT_QPA_PLATFORM=xcb \
  xvfb-run -a -s "-screen 0 1600x1000x24 -dpi 96" \
  "$build/tools/screenshots/ui_screenshots" "$out" "$work"

echo "Images dans $out :"
ls -1 "$out"
