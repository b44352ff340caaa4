#include "vekKeystoneWarp.h"

#include <cmath>

#include "vekMatrix3x3.h"
#include "vekOutputMessages.h"
#include "vekOutputNumbers.h"

namespace vek {

KeystoneWarp* KeystoneWarp::New() { return new KeystoneWarp; }

KeystoneWarp::KeystoneWarp() {
  for (double& p : Parameters) p = kUnset;
  for (auto& row : Rotation)
    for (double& e : row) e = kUnset;
  for (double& c : InvertingTranslation) c = kUnset;
}

void KeystoneWarp::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  const double* p = Parameters;
  os << indent << "Quaternion: " << p[0] << " " << p[1] << " " << p[2] << "\n";
  os << indent << "Translation: " << p[3] << " " << p[4] << " " << p[5] << "\n";
  os << indent << "Focal_Length: " << p[6] << "\n";
  os << indent << "Center: " << CenterX << " " << CenterY << "\n";
  os << indent << "Rotation Matrix: ";
  for (int i = 0; i < 9; ++i) os << (i ? " " : "") << Rotation[i / 3][i % 3];
  os << "\n";
  os << indent << "Cached for Inverting Trans: " << InvertingTranslation[0] << " " << InvertingTranslation[1] << " "
     << InvertingTranslation[2] << "\n";
}

int KeystoneWarp::IsInitialized() const {
  for (double p : Parameters)
    if (p == kUnset) return 0;
  return (CenterX == kUnset || CenterY == kUnset) ? 0 : 1;
}

void KeystoneWarp::SetCameraCenterFromCameraSize(int const& width, int const& height) {
  CenterX = (width - 1) * 0.5;
  CenterY = (height - 1) * 0.5;
}

void KeystoneWarp::SetParameters(double const* parameters) {
  for (int i = 0; i < kNumParameters; ++i) Parameters[i] = parameters[i];
  Rebuild();
}

void KeystoneWarp::SetParameters(float const* parameters) {
  for (int i = 0; i < kNumParameters; ++i) Parameters[i] = parameters[i];
  Rebuild();
}

void KeystoneWarp::GetParameters(double* parameters) const {
  for (int i = 0; i < kNumParameters; ++i) parameters[i] = Parameters[i];
}

void KeystoneWarp::GetParameters(float* parameters) const {
  for (int i = 0; i < kNumParameters; ++i) parameters[i] = static_cast<float>(Parameters[i]);
}

void KeystoneWarp::Rebuild() {
  Matrix3x3::FillRotationFromQuaternion(Parameters, Rotation);
  const double* t = Parameters + 3;
  for (int j = 0; j < 3; ++j)
    InvertingTranslation[j] = Rotation[0][j] * t[0] + Rotation[1][j] * t[1] + Rotation[2][j] * t[2];
}

void KeystoneWarp::Forward(double x, double y, double& u, double& v) const {
  const double* t = Parameters + 3;
  const double f = Parameters[6];
  const double X = Rotation[0][0] * x + Rotation[0][1] * y + t[0];
  const double Y = Rotation[1][0] * x + Rotation[1][1] * y + t[1];
  const double Z = Rotation[2][0] * x + Rotation[2][1] * y + t[2];
  u = f * X / Z + CenterX;
  v = f * Y / Z + CenterY;
}

void KeystoneWarp::Forward(float x, float y, float& u, float& v) const {
  double ud, vd;
  Forward(static_cast<double>(x), static_cast<double>(y), ud, vd);
  u = static_cast<float>(ud);
  v = static_cast<float>(vd);
}

void KeystoneWarp::Forward(const vec2<float>& point, vec2<float>& pixel) const {
  Forward(point.x, point.y, pixel.x, pixel.y);
}

void KeystoneWarp::ThreeDForward(double x, double y, double z, double& u, double& v) const {
  const double* t = Parameters + 3;
  const double f = Parameters[6];
  const double X = Rotation[0][0] * x + Rotation[0][1] * y + Rotation[0][2] * z + t[0];
  const double Y = Rotation[1][0] * x + Rotation[1][1] * y + Rotation[1][2] * z + t[1];
  const double Z = Rotation[2][0] * x + Rotation[2][1] * y + Rotation[2][2] * z + t[2];
  if (!(Z > 0.0)) return;
  u = f * X / Z + CenterX;
  v = f * Y / Z + CenterY;
}

