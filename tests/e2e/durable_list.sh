#!/bin/bash
# A list file is the user's work: the new one is written out (fsync) before
# it takes the old one's place, and its folder after. Watched with strace;
# skipped where strace cannot trace.
#
# Usage: durable_list.sh SHEAFWORK SOURCE_DIR
source "$(dirname "$0")/script_setup.sh"
command -v strace >/dev/null || { echo "skipped: strace is not installed"; exit 77; }

cp "$source_dir/examples/plans/rez-de-chaussee.dxf" "$work/"
list="$work/lot.qx3"
"$exe" list add "$list" "$work/rez-de-chaussee.dxf" >/dev/null || exit 1
strace -f -o "$work/trace.txt" -e trace=fsync,rename,renameat2 \
  "$exe" list add "$list" "$work/rez-de-chaussee.dxf" >/dev/null 2>&1 ||
  { echo "skipped: strace cannot trace here"; exit 77; }
# The calls in order, without process ids and results: fsync, rename, fsync.
calls=$(sed -n 's/^[0-9 ]*\(fsync\|rename\|renameat2\)(.*/\1/p' "$work/trace.txt" | tr '\n' ' ')
case "$calls" in
  *"fsync rename"*" fsync "*) ;;
  *) fail "list file not written out around its rename: $calls" ;;
esac
exit $failed
