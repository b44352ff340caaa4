#!/usr/bin/env bash
# Sets everything up, then builds and runs every test: Linux, Linux under AddressSanitizer and
# UndefinedBehaviorSanitizer, and the Windows DLL under Wine. Fails if any of the three fails.
set -uo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh || exit 1

jobs=${VEK_JOBS:-2}
failed=()

run_suite() {  # name, build dir, cmake arguments...
  local name=$1 dir=$2
  shift 2
  echo "=== $name ==="
  if ! cmake -S . -B "$dir" "$@" >"$dir.configure.log" 2>&1; then
    cat "$dir.configure.log"
    failed+=("$name (configure)")
    return
  fi
  if ! cmake --build "$dir" -j"$jobs" >"$dir.build.log" 2>&1; then
    grep -E -B2 -A12 'error|Error' "$dir.build.log" | head -150
    failed+=("$name (build)")
    return
  fi
  grep -E 'warning:' "$dir.build.log" | sort -u | head -40
  local runner=()
  [ "$name" = windows ] && runner=(xvfb-run -a)
  if ! (cd "$dir" && "${runner[@]}" ctest --output-on-failure -j"$jobs"); then
    failed+=("$name (tests)")
  fi
}

mkdir -p build
run_suite linux build/linux -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVEK_BUILD_TESTS=ON -DVEK_BUILD_BENCHMARKS=ON
# The API reference from the headers' comments; a Doxygen warning fails it.
if [ -d build/linux/bin ]; then
  echo "=== docs ==="
  if cmake --build build/linux --target docs >build/linux.docs.log 2>&1; then
    echo "docs: API reference in build/linux/docs/html"
  else
    head -60 build/linux.docs.log
    failed+=("docs")
  fi
fi
# The installed package must work for a client that only uses find_package(vek).
if [ -d build/linux/bin ]; then
  echo "=== package ==="
  rm -rf build/install build/client
  if cmake --install build/linux --prefix build/install >/dev/null &&
     cmake -S tests/package -B build/client -DCMAKE_PREFIX_PATH="$PWD/build/install" >/dev/null &&
     cmake --build build/client >/dev/null &&
     VEK_BASE_DIR="$PWD/build/client/base" LD_LIBRARY_PATH="$PWD/build/install/lib" build/client/vekClient &&
     # The installed tool finds its library from any prefix, with no library path set.
     env -i VEK_BASE_DIR="$PWD/build/client/base" build/install/bin/vek version >/dev/null &&
     [ -f build/install/share/doc/vek/html/index.html ]; then
    echo "package: installed library found and linked by a client; the installed tool runs; API reference installed"
  else
    failed+=("package")
  fi
fi

run_suite sanitizers build/sanitizers -DCMAKE_BUILD_TYPE=Debug -DVEK_SANITIZE=ON
run_suite windows build/windows -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-w64-x86_64.cmake"

if [ ${#failed[@]} -gt 0 ]; then
  echo "FAILED: ${failed[*]}"
  exit 1
fi
echo "All test suites passed (linux, sanitizers, windows)."
