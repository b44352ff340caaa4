#include "vekConfigurationDatabase.h"

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <type_traits>

#include "vekClassInitializer.h"
#include "vekErrorCodes.h"
#include "vekOptionValue.h"
#include "vekOutputMessages.h"
#include "vekPlatform.h"
#include "vekRecursiveLock.h"

namespace vek {

ConfigurationDatabase* ConfigurationDatabase::New() { return new ConfigurationDatabase; }

std::string ConfigurationDatabase::GetConfigurationDirectory() {
  ClassInitializer::Initialize(nullptr);
  return ClassInitializer::GetInstance()->GetConfigDirectoryName();
}

void ConfigurationDatabase::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "CalibrationGroupId: " << CalibrationGroupId << "\n";
}

namespace {

constexpr char kUnknownType[] = "Unknown";
// The line end shares the read buffer with the text, so one byte less than its characters.
constexpr std::size_t kLongestLine = OptionFile::kLineBufferSize - 2;

RecursiveLock& Lock() { return RecursiveLock::ConfigurationLock(); }

// A key the files can hold: one word, not a comment.
bool IsValidKey(const std::string& key) {
  return !key.empty() && key.find_first_of(OptionFile::kDelimiters) == std::string::npos && key[0] != '#';
}

// A line that stays one line when it is read back with the 512-byte buffer.
bool KeepsLineStructure(const std::string& lineWithoutEnd) {
  return lineWithoutEnd.size() <= kLongestLine && lineWithoutEnd.find_first_of("\r\n") == std::string::npos;
}

template <class T>
void Fallback(T& value) {
  value = T{};
}

template <class T>
void FullRange(T& minimum, T& maximum) {
  minimum = std::numeric_limits<T>::lowest();
  maximum = std::numeric_limits<T>::max();
}

bool FileExists(const std::string& file) {
  std::vector<std::string> unused;
  return OptionFile::GetFileLines(file, unused) == VEK_SUCCESS;
}

// Where an undescribed option must still read (a default, a value's type), a missing info file
// reads like one without the key's line.
int WithoutDescription(int result) { return result == VEK_FILE_NOT_FOUND ? VEK_SUCCESS : result; }

// Reads the value text of the last line for the key and checks a non-empty text against the
// described type; an empty text is judged by the requested type alone. `missing` is set when the
// key has no line.
template <class T>
int ReadOptionText(ConfigurationDatabase& store, const std::string& optionsFile, const std::string& key, const T& typed,
                   std::string& valueText, bool& missing) {
  std::string line, type;
  int result = OptionFile::GetLastMatchingLine(optionsFile, key, line);
  if (result != VEK_SUCCESS) return result;
  missing = line.empty();
  if (missing) return VEK_SUCCESS;
  result = OptionFile::ParseOptionLine(line, valueText);
  if (result != VEK_SUCCESS) return result;
  result = WithoutDescription(store.GetOptionType(key, type));
  if (result != VEK_SUCCESS) return result;
  if (!valueText.empty() && type != kUnknownType && type != OptionValue::TypeName(typed))
    return VEK_INVALID_PARAMETERS;
  return VEK_SUCCESS;
}

}  // namespace

int ConfigurationDatabase::LoadOptionsDatabase() {
  RecursiveLockGuard lock(Lock());
  RecursiveLockGuard settings(RecursiveLock::ClassInitializerLock());
  ClassInitializer::Initialize(nullptr);
  ClassInitializer* registry = ClassInitializer::GetInstance();
  registry->Reset();
  registry->CalibrationGroupId = CalibrationGroupId;
  const std::string directory = GetConfigurationDirectory();
  registry->ParseInputFile((directory + "Initialization").c_str());
  DefaultsFile = directory + "KOROptionDefaults.txt";
  OptionsFile = directory + "KOROptions.txt";
  InfoFile = directory + "KOROptionInfo.txt";
  if (!FileExists(OptionsFile)) {
    VEK_REPORT_AT(OutputWindowConsoleMessage, "Message:", 303, "Creating empty " << OptionsFile << " file.");
    platform::WriteFileDurably(OptionsFile, "");
  }
  ClassInitializer::ConcatenatedInitialize(DefaultsFile.c_str());
  ClassInitializer::ConcatenatedInitialize(OptionsFile.c_str());
  registry->ParseInputFile((directory + "ServiceAdvancedOptions").c_str());
  return VEK_SUCCESS;
}

