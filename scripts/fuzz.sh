#!/usr/bin/env bash
# Builds the fuzz targets with clang in build-fuzz and runs each for a short
# while; fails when one crashes. scripts/fuzz.sh [SECONDS_PER_TARGET]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-20}
CXX=clang++ scripts/build.sh build-fuzz -DTARNWICK_BUILD_FUZZERS=ON -DTARNWICK_BUILD_TESTS=OFF \
  -DTARNWICK_BUILD_BENCHMARKS=OFF --target fuzzers

status=0
for fuzzer in build-fuzz/fuzz/*Fuzzer; do
  [ -x "$fuzzer" ] || continue
  name=$(basename "$fuzzer")
  corpus=build-fuzz/corpus/$name
  mkdir -p "$corpus"
  echo "== $name (${seconds}s)"
  if ! (cd build-fuzz && "../$fuzzer" -max_total_time="$seconds" -timeout=10 \
        -print_final_stats=1 "../$corpus" >"fuzz-$name.log" 2>&1); then
    echo "$name failed; the last lines of build-fuzz/fuzz-$name.log:"
    tail -40 "build-fuzz/fuzz-$name.log"
    status=1
  else
    grep -E '^stat::number_of_executed_units' "build-fuzz/fuzz-$name.log" || true
  fi
done
exit $status
