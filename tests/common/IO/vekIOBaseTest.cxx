#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekIOBase.h"
#include "vekRectilinearGrid.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

std::string Message(int code) { return ErrorHelper::GetErrorMessageWithNoExtras(code); }

using GridPtr = SmartPointer<RectilinearGrid>;

GridPtr MakeGrid(float ox, float oy, float sx, float sy, int nx, int ny) {
  auto grid = GridPtr::New();
  grid->SetOffsetx(ox);
  grid->SetOffsety(oy);
  grid->SetSpacex(sx);
  grid->SetSpacey(sy);
  grid->SetNumx(nx);
  grid->SetNumy(ny);
  return grid;
}

/// All six fields equal, the floats bit for bit (so NaN and -0 count).
bool SameBits(const RectilinearGrid& a, const RectilinearGrid& b) {
  const float fa[4] = {a.GetOffsetx(), a.GetOffsety(), a.GetSpacex(), a.GetSpacey()};
  const float fb[4] = {b.GetOffsetx(), b.GetOffsety(), b.GetSpacex(), b.GetSpacey()};
  return std::memcmp(fa, fb, sizeof fa) == 0 && a.GetNumx() == b.GetNumx() && a.GetNumy() == b.GetNumy();
}

TEST(IOBase, OpeningNamesTheFileOnFailureAndWritesText) {
  test::TempDirectory dir;
  std::ifstream placeholder;
  std::ifstream* in = &placeholder;  // must come back null
  const std::string missing = dir.File("missing.txt"), folder = dir.Path().string();
  int code = IOBase::OpenFileForReading(in, missing);
  EXPECT_EQ(code, VEK_FILE_NOT_FOUND | 0x8000);
  EXPECT_EQ(in, nullptr);
  EXPECT_EQ(Message(code), "File Not Found: " + missing);
  in = &placeholder;
  code = IOBase::OpenFileForReading(in, folder);  // exists, but is no file
  EXPECT_EQ(code, VEK_UNABLE_TO_OPEN_FILE_FOR_READING | 0x8000);
  EXPECT_EQ(in, nullptr);
  EXPECT_EQ(Message(code), "Unable to open file for reading: " + folder);

  std::ofstream* out = nullptr;
  const std::string nowhere = dir.File("no-such-dir/out.txt");
  code = IOBase::OpenFileForWriting(out, nowhere);
  EXPECT_EQ(code, VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING | 0x8000);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(Message(code), "Unable to open file for writing: " + nowhere);

  test::WriteFile(missing, "old content that is longer\n");
  ASSERT_EQ(IOBase::OpenFileForWriting(out, missing), 0);
  *out << "a\nb\n";
  delete out;
  EXPECT_EQ(test::ReadFile(missing), test::TextFileBytes("a\nb\n"));  // truncated; text mode
}

TEST(IOBase, ReplacingGivesTextThePlatformLineEndAndKeepsBytes) {
  test::TempDirectory dir;
  const std::string text = dir.File("text.txt"), bytes = dir.File("bytes.bin");
  ASSERT_EQ(IOBase::ReplaceTextFile(text, "a\nb\r\n\nc\rd"), 0);  // a lone CR is no line end
  EXPECT_EQ(test::ReadFile(text), test::TextFileBytes("a\nb\n\nc\rd"));
  const std::string raw("\n\r\n\0\x0a", 5);
  ASSERT_EQ(IOBase::ReplaceFile(bytes, raw), 0);
  EXPECT_EQ(test::ReadFile(bytes), raw);
}

TEST(IOBase, ReplacingADirectoryOrInAMissingFolderCannotOpenForWriting) {
  test::TempDirectory dir;
  const std::string folder = dir.File("folder"), nowhere = dir.File("no-such-dir/out.txt");
  std::filesystem::create_directory(folder);
  for (const std::string& target : {folder, nowhere}) {
    for (int text = 0; text < 2; ++text) {
      const int code = text ? IOBase::ReplaceTextFile(target, "x\n") : IOBase::ReplaceFile(target, "x\n");
      EXPECT_EQ(code, VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING | 0x8000) << target;
      EXPECT_EQ(Message(code), "Unable to open file for writing: " + target);
      EXPECT_FALSE(std::filesystem::exists(target + ".tmp")) << target;
    }
  }
  EXPECT_TRUE(std::filesystem::is_directory(folder));
  EXPECT_FALSE(std::filesystem::exists(dir.File("no-such-dir")));
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

  // The longest line fits with either line end.
  std::istringstream longestCrLf(longest + "\r\n" + std::string(510, 'z') + "\r\nend\r\n");
  EXPECT_EQ(IOBase::ReadLine(&longestCrLf, buffer), 0);
  EXPECT_EQ(std::string(buffer), longest);
  EXPECT_EQ(IOBase::ReadLine(&longestCrLf, buffer), 0);
  EXPECT_EQ(std::string(buffer), std::string(510, 'z'));
  EXPECT_EQ(IOBase::ReadLine(&longestCrLf, buffer), 0);
  EXPECT_STREQ(buffer, "end");
  std::istringstream longestThenCr(longest + "\ry\n");
  EXPECT_EQ(IOBase::ReadLine(&longestThenCr, buffer), VEK_FILE_NOT_FORMATTED_PROPERLY);  // 512 characters

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

  std::istringstream mixed("#a\n\n  \n\t\n  # not a comment\n"), crlf("#a\r\n\r\nvalue\r\n");
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&mixed, buffer), 0);
  EXPECT_STREQ(buffer, "\t");  // a tab is content
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&mixed, buffer), 0);
  EXPECT_STREQ(buffer, "  # not a comment");
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&crlf, line), 0);
  EXPECT_EQ(line, "value");

  // Binary garbage: embedded zeros end the buffer's text early, a huge line fails, nothing crashes.
  std::istringstream garbage(std::string("\0\0\xff\xfe\n", 5) + std::string(100000, '\x01'));
  EXPECT_EQ(IOBase::ReadLineIgnoreIrrelevantLines(&garbage, buffer), VEK_FILE_NOT_FORMATTED_PROPERLY);
}

