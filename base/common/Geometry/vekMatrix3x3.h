#pragma once
#include "vekObject.h"
#include "vekVector3.h"

namespace vek {

/// A 3 x 3 matrix of doubles, row-major, element (row, column) 0-based; a new matrix is the
/// identity. It serves both as a rotation acting on column vectors (v' = M v, right-handed, angles
/// in radians) and as a 2-D affine transform whose top rows are [a b tx; c d ty] and whose bottom
/// row is taken as [0 0 1]. No element access is range checked.
///
/// Quaternions are handed in as their three vector components; the scalar part is derived as
/// sqrt(1 - |v|^2). When that sum exceeds 1 the error line also shows the element after the
/// three (the fourth of a parameter array), so such an array must have a fourth readable element.
class VEK_EXPORT Matrix3x3 : public Object {
 public:
  static Matrix3x3* New();
  const char* GetClassName() const override { return "Matrix3x3"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  void Zero();
  void Identity();

  double GetElement(int row, int col) const { return Elements[row][col]; }
  void SetElement(int row, int col, double value) { Elements[row][col] = value; }
  double& SetElement(int row, int col) { return Elements[row][col]; }
  void GetRow(int i, Vector3& row) const { row.Set3Vec(Elements[i][0], Elements[i][1], Elements[i][2]); }
  void GetColumn(int j, Vector3& column) const { column.Set3Vec(Elements[0][j], Elements[1][j], Elements[2][j]); }
  void SetRow(int i, const Vector3& row);
  void SetColumn(int j, const Vector3& column);

  /// Nine values, row-major.
  void Fill(const double values[9]);
  /// Copies the six affine entries (top two rows) only; the bottom row stays as it was.
  void Copy(const Matrix3x3* other);
  void CopyFull(const Matrix3x3* other);
  void ScaleEntireMatrix(double s);

  /// P = A B over all nine entries; P may be A or B.
  static void Multiply3x3Slow(const Matrix3x3* a, const Matrix3x3* b, Matrix3x3* p);
  /// The affine product: A and B are read as having bottom row [0 0 1], P gets [0 0 1].
  /// P may be A or B.
  static void Multiply3x3(const Matrix3x3* a, const Matrix3x3* b, Matrix3x3* p);

  /// out = M in; in and out may be the same vector.
  void MultiplyVector3(const Vector3& in, Vector3& out) const;
  /// The 2-D affine map; the bottom row is ignored and there is no perspective division.
  void MultiplyPoint(double x, double y, double& xo, double& yo) const;
  void MultiplyPoint(float x, float y, float& xo, float& yo) const;

  double Determinant() const;
  /// The sum of the squares of the entries: no square root is taken, callers compare squares.
  double FrobeniusNorm() const;

  void Transpose();
  /// Adjugate over determinant; a singular matrix gives infinities or NaN.
  void GeneralInvert();
  /// Inverts the affine transform; warns when |det| < 0.0001 but divides anyway. The bottom row is
  /// left as it was.
  void Invert2x2Portion();
  /// Inverts an upper-triangular matrix; the lower triangle is not touched, zeros are not tested.
  void InplaceUpperDiagonalInvert();

  /// Cramer's rule for a x + b y = e, c x + d y = f. det is always written; when it is exactly 0,
  /// x and y are left as they were.
  static void Solve2x2(double a, double b, double c, double d, double e, double f, double& x, double& y, double& det);

  /// Right-handed rotation by `angle` about `axis`, which must already have unit length. An angle
  /// of exactly 0 gives the identity whatever the axis.
  void FillRotationAboutAxis(const Vector3& axis, double angle);
  /// Rx(a) Ry(b) Rz(c) with each factor a frame rotation (the transpose of the active one).
  void FillRotationFromEuler(const double angles[3]);
  void FillInvertedRotationFromEuler(const double angles[3]);
  /// R3 (R2 R1): R1 about +z by angles[0], R2 about +y by angles[1], R3 about -x by angles[2].
  void FillRotationFromAxisAlignedRotations(const double angles[3]);
  /// Yaw, pitch, roll about carried axes: +z, then the rotated +y, then the twice rotated -x.
  void FillRotationFromEuler_Frustum(const double angles[3]);

  void FillRotationFromQuaternion(const double q[3]);
  static void FillRotationFromQuaternion(const double q[3], double m[3][3]);
  /// The rotation of the unit quaternion (w, q), the one formula behind every quaternion bridge.
  static void FillRotationFromUnitQuaternion(double w, const double q[3], double m[3][3]);
  /// Writes the vector part only.
  void MatrixToQuaternion(double q[3]) const;
  static void MatrixToQuaternion(const double m[3][3], double q[3]);

 protected:
  Matrix3x3();
  ~Matrix3x3() override = default;

  /// Kept in the interface on purpose, and on purpose it does nothing.
  void HowardSalwenInvert();
  /// sqrt(1 - |q|^2), or 0 with an error line when |q|^2 > 1.
  static double QuaternionReal(const double* q);

 private:
  Matrix3x3(const Matrix3x3&) = delete;
  Matrix3x3& operator=(const Matrix3x3&) = delete;

  double Elements[3][3];
};

}  // namespace vek
