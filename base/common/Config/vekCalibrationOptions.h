#pragma once
#include "vekCalibrationSettings.h"
#include "vekCommonExport.h"
#include "vekConfigurationDatabase.h"

namespace vek {

/// The calibration settings the option store may hold, so that an installation can change the
/// built-in defaults once for every run: "CalibrationBlendGamma" (Double), "CalibrationWarpStep",
/// "CalibrationContentWidth" and "CalibrationContentHeight" (Int). A calibration folder's own
/// settings, and a caller's, override them.
class VEK_EXPORT CalibrationOptions {
 public:
  static constexpr const char* kBlendGamma = "CalibrationBlendGamma";
  static constexpr const char* kWarpStep = "CalibrationWarpStep";
  static constexpr const char* kContentWidth = "CalibrationContentWidth";
  static constexpr const char* kContentHeight = "CalibrationContentHeight";

  /// Each setting that a file of the store names (options, defaults or info file) replaces the
  /// one in `settings`; the others keep theirs. The store must be loaded (LoadOptionsDatabase).
  /// A value that is not a number, or settings out of range afterwards, fail with
  /// VEK_INVALID_PARAMETERS naming the option, and `settings` is left as it was.
  static int Load(ConfigurationDatabase& store, CalibrationSettings& settings);

 private:
  CalibrationOptions() = delete;
};

}  // namespace vek
