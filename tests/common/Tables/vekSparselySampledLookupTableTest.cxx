#include <gtest/gtest.h>

#include <sstream>

#include "vekErrorCodes.h"
#include "vekSmartPointer.h"
#include "vekSparselySampledLookupTable.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

TEST(SparselySampledLookupTable, IndexIsInputOverStepWithoutMinimum) {
  test::LogCapture log;
  auto t = SmartPointer<SparselySampledLookupTable>::New();
  EXPECT_EQ(t->AddMeasuredValue(0, 1.0f), VEK_INDEX_OUT_OF_RANGE);  // no range yet
  EXPECT_EQ(t->SetInputRange(0, 10, 0), VEK_INVALID_PARAMETERS);
  ASSERT_EQ(t->SetInputRange(10, 100, 25), VEK_SUCCESS);
  std::ostringstream os;
  t->PrintSelf(os, Indent(0));
  EXPECT_EQ(os.str(), "Reference Count: 1\nMinInput: 10\nInputStep: 25\nOutputValues Not Null\n");
  ASSERT_EQ(t->GetOutputValues()->GetNumberOfValues(), 5);  // 100 / 25 + 1

  EXPECT_EQ(t->AddMeasuredValue(60, 3.5f), VEK_SUCCESS);  // index 2
  EXPECT_EQ(t->GetOutput(74), 3.5f);
  EXPECT_EQ(t->GetOutput(75), -1.0f);
  EXPECT_EQ(t->AddMeasuredValue(0, 1.0f), VEK_SUCCESS);  // below MinInput, still index 0
  EXPECT_EQ(t->GetOutput(24), 1.0f);
  EXPECT_EQ(t->AddMeasuredValue(124, 9.0f), VEK_SUCCESS);  // 124 / 25 = 4, the last value
  EXPECT_EQ(t->AddMeasuredValue(125, 2.0f), VEK_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(t->GetOutput(125), -1.0f);
  EXPECT_NE(log.Text().find(": Input 125 is outside the table (0 to 100)\n"), std::string::npos);
}

TEST(SparselySampledLookupTable, SaturationComparesBracketingMeasurements) {
  auto t = SmartPointer<SparselySampledLookupTable>::New();
  ASSERT_EQ(t->SetInputRange(0, 100, 10), VEK_SUCCESS);
  ASSERT_EQ(t->AddMeasuredValue(20, 10.0f), VEK_SUCCESS);
  EXPECT_EQ(t->WouldInputValueAchieveSaturation(20, 100.0f), 0);  // one measurement only
  ASSERT_EQ(t->AddMeasuredValue(50, 30.0f), VEK_SUCCESS);
  ASSERT_EQ(t->AddMeasuredValue(80, 33.0f), VEK_SUCCESS);

  // Index 5: upper 30 at 5, lower 10 at 2, rise 20.
  EXPECT_EQ(t->WouldInputValueAchieveSaturation(50, 25.0f), 1);
  EXPECT_EQ(t->WouldInputValueAchieveSaturation(55, 20.0f), -1);  // not above the rise
  // Index 6: upper 33 at 8, lower 30 at 5, rise 3.
  EXPECT_EQ(t->WouldInputValueAchieveSaturation(60, 5.0f), 1);
  EXPECT_EQ(t->WouldInputValueAchieveSaturation(60, 3.0f), -1);
  // Nothing at or above index 9 (or past the table): the last two measurements, rise 3.
  EXPECT_EQ(t->WouldInputValueAchieveSaturation(90, 4.0f), 1);
  EXPECT_EQ(t->WouldInputValueAchieveSaturation(1000, 2.0f), -1);
  // Nothing measured below the first measurement.
  EXPECT_EQ(t->WouldInputValueAchieveSaturation(10, 100.0f), 0);
  EXPECT_EQ(t->WouldInputValueAchieveSaturation(-10, 100.0f), 0);
  // A measured 0 counts as a measurement.
  ASSERT_EQ(t->AddMeasuredValue(0, 0.0f), VEK_SUCCESS);
  EXPECT_EQ(t->WouldInputValueAchieveSaturation(10, 11.0f), 1);
}

}  // namespace
}  // namespace vek
