#include "vekHomography.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"

namespace vek {

namespace {

using Matrix3 = Eigen::Matrix3d;

// The similarity that moves the points' centroid to the origin and their mean distance from it
// to sqrt(2): without it the fit's equations mix pixel coordinates in the thousands with ones and
// lose most of their precision.
Matrix3 Normalizer(const std::vector<Eigen::Vector2d>& points) {
  Eigen::Vector2d centroid = Eigen::Vector2d::Zero();
  for (const auto& p : points) centroid += p;
  centroid /= static_cast<double>(points.size());
  double meanDistance = 0;
  for (const auto& p : points) meanDistance += (p - centroid).norm();
  meanDistance /= static_cast<double>(points.size());
  double scale = meanDistance > 0 ? std::sqrt(2.0) / meanDistance : 1.0;
  Matrix3 t;
  t << scale, 0, -scale * centroid.x(), 0, scale, -scale * centroid.y(), 0, 0, 1;
  return t;
}

Eigen::Vector2d Transformed(const Matrix3& t, const Eigen::Vector2d& p) {
  return Eigen::Vector2d(t(0, 0) * p.x() + t(0, 2), t(1, 1) * p.y() + t(1, 2));
}

bool IsSet(const vec2<double>& p) { return !p.IsUnset() && std::isfinite(p.x) && std::isfinite(p.y); }

}  // namespace

Homography::Homography(const double matrix[9]) {
  for (int k = 0; k < 9; ++k) Matrix[k] = matrix[k];
}

int Homography::Fit(const std::vector<vec2<double>>& from, const std::vector<vec2<double>>& to, Homography& result) {
  std::vector<Eigen::Vector2d> source, target;
  for (size_t i = 0; i < from.size() && i < to.size(); ++i)
    if (IsSet(from[i]) && IsSet(to[i])) {
      source.emplace_back(from[i].x, from[i].y);
      target.emplace_back(to[i].x, to[i].y);
    }
  if (source.size() < 4)
    return ErrorHelper::ErrorWithCustomMessage(
        VEK_INVALID_PARAMETERS, "A homography needs four point pairs or more, " + std::to_string(source.size()) + " given");

  const Matrix3 normalizeSource = Normalizer(source);
  const Matrix3 normalizeTarget = Normalizer(target);
  // At least nine rows, so that the null vector of four exact pairs is a singular vector too.
  Eigen::MatrixXd equations = Eigen::MatrixXd::Zero(std::max<Eigen::Index>(9, 2 * source.size()), 9);
  for (size_t i = 0; i < source.size(); ++i) {
    const Eigen::Vector2d p = Transformed(normalizeSource, source[i]);
    const Eigen::Vector2d q = Transformed(normalizeTarget, target[i]);
    equations.row(2 * i) << p.x(), p.y(), 1, 0, 0, 0, -q.x() * p.x(), -q.x() * p.y(), -q.x();
    equations.row(2 * i + 1) << 0, 0, 0, p.x(), p.y(), 1, -q.y() * p.x(), -q.y() * p.y(), -q.y();
  }
  // The solution is the right singular vector of the smallest singular value; a second one that
  // is (almost) as small means the points do not pin the map down.
  Eigen::JacobiSVD<Eigen::MatrixXd> svd(equations, Eigen::ComputeFullV);
  const Eigen::VectorXd& sigma = svd.singularValues();
  if (sigma.size() < 9 || !(sigma(7) > 1e-9 * sigma(0)))
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS,
                                               "The point pairs are degenerate: no homography fits them");
  const Eigen::VectorXd h = svd.matrixV().col(8);
  Matrix3 normalized;
  normalized << h(0), h(1), h(2), h(3), h(4), h(5), h(6), h(7), h(8);
  Matrix3 full = normalizeTarget.inverse() * normalized * normalizeSource;
  if (std::abs(full(2, 2)) > 1e-300) full /= full(2, 2);
  if (!full.allFinite())
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS,
                                               "The point pairs are degenerate: no homography fits them");
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c) result.Matrix[3 * r + c] = full(r, c);
  return VEK_SUCCESS;
}

int Homography::FromCorners(const vec2<double> from[4], const vec2<double> to[4], Homography& result) {
  return Fit(std::vector<vec2<double>>(from, from + 4), std::vector<vec2<double>>(to, to + 4), result);
}

bool Homography::Apply(const vec2<double>& in, vec2<double>& out) const {
  const double* m = Matrix;
  const double w = m[6] * in.x + m[7] * in.y + m[8];
  if (w == 0 || !std::isfinite(w)) return false;
  const vec2<double> result((m[0] * in.x + m[1] * in.y + m[2]) / w, (m[3] * in.x + m[4] * in.y + m[5]) / w);
  if (!std::isfinite(result.x) || !std::isfinite(result.y)) return false;
  out = result;
  return true;
}

int Homography::Invert(Homography& inverse) const {
  const Eigen::Map<const Eigen::Matrix<double, 3, 3, Eigen::RowMajor>> m(Matrix);
  bool invertible = false;
  Matrix3 result;
  double determinant = 0;
  m.computeInverseAndDetWithCheck(result, determinant, invertible, 1e-300);
  if (!invertible || !result.allFinite())
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "The homography is singular");
  if (std::abs(result(2, 2)) > 1e-300) result /= result(2, 2);
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c) inverse.Matrix[3 * r + c] = result(r, c);
  return VEK_SUCCESS;
}

}  // namespace vek
