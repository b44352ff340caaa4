// Inputs that made the fuzz targets fail, read the way the library meets them.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "../../fuzz/vekRegressionInputs.h"
#include "vekConfigurationDatabase.h"
#include "vekControlPoints.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekRestorePointInfo.h"
#include "vekSmartPointer.h"
#include "vekStoreTestFixture.h"
#include "vekTestSupport.h"
#include "vekUniformAngleRemappingData.h"

namespace vek {
namespace {

int Plain(int code) { return ErrorHelper::GetErrorWithoutCustomMessageFlag(code); }

// The fuzz input's first byte chose the record; the rest is the file.
std::string RecordFile(const std::string& name) {
  const std::string input = test::RegressionInput("CalibrationRecords", name);
  return input.empty() ? input : input.substr(1);
}

using ReaderRegressionTest = test::StoreTest;

TEST_F(ReaderRegressionTest, ControlPointSidesWhoseProductOverflowsAreABadSize) {
  const std::string file = RecordFile("control-points-overflow");
  ASSERT_EQ(file, "{ ControlPoints 1.0 3999999999999811441  3");
  test::WriteFile(ConfigurationDatabase::GetConfigurationDirectory() + "ControlPointLocations", file);
  std::vector<float> xs{1}, ys{2};
  int w = 5, h = 5;
  const int status = Store->LoadInputSpaceBoundaryPoints(xs, ys, w, h);
  EXPECT_EQ(Plain(status), VEK_UNABLE_TO_READ_NUM_FROM_FILE);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status),
            "Failed to read ControlPoints from stream, bad grid size.");
  EXPECT_TRUE(xs.empty() && ys.empty());
  EXPECT_EQ(w, 0);
  EXPECT_EQ(h, 0);
}

TEST_F(ReaderRegressionTest, ControlPointSidesAreEachHeldToInt) {
  struct Case {
    const char* sizes;
    int expected;
  };
  // A side beyond int is refused even when the other side makes the product 0; a product of
  // exactly INT_MAX passes the size check and then misses its points, without claiming memory.
  const Case cases[] = {
      {"2147483648 0", VEK_UNABLE_TO_READ_NUM_FROM_FILE}, {"0 2147483648", VEK_UNABLE_TO_READ_NUM_FROM_FILE},
      {"-1 0", VEK_UNABLE_TO_READ_NUM_FROM_FILE},         {"2147483647 1", VEK_UNABLE_TO_READ_NUM_FROM_FILE},
      {"65536 32768", VEK_UNABLE_TO_READ_NUM_FROM_FILE},  {"2147483647 0", VEK_SUCCESS}};
  for (const Case& c : cases) {
    auto grid = SmartPointer<ControlPoints>::New();
    ASSERT_EQ(grid->SetGridSize(1, 1), VEK_SUCCESS);
    std::istringstream in(std::string("{ ControlPoints 1.0 \n") + c.sizes + " \n} \n");
    EXPECT_EQ(Plain(grid->Read(in)), c.expected) << c.sizes;
    const bool read = c.expected == VEK_SUCCESS;
    EXPECT_EQ(grid->GetGridWidth(), read ? 2147483647 : 1) << c.sizes;
    EXPECT_EQ(grid->GetGridHeight(), read ? 0 : 1) << c.sizes;
    EXPECT_EQ(grid->GetNumPoints(), read ? 0 : 1) << c.sizes;
  }
  auto grid = SmartPointer<ControlPoints>::New();
  std::istringstream in("{ ControlPoints 1.0 \n2147483647 1 \n  0 0 \n} \n");
  const int status = grid->Read(in);
  ASSERT_EQ(Plain(status), VEK_UNABLE_TO_READ_NUM_FROM_FILE);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status),
            "Failed to read ControlPoints from stream, point 1 of 2147483647 missing.");
}

