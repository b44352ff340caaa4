#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <regex>
#include <thread>

#include "vekErrorHelper.h"
#include "vekPlatform.h"
#include "vekRunExecutable.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

const std::string kHelper = VEK_TEST_HELPER_PROGRAM;

// The marker file given to the helper program, quoted for either command interpreter.
std::string Arguments(const std::string& code, const std::string& milliseconds, const std::string& marker) {
  return code + " " + milliseconds + " \"" + marker + "\"";
}

TEST(RunExecutable, MissingProgramIsReportedAndNotRun) {
  test::TempDirectory folder;
  const std::string missing = folder.File("no such program");
  test::LogCapture log;
  int code = RunExecutable::Run(missing.c_str(), 1000, 0, nullptr);
  EXPECT_EQ(code, VEK_FILE_NOT_FOUND | VEK_CUSTOM_MESSAGE_FLAG);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(code), "Could not find executable named " + missing);
  EXPECT_TRUE(
      std::regex_search(log.Text(), std::regex("^ERROR:vekRunExecutable, [0-9]+: Could not find executable named ")))
      << log.Text();
}

TEST(RunExecutable, PathWithBlanksAndMetacharactersRunsThatProgramOnly) {
  test::TempDirectory folder;
  std::filesystem::create_directory(folder.Path() / "a folder");
  const std::string program =
      folder.File("a folder/run me & echo x; $HOME `id`" + std::filesystem::path(kHelper).extension().string());
  std::filesystem::copy_file(kHelper, program);
  const std::string marker = folder.File("ran.txt");
  ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "earlier error");

  std::string arguments = Arguments("0", "0", marker);
  EXPECT_EQ(RunExecutable::Run(program.c_str(), 5000, 3, arguments.c_str()), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(marker), "ran");
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(VEK_INVALID_PARAMETERS | VEK_CUSTOM_MESSAGE_FLAG),
            "earlier error");
}

TEST(RunExecutable, FailingProgramLeavesItsCommandInTheLastError) {
  test::TempDirectory folder;
  std::string arguments = Arguments("3", "0", folder.File("ran.txt"));
  EXPECT_EQ(RunExecutable::Run(kHelper.c_str(), 5000, 3, arguments.c_str()), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(folder.File("ran.txt")), "ran");
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(VEK_FAILED_TO_RUN_EXECUTABLE | VEK_CUSTOM_MESSAGE_FLAG),
            "Failed to run executable: " + platform::ShellCommandForProgram(kHelper) + " " + arguments);
}

TEST(RunExecutable, SlowProgramTimesOutAndKeepsRunning) {
  test::TempDirectory folder;
  std::string arguments = Arguments("0", "600", folder.File("ran.txt"));
  test::LogCapture log;
  auto start = std::chrono::steady_clock::now();
  int code = RunExecutable::Run(kHelper.c_str(), 150, 3, arguments.c_str());
  auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(code, VEK_WAITED_TOO_LONG_FOR_THREAD | VEK_CUSTOM_MESSAGE_FLAG);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(code), "Waited too long for executable named " + kHelper);
  EXPECT_LT(waited, std::chrono::milliseconds(550));
  EXPECT_NE(log.Text().find("Waited too long for executable named "), std::string::npos);
  // The released thread still owns its command and its record: let it finish under the sanitizer.
  std::this_thread::sleep_for(std::chrono::milliseconds(900));
  EXPECT_EQ(test::ReadFile(folder.File("ran.txt")), "ran");
}

}  // namespace
}  // namespace vek
