// Runs the calibration path: from a calibration folder (each projector's spot grid as the camera
// saw it, the camera's lens, the fill region) to every projector's warp mesh and blend.
// Usage: vekCalibrationPathExample [CALIBRATION_DIR] OUT_DIR
// Without CALIBRATION_DIR a made-up wall of 3 x 2 projectors is written to OUT_DIR/calibration first.
#include <cstdio>
#include <string>

#include "vekErrorHelper.h"
#include "vekSyntheticWall.h"
#include "vekWarpCalibration.h"

int main(int argc, char** argv) {
  using namespace vek;
  if (argc < 2 || argc > 3) {
    std::fprintf(stderr, "usage: %s [CALIBRATION_DIR] OUT_DIR\n", argv[0]);
    return 2;
  }
  const std::string outDir = argv[argc - 1];
  std::string calibrationDir = argc == 3 ? argv[1] : outDir + "/calibration";
  int status = VEK_SUCCESS;
  if (argc == 2) {
    auto wall = SmartPointer<SyntheticWall>::New();
    status = wall->Generate(SyntheticWall::Parameters());
    if (status == VEK_SUCCESS) status = wall->WriteCalibrationFolder(calibrationDir);
  }

  // Settings: the built-in defaults, then `defaults` (a program would take them from the option
  // store), then the calibration folder's own, then `overrides` (a command line's, say).
  CalibrationSettings defaults;
  defaults.BlendGamma = 2.4;
  CalibrationSettingOverrides overrides;
  overrides.WarpStep = 64;
  SmartPointer<WarpCalibration> result;
  if (status == VEK_SUCCESS)
    status = WarpCalibration::Run(calibrationDir, outDir, defaults, overrides, &result,
                                  [](const std::string& stage, int done, int total) {
                                    if (done == total) std::printf("%s: %d done\n", stage.c_str(), total);
                                  });
  if (status != VEK_SUCCESS) {
    std::fprintf(stderr, "%s\n", ErrorHelper::GetErrorMessageWithNoExtras(status).c_str());
    return 1;
  }

  // Each projector's warp is in OUT_DIR/projector_<k>.warp; the same results are in memory too.
  for (int k = 0; k < result->GetNumberOfProjectors(); ++k) {
    std::printf("projector %d: %s, %d vertices, covers %.1f%% of the fill region, neighbours", k,
                WarpCalibration::WarpFileName(k).c_str(), result->GetWarp(k)->GetNumPoints(),
                100.0 * result->GetCoverage(k));
    for (int neighbour : result->GetNeighbors(k)) std::printf(" %d", neighbour);
    std::printf("\n");
  }
  std::printf("gamma %g, warp step %d\n", result->GetSettings().BlendGamma, result->GetSettings().WarpStep);
  return 0;
}
