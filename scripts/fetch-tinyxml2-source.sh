#!/usr/bin/env bash
# The Windows cross-build compiles tinyxml2 itself (Debian ships it only for Linux): this puts
# Debian's source package of it into .deps/tinyxml2, once. Source entries are derived from the
# machine's own Debian sources for the download, and removed again afterwards.
set -euo pipefail
cd "$(dirname "$0")/.."
dest=.deps/tinyxml2
[ -f "$dest/tinyxml2.cpp" ] && exit 0

sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
added=()
cleanup() { [ ${#added[@]} -eq 0 ] || "${sudo_cmd[@]}" rm -f "${added[@]}"; }
trap cleanup EXIT

if ! grep -rqs -E '^(deb-src|Types:.*deb-src)' /etc/apt/sources.list /etc/apt/sources.list.d/; then
  for file in /etc/apt/sources.list.d/*.sources; do
    [ -f "$file" ] || continue
    target=/etc/apt/sources.list.d/vek-src-$(basename "$file")
    sed 's/^Types: deb$/Types: deb-src/' "$file" | "${sudo_cmd[@]}" tee "$target" >/dev/null
    added+=("$target")
  done
  if grep -qs '^deb ' /etc/apt/sources.list; then
    grep '^deb ' /etc/apt/sources.list | sed 's/^deb /deb-src /' | "${sudo_cmd[@]}" tee /etc/apt/sources.list.d/vek-src.list >/dev/null
    added+=(/etc/apt/sources.list.d/vek-src.list)
  fi
  "${sudo_cmd[@]}" apt-get update -qq
fi

work=$(mktemp -d)
(cd "$work" && apt-get source --download-only -qq tinyxml2 2>/dev/null && tar xf tinyxml2_*.orig.tar.*)
mkdir -p .deps
rm -rf "$dest"
mv "$work"/tinyxml2-*/ "$dest"
rm -rf "$work"
echo "tinyxml2 source in $dest"
