#!/usr/bin/env bash
# Builds the Windows program and its tests with mingw-w64 and runs the tests
# under Wine, headless:
#   scripts/test-windows.sh [BUILD_DIR]        (default: build-win)
# The Wine prefix lives in the build folder (made once with wineboot, about
# 20 s). One wineserver is kept alive for the whole ctest run, started here,
# outside ctest: otherwise every test would wait for it to exit.
set -euo pipefail
cd "$(dirname "$0")/.."
dir="${1:-build-win}"

cmake -S . -B "$dir" -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSHEAFWORK_WERROR=ON -DSHEAFWORK_TESTS=ON >/dev/null
cmake --build "$dir"

export WINEPREFIX
WINEPREFIX="$(cd "$dir" && pwd)/wine-prefix"
export WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY WAYLAND_DISPLAY
if [ ! -f "$WINEPREFIX/system.reg" ]; then
  echo "test-windows: making the Wine prefix $WINEPREFIX"
  wineboot -i >/dev/null 2>&1
  # Until the new prefix's first-time set-up has ended: a COM server started
  # while it goes on is not reached for minutes.
  wineserver -w
fi
# The prefix's FONTS folder holds no font of its own: one installed there as
# a user would, for the font lookups the tests make.
fonts="$WINEPREFIX/drive_c/windows/Fonts"
mkdir -p "$fonts"
cp -u /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf "$fonts/"
# Persistent until told to stop, which this script does on leaving, whatever
# the tests did; it only serves this prefix.
wineserver -p 2>/dev/null || true   # already running for this prefix: that one serves
trap 'wineserver -k 2>/dev/null || true' EXIT
wineboot >/dev/null 2>&1   # the prefix's services, started outside ctest too

# A Wine process now and then fails to start under load, without a word
# and at once; a second try tells that apart from a test that fails.
(cd "$dir" && ctest --output-on-failure -j2 --repeat until-pass:2 "${@:2}")