int ConfigurationDatabase::ImportDefaultOptions() {
  RecursiveLockGuard lock(Lock());
  int result = LoadOptionsDatabase();
  if (result != VEK_SUCCESS) return result;
  if (InfoFile.empty()) return VEK_FILE_NOT_FOUND;
  if (!FileExists(DefaultsFile)) platform::WriteFileDurably(DefaultsFile, "");
  std::vector<std::string> lines;
  OptionFile::GetFileLines(InfoFile, lines);
  for (const std::string& line : lines) {
    std::string name, type, defaultText, minimum, maximum, existing;
    int visibility = 0;
    if (OptionFile::ParseOptionInfoLine(line, name, type, visibility, defaultText, minimum, maximum) != VEK_SUCCESS ||
        name[0] == '#' || defaultText.empty())
      continue;
    OptionFile::GetLastMatchingLine(DefaultsFile, name, existing);
    if (!existing.empty()) continue;
    result = SetOptionAsString(name, type, defaultText, DefaultsFile);
    if (result != VEK_SUCCESS) return result;
  }
  int groupId = 0;
  result = GetOption("NetworkGroupId", groupId);
  if (result != VEK_SUCCESS) return result;
  if (groupId == -1) {
    std::srand(static_cast<unsigned int>(std::time(nullptr)));
    result = SetOption<int>("NetworkGroupId", std::rand() % INT_MAX);
    if (result != VEK_SUCCESS) return result;
  }
  return VEK_SUCCESS;
}

int ConfigurationDatabase::GetOptionInfo(const std::string& key, std::string& type, std::string& defaultText,
                                         std::string& minimum, std::string& maximum, int* visibility) {
  type.clear();
  defaultText.clear();
  minimum.clear();
  maximum.clear();
  std::string line, name;
  int result = OptionFile::GetLastMatchingLine(InfoFile, key, line);
  if (result != VEK_SUCCESS || line.empty()) return result;
  int parsedVisibility = 0;
  result = OptionFile::ParseOptionInfoLine(line, name, type, parsedVisibility, defaultText, minimum, maximum);
  if (visibility) *visibility = parsedVisibility;
  return result;
}

int ConfigurationDatabase::GetOptionType(const std::string& key, std::string& type) {
  RecursiveLockGuard lock(Lock());
  std::string defaultText, minimum, maximum;
  int result = GetOptionInfo(key, type, defaultText, minimum, maximum);
  if (type.empty()) type = kUnknownType;
  return result;
}

template <class T>
int ConfigurationDatabase::GetOptionDefault(const std::string& key, T& value) {
  RecursiveLockGuard lock(Lock());
  std::string type, defaultText, minimum, maximum;
  int result = WithoutDescription(GetOptionInfo(key, type, defaultText, minimum, maximum));
  if (result != VEK_SUCCESS) return result;
  if (defaultText.empty()) {
    Fallback(value);
    return VEK_SUCCESS;
  }
  if (type != OptionValue::TypeName(value) || !OptionValue::FromText(defaultText, value)) return VEK_INVALID_PARAMETERS;
  return VEK_SUCCESS;
}

template <class T>
int ConfigurationDatabase::GetOptionRange(const std::string& key, T& minimum, T& maximum) {
  RecursiveLockGuard lock(Lock());
  std::string type, defaultText, minimumText, maximumText;
  int result = GetOptionInfo(key, type, defaultText, minimumText, maximumText);
  if (result != VEK_SUCCESS) return result;
  if (minimumText.empty() || maximumText.empty()) {
    FullRange(minimum, maximum);
    return VEK_SUCCESS;
  }
  if (type != OptionValue::TypeName(minimum) || !OptionValue::FromText(minimumText, minimum) ||
      !OptionValue::FromText(maximumText, maximum))
    return VEK_INVALID_PARAMETERS;
  return VEK_SUCCESS;
}

