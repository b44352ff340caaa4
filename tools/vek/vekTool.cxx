// The vek command-line tool: a window onto the library for people running calibrations.
//   vek version                      the library version
//   vek error CODE [--language LL]   the status code's name and message (LL: en, de, fr, ja)
#include <cstdlib>
#include <iostream>
#include <string>

#include "vekConfigurationDatabase.h"
#include "vekErrorHelper.h"
#include "vekTextConversion.h"
#include "vekVersion.h"

namespace {

int Usage() {
  std::cerr << "usage: vek version\n"
               "       vek error CODE [--language en|de|fr|ja]\n";
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
    message = vek::Utf8ToWide(vek::ErrorHelper::GetErrorMessageWithNoExtras(
        vek::ErrorHelper::GetErrorWithoutCustomMessageFlag(code)));
  std::cout << (name.empty() ? "(unnamed)" : name) << " ("
            << vek::ErrorHelper::GetErrorWithoutCustomMessageFlag(code) << "): " << vek::WideToUtf8(message) << "\n";
  return 0;
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
  return Usage();
}
