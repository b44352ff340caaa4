#include "vekLensWarp.h"

#include "vekLensWarpArray.h"

namespace vek {

// The generic loops go through the virtual one-point operations, so they stay on one thread:
// a model's Invert need not be safe to call concurrently unless the model says so.
void LensWarp::InplaceForwardArray(vec2<float>* points, unsigned int const& count) const {
  for (unsigned int i = 0; i < count; ++i)
    if (!lens_detail::IsUnsetPoint(points[i])) {
      const vec2<float> in = points[i];
      Forward(in.x, in.y, points[i].x, points[i].y);
    }
}

void LensWarp::InplaceInvertArray(vec2<float>* points, unsigned int const& count) const {
  for (unsigned int i = 0; i < count; ++i)
    if (!lens_detail::IsUnsetPoint(points[i])) {
      const vec2<float> in = points[i];
      Invert(in.x, in.y, points[i].x, points[i].y);
    }
}

}  // namespace vek
