#pragma once
#include "vekCommonExport.h"
#include "vekVec2.h"

namespace vek {

/// The blend weight of a projector pixel: how much of the light at a screen point this projector
/// should give, before the weights of all projectors there are normalised to sum to 1.
///
/// It falls to zero at the edge of the projector's calibrated area (the box of its spots) as the
/// gamma-th power of a distance-like measure, d^gamma with d = 16 s (1 - s) t (1 - t) for s and t the
/// pixel's position across the box (0 at one edge, 1 at the other). The product of parabolas is
/// smooth everywhere (a plain distance to the nearest edge has a kink on every diagonal from a
/// corner, and the renderer's linear interpolation of alpha cannot follow a kink), and near an edge
/// it is proportional to the distance from it, so the alpha that results, (w / sum w)^(1/gamma),
/// starts out linearly where it changes fastest.
class VEK_EXPORT BlendWeight {
 public:
  BlendWeight() = default;
  BlendWeight(const vec2<double>& areaMin, const vec2<double>& areaMax, double gamma)
      : Min(areaMin), Max(areaMax), Gamma(gamma) {}

  /// 0 on and outside the edge of the area.
  double Weight(const vec2<double>& pixel) const;

  /// alpha = (own / total)^(1/gamma). Where every covering weight is 0 (on an edge where no other
  /// projector reaches inside, or where edges meet) the light is shared equally among the
  /// `covering` projectors, so a projector alone keeps alpha 1 right up to its edge.
  static double Alpha(double own, double total, int covering, double gamma);

 private:
  vec2<double> Min{0, 0};
  vec2<double> Max{1, 1};
  double Gamma = 2.2;
};

}  // namespace vek
