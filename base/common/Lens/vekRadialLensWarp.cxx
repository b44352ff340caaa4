#include "vekRadialLensWarp.h"

#include <cmath>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekLensWarpArray.h"
#include "vekLensWarpStream.h"
#include "vekOutputNumbers.h"
#include "vekSaturatedInt.h"

namespace vek {

namespace {

struct RadialNumbers {
  float cx, cy, k0, k1, k2;

  void Forward(float x, float y, float& outX, float& outY) const {
    const float dx = x - cx;
    const float dy = y - cy;
    const float r2 = dx * dx + dy * dy;
    const float r = std::sqrt(r2);
    const float factor = ((r2 * k2 + k1) * r2 + k0) * r / r;
    outX = cx + factor * dx;
    outY = cy + factor * dy;
  }

  void Invert(float x, float y, float& outX, float& outY) const {
    const float dx = x - cx;
    const float dy = y - cy;
    const float r2 = dx * dx + dy * dy;
    if (r2 == 0) {
      outX = x;
      outY = y;
      return;
    }
    const double a = static_cast<double>(k2) * r2 * r2;
    const double b = static_cast<double>(k1) * r2;
    double t = 1.0;
    double f = a + b;
    for (int step = 0; std::fabs(f) > RadialLensWarp::kInvertTolerance && step < RadialLensWarp::kInvertSteps; ++step) {
      const double t2 = t * t;
      t -= f / ((5 * a * t2 + 3 * b) * t2 + 1);
      const double s2 = t * t;
      f = ((a * s2 + b) * s2 + 1) * t - 1;
    }
    outX = static_cast<float>(cx + t * dx);
    outY = static_cast<float>(cy + t * dy);
  }
};

RadialNumbers NumbersOf(const RadialLensWarp& warp) {
  return {warp.GetCenterX(), warp.GetCenterY(), warp.Getk0(), warp.Getk1(), warp.Getk2()};
}

}  // namespace

RadialLensWarp* RadialLensWarp::New() { return new RadialLensWarp; }

void RadialLensWarp::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Center: (" << CenterX << "," << CenterY << ")\n";
  os << indent << "k1 : cubic coefficient :" << k1 << "\n";
  os << indent << "k2 : fifth order coefficient :" << k2 << "\n";
}

bool RadialLensWarp::IsInitialized() const {
  return !(CenterX == kUnset || CenterY == kUnset || k2 == kUnset || k1 == kUnset);
}

void RadialLensWarp::UpdateFromParameters() {
  Width = SaturatedInt(Parameters[0]);
  Height = SaturatedInt(Parameters[1]);
  const double w1 = Width - 1.0;
  const double h1 = Height - 1.0;
  CenterX = static_cast<float>((Parameters[2] + 1) * w1 * 0.5);
  CenterY = static_cast<float>((Parameters[3] + 1) * h1 * 0.5);
  SetScaledk1(Parameters[4]);
  SetScaledk2(Parameters[5]);
}

void RadialLensWarp::SetScaledk1(double const& value) {
  const double w1 = Width - 1.0;
  k1 = static_cast<float>(value * 4 / (w1 * w1));
}

void RadialLensWarp::SetScaledk2(double const& value) {
  const double half = (Width - 1.0) * 0.5;
  const double square = half * half;
  k2 = static_cast<float>(value / (square * square));
}

void RadialLensWarp::GetParameters(double* parameters) const {
  const double w1 = Width - 1.0;
  const double h1 = Height - 1.0;
  const double half = w1 * 0.5;
  const double square = half * half;
  parameters[0] = Width;
  parameters[1] = Height;
  parameters[2] = CenterX * 2 / w1 - 1;
  parameters[3] = CenterY * 2 / h1 - 1;
  parameters[4] = w1 * w1 * 0.25 * k1;
  parameters[5] = k2 * (square * square);
}

void RadialLensWarp::SetParameters(double const* parameters) {
  for (int i = 0; i < kNumParameters; ++i) Parameters[i] = parameters[i];
  UpdateFromParameters();
}

