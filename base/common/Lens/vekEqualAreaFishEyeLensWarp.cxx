#include "vekEqualAreaFishEyeLensWarp.h"

#include <cmath>

#include "vekErrorCodes.h"
#include "vekLensWarpArray.h"

namespace vek {

namespace {

struct PinholeNumbers {
  float fx, fy, cx, cy;

  void Forward(float x, float y, float& outX, float& outY) const {
    const float u = (x - cx) / fx;
    const float v = (y - cy) / fy;
    const float q = std::sqrt(1.0f + (u * u + v * v));
    const float s = std::sqrt(2.0f / (q * (q + 1.0f)));
    outX = fx * (u * s) + cx;
    outY = fy * (v * s) + cy;
  }

  void Invert(float x, float y, float& outX, float& outY) const {
    const float u = (x - cx) / fx;
    const float v = (y - cy) / fy;
    const float rho2 = u * u + v * v;
    const float s = std::sqrt(1.0f - 0.25f * rho2) / (1.0f - 0.5f * rho2);
    outX = fx * (u * s) + cx;
    outY = fy * (v * s) + cy;
  }
};

}  // namespace

EqualAreaFishEyeLensWarp* EqualAreaFishEyeLensWarp::New() { return new EqualAreaFishEyeLensWarp; }

void EqualAreaFishEyeLensWarp::Forward(float const& x, float const& y, float& outX, float& outY) const {
  PinholeNumbers{GetFocalLengthX(), GetFocalLengthY(), GetCenterX(), GetCenterY()}.Forward(x, y, outX, outY);
}

int EqualAreaFishEyeLensWarp::Invert(float const& x, float const& y, float& outX, float& outY) const {
  PinholeNumbers{GetFocalLengthX(), GetFocalLengthY(), GetCenterX(), GetCenterY()}.Invert(x, y, outX, outY);
  return VEK_SUCCESS;
}

void EqualAreaFishEyeLensWarp::InplaceForwardArray(vec2<float>* points, unsigned int const& count) const {
  if (!lens_detail::IsExactly(*this)) return LensWarp::InplaceForwardArray(points, count);
  const PinholeNumbers numbers{GetFocalLengthX(), GetFocalLengthY(), GetCenterX(), GetCenterY()};
  lens_detail::MapPoints(points, count,
                         [&numbers](float x, float y, vec2<float>& p) { numbers.Forward(x, y, p.x, p.y); });
}

void EqualAreaFishEyeLensWarp::InplaceInvertArray(vec2<float>* points, unsigned int const& count) const {
  if (!lens_detail::IsExactly(*this)) return LensWarp::InplaceInvertArray(points, count);
  const PinholeNumbers numbers{GetFocalLengthX(), GetFocalLengthY(), GetCenterX(), GetCenterY()};
  lens_detail::MapPoints(points, count,
                         [&numbers](float x, float y, vec2<float>& p) { numbers.Invert(x, y, p.x, p.y); });
}

}  // namespace vek