void KeystoneWarp::GetRinvCamera(double u, double v, double& rx, double& ry, double& rz) const {
  const double f = Parameters[6];
  const double a = (u - CenterX) / f, b = (v - CenterY) / f;
  rx = Rotation[0][0] * a + Rotation[1][0] * b + Rotation[2][0];
  ry = Rotation[0][1] * a + Rotation[1][1] * b + Rotation[2][1];
  rz = Rotation[0][2] * a + Rotation[1][2] * b + Rotation[2][2];
}

void KeystoneWarp::GetRinvT(double& tx, double& ty, double& tz) const {
  tx = InvertingTranslation[0];
  ty = InvertingTranslation[1];
  tz = InvertingTranslation[2];
}

int KeystoneWarp::Invert(double u, double v, double& x, double& y) const {
  double rx, ry, rz;
  GetRinvCamera(u, v, rx, ry, rz);
  if (rz == 0.0) return 1;
  const double s = InvertingTranslation[2] / rz;
  x = s * rx - InvertingTranslation[0];
  y = s * ry - InvertingTranslation[1];
  return 0;
}

int KeystoneWarp::Invert(float u, float v, float& x, float& y) const {
  double xd, yd;
  const int result = Invert(static_cast<double>(u), static_cast<double>(v), xd, yd);
  if (result != 0) return result;
  x = static_cast<float>(xd);
  y = static_cast<float>(yd);
  return 0;
}

int KeystoneWarp::Invert(const vec2<float>& pixel, vec2<float>& point) const {
  return Invert(pixel.x, pixel.y, point.x, point.y);
}

int KeystoneWarp::InvertB(double u, double v, double& x, double& y) const {
  const double* t = Parameters + 3;
  const double f = Parameters[6];
  const double a = (u - CenterX) / f, b = (v - CenterY) / f;
  const auto& R = Rotation;
  double det;
  Matrix3x3::Solve2x2(R[0][0] - R[2][0] * a, R[0][1] - R[2][1] * a, R[1][0] - R[2][0] * b, R[1][1] - R[2][1] * b,
                      t[2] * a - t[0], t[2] * b - t[1], x, y, det);
  return det == 0.0 ? 1 : 0;
}

double KeystoneWarp::get_quaternion_real(double const* q) {
  const double s = q[0] * q[0] + q[1] * q[1] + q[2] * q[2];
  if (s <= 1.0) return std::sqrt(1.0 - s);
  VEK_REPORT_ERROR("This should not happen, sum is bigger than 1" << q[0] << " " << q[1] << " " << q[2] << " " << q[3]
                                                                  << " "
                                                                  << ":" << s);
  return 0.0;
}

void KeystoneWarp::UpdatePartialRotationMatrix(double const* q, double (*m)[3]) {
  const double w = get_quaternion_real(q);
  const double x = q[0], y = q[1], z = q[2];
  m[0][0] = 1.0 - 2.0 * (y * y + z * z);
  m[0][1] = 2.0 * (x * y - z * w);
  m[1][0] = 2.0 * (z * w + x * y);
  m[1][1] = 1.0 - 2.0 * (z * z + x * x);
  m[2][0] = 2.0 * (z * x - y * w);
  m[2][1] = 2.0 * (z * y + x * w);
}

int KeystoneWarp::Read(char const* fileName) {
  float* values = nullptr;
  int count = 0;
  const int result = OutputNumbers::InputFloatFile(fileName, values, count);
  if (result != 0) return result;
  if (count != kNumParameters) {
    delete[] values;
    return 1;
  }
  SetParameters(values);
  delete[] values;
  return 0;
}

int KeystoneWarp::Write(char const* fileName) const {
  float values[kNumParameters];
  GetParameters(values);
  return OutputNumbers::OutputFloatFile(fileName, values, kNumParameters);
}

}  // namespace vek
