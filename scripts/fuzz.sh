#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ with clang, ASan and UBSan, and runs each of them.
#   scripts/fuzz.sh               a smoke run: a fixed number of inputs per target, from its seeds (CI)
#   scripts/fuzz.sh SECONDS       a campaign: SECONDS per target, the corpora kept in fuzz-corpus/
# A crash, a leak, a sanitizer report or an out-of-memory input ends the run with the input saved
# under build-fuzz/artifacts/; it belongs in fuzz/regressions/<target>/ with its fix.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh clang libfuzzer-14-dev
cmake -S . -B build-fuzz -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DZDSG_BUILD_FUZZERS=ON -DZDSG_SANITIZE=address,undefined \
  -DZDSG_BUILD_TESTS=OFF -DZDSG_BUILD_TOOLS=OFF -DZDSG_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build build-fuzz -j2
mkdir -p build-fuzz/artifacts
export LSAN_OPTIONS="suppressions=$PWD/fuzz/lsan.supp${LSAN_OPTIONS:+:$LSAN_OPTIONS}"

declare -A smoke_runs=([netcdf]=4000 [ncml]=4000 [units]=50000)
for target in netcdf ncml units; do
  if [ $# -ge 1 ]; then
    corpus="fuzz-corpus/$target"
    limit=(-max_total_time="$1")
  else
    corpus=$(mktemp -d)
    limit=(-runs="${smoke_runs[$target]}")
  fi
  mkdir -p "$corpus"
  echo "fuzz_$target: ${limit[*]}" >&2
  set +e
  build-fuzz/fuzz/fuzz_$target "${limit[@]}" -dict=fuzz/cf.dict -rss_limit_mb=2048 -timeout=30 \
    -print_final_stats=1 -artifact_prefix="build-fuzz/artifacts/$target-" \
    "$corpus" "build-fuzz/fuzz/seeds/$target" "fuzz/regressions/$target" >"build-fuzz/fuzz_$target.log" 2>&1
  status=$?
  set -e
  grep -E '^(#[0-9]+[[:space:]]+(INITED|DONE)|stat::|==[0-9]+==|SUMMARY)' "build-fuzz/fuzz_$target.log" >&2 || true
  if [ $# -eq 0 ]; then rm -rf "$corpus"; fi
  if [ "$status" -ne 0 ]; then
    echo "fuzz_$target failed (build-fuzz/fuzz_$target.log); the input is in build-fuzz/artifacts/" >&2
    exit "$status"
  fi
done
