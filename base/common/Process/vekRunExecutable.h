#pragma once
#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

/// Runs a helper program through the command interpreter on a worker thread and waits for it with
/// a time-out (the polling of SpawnThread::WaitUntilCompletion).
///
/// The program's path is quoted for the interpreter (see platform::ShellCommandForProgram), so a
/// path with blanks or interpreter metacharacters runs that program and nothing else; on Windows,
/// where "call" reads the line, a path must not hold "%". The arguments, given when numArguments
/// is positive and the text is not empty, follow after one blank exactly as written: quoting them
/// is the caller's business.
///
/// Run returns the outcome of the wait, not the program's exit status: a program that runs and
/// fails leaves "Failed to run executable: <command>" in the last-error record (written by the
/// worker thread) while Run returns 0. A timed-out program is not killed; its thread keeps running
/// and owns its copy of the command line. No trace lines are logged.
class VEK_EXPORT RunExecutable : public Object {
 public:
  static RunExecutable* New();
  const char* GetClassName() const override { return "RunExecutable"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  static int Run(const char* executable, const unsigned long& milliseconds, const int& numArguments,
                 const char* arguments);

 protected:
  RunExecutable() = default;
  ~RunExecutable() override = default;

  /// Runs the command text (a const char*) with std::system: 0 when it returned 0, otherwise
  /// VEK_FAILED_TO_RUN_EXECUTABLE with a custom message naming the command.
  static int DoTheCommand(void* command);

 private:
  RunExecutable(const RunExecutable&) = delete;
  RunExecutable& operator=(const RunExecutable&) = delete;

  /// The thread function of Run: runs and then frees the heap copy of the command it is given.
  static int DoTheOwnedCommand(void* command, const int& number);
};

}  // namespace vek
