// vek product [--module-dir DIR]: the product's facts and feature switches, and where they came from.
#include <iostream>
#include <memory>
#include <string>

#include "vekKORProductConfiguration.h"
#include "vekProductModule.h"
#include "vekSmartPointer.h"
#include "vekTool.h"

namespace vek::tool {

namespace {

int ShowProduct(const std::string& moduleDirectory) {
  if (!moduleDirectory.empty() && !ProductModule::Load(moduleDirectory))
    return Fail("no product module " + ProductModule::FileName() + " that loads in " + moduleDirectory);
  auto product = SmartPointer<KORProductConfiguration>::New();
  const int status = product->Load();
  if (status != 0) return Report(status);

  // A module the program loaded itself has no folder of ProductModule's: its name says enough.
  const std::string& source = product->GetSourceName();
  const std::string folder = ProductModule::GetDirectory();
  std::string text = "Module\t" +
                     (source.empty()   ? std::string("none: every fact is its default")
                      : folder.empty() ? source
                                       : folder + ProductModule::FileName()) +
                     "\n";
  auto line = [&](const std::string& key, const std::string& value) {
    text += key + "\t" + value + "\t" + (product->IsFromResource(key) ? "module" : "default") + "\n";
  };
  line("ProductName", product->GetProductName());
  line("Edition", product->GetEdition());
  line("Version", product->GetVersion());
  line("Build", product->GetBuild());
  line("MaxProjectors", std::to_string(product->GetMaxProjectors()));
  line("MaxCameras", std::to_string(product->GetMaxCameras()));
  for (const auto& [name, on] : product->GetFeatures()) line("Feature." + name, on ? "on" : "off");
  std::cout << text;
  return kSuccess;
}

}  // namespace

void AddProductCommand(Commands& commands) {
  auto moduleDirectory = std::make_shared<std::string>();
  CLI::App* product = commands.Add(commands.GetRoot(), "product", "Print the product's facts and feature switches.",
                                   [moduleDirectory] { return ShowProduct(*moduleDirectory); });
  product->add_option("--module-dir", *moduleDirectory,
                      "Load the product module from this folder first (to check one before it ships).");
  product->footer(
      "The facts come from the PRODUCT_CONFIG resource of the product module KORProductConfiguration\n"
      "(.dll on Windows, .so elsewhere) found beside the library; without it every fact is its default.\n"
      "The first line names the module (or says there is none); then one line per fact, tab-separated:\n"
      "key, value, and \"module\" or \"default\". Feature switches the module names follow as\n"
      "Feature.<name> on|off; any other switch is off.");
}

}  // namespace vek::tool
