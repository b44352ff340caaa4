// vek systems list|add|remove|activate: the display systems installed on this machine.
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "vekKOREnterpriseSystemManager.h"
#include "vekSmartPointer.h"
#include "vekTool.h"

namespace vek::tool {

namespace {

using System = KOREnterpriseSystemManager::System;

struct SystemArguments {
  System New;
  std::string Id;
};

int List() {
  std::vector<System> systems;
  const int status = SmartPointer<KOREnterpriseSystemManager>::New()->List(systems);
  if (status != 0) return Report(status);
  std::string text;
  for (const System& s : systems) {
    const std::string calibrated = KOREnterpriseSystemManager::TimeText(s.LastCalibration);
    text += s.Id + "\t" + s.Name + "\t" + s.BaseDirectory + "\t" + s.ScreenType + "\t" +
            std::to_string(s.NumProjectors) + "\t" + std::to_string(s.NumCameras) + "\t" +
            (calibrated.empty() ? "never" : calibrated) + "\t" + (s.Active ? "active" : "inactive") + "\n";
  }
  std::cout << text;
  return kSuccess;
}

int Add(System system) {
  // The list is shared by every program of the machine: a relative folder would mean nothing there.
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(system.BaseDirectory, error);
  if (!error) system.BaseDirectory = absolute.string();
  return Report(SmartPointer<KOREnterpriseSystemManager>::New()->Add(system));
}

}  // namespace

void AddSystemsCommands(Commands& commands) {
  auto a = std::make_shared<SystemArguments>();
  auto manager = [] { return SmartPointer<KOREnterpriseSystemManager>::New(); };
  CLI::App* systems =
      commands.AddGroup(commands.GetRoot(), "systems", "List and change the installed display systems.");
  systems->footer(
      "The list is systems.xml in Config/ of the base folder. Each system has a unique id, a name, its\n"
      "base folder, a screen type, numbers of projectors and cameras, the time of its last calibration\n"
      "and whether it is the active one: exactly one is, when there are any. A damaged file is reported\n"
      "(exit status 1) and left as it is.");

  CLI::App* list = commands.Add(*systems, "list", "List the systems.", [] { return List(); });
  list->footer(
      "One line per system, tab-separated: id, name, base folder, screen type, projectors, cameras,\n"
      "last calibration (UTC, or \"never\"), and \"active\" or \"inactive\".");

  CLI::App* add = commands.Add(*systems, "add", "Add a system; the first one added is the active one.",
                               [a] { return Add(a->New); });
  add->add_option("ID", a->New.Id, "A unique id.")->required();
  add->add_option("NAME", a->New.Name, "The name people see.")->required();
  add->add_option("BASEDIR", a->New.BaseDirectory, "The system's base folder (made absolute).")->required();
  add->add_option("--screen", a->New.ScreenType, "The screen type.")->capture_default_str();
  add->add_option("--projectors", a->New.NumProjectors, "The number of projectors.")->capture_default_str();
  add->add_option("--cameras", a->New.NumCameras, "The number of cameras.")->capture_default_str();
  add->footer("An id that is already in the list is refused (exit status 1).");

  CLI::App* remove = commands.Add(*systems, "remove", "Remove a system; if it was active, the first left is.",
                                  [a, manager] { return Report(manager()->Remove(a->Id)); });
  remove->add_option("ID", a->Id, "The system's id.")->required();

  CLI::App* activate = commands.Add(*systems, "activate", "Make a system the active one.",
                                    [a, manager] { return Report(manager()->SetActive(a->Id)); });
  activate->add_option("ID", a->Id, "The system's id.")->required();
}

}  // namespace vek::tool
