#!/bin/sh
# Two processes set different options of one store at the same time: every value must survive.
# Arguments: the vek tool, and a base directory to use (emptied first).
set -eu
vek=$1
export VEK_BASE_DIR=$2
rm -rf "$VEK_BASE_DIR"
count=60

writer() {
  i=0
  while [ $i -lt $count ]; do
    "$vek" option set "$1$i" Int "$i" >/dev/null 2>&1 || exit 1
    i=$((i + 1))
  done
}

writer A & first=$!
writer B & second=$!
wait $first
wait $second

lost=0
for prefix in A B; do
  i=0
  while [ $i -lt $count ]; do
    [ "$("$vek" option get "$prefix$i")" = "$i" ] || { echo "lost $prefix$i"; lost=$((lost + 1)); }
    i=$((i + 1))
  done
done
echo "$((2 * count - lost)) of $((2 * count)) values kept"
[ $lost -eq 0 ]
