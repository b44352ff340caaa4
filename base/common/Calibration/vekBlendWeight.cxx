#include "vekBlendWeight.h"

#include <cmath>

namespace vek {

namespace {

// The factor of one axis: zero on (and beyond) the edges that take part, 1 at the far side of
// an edge alone, or everywhere when neither takes part.
double Parabola(double value, double low, double high, bool lowEdge, bool highEdge) {
  if (!(high > low)) return 0;
  const double s = (value - low) / (high - low);
  if ((lowEdge && !(s > 0)) || (highEdge && !(s < 1))) return 0;
  const double clamped = s < 0 ? 0 : s > 1 ? 1 : s;
  if (lowEdge && highEdge) return 4 * clamped * (1 - clamped);
  if (lowEdge) return clamped * (2 - clamped);
  if (highEdge) return (1 - clamped) * (1 + clamped);
  return 1;
}

}  // namespace

double BlendWeight::Weight(const vec2<double>& pixel) const {
  const double d = Parabola(pixel.x, Min.x, Max.x, Edges & kLeftEdge, Edges & kRightEdge) *
                   Parabola(pixel.y, Min.y, Max.y, Edges & kTopEdge, Edges & kBottomEdge);
  return d > 0 ? std::pow(d, Gamma) : 0;
}

double BlendWeight::Alpha(double own, double total, int covering, double gamma) {
  if (covering <= 1) return 1;
  const double share = total > 0 ? own / total : 1.0 / covering;
  return std::pow(share, 1 / gamma);
}

}  // namespace vek
