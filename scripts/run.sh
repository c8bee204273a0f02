#!/usr/bin/env bash
# Builds Tarnwick and runs it: on the current X display when there is one,
# otherwise on a virtual desktop that this script starts, with a few file
# manager windows, a terminal, and the panel brought up once (see
# scripts/demo-desktop.sh).
#   scripts/run.sh [TARNWICK_ARGS...]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh build
binary=build/src/main/tarnwick

if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
  exec "$binary" "$@"
fi

echo "No X display: starting a virtual desktop (Xvfb with openbox) for Tarnwick."
exec scripts/virtual-desktop.sh scripts/demo-desktop.sh "$binary" "$@"
