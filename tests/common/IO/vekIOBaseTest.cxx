#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "vekErrorHelper.h"
#include "vekIOBase.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

std::string Message(int code) { return ErrorHelper::GetErrorMessageWithNoExtras(code); }

TEST(IOBase, OpeningFailuresNameTheFile) {
  test::TempDirectory dir;
  std::ifstream placeholder;
  std::ifstream* in = &placeholder;  // must come back null
  const std::string missing = dir.File("missing.txt");
  int code = IOBase::OpenFileForReading(in, missing);
  EXPECT_EQ(code, VEK_FILE_NOT_FOUND | 0x8000);
  EXPECT_EQ(in, nullptr);
  EXPECT_EQ(Message(code), "File Not Found: " + missing);

  code = IOBase::OpenFileForReading(in, dir.Path().string());  // exists, but is no file
  EXPECT_EQ(code, VEK_UNABLE_TO_OPEN_FILE_FOR_READING | 0x8000);
  EXPECT_EQ(in, nullptr);
  EXPECT_EQ(Message(code), "Unable to open file for reading: " + dir.Path().string());

  std::ofstream* out = nullptr;
  const std::string nowhere = dir.File("no-such-dir/out.txt");
  code = IOBase::OpenFileForWriting(out, nowhere);
  EXPECT_EQ(code, VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING | 0x8000);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(Message(code), "Unable to open file for writing: " + nowhere);
}

TEST(IOBase, WritingTruncatesAndKeepsBytesExact) {
  test::TempDirectory dir;
  const std::string name = dir.File("out.txt");
  test::WriteFile(name, "old content that is longer\n");
  std::ofstream* out = nullptr;
  ASSERT_EQ(IOBase::OpenFileForWriting(out, name), 0);
  *out << "a\nb\n";
  delete out;
  EXPECT_EQ(test::ReadFile(name), "a\nb\n");

  std::ifstream* in = nullptr;
  ASSERT_EQ(IOBase::OpenFileForReading(in, name), 0);
  char buffer[IOBase::kLineBufferSize];
  EXPECT_EQ(IOBase::ReadLine(in, buffer), 0);
  EXPECT_STREQ(buffer, "a");
  delete in;
}

TEST(IOBase, ReadLineLimitAndEndOfStream) {
  char buffer[IOBase::kLineBufferSize];
  const std::string longest(511, 'x');
  std::istringstream fits(longest + "\nnext\r\nlast");
  EXPECT_EQ(IOBase::ReadLine(&fits, buffer), 0);
  EXPECT_EQ(std::string(buffer), longest);
  EXPECT_EQ(IOBase::ReadLine(&fits, buffer), 0);
  EXPECT_STREQ(buffer, "next");                                                 // carriage return dropped
  EXPECT_EQ(IOBase::ReadLine(&fits, buffer), VEK_FILE_NOT_FORMATTED_PROPERLY);  // no line end: truncated

  std::istringstream tooLong(std::string(512, 'y') + "\nshort\n");
  EXPECT_EQ(IOBase::ReadLine(&tooLong, buffer), VEK_FILE_NOT_FORMATTED_PROPERLY);
  EXPECT_TRUE(tooLong.fail());
  EXPECT_EQ(IOBase::ReadLine(&tooLong, buffer), VEK_FILE_NOT_FORMATTED_PROPERLY);  // stays failed

  std::istringstream any("x\n");
  EXPECT_EQ(IOBase::ReadLine(nullptr, buffer), VEK_FILE_NOT_FORMATTED_PROPERLY);
  EXPECT_EQ(IOBase::ReadLine(&any, nullptr), VEK_FILE_NOT_FORMATTED_PROPERLY);
}

TEST(IOBase, RelevantLineReadersDifferOnBlankLines) {
  char buffer[IOBase::kLineBufferSize];
  std::string line = "stale";
  std::istringstream onlyComments1("# comment\n\n   \n"), onlyComments2("# comment\n\n   \n");
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&onlyComments1, buffer), VEK_FILE_NOT_FORMATTED_PROPERLY);
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&onlyComments2, line), 0);
  EXPECT_EQ(line, "   ");
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&onlyComments2, line), VEK_FILE_NOT_FORMATTED_PROPERLY);
  EXPECT_EQ(line, "");

  std::istringstream mixed("#a\n\n  \n\t\n  # not a comment\n");
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&mixed, buffer), 0);
  EXPECT_STREQ(buffer, "\t");  // a tab is content
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&mixed, buffer), 0);
  EXPECT_STREQ(buffer, "  # not a comment");

  std::istringstream crlf("#a\r\n\r\nvalue\r\n");
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&crlf, line), 0);
  EXPECT_EQ(line, "value");

  // Binary garbage: embedded zeros end the buffer's text early, a huge line fails, nothing crashes.
  std::istringstream garbage(std::string("\0\0\xff\xfe\n", 5) + std::string(100000, '\x01'));
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&garbage, buffer), VEK_FILE_NOT_FORMATTED_PROPERLY);
}

TEST(IOBase, ReadLineWithSingleValue) {
  std::string value = "unchanged";
  std::istringstream good("# header\nKey=3\n");
  EXPECT_EQ(IOBase::ReadLineWithSingleValue(good, "Key", "=", value), 0);
  EXPECT_EQ(value, "3");

  std::istringstream runs("Key = 3 = 4\n");
  EXPECT_EQ(IOBase::ReadLineWithSingleValue(runs, "Key", " =", value), 0);
  EXPECT_EQ(value, "3");

  value = "unchanged";
  std::istringstream alone("Key\n"), other("Other=3\n"), prefix("Keys=3\n"), empty("");
  EXPECT_EQ(IOBase::ReadLineWithSingleValue(alone, "Key", "=", value), VEK_FILE_NOT_FORMATTED_PROPERLY);
  EXPECT_EQ(IOBase::ReadLineWithSingleValue(other, "Key", "=", value), VEK_FILE_NOT_FORMATTED_PROPERLY);
  EXPECT_EQ(IOBase::ReadLineWithSingleValue(prefix, "Key", "=", value), VEK_FILE_NOT_FORMATTED_PROPERLY);
  EXPECT_EQ(IOBase::ReadLineWithSingleValue(empty, "Key", "=", value), VEK_FILE_NOT_FORMATTED_PROPERLY);
  EXPECT_EQ(value, "unchanged");
}

}  // namespace
}  // namespace vek
