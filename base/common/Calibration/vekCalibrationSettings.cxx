#include "vekCalibrationSettings.h"

#include <sstream>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"

namespace vek {

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
