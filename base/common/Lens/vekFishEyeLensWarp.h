#pragma once
#include "vekCommonExport.h"
#include "vekLensWarp.h"

namespace vek {

/// The identity lens: Forward and Invert copy the point. It only keeps the camera size and the
/// image centre, so that calibration can treat every camera alike.
class VEK_EXPORT FishEyeLensWarp : public LensWarp {
 public:
  static constexpr float kUnset = -1.0f;
  static constexpr double kFileVersion = 1.0;

  static FishEyeLensWarp* New();
  const char* GetClassName() const override { return "FishEyeLensWarp"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  bool IsInitialized() const override { return !(CenterX == kUnset || CenterY == kUnset); }
  /// Stores the size and puts the centre in the image middle, ((w - 1) / 2, (h - 1) / 2).
  void SetCameraDimensions(int const& width, int const& height) override;
  void InplaceForwardArray(vec2<float>* points, unsigned int const& count) const override;
  void InplaceInvertArray(vec2<float>* points, unsigned int const& count) const override;
  void Forward(float const& x, float const& y, float& outX, float& outY) const override;
  int Invert(float const& x, float const& y, float& outX, float& outY) const override;
  using LensWarp::Forward;
  using LensWarp::Invert;

  float GetCenterX() const { return CenterX; }
  void SetCenterX(float value) { CenterX = value; }
  float GetCenterY() const { return CenterY; }
  void SetCenterY(float value) { CenterY = value; }
  int GetWidth() const { return Width; }
  int GetHeight() const { return Height; }

  /// Nothing to test for the identity; kept for callers that run it for every model.
  static int ForwardInvertTest() { return 0; }

 protected:
  FishEyeLensWarp() = default;
  ~FishEyeLensWarp() override = default;

  int Read(std::istream* in) override;
  int Write(std::ostream* out) override;

 private:
  FishEyeLensWarp(const FishEyeLensWarp&) = delete;
  FishEyeLensWarp& operator=(const FishEyeLensWarp&) = delete;

  float CenterX = kUnset;
  float CenterY = kUnset;
  int Width = -1;
  int Height = -1;
};

}  // namespace vek
