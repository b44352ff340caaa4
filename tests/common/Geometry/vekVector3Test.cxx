#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>

#include "vekVector3.h"

namespace vek {
namespace {

TEST(Vector3, UnsetStateAndComparisons) {
  Vector3 v;
  v.Sety() = -7.777;
  EXPECT_EQ(v.IsInitialized(), 0);
  v.Setz() = 0.0;
  EXPECT_EQ(v.IsInitialized(), 1);  // any one component set is enough
  Vector3 a(1.0, 2.0, 3.0), b(4.0, -2.0, 0.5);
  EXPECT_EQ(a / b == Vector3(0.25, -1.0, 6.0), 1);
  EXPECT_EQ(a != Vector3(1.0, 2.0, 3.0000001), 1);
  Vector3 zero(0.0, 0.0, 0.0);  // the tolerance is strict
  EXPECT_FALSE(zero.ApproximateEqualsLINF(Vector3(-0.5, 0.0, 0.0), 0.5f));
  EXPECT_TRUE(zero.ApproximateEqualsLINF(Vector3(0.49, -0.49, 0.0), 0.5f));
}

TEST(Vector3, MetricsAndProducts) {
  Vector3 x(1.0, 0.0, 0.0), y(0.0, 1.0, 0.0);
  EXPECT_TRUE(x.Cross(y) == Vector3(0.0, 0.0, 1.0));
  EXPECT_DOUBLE_EQ(x.AngleBetween(Vector3(0.0, 3.0, 0.0)), std::numbers::pi / 2);
  EXPECT_DOUBLE_EQ(Vector3(1.0, 1.0, 0.0).NormalizedDot(Vector3(2.0, 0.0, 0.0)), std::sqrt(0.5));
  // Rows (1 2 3), (4 5 6), (7 8 10): cofactor expansion by hand gives 2 + 4 - 9 = -3.
  Vector3 a(1.0, 2.0, 3.0), b(4.0, 5.0, 6.0), d(7.0, 8.0, 10.0);
  EXPECT_EQ(Vector3::Det3by3(a, b, d), -3.0);
  EXPECT_EQ(a.ScalarTripleProduct(b, d), -3.0);
  const Vector3 o(1.0, 1.0, 1.0);
  EXPECT_EQ(Vector3(2.0, 1.0, 1.0).ScalarTripleProductShiftOrigin(o + y, Vector3(1.0, 1.0, 2.0), o), 1.0);
  Vector3 n(3.0, 0.0, 4.0), zero(0.0, 0.0, 0.0);
  n.Normalize();
  zero.Normalize();  // not guarded
  EXPECT_DOUBLE_EQ(n.z, 0.8);
  EXPECT_TRUE(std::isnan(zero.x));
}

TEST(Vector3, BoundingBoxAndStreams) {
  Vector3 points[3] = {Vector3(1.0, 5.0, 0.0), Vector3(-1.0, 6.0, 2.0), Vector3(0.0, 4.0, -3.0)};
  Vector3 min, max;
  Vector3::GetBoundingBox(points, 3, min, max);
  EXPECT_TRUE(min == Vector3(-1.0, 4.0, -3.0) && max == Vector3(1.0, 6.0, 2.0));
  // One point: the box is that point, whatever lies behind it in memory.
  Vector3::GetBoundingBox(points + 1, 1, min, max);
  EXPECT_TRUE(min == points[1] && max == points[1]);

  std::ostringstream out;
  out << Vector3(1.0, 2.5, -3.0);
  EXPECT_EQ(out.str(), "1 2.5 -3");  // no line end
  std::istringstream in(" 4 -0.25\n1e3 ");
  in >> min;
  EXPECT_TRUE(min == Vector3(4.0, -0.25, 1000.0));
}

}  // namespace
}  // namespace vek
