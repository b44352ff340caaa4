#include <gtest/gtest.h>

#include <iostream>
#include <regex>
#include <sstream>
#include <thread>

#include "vekOutputFile.h"
#include "vekOutputMessages.h"
#include "vekOutputWindow.h"
#include "vekOutputWindowCleanup.h"
#include "vekRecursiveLock.h"
#include "vekTestSupport.h"
#include "vekWin32OutputWindow.h"

namespace vek {
namespace {

// Sends the log to `name` for one test and back afterwards.
class LogFileTest : public ::testing::Test {
 protected:
  void SetUp() override { OutputFile::SetFileName(Log().c_str()); }
  void TearDown() override {
    OutputFile::SetTimestampEntries(false);
    OutputFile::SetFileName(Previous.c_str());
  }
  std::string Log() const { return Directory.File("DebugLog.txt"); }
  std::string Generation(int i) const { return Directory.File("DebugLog_" + std::to_string(i) + ".txt"); }

  std::string Previous = OutputFile::GetFileName();
  test::TempDirectory Directory;
};

const std::regex kOpeningLine(
    "Date and Time: [A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9]{2}:[0-9]{2}:[0-9]{2} [0-9]{4}\r\n");

TEST_F(LogFileTest, OpensLazilyWithATimestampLine) {
  EXPECT_FALSE(std::filesystem::exists(Log()));
  OutputWindowError("ERROR:x, 1: first\n");
  OutputWindowReportMessage("second");
  std::string text = test::ReadFile(Log());
  auto firstLine = text.find("\r\n") + 2;
  EXPECT_TRUE(std::regex_match(text.substr(0, firstLine), kOpeningLine)) << text;
  EXPECT_EQ(text.substr(firstLine), "ERROR:x, 1: first\nsecond");
}

TEST_F(LogFileTest, TimestampedEntries) {
  OutputFile::SetTimestampEntries(true);
  OutputFile::Error("entry\n");
  std::string text = test::ReadFile(Log());
  std::string entry = text.substr(text.find("\r\n") + 2);
  EXPECT_TRUE(std::regex_match(entry, std::regex("\\([A-Z][a-z]{2} [0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\) entry\n")))
      << entry;
  EXPECT_TRUE(std::regex_match(text.substr(0, text.find("\r\n") + 2), kOpeningLine));  // no prefix there
}

TEST_F(LogFileTest, EachOpeningRotatesTenGenerations) {
  for (int i = 0; i < 10; ++i) test::WriteFile(Generation(i), "generation " + std::to_string(i));
  test::WriteFile(Log(), "current");
  OutputFile::Error("new\n");
  EXPECT_EQ(test::ReadFile(Generation(0)), "current");
  EXPECT_EQ(test::ReadFile(Generation(1)), "generation 0");
  EXPECT_EQ(test::ReadFile(Generation(9)), "generation 8");
  EXPECT_FALSE(std::filesystem::exists(Directory.File("DebugLog_10.txt")));

  OutputFile::SetFileName(Log().c_str());  // the same name: closes, and the next message rotates
  OutputFile::Error("newer\n");
  std::string previous = test::ReadFile(Generation(0));
  EXPECT_EQ(previous.substr(previous.find("\r\n") + 2), "new\n");
  EXPECT_EQ(test::ReadFile(Generation(1)), "current");
}

TEST_F(LogFileTest, RenamingWithoutExtensionSplit) {
  std::string plain = Directory.File("trace.log");
  test::WriteFile(plain, "a");
  OutputFile::RenameOldFiles(3, plain.c_str(), false);
  EXPECT_EQ(test::ReadFile(plain + "_0"), "a");
  test::WriteFile(plain, "b");
  OutputFile::RenameOldFiles(3, plain.c_str(), true);
  EXPECT_EQ(test::ReadFile(Directory.File("trace_0.log")), "b");
}

TEST_F(LogFileTest, LastCleanupGuardClosesTheLog) {
  unsigned int before = OutputWindowCleanup::GetCount();
  {
    OutputWindowCleanup guard;
    EXPECT_EQ(OutputWindowCleanup::GetCount(), before + 1);
  }
  EXPECT_EQ(OutputWindowCleanup::GetCount(), before);
  OutputFile::Error("x\n");
  OutputFile::Destroy();
  OutputFile::Error("y\n");  // reopened, and so rotated
  EXPECT_NE(test::ReadFile(Generation(0)).find("x\n"), std::string::npos);
}

TEST(LocationPrefix, UsesTheSourceStemAndLine) {
  EXPECT_EQ(LocationPrefix("ERROR:", "/src/base/common/Core/vekStack.h", 42), "ERROR:vekStack, 42: ");
  EXPECT_EQ(LocationPrefix("Coder:", "C:\\src\\vekErrorHelper.cxx", 7), "Coder:vekErrorHelper, 7: ");
}

TEST(Win32OutputWindow, CutsMessagesAtLineEnds) {
  Win32OutputWindow::Destroy();
  Win32OutputWindow* window = Win32OutputWindow::GetInstance();
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(Win32OutputWindow::GetInstance(), nullptr);  // only one window
  Win32OutputWindow::ReportMessage("");
  EXPECT_EQ(Win32OutputWindow::GetText(), "");
  Win32OutputWindow::ReportMessage("a\nb");
  Win32OutputWindow::Error("\nc\n");
  EXPECT_EQ(Win32OutputWindow::GetText(), "a\r\nb\r\nc\r\n");
  Win32OutputWindow::Destroy();
  EXPECT_EQ(Win32OutputWindow::GetText(), "");
  window->Release();
}

TEST(OutputWindow, ErrorsToStandardErrorTheRestToStandardOutput) {
  std::ostringstream out, err;
  std::streambuf* previousOut = std::cout.rdbuf(out.rdbuf());
  std::streambuf* previousErr = std::cerr.rdbuf(err.rdbuf());
  OutputWindow::Error("e1 ");
  OutputWindow::Warning("w1");
  OutputWindow::ConsoleMessage("c1 ");
  OutputWindow::ProgrammerMessage("p1 ");
  OutputWindow::ReportMessage("r1");
  std::cout.rdbuf(previousOut);
  std::cerr.rdbuf(previousErr);
  EXPECT_EQ(err.str(), "e1 w1");
  EXPECT_EQ(out.str(), "c1 p1 r1");
  OutputWindow* console = OutputWindow::GetInstance();
  EXPECT_EQ(OutputWindow::GetInstance(), console);
  OutputWindow::Destroy();
}

TEST(RecursiveLock, OwnerReentersOthersWait) {
  RecursiveLock lock;
  lock.Lock();
  lock.Lock();
  EXPECT_EQ(lock.GetRecursionCount(), 2);
  EXPECT_EQ(lock.GetOwner(), std::this_thread::get_id());
  bool entered = false;
  std::thread other([&] {
    RecursiveLockGuard guard(lock);
    entered = true;
  });
  lock.Unlock();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_FALSE(entered);  // still held once
  lock.Unlock();
  other.join();
  EXPECT_TRUE(entered);
  EXPECT_EQ(lock.GetRecursionCount(), 0);
}

}  // namespace
}  // namespace vek
