#pragma once
#include "vekCommonExport.h"
#include "vekLensWarp.h"

namespace vek {

/// The base of the pinhole-based lens models: one array of NUM_PARAMETERS floats, in this order:
/// width, height, focal length x and y, centre x and y (pixels), then eight distortion parameters
/// whose meaning each model defines. All start at 0, focal lengths and centre at kUnset. The file
/// body is the version 1.1 and the 14 floats.
class VEK_EXPORT GenericLensWarp : public LensWarp {
 public:
  static constexpr int NUM_PARAMETERS = 14;
  static constexpr int kNumDistortionParameters = 8;
  static constexpr float kUnset = -1.0f;
  static constexpr double kFileVersion = 1.1;

  const char* GetClassName() const override { return "GenericLensWarp"; }

  /// False while focal length x, focal length y or centre x is unset (centre y is not tested).
  bool IsInitialized() const override;
  /// Stores the size, nothing more.
  void SetCameraDimensions(int const& width, int const& height) override;

  float& GetFocalLengthX() { return Parameters[kFocalX]; }
  float const& GetFocalLengthX() const { return Parameters[kFocalX]; }
  void SetFocalLengthX(float const& value) { Parameters[kFocalX] = value; }
  float& GetFocalLengthY() { return Parameters[kFocalY]; }
  float const& GetFocalLengthY() const { return Parameters[kFocalY]; }
  void SetFocalLengthY(float const& value) { Parameters[kFocalY] = value; }
  float& GetCenterX() { return Parameters[kCenterX]; }
  float const& GetCenterX() const { return Parameters[kCenterX]; }
  void SetCenterX(float const& value) { Parameters[kCenterX] = value; }
  float& GetCenterY() { return Parameters[kCenterY]; }
  float const& GetCenterY() const { return Parameters[kCenterY]; }
  void SetCenterY(float const& value) { Parameters[kCenterY] = value; }
  float GetWidth() const { return Parameters[kWidth]; }
  float GetHeight() const { return Parameters[kHeight]; }

  void GetDistortionParams(float* values) const;
  void SetDistortionParams(float const* values);

 protected:
  enum : int { kWidth = 0, kHeight = 1, kFocalX = 2, kFocalY = 3, kCenterX = 4, kCenterY = 5, kDistortion = 6 };

  GenericLensWarp();
  ~GenericLensWarp() override = default;

  int Read(std::istream* in) override;
  int Write(std::ostream* out) override;

  float Parameters[NUM_PARAMETERS];

 private:
  GenericLensWarp(const GenericLensWarp&) = delete;
  GenericLensWarp& operator=(const GenericLensWarp&) = delete;
};

}  // namespace vek
