#pragma once
#include "vekObject.h"
#include "vekVec2.h"

namespace vek {

/// A pinhole camera looking at the surface plane z = 0. Seven parameters, in this order: the
/// vector part of a unit rotation quaternion (x, y, z; the real part is derived), the translation
/// of the surface frame in the camera frame (x, y, z) and the focal length in pixels. With the
/// image centre they map surface points to camera pixels (Forward) and pixels back to the plane
/// (Invert, InvertB: 1 when the ray is parallel to the plane or the system is singular, outputs
/// then untouched).
///
/// Every field starts at kUnset. A quaternion whose vector part is longer than 1 is reported on
/// the error channel (with the value after the three, the translation x) and taken with a real
/// part of 0. SetParameters reports it once, through the rotation matrix's own quaternion
/// conversion (so under vekMatrix3x3's name and in its format); get_quaternion_real reports in this
/// class's format.
class VEK_EXPORT KeystoneWarp : public Object {
 public:
  static constexpr int kNumParameters = 7;
  /// The single-precision -1444.4444 widened to double.
  static constexpr double kUnset = static_cast<double>(-1444.4444f);

  static KeystoneWarp* New();
  const char* GetClassName() const override { return "KeystoneWarp"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// 0 while any parameter or either centre coordinate is still unset.
  int IsInitialized() const;

  void SetCenterX(double x) { CenterX = x; }
  double GetCenterX() const { return CenterX; }
  void SetCenterY(double y) { CenterY = y; }
  double GetCenterY() const { return CenterY; }
  /// The centre of a w x h image: ((w - 1) / 2, (h - 1) / 2).
  void SetCameraCenterFromCameraSize(int const& width, int const& height);

  /// Takes the seven parameters and rebuilds the rotation matrix and the cached Rt t.
  void SetParameters(double const* parameters);
  void SetParameters(float const* parameters);
  void GetParameters(double* parameters) const;
  void GetParameters(float* parameters) const;

  /// Surface point (x, y, 0) to pixel (u, v); a point on the camera plane is not guarded against.
  void Forward(double x, double y, double& u, double& v) const;
  void Forward(float x, float y, float& u, float& v) const;
  void Forward(const vec2<float>& point, vec2<float>& pixel) const;
  /// Surface point (x, y, z) to pixel; the outputs are written only when the point is in front of
  /// the camera (camera z > 0).
  void ThreeDForward(double x, double y, double z, double& u, double& v) const;
  /// Pixel to surface point by intersecting the viewing ray with the plane.
  int Invert(double u, double v, double& x, double& y) const;
  int Invert(float u, float v, float& x, float& y) const;
  int Invert(const vec2<float>& pixel, vec2<float>& point) const;
  /// Pixel to surface point by solving the forward equations as a 2 x 2 linear system.
  int InvertB(double u, double v, double& x, double& y) const;

  /// The viewing ray of pixel (u, v) in the surface frame: Rt ((u - cx)/f, (v - cy)/f, 1).
  void GetRinvCamera(double u, double v, double& rx, double& ry, double& rz) const;
  /// The cached Rt t.
  void GetRinvT(double& tx, double& ty, double& tz) const;

  /// sqrt(1 - |q|^2) of q[0..2]; when that sum exceeds 1, an error line showing q[0..3] and 0.
  static double get_quaternion_real(double const* q);
  /// Writes only the first two columns of the rotation of q; points of z = 0 never need the third.
  static void UpdatePartialRotationMatrix(double const* q, double (*m)[3]);

  /// The seven parameters as a float number file. Read returns the reader's status, or 1 when
  /// the file does not hold exactly seven values.
  int Read(char const* fileName);
  int Write(char const* fileName) const;

 protected:
  KeystoneWarp();
  ~KeystoneWarp() override = default;

 private:
  KeystoneWarp(const KeystoneWarp&) = delete;
  KeystoneWarp& operator=(const KeystoneWarp&) = delete;

  void Rebuild();

  double Parameters[kNumParameters];  // quaternion x y z, translation x y z, focal length
  double Rotation[3][3];
  double CenterX = kUnset;
  double CenterY = kUnset;
  double InvertingTranslation[3];  // Rt t
};

}  // namespace vek
