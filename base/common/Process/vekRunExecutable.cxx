#include "vekRunExecutable.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <string>

#include "vekCustomLanguageString.h"
#include "vekErrorHelper.h"
#include "vekOutputMessages.h"
#include "vekPlatform.h"
#include "vekSpawnThread.h"
#include "vekTextConversion.h"

namespace vek {

namespace {

// Logs the message in English and raises it with the user's language alongside.
int ReportAndRaise(int code, const char* key, const std::string& path) {
  CustomLanguageString message(key);
  message << path;
  VEK_REPORT_ERROR(WideToUtf8(message.GetDefaultOutput()));
  return ErrorHelper::ErrorWithCustomMessage(code, message);
}

}  // namespace

RunExecutable* RunExecutable::New() { return new (std::nothrow) RunExecutable; }

void RunExecutable::PrintSelf(std::ostream& os, Indent indent) const { Object::PrintSelf(os, indent); }

int RunExecutable::DoTheCommand(void* command) {
  const char* text = static_cast<const char*>(command);
  if (text && std::system(text) == 0) return VEK_SUCCESS;
  return ErrorHelper::ErrorWithCustomMessage(VEK_FAILED_TO_RUN_EXECUTABLE,
                                             CustomLanguageString("VEK_FAILED_TO_RUN_EXECUTABLE_CUSTOM") << text);
}

int RunExecutable::DoTheOwnedCommand(void* command, const int&) {
  std::unique_ptr<std::string> owned(static_cast<std::string*>(command));
  return DoTheCommand(owned->data());
}

int RunExecutable::Run(const char* executable, const unsigned long& milliseconds, const int& numArguments,
                       const char* arguments) {
  const std::string path = executable ? executable : "";
  std::error_code error;
  if (path.empty() || !std::filesystem::exists(path, error)) {
    return ReportAndRaise(VEK_FILE_NOT_FOUND, "VEK_EXECUTABLE_NOT_FOUND_CUSTOM", path);
  }
  std::string command = platform::ShellCommandForProgram(path);
  if (numArguments > 0 && arguments && *arguments) command += std::string(" ") + arguments;

  // The thread gets a copy of its own: after a time-out it outlives this call.
  auto* owned = new (std::nothrow) std::string(command);
  SpawnThread* threads = SpawnThread::New();
  int started =
      owned && threads ? threads->StartNumberedThread(DoTheOwnedCommand, owned, 0) : VEK_FAILED_TO_CREATE_THREAD;
  int waited = VEK_SUCCESS;
  if (started == VEK_SUCCESS)
    waited = threads->WaitUntilCompletion(milliseconds);
  else
    delete owned;
  if (threads) threads->Release();

  if (started != VEK_SUCCESS) {
    return ReportAndRaise(VEK_FAILED_TO_RUN_EXECUTABLE, "VEK_COULD_NOT_START_EXECUTABLE_CUSTOM", path);
  }
  if (waited == VEK_WAITED_TOO_LONG_FOR_THREAD) {
    return ReportAndRaise(VEK_WAITED_TOO_LONG_FOR_THREAD, "VEK_WAITED_TOO_LONG_FOR_EXECUTABLE_CUSTOM", path);
  }
  if (waited != VEK_SUCCESS) {
    VEK_REPORT_ERROR("Executable failed: unknown error " << command);
    return waited;
  }
  return VEK_SUCCESS;
}

}  // namespace vek
