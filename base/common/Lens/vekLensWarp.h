#pragma once
#include <istream>
#include <ostream>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekVec2.h"

namespace vek {

/// The root of the camera lens models: Forward maps undistorted (ideal pinhole) pixels to the
/// distorted pixels the camera delivers, Invert maps back. Coordinates are camera pixels.
///
/// The array operations replace every point of an array by its image and pass over unset points,
/// (-5, -5) exactly; Invert's status is ignored there. The models override them with loops that
/// call their own formulas directly and spread large arrays over all cores; the results are those
/// of the one-point operations applied in order, bit for bit.
///
/// Models are written and read with a numeric type tag through LensWarpIO.
class VEK_EXPORT LensWarp : public Object {
 public:
  const char* GetClassName() const override { return "LensWarp"; }

  virtual bool IsInitialized() const = 0;
  virtual void SetCameraDimensions(int const& width, int const& height) = 0;
  virtual void InplaceForwardArray(vec2<float>* points, unsigned int const& count) const;
  virtual void InplaceInvertArray(vec2<float>* points, unsigned int const& count) const;
  virtual void Forward(float const& x, float const& y, float& outX, float& outY) const = 0;
  /// A status code; 0 is success.
  virtual int Invert(float const& x, float const& y, float& outX, float& outY) const = 0;

  void Forward(vec2<float> const& in, vec2<float>& out) const { Forward(in.x, in.y, out.x, out.y); }
  int Invert(vec2<float> const& in, vec2<float>& out) const { return Invert(in.x, in.y, out.x, out.y); }

 protected:
  friend class LensWarpIO;

  LensWarp() = default;
  ~LensWarp() override = default;

  /// The model's stream body (see LensWarpIO).
  virtual int Read(std::istream* in) = 0;
  virtual int Write(std::ostream* out) = 0;

 private:
  LensWarp(const LensWarp&) = delete;
  LensWarp& operator=(const LensWarp&) = delete;
};

}  // namespace vek
