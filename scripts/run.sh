#!/usr/bin/env bash
# Sets everything up, builds the library and the vek tool, and shows what the tool does.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build/linux -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVEK_BUILD_BENCHMARKS=ON >/dev/null
cmake --build build/linux -j"${VEK_JOBS:-2}" >/dev/null

export VEK_BASE_DIR="${VEK_BASE_DIR:-$PWD/build/demo}"
vek=build/linux/bin/vek
show() { echo "\$ vek $*"; "$vek" "$@"; echo; }
show version
show error 79
show error 79 --language de
show error 79 --language fr
show error 79 --language ja
show error 48
show error 581
show option set Gain Float 0.75
show option get Gain
echo "Debug log: $VEK_BASE_DIR/Temp/DebugLog.txt"