void RadialLensWarp::OldGetParameters(float* values) const {
  values[0] = CenterX;
  values[1] = CenterY;
  values[2] = k1;
  values[3] = k2;
}

void RadialLensWarp::OldSetParameters(float const* values) {
  CenterX = values[0];
  CenterY = values[1];
  k1 = values[2];
  k2 = values[3];
}

void RadialLensWarp::SetCameraDimensions(int const& width, int const& height) {
  if (width == Width && height == Height) return;
  Parameters[0] = width;
  Parameters[1] = height;
  if (Parameters[2] == -1) Parameters[2] = 0;
  if (Parameters[3] == -1) Parameters[3] = 0;
  UpdateFromParameters();
}

void RadialLensWarp::Forward(float const& x, float const& y, float& outX, float& outY) const {
  NumbersOf(*this).Forward(x, y, outX, outY);
}

int RadialLensWarp::Invert(float const& x, float const& y, float& outX, float& outY) const {
  NumbersOf(*this).Invert(x, y, outX, outY);
  return VEK_SUCCESS;
}

void RadialLensWarp::InplaceForwardArray(vec2<float>* points, unsigned int const& count) const {
  if (!lens_detail::IsExactly(*this)) return LensWarp::InplaceForwardArray(points, count);
  const RadialNumbers numbers = NumbersOf(*this);
  lens_detail::MapPoints(points, count,
                         [&numbers](float x, float y, vec2<float>& p) { numbers.Forward(x, y, p.x, p.y); });
}

void RadialLensWarp::InplaceInvertArray(vec2<float>* points, unsigned int const& count) const {
  if (!lens_detail::IsExactly(*this)) return LensWarp::InplaceInvertArray(points, count);
  const RadialNumbers numbers = NumbersOf(*this);
  lens_detail::MapPoints(points, count,
                         [&numbers](float x, float y, vec2<float>& p) { numbers.Invert(x, y, p.x, p.y); });
}

int RadialLensWarp::InvertB(float const& x, float const& y, float& outX, float& outY) const {
  const double dx = x - CenterX;
  const double dy = y - CenterY;
  const double radius = std::sqrt(dx * dx + dy * dy);
  if (radius == 0) {
    outX = x;
    outY = y;
    return VEK_SUCCESS;
  }
  double rho = radius;
  double f = (radius * radius * k2 + k1) * radius * radius * radius;
  for (int step = 0; std::fabs(f) > kInvertBTolerance && step < kInvertBSteps; ++step) {
    const double rho2 = rho * rho;
    rho -= f / ((5 * k2 * rho2 + 3 * k1) * rho2 + k0);
    const double next2 = rho * rho;
    f = ((k2 * next2 + k1) * next2 + k0) * rho - radius;
  }
  outX = static_cast<float>(CenterX + rho / radius * dx);
  outY = static_cast<float>(CenterY + rho / radius * dy);
  return VEK_SUCCESS;
}

int RadialLensWarp::Read(std::istream* in) {
  int code = lens_detail::ReadVersion(in, kFileVersion);
  if (code != VEK_SUCCESS) return code;
  double values[kNumParameters];
  code = lens_detail::ReadNumbers(in, values, kNumParameters);
  if (code != VEK_SUCCESS) return code;
  SetParameters(values);
  return VEK_SUCCESS;
}

int RadialLensWarp::Write(std::ostream* out) {
  if (!out) return VEK_UNABLE_TO_WRITE_TO_STREAM;
  *out << kFileVersion << " ";
  for (double p : Parameters) *out << p << " ";
  *out << "\n";
  return out->good() ? VEK_SUCCESS : VEK_UNABLE_TO_WRITE_TO_STREAM;
}

int RadialLensWarp::Read(char const* fileName) {
  double* values = nullptr;
  int count = 0;
  const int code = OutputNumbers::InputDoubleFile(fileName, values, count);
  if (code != VEK_SUCCESS) return code;
  if (count != kNumParameters + 1) {
    delete[] values;
    return VEK_FAILURE;
  }
  SetParameters(values + 1);
  delete[] values;
  return VEK_SUCCESS;
}

}  // namespace vek
