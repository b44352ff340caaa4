#include "vekBlendWeight.h"

#include <cmath>

namespace vek {

namespace {

// 4 s (1 - s), clamped to 0 outside [0, 1].
double Parabola(double value, double low, double high) {
  if (!(high > low)) return 0;
  const double s = (value - low) / (high - low);
  return s > 0 && s < 1 ? 4 * s * (1 - s) : 0;
}

}  // namespace

double BlendWeight::Weight(const vec2<double>& pixel) const {
  const double d = Parabola(pixel.x, Min.x, Max.x) * Parabola(pixel.y, Min.y, Max.y);
  return d > 0 ? std::pow(d, Gamma) : 0;
}

double BlendWeight::Alpha(double own, double total, int covering, double gamma) {
  if (covering <= 1) return 1;
  const double share = total > 0 ? own / total : 1.0 / covering;
  return std::pow(share, 1 / gamma);
}

}  // namespace vek
