#pragma once
#include <cmath>
#include <istream>
#include <ostream>

#include "vekCommonExport.h"

namespace vek {

/// A point or direction in space: three contiguous doubles x, y, z (the object may be read as an
/// array of three doubles). A default vector holds the "not set" value (-7.777, -7.777, -7.777).
/// Allocation-free and inline throughout, for use in per-pixel loops. Nothing guards against a
/// zero vector: Normalize and AngleBetween then give NaN.
///
/// Integer triples get their own constructor so that Vector3(1, 2, 3) is not ambiguous between
/// the float and the double forms.
class VEK_EXPORT Vector3 {
 public:
  static constexpr double kUnset = -7.777;

  double x = kUnset;
  double y = kUnset;
  double z = kUnset;

  Vector3() = default;
  Vector3(float xf, float yf, float zf) : x(xf), y(yf), z(zf) {}
  Vector3(double xd, double yd, double zd) : x(xd), y(yd), z(zd) {}
  Vector3(int xi, int yi, int zi) : x(xi), y(yi), z(zi) {}
  explicit Vector3(const float* v) : x(v[0]), y(v[1]), z(v[2]) {}
  explicit Vector3(const double* v) : x(v[0]), y(v[1]), z(v[2]) {}
  Vector3(const Vector3&) = default;
  Vector3& operator=(const Vector3&) = default;

  /// 1 when any component differs from the "not set" value.
  int IsInitialized() const { return (x != kUnset || y != kUnset || z != kUnset) ? 1 : 0; }

  double Getx() const { return x; }
  double Gety() const { return y; }
  double Getz() const { return z; }
  double& Setx() { return x; }
  double& Sety() { return y; }
  double& Setz() { return z; }
  void Get3Vec(double& xo, double& yo, double& zo) const {
    xo = x;
    yo = y;
    zo = z;
  }
  void Get3Vec(float& xo, float& yo, float& zo) const {
    xo = static_cast<float>(x);
    yo = static_cast<float>(y);
    zo = static_cast<float>(z);
  }
  void Set3Vec(double xi, double yi, double zi) {
    x = xi;
    y = yi;
    z = zi;
  }
  void Set3Vec(float xi, float yi, float zi) {
    x = xi;
    y = yi;
    z = zi;
  }
  void Get3VecInArray(double* v) const {
    v[0] = x;
    v[1] = y;
    v[2] = z;
  }
  void Set3VecInArray(const double* v) {
    x = v[0];
    y = v[1];
    z = v[2];
  }
  void Set3VecInArray(const float* v) {
    x = v[0];
    y = v[1];
    z = v[2];
  }

  void operator+=(const Vector3& o) {
    x += o.x;
    y += o.y;
    z += o.z;
  }
  void operator-=(const Vector3& o) {
    x -= o.x;
    y -= o.y;
    z -= o.z;
  }
  void operator*=(const Vector3& o) {
    x *= o.x;
    y *= o.y;
    z *= o.z;
  }
  void operator/=(const Vector3& o) {
    x /= o.x;
    y /= o.y;
    z /= o.z;
  }
  void operator*=(double s) {
    x *= s;
    y *= s;
    z *= s;
  }
  // A true division, not a multiplication by the reciprocal: the last bits can differ.
  void operator/=(double s) {
    x /= s;
    y /= s;
    z /= s;
  }

  Vector3 operator+(const Vector3& o) const { return Vector3(x + o.x, y + o.y, z + o.z); }
  Vector3 operator-(const Vector3& o) const { return Vector3(x - o.x, y - o.y, z - o.z); }
  Vector3 operator*(double s) const { return Vector3(x * s, y * s, z * s); }
  Vector3 operator/(double s) const { return Vector3(x / s, y / s, z / s); }
  Vector3 operator/(const Vector3& o) const { return Vector3(x / o.x, y / o.y, z / o.z); }

  char operator==(const Vector3& o) const { return (x == o.x && y == o.y && z == o.z) ? 1 : 0; }
  char operator!=(const Vector3& o) const { return (x == o.x && y == o.y && z == o.z) ? 0 : 1; }
  /// True when every component differs by strictly less than `tolerance`.
  bool ApproximateEqualsLINF(const Vector3& o, float tolerance) const {
    const double t = tolerance;
    return std::fabs(x - o.x) < t && std::fabs(y - o.y) < t && std::fabs(z - o.z) < t;
  }

  double Dot(const Vector3& o) const { return x * o.x + y * o.y + z * o.z; }
  double MagnitudeSquared() const { return x * x + y * y + z * z; }
  double DistanceSquared(const Vector3& o) const {
    const double dx = x - o.x, dy = y - o.y, dz = z - o.z;
    return dx * dx + dy * dy + dz * dz;
  }
  double NormalizedDot(const Vector3& o) const { return Dot(o) / std::sqrt(MagnitudeSquared() * o.MagnitudeSquared()); }
  /// Radians; the cosine is not clamped, so rounding past +-1 gives NaN.
  double AngleBetween(const Vector3& o) const {
    return std::acos(Dot(o) / (std::sqrt(MagnitudeSquared()) * std::sqrt(o.MagnitudeSquared())));
  }
  void Normalize() {
    const double inverse = 1.0 / std::sqrt(MagnitudeSquared());
    x *= inverse;
    y *= inverse;
    z *= inverse;
  }

  /// this x o
  Vector3 Cross(const Vector3& o) const { return Vector3(y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x); }
  void CrossEquals(const Vector3& o) { *this = Cross(o); }

  /// this . (b x c)
  double ScalarTripleProduct(const Vector3& b, const Vector3& c) const { return Dot(b.Cross(c)); }
  /// (this - origin) . ((b - origin) x (c - origin))
  double ScalarTripleProductShiftOrigin(const Vector3& b, const Vector3& c, const Vector3& origin) const {
    return (*this - origin).Dot((b - origin).Cross(c - origin));
  }
  /// The determinant of the matrix whose rows are a, b, c.
  static double Det3by3(const Vector3& a, const Vector3& b, const Vector3& c) {
    return a.x * (b.y * c.z - b.z * c.y) - a.y * (b.x * c.z - b.z * c.x) + a.z * (b.x * c.y - b.y * c.x);
  }

  /// Component-wise box of points[0 .. count-1]; count must be at least 1 (the first point is
  /// always read). Unlike the 2-D point arrays, no point counts as unset here.
  static void GetBoundingBox(const Vector3* points, int count, Vector3& min, Vector3& max) {
    min = points[0];
    max = points[0];
    for (int i = 1; i < count; ++i) {
      const Vector3& p = points[i];
      if (p.x > max.x) max.x = p.x;
      if (p.y > max.y) max.y = p.y;
      if (p.z > max.z) max.z = p.z;
      if (p.x < min.x) min.x = p.x;
      if (p.y < min.y) min.y = p.y;
      if (p.z < min.z) min.z = p.z;
    }
  }
};

static_assert(sizeof(Vector3) == 3 * sizeof(double), "Vector3 must be readable as double[3]");

/// "x y z" in the stream's own number format, no line end.
VEK_EXPORT std::ostream& operator<<(std::ostream& os, const Vector3& v);
/// Three whitespace-separated doubles into x, y, z.
VEK_EXPORT std::istream& operator>>(std::istream& is, Vector3& v);

}  // namespace vek