TEST_F(ReaderRegressionTest, PerspectiveNodeCountsWhoseProductOverflowsAreRefused) {
  const std::string file = RecordFile("perspective-overflow");
  ASSERT_FALSE(file.empty());
  test::WriteFile(ConfigurationDatabase::GetConfigurationDirectory() + "PerspectiveMeshTweakingData.txt", file);
  auto data = SmartPointer<UniformAngleRemappingData>::New();
  ASSERT_EQ(data->SetUniformSampling(-10, 10, -5, 5, 3, 2), VEK_SUCCESS);
  const int status = Store->LoadPerspectiveMeshTweakingData(data.GetPointer());
  EXPECT_EQ(Plain(status), VEK_UNABLE_TO_READ_NUM_FROM_FILE);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status),
            "Failed to read UniformAngleRemappingData from stream, bad counts.");
  EXPECT_EQ(data->GetNumx(), 3);
  EXPECT_EQ(data->GetNumy(), 2);
  EXPECT_EQ(data->GetNumberOfNodes(), 6);
  EXPECT_EQ(data->GetRemappedAngle(5), vec2<float>(10, 5));

  std::istringstream sideBeyondInt(
      "{ UniformAngleRemappingData 1.0 \nAzimuth 0 1 \nElevation 0 1 \nNodes 0 2147483648 \n} \n");
  EXPECT_EQ(Plain(data->Read(sideBeyondInt)), VEK_UNABLE_TO_READ_NUM_FROM_FILE);
  EXPECT_EQ(data->GetNumy(), 2);
}

// A product name with runs of carriage returns: XML read them back as fewer line ends than were
// written, so the record changed on each save.
TEST(RestorePointRegression, LineEndsInsideValuesReadBackAsWritten) {
  test::TempDirectory directory;
  const std::string original = directory.File("original.xml"), copy = directory.File("copy.xml");
  test::WriteFile(original, test::RegressionInput("RestorePointInfo", "carriage-returns"));
  auto first = SmartPointer<RestorePointInfo>::New();
  ASSERT_EQ(first->ReadFromFile(original), VEK_SUCCESS);
  ASSERT_EQ(first->WriteToFile(copy), VEK_SUCCESS);
  auto second = SmartPointer<RestorePointInfo>::New();
  ASSERT_EQ(second->ReadFromFile(copy), VEK_SUCCESS);
  EXPECT_EQ(second->GetProductName(), test::WithLineFeeds(first->GetProductName()));
  ASSERT_EQ(second->WriteToFile(copy), VEK_SUCCESS);
  auto third = SmartPointer<RestorePointInfo>::New();
  ASSERT_EQ(third->ReadFromFile(copy), VEK_SUCCESS);
  EXPECT_EQ(third->GetProductName(), second->GetProductName());
  EXPECT_EQ(third->GetDescription(), second->GetDescription());
}

// Descriptions of line ends and form feeds only: the XML reader drops a text of nothing but white
// space, so they read back empty.
TEST(RestorePointRegression, ValuesOfWhiteSpaceOnlyReadBackAsWritten) {
  for (const char* input : {"white-space-description", "form-feed-description"}) {
    test::TempDirectory directory;
    const std::string original = directory.File("original.xml"), copy = directory.File("copy.xml");
    test::WriteFile(original, test::RegressionInput("RestorePointInfo", input));
    auto first = SmartPointer<RestorePointInfo>::New();
    ASSERT_EQ(first->ReadFromFile(original), VEK_SUCCESS) << input;
    ASSERT_FALSE(first->GetDescription().empty()) << input;
    first->SetScreenType(" \t\n\v\f ");
    ASSERT_EQ(first->WriteToFile(copy), VEK_SUCCESS);
    EXPECT_NE(test::ReadFile(copy).find(test::TextFileBytes("<ScreenType><![CDATA[ \t\n\v\f ]]></ScreenType>")),
              std::string::npos);
    auto second = SmartPointer<RestorePointInfo>::New();
    ASSERT_EQ(second->ReadFromFile(copy), VEK_SUCCESS);
    EXPECT_EQ(second->GetDescription(), first->GetDescription()) << input;
    EXPECT_EQ(second->GetScreenType(), " \t\n\v\f ");
  }
}

}  // namespace
}  // namespace vek
