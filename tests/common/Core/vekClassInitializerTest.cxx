#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "../../fuzz/vekRegressionInputs.h"
#include "vekClassInitializer.h"
#include "vekConfigurationDatabase.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

// Points the process-wide settings at a fresh base directory and back afterwards.
class ClassInitializerTest : public ::testing::Test {
 protected:
  void SetUp() override { Settle(); }
  void TearDown() override {
    ClassInitializer::Initialize(PreviousBase.c_str());
    ClassInitializer::GetReportGets();
  }
  void Settle() { ClassInitializer::Initialize(Base.Path().string().c_str()); }
  std::string Config() const { return ClassInitializer::GetInstance()->GetConfigDirectoryName(); }

  std::string PreviousBase = ClassInitializer::GetInstance()->GetBaseDirectoryName();
  test::TempDirectory Base;
};

TEST_F(ClassInitializerTest, SettlesAndCreatesEveryDirectory) {
  ClassInitializer* settings = ClassInitializer::GetInstance();
  const char separator = Config().back();
  EXPECT_TRUE(separator == '/' || separator == '\\');
  std::string base = settings->GetBaseDirectoryName();
  EXPECT_EQ(settings->GetConfigDirectoryName(), base + "Config" + separator);
  EXPECT_EQ(settings->GetInformationDirectoryName(), base);
  EXPECT_EQ(settings->GetTempDirectoryName(), base + "Temp" + separator);
  for (const std::string& dir : {settings->GetConfigDirectoryName(), settings->GetTempDirectoryName(),
                                 settings->GetLocalCalibrationDirectoryName(), settings->GetSystemDataDirectoryName(),
                                 settings->GetTestImagesDirectoryName(), settings->GetRestorePointsDirectoryName()}) {
    EXPECT_EQ(dir.back(), separator) << dir;
    EXPECT_TRUE(std::filesystem::is_directory(dir)) << dir;
  }
  EXPECT_EQ(ConfigurationDatabase::GetConfigurationDirectory(), settings->GetConfigDirectoryName());
  EXPECT_FALSE(settings->GetBinaryDirectoryName().empty());
}

TEST_F(ClassInitializerTest, LaterFilesWinAndNamesIgnoreCase) {
  test::WriteFile(Config() + "Initialization", "x = 1\nGain = 0.5\n");
  test::WriteFile(Config() + "AdvancedOptions", "X = 2\n");
  test::WriteFile(ClassInitializer::GetInstance()->GetInformationDirectoryName() + "Initialization", "gain = 0.25\n");
  Settle();
  int x = 0;
  EXPECT_EQ(ClassInitializer::Get("x", x, 5, 0, 3), 1);
  EXPECT_EQ(x, 2);
  double gain = 0;
  EXPECT_EQ(ClassInitializer::Get("GAIN", gain, 1.0, 0.0, 1.0), 1);
  EXPECT_EQ(gain, 0.25);  // the information directory's file is read after the configuration one
}

TEST_F(ClassInitializerTest, MissingNamesTakeTheClampedDefault) {
  int value = -1;
  EXPECT_EQ(ClassInitializer::Get("x", value, 5, 0, 3), 0);
  EXPECT_EQ(value, 3);
  EXPECT_EQ(ClassInitializer::Get("x", value, -5, 0, 3), 0);
  EXPECT_EQ(value, 0);
  float f = 0;
  ClassInitializer::Get("x", f, 1.5f, 4.0f, 2.0f);  // min above max: min wins
  EXPECT_EQ(f, 4.0f);
  bool flag = false;
  EXPECT_EQ(ClassInitializer::Get("x", flag, true, false, false), 0);  // bool ignores its range
  EXPECT_TRUE(flag);
  std::string text;
  EXPECT_EQ(ClassInitializer::Get("x", text, "fallback"), 0);
  EXPECT_EQ(text, "fallback");
}

TEST_F(ClassInitializerTest, OnlyThreeWordLinesWithEqualsCount) {
  test::WriteFile(Config() + "Initialization", "a = b c\n# n = 1\nm 1\nn =: 7\nk\t=\t3\r\nv = 1.5\nb = 2\nbig = 4294967296\n");
  Settle();
  std::string text;
  EXPECT_EQ(ClassInitializer::Get("a", text, "none"), 0);
  EXPECT_EQ(text, "none");
  int n = 0;
  EXPECT_EQ(ClassInitializer::Get("n", n, 0, 0, 100), 1);  // second word only has to begin with "="
  EXPECT_EQ(n, 7);
  EXPECT_EQ(ClassInitializer::Get("# n", n, 0, 0, 100), 0);
  int k = 0;
  EXPECT_EQ(ClassInitializer::Get("k", k, 0, 0, 100), 1);
  EXPECT_EQ(k, 3);
  int v = 0;
  ClassInitializer::Get("v", v, 0, 0, 100);
  EXPECT_EQ(v, 1);  // integer conversion stops at the point
  bool b = false;
  ClassInitializer::Get("b", b, false, false, false);
  EXPECT_TRUE(b);
  int big = 0;
  ClassInitializer::Get("big", big, 0, -5, 5);
  EXPECT_EQ(big, 5);  // held to the int range first, so it is not wrapped to 0
  EXPECT_EQ(ClassInitializer::GetNumberOfLines(), 5);
}

