#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <regex>
#include <sstream>

#include "vekMatrix3x3.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

using MatrixPtr = SmartPointer<Matrix3x3>;
constexpr double kHalfPi = std::numbers::pi / 2;

MatrixPtr Make(std::initializer_list<double> rowMajor) {
  auto m = MatrixPtr::New();
  m->Fill(std::data(rowMajor));
  return m;
}

void ExpectMatrixNear(const Matrix3x3& m, std::initializer_list<double> rowMajor, double tolerance = 1e-12) {
  for (int i = 0; i < 9; ++i) EXPECT_NEAR(m.GetElement(i / 3, i % 3), std::data(rowMajor)[i], tolerance) << i;
}

TEST(Matrix3x3, NewIsIdentityAndPrintsRows) {
  auto m = MatrixPtr::New();
  EXPECT_EQ(m->FrobeniusNorm(), 3.0);  // no square root taken
  std::ostringstream out;
  out << *m;
  EXPECT_EQ(out.str(), "Matrix3x3 Not Null\n  Reference Count: 1\n  Elements:\n    1 0 0\n    0 1 0\n    0 0 1\n\n");
}

TEST(Matrix3x3, CopiesAndProducts) {
  auto a = Make({1, 2, 3, 4, 5, 6, 7, 8, 9});
  auto b = Make({2, 0, 1, 0, 3, -1, 5, 5, 5});
  auto p = Make({0, 0, 0, 0, 0, 0, -1, -1, -1});
  p->Copy(a.GetPointer());  // affine rows only
  ExpectMatrixNear(*p, {1, 2, 3, 4, 5, 6, -1, -1, -1}, 0);
  Matrix3x3::Multiply3x3(a.GetPointer(), b.GetPointer(), p.GetPointer());
  ExpectMatrixNear(*p, {2, 6, 2, 8, 15, 5, 0, 0, 1}, 0);  // bottom rows ignored, then forced
  Matrix3x3::Multiply3x3Slow(a.GetPointer(), b.GetPointer(), a.GetPointer());
  ExpectMatrixNear(*a, {17, 21, 14, 38, 45, 29, 59, 69, 44}, 0);
  double xo, yo;
  b->MultiplyPoint(1.0, 2.0, xo, yo);
  EXPECT_TRUE(xo == 3.0 && yo == 5.0);
}

TEST(Matrix3x3, InversionsAndSolve2x2) {
  test::LogCapture log;
  auto m = Make({2, -1, 0, 1, 3, 2, 0, 1, 4});
  EXPECT_EQ(m->Determinant(), 24.0);
  m->GeneralInvert();  // the adjugate worked out by hand, over 24
  ExpectMatrixNear(*m, {10 / 24.0, 4 / 24.0, -2 / 24.0, -4 / 24.0, 8 / 24.0, -4 / 24.0, 1 / 24.0, -2 / 24.0, 7 / 24.0});

  // A = [2 1; 1 1], t = (3, -1): A^-1 = [1 -1; -1 2] and -A^-1 t = (-4, 5); bottom row kept.
  auto affine = Make({2, 1, 3, 1, 1, -1, 7, 8, 9});
  affine->Invert2x2Portion();
  ExpectMatrixNear(*affine, {1, -1, -4, -1, 2, 5, 7, 8, 9}, 0);
  auto tiny = Make({0.01, 0, 0, 0, 0.005, 0, 0, 0, 1});
  tiny->Invert2x2Portion();
  EXPECT_NEAR(tiny->GetElement(1, 1), 200.0, 1e-9);  // divides anyway
  EXPECT_TRUE(std::regex_search(log.Text(), std::regex("WARNING:vekMatrix3x3, [0-9]+: det is very small:5e-05\n")))
      << log.Text();

  // Upper-triangular inverse by hand: (0,2) = (m01 m12 - m02 m11) / (m00 m11 m22) = -7/64.
  auto upper = Make({2, 1, 3, 9, 4, 5, 9, 9, 8});
  upper->InplaceUpperDiagonalInvert();
  ExpectMatrixNear(*upper, {0.5, -0.125, -7.0 / 64, 9, 0.25, -0.15625, 9, 9, 0.125}, 0);

  // Cramer's rule leaves x and y alone when det is exactly 0.
  double x = 0, y = 0, det = 0;
  Matrix3x3::Solve2x2(2, 1, 1, -1, 5, 1, x, y, det);  // 2x + y = 5, x - y = 1
  EXPECT_TRUE(det == -3.0 && x == 2.0 && y == 1.0);
  Matrix3x3::Solve2x2(1, 2, 2, 4, 1, 1, x, y, det);
  EXPECT_TRUE(det == 0.0 && x == 2.0 && y == 1.0);
}

