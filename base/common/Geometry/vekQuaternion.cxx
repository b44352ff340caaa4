#include "vekQuaternion.h"

#include <cmath>

#include "vekMatrix3x3.h"

namespace vek {

Quaternion* Quaternion::New() { return new Quaternion; }

void Quaternion::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Scalar Part: " << w << "\n";
  os << indent << "Vector Part: " << x << " " << y << " " << z << " "
     << "\n";
}

void Quaternion::Set(double wValue, double xValue, double yValue, double zValue) {
  w = wValue;
  x = xValue;
  y = yValue;
  z = zValue;
}

void Quaternion::Identity() { Set(1.0, 0.0, 0.0, 0.0); }

void Quaternion::Copy(const Quaternion& other) { Set(other.w, other.x, other.y, other.z); }

void Quaternion::SetFrom3Vector(const double v[3]) { Set(0.0, v[0], v[1], v[2]); }

void Quaternion::SetFromQuaternion3Vector(const double v[3]) {
  Set(std::sqrt(1.0 - (v[0] * v[0] + v[1] * v[1] + v[2] * v[2])), v[0], v[1], v[2]);
}

void Quaternion::SetFromAngleAndVector(double angle, const double axis[3]) {
  const double s = std::sin(angle / 2.0);
  Set(std::cos(angle / 2.0), s * axis[0], s * axis[1], s * axis[2]);
}

void Quaternion::GetAngleAndVector(double& angle, double axis[3]) const {
  angle = 2.0 * std::acos(w);
  const double n = x * x + y * y + z * z;
  if (n == 0.0) return;
  const double length = std::sqrt(n);
  axis[0] = x / length;
  axis[1] = y / length;
  axis[2] = z / length;
}

int Quaternion::Is3Vector() const { return (w == 0.0 && (x != 0.0 || y != 0.0 || z != 0.0)) ? 1 : 0; }

double Quaternion::DotProduct(const Quaternion& o) const { return w * o.w + x * o.x + y * o.y + z * o.z; }

double Quaternion::NormSquared() const { return DotProduct(*this); }

void Quaternion::FormConjugate() {
  x = -x;
  y = -y;
  z = -z;
}

void Quaternion::InvertRotation() { FormConjugate(); }

void Quaternion::MultiplyQuaternion(const Quaternion& a, const Quaternion& b, Quaternion& out) {
  out.w = a.w * b.w - (a.x * b.x + a.y * b.y + a.z * b.z);
  out.x = a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y;
  out.y = a.w * b.y + a.y * b.w + a.z * b.x - a.x * b.z;
  out.z = a.w * b.z + a.z * b.w + a.x * b.y - a.y * b.x;
}

void Quaternion::FormRotationMatrix(double m[3][3]) const {
  const double v[3] = {x, y, z};
  Matrix3x3::FillRotationFromUnitQuaternion(w, v, m);
}

void Quaternion::RotatePointSuperSlow(const double in[3], double out[3]) const {
  double m[3][3];
  FormRotationMatrix(m);
  const double p[3] = {in[0], in[1], in[2]};
  for (int r = 0; r < 3; ++r) out[r] = m[r][0] * p[0] + m[r][1] * p[1] + m[r][2] * p[2];
}

void Quaternion::RotatePointSlow(const double in[3], double out[3]) const {
  const double px = in[0], py = in[1], pz = in[2];
  const double scale = 2.0 * w * w - 1.0;
  const double dot2 = 2.0 * (x * px + y * py + z * pz);
  // p x q, not q x p: this rotates by the conjugate.
  const double cx = py * z - pz * y, cy = pz * x - px * z, cz = px * y - py * x;
  out[0] = scale * px + dot2 * x + 2.0 * w * cx;
  out[1] = scale * py + dot2 * y + 2.0 * w * cy;
  out[2] = scale * pz + dot2 * z + 2.0 * w * cz;
}

}  // namespace vek
