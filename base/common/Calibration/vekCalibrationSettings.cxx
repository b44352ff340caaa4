#include "vekCalibrationSettings.h"

#include <sstream>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"

namespace vek {

// Defined here as well so that the Windows DLL exports them: callers bind them to references
// (comparisons in tests, std::min), which an inline constant alone would leave unresolved.
constexpr double CalibrationSettings::kDefaultBlendGamma;
constexpr int CalibrationSettings::kDefaultWarpStep;
constexpr int CalibrationSettings::kDefaultContentWidth;
constexpr int CalibrationSettings::kDefaultContentHeight;
constexpr double CalibrationSettings::kMaxBlendGamma;

int CalibrationSettings::Validate() const {
  std::ostringstream message;
  // Written so that NaN fails too.
  if (!(BlendGamma > 0 && BlendGamma <= kMaxBlendGamma))
    message << "BlendGamma must lie in (0, " << kMaxBlendGamma << "], not " << BlendGamma;
  else if (WarpStep < 1)
    message << "WarpStep must be at least 1, not " << WarpStep;
  else if (ContentWidth < 1)
    message << "ContentWidth must be at least 1, not " << ContentWidth;
  else if (ContentHeight < 1)
    message << "ContentHeight must be at least 1, not " << ContentHeight;
  else
    return VEK_SUCCESS;
  return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, message.str());
}

}  // namespace vek
