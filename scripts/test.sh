#!/usr/bin/env bash
# Builds Tarnwick and runs every test: unit and scenario tests, the X11 and
# end-to-end tests on a virtual desktop of their own, the unit tests again
# under AddressSanitizer and UndefinedBehaviorSanitizer, and a short run of
# each fuzz target.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh

scripts/build.sh build
scripts/virtual-desktop.sh ctest --test-dir build --output-on-failure -j"$(nproc)" --timeout 300

if [ "${TARNWICK_SKIP_SANITIZERS:-0}" != 1 ]; then
  scripts/build.sh build-asan -DTARNWICK_SANITIZE=ON -DTARNWICK_BUILD_BENCHMARKS=OFF
  ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir build-asan --output-on-failure -j"$(nproc)" -L unit --timeout 300
fi

if [ "${TARNWICK_SKIP_FUZZERS:-0}" != 1 ]; then
  scripts/fuzz.sh 15
fi
