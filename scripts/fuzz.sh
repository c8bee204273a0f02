#!/usr/bin/env bash
# Builds the fuzz targets with clang in build-fuzz and runs each for a short
# while; fails when one crashes. scripts/fuzz.sh [SECONDS_PER_TARGET]
# A target's dictionary (fuzz/<name>.dict) and seeds (fuzz/seeds/<name>/)
# are used where they exist. Each runs on a 1 MiB stack, an eighth of the
# usual, so that input nested a few thousand levels deep overflows it
# wherever a reader recurses without a limit.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-20}
CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DTARNWICK_BUILD_FUZZERS=ON -DTARNWICK_BUILD_TESTS=OFF -DTARNWICK_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build build-fuzz --target fuzzers -j"$(nproc)"

status=0
for fuzzer in build-fuzz/fuzz/*Fuzzer; do
  [ -x "$fuzzer" ] || continue
  name=$(basename "$fuzzer")
  corpus=build-fuzz/corpus/$name
  mkdir -p "$corpus"
  extra=()
  [ -f "fuzz/$name.dict" ] && extra+=("-dict=../fuzz/$name.dict")
  [ -d "fuzz/seeds/$name" ] && extra+=("../fuzz/seeds/$name")
  echo "== $name (${seconds}s)"
  if ! (cd build-fuzz && ulimit -s 1024 && "../$fuzzer" -max_total_time="$seconds" -timeout=10 \
        -print_final_stats=1 "../$corpus" "${extra[@]}" >"fuzz-$name.log" 2>&1); then
    echo "$name failed; the last lines of build-fuzz/fuzz-$name.log:"
    tail -40 "build-fuzz/fuzz-$name.log"
    status=1
  else
    grep -E '^stat::number_of_executed_units' "build-fuzz/fuzz-$name.log" || true
  fi
done
exit $status
