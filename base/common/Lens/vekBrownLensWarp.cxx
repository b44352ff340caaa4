#include "vekBrownLensWarp.h"

#include <cmath>

#include "vekBrownLensWarpInverter.h"
#include "vekErrorCodes.h"
#include "vekLensWarpArray.h"

namespace vek {

namespace {

constexpr double kDifferenceStep = BrownLensWarpInverter::kDifferenceStep;
constexpr double kHalfDifferenceStep = kDifferenceStep / 2;
constexpr int kMaxIterations = BrownLensWarpInverter::kMaxIterations;
constexpr double kSingularValueCutoff = 1e-6;
constexpr double kSmallestStepFraction = 1e-6;
constexpr double kConvergence = 1e-10;
constexpr double kNegligibleStep = 1e-150;

// Everything one inversion needs, copied out of the warp so the solve never touches it.
struct BrownNumbers {
  float fx, fy, cx, cy;
  float k1, k2, p1, p2, k3;

  void Distort(float u, float v, float& outU, float& outV) const {
    const float r2 = u * u + v * v;
    const float radial = ((k3 * r2 + k2) * r2 + k1) * r2 + 1.0f;
    const float uv2 = 2.0f * u * v;
    outU = radial * u + p1 * uv2 + p2 * (2.0f * u * u + r2);
    outV = radial * v + p2 * uv2 + p1 * (2.0f * v * v + r2);
  }

  void Forward(float x, float y, float& outX, float& outY) const {
    float u, v;
    Distort((x - cx) / fx, (y - cy) / fy, u, v);
    outX = u * fx + cx;
    outY = v * fy + cy;
  }

  // Residuals of the normalised unknowns p against the target t: computed in float, kept as double.
  void Residual(const double* p, float tu, float tv, double* e) const {
    float u, v;
    Distort(static_cast<float>(p[0]), static_cast<float>(p[1]), u, v);
    e[0] = static_cast<double>(u - tu);
    e[1] = static_cast<double>(v - tv);
  }

  void Start(float x, float y, float& u, float& v) const {
    const BrownNumbers negated{fx, fy, cx, cy, -k1, -k2, -p1, -p2, -k3};
    float sx, sy;
    negated.Forward(x, y, sx, sy);
    u = (sx - cx) / fx;
    v = (sy - cy) / fy;
  }

