#!/usr/bin/env bash
# Builds Tarnwick and runs every test: unit and scenario tests, the X11 and
# end-to-end tests on a virtual desktop of their own, the unit tests again
# under AddressSanitizer and UndefinedBehaviorSanitizer, the tests that share
# objects between threads under ThreadSanitizer, and a short run of each fuzz
# target.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh

scripts/build.sh build
scripts/virtual-desktop.sh ctest --test-dir build --output-on-failure -j"$(nproc)" --timeout 300

if [ "${TARNWICK_SKIP_SANITIZERS:-0}" != 1 ]; then
  scripts/build.sh build-asan -DTARNWICK_SANITIZE=ON -DTARNWICK_BUILD_BENCHMARKS=OFF
  ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir build-asan --output-on-failure -j"$(nproc)" -L unit --timeout 300

  # A race shows only now and then; repeating the threaded tests makes
  # ThreadSanitizer see one nearly every run.
  cmake -S . -B build-tsan -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTARNWICK_SANITIZE_THREADS=ON \
    -DTARNWICK_BUILD_BENCHMARKS=OFF >/dev/null
  cmake --build build-tsan -j"$(nproc)" --target support_tests shortcuts_tests objectstore_tests
  for suite in support_tests shortcuts_tests objectstore_tests; do
    TSAN_OPTIONS=halt_on_error=1 "build-tsan/tests/$suite" --gtest_filter='*Thread*' \
      --gtest_repeat=20 --gtest_brief=1
  done
fi

if [ "${TARNWICK_SKIP_FUZZERS:-0}" != 1 ]; then
  scripts/fuzz.sh 15
fi
