// The vek command-line tool: a window onto the library for people running calibrations.
// "vek --help" lists the commands; every command has its own --help.
#include "vekTool.h"

#include <charconv>
#include <exception>
#include <iostream>

#include "vekErrorHelper.h"
#include "vekOutputFile.h"
#include "vekVersion.h"

namespace vek::tool {

CLI::App* Commands::Add(CLI::App& parent, const std::string& name, const std::string& description,
                        std::function<int()> run) {
  CLI::App* command = parent.add_subcommand(name, description);
  Runs.emplace_back(command, std::move(run));
  return command;
}

CLI::App* Commands::AddGroup(CLI::App& parent, const std::string& name, const std::string& description) {
  CLI::App* group = parent.add_subcommand(name, description);
  group->require_subcommand(1);
  return group;
}

int Commands::RunChosen() const {
  for (const auto& [command, run] : Runs)
    if (command->parsed()) return run();
  return UsageError("no command given");
}

int Report(int status) {
  if (status == 0) return kSuccess;
  std::string name = ErrorHelper::GetErrorName(status);
  std::cerr << "vek: " << (name.empty() ? std::to_string(ErrorHelper::GetErrorWithoutCustomMessageFlag(status)) : name)
            << ": " << ErrorHelper::GetErrorMessageWithNoExtras(status) << "\n";
  return kFailure;
}

int Fail(const std::string& message) {
  std::cerr << "vek: " << message << "\n";
  return kFailure;
}

int UsageError(const std::string& message) {
  std::cerr << "vek: " << message << "\nRun with --help for more information.\n";
  return kUsage;
}

std::string FloatText(float value) {
  char text[32];
  return std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
}

void AddVersionCommand(Commands& commands) {
  commands.Add(commands.GetRoot(), "version", "Print the library version.", [] {
    std::cout << "vek " << VEK_VERSION_STRING << "\n";
    return kSuccess;
  });
}

}  // namespace vek::tool

int main(int argc, char** argv) {
  using namespace vek::tool;
  // Opening a log rotates it, so short tool runs would push the calibration programs' history out
  // of DebugLog.txt: the tool keeps a log (and generations) of its own in the same folder.
  const std::string programsLog = vek::OutputFile::GetFileName();
  vek::OutputFile::SetFileName((programsLog.substr(0, programsLog.find_last_of("/\\") + 1) + "vekTool.log").c_str());
  CLI::App app("A window onto the vek library for people running calibrations.", "vek");
  app.require_subcommand(1);
  app.footer(
      "Exit status: 0 on success; 1 when the library reports a failure (its status name and message\n"
      "go to standard error); 2 when the command line is not understood.\n"
      "The library works in the folder VEK_BASE_DIR names (options live in its Config folder); the\n"
      "tool's messages go to vekTool.log beside the debug log.");
  Commands commands(app);
  for (auto add : {AddVersionCommand, AddErrorCommand, AddOptionCommands, AddLensCommands, AddMeshCommands,
                    AddCalibrationCommands, AddProductCommand, AddSystemsCommands})
    add(commands);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    // Help goes to standard output with status 0; anything else is a command line not understood.
    if (e.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app.exit(e);
    return UsageError(e.what());
  }
  try {
    return commands.RunChosen();
  } catch (const std::exception& e) {
    return Fail(e.what());
  }
}
