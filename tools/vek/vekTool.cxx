// The vek command-line tool: a window onto the library for people running calibrations.
//   vek version                      the library version
//   vek error CODE [--language LL]   the status code's name and message (LL: en, de, fr, ja)
//   vek option get KEY               an option's value text
//   vek option set KEY TYPE VALUE    sets an option (TYPE: Int, Float, Double, Bool, String, ...Array)
#include <cstdlib>
#include <iostream>
#include <string>

#include "vekConfigurationDatabase.h"
#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekTextConversion.h"
#include "vekVersion.h"

namespace {

int Usage() {
  std::cerr << "usage: vek version\n"
               "       vek error CODE [--language en|de|fr|ja]\n"
               "       vek option get KEY\n"
               "       vek option set KEY TYPE VALUE\n";
  return 2;
}

bool ParseCode(const std::string& text, int& code) {
  char* end = nullptr;
  long value = std::strtol(text.c_str(), &end, 0);
  if (text.empty() || *end != '\0' || value < 0 || value > 0xFFFF) return false;
  code = static_cast<int>(value);
  return true;
}

int ShowError(int argc, char** argv) {
  int code = 0;
  if (argc < 3 || !ParseCode(argv[2], code)) return Usage();
  for (int i = 3; i < argc; ++i) {
    std::string option = argv[i];
    if (option == "--language" && i + 1 < argc) {
      vek::ConfigurationDatabase::SetLanguage(argv[++i]);
    } else {
      return Usage();
    }
  }
  std::string name = vek::ErrorHelper::GetErrorName(code);
  std::wstring message;
  if (name.empty() || vek::ConfigurationDatabase::GetText(name, message) != VEK_SUCCESS)
    message = vek::Utf8ToWide(
        vek::ErrorHelper::GetErrorMessageWithNoExtras(vek::ErrorHelper::GetErrorWithoutCustomMessageFlag(code)));
  std::cout << (name.empty() ? "(unnamed)" : name) << " (" << vek::ErrorHelper::GetErrorWithoutCustomMessageFlag(code)
            << "): " << vek::WideToUtf8(message) << "\n";
  return 0;
}

// Reports a failed status on standard error; returns the process exit code.
int Report(int status) {
  if (status == VEK_SUCCESS) return 0;
  std::cerr << "vek: " << vek::ErrorHelper::GetErrorName(status) << ": "
            << vek::ErrorHelper::GetErrorMessageWithNoExtras(status) << "\n";
  return 1;
}

int Option(int argc, char** argv) {
  std::string action = argc > 2 ? argv[2] : "";
  bool get = action == "get" && argc == 4;
  bool set = action == "set" && argc == 6;
  if (!get && !set) return Usage();
  vek::SmartPointer<vek::ConfigurationDatabase> store = vek::SmartPointer<vek::ConfigurationDatabase>::New();
  int status = store->LoadOptionsDatabase();
  if (status != VEK_SUCCESS) return Report(status);
  if (set) return Report(store->SetOptionAsString(argv[3], argv[4], argv[5]));
  std::string value;
  status = store->GetOptionAsString(argv[3], value);
  if (status == VEK_SUCCESS) std::cout << value << "\n";
  return Report(status);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return Usage();
  std::string command = argv[1];
  if (command == "version") {
    std::cout << "vek " << VEK_VERSION_STRING << "\n";
    return 0;
  }
  if (command == "error") return ShowError(argc, argv);
  if (command == "option") return Option(argc, argv);
  return Usage();
}
