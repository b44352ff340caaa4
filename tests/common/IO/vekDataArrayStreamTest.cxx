#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "vekDataArrayStream.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

std::string Message(int code) { return ErrorHelper::GetErrorMessageWithNoExtras(code); }
constexpr int kReadFailed = VEK_UNABLE_TO_READ_FROM_STREAM | 0x8000;
constexpr int kWriteFailed = VEK_UNABLE_TO_WRITE_CONNECTIVITY | 0x8000;

template <class T>
SmartPointer<DataArray<T>> Make(std::initializer_list<T> values) {
  auto array = SmartPointer<DataArray<T>>::New();
  for (const T& v : values) array->InsertNextValue(v);
  return array;
}

TEST(DataArrayStream, WrittenBytes) {
  std::ostringstream out;
  EXPECT_EQ(DataArrayStream::Write(out, Make<float>({1.5f, -2.0f, 3.0f}).GetPointer(), "\t"), 0);
  EXPECT_EQ(out.str(), "\t{ DataArray 1.0 \n\t3 \n\t  1.5 \n\t  -2 \n\t  3 \n\t} \n");

  std::ostringstream none;
  int code = DataArrayStream::Write<int>(none, nullptr, "  ");
  EXPECT_EQ(code, kWriteFailed);
  EXPECT_EQ(Message(code), "Failed to write NULL DataArray");
  EXPECT_EQ(none.str(), "  { DataArray 1.0 \n  } \n");

  std::ostringstream failed;
  failed.setstate(std::ios::badbit);
  code = DataArrayStream::Write(failed, Make<int>({1}).GetPointer(), "");
  EXPECT_EQ(code, kWriteFailed);
  EXPECT_EQ(Message(code), "Failed to write connectivity object, stream has failed.");
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
  EXPECT_EQ(array->GetValue(0), 4);
  EXPECT_EQ(array->GetValue(1), -5);
  EXPECT_EQ(array->GetValue(2), 6);
  for (int form = 0; form < 3; ++form) {  // count 0, no count, "{}"
    array->InsertNextValue(1);
    EXPECT_EQ(DataArrayStream::Read(in, *array), 0) << form;
    EXPECT_EQ(array->GetNumberOfValues(), 0) << form;
  }
}

TEST(DataArrayStream, DamagedInput) {
  auto array = SmartPointer<DataArray<double>>::New();
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"{ DataArray 1.0 \n2000000000 \n  1 \n} \n",
       "Failed to read DataArray from stream, element 1 of 2000000000 missing."},
      {"{ DataArray 1.0 \n99999999999 \n} \n", "Failed to read DataArray from stream, bad element count."},
      {"{ DataArray 1.0 \n-1 \n} \n", "Failed to read DataArray from stream, bad element count."},
      {"{ DataArray 1.0 \nx \n} \n", "Failed to read DataArray from stream, bad element count."},
      {"{ DataArray 1.0 \n2 \n  1 \n  \x01\xff \n} \n",
       "Failed to read DataArray from stream, element 1 of 2 missing."},
      {"{ DataArray 1.0 \n1 \n  1 \n", "Failed to read to end of object."},
      {"{ DataArrays 1.0 \n} \n", "Failed to read DataArray from stream, incorrect object type 'DataArrays' found."},
  };
  for (const auto& c : cases) {
    std::istringstream in(c.text);
    const int code = DataArrayStream::Read(in, *array);
    EXPECT_EQ(code, kReadFailed) << c.text;
    EXPECT_EQ(Message(code), c.message) << c.text;
    EXPECT_EQ(array->GetNumberOfValues(), 0);
  }
  std::istringstream header("{DataArray 1.0 \n} \n");
  const int code = DataArrayStream::Read(header, *array);
  EXPECT_EQ(code, VEK_UNABLE_TO_READ_CONNECTIVITY | 0x8000);
  EXPECT_EQ(Message(code), "Failed to read DataArray from stream, found incorrect object header.");
}

}  // namespace
}  // namespace vek
