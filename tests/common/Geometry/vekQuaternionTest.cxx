#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "vekQuaternion.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

using QuaternionPtr = SmartPointer<Quaternion>;

void ExpectPointNear(const double* p, double x, double y, double z) {
  for (int k = 0; k < 3; ++k) EXPECT_NEAR(p[k], (k == 0 ? x : k == 1 ? y : z), 1e-12) << k;
}

TEST(Quaternion, NewIsIdentityAndPrints) {
  auto q = QuaternionPtr::New();
  std::ostringstream out;
  out << *q;
  EXPECT_EQ(out.str(), "Quaternion Not Null\n  Reference Count: 1\n  Scalar Part: 1\n  Vector Part: 0 0 0 \n\n");
  double angle = -1, axis[3] = {7, 8, 9};
  q->GetAngleAndVector(angle, axis);
  EXPECT_EQ(angle, 0.0);
  ExpectPointNear(axis, 7, 8, 9);
}

TEST(Quaternion, TheTwoPointRotationsAreInverses) {
  auto q = QuaternionPtr::New();
  const double h = std::cos(std::acos(-1.0) / 4);  // cos 45 = sin 45
  q->Set(h, 0, 0, h);
  const double p[3] = {1, 0, 0};
  double out[3];
  q->RotatePointSuperSlow(p, out);
  ExpectPointNear(out, 0, 1, 0);
  q->RotatePointSlow(p, out);
  ExpectPointNear(out, 0, -1, 0);
  // A general rotation: the slow form undoes the super-slow one.
  const double axis[3] = {0.0, 0.6, 0.8};
  q->SetFromAngleAndVector(1.2, axis);
  const double r[3] = {0.3, -2.0, 1.5};
  double there[3], back[3];
  q->RotatePointSuperSlow(r, there);
  q->RotatePointSlow(there, back);
  ExpectPointNear(back, r[0], r[1], r[2]);
}

TEST(Quaternion, HamiltonProductComposesRotations) {
  auto i = QuaternionPtr::New(), j = QuaternionPtr::New(), out = QuaternionPtr::New();
  i->Set(0, 1, 0, 0);
  j->Set(0, 0, 1, 0);
  Quaternion::MultiplyQuaternion(*i, *j, *out);
  EXPECT_TRUE(out->Getw() == 0 && out->Getx() == 0 && out->Gety() == 0 && out->Getz() == 1);
  Quaternion::MultiplyQuaternion(*j, *i, *out);
  EXPECT_EQ(out->Getz(), -1.0);
  // (b a) rotates by a first, then by b.
  const double z[3] = {0, 0, 1}, x[3] = {1, 0, 0}, p[3] = {1, 0, 0};
  const double quarter = std::acos(-1.0) / 2;
  i->SetFromAngleAndVector(quarter, z);
  j->SetFromAngleAndVector(quarter, x);
  Quaternion::MultiplyQuaternion(*j, *i, *out);
  double r[3];
  out->RotatePointSuperSlow(p, r);
  ExpectPointNear(r, 0, 0, 1);  // x -> y about z, then y -> z about x
}

TEST(Quaternion, AngleAxisRoundTripAndPureQuaternions) {
  auto q = QuaternionPtr::New();
  const double axis[3] = {0.0, 0.6, 0.8};
  q->SetFromAngleAndVector(1.2, axis);
  double angle, back[3];
  q->GetAngleAndVector(angle, back);
  EXPECT_NEAR(angle, 1.2, 1e-12);
  ExpectPointNear(back, 0.0, 0.6, 0.8);
  EXPECT_EQ(q->Is3Vector(), 0);
  q->Set(0, 0, 0, 0);
  EXPECT_EQ(q->Is3Vector(), 0);
  const double v[3] = {0.0, 0.0, 2.0};
  q->SetFrom3Vector(v);
  EXPECT_EQ(q->Is3Vector(), 1);
}

}  // namespace
}  // namespace vek
