#pragma once
#include "vekCommonExport.h"
#include "vekLensWarp.h"

namespace vek {

/// Radial distortion about a centre: a point at distance r from the centre moves along its ray by
/// the factor k0 + k1 r^2 + k2 r^4 (k1 per pixel squared, k2 per pixel to the fourth).
///
/// The file form is six parameters: width, height, the normalised centre (-1..1 on each axis,
/// 0 the image middle) and k1, k2 scaled by half of (width - 1) pixels, on both axes. SetParameters
/// and SetCameraDimensions rebuild the pixel numbers from them; the direct setters change the
/// pixel numbers only, so the file form (what Write stores) keeps the last SetParameters values.
///
/// Forward of the exact centre is not a number (the factor is multiplied and divided by r). Invert
/// takes k0 as 1 and so undoes Forward only for k0 = 1; InvertB honours k0.
class VEK_EXPORT RadialLensWarp : public LensWarp {
 public:
  static constexpr float kUnset = -1.0f;
  static constexpr int kNumParameters = 6;
  static constexpr double kFileVersion = 1.1;
  static constexpr double kInvertTolerance = 1e-7;
  static constexpr int kInvertSteps = 8;
  static constexpr double kInvertBTolerance = 0.001;
  static constexpr int kInvertBSteps = 6;

  static RadialLensWarp* New();
  const char* GetClassName() const override { return "RadialLensWarp"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// False while the centre, k1 or k2 is unset.
  bool IsInitialized() const override;
  /// Nothing happens for the stored size; otherwise an unset normalised centre becomes the image
  /// middle and the pixel numbers are rebuilt.
  void SetCameraDimensions(int const& width, int const& height) override;
  void InplaceForwardArray(vec2<float>* points, unsigned int const& count) const override;
  void InplaceInvertArray(vec2<float>* points, unsigned int const& count) const override;
  void Forward(float const& x, float const& y, float& outX, float& outY) const override;
  /// Newton on the scale of the ray (at most 8 steps, |f| <= 1e-7); always 0.
  int Invert(float const& x, float const& y, float& outX, float& outY) const override;
  using LensWarp::Forward;
  using LensWarp::Invert;
  /// Newton on the radius (at most 6 steps, residual <= 0.001 px); always 0.
  int InvertB(float const& x, float const& y, float& outX, float& outY) const;

  float Getk0() const { return k0; }
  void Setk0(float value) { k0 = value; }
  float Getk1() const { return k1; }
  void Setk1(float value) { k1 = value; }
  float Getk2() const { return k2; }
  void Setk2(float value) { k2 = value; }
  float GetCenterX() const { return CenterX; }
  void SetCenterX(float value) { CenterX = value; }
  float GetCenterY() const { return CenterY; }
  void SetCenterY(float value) { CenterY = value; }
  int GetWidth() const { return Width; }
  int GetHeight() const { return Height; }

  /// k1 from its scaled form: value * 4 / (width - 1)^2.
  void SetScaledk1(double const& value);
  /// k2 from its scaled form: value / ((width - 1) / 2)^4.
  void SetScaledk2(double const& value);

  int GetNumParameters() const { return kNumParameters; }
  /// The six parameters computed back from the pixel numbers.
  void GetParameters(double* parameters) const;
  void SetParameters(double const* parameters);
  /// Centre x, centre y, k1, k2 exchanged directly.
  void OldGetParameters(float* values) const;
  void OldSetParameters(float const* values);

 protected:
  RadialLensWarp() = default;
  ~RadialLensWarp() override = default;

  int Read(std::istream* in) override;
  int Write(std::ostream* out) override;
  /// A number file of seven doubles: a version (ignored) and the six parameters. The reader's
  /// code is returned as it is; another count gives 1.
  int Read(char const* fileName);

 private:
  RadialLensWarp(const RadialLensWarp&) = delete;
  RadialLensWarp& operator=(const RadialLensWarp&) = delete;

  void UpdateFromParameters();

  float CenterX = kUnset;
  float CenterY = kUnset;
  float k0 = 1.0f;
  float k1 = kUnset;
  float k2 = kUnset;
  int Width = -1;
  int Height = -1;
  double Parameters[kNumParameters] = {-1, -1, -1, -1, -1, -1};
};

}  // namespace vek
