#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "vekDataArrayStream.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

constexpr int kReadFailed = VEK_UNABLE_TO_READ_FROM_STREAM | 0x8000;
constexpr int kWriteFailed = VEK_UNABLE_TO_WRITE_CONNECTIVITY | 0x8000;

/// `code` is `expected` and carries exactly `message`.
testing::AssertionResult Fails(int code, int expected, const std::string& message) {
  const std::string text = ErrorHelper::GetErrorMessageWithNoExtras(code);
  if (code == expected && text == message) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "code " << code << " '" << text << "'";
}

template <class T>
SmartPointer<DataArray<T>> Make(std::initializer_list<T> values) {
  auto array = SmartPointer<DataArray<T>>::New();
  for (const T& v : values) array->InsertNextValue(v);
  return array;
}

TEST(DataArrayStream, WrittenBytes) {
  std::ostringstream out, none, failed;
  EXPECT_EQ(DataArrayStream::Write(out, Make<float>({1.5f, -2.0f, 3.0f}).GetPointer(), "\t"), 0);
  EXPECT_EQ(out.str(), "\t{ DataArray 1.0 \n\t3 \n\t  1.5 \n\t  -2 \n\t  3 \n\t} \n");
  EXPECT_TRUE(Fails(DataArrayStream::Write<int>(none, nullptr, "  "), kWriteFailed, "Failed to write NULL DataArray"));
  EXPECT_EQ(none.str(), "  { DataArray 1.0 \n  } \n");
  failed.setstate(std::ios::badbit);
  EXPECT_TRUE(Fails(DataArrayStream::Write(failed, Make<int>({1}).GetPointer(), ""), kWriteFailed,
                    "Failed to write connectivity object, stream has failed."));
}

TEST(DataArrayStream, RoundTripsAndEmptyForms) {
  std::ostringstream out;
  DataArrayStream::Write(out, Make<int>({4, -5, 6}).GetPointer(), "    ");
  DataArrayStream::Write(out, Make<int>({}).GetPointer(), "");
  DataArrayStream::Write<int>(out, nullptr, "");
  std::istringstream in(out.str() + "{}");
  auto array = SmartPointer<DataArray<int>>::New();
  ASSERT_EQ(DataArrayStream::Read(in, *array), 0);
  ASSERT_EQ(array->GetNumberOfValues(), 3);
  EXPECT_TRUE(array->GetValue(0) == 4 && array->GetValue(1) == -5 && array->GetValue(2) == 6);
  for (int form = 0; form < 3; ++form) {  // count 0, no count, "{}"
    array->InsertNextValue(1);
    EXPECT_EQ(DataArrayStream::Read(in, *array), 0) << form;
    EXPECT_EQ(array->GetNumberOfValues(), 0) << form;
  }
}

TEST(DataArrayStream, DamagedInputLeavesTheArrayEmpty) {
  auto array = SmartPointer<DataArray<double>>::New();
  const std::string prefix = "Failed to read DataArray from stream, ";
  const struct {
    const char* text;
    std::string message;
  } cases[] = {
      {"{ DataArray 1.0 \n2000000000 \n  1 \n} \n", prefix + "element 1 of 2000000000 missing."},
      {"{ DataArray 1.0 \n99999999999 \n} \n", prefix + "bad element count."},
      {"{ DataArray 1.0 \n-1 \n} \n", prefix + "bad element count."},
      {"{ DataArray 1.0 \nx \n} \n", prefix + "bad element count."},
      {"{ DataArray 1.0 \n2 \n  1 \n  \x01\xff \n} \n", prefix + "element 1 of 2 missing."},
      {"{ DataArray 1.0 \n1 \n  1 \n", "Failed to read to end of object."},
  };
  for (const auto& c : cases) {
    std::istringstream in(c.text);
    EXPECT_TRUE(Fails(DataArrayStream::Read(in, *array), kReadFailed, c.message)) << c.text;
    EXPECT_EQ(array->GetNumberOfValues(), 0);
  }
  std::istringstream header("{DataArray 1.0 \n} \n");
  EXPECT_TRUE(Fails(DataArrayStream::Read(header, *array), VEK_UNABLE_TO_READ_CONNECTIVITY | 0x8000,
                    prefix + "found incorrect object header."));
}

}  // namespace
}  // namespace vek
