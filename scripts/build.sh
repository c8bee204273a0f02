#!/usr/bin/env bash
# Configures and builds one build tree: scripts/build.sh [BUILD_DIR] [CMAKE_ARGS...]
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${1:-build}
shift || true
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DTARNWICK_BUILD_NUMBER="$(git rev-list --count HEAD 2>/dev/null || echo 1)" "$@" >/dev/null
cmake --build "$dir" -j"$(nproc)"
