#pragma once
#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekVec2.h"

namespace vek {

/// What the calibration path needs to know of the screen: where on the content (u, v in 0..1
/// over the fill region, v growing downwards like image rows) an undistorted camera pixel lies.
/// The warp builder asks nothing else of it, so curved screens and several cameras come in as
/// other models without changing the callers.
class VEK_EXPORT ScreenModel : public Object {
 public:
  const char* GetClassName() const override { return "ScreenModel"; }

  /// False where the model has no content point for the camera pixel (behind the camera, say).
  virtual bool CameraToContent(const vec2<double>& camera, vec2<double>& content) const = 0;

 protected:
  ScreenModel() = default;
  ~ScreenModel() override = default;

 private:
  ScreenModel(const ScreenModel&) = delete;
  ScreenModel& operator=(const ScreenModel&) = delete;
};

}  // namespace vek
