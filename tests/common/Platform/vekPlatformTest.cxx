#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "vekPlatform.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

TEST(PlatformText, EveryLineEndBecomesThePlatformOne) {
#ifdef _WIN32
  EXPECT_STREQ(platform::LineEnd(), "\r\n");
#else
  EXPECT_STREQ(platform::LineEnd(), "\n");
#endif
  const std::string e = platform::LineEnd();
  EXPECT_EQ(platform::WithPlatformLineEnds(""), "");
  EXPECT_EQ(platform::WithPlatformLineEnds("no end"), "no end");
  EXPECT_EQ(platform::WithPlatformLineEnds("\n\r\n"), e + e);
  EXPECT_EQ(platform::WithPlatformLineEnds("a\nb\r\nc"), "a" + e + "b" + e + "c");
  // A CR not followed by LF is text; of "\r\r\n" only the last CR belongs to the line end.
  EXPECT_EQ(platform::WithPlatformLineEnds("x\ry\r\r\n\r"), "x\ry\r" + e + "\r");
  const std::string once = platform::WithPlatformLineEnds("1\n2\r\n\n");
  EXPECT_EQ(once, test::TextFileBytes("1\n2\n\n"));
  EXPECT_EQ(platform::WithPlatformLineEnds(once), once);
}

TEST(PlatformFiles, WhatRefusesWritingIsNeverReplaced) {
  test::TempDirectory dir;
  const std::string file = dir.File("file.txt"), folder = dir.File("folder"), nowhere = dir.File("no-dir/x.txt");
  std::filesystem::create_directory(folder);
  EXPECT_FALSE(platform::FileRefusesWriting(file));  // missing: it can be made
  EXPECT_FALSE(platform::FileRefusesWriting(nowhere));
  EXPECT_TRUE(platform::FileRefusesWriting(folder));

  EXPECT_EQ(platform::ReplaceFileContents(file, "new\n"), platform::FileReplacement::Done);
  EXPECT_FALSE(platform::FileRefusesWriting(file));
  EXPECT_EQ(test::ReadFile(file), "new\n");  // bytes as given
  EXPECT_EQ(platform::ReplaceFileContents(folder, "x"), platform::FileReplacement::NotWritten);
  EXPECT_EQ(platform::ReplaceFileContents(nowhere, "x"), platform::FileReplacement::NotWritten);
  EXPECT_EQ(platform::ReplaceFileContents("", "x"), platform::FileReplacement::NotWritten);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  EXPECT_FALSE(std::filesystem::exists(folder + ".tmp"));
}

}  // namespace
}  // namespace vek