TEST_F(ClassInitializerTest, ReInitializeReplacesAndConcatenatedInitializeOverrides) {
  test::WriteFile(Config() + "Initialization", "a = 1\nb = 1\n");
  test::WriteFile(Base.File("one"), "a = 10\n");
  test::WriteFile(Base.File("two"), "b = 20\n");
  Settle();
  ClassInitializer::ReInitialize(Base.File("one").c_str());
  int a = 0, b = 0;
  EXPECT_EQ(ClassInitializer::Get("a", a, 0, 0, 100), 1);
  EXPECT_EQ(a, 10);
  EXPECT_EQ(ClassInitializer::Get("b", b, -1, -1, 100), 0);
  ClassInitializer::ConcatenatedInitialize(Base.File("two").c_str());
  ClassInitializer::ConcatenatedInitialize(Base.File("missing").c_str());
  EXPECT_EQ(ClassInitializer::Get("b", b, -1, -1, 100), 1);
  EXPECT_EQ(b, 20);
  Settle();  // a null directory reads nothing again once lines are held
  ClassInitializer::Initialize(nullptr);
  EXPECT_EQ(ClassInitializer::Get("a", a, 0, 0, 100), 1);
  EXPECT_EQ(a, 1);
}

TEST_F(ClassInitializerTest, ListsAndCopies) {
  test::WriteFile(Config() + "Initialization", "ints = 4\nwords = alpha\n");
  Settle();
  std::vector<int> ints{9, 9};
  EXPECT_TRUE(ClassInitializer::Get("ints", ints));
  EXPECT_EQ(ints, std::vector<int>{4});
  std::vector<float> floats{1.0f};
  EXPECT_FALSE(ClassInitializer::Get("none", floats));
  EXPECT_TRUE(floats.empty());
  char* copy = nullptr;
  EXPECT_EQ(ClassInitializer::Get("words", copy, "x"), 1);
  EXPECT_STREQ(copy, "alpha");
  delete[] copy;
  char** words = nullptr;
  int count = -1;
  EXPECT_EQ(ClassInitializer::DeprecatedGet("words", words, count), 1);
  ASSERT_EQ(count, 1);
  EXPECT_STREQ(words[0], "alpha");
  delete[] words[0];
  delete[] words;
  EXPECT_EQ(ClassInitializer::DeprecatedGet("none", words, count), 0);
  EXPECT_EQ(words, nullptr);
  EXPECT_EQ(count, 0);
}

TEST_F(ClassInitializerTest, ReportFlagLogsEveryLookUp) {
  test::WriteFile(Config() + "Initialization", "ReportGets = 1\nx = 2\n");
  Settle();
  ClassInitializer::GetReportGets();
  test::LogCapture log;
  int x = 0;
  ClassInitializer::Get("x", x, 0, 0, 10);
  std::vector<int> none;
  ClassInitializer::Get("list", none);
  EXPECT_TRUE(std::regex_match(log.Text(), std::regex("Message:vekClassInitializer, [0-9]+: x:2\n"
                                                      "Message:vekClassInitializer, [0-9]+: list:\n")))
      << log.Text();
}

TEST_F(ClassInitializerTest, PrintsEveryKeptLineWithSeparators) {
  test::WriteFile(Config() + "Initialization", "a = 1\n");
  Settle();
  std::ostringstream os;
  ClassInitializer::PrintMe(os);
  EXPECT_NE(os.str().find("  Num Lines 1\n  a--=--1--\n"), std::string::npos) << os.str();
  EXPECT_EQ(os.str().rfind("ClassInitializer Not Null\n  Reference Count: ", 0), 0u);
}

// A setting that reads as NaN would pass both comparisons of the clamp: it takes the default.
// (Windows' C runtime reads "nan" as 0, which the clamp keeps as it is.)
TEST_F(ClassInitializerTest, NotANumberTakesTheClampedDefault) {
  const std::string file = test::RegressionInput("ClassInitializer", "nan-setting");
  ASSERT_EQ(file, "Gain = nan\nWarpStep = 12\n");
  test::WriteFile(Config() + "Initialization", file);
  Settle();
  std::vector<float> list;
  EXPECT_TRUE(ClassInitializer::Get("Gain", list));  // a list has no range: it keeps what it reads
  ASSERT_EQ(list.size(), 1u);
  const bool readAsNaN = std::isnan(list[0]);
  float gain = 0;
  EXPECT_EQ(ClassInitializer::Get("Gain", gain, 0.5f, -1.5f, 2.5f), 1);
  EXPECT_EQ(gain, readAsNaN ? 0.5f : list[0]);
  double wide = 0;
  EXPECT_EQ(ClassInitializer::Get("Gain", wide, 9.0, 1.0, 2.0), 1);
  EXPECT_EQ(wide, readAsNaN ? 2.0 : 1.0);
  int step = 0;
  EXPECT_EQ(ClassInitializer::Get("WarpStep", step, 32, 2, 256), 1);
  EXPECT_EQ(step, 12);
}

}  // namespace
}  // namespace vek
