#!/usr/bin/env bash
# Installs what vek needs, from Debian packages, when it is missing.
#   scripts/setup.sh --run   what building the library and the vek tool and running its
#                            demonstration need (README command 1)
#   scripts/setup.sh         everything: also the tests, the benchmarks and the Windows
#                            cross-build run under Wine (README command 2)
# Programs the scripts call are listed as well as libraries: a minimal Debian has no xz, and
# nothing else would install it.
set -euo pipefail

# The library, the tool and the demonstration.
run_packages=(
  cmake make g++ pkg-config        # the build
  libeigen3-dev libtinyxml2-dev    # the library's dependencies
  libcli11-dev libstb-dev          # the tool's command line and its PNG pictures
)
# Tests, benchmarks and the Windows DLL under Wine.
test_packages=(
  googletest libgtest-dev libbenchmark-dev
  g++-mingw-w64-x86-64-posix       # the Windows cross-build
  xz-utils                         # fetch-tinyxml2-source.sh unpacks Debian's .orig.tar.xz
  doxygen graphviz                 # the API reference (the docs target)
  pybind11-dev python3-dev         # the Python module, built for Debian's python3
  python3-numpy python3-pytest     # numpy for the module, pytest for its tests
  python3-opencv                   # the tests compare undistortion with OpenCV's
  dpkg-dev file                    # cpack's Debian packages run dpkg-shlibdeps and file
  wine64 xvfb xauth                # the Windows tests, headless (xvfb-run)
  clang libclang-rt-14-dev         # the fuzz targets (libFuzzer) and the ThreadSanitizer build
  libomp-14-dev                    # clang's OpenMP, with the tool that explains it to the sanitizer
)

packages=("${run_packages[@]}")
if [ "${1:-}" != --run ]; then
  packages+=("${test_packages[@]}")
fi

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done

if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo_cmd=()
  [ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
  export DEBIAN_FRONTEND=noninteractive
  "${sudo_cmd[@]}" apt-get update -qq
  "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# The Windows cross-build needs tinyxml2's source (Debian ships the library for Linux only).
if [ "${1:-}" != --run ]; then
  bash "$(dirname "$0")/fetch-tinyxml2-source.sh"
fi
