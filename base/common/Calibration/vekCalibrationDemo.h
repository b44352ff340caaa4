#pragma once
#include <string>

#include "vekCalibrationAccuracy.h"
#include "vekCalibrationSettings.h"
#include "vekCommonExport.h"
#include "vekSmartPointer.h"
#include "vekSyntheticWall.h"
#include "vekWarpCalibration.h"

namespace vek {

/// The calibration path run on a made-up wall, for a person with no data of their own, and
/// judged against the wall's ground truth. In `outDir`:
///   calibration/         the wall as a calibration folder (SyntheticWall::WriteCalibrationFolder)
///   warps/               what WarpCalibration::Run makes of that folder, read back from its files
///   camera-view.svg      the camera's view (CalibrationPictures::WriteCameraViewSvg)
///   warps/projector_<k>_alpha.png   each projector's alpha map (CalibrationPictures::WriteAlphaPng)
/// The settings are the built-in defaults unless given, so that a demo is the same everywhere.
class VEK_EXPORT CalibrationDemo {
 public:
  static constexpr const char* kCalibrationFolder = "calibration";
  static constexpr const char* kWarpFolder = "warps";
  static constexpr const char* kCameraViewFile = "camera-view.svg";

  /// The warps are judged as their files hold them (TextureMeshReader), with the content target
  /// for a noise-free wall when the wall has no noise. Fails with the first stage's status.
  static int Run(const std::string& outDir, const SyntheticWall::Parameters& wall, const CalibrationSettings& settings,
                 CalibrationAccuracy::Result& accuracy, SmartPointer<WarpCalibration>* result = nullptr,
                 WarpCalibration::ProgressFunction progress = {});

 private:
  CalibrationDemo() = delete;
};

}  // namespace vek