int ConfigurationDatabase::GetOptionAsString(const std::string& key, std::string& valueText) {
  RecursiveLockGuard lock(Lock());
  std::string line;
  int result = OptionFile::GetLastMatchingLine(OptionsFile, key, line);
  if (result != VEK_SUCCESS) return result;
  valueText.clear();
  return line.empty() ? VEK_SUCCESS : OptionFile::ParseOptionLine(line, valueText);
}

template <class T>
int ConfigurationDatabase::GetOption(const std::string& key, T& value) {
  RecursiveLockGuard lock(Lock());
  std::string valueText;
  bool missing = false;
  int result = ReadOptionText(*this, OptionsFile, key, value, valueText, missing);
  if (result != VEK_SUCCESS) return result;
  if (missing) return GetOptionDefault(key, value);
  if (valueText.empty()) {
    if (!std::is_same_v<T, std::string>) return VEK_FILE_NOT_FORMATTED_PROPERLY;
    Fallback(value);
    return VEK_SUCCESS;
  }
  return OptionValue::FromText(valueText, value) ? VEK_SUCCESS : VEK_INVALID_PARAMETERS;
}

template <class T>
int ConfigurationDatabase::GetOption(const std::string& key, std::vector<T>& values) {
  RecursiveLockGuard lock(Lock());
  std::string valueText;
  bool missing = false;
  int result = ReadOptionText(*this, OptionsFile, key, values, valueText, missing);
  if (result != VEK_SUCCESS) return result;
  if (missing) {
    values.clear();
    return VEK_SUCCESS;
  }
  if (valueText.empty()) {
    if (!std::is_same_v<T, std::string>) return VEK_FILE_NOT_FORMATTED_PROPERLY;
    values.clear();
    return VEK_SUCCESS;
  }
  return OptionValue::FromText(valueText, values) ? VEK_SUCCESS : VEK_INVALID_PARAMETERS;
}

template <class T>
int ConfigurationDatabase::SetOption(const std::string& key, const T& value, const std::string& file) {
  RecursiveLockGuard lock(Lock());
  std::string line = key + " = " + OptionValue::ToText(value);
  if (!IsValidKey(key) || !KeepsLineStructure(line)) return VEK_INVALID_PARAMETERS;
  int result = OptionFile::AddOrModifyOneLine(file, key, line + "\n");
  if (result != VEK_SUCCESS) return result;
  std::string infoLine;
  result = OptionFile::GetLastMatchingLine(InfoFile, key, infoLine);
  if (result != VEK_SUCCESS && result != VEK_FILE_NOT_FOUND) return result;
  if (infoLine.empty()) {
    result = OptionFile::AddOrModifyOneLine(
        InfoFile, key,
        key + "\t" + OptionValue::TypeName(value) + "\t" + std::to_string(OptionVisibilityNewOption) + "\n");
    if (result != VEK_SUCCESS) return result;
  }
  return LoadOptionsDatabase();
}

int ConfigurationDatabase::SetOptionAsString(const std::string& key, const std::string& type,
                                             const std::string& valueText, const std::string& file) {
  RecursiveLockGuard lock(Lock());
  auto setAs = [&](auto typed) -> int {
    if (!OptionValue::FromText(valueText, typed)) return VEK_INVALID_PARAMETERS;
    return SetOption(key, typed, file);
  };
  if (type == "Int") return setAs(int{});
  if (type == "Float") return setAs(float{});
  if (type == "Double") return setAs(double{});
  if (type == "Bool") return setAs(bool{});
  if (type == "String") return setAs(std::string{});
  if (type == "IntArray") return setAs(std::vector<int>{});
  if (type == "FloatArray") return setAs(std::vector<float>{});
  if (type == "BoolArray") return setAs(std::vector<bool>{});
  if (type == "StringArray") return setAs(std::vector<std::string>{});
  return VEK_INVALID_PARAMETERS;
}

