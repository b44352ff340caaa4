#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "vekErrorHelper.h"
#include "vekObjectStream.h"

namespace vek {
namespace {

std::string Message(int code) { return ErrorHelper::GetErrorMessageWithNoExtras(code); }
std::string Rest(std::istream& in) {
  std::string rest;
  std::getline(in, rest, '\0');
  return rest;
}

constexpr int kReadFailed = VEK_UNABLE_TO_READ_FROM_STREAM | 0x8000;
const char kBadHeader[] = "Failed to read TestRecord, found incorrect object header.";

/// A small record in the frame: "{ TestRecord 2.0 \n  <value> \n} \n".
int WriteRecord(std::ostream& os, const std::string& indent, int value) {
  ObjectStream::WriteObjectHeader(os, indent, "TestRecord", "2.0");
  os << indent << "  " << value << " \n";
  ObjectStream::WriteObjectFooter(os, indent);
  return os.good() ? 0 : VEK_UNABLE_TO_WRITE_TO_STREAM;
}

int ReadRecord(std::istream& in, int& value) {
  bool empty = false;
  int status = ObjectStream::ReadObjectHeader(in, kBadHeader, empty);
  if (status != 0 || empty) return status;
  status = ObjectStream::ReadObjectTypeAndVersion(in, "TestRecord", "2.0");
  if (status != 0) return status;
  if (!(in >> value)) return VEK_UNABLE_TO_READ_NUM_FROM_FILE;
  return ObjectStream::ReadToEndOfObject(in);
}

TEST(ObjectStream, RecordWrittenExactlyAndReadBack) {
  std::ostringstream out;
  WriteRecord(out, "\t", -12);
  WriteRecord(out, "", 7);
  EXPECT_EQ(out.str(), "\t{ TestRecord 2.0 \n\t  -12 \n\t} \n{ TestRecord 2.0 \n  7 \n} \n");
  std::istringstream in(out.str() + "after");
  int a = 0, b = 0;
  EXPECT_EQ(ReadRecord(in, a), 0);
  EXPECT_EQ(ReadRecord(in, b), 0);
  EXPECT_EQ(a, -12);
  EXPECT_EQ(b, 7);
  EXPECT_EQ(Rest(in), " \nafter");
}

TEST(ObjectStream, HeaderRules) {
  bool empty = false;
  std::istringstream emptyObject(" \n\t{}tail");
  EXPECT_EQ(ObjectStream::ReadObjectHeader(emptyObject, kBadHeader, empty), 0);
  EXPECT_TRUE(empty);
  EXPECT_EQ(Rest(emptyObject), "tail");

  std::istringstream noBlank("{TestRecord 2.0 } tail");
  int code = ObjectStream::ReadObjectHeader(noBlank, kBadHeader, empty);
  EXPECT_EQ(code, VEK_UNABLE_TO_READ_CONNECTIVITY | 0x8000);
  EXPECT_EQ(Message(code), kBadHeader);
  EXPECT_FALSE(empty);
  EXPECT_EQ(Rest(noBlank), " tail");  // the object was skipped

  std::istringstream notAnObject("  \n x{ TestRecord");
  code = ObjectStream::ReadObjectHeader(notAnObject, kBadHeader, empty);
  EXPECT_EQ(code, kReadFailed);
  EXPECT_EQ(Message(code), "Failed to read object header, first character peek was 'x'");
  EXPECT_EQ(Rest(notAnObject), "  \n x{ TestRecord");  // blanks put back too

  std::istringstream nothing(" \n ");
  code = ObjectStream::ReadObjectHeader(nothing, kBadHeader, empty);
  EXPECT_EQ(code, kReadFailed);
  EXPECT_EQ(Message(code), "Failed to read object header, parsing error, bad stream.");
}

TEST(ObjectStream, TypeAndVersionMismatchSkipTheObject) {
  int value = 0;
  std::istringstream type("{ Other 2.0 \n  1 \n} \nnext");
  int code = ReadRecord(type, value);
  EXPECT_EQ(code, kReadFailed);
  EXPECT_EQ(Message(code), "Failed to read TestRecord from stream, incorrect object type 'Other' found.");
  EXPECT_EQ(Rest(type), " \nnext");

  std::istringstream version("{ TestRecord 1.0 \n  1 \n} \nnext");
  code = ReadRecord(version, value);
  EXPECT_EQ(code, kReadFailed);
  EXPECT_EQ(Message(code), "Failed to read TestRecord from stream, incorrect object version '1.0' found.");
  EXPECT_EQ(Rest(version), " \nnext");

  std::istringstream truncated("{ TestRecord");
  code = ReadRecord(truncated, value);
  EXPECT_EQ(code, kReadFailed);
  EXPECT_EQ(Message(code), "Failed to read TestRecord from stream, incorrect object version '' found.");
}

TEST(ObjectStream, ReadToEndStopsAtFirstClosingBrace) {
  std::istringstream nested("a { b } c } d");
  EXPECT_EQ(ObjectStream::ReadToEndOfObject(nested), 0);
  EXPECT_EQ(Rest(nested), " c } d");

  std::istringstream unterminated("a { b");
  int code = ObjectStream::ReadToEndOfObject(unterminated);
  EXPECT_EQ(code, kReadFailed);
  EXPECT_EQ(Message(code), "Failed to read to end of object.");

  std::istringstream bad("} x");
  bad.setstate(std::ios::badbit);
  code = ObjectStream::ReadToEndOfObject(bad);
  EXPECT_EQ(code, kReadFailed);
  EXPECT_EQ(Message(code), "Failed to read until end of object, stream handed was bad");
}

}  // namespace
}  // namespace vek
