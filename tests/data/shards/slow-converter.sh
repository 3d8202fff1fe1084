#!/bin/sh
# A DWG converter that never finishes: it writes its process number to
# $SLOW_CONVERTER_PID and waits, so that the run converting a drawing can be
# killed in the middle of a row.
echo $$ >"$SLOW_CONVERTER_PID"
exec sleep 120
