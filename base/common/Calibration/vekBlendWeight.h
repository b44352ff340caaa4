#pragma once
#include "vekCommonExport.h"
#include "vekVec2.h"

namespace vek {

/// The blend weight of a projector pixel: how much of the light at a screen point this projector
/// should give, before the weights of all projectors there are normalised to sum to 1.
///
/// It falls to zero at the edges of the projector's calibrated area (the box of its spots) as the
/// gamma-th power of a distance-like measure, d^gamma with d = f(s) g(t) for s and t the pixel's
/// position across the box (0 at the left or top edge, 1 at the other): f(s) = 4 s (1 - s) when
/// both the left and the right edge take part, s (2 - s) when only the left one does, (1 - s)
/// (1 + s) when only the right one does, and 1 when neither does; g likewise for top and bottom.
/// These parabolas are smooth everywhere (a plain distance to the nearest edge has a kink on every
/// diagonal from a corner, and the renderer's linear interpolation of alpha cannot follow a kink),
/// and near an edge they are proportional to the distance from it, so the alpha that results,
/// (w / sum w)^(1/gamma), starts out linearly where it changes fastest.
///
/// An edge takes part when it reaches into the fill region. One that lies wholly outside it
/// (the top edges of a wall's top row, say) shapes no blend that is shown, and leaving it out
/// keeps two neighbours' shares from being skewed near it by how far each one's edge happens to
/// reach beyond the image.
class VEK_EXPORT BlendWeight {
 public:
  /// Which edges take part, as a sum of these.
  enum Edge : int { kLeftEdge = 1, kRightEdge = 2, kTopEdge = 4, kBottomEdge = 8, kAllEdges = 15 };

  BlendWeight() = default;
  BlendWeight(const vec2<double>& areaMin, const vec2<double>& areaMax, double gamma, int edges = kAllEdges)
      : Min(areaMin), Max(areaMax), Gamma(gamma), Edges(edges) {}

  /// 0 on and outside the edges that take part.
  double Weight(const vec2<double>& pixel) const;

  /// alpha = (own / total)^(1/gamma). Where every covering weight is 0 (on an edge where no other
  /// projector reaches inside, or where edges meet) the light is shared equally among the
  /// `covering` projectors, so a projector alone keeps alpha 1 right up to its edge.
  static double Alpha(double own, double total, int covering, double gamma);

 private:
  vec2<double> Min{0, 0};
  vec2<double> Max{1, 1};
  double Gamma = 2.2;
  int Edges = kAllEdges;
};

}  // namespace vek
