#pragma once
#include <vector>

#include "vekCommonExport.h"
#include "vekVec2.h"

namespace vek {

/// A projective map of the plane, x' = (h0 x + h1 y + h2) / (h6 x + h7 y + h8) and
/// y' = (h3 x + h4 y + h5) / (h6 x + h7 y + h8), nine doubles row by row. It is exact for what a
/// pinhole camera or a projector sees of a flat screen, which is why the calibration path models a
/// flat screen with it. A default Homography is the identity.
class VEK_EXPORT Homography {
 public:
  Homography() = default;
  explicit Homography(const double matrix[9]);

  /// The least-squares fit (direct linear transform on coordinates normalised to their centroid
  /// and mean distance sqrt(2)) of from[i] -> to[i]. Unset points (-5, -5) on either side are left
  /// out. VEK_INVALID_PARAMETERS when fewer than four pairs remain or they are degenerate (all on
  /// one line); the result is then untouched.
  static int Fit(const std::vector<vec2<double>>& from, const std::vector<vec2<double>>& to, Homography& result);
  /// The exact map of four corners to four corners (the fit of four pairs).
  static int FromCorners(const vec2<double> from[4], const vec2<double> to[4], Homography& result);

  /// False where the point maps to infinity (the denominator is zero or not finite); out is then
  /// left as it was.
  bool Apply(const vec2<double>& in, vec2<double>& out) const;
  /// VEK_INVALID_PARAMETERS for a singular matrix (the result is then untouched).
  int Invert(Homography& inverse) const;

  const double* GetMatrix() const { return Matrix; }

 private:
  double Matrix[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
};

}  // namespace vek
