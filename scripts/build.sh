#!/usr/bin/env bash
# Configures and builds one build tree: scripts/build.sh [BUILD_DIR] [CMAKE_ARGS...]
# Compiles through ccache when it is installed, so that building again, in
# this tree or in another clone on the same machine, redoes only what changed.
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${1:-build}
shift || true

launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
  # Paths below the checkout count relative to it, and the build folder's
  # own path doesn't count, so clones in other places share the cache.
  export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$PWD} CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-1}
fi

cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" \
  -DTARNWICK_BUILD_NUMBER="$(git rev-list --count HEAD 2>/dev/null || echo 1)" "$@" >/dev/null
cmake --build "$dir" -j"$(nproc)"
