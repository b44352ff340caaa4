#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "vekErrorCodes.h"
#include "vekOutputNumbers.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

class NumberFileTest : public ::testing::Test {
 protected:
  std::string File(const std::string& name = "numbers.txt") const { return Directory.File(name); }
  test::TempDirectory Directory;
};

TEST_F(NumberFileTest, WritesExactText) {
  const int ints[] = {1, -20, 300};
  ASSERT_EQ(OutputNumbers::OutputIntFile(File().c_str(), ints, 3), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(File()), test::TextFileBytes("3\n1\n-20\n300\n"));

  const float floats[] = {0.1f, 1.0f / 3.0f, 1.0f / 1073741824.0f};
  ASSERT_EQ(OutputNumbers::OutputFloatFile(File().c_str(), floats, 3), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(File()), test::TextFileBytes("3\n0.1\n0.33333334\n9.3132257e-10\n"));

  const double doubles[] = {0.1, 2.0 / 3.0};
  ASSERT_EQ(OutputNumbers::OutputDoubleFile(File().c_str(), doubles, 2), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(File()), test::TextFileBytes("2\n0.1\n0.666666666666667\n"));

  const bool bools[] = {true, false};
  ASSERT_EQ(OutputNumbers::OutputBoolFile(File().c_str(), bools, 2), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(File()), test::TextFileBytes("2\n1\n0\n"));

  const vec2<float> points[] = {{1.5f, -2.0f}, {}};
  ASSERT_EQ(OutputNumbers::OutputVector2File(File().c_str(), points, 2), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(File()), test::TextFileBytes("4\n1.5\n-2\n-5\n-5\n"));

  // A folder that does not exist, or a folder where the file belongs: the file cannot be opened.
  EXPECT_EQ(OutputNumbers::OutputIntFile(Directory.File("no/such/dir.txt").c_str(), ints, 3), VEK_FILE_NOT_FOUND);
  EXPECT_EQ(OutputNumbers::OutputIntFile(Directory.Path().string().c_str(), ints, 3), VEK_FILE_NOT_FOUND);
  // A write that fails leaves the earlier file whole.
  std::filesystem::create_directory(File() + ".tmp");
  EXPECT_EQ(OutputNumbers::OutputIntFile(File().c_str(), ints, 3), VEK_FILE_NOT_FOUND);
  EXPECT_EQ(test::ReadFile(File()), test::TextFileBytes("4\n1.5\n-2\n-5\n-5\n"));
}

TEST_F(NumberFileTest, ReadsBackWhatWasWritten) {
  const double doubles[] = {3000.25, -1e-12, 1.0 / 7.0};
  OutputNumbers::OutputDoubleFile(File().c_str(), doubles, 3);
  double* read = nullptr;
  int count = 0;
  ASSERT_EQ(OutputNumbers::InputDoubleFile(File().c_str(), read, count), VEK_SUCCESS);
  std::unique_ptr<double[]> owned(read);
  ASSERT_EQ(count, 3);
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(read[i], doubles[i], 1e-15 * std::abs(doubles[i]));

  test::WriteFile(File(), "3\r\n5\r\n0\r\n-2\r\n");  // Windows line ends too
  bool* flags = nullptr;
  ASSERT_EQ(OutputNumbers::InputBoolFile(File().c_str(), flags, count), VEK_SUCCESS);
  std::unique_ptr<bool[]> ownedFlags(flags);
  EXPECT_EQ(count, 3);
  EXPECT_TRUE(flags[0]);
  EXPECT_FALSE(flags[1]);
  EXPECT_FALSE(flags[2]);
}

TEST_F(NumberFileTest, RejectsCountsThatDoNotMatch) {
  int* values = reinterpret_cast<int*>(1);
  int count = 99;
  for (const char* text : {"3\n1\n2\n3\n4\n", "3\n1\n2\n", "", "x\n1\n", "-1\n", "2\n1\nz\n", "2147483647\n1\n2\n",
                           "4294967298\n1\n2\n", "2\n1\n4294967296\n",  // 2 and 0 if wrapped
                           "1\n5\n4294967296\n"}) {
    test::WriteFile(File(), text);
    EXPECT_EQ(OutputNumbers::InputIntFile(File().c_str(), values, count), VEK_FAILURE) << text;
    EXPECT_EQ(values, nullptr);
    EXPECT_EQ(count, 0);
  }
  EXPECT_EQ(OutputNumbers::InputIntFile(File("missing.txt").c_str(), values, count), VEK_FILE_NOT_FOUND);
  test::WriteFile(File(), "0\n");
  ASSERT_EQ(OutputNumbers::InputIntFile(File().c_str(), values, count), VEK_SUCCESS);
  EXPECT_EQ(count, 0);
  delete[] values;
}

TEST_F(NumberFileTest, VectorFilesHoldPairs) {
  vec2<float>* points = nullptr;
  int count = 0;
  test::WriteFile(File(), "5\n1\n2\n3\n4\n5\n");
  EXPECT_EQ(OutputNumbers::InputVector2File(File().c_str(), points, count), VEK_FAILURE);
  EXPECT_EQ(points, nullptr);

  test::WriteFile(File(), "4\n1\n2\n3.5\n-4\n");
  ASSERT_EQ(OutputNumbers::InputVector2File(File().c_str(), points, count), VEK_SUCCESS);
  std::unique_ptr<vec2<float>[]> owned(points);
  ASSERT_EQ(count, 2);
  EXPECT_EQ(points[1], vec2<float>(3.5f, -4.0f));

  vec2<float> known[2];
  EXPECT_EQ(OutputNumbers::ReadVectorArrayOfKnownLength(File().c_str(), known, 3), VEK_FAILURE);
  EXPECT_TRUE(known[0].IsUnset());
  ASSERT_EQ(OutputNumbers::ReadVectorArrayOfKnownLength(File().c_str(), known, 2), VEK_SUCCESS);
  EXPECT_EQ(known[0], vec2<float>(1.0f, 2.0f));
}

}  // namespace
}  // namespace vek
