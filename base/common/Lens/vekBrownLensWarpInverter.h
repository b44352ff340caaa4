#pragma once
#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

class BrownLensWarp;
class GaussNewtonNonlinearMinimizer;

/// Inverts a BrownLensWarp one pixel at a time through the general Gauss-Newton minimiser: two
/// unknowns (the normalised undistorted point), two residuals (the forward formula in float minus
/// the normalised target), a central-difference Jacobian with step kDifferenceStep, at most 100
/// iterations, silent (verbosity 0), no step limit, the default tolerance. The warp is held only
/// for the duration of one inversion. Not safe from two threads at once.
class VEK_EXPORT BrownLensWarpInverter : public Object {
 public:
  static constexpr double kDifferenceStep = 0.001;
  static constexpr int kMaxIterations = 100;

  static BrownLensWarpInverter* New();
  const char* GetClassName() const override { return "BrownLensWarpInverter"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// Always 0: a poor solve leaves the last accepted point as the answer.
  int Invert(const BrownLensWarp* warp, float x, float y, float& outX, float& outY);
  GaussNewtonNonlinearMinimizer* GetMinimizer() const { return Minimizer; }

 protected:
  BrownLensWarpInverter();
  ~BrownLensWarpInverter() override;

 private:
  BrownLensWarpInverter(const BrownLensWarpInverter&) = delete;
  BrownLensWarpInverter& operator=(const BrownLensWarpInverter&) = delete;

  static int InitialParameters(double* parameters, int n, void* user);
  static int Errors(const double* parameters, int n, double* errors, int m, void* user);
  static int JacobianOf(const double* parameters, int n, double* jacobian, int m, void* user);

  GaussNewtonNonlinearMinimizer* Minimizer;
  const BrownLensWarp* Warp = nullptr;
  float TargetU = 0;
  float TargetV = 0;
  float StartU = 0;
  float StartV = 0;
};

}  // namespace vek
