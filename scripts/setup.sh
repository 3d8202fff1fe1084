#!/usr/bin/env bash
# Installs every Debian package that building, testing and the demo need,
# lets CUPS print to files (the printing tests use a file-backed queue), and
# installs the DWG converter's library (tools/dwg2dxf, `npm ci` from its lock
# file, with the machine's Node.js or Debian's).
# Idempotent: when everything is already in place it changes nothing.
set -euo pipefail

packages=(
  cmake ninja-build g++ pkg-config
  libgtest-dev libgmock-dev
  libcli11-dev nlohmann-json3-dev
  libcups2-dev libfontconfig-dev libharfbuzz-dev   # printers; fonts found and shaped
  fonts-dejavu-core          # TrueType fonts: the platform tests, the example drawings' text
  fonts-urw-base35           # Nimbus Sans: the metric stand-in for Arial in the example sheets
  clang libclang-rt-14-dev   # libFuzzer for the fuzz targets
  qt6-base-dev qt6-svg-dev libgl-dev   # the plot engine and the desktop application
  libbenchmark-dev           # scripts/bench.sh
  zlib1g-dev                 # plot style tables (.ctb) are zlib-compressed
  libdeflate-dev             # PDF streams: deflated fast, a page at once
  qt6-translations-l10n      # Qt's own dialog texts in French
  xvfb xauth                 # screenshots of the desktop application on a virtual display
  poppler-utils              # pdfinfo, pdftoppm: looking at the plotted PDF files
  parallel                   # GNU parallel: the shards test, the README's shard commands, bench/batch-run.sh
  gcovr                      # scripts/coverage.sh: line coverage of src/ per library
  cups-daemon cups-client cups-filters   # printing tests: a CUPS queue writing to a file
  dpkg-dev                   # cpack -G DEB: dpkg-shlibdeps finds the package's dependencies
  man-db groff-base bsdextrautils   # the manual page: man, groff, col
  desktop-file-utils shared-mime-info   # the desktop entry and the .qx3 type checked
  # The Windows build (cmake/mingw-w64.cmake) and its tests under Wine.
  g++-mingw-w64-x86-64-posix mingw-w64-tools libz-mingw-w64-dev wine wine64
)
# The DWG converter runs on Node.js: the machine's own when it has one.
command -v node >/dev/null 2>&1 || packages+=(nodejs)
command -v npm >/dev/null 2>&1 || packages+=(npm)

# The converter's library, as its lock file pins it; nothing to do when
# node_modules already holds what the lock file names.
install_dwg2dxf() {
  local dir
  dir="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/tools/dwg2dxf"
  local installed="$dir/node_modules/.package-lock.json"
  if [ -f "$installed" ] && [ ! "$dir/package-lock.json" -nt "$installed" ]; then
    return 0
  fi
  echo "setup: installing the DWG converter's library (npm ci in tools/dwg2dxf)"
  (cd "$dir" && npm ci --omit=dev --no-audit --no-fund --loglevel=error)
}

# A CUPS queue with a file: device needs "FileDevice Yes". A running server
# is told to read its configuration again.
configure_cups() {
  local conf=/etc/cups/cups-files.conf
  [ -f "$conf" ] || return 0
  grep -q '^FileDevice Yes' "$conf" && return 0
  local root=""
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null 2>&1; then root="sudo"; else
      echo "setup: cannot allow file devices in $conf (not root)" >&2
      return 0
    fi
  fi
  echo "FileDevice Yes" | $root tee -a "$conf" >/dev/null
  echo "setup: CUPS may now print to files"
  if [ -s /run/cups/cupsd.pid ]; then $root kill -HUP "$(cat /run/cups/cupsd.pid)" || true; fi
}

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all packages present"
  configure_cups
  install_dwg2dxf
  exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then
  if command -v sudo >/dev/null 2>&1; then sudo="sudo"; else
    echo "setup: these packages are missing and this user cannot install them: ${missing[*]}" >&2
    exit 1
  fi
fi
echo "setup: installing ${missing[*]}"
$sudo apt-get update -q
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q --no-install-recommends "${missing[@]}"
configure_cups
install_dwg2dxf
