#include "vekKORProductConfiguration.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <new>
#include <sstream>

#include "vekErrorCodes.h"
#include "vekLanguageTables.h"
#include "vekOutputMessages.h"
#include "vekPlatform.h"
#include "vekProductModule.h"
#include "vekVersion.h"

namespace vek {

namespace {

constexpr char kBlanks[] = " \t";
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
constexpr char kFeaturePrefix[] = "Feature.";

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string Lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

bool ParseSwitch(const std::string& value, bool& on) {
  const std::string word = Lowered(value);
  if (word == "on" || word == "true" || word == "yes" || word == "1") {
    on = true;
    return true;
  }
  if (word == "off" || word == "false" || word == "no" || word == "0") {
    on = false;
    return true;
  }
  return false;
}

bool ParseCount(const std::string& value, int& count) {
  int parsed = 0;
  const char* end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, parsed);
  if (value.empty() || error != std::errc() || stop != end || parsed < 1 ||
      parsed > KORProductConfiguration::kCountLimit)
    return false;
  count = parsed;
  return true;
}

bool IsFeatureName(const std::string& name) {
  return !name.empty() &&
         std::all_of(name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) || c == '_'; });
}

}  // namespace

KORProductConfiguration* KORProductConfiguration::New() { return new (std::nothrow) KORProductConfiguration; }

KORProductConfiguration::KORProductConfiguration() { SetDefaults(); }

void KORProductConfiguration::SetDefaults() {
  ProductName = kDefaultProductName;
  Edition = kDefaultProductEdition;
  Version = VEK_VERSION_STRING;
  Build = kDefaultProductBuild;
  MaxProjectors = kDefaultMaxProjectors;
  MaxCameras = kDefaultMaxCameras;
  Features.clear();
  KeysRead.clear();
  SourceName.clear();
  BadLines = 0;
}

void KORProductConfiguration::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Source: " << (SourceName.empty() ? "(defaults)" : SourceName) << "\n";
  os << indent << "ProductName: " << ProductName << "\n";
  os << indent << "Edition: " << Edition << "\n";
  os << indent << "Version: " << Version << "\n";
  os << indent << "Build: " << Build << "\n";
  os << indent << "MaxProjectors: " << MaxProjectors << "\n";
  os << indent << "MaxCameras: " << MaxCameras << "\n";
  for (const auto& [name, on] : Features) os << indent << kFeaturePrefix << name << ": " << (on ? "on" : "off") << "\n";
  os << indent << "BadLines: " << BadLines << "\n";
}

int KORProductConfiguration::Load() {
  ProductModule::LoadBesideLibrary();
  return ReadFromModule(LanguageTables::kProductModule);
}

int KORProductConfiguration::ReadFromModule(const std::string& moduleName) {
  try {
    std::string bytes;
    if (!platform::ModuleResource(moduleName, kProductConfigResourceType, kResourceId, bytes)) {
      SetDefaults();
      return VEK_SUCCESS;
    }
    return ReadFromText(bytes, moduleName);
  } catch (const std::bad_alloc&) {
    SetDefaults();
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

int KORProductConfiguration::ReadFromText(const std::string& text, const std::string& sourceName) {
  try {
    SetDefaults();
    SourceName = sourceName;
    std::istringstream lines(text.compare(0, 3, kByteOrderMark) == 0 ? text.substr(3) : text);
    std::string line, firstProblem;
    int number = 0;
    while (std::getline(lines, line)) {
      ++number;
      if (!line.empty() && line.back() == '\r') line.pop_back();
      const std::string content = Trimmed(line);
      if (content.empty() || content[0] == '#') continue;
      const std::size_t equals = content.find('=');
      const std::string problem = equals == std::string::npos ? std::string("no \"=\" between key and value")
                                                              : ReadLine(Trimmed(content.substr(0, equals)),
                                                                         Trimmed(content.substr(equals + 1)));
      if (problem.empty()) continue;
      if (BadLines++ == 0) firstProblem = "line " + std::to_string(number) + " \"" + content + "\": " + problem;
    }
    if (BadLines > 0)
      VEK_REPORT_WARNING(kProductConfigResourceType << " of " << sourceName << ", " << firstProblem << "; " << BadLines
                                                    << (BadLines == 1 ? " line" : " lines")
                                                    << " passed over, their facts keep their defaults.");
  } catch (const std::bad_alloc&) {
    SetDefaults();
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

std::string KORProductConfiguration::ReadLine(const std::string& key, const std::string& value) {
  std::string* text = key == "ProductName" ? &ProductName
                      : key == "Edition"   ? &Edition
                      : key == "Version"   ? &Version
                      : key == "Build"     ? &Build
                                           : nullptr;
  int* count = key == "MaxProjectors" ? &MaxProjectors : key == "MaxCameras" ? &MaxCameras : nullptr;
  if (text) {
    if (value.empty()) return key + " is empty";
    *text = value;
  } else if (count) {
    if (!ParseCount(value, *count)) return key + " is not a whole number from 1 to " + std::to_string(kCountLimit);
  } else if (key.compare(0, sizeof kFeaturePrefix - 1, kFeaturePrefix) == 0) {
    const std::string name = key.substr(sizeof kFeaturePrefix - 1);
    if (!IsFeatureName(name)) return "a feature name is letters, digits and underscores";
    bool on = false;
    if (!ParseSwitch(value, on)) return "a feature switch is on or off";
    Features[name] = on;
  } else {
    return "unknown key \"" + key + "\"";
  }
  KeysRead.insert(key);
  return std::string();
}

bool KORProductConfiguration::IsFeatureEnabled(const std::string& name) const {
  auto found = Features.find(name);
  return found != Features.end() && found->second;
}

}  // namespace vek
