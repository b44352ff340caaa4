#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "vekErrorHelper.h"
#include "vekObjectStream.h"

namespace vek {
namespace {

constexpr int kReadFailed = VEK_UNABLE_TO_READ_FROM_STREAM | 0x8000;
const char kBadHeader[] = "Failed to read TestRecord, found incorrect object header.";

/// `code` is `expected` and carries exactly `message`.
testing::AssertionResult Fails(int code, int expected, const std::string& message) {
  const std::string text = ErrorHelper::GetErrorMessageWithNoExtras(code);
  if (code == expected && text == message) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "code " << code << " '" << text << "'";
}

std::string Rest(std::istream& in) {
  std::string rest;
  std::getline(in, rest, '\0');
  return rest;
}

// The frame bytes and a successful read are pinned through DataArrayStream, which is built on these steps.
TEST(ObjectStream, HeaderRules) {
  bool empty = false;
  std::istringstream emptyObject(" \n\t{}tail");
  EXPECT_EQ(ObjectStream::ReadObjectHeader(emptyObject, kBadHeader, empty), 0);
  EXPECT_TRUE(empty);
  EXPECT_EQ(Rest(emptyObject), "tail");

  std::istringstream noBlank("{TestRecord 2.0 } tail");
  EXPECT_TRUE(Fails(ObjectStream::ReadObjectHeader(noBlank, kBadHeader, empty),
                    VEK_UNABLE_TO_READ_CONNECTIVITY | 0x8000, kBadHeader));
  EXPECT_FALSE(empty);
  EXPECT_EQ(Rest(noBlank), " tail");  // the object was skipped

  std::istringstream notAnObject("  \n x{ TestRecord");
  EXPECT_TRUE(Fails(ObjectStream::ReadObjectHeader(notAnObject, kBadHeader, empty), kReadFailed,
                    "Failed to read object header, first character peek was 'x'"));
  EXPECT_EQ(Rest(notAnObject), "  \n x{ TestRecord");  // blanks put back too

  std::istringstream nothing(" \n ");
  EXPECT_TRUE(Fails(ObjectStream::ReadObjectHeader(nothing, kBadHeader, empty), kReadFailed,
                    "Failed to read object header, parsing error, bad stream."));
}

TEST(ObjectStream, TypeAndVersionMismatchSkipTheObject) {
  const std::string prefix = "Failed to read TestRecord from stream, incorrect object ";
  std::istringstream type("Other 2.0 \n  1 \n} \nnext"), version("TestRecord 1.0 \n  1 \n} \nnext"), cut("TestRecord");
  EXPECT_TRUE(Fails(ObjectStream::ReadObjectTypeAndVersion(type, "TestRecord", "2.0"), kReadFailed,
                    prefix + "type 'Other' found."));
  EXPECT_EQ(Rest(type), " \nnext");
  EXPECT_TRUE(Fails(ObjectStream::ReadObjectTypeAndVersion(version, "TestRecord", "2.0"), kReadFailed,
                    prefix + "version '1.0' found."));
  EXPECT_EQ(Rest(version), " \nnext");
  EXPECT_TRUE(Fails(ObjectStream::ReadObjectTypeAndVersion(cut, "TestRecord", "2.0"), kReadFailed,
                    prefix + "version '' found."));
}

TEST(ObjectStream, ReadToEndStopsAtFirstClosingBrace) {
  std::istringstream nested("a { b } c } d"), unterminated("a { b"), bad("} x");
  EXPECT_EQ(ObjectStream::ReadToEndOfObject(nested), 0);
  EXPECT_EQ(Rest(nested), " c } d");
  EXPECT_TRUE(Fails(ObjectStream::ReadToEndOfObject(unterminated), kReadFailed, "Failed to read to end of object."));
  bad.setstate(std::ios::badbit);
  EXPECT_TRUE(Fails(ObjectStream::ReadToEndOfObject(bad), kReadFailed,
                    "Failed to read until end of object, stream handed was bad"));
}

}  // namespace
}  // namespace vek
