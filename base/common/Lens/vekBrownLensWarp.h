#pragma once
#include "vekCommonExport.h"
#include "vekGenericLensWarp.h"

namespace vek {

class BrownLensWarpInverter;

/// The Brown-Conrady lens: three radial (k1, k2, k3) and two tangential (p1, p2) coefficients on
/// normalised coordinates u = (x - centre x) / focal x, v = (y - centre y) / focal y. They are
/// distortion parameters 0, 1, 4 (k1, k2, k3) and 2, 3 (p1, p2); parameters 5 to 7 are kept and
/// written but unused. Forward (undistorted to distorted) is closed-form, in float.
///
/// Invert has no closed form. It runs Gauss-Newton on the two normalised unknowns with two
/// residuals (the forward formula, in float, minus the target), a central-difference Jacobian
/// (step 0.001), step halving down to 2^-19, the convergence test |d|^2 <= 1e-10 |p|^2 and at most
/// 100 steps; it starts from the forward formula with every coefficient negated. This is the
/// algorithm of GaussNewtonNonlinearMinimizer specialised to two unknowns: fixed-size algebra on
/// the stack, the 2 x 2 normal equations solved through their eigen decomposition (their singular
/// value decomposition, as the matrix is symmetric and positive semi-definite) with the same 1e-6
/// cut-off. Unlike the general minimiser it writes no "Singular system" lines: it runs on hundreds
/// of thousands of points at once, from several threads. Invert changes nothing in the warp, so it
/// may run concurrently on one warp; it always returns 0, a poor solve leaving its last accepted
/// point. Not-a-number or infinite input (or a zero focal length) ends after one step with a
/// not-a-number result.
///
/// InvertWithMinimizer solves the same problem through the owned BrownLensWarpInverter and the
/// general minimiser; it is the reference for Invert and is not safe from two threads at once.
class VEK_EXPORT BrownLensWarp : public GenericLensWarp {
 public:
  static BrownLensWarp* New();
  const char* GetClassName() const override { return "BrownLensWarp"; }

  void InplaceForwardArray(vec2<float>* points, unsigned int const& count) const override;
  void InplaceInvertArray(vec2<float>* points, unsigned int const& count) const override;
  void Forward(float const& x, float const& y, float& outX, float& outY) const override;
  int Invert(float const& x, float const& y, float& outX, float& outY) const override;
  using LensWarp::Forward;
  using LensWarp::Invert;
  int InvertWithMinimizer(float const& x, float const& y, float& outX, float& outY) const;

  /// The forward formula on normalised coordinates.
  void ForwardNormalised(float u, float v, float& outU, float& outV) const;
  /// The starting point of the inverse for pixel (x, y), normalised.
  void GetInverseStart(float x, float y, float& u, float& v) const;

  float& Getk1() { return Parameters[kDistortion + 0]; }
  float const& Getk1() const { return Parameters[kDistortion + 0]; }
  void Setk1(float const& value) { Parameters[kDistortion + 0] = value; }
  float& Getk2() { return Parameters[kDistortion + 1]; }
  float const& Getk2() const { return Parameters[kDistortion + 1]; }
  void Setk2(float const& value) { Parameters[kDistortion + 1] = value; }
  float& Getp1() { return Parameters[kDistortion + 2]; }
  float const& Getp1() const { return Parameters[kDistortion + 2]; }
  void Setp1(float const& value) { Parameters[kDistortion + 2] = value; }
  float& Getp2() { return Parameters[kDistortion + 3]; }
  float const& Getp2() const { return Parameters[kDistortion + 3]; }
  void Setp2(float const& value) { Parameters[kDistortion + 3] = value; }
  float& Getk3() { return Parameters[kDistortion + 4]; }
  float const& Getk3() const { return Parameters[kDistortion + 4]; }
  void Setk3(float const& value) { Parameters[kDistortion + 4] = value; }

 protected:
  BrownLensWarp();
  ~BrownLensWarp() override;

 private:
  BrownLensWarp(const BrownLensWarp&) = delete;
  BrownLensWarp& operator=(const BrownLensWarp&) = delete;

  BrownLensWarpInverter* Inverter;
};

}  // namespace vek
