#!/bin/sh
# Two processes add display systems to one list at the same time: every system must survive, and
# exactly one is active.
# Arguments: the vek tool, and a base directory to use (emptied first).
set -eu
vek=$1
export VEK_BASE_DIR=$2
rm -rf "$VEK_BASE_DIR"
count=40

adder() {
  i=0
  while [ $i -lt $count ]; do
    "$vek" systems add "$1$i" "Wall $1$i" "/walls/$1$i" --projectors 4 --cameras 1 >/dev/null 2>&1 || exit 1
    i=$((i + 1))
  done
}

adder A & first=$!
adder B & second=$!
wait $first || { echo "the first adder failed"; exit 1; }
wait $second || { echo "the second adder failed"; exit 1; }

list=$("$vek" systems list)
lost=0
for prefix in A B; do
  i=0
  while [ $i -lt $count ]; do
    [ "$(printf '%s\n' "$list" | grep -c "^$prefix$i	Wall $prefix$i	/walls/$prefix$i	Flat	4	1	never	")" = 1 ] ||
      { echo "lost $prefix$i"; lost=$((lost + 1)); }
    i=$((i + 1))
  done
done
active=$(printf '%s\n' "$list" | grep -c '	active$' || true)
echo "$((2 * count - lost)) of $((2 * count)) systems kept, $active active"
[ $lost -eq 0 ] && [ "$active" = 1 ]
