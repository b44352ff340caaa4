#!/usr/bin/env bash
# Sets up what the library and the vek tool need, builds them, and shows what the tool does.
# Tests, benchmarks and the Windows build are scripts/test.sh's.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh --run
cmake -S . -B build/run -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVEK_BUILD_TESTS=OFF >/dev/null
cmake --build build/run -j"${VEK_JOBS:-2}" --target vek-tool >/dev/null

export VEK_BASE_DIR="${VEK_BASE_DIR:-$PWD/build/demo}"
vek=build/run/bin/vek
show() { echo "\$ vek $*"; "$vek" "$@"; echo; }
# The main job first: a made-up wall calibrated from its spot grids, judged against the truth.
demo="$VEK_BASE_DIR/wall"
show demo "$demo"
echo "Pictures: $demo/camera-view.svg (the camera's view: footprints, overlaps, warp grids, fill region)"
echo "          $demo/warps/projector_<k>_alpha.png (each projector's blend, at its resolution)"
echo
show version
show error 79
show error 79 --language de
show error 79 --language fr
show error 79 --language ja
show error 48
show error 32847
show option set Gain Float 0.75
show option get Gain
show option list
echo "Debug log: $VEK_BASE_DIR/Temp/DebugLog.txt"
