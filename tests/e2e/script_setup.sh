# Sourced by the test scripts of this folder, called as SCRIPT SHEAFWORK
# SOURCE_DIR: sets `exe`, `source_dir`, a scratch folder `work` removed on
# exit, a setting like a server's (no display, the per-user data folder in
# `work`), and `fail`, which reports a failure and makes the script's status 1
# (`exit $failed` at the end).
set -u
exe=$1
source_dir=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME="$work/xdg"
unset DISPLAY WAYLAND_DISPLAY SHEAFWORK_DWG_CONVERTER
failed=0
fail() {
  echo "FAIL: $*"
  failed=1
}
