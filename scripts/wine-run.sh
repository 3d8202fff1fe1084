#!/bin/sh
# Runs a Windows program under Wine, headless and quiet, in a given prefix:
#   scripts/wine-run.sh PREFIX PROGRAM.exe [ARGS...]
# ctest calls it for every Windows test program (the cross-compiling
# emulator); scripts/test-windows.sh makes the prefix and keeps its
# wineserver alive for the whole run.
prefix=$1
shift
export WINEPREFIX="$prefix"
export WINEDEBUG=-all
# No Gecko or Mono installer dialogs, no window system.
export WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY WAYLAND_DISPLAY
exec wine "$@"
