#!/usr/bin/env bash
# Starts the CUPS server when none answers, for the printing tests (there is
# no service manager on the build machines). Does nothing when one runs or
# when CUPS is not installed; the printing tests then say why they skip (or
# fail, when CI is set).
set -euo pipefail

running() { LC_ALL=C lpstat -r 2>/dev/null | grep -q "scheduler is running"; }

if ! command -v cupsd >/dev/null 2>&1 || ! command -v lpstat >/dev/null 2>&1; then
  echo "start-cups: CUPS is not installed (scripts/setup.sh installs it)" >&2
  exit 0
fi
if running; then
  echo "start-cups: the CUPS server is running"
  exit 0
fi
root=""
if [ "$(id -u)" -ne 0 ]; then
  if command -v sudo >/dev/null 2>&1; then root="sudo"; else
    echo "start-cups: only root can start cupsd" >&2
    exit 0
  fi
fi
$root mkdir -p /run/cups
$root cupsd   # goes to the background by itself
for _ in $(seq 1 100); do
  if running; then
    echo "start-cups: CUPS server started"
    exit 0
  fi
  sleep 0.1
done
echo "start-cups: cupsd did not answer within 10 s" >&2
exit 0