TEST(Matrix3x3, RotationFills) {
  auto m = MatrixPtr::New();
  m->Zero();
  m->FillRotationAboutAxis(Vector3(3.0, 0.0, 0.0), 0.0);
  ExpectMatrixNear(*m, {1, 0, 0, 0, 1, 0, 0, 0, 1}, 0);
  const double s = 1.0 / std::sqrt(3.0);  // 120 degrees about the diagonal cycles x -> y -> z
  m->FillRotationAboutAxis(Vector3(s, s, s), 2 * std::numbers::pi / 3);
  ExpectMatrixNear(*m, {0, 0, 1, 1, 0, 0, 0, 1, 0});

  // Euler: each factor is a frame rotation, the active rotation by minus the angle.
  const double angles[3] = {0.3, -0.7, 1.1};
  const Vector3 axes[3] = {Vector3(1.0, 0.0, 0.0), Vector3(0.0, 1.0, 0.0), Vector3(0.0, 0.0, 1.0)};
  auto expected = MatrixPtr::New(), factor = MatrixPtr::New();
  for (int k = 2; k >= 0; --k) {
    factor->FillRotationAboutAxis(axes[k], -angles[k]);
    Matrix3x3::Multiply3x3Slow(factor.GetPointer(), expected.GetPointer(), expected.GetPointer());
  }
  m->FillRotationFromEuler(angles);
  for (int i = 0; i < 9; ++i) EXPECT_NEAR(m->GetElement(i / 3, i % 3), expected->GetElement(i / 3, i % 3), 1e-12);
  expected->FillInvertedRotationFromEuler(angles);
  for (int i = 0; i < 9; ++i) EXPECT_EQ(expected->GetElement(i % 3, i / 3), m->GetElement(i / 3, i % 3)) << i;

  const double yawPitch[3] = {kHalfPi, kHalfPi, 0.0}, roll[3] = {0.0, 0.0, kHalfPi};
  m->FillRotationFromAxisAlignedRotations(yawPitch);  // fixed axes: Ry(90) Rz(90)
  ExpectMatrixNear(*m, {0, 0, 1, 1, 0, 0, 0, 1, 0});
  // Carried axes: after the yaw the pitch axis is Rz(90) y = -x, so the product is Rx(-90) Rz(90).
  m->FillRotationFromEuler_Frustum(yawPitch);
  ExpectMatrixNear(*m, {0, -1, 0, 0, 0, 1, -1, 0, 0});
  m->FillRotationFromEuler_Frustum(roll);  // about -x
  ExpectMatrixNear(*m, {1, 0, 0, 0, 0, 1, 0, -1, 0});
}

TEST(Matrix3x3, QuaternionBridges) {
  const double h = std::sqrt(0.5);
  const double quarterTurnZ[3] = {0.0, 0.0, h};
  auto m = MatrixPtr::New();
  m->FillRotationFromQuaternion(quarterTurnZ);
  ExpectMatrixNear(*m, {0, -1, 0, 1, 0, 0, 0, 0, 1}, 1e-15);
  double q[3];
  m->MatrixToQuaternion(q);
  EXPECT_NEAR(q[2], h, 1e-15);
  // Half turns have trace -1 and take the other branches.
  const double aboutXY[3][3] = {{0, 1, 0}, {1, 0, 0}, {0, 0, -1}};  // axis (1, 1, 0)/sqrt 2
  const double aboutZ[3][3] = {{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}};  // ties go to the last branch
  Matrix3x3::MatrixToQuaternion(aboutXY, q);
  EXPECT_DOUBLE_EQ(q[0], h);
  EXPECT_DOUBLE_EQ(q[1], h);
  EXPECT_EQ(q[2], 0.0);
  Matrix3x3::MatrixToQuaternion(aboutZ, q);
  EXPECT_TRUE(q[0] == 0.0 && q[1] == 0.0 && q[2] == 1.0);

  test::LogCapture log;
  const double overlong[4] = {0.8, 0.8, 0.0, 0.5};  // the fourth element only shows in the error line
  double r[3][3];
  Matrix3x3::FillRotationFromQuaternion(overlong, r);
  EXPECT_EQ(r[0][2], 0.0);  // 2 (x z + y w) with the real part w taken as 0
  EXPECT_TRUE(std::regex_search(log.Text(), std::regex("ERROR:vekMatrix3x3, [0-9]+: This should not happen, sum is "
                                                       "bigger than 1:0\\.8 0\\.8 0 0\\.5:1\\.28\n")))
      << log.Text();
}

}  // namespace
}  // namespace vek
