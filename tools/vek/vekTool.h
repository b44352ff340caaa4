#pragma once
// What the command groups of the vek tool share. A group is one function that adds its commands
// to the command line (one vekTool<Group>.cxx each); main calls every group's function, parses,
// and runs the one command the line chose. Commands only parse, call the library and print.
#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace vek::tool {

/// The exit status of every command: success, a failure reported on standard error, or a
/// command line that was not understood.
enum ExitStatus : int { kSuccess = 0, kFailure = 1, kUsage = 2 };

/// The command line being built, and what runs for each command on it.
class Commands {
 public:
  explicit Commands(CLI::App& root) : Root(root) {}
  CLI::App& GetRoot() { return Root; }

  /// A command below `parent` that runs `run` when the line chose it; `run` returns the exit
  /// status. Bind the command's arguments to variables that `run` reads.
  CLI::App* Add(CLI::App& parent, const std::string& name, const std::string& description,
                std::function<int()> run);
  /// A command that only groups others ("vek option ..."): one of them must follow it.
  CLI::App* AddGroup(CLI::App& parent, const std::string& name, const std::string& description);
  /// The exit status of the command the parsed line chose.
  int RunChosen() const;

 private:
  CLI::App& Root;
  std::vector<std::pair<CLI::App*, std::function<int()>>> Runs;
};

/// For a failed status, "vek: NAME: message" on standard error and kFailure; kSuccess otherwise.
int Report(int status);
/// "vek: message" on standard error; kFailure.
int Fail(const std::string& message);
/// "vek: message" and where to find help, on standard error; kUsage.
int UsageError(const std::string& message);
/// The shortest text that reads back as the same float.
std::string FloatText(float value);

void AddVersionCommand(Commands& commands);
void AddErrorCommand(Commands& commands);
void AddOptionCommands(Commands& commands);
void AddLensCommands(Commands& commands);
void AddMeshCommands(Commands& commands);
void AddCalibrationCommands(Commands& commands);
void AddProductCommand(Commands& commands);
void AddSystemsCommands(Commands& commands);

}  // namespace vek::tool
