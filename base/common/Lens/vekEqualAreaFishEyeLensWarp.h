#pragma once
#include "vekCommonExport.h"
#include "vekGenericLensWarp.h"

namespace vek {

/// An equal-area fish-eye lens against a pinhole: a pinhole point at normalised radius rho (angle
/// atan rho off the axis) lands at the radius 2 sin(atan(rho) / 2). Invert is the reverse,
/// tan(2 asin(rho / 2)); radii of 2 and beyond have no inverse (not a number). The distortion
/// parameters are not used.
///
/// Both directions use trigonometry-free forms of the same functions, in float:
/// Forward scales by sqrt(2 / (q (q + 1))) with q = sqrt(1 + rho^2), Invert by
/// sqrt(1 - rho^2 / 4) / (1 - rho^2 / 2); they are exact identities, avoid the loss of precision
/// of sin(atan(rho)/2)/rho near the centre and keep the array loops free of library calls.
class VEK_EXPORT EqualAreaFishEyeLensWarp : public GenericLensWarp {
 public:
  static EqualAreaFishEyeLensWarp* New();
  const char* GetClassName() const override { return "EqualAreaFishEyeLensWarp"; }

  void InplaceForwardArray(vec2<float>* points, unsigned int const& count) const override;
  void InplaceInvertArray(vec2<float>* points, unsigned int const& count) const override;
  void Forward(float const& x, float const& y, float& outX, float& outY) const override;
  int Invert(float const& x, float const& y, float& outX, float& outY) const override;
  using LensWarp::Forward;
  using LensWarp::Invert;

 protected:
  EqualAreaFishEyeLensWarp() = default;
  ~EqualAreaFishEyeLensWarp() override = default;

 private:
  EqualAreaFishEyeLensWarp(const EqualAreaFishEyeLensWarp&) = delete;
  EqualAreaFishEyeLensWarp& operator=(const EqualAreaFishEyeLensWarp&) = delete;
};

}  // namespace vek
