#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>

#include "vekQuaternion.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

using QuaternionPtr = SmartPointer<Quaternion>;

void ExpectPointNear(const double* p, double x, double y, double z) {
  const double expected[3] = {x, y, z};
  for (int k = 0; k < 3; ++k) EXPECT_NEAR(p[k], expected[k], 1e-12) << k;
}

TEST(Quaternion, NewIsIdentityAndPrints) {
  auto q = QuaternionPtr::New();
  std::ostringstream out;
  out << *q;
  EXPECT_EQ(out.str(), "Quaternion Not Null\n  Reference Count: 1\n  Scalar Part: 1\n  Vector Part: 0 0 0 \n\n");
  double angle = -1, axis[3] = {7, 8, 9};
  q->GetAngleAndVector(angle, axis);  // a zero rotation has no axis to write
  EXPECT_EQ(angle, 0.0);
  ExpectPointNear(axis, 7, 8, 9);
  q->Set(0, 0, 0, 0);
  EXPECT_EQ(q->Is3Vector(), 0);
  q->SetFrom3Vector(axis);
  EXPECT_EQ(q->Is3Vector(), 1);
}

TEST(Quaternion, ProductsAndPointRotations) {
  auto i = QuaternionPtr::New(), j = QuaternionPtr::New(), q = QuaternionPtr::New();
  i->Set(0, 1, 0, 0);
  j->Set(0, 0, 1, 0);
  Quaternion::MultiplyQuaternion(*i, *j, *q);
  EXPECT_TRUE(q->Getw() == 0 && q->Getx() == 0 && q->Gety() == 0 && q->Getz() == 1);
  // (b a) rotates by a first, then by b: x -> y about z, then y -> z about x. That is 120 degrees
  // about (1, -1, 1); the slow form rotates by the conjugate, which takes x to -y.
  const double z[3] = {0, 0, 1}, x[3] = {1, 0, 0};
  i->SetFromAngleAndVector(std::numbers::pi / 2, z);
  j->SetFromAngleAndVector(std::numbers::pi / 2, x);
  Quaternion::MultiplyQuaternion(*j, *i, *q);
  double r[3];
  q->RotatePointSuperSlow(x, r);
  ExpectPointNear(r, 0, 0, 1);
  q->RotatePointSlow(x, r);
  ExpectPointNear(r, 0, -1, 0);

  // A general rotation: angle and axis read back, and the slow form undoes the super-slow one.
  const double axis[3] = {0.0, 0.6, 0.8}, p[3] = {0.3, -2.0, 1.5};
  q->SetFromAngleAndVector(1.2, axis);
  EXPECT_EQ(q->Is3Vector(), 0);
  double angle, there[3], back[3];
  q->GetAngleAndVector(angle, back);
  EXPECT_NEAR(angle, 1.2, 1e-12);
  ExpectPointNear(back, 0.0, 0.6, 0.8);
  q->RotatePointSuperSlow(p, there);
  q->RotatePointSlow(there, back);
  ExpectPointNear(back, p[0], p[1], p[2]);
}

}  // namespace
}  // namespace vek
