#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>

#include "vekVector3.h"

namespace vek {
namespace {

TEST(Vector3, DefaultIsUnsetUntilAnyComponentChanges) {
  Vector3 v;
  EXPECT_EQ(v.IsInitialized(), 0);
  v.Sety() = -7.777;
  EXPECT_EQ(v.IsInitialized(), 0);
  v.Setz() = 0.0;
  EXPECT_EQ(v.IsInitialized(), 1);
  EXPECT_EQ(Vector3(-7.777, -7.777, -7.777).IsInitialized(), 0);
}

TEST(Vector3, LayoutAndArrayForms) {
  const float f[3] = {1.5f, -2.0f, 3.25f};
  Vector3 v(f);
  const double* asArray = &v.x;
  EXPECT_EQ(asArray[1], -2.0);
  double out[3];
  v.Get3VecInArray(out);
  EXPECT_EQ(out[2], 3.25);
  float a, b, c;
  Vector3(0.1, 0.2, 0.3).Get3Vec(a, b, c);
  EXPECT_EQ(a, 0.1f);
  EXPECT_EQ(c, 0.3f);
}

TEST(Vector3, ArithmeticAndExactComparison) {
  Vector3 a(1.0, 2.0, 3.0), b(4.0, -2.0, 0.5);
  EXPECT_TRUE(a + b == Vector3(5.0, 0.0, 3.5));
  EXPECT_TRUE(a - b == Vector3(-3.0, 4.0, 2.5));
  EXPECT_TRUE(a * 2.0 == Vector3(2.0, 4.0, 6.0));
  EXPECT_TRUE(a / b == Vector3(0.25, -1.0, 6.0));
  Vector3 c = a;
  c *= b;
  EXPECT_TRUE(c == Vector3(4.0, -4.0, 1.5));
  c /= 2.0;
  EXPECT_TRUE(c == Vector3(2.0, -2.0, 0.75));
  EXPECT_EQ(a != a, 0);
  EXPECT_EQ(a != Vector3(1.0, 2.0, 3.0000001), 1);
}

TEST(Vector3, ApproximateEqualsIsStrictAtTheTolerance) {
  Vector3 a(0.0, 0.0, 0.0);
  EXPECT_FALSE(a.ApproximateEqualsLINF(Vector3(0.0, 0.0, 0.5), 0.5f));
  EXPECT_TRUE(a.ApproximateEqualsLINF(Vector3(0.49, -0.49, 0.0), 0.5f));
  EXPECT_FALSE(a.ApproximateEqualsLINF(Vector3(-0.5, 0.0, 0.0), 0.5f));
}

TEST(Vector3, MetricsAndProducts) {
  Vector3 x(1.0, 0.0, 0.0), y(0.0, 1.0, 0.0);
  EXPECT_TRUE(x.Cross(y) == Vector3(0.0, 0.0, 1.0));
  EXPECT_TRUE(y.Cross(x) == Vector3(0.0, 0.0, -1.0));
  Vector3 c = y;
  c.CrossEquals(Vector3(0.0, 0.0, 1.0));
  EXPECT_TRUE(c == x);
  EXPECT_DOUBLE_EQ(x.AngleBetween(Vector3(0.0, 3.0, 0.0)), std::numbers::pi / 2);
  EXPECT_DOUBLE_EQ(Vector3(1.0, 1.0, 0.0).NormalizedDot(Vector3(2.0, 0.0, 0.0)), std::sqrt(0.5));
  EXPECT_EQ(Vector3(1.0, 2.0, 2.0).MagnitudeSquared(), 9.0);
  EXPECT_EQ(Vector3(1.0, 2.0, 2.0).DistanceSquared(Vector3(0.0, 0.0, 0.0)), 9.0);
  Vector3 n(3.0, 0.0, 4.0);
  n.Normalize();
  EXPECT_DOUBLE_EQ(n.x, 0.6);
  EXPECT_DOUBLE_EQ(n.z, 0.8);
  Vector3 zero(0.0, 0.0, 0.0);
  zero.Normalize();
  EXPECT_TRUE(std::isnan(zero.x));
}

TEST(Vector3, TripleProductsAndDeterminant) {
  // Rows (1 2 3), (4 5 6), (7 8 10): cofactor expansion by hand gives 2 + 4 - 9 = -3.
  Vector3 a(1.0, 2.0, 3.0), b(4.0, 5.0, 6.0), c(7.0, 8.0, 10.0);
  EXPECT_EQ(Vector3::Det3by3(a, b, c), -3.0);
  EXPECT_EQ(a.ScalarTripleProduct(b, c), -3.0);
  Vector3 o(1.0, 1.0, 1.0);
  EXPECT_EQ(Vector3(2.0, 1.0, 1.0).ScalarTripleProductShiftOrigin(Vector3(1.0, 2.0, 1.0), Vector3(1.0, 1.0, 2.0), o),
            1.0);
}

TEST(Vector3, BoundingBox) {
  Vector3 one[1] = {Vector3(1.0, -2.0, 3.0)};
  Vector3 min, max;
  Vector3::GetBoundingBox(one, 1, min, max);
  EXPECT_TRUE(min == one[0] && max == one[0]);
  Vector3 many[3] = {Vector3(1.0, 5.0, 0.0), Vector3(-1.0, 6.0, 2.0), Vector3(0.0, 4.0, -3.0)};
  Vector3::GetBoundingBox(many, 3, min, max);
  EXPECT_TRUE(min == Vector3(-1.0, 4.0, -3.0));
  EXPECT_TRUE(max == Vector3(1.0, 6.0, 2.0));
}

TEST(Vector3, StreamsWithoutLineEnd) {
  std::ostringstream out;
  out << Vector3(1.0, 2.5, -3.0);
  EXPECT_EQ(out.str(), "1 2.5 -3");
  std::istringstream in(" 4 -0.25\n1e3 ");
  Vector3 v;
  in >> v;
  EXPECT_TRUE(v == Vector3(4.0, -0.25, 1000.0));
}

}  // namespace
}  // namespace vek
