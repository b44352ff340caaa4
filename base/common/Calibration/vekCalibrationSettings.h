#pragma once
#include "vekCommonExport.h"

namespace vek {

/// The numbers the calibration path is run with, beyond what was measured: the blend gamma (the
/// display's response: alpha^gamma is the light a pixel gives), the warp grid step in projector
/// pixels, and the content size in pixels. Each has a built-in default; the option store may
/// override it, and a calibration folder may override both (CalibrationFolder::ApplySettingsTo).
struct VEK_EXPORT CalibrationSettings {
  static constexpr double kDefaultBlendGamma = 2.2;
  static constexpr int kDefaultWarpStep = 32;
  static constexpr int kDefaultContentWidth = 1920;
  static constexpr int kDefaultContentHeight = 1080;
  /// Gammas above this are no display's response, only a typing error.
  static constexpr double kMaxBlendGamma = 10.0;

  double BlendGamma = kDefaultBlendGamma;
  int WarpStep = kDefaultWarpStep;
  int ContentWidth = kDefaultContentWidth;
  int ContentHeight = kDefaultContentHeight;

  /// VEK_INVALID_PARAMETERS, with a message naming the first value out of range, unless the gamma
  /// lies in (0, 10], the step is at least 1 and both content sizes are at least 1.
  int Validate() const;
};

}  // namespace vek
