#!/usr/bin/env bash
# Installs what building and testing vek needs, from Debian packages, when it is missing.
set -euo pipefail

packages=(
  cmake make g++ pkg-config
  googletest libgtest-dev libbenchmark-dev
  libeigen3-dev libtinyxml2-dev
  g++-mingw-w64-x86-64-posix wine64 xvfb xauth
)

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
bash "$(dirname "$0")/fetch-tinyxml2-source.sh"
