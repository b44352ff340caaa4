#!/bin/sh
# With VEK_BASE_DIR set, a test program and the tool write nothing under HOME; and the tool logs to
# a file of its own, leaving the programs' debug log and its generations as they were.
# Arguments: a scratch folder (emptied first), the vek tool, a test program.
set -eu
scratch=$1
vek=$2
program=$3
rm -rf "$scratch"
mkdir -p "$scratch/home"
export HOME="$scratch/home" VEK_BASE_DIR="$scratch/base"
unset XDG_DATA_HOME XDG_CONFIG_HOME VEK_REGISTRY_DIR
temp=$VEK_BASE_DIR/Temp
failed=0
fail() {
  echo "FAILED: $*"
  failed=1
}

# What a build's test discovery does, then a program's own log: one run, one log, no generation.
"$program" --gtest_list_tests >/dev/null
[ -s "$temp/DebugLog.txt" ] || fail "the program wrote no $temp/DebugLog.txt"
programLog=$(cat "$temp/DebugLog.txt")

# Eleven tool runs, some failing, would once have rotated the program's log out of reach.
for arguments in "version" "error 79" "option set A Int 3" "option get A" "option list" "option get Missing" \
                 "error 2" "version" "version" "version" "version"; do
  # shellcheck disable=SC2086
  "$vek" $arguments >/dev/null 2>&1 || true
done
[ "$(cat "$temp/DebugLog.txt")" = "$programLog" ] || fail "the tool changed DebugLog.txt"
[ ! -e "$temp/DebugLog_0.txt" ] || fail "the tool rotated DebugLog.txt"
[ -s "$temp/vekTool.log" ] || fail "the tool wrote no $temp/vekTool.log"
[ "$("$vek" option get A)" = 3 ] || fail "the option store is not in the base folder"

left=$(cd "$HOME" && find . -mindepth 1)
[ -z "$left" ] || fail "written under HOME: $left"
exit $failed
