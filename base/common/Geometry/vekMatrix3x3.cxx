#include "vekMatrix3x3.h"

#include <cmath>

#include "vekOutputMessages.h"

namespace vek {

Matrix3x3* Matrix3x3::New() { return new Matrix3x3; }

Matrix3x3::Matrix3x3() { Identity(); }

void Matrix3x3::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Elements:\n";
  for (const auto& row : Elements) os << indent << indent << row[0] << " " << row[1] << " " << row[2] << "\n";
}

void Matrix3x3::Zero() {
  for (auto& row : Elements)
    for (double& e : row) e = 0.0;
}

void Matrix3x3::Identity() {
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) Elements[i][j] = (i == j) ? 1.0 : 0.0;
}

void Matrix3x3::SetRow(int i, const Vector3& row) {
  Elements[i][0] = row.x;
  Elements[i][1] = row.y;
  Elements[i][2] = row.z;
}

void Matrix3x3::SetColumn(int j, const Vector3& column) {
  Elements[0][j] = column.x;
  Elements[1][j] = column.y;
  Elements[2][j] = column.z;
}

void Matrix3x3::Fill(const double values[9]) {
  for (int i = 0; i < 9; ++i) Elements[i / 3][i % 3] = values[i];
}

void Matrix3x3::Copy(const Matrix3x3* other) {
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 3; ++j) Elements[i][j] = other->Elements[i][j];
}

void Matrix3x3::CopyFull(const Matrix3x3* other) {
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) Elements[i][j] = other->Elements[i][j];
}

void Matrix3x3::ScaleEntireMatrix(double s) {
  for (auto& row : Elements)
    for (double& e : row) e *= s;
}

void Matrix3x3::Multiply3x3Slow(const Matrix3x3* a, const Matrix3x3* b, Matrix3x3* p) {
  double product[3][3];
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c)
      product[r][c] = a->Elements[r][0] * b->Elements[0][c] + a->Elements[r][1] * b->Elements[1][c] +
                      a->Elements[r][2] * b->Elements[2][c];
  for (int r = 0; r < 3; ++r)
    for (int c = 0; c < 3; ++c) p->Elements[r][c] = product[r][c];
}

void Matrix3x3::Multiply3x3(const Matrix3x3* a, const Matrix3x3* b, Matrix3x3* p) {
  const auto& A = a->Elements;
  const auto& B = b->Elements;
  double product[2][3];
  for (int r = 0; r < 2; ++r) {
    product[r][0] = A[r][0] * B[0][0] + A[r][1] * B[1][0];
    product[r][1] = A[r][0] * B[0][1] + A[r][1] * B[1][1];
    product[r][2] = A[r][0] * B[0][2] + A[r][1] * B[1][2] + A[r][2];
  }
  for (int r = 0; r < 2; ++r)
    for (int c = 0; c < 3; ++c) p->Elements[r][c] = product[r][c];
  p->Elements[2][0] = 0.0;
  p->Elements[2][1] = 0.0;
  p->Elements[2][2] = 1.0;
}

void Matrix3x3::MultiplyVector3(const Vector3& in, Vector3& out) const {
  const double x = in.x, y = in.y, z = in.z;
  out.x = Elements[0][0] * x + Elements[0][1] * y + Elements[0][2] * z;
  out.y = Elements[1][0] * x + Elements[1][1] * y + Elements[1][2] * z;
  out.z = Elements[2][0] * x + Elements[2][1] * y + Elements[2][2] * z;
}

void Matrix3x3::MultiplyPoint(double x, double y, double& xo, double& yo) const {
  xo = Elements[0][0] * x + Elements[0][1] * y + Elements[0][2];
  yo = Elements[1][0] * x + Elements[1][1] * y + Elements[1][2];
}

void Matrix3x3::MultiplyPoint(float x, float y, float& xo, float& yo) const {
  double xd, yd;
  MultiplyPoint(static_cast<double>(x), static_cast<double>(y), xd, yd);
  xo = static_cast<float>(xd);
  yo = static_cast<float>(yd);
}

