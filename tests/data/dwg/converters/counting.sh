#!/bin/sh
# Converts by copying, and notes each run (the output's path) in RUNS, one
# CR LF line each.
printf '%s\r\n' "$2" >> "$RUNS"
cp "$1" "$2"