int ConfigurationDatabase::GetOptionDefaultAsString(const std::string& key, std::string& valueText) {
  RecursiveLockGuard lock(Lock());
  std::string type, minimum, maximum;
  int result = GetOptionInfo(key, type, valueText, minimum, maximum);
  if (result != VEK_SUCCESS || (type != "Bool" && type != "BoolArray")) return result;
  std::string normalized;
  if (!OptionValue::NormalizeBoolText(valueText, normalized)) return VEK_INVALID_PARAMETERS;
  valueText = normalized;
  return VEK_SUCCESS;
}

int ConfigurationDatabase::GetOptionVisibility(const std::string& key, OptionVisibility& visibility) {
  RecursiveLockGuard lock(Lock());
  std::string type, defaultText, minimum, maximum;
  int parsed = 0;
  int result = GetOptionInfo(key, type, defaultText, minimum, maximum, &parsed);
  if (result == VEK_SUCCESS && !type.empty()) visibility = static_cast<OptionVisibility>(parsed);
  return result;
}

int ConfigurationDatabase::SetOptionVisibility(const std::string& infoFile, const std::string& key,
                                               const OptionVisibility& visibility) {
  RecursiveLockGuard lock(Lock());
  std::string line, name, type, defaultText, minimum, maximum;
  int oldVisibility = 0;
  int result = OptionFile::GetLastMatchingLine(infoFile, key, line);
  if (result != VEK_SUCCESS) return result;
  result = OptionFile::ParseOptionInfoLine(line, name, type, oldVisibility, defaultText, minimum, maximum);
  if (result != VEK_SUCCESS) return result;
  std::string rebuilt = name + "\t" + type + "\t" + std::to_string(static_cast<int>(visibility));
  for (const std::string* column : {&defaultText, &minimum, &maximum}) {
    if (column->empty()) break;
    rebuilt += "\t" + *column;
  }
  return OptionFile::AddOrModifyOneLine(infoFile, key, rebuilt + "\n");
}

int ConfigurationDatabase::WalkOptionList(std::vector<std::string>& names, std::vector<std::string>* values,
                                          bool visibleOnly) {
  RecursiveLockGuard lock(Lock());
  names.clear();
  if (values) values->clear();
  std::vector<std::string> lines;
  int result = OptionFile::GetFileLines(InfoFile, lines);
  if (result != VEK_SUCCESS) return result;
  int threshold = kDefaultVisibilityThreshold;
  if (GetOption("AdvancedOptionsVisibilityThreshold", threshold) != VEK_SUCCESS)
    threshold = kDefaultVisibilityThreshold;
  for (const std::string& line : lines) {
    std::vector<std::string> tokens;
    OptionFile::Tokenize(line, tokens);
    if (tokens.empty() || tokens[0][0] == '#') continue;
    if (visibleOnly) {
      std::string name, type, defaultText, minimum, maximum;
      int visibility = 0;
      if (OptionFile::ParseOptionInfoLine(line, name, type, visibility, defaultText, minimum, maximum) != VEK_SUCCESS ||
          visibility < threshold)
        continue;
    }
    names.push_back(tokens[0]);
    if (values) {
      std::string valueText;
      GetOptionAsString(tokens[0], valueText);
      values->push_back(valueText);
    }
  }
  return VEK_SUCCESS;
}

int ConfigurationDatabase::GetOptionList(std::vector<std::string>& names, bool visibleOnly) {
  return WalkOptionList(names, nullptr, visibleOnly);
}

int ConfigurationDatabase::GetOptionListWithValue(std::vector<std::string>& names, std::vector<std::string>& values,
                                                  bool visibleOnly) {
  return WalkOptionList(names, &values, visibleOnly);
}