double Matrix3x3::Determinant() const {
  const auto& m = Elements;
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

double Matrix3x3::FrobeniusNorm() const {
  double sum = 0.0;
  for (const auto& row : Elements)
    for (double e : row) sum += e * e;
  return sum;
}

void Matrix3x3::Transpose() {
  for (int i = 0; i < 3; ++i)
    for (int j = i + 1; j < 3; ++j) {
      const double t = Elements[i][j];
      Elements[i][j] = Elements[j][i];
      Elements[j][i] = t;
    }
}

void Matrix3x3::GeneralInvert() {
  const auto& m = Elements;
  const double det = Determinant();
  double inverse[3][3];
  inverse[0][0] = (m[1][1] * m[2][2] - m[1][2] * m[2][1]) / det;
  inverse[0][1] = (m[0][2] * m[2][1] - m[0][1] * m[2][2]) / det;
  inverse[0][2] = (m[0][1] * m[1][2] - m[0][2] * m[1][1]) / det;
  inverse[1][0] = (m[1][2] * m[2][0] - m[1][0] * m[2][2]) / det;
  inverse[1][1] = (m[0][0] * m[2][2] - m[0][2] * m[2][0]) / det;
  inverse[1][2] = (m[0][2] * m[1][0] - m[0][0] * m[1][2]) / det;
  inverse[2][0] = (m[1][0] * m[2][1] - m[1][1] * m[2][0]) / det;
  inverse[2][1] = (m[0][1] * m[2][0] - m[0][0] * m[2][1]) / det;
  inverse[2][2] = (m[0][0] * m[1][1] - m[0][1] * m[1][0]) / det;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) Elements[i][j] = inverse[i][j];
}

void Matrix3x3::Invert2x2Portion() {
  auto& m = Elements;
  const double a = m[0][0], b = m[0][1], tx = m[0][2];
  const double c = m[1][0], d = m[1][1], ty = m[1][2];
  const double det = a * d - c * b;
  if (std::fabs(det) < 0.0001) VEK_REPORT_WARNING("det is very small:" << det);
  const double ai = d / det, di = a / det, bi = -b / det, ci = -c / det;
  m[0][0] = ai;
  m[0][1] = bi;
  m[0][2] = -(tx * ai) - (bi * ty);
  m[1][0] = ci;
  m[1][1] = di;
  m[1][2] = -(ci * tx) - (di * ty);
}

void Matrix3x3::InplaceUpperDiagonalInvert() {
  auto& m = Elements;
  m[0][0] = 1.0 / m[0][0];
  m[1][1] = 1.0 / m[1][1];
  m[2][2] = 1.0 / m[2][2];
  m[0][1] = -(m[0][0] * m[0][1] * m[1][1]);
  m[0][2] = -((m[0][0] * m[0][2]) + (m[0][1] * m[1][2])) * m[2][2];
  m[1][2] = -(m[1][2] * m[1][1]) * m[2][2];
}

void Matrix3x3::HowardSalwenInvert() {}

void Matrix3x3::Solve2x2(double a, double b, double c, double d, double e, double f, double& x, double& y,
                         double& det) {
  det = a * d - b * c;
  if (det == 0.0) return;
  x = (d * e - f * b) / det;
  y = (f * a - c * e) / det;
}

void Matrix3x3::FillRotationAboutAxis(const Vector3& axis, double angle) {
  Identity();
  if (angle == 0.0) return;
  const double x = axis.x, y = axis.y, z = axis.z;
  const double k = std::cos(angle), s = std::sin(angle), t = 1.0 - k;
  auto& m = Elements;
  m[0][0] = x * x + (1.0 - x * x) * k;
  m[0][1] = x * y * t - z * s;
  m[0][2] = x * z * t + y * s;
  m[1][0] = x * y * t + z * s;
  m[1][1] = y * y + (1.0 - y * y) * k;
  m[1][2] = y * z * t - x * s;
  m[2][0] = x * z * t - y * s;
  m[2][1] = y * z * t + x * s;
  m[2][2] = z * z + (1.0 - z * z) * k;
}

void Matrix3x3::FillRotationFromEuler(const double angles[3]) {
  const double ca = std::cos(angles[0]), sa = std::sin(angles[0]);
  const double cb = std::cos(angles[1]), sb = std::sin(angles[1]);
  const double cc = std::cos(angles[2]), sc = std::sin(angles[2]);
  const double rx[9] = {1, 0, 0, 0, ca, sa, 0, -sa, ca};
  const double ry[9] = {cb, 0, -sb, 0, 1, 0, sb, 0, cb};
  const double rz[9] = {cc, sc, 0, -sc, cc, 0, 0, 0, 1};
  Matrix3x3* x = New();
  Matrix3x3* y = New();
  x->Fill(rx);
  y->Fill(ry);
  Fill(rz);
  Multiply3x3Slow(y, this, this);
  Multiply3x3Slow(x, this, this);
  x->Release();
  y->Release();
}

void Matrix3x3::FillInvertedRotationFromEuler(const double angles[3]) {
  FillRotationFromEuler(angles);
  Transpose();
}

