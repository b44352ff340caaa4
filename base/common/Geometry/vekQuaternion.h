#pragma once
#include "vekObject.h"

namespace vek {

/// A rotation quaternion: scalar part w, then the vector part x, y, z. A new quaternion is the
/// identity. Conjugation does not divide by the norm, so inversion is right for unit quaternions
/// only.
///
/// The two point rotations differ on purpose: RotatePointSuperSlow applies the active rotation of
/// the quaternion (through its matrix), RotatePointSlow the rotation of its conjugate.
class VEK_EXPORT Quaternion : public Object {
 public:
  static Quaternion* New();
  const char* GetClassName() const override { return "Quaternion"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  double Getw() const { return w; }
  double Getx() const { return x; }
  double Gety() const { return y; }
  double Getz() const { return z; }
  void Set(double wValue, double xValue, double yValue, double zValue);

  void Identity();
  void Copy(const Quaternion& other);
  /// The pure quaternion (0, v), for rotating a point.
  void SetFrom3Vector(const double v[3]);
  /// Vector part v, w = sqrt(1 - |v|^2): NaN when |v| > 1.
  void SetFromQuaternion3Vector(const double v[3]);
  /// The axis is used as given, not normalised.
  void SetFromAngleAndVector(double angle, const double axis[3]);
  /// angle = 2 acos(w); the axis is the unit vector part, left untouched when that part is zero.
  void GetAngleAndVector(double& angle, double axis[3]) const;
  /// 1 when w is exactly 0 and the vector part is not zero.
  int Is3Vector() const;
  double DotProduct(const Quaternion& other) const;
  double NormSquared() const;
  void FormConjugate();
  void InvertRotation();

  /// out = a b (Hamilton product). out must not be a or b.
  static void MultiplyQuaternion(const Quaternion& a, const Quaternion& b, Quaternion& out);

  void FormRotationMatrix(double m[3][3]) const;
  void RotatePointSuperSlow(const double in[3], double out[3]) const;
  void RotatePointSlow(const double in[3], double out[3]) const;

 protected:
  Quaternion() = default;
  ~Quaternion() override = default;

 private:
  Quaternion(const Quaternion&) = delete;
  Quaternion& operator=(const Quaternion&) = delete;

  double w = 1.0;
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

}  // namespace vek
