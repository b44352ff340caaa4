#!/usr/bin/env bash
# Sets everything up, then builds and runs every test: Linux (with the installation, the Debian
# packages in build/linux/packages and the Python module's tests), Linux under AddressSanitizer and
# UndefinedBehaviorSanitizer, a short run of every fuzz target, the threaded parts under
# ThreadSanitizer, and the Windows DLL under Wine. Fails if any of them fails.
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
# The installation must serve a client that uses find_package(vek) and one that uses pkg-config,
# every installed header must compile with the installed include path alone, and the installed tool
# and Python module must find the library from wherever the prefix is.
check_install() {
  local prefix=$PWD/build/install client=$PWD/build/client
  local base=$client/base libdir
  libdir=$(sed -n 's/^CMAKE_INSTALL_LIBDIR:PATH=//p' build/linux/CMakeCache.txt)
  rm -rf "$prefix" "$client"
  mkdir -p "$client/pkg-config"
  cmake --install build/linux --prefix "$prefix" >/dev/null || return 1
  { cmake -S tests/package -B "$client" -DCMAKE_PREFIX_PATH="$prefix" && cmake --build "$client"; } >/dev/null ||
    { echo "package: the find_package(vek) client does not build"; return 1; }
  VEK_BASE_DIR="$base" LD_LIBRARY_PATH="$prefix/$libdir" "$client/vekClient" >/dev/null ||
    { echo "package: the find_package(vek) client fails"; return 1; }
  local flags
  flags=$(PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig" pkg-config --cflags --libs vek) &&
    g++ -std=c++20 tests/package/vekClient.cxx $flags -o "$client/pkg-config/vekClient" ||
    { echo "package: the pkg-config client does not build"; return 1; }
  VEK_BASE_DIR="$base" LD_LIBRARY_PATH="$prefix/$libdir" "$client/pkg-config/vekClient" >/dev/null ||
    { echo "package: the pkg-config client fails"; return 1; }
  local header
  for header in "$prefix"/include/vek/*.h; do
    echo "#include \"$(basename "$header")\""
  done >"$client/every-header.cxx"
  g++ -std=c++20 -fsyntax-only $(PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig" pkg-config --cflags vek) \
    "$client/every-header.cxx" || { echo "package: an installed header needs one that is not installed"; return 1; }
  env -i VEK_BASE_DIR="$base" "$prefix/bin/vek" version >/dev/null ||
    { echo "package: the installed tool does not run without a library path"; return 1; }
  env -i VEK_BASE_DIR="$base" PYTHONPATH="$prefix/lib/python3/dist-packages" "$python" -c 'import vek' ||
    { echo "package: the installed Python module does not import"; return 1; }
  [ -f "$prefix/share/doc/vek/html/index.html" ] || { echo "package: no API reference installed"; return 1; }
  echo "package: clients built with find_package(vek) and with pkg-config run; every installed header" \
    "compiles; the installed tool and Python module run; API reference installed"
}

# The Python module's tests, by the interpreter it was built for, in a base folder of their own.
# pytest's closing line is the summary; its exit status 5 (no test collected) fails too. At exit
# the library's leak registry must have found every object let go.
check_python() {
  local base=$PWD/build/linux/testbase/python status=0
  rm -rf "$base"
  compgen -G "build/linux/python/vek.*.so" >/dev/null || { echo "python: the module was not built"; return 1; }
  VEK_BASE_DIR="$base" VEK_TOOL="$PWD/build/linux/bin/vek" PYTHONPATH="$PWD/build/linux/python" \
    "$python" -m pytest -q -p no:cacheprovider python/tests || status=$?
  [ $status -eq 0 ] || return 1
  if [ "$(grep . "$base/Temp/DebugLog.txt" 2>/dev/null | tail -n 1)" != "Found 0 Leaks" ]; then
    tail -n 20 "$base/Temp/DebugLog.txt"
    echo "python: leaks reported at exit"
    return 1
  fi
}

# The Debian packages of the Linux build, in build/linux/packages, and what they hold.
check_debian_packages() {
  rm -rf build/linux/packages
  (cd build/linux && cpack -G DEB) >build/linux.cpack.log 2>&1 || { tail -30 build/linux.cpack.log; return 1; }
  bash scripts/check-packages.sh build/linux/packages
}

if [ -d build/linux/bin ]; then
  python=$(sed -n 's/^Python3_EXECUTABLE:FILEPATH=//p' build/linux/CMakeCache.txt)
  python=${python:-/usr/bin/python3}
  echo "=== package ==="
  check_install || failed+=("package")
  echo "=== debian packages ==="
  check_debian_packages || failed+=("debian packages")
  echo "=== python ==="
  check_python || failed+=("python")
fi

run_suite sanitizers build/sanitizers -DCMAKE_BUILD_TYPE=Debug -DVEK_SANITIZE=ON

# Every fuzz target for a short run (VEK_FUZZ_RUNS inputs each, 30000 by default, from a fixed
# seed, so that a tree gives the same result every time) from its seeds and the inputs that once
# made it fail, so that a regression in a reader shows at the next submission.
# Longer runs are scripts/fuzz.sh's; it builds the targets with clang in build/fuzz.
echo "=== fuzz ==="
fuzz_start=$SECONDS
for target in $(ls tests/fuzz/corpus); do
  if VEK_FUZZ_RUNS=${VEK_FUZZ_RUNS:-30000} bash scripts/fuzz.sh "$target" 300 >"build/fuzz-$target.log" 2>&1; then
    echo "$target: $(grep -E '^#[0-9]+' "build/fuzz-$target.log" | tail -1)"
  else
    cat "build/fuzz-$target.log"
    failed+=("fuzz $target")
  fi
done
echo "fuzz: $(ls tests/fuzz/corpus | wc -l) targets in $((SECONDS - fuzz_start)) s"

# ThreadSanitizer over the tests of the parts that take locks or run threads: the class
# initializer's lock and the leak registry (Core), the option store in one process and in two
# (Config and the two-process test), SpawnThread and RunExecutable (Process), and the lens array
# operations under OpenMP (Lens). clang with LLVM's OpenMP, whose Archer tool tells the sanitizer
# about OpenMP's own synchronisation; the OpenMP runtime itself is not instrumented. Any report
# fails the run (the sanitizer's exit code).
run_tsan() {
  local dir=build/tsan program
  echo "=== thread sanitizer ==="
  if ! { CC=clang CXX=clang++ cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVEK_SANITIZE=thread \
           -DVEK_BUILD_EXAMPLES=OFF -DVEK_BUILD_PYTHON=OFF &&
         cmake --build "$dir" -j"$jobs" --target vekTestcommonCore vekTestcommonConfig vekTestcommonProcess \
           vekTestcommonLens vekTestHelperProgram vek-tool; } >"$dir.build.log" 2>&1; then
    grep -E -B2 -A12 'error|Error' "$dir.build.log" | head -80
    failed+=("thread sanitizer (build)")
    return
  fi
  local archer
  archer=$(find /usr/lib/llvm-*/lib -name libarcher.so 2>/dev/null | sort | tail -1)
  export OMP_TOOL_LIBRARIES=$archer TSAN_OPTIONS="ignore_noninstrumented_modules=1"
  for program in Core Config Process Lens; do
    rm -rf "$dir/testbase/$program"
    if VEK_BASE_DIR=$PWD/$dir/testbase/$program "$dir/bin/vekTestcommon$program" >"$dir-$program.log" 2>&1; then
      echo "$program: $(tail -1 "$dir-$program.log")"
    else
      grep -E -A30 'WARNING: ThreadSanitizer|FAILED|Failure' "$dir-$program.log" | head -120
      failed+=("thread sanitizer ($program)")
    fi
  done
  sh tests/common/Config/vekTwoProcessesTest.sh "$dir/bin/vek" "$PWD/$dir/testbase/TwoProcesses" ||
    failed+=("thread sanitizer (two processes)")
  unset OMP_TOOL_LIBRARIES TSAN_OPTIONS
}
run_tsan
run_suite windows build/windows -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-w64-x86_64.cmake"

if [ ${#failed[@]} -gt 0 ]; then
  echo "FAILED: ${failed[*]}"
  exit 1
fi
echo "All test suites passed (linux, docs, package, debian packages, python, sanitizers, fuzz, thread sanitizer," \
  "windows)."
