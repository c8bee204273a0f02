#!/usr/bin/env bash
# Builds Tarnwick and runs every check, stage by stage; stops at the first
# stage that fails and prints how long each stage took.
#   rules      layering and formatting (scripts/check-rules.sh)
#   sanitized  one tree under AddressSanitizer and UndefinedBehaviorSanitizer,
#              and every test in it (unit, views, X11, end-to-end) on a
#              virtual desktop of its own
#   optimised  the program and the benchmarks as they ship, each benchmark
#              run briefly so that none rots
#   threads    the tests of objects shared between threads, repeated under
#              ThreadSanitizer
#   fuzz       a short run of each fuzz target
# The long soak stays out; run it with
#   scripts/virtual-desktop.sh ctest --test-dir build-release -L soak
set -euo pipefail
cd "$(dirname "$0")/.."

# Compiled for finding faults, not for speed: light optimisation, line
# tables only, and the sources compiled a batch at a time, which on two
# cores halves a build without a cache. The optimised tree compiles each
# file on its own, so a file that builds only beside another is caught.
sanitizer_flags=(-DCMAKE_BUILD_TYPE=RelWithDebInfo "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -g1 -DNDEBUG"
  -DCMAKE_UNITY_BUILD=ON)
threaded_suites=(platform_tests support_tests shortcuts_tests objectstore_tests)

rules() {
  scripts/check-rules.sh
}

sanitized() {
  scripts/build.sh build-asan -DTARNWICK_SANITIZE=ON -DTARNWICK_BUILD_BENCHMARKS=OFF \
    "${sanitizer_flags[@]}"
  # A desktop test that fails is run once more before the stage fails: on
  # a loaded machine a real window manager and real applications now and
  # then answer later than a test waits. The failed run's output stays in
  # the log, so that the flake can be mended.
  ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1 \
    scripts/virtual-desktop.sh ctest --test-dir build-asan --output-on-failure -j"$(nproc)" \
    -LE soak --timeout 300 --repeat until-pass:2
}

optimised() {
  scripts/build.sh build-release -DTARNWICK_BUILD_TESTS=OFF
  scripts/virtual-desktop.sh ctest --test-dir build-release --output-on-failure -L bench
}

threads() {
  scripts/build.sh build-tsan -DTARNWICK_SANITIZE_THREADS=ON -DTARNWICK_BUILD_BENCHMARKS=OFF \
    "${sanitizer_flags[@]}" --target "${threaded_suites[@]}"
  # A race shows only now and then; repeating the threaded tests makes
  # ThreadSanitizer see one nearly every run.
  for suite in "${threaded_suites[@]}"; do
    TSAN_OPTIONS=halt_on_error=1 "build-tsan/tests/$suite" --gtest_filter='*Thread*' \
      --gtest_repeat=20 --gtest_brief=1
  done
}

fuzz() {
  scripts/fuzz.sh 15
}

times=()
started=$SECONDS
print_times() {
  local status=$?
  echo
  echo "stage times:"
  for line in "${times[@]}"; do echo "  $line"; done
  printf '  %-10s %3d:%02d%s\n' total $(((SECONDS - started) / 60)) $(((SECONDS - started) % 60)) \
    "$([ $status -eq 0 ] || echo '  (failed)')"
}
trap print_times EXIT

stage() {
  local name=$1 began=$SECONDS
  echo "== $name"
  "$name"
  times+=("$(printf '%-10s %3d:%02d' "$name" $(((SECONDS - began) / 60)) $(((SECONDS - began) % 60)))")
}

scripts/setup.sh
stage rules
stage sanitized
stage optimised
[ "${TARNWICK_SKIP_SANITIZERS:-0}" = 1 ] || stage threads
[ "${TARNWICK_SKIP_FUZZERS:-0}" = 1 ] || stage fuzz
