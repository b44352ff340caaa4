#!/usr/bin/env bash
# Runs one fuzz target of tests/fuzz for a while:
#   scripts/fuzz.sh TARGET SECONDS     e.g. scripts/fuzz.sh CalibrationRecords 600
#   scripts/fuzz.sh --list             the targets
# With VEK_FUZZ_RUNS set the run stops after that many inputs instead, from the fixed seed
# VEK_FUZZ_SEED (default 1), with SECONDS only as a limit: the same tree then fuzzes the same
# inputs every time, which is what CI needs (a time limit would try more or fewer of them as the
# machine is busy, and a failure could come and go).
# Builds the fuzz targets first (clang, AddressSanitizer and UndefinedBehaviorSanitizer, in
# build/fuzz). The run starts from the seeds in tests/fuzz/corpus/TARGET and the inputs that once
# failed (tests/fuzz/regressions/TARGET), and keeps what it finds in build/fuzz/corpus/TARGET. A
# crashing input is saved in build/fuzz/crashes/TARGET/ together with the run's report (the .log
# file of the same name); the script then fails. Every crash belongs in the ordinary test suite as
# a regression test, with the input as a file.
set -uo pipefail
cd "$(dirname "$0")/.."

build=build/fuzz
if [ "${1:-}" = --list ]; then
  ls tests/fuzz/corpus
  exit 0
fi
if [ $# -ne 2 ] || ! [ "$2" -gt 0 ] 2>/dev/null || [ ! -d "tests/fuzz/corpus/$1" ]; then
  echo "usage: scripts/fuzz.sh TARGET SECONDS   (targets: scripts/fuzz.sh --list)" >&2
  exit 2
fi
target=$1
seconds=$2

mkdir -p build
if [ ! -f "$build/CMakeCache.txt" ]; then
  CC=clang CXX=clang++ cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVEK_SANITIZE=ON \
    -DVEK_BUILD_FUZZERS=ON -DVEK_BUILD_TESTS=OFF -DVEK_BUILD_TOOLS=OFF -DVEK_BUILD_EXAMPLES=OFF \
    -DVEK_BUILD_PYTHON=OFF >"$build.configure.log" 2>&1 || { cat "$build.configure.log"; exit 1; }
fi
cmake --build "$build" -j"${VEK_JOBS:-2}" --target "vekFuzz$target" >"$build.build.log" 2>&1 ||
  { grep -E -A12 'error' "$build.build.log" | head -80; exit 1; }

corpus=$build/corpus/$target
crashes=$build/crashes/$target
mkdir -p "$corpus" "$crashes" "$build/base"
log=$crashes/run-$(date +%Y%m%d-%H%M%S).log
before=$(ls "$crashes" | grep -c -v '\.log$')

# The library settles its folders when it loads, before the target moves it to a fresh one.
export VEK_BASE_DIR=$PWD/$build/base
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=0}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
# New inputs go to the first folder; the seeds and the inputs that once failed are read first.
inputs=("$corpus" "tests/fuzz/corpus/$target")
[ -d "tests/fuzz/regressions/$target" ] && inputs+=("tests/fuzz/regressions/$target")
repeatable=()
[ -n "${VEK_FUZZ_RUNS:-}" ] && repeatable=(-runs="$VEK_FUZZ_RUNS" -seed="${VEK_FUZZ_SEED:-1}")
"$build/bin/vekFuzz$target" -max_total_time="$seconds" "${repeatable[@]}" -timeout=20 -rss_limit_mb=2048 \
  -print_final_stats=1 -artifact_prefix="$crashes/" "${inputs[@]}" >"$log" 2>&1
status=$?

# The summary: executions, coverage (cov: edges, ft: features), corpus size, memory.
grep -E '^#[0-9]+' "$log" | tail -1
grep -E '^stat::(number_of_executed_units|peak_rss_mb)' "$log"
after=$(ls "$crashes" | grep -c -v '\.log$')
if [ "$status" -ne 0 ] || [ "$after" -gt "$before" ]; then
  for input in $(ls -t "$crashes" | grep -v '\.log$' | head -n $((after - before))); do
    cp "$log" "$crashes/$input.log"
    echo "CRASH: $crashes/$input (report: $crashes/$input.log)"
  done
  grep -E 'ERROR|runtime error|property broken|SUMMARY' "$log" | head -10
  exit 1
fi
rm -f "$log"
echo "$target: no crash in ${VEK_FUZZ_RUNS:+$VEK_FUZZ_RUNS inputs or }$seconds s"
