#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <vector>

#include "vekErrorCodes.h"
#include "vekLookupTable.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

using Values = std::vector<float>;

SmartPointer<LookupTable> MakeTable(float minInput, float step, const Values& values) {
  auto t = SmartPointer<LookupTable>::New();
  t->SetMinInput(minInput);
  t->SetInputStep(step);
  EXPECT_EQ(t->SetOutputValues(values), VEK_SUCCESS);
  return t;
}

TEST(LookupTable, ForwardInterpolatesWithoutClampingAndPrints) {
  auto t = MakeTable(10, 2, {0, 4, 10, 11});
  EXPECT_EQ(t->Forward(11), 2.0f);
  EXPECT_EQ(t->GetOutput(13), 7.0f);
  EXPECT_EQ(t->Forward(16), 11.0f);  // last value, i0 == i1
  std::ostringstream os;
  t->PrintSelf(os, Indent(0));
  EXPECT_EQ(os.str(), "Reference Count: 1\nMinInput: 10\nInputStep: 2\nOutputValues size()4\n");

  test::LogCapture log;
  EXPECT_TRUE(std::isnan(t->Forward(9.5f)));
  EXPECT_TRUE(std::isnan(t->Forward(16.5f)));
  EXPECT_NE(log.Text().find(": Input 16.5 is outside the lookup table (10 to 16)\n"), std::string::npos);
}

TEST(LookupTable, InvertBisectsExtrapolatesAndHalvesFlatIntervals) {
  auto t = MakeTable(10, 2, {0, 4, 10, 11});
  EXPECT_EQ(t->Invert(7), 13.0f);   // between 4 and 10
  EXPECT_EQ(t->Invert(-4), 8.0f);   // first interval extended
  EXPECT_EQ(t->Invert(13), 20.0f);  // last interval extended
  EXPECT_EQ(MakeTable(0, 1, {0, 1, 2, 3, 4, 5, 6, 7})->Invert(5.25f), 5.25f);
  EXPECT_EQ(MakeTable(1, 0.5f, {2, 6})->Invert(3), 1.125f);

  EXPECT_EQ(MakeTable(0, 1, {0, 1, 1})->Invert(1), 1.5f);
  EXPECT_EQ(MakeTable(3, 4, {5})->Invert(100), 5.0f);  // (0 + 0.5) * 4 + 3
  test::LogCapture log;
  EXPECT_TRUE(std::isnan(SmartPointer<LookupTable>::New()->Invert(1)));
}

TEST(LookupTable, DoublePointsUsesFourPointRuleInsideAndAveragesAtEnds) {
  auto t = MakeTable(0, 4, {0, 16, 32, 64, 0});
  ASSERT_EQ(t->DoublePoints(), VEK_SUCCESS);
  // inside: 9/16 * (16 + 32) - 1/16 * (0 + 64) = 23; 9/16 * (32 + 64) - 1/16 * (16 + 0) = 53
  EXPECT_EQ(t->GetOutputValues(), (Values{0, 8, 16, 23, 32, 53, 64, 32, 0}));

  // The inner gaps of a cubic are reproduced exactly: 1.5^3 and 2.5^3.
  auto cubic = MakeTable(0, 1, {0, 1, 8, 27, 64});
  ASSERT_EQ(cubic->DoublePoints(1), VEK_SUCCESS);
  EXPECT_EQ(cubic->GetOutputValues(), (Values{0, 0.5f, 1, 3.375f, 8, 15.625f, 27, 45.5f, 64}));

  // Three values (two end gaps), then five: a line stays a line.
  auto line = MakeTable(0, 1, {0, 16, 32});
  ASSERT_EQ(line->DoublePoints(2), VEK_SUCCESS);
  EXPECT_EQ(line->GetOutputValues(), (Values{0, 4, 8, 12, 16, 20, 24, 28, 32}));
  EXPECT_EQ(line->GetInputStep(), 0.25f);

  auto one = MakeTable(0, 8, {7});
  ASSERT_EQ(one->DoublePoints(3), VEK_SUCCESS);
  EXPECT_EQ(one->GetInputStep(), 1.0f);

  auto two = MakeTable(0, 1, {1, 3});
  EXPECT_EQ(two->DoublePoints(31), VEK_TOO_MANY_ELEMENTS);  // 2^31 + 1 values
  EXPECT_EQ(two->GetOutputValues(), (Values{1, 3}));
}

TEST(LookupTable, EqualityIsExact) {
  auto a = MakeTable(1, 2, {1, 2, 3});
  EXPECT_TRUE(*a == *MakeTable(1, 2, {1, 2, 3}));
  EXPECT_FALSE(*a == *MakeTable(1.5f, 2, {1, 2, 3}) || *a == *MakeTable(1, 2.5f, {1, 2, 3}));
  EXPECT_FALSE(*a == *MakeTable(1, 2, {1, 2, 3.0001f}) || *a == *MakeTable(1, 2, {1, 2}));
  auto n = MakeTable(1, 2, {1, std::numeric_limits<float>::quiet_NaN()});
  EXPECT_FALSE(*n == *n);
}

}  // namespace
}  // namespace vek