void Matrix3x3::FillRotationFromAxisAlignedRotations(const double angles[3]) {
  Matrix3x3* r2 = New();
  Matrix3x3* r3 = New();
  FillRotationAboutAxis(Vector3(0.0, 0.0, 1.0), angles[0]);
  r2->FillRotationAboutAxis(Vector3(0.0, 1.0, 0.0), angles[1]);
  r3->FillRotationAboutAxis(Vector3(-1.0, 0.0, 0.0), angles[2]);
  Multiply3x3Slow(r2, this, this);
  Multiply3x3Slow(r3, this, this);
  r2->Release();
  r3->Release();
}

void Matrix3x3::FillRotationFromEuler_Frustum(const double angles[3]) {
  Matrix3x3* r2 = New();
  Matrix3x3* r3 = New();
  FillRotationAboutAxis(Vector3(0.0, 0.0, 1.0), angles[0]);
  Vector3 axis2;
  MultiplyVector3(Vector3(0.0, 1.0, 0.0), axis2);
  r2->FillRotationAboutAxis(axis2, angles[1]);
  Vector3 axis3;
  MultiplyVector3(Vector3(-1.0, 0.0, 0.0), axis3);
  r2->MultiplyVector3(axis3, axis3);
  r3->FillRotationAboutAxis(axis3, angles[2]);
  Multiply3x3Slow(r2, this, this);
  Multiply3x3Slow(r3, this, this);
  r2->Release();
  r3->Release();
}

void Matrix3x3::FillRotationFromQuaternion(const double q[3]) { FillRotationFromQuaternion(q, Elements); }

void Matrix3x3::FillRotationFromQuaternion(const double q[3], double m[3][3]) {
  FillRotationFromUnitQuaternion(QuaternionReal(q), q, m);
}

void Matrix3x3::FillRotationFromUnitQuaternion(double w, const double q[3], double m[3][3]) {
  const double x = q[0], y = q[1], z = q[2];
  m[0][0] = 1.0 - 2.0 * (y * y + z * z);
  m[0][1] = 2.0 * (x * y - z * w);
  m[0][2] = 2.0 * (x * z + y * w);
  m[1][0] = 2.0 * (x * y + z * w);
  m[1][1] = 1.0 - 2.0 * (x * x + z * z);
  m[1][2] = 2.0 * (y * z - x * w);
  m[2][0] = 2.0 * (x * z - y * w);
  m[2][1] = 2.0 * (y * z + x * w);
  m[2][2] = 1.0 - 2.0 * (x * x + y * y);
}

double Matrix3x3::QuaternionReal(const double* q) {
  const double s = q[0] * q[0] + q[1] * q[1] + q[2] * q[2];
  if (s <= 1.0) return std::sqrt(1.0 - s);
  VEK_REPORT_ERROR("This should not happen, sum is bigger than 1:" << q[0] << " " << q[1] << " " << q[2] << " " << q[3]
                                                                   << ":" << s);
  return 0.0;
}

void Matrix3x3::MatrixToQuaternion(double q[3]) const { MatrixToQuaternion(Elements, q); }

void Matrix3x3::MatrixToQuaternion(const double m[3][3], double q[3]) {
  const double t = m[0][0] + m[1][1] + m[2][2] + 1.0;
  if (t > 0.0) {
    const double k = 1.0 / (2.0 * std::sqrt(t));
    q[0] = (m[2][1] - m[1][2]) * k;
    q[1] = (m[0][2] - m[2][0]) * k;
    q[2] = (m[1][0] - m[0][1]) * k;
  } else if (m[0][0] > m[1][1] && m[0][0] > m[2][2]) {
    const double s = 2.0 * std::sqrt(1.0 + m[0][0] - m[1][1] - m[2][2]);
    q[0] = s / 4.0;
    q[1] = (m[1][0] + m[0][1]) / s;
    q[2] = (m[2][0] + m[0][2]) / s;
  } else if (m[1][1] > m[2][2]) {
    const double s = 2.0 * std::sqrt(1.0 + m[1][1] - m[0][0] - m[2][2]);
    q[0] = (m[1][0] + m[0][1]) / s;
    q[1] = s / 4.0;
    q[2] = (m[2][1] + m[1][2]) / s;
  } else {
    const double s = 2.0 * std::sqrt(1.0 + m[2][2] - m[0][0] - m[1][1]);
    q[0] = (m[2][0] + m[0][2]) / s;
    q[1] = (m[2][1] + m[1][2]) / s;
    q[2] = s / 4.0;
  }
}

}  // namespace vek
