#include <gtest/gtest.h>

#include <sstream>

#include "vekFrustumView.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

using FrustumPtr = SmartPointer<FrustumView>;

TEST(FrustumView, UnsetPrintoutAndCopyFromTakesAllTenFields) {
  auto view = FrustumPtr::New();
  std::ostringstream out;
  out << *view;
  EXPECT_EQ(out.str(),
            "FrustumView Not Null\n"
            "  Reference Count: 1\n"
            "  Theta X Range: -1111 , -1111\n"
            "  Theta Y Range: -1111 , -1111\n"
            "  View   : -1111, -1111, -1111\n"
            "  Eye    : -7777 -7777 -7777\n"
            "  Forward: -7777 -7777 -7777\n"
            "\n");

  auto source = FrustumPtr::New();
  source->SetLeftAngle(-0.5);
  source->SetRightAngle(0.6);
  source->SetBottomAngle(-0.3);
  source->SetTopAngle(0.4);
  source->SetViewAngleA(0.1);
  source->SetViewAngleB(0.2);
  source->SetViewAngleC(0.3);
  source->SetEyePoint(Vector3(1.0, 2.0, 3.0));
  source->SetForwardVector(Vector3(0.0, 0.0, -1.0));
  source->SetPreRollAngleInRadians(0.25);
  auto copy = FrustumPtr::New();
  copy->CopyFrom(source.GetPointer());
  EXPECT_EQ(copy->GetPreRollAngleInRadians(), 0.25);
  std::ostringstream b;
  copy->PrintSelf(b, Indent(0));
  EXPECT_EQ(b.str(),
            "Reference Count: 1\nTheta X Range: -0.5 , 0.6\nTheta Y Range: -0.3 , 0.4\n"
            "View   : 0.1, 0.2, 0.3\nEye    : 1 2 3\nForward: 0 0 -1\n");
}

}  // namespace
}  // namespace vek