int ConfigurationDatabase::DeleteOption(const std::string& key) {
  RecursiveLockGuard lock(Lock());
  if (!IsValidKey(key)) return VEK_INVALID_PARAMETERS;
  int result = OptionFile::AddOrModifyOneLine(OptionsFile, key, "");
  if (result != VEK_SUCCESS) return result;
  result = OptionFile::AddOrModifyOneLine(InfoFile, key, "");
  if (result != VEK_SUCCESS) return result;
  return LoadOptionsDatabase();
}

template <class T>
int ConfigurationDatabase::AddItemToOption(const std::string& key, const T& item) {
  RecursiveLockGuard lock(Lock());
  std::vector<T> values;
  if (GetOption(key, values) != VEK_SUCCESS) values.clear();
  values.push_back(item);
  return SetOption(key, values);
}

template <class T>
int ConfigurationDatabase::RemoveItemFromOption(const std::string& key, const T& item) {
  RecursiveLockGuard lock(Lock());
  std::vector<T> values;
  if (GetOption(key, values) != VEK_SUCCESS) values.clear();
  auto last = std::find(values.rbegin(), values.rend(), item);
  if (last != values.rend()) values.erase(std::next(last).base());
  return SetOption(key, values);
}

template <class T>
int ConfigurationDatabase::GetOptionItemIndex(const std::string& key, const T& item) {
  RecursiveLockGuard lock(Lock());
  std::vector<T> values;
  if (GetOption(key, values) != VEK_SUCCESS) return -1;
  auto first = std::find(values.begin(), values.end(), item);
  return first == values.end() ? -1 : static_cast<int>(first - values.begin());
}

#define VEK_CONFIGURATION_SCALAR(T)                                                                              \
  template VEK_EXPORT int ConfigurationDatabase::GetOption<T>(const std::string&, T&);                           \
  template VEK_EXPORT int ConfigurationDatabase::SetOption<T>(const std::string&, const T&, const std::string&); \
  template VEK_EXPORT int ConfigurationDatabase::GetOptionDefault<T>(const std::string&, T&);
VEK_CONFIGURATION_SCALAR(int)
VEK_CONFIGURATION_SCALAR(float)
VEK_CONFIGURATION_SCALAR(double)
VEK_CONFIGURATION_SCALAR(bool)
VEK_CONFIGURATION_SCALAR(std::string)
#undef VEK_CONFIGURATION_SCALAR
#define VEK_CONFIGURATION_LIST(T)                                                                                     \
  template VEK_EXPORT int ConfigurationDatabase::GetOption<T>(const std::string&, std::vector<T>&);                   \
  template VEK_EXPORT int ConfigurationDatabase::SetOption<std::vector<T>>(const std::string&, const std::vector<T>&, \
                                                                           const std::string&);
VEK_CONFIGURATION_LIST(int)
VEK_CONFIGURATION_LIST(float)
VEK_CONFIGURATION_LIST(bool)
VEK_CONFIGURATION_LIST(std::string)
#undef VEK_CONFIGURATION_LIST
#define VEK_CONFIGURATION_ITEMS(T)                                                                      \
  template VEK_EXPORT int ConfigurationDatabase::AddItemToOption<T>(const std::string&, const T&);      \
  template VEK_EXPORT int ConfigurationDatabase::RemoveItemFromOption<T>(const std::string&, const T&); \
  template VEK_EXPORT int ConfigurationDatabase::GetOptionItemIndex<T>(const std::string&, const T&);
VEK_CONFIGURATION_ITEMS(int)
VEK_CONFIGURATION_ITEMS(float)
VEK_CONFIGURATION_ITEMS(std::string)
#undef VEK_CONFIGURATION_ITEMS
template VEK_EXPORT int ConfigurationDatabase::GetOptionRange<int>(const std::string&, int&, int&);
template VEK_EXPORT int ConfigurationDatabase::GetOptionRange<float>(const std::string&, float&, float&);
template VEK_EXPORT int ConfigurationDatabase::GetOptionRange<double>(const std::string&, double&, double&);

}  // namespace vek
