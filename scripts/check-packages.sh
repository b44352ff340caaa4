#!/usr/bin/env bash
# Checks the Debian packages that "cpack -G DEB" made in a build tree: each holds what it should and
# not what another package holds, names its dependencies, and the library carries its versioned
# SONAME. It only reads the packages (dpkg-deb); installing them is the fresh-machine check's part.
#   scripts/check-packages.sh [DIR]     DIR: the packages' folder (default build/linux/packages)
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${1:-build/linux/packages}
problems=()
problem() { problems+=("$*"); }

# The one package file of a name, or nothing.
package_file() {
  local files=("$dir/$1"_*.deb)
  if [ ${#files[@]} -eq 1 ] && [ -f "${files[0]}" ]; then echo "${files[0]}"; fi
}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Paths inside a package, one a line, without the leading "./" (read once: grep -q would cut the
# listing short, which pipefail takes for a failure).
contents() {
  local list=$work/$(basename "$1").list
  [ -f "$list" ] || dpkg-deb -c "$1" | awk '{ sub(/^\.\//, "", $6); print $6 }' >"$list"
  cat "$list"
}
has() {  # package file, path as an extended regular expression
  grep -Eqx "$2" <(contents "$1") || problem "$(basename "$1"): nothing matches $2"
}
lacks() {
  ! grep -Eqx "$2" <(contents "$1") || problem "$(basename "$1"): holds $2"
}
depends_on() {  # package file, text that must appear in Depends
  grep -Fq "$2" <<<"$(dpkg-deb -f "$1" Depends)" || problem "$(basename "$1"): Depends lacks \"$2\""
}

lib='usr/lib(/[a-z0-9_-]+-linux-gnu)?'
runtime=$(package_file libvek0)
dev=$(package_file libvek-dev)
tools=$(package_file vek-tools)
python=$(package_file python3-vek)
for found in "libvek0=$runtime" "libvek-dev=$dev" "vek-tools=$tools" "python3-vek=$python"; do
  [ -n "${found#*=}" ] || problem "${found%%=*}: expected one package file in $dir"
done
if [ -z "$runtime" ]; then
  printf 'packages: %s\n' "${problems[@]}"
  exit 1
fi
version=$(dpkg-deb -f "$runtime" Version)
exact="libvek0 (= $version)"

has "$runtime" "$lib/libvek\.so\.0"
has "$runtime" "$lib/libvek\.so\.0\.[0-9]+\.[0-9]+"
lacks "$runtime" "$lib/libvek\.so|usr/include/.*|usr/bin/.*"
depends_on "$runtime" "libgomp1"
depends_on "$runtime" "libtinyxml2"
grep -Fqx "libvek 0 libvek0 (>= $version)" <<<"$(dpkg-deb -I "$runtime" shlibs 2>/dev/null || true)" ||
  problem "$(basename "$runtime"): no shlibs line for libvek 0"
dpkg-deb -x "$runtime" "$work/runtime"
library=$(find "$work/runtime" -name 'libvek.so.0.*' -type f | head -1)
soname=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
[ "$soname" = libvek.so.0 ] || problem "$(basename "$runtime"): SONAME is \"$soname\", not libvek.so.0"

if [ -n "$dev" ]; then
  for header in vekTriangleMesh vekErrorHelper vekLensWarpIO vekTextureMesh vekWarpCalibration vekVersion; do
    has "$dev" "usr/include/vek/$header\.h"
  done
  # Only the library's own sources include these.
  lacks "$dev" "usr/include/vek/(vekPlatform|vekLensWarpArray|vekLensWarpStream|vekErrorTable)\.h"
  has "$dev" "$lib/libvek\.so"
  has "$dev" "$lib/cmake/vek/vekConfig\.cmake"
  has "$dev" "$lib/cmake/vek/vekTargets\.cmake"
  has "$dev" "$lib/pkgconfig/vek\.pc"
  lacks "$dev" "$lib/libvek\.so\.0.*|usr/bin/.*"
  depends_on "$dev" "$exact"
fi
if [ -n "$tools" ]; then
  has "$tools" "usr/bin/vek"
  lacks "$tools" "usr/lib/.*\.so.*|usr/include/.*"
  depends_on "$tools" "$exact"
fi
if [ -n "$python" ]; then
  has "$python" "usr/lib/python3/dist-packages/vek\.cpython-[^/]+\.so"
  lacks "$python" "$lib/libvek\.so.*"
  depends_on "$python" "$exact"
  depends_on "$python" "python3-numpy"
  depends_on "$python" "python3 (>= 3."
fi

if [ ${#problems[@]} -gt 0 ]; then
  printf 'packages: %s\n' "${problems[@]}"
  exit 1
fi
echo "packages: libvek0, libvek-dev, vek-tools and python3-vek $version hold what they should, with SONAME $soname"