  void Invert(float x, float y, float& outX, float& outY) const;
};

// Pseudo-inverse solve of the symmetric positive semi-definite [a b; b c] d = g, eigenvalues
// below the cut-off taken as 0. A system with a non-finite entry gets d = 0.
void SolveNormalEquations(double a, double b, double c, double g0, double g1, double& d0, double& d1) {
  d0 = d1 = 0;
  if (!std::isfinite(a) || !std::isfinite(b) || !std::isfinite(c) || !std::isfinite(g0) || !std::isfinite(g1)) return;
  const double half = 0.5 * (a - c);
  const double radius = std::sqrt(half * half + b * b);
  const double large = 0.5 * (a + c) + radius;
  if (!(large >= kSingularValueCutoff)) return;
  const double determinant = a * c - b * b;
  const double small = determinant / large;
  if (small >= kSingularValueCutoff) {
    d0 = (c * g0 - b * g1) / determinant;
    d1 = (a * g1 - b * g0) / determinant;
    return;
  }
  // Rank one: project onto the eigenvector of the large eigenvalue. Of the two forms of that
  // vector the longer one is the better conditioned.
  double v0 = b, v1 = large - a;
  const double w0 = large - c, w1 = b;
  if (w0 * w0 + w1 * w1 > v0 * v0 + v1 * v1) v0 = w0, v1 = w1;
  const double norm2 = v0 * v0 + v1 * v1;
  if (!(norm2 > 0)) {
    // b = 0 and a = c: the whole space belongs to the large eigenvalue.
    d0 = g0 / large;
    d1 = g1 / large;
    return;
  }
  const double scale = (v0 * g0 + v1 * g1) / (norm2 * large);
  d0 = scale * v0;
  d1 = scale * v1;
}

void BrownNumbers::Invert(float x, float y, float& outX, float& outY) const {
  const float tu = (x - cx) / fx;
  const float tv = (y - cy) / fy;
  float su, sv;
  Start(x, y, su, sv);
  double p[2] = {su, sv};
  double e[2];
  Residual(p, tu, tv, e);
  for (int iteration = 0; iteration < kMaxIterations; ++iteration) {
    double jacobian[2][2];
    for (int j = 0; j < 2; ++j) {
      double q[2] = {p[0], p[1]};
      double plus[2], minus[2];
      q[j] = p[j] + kHalfDifferenceStep;
      Residual(q, tu, tv, plus);
      q[j] = p[j] - kHalfDifferenceStep;
      Residual(q, tu, tv, minus);
      jacobian[0][j] = (plus[0] - minus[0]) / kDifferenceStep;
      jacobian[1][j] = (plus[1] - minus[1]) / kDifferenceStep;
    }
    const double a = jacobian[0][0] * jacobian[0][0] + jacobian[1][0] * jacobian[1][0];
    const double b = jacobian[0][0] * jacobian[0][1] + jacobian[1][0] * jacobian[1][1];
    const double c = jacobian[0][1] * jacobian[0][1] + jacobian[1][1] * jacobian[1][1];
    const double g0 = -(jacobian[0][0] * e[0] + jacobian[1][0] * e[1]);
    const double g1 = -(jacobian[0][1] * e[0] + jacobian[1][1] * e[1]);
    double d[2];
    SolveNormalEquations(a, b, c, g0, g1, d[0], d[1]);

    const double before = e[0] * e[0] + e[1] * e[1];
    double trial[2] = {p[0] + d[0], p[1] + d[1]};
    double f[2];
    Residual(trial, tu, tv, f);
    double after = f[0] * f[0] + f[1] * f[1];
    double fraction = 1.0;
    bool failed = false;
    while (after > before) {
      fraction *= 0.5;
      if (fraction < kSmallestStepFraction) {
        failed = true;
        break;
      }
      trial[0] -= fraction * d[0];
      trial[1] -= fraction * d[1];
      Residual(trial, tu, tv, f);
      after = f[0] * f[0] + f[1] * f[1];
    }
    // With the default tolerance a step that cannot improve ends the solve at the old point.
    if (failed) break;
    p[0] = trial[0];
    p[1] = trial[1];
    e[0] = f[0];
    e[1] = f[1];

    double stepSquared = 0, parameterSquared = 0;
    bool converged = true;
    for (int j = 0; j < 2; ++j) {
      if (std::fabs(d[j]) <= kNegligibleStep) continue;
      stepSquared += d[j] * d[j];
      parameterSquared += p[j] * p[j];
      if (stepSquared > kConvergence * parameterSquared) {
        converged = false;
        break;
      }
    }
    if (converged) break;
  }
  outX = static_cast<float>(fx * p[0] + cx);
  outY = static_cast<float>(fy * p[1] + cy);
}

BrownNumbers NumbersOf(const float* parameters) {
  const float* d = parameters + 6;
  return {parameters[2], parameters[3], parameters[4], parameters[5], d[0], d[1], d[2], d[3], d[4]};
}

}  // namespace

BrownLensWarp* BrownLensWarp::New() { return new BrownLensWarp; }

BrownLensWarp::BrownLensWarp() : Inverter(BrownLensWarpInverter::New()) {}

BrownLensWarp::~BrownLensWarp() { Inverter->Release(); }

void BrownLensWarp::Forward(float const& x, float const& y, float& outX, float& outY) const {
  NumbersOf(Parameters).Forward(x, y, outX, outY);
}

int BrownLensWarp::Invert(float const& x, float const& y, float& outX, float& outY) const {
  NumbersOf(Parameters).Invert(x, y, outX, outY);
  return VEK_SUCCESS;
}

int BrownLensWarp::InvertWithMinimizer(float const& x, float const& y, float& outX, float& outY) const {
  return Inverter->Invert(this, x, y, outX, outY);
}

void BrownLensWarp::ForwardNormalised(float u, float v, float& outU, float& outV) const {
  NumbersOf(Parameters).Distort(u, v, outU, outV);
}

void BrownLensWarp::GetInverseStart(float x, float y, float& u, float& v) const {
  NumbersOf(Parameters).Start(x, y, u, v);
}

void BrownLensWarp::InplaceForwardArray(vec2<float>* points, unsigned int const& count) const {
  if (!lens_detail::IsExactly(*this)) return LensWarp::InplaceForwardArray(points, count);
  const BrownNumbers numbers = NumbersOf(Parameters);
  lens_detail::MapPoints(points, count,
                         [&numbers](float x, float y, vec2<float>& p) { numbers.Forward(x, y, p.x, p.y); });
}

void BrownLensWarp::InplaceInvertArray(vec2<float>* points, unsigned int const& count) const {
  if (!lens_detail::IsExactly(*this)) return LensWarp::InplaceInvertArray(points, count);
  const BrownNumbers numbers = NumbersOf(Parameters);
  lens_detail::MapPoints(
      points, count, [&numbers](float x, float y, vec2<float>& p) { numbers.Invert(x, y, p.x, p.y); }, true);
}

}  // namespace vek
