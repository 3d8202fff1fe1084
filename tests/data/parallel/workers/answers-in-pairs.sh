#!/bin/bash
# A stand-in worker: reads the list and the plot count, then takes the rows
# two at a time and answers the second before the first, each with a
# journal line "ligne N", a sheet and "plotted"; a lone last row is answered
# alone.
export LC_ALL=C
read -r size <&3 && read -r -N "$size" _ <&3 || exit 2
read -r size <&3 && read -r -N "$size" _ <&3 || exit 2
answer() { printf 'R %s ---\nJ ligne %s\nS \nT \n.\n' "$1" "$1" >&4; }
while read -r first <&3; do
  if read -r -t 1 second <&3; then
    answer "$second"
    answer "$first"
  else
    answer "$first"
  fi
done