TEST(IOBase, ReadLineWithSingleValue) {
  std::string value = "unchanged";
  std::istringstream good("# header\nKey=3\n"), runs("Key = 3 = 4\n");
  EXPECT_EQ(IOBase::ReadLineWithSingleValue(good, "Key", "=", value), 0);
  EXPECT_EQ(value, "3");
  value = "unchanged";
  EXPECT_EQ(IOBase::ReadLineWithSingleValue(runs, "Key", " =", value), 0);
  EXPECT_EQ(value, "3");
  for (const char* text : {"Key\n", "Other=3\n", "Keys=3\n", ""}) {
    std::istringstream in(text);
    EXPECT_EQ(IOBase::ReadLineWithSingleValue(in, "Key", "=", value), VEK_FILE_NOT_FORMATTED_PROPERLY) << text;
  }
  EXPECT_EQ(value, "3");
}

TEST(IOBaseGridRecord, TextAndRawFormsExactAndReadBack) {
  const auto grid = MakeGrid(10, -2.5f, 0.5f, 4, 3, 2);
  std::ostringstream text, raw;
  EXPECT_EQ(IOBase::WriteRectilinearGrid(&text, "Grid", *grid, 0), 0);
  EXPECT_EQ(text.str(), "Grid\n10 -2.5 0.5 4 3 2 \n");
  EXPECT_EQ(IOBase::WriteRectilinearGrid(&raw, "G", *grid, 1), 0);
  const unsigned char expected[] = {'G',  '\n', 0, 0,    0x20, 0x41, 0, 0, 0x20, 0xC0, 0, 0, 0,
                                    0x3F, 0,    0, 0x80, 0x40, 3,    0, 0, 0,    2,    0, 0, 0};
  EXPECT_EQ(raw.str(), std::string(reinterpret_cast<const char*>(expected), sizeof(expected)));  // little-endian

  std::istringstream in("# comment\n\n   \nthe Grid label\n10 -2.5 0.5 4 3 2 \n");
  auto back = GridPtr::New();
  EXPECT_EQ(IOBase::ReadRectilinearGrid(&in, "Grid", 0, *back), 0);
  EXPECT_TRUE(SameBits(*back, *grid));
  // Raw is bit for bit, including values that print inexactly and line-end bytes inside the record.
  auto written = MakeGrid(0.1f, -0.0f, 1.0f / 3.0f, NAN, 10, -1);
  std::stringstream io;
  IOBase::WriteRectilinearGrid(&io, "G", *written, 1);
  EXPECT_EQ(IOBase::ReadRectilinearGrid(&io, "G", 1, *back), 0);
  EXPECT_TRUE(SameBits(*back, *written));
}

TEST(IOBaseGridRecord, DamagedRecordsLeaveTheGridUntouched) {
  const auto unset = GridPtr::New();
  auto grid = GridPtr::New();
  const struct {
    std::string text;
    int raw, code;
  } cases[] = {
      {"Other\n1 2 3 4 5 6 \n", 0, VEK_FILE_NOT_FORMATTED_PROPERLY},  // wrong label
      {"# only a comment\n", 0, VEK_FILE_NOT_FORMATTED_PROPERLY},
      {"Grid\n1 2 3 4 x 6 \n", 0, VEK_UNABLE_TO_READ_NUM_FROM_FILE},
      {"Grid\n1 2 3 4 5", 0, VEK_UNABLE_TO_READ_NUM_FROM_FILE},
      {"Grid\n" + std::string(23, '\x7f'), 1, VEK_UNABLE_TO_READ_NUM_FROM_FILE},  // one byte short
  };
  for (const auto& c : cases) {
    std::istringstream in(c.text);
    EXPECT_EQ(IOBase::ReadRectilinearGrid(&in, "Grid", c.raw, *grid), c.code) << c.text;
  }
  EXPECT_TRUE(SameBits(*grid, *unset));
  EXPECT_EQ(IOBase::WriteRectilinearGrid(nullptr, "Grid", *grid, 0), VEK_UNABLE_TO_WRITE_TO_STREAM);
}

}  // namespace
}  // namespace vek
