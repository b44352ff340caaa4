#include "vekClassInitializer.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <type_traits>

#include "vekOutputFile.h"
#include "vekOutputMessages.h"
#include "vekRecursiveLock.h"
#include "vekSaturatedInt.h"

namespace vek {

ClassInitializer* ClassInitializer::m_InitData = nullptr;

namespace {

constexpr char kSeparators[] = " \t\r\n";
constexpr std::size_t kValueWord = 2;

std::vector<std::string> SplitWords(const std::string& text) {
  std::vector<std::string> words;
  std::size_t start = text.find_first_not_of(kSeparators);
  while (start != std::string::npos) {
    std::size_t end = text.find_first_of(kSeparators, start);
    words.push_back(text.substr(start, end - start));
    start = end == std::string::npos ? end : text.find_first_not_of(kSeparators, end);
  }
  return words;
}

bool EqualsIgnoringCase(const std::string& a, const char* b) {
  std::size_t n = std::strlen(b);
  if (a.size() != n) return false;
  for (std::size_t i = 0; i < n; ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
  return true;
}

void Convert(const std::string& text, double& value) { value = std::atof(text.c_str()); }
void Convert(const std::string& text, float& value) { value = static_cast<float>(std::atof(text.c_str())); }
void Convert(const std::string& text, int& value) { value = SaturatedAtoi(text.c_str()); }
void Convert(const std::string& text, bool& value) { value = SaturatedAtoi(text.c_str()) != 0; }
void Convert(const std::string& text, std::string& value) { value = text; }

template <class T>
bool IsNotANumber(const T& value) {
  if constexpr (std::is_floating_point_v<T>)
    return std::isnan(value);
  else
    return false;
}

template <class T>
void ReportGet(const char* name, const T& value) {
  std::ostringstream report;
  report << LocationPrefix("Message:", __FILE__, __LINE__) << name << ":" << value << "\n";
  OutputFile::Error(report.str().c_str());
}

template <class T>
void ReportGet(const char* name, const std::vector<T>& values) {
  std::ostringstream joined;
  for (std::size_t i = 0; i < values.size(); ++i) joined << (i ? " " : "") << values[i];
  ReportGet(name, joined.str());
}

char* NewCopy(const std::string& text) {
  char* copy = new char[text.size() + 1];
  std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

}  // namespace

ClassInitializer* ClassInitializer::New() {
  auto* instance = new ClassInitializer;
  Initialize(instance, nullptr);
  return instance;
}

ClassInitializer* ClassInitializer::GetInstance() { return m_InitData; }

void ClassInitializer::Initialize(const char* baseDirectory) {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  if (!m_InitData) m_InitData = New();
  Initialize(m_InitData, baseDirectory);
}

void ClassInitializer::Initialize(ClassInitializer* instance, const char* baseDirectory) {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  if (!instance) return;
  if (!instance->Lines.empty()) {
    if (!baseDirectory) return;
    instance->Reset();
  }
  instance->InitDirectoriesAndFiles(baseDirectory);
  const std::string& config = instance->GetConfigDirectoryName();
  instance->ParseInputFile((config + "Initialization").c_str());
  instance->ParseInputFile((instance->GetInformationDirectoryName() + "Initialization").c_str());
  instance->ParseInputFile((config + "AdvancedOptions").c_str());
  instance->ParseInputFile((config + "AdvancedOptionsOverride").c_str());
  instance->ParseInputFile((config + "ServiceAdvancedOptions").c_str());
}

void ClassInitializer::ReInitialize(const char* fileName) {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  if (!m_InitData) return;
  m_InitData->Reset();
  m_InitData->ParseInputFile(fileName);
}

void ClassInitializer::ConcatenatedInitialize(const char* fileName) {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  if (m_InitData) m_InitData->ParseInputFile(fileName);
}

void ClassInitializer::CleanUp() {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  if (m_InitData) m_InitData->Release();
  m_InitData = nullptr;
}

void ClassInitializer::Reset() { Lines.clear(); }

void ClassInitializer::ParseInputFile(const char* fileName) { ParseFileToTokenLines(fileName, Lines); }

int ClassInitializer::ParseFileToTokenLines(const char* fileName, std::vector<TokenLine>& lines) {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  std::error_code error;
  if (!fileName || !std::filesystem::is_regular_file(fileName, error)) return 0;
  std::ifstream in(fileName, std::ios::binary);
  if (!in) return 0;
  std::string line;
  while (std::getline(in, line)) {
    TokenLine words = SplitWords(line);
    if (words.size() == 3 && words[0][0] != '#' && words[1][0] == '=') lines.push_back(std::move(words));
  }
  return 1;
}

const std::string* ClassInitializer::FindValue(const char* name) const {
  const std::string* value = nullptr;
  for (const TokenLine& line : Lines)
    if (EqualsIgnoringCase(line[0], name)) value = &line[kValueWord];
  return value;
}

template <class T>
int ClassInitializer::GetScalar(const char* name, T& value, const T& defaultValue, const T* minValue,
                                const T* maxValue) {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  const std::string* text = m_InitData ? m_InitData->FindValue(name) : nullptr;
  if (text)
    Convert(*text, value);
  // "nan" converts, but no comparison can hold it to the range: it takes the default instead.
  if (!text || IsNotANumber(value)) value = defaultValue;
  if (maxValue && value > *maxValue) value = *maxValue;
  if (minValue && *minValue > value) value = *minValue;
  if (m_InitData && m_InitData->ReportGets) ReportGet(name, value);
  return text ? 1 : 0;
}

template <class T>
bool ClassInitializer::GetVector(const char* name, std::vector<T>& values) {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  values.clear();
  const std::string* text = m_InitData ? m_InitData->FindValue(name) : nullptr;
  if (text) {
    for (const std::string& word : SplitWords(*text)) {
      T element{};
      Convert(word, element);
      values.push_back(element);
    }
  }
  if (m_InitData && m_InitData->ReportGets) ReportGet(name, values);
  return text != nullptr;
}

int ClassInitializer::Get(const char* name, double& value, const double& defaultValue, const double& minValue,
                          const double& maxValue) {
  return GetScalar(name, value, defaultValue, &minValue, &maxValue);
}

int ClassInitializer::Get(const char* name, float& value, const float& defaultValue, const float& minValue,
                          const float& maxValue) {
  return GetScalar(name, value, defaultValue, &minValue, &maxValue);
}

int ClassInitializer::Get(const char* name, int& value, const int& defaultValue, const int& minValue,
                          const int& maxValue) {
  return GetScalar(name, value, defaultValue, &minValue, &maxValue);
}

int ClassInitializer::Get(const char* name, bool& value, const bool& defaultValue, const bool&, const bool&) {
  return GetScalar<bool>(name, value, defaultValue, nullptr, nullptr);
}

int ClassInitializer::Get(const char* name, std::string& value, const char* defaultValue) {
  return GetScalar<std::string>(name, value, defaultValue ? defaultValue : "", nullptr, nullptr);
}

int ClassInitializer::Get(const char* name, char*& value, const char* defaultValue) {
  std::string text;
  int found = Get(name, text, defaultValue);
  value = NewCopy(text);
  return found;
}

bool ClassInitializer::Get(const char* name, std::vector<std::string>& values) { return GetVector(name, values); }
bool ClassInitializer::Get(const char* name, std::vector<int>& values) { return GetVector(name, values); }
bool ClassInitializer::Get(const char* name, std::vector<float>& values) { return GetVector(name, values); }

int ClassInitializer::DeprecatedGet(const char* name, char**& values, int& count) {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  values = nullptr;
  count = 0;
  std::vector<std::string> words;
  if (!Get(name, words)) return 0;
  count = static_cast<int>(words.size());
  values = new char*[words.size() > 0 ? words.size() : 1];
  for (std::size_t i = 0; i < words.size(); ++i) values[i] = NewCopy(words[i]);
  return 1;
}

void ClassInitializer::GetReportGets() {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  if (!m_InitData) return;
  bool report = false;
  m_InitData->ReportGets = false;
  Get("ReportGets", report, false, false, true);
  m_InitData->ReportGets = report;
}

void ClassInitializer::PrintMe(std::ostream& os) {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  if (m_InitData) m_InitData->Print(os);
}

int ClassInitializer::GetNumberOfLines() {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  return m_InitData ? static_cast<int>(m_InitData->Lines.size()) : 0;
}

void ClassInitializer::SetCalibrationGroupId(int id) {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  if (m_InitData) m_InitData->CalibrationGroupId = id;
}

int ClassInitializer::GetCalibrationGroupId() {
  RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
  return m_InitData ? m_InitData->CalibrationGroupId : -1;
}

void ClassInitializer::PrintSelf(std::ostream& os, Indent indent) const {
  DirectoryInitializer::PrintSelf(os, indent);
  os << indent << "Num Lines " << Lines.size() << "\n";
  for (const TokenLine& line : Lines) {
    os << indent;
    for (const std::string& word : line) os << word << "--";
    os << "\n";
  }
}

ClassInitializerCleanup::ClassInitializerCleanup() {
  {
    RecursiveLockGuard lock(RecursiveLock::ClassInitializerLock());
    if (!ClassInitializer::m_InitData) ClassInitializer::m_InitData = ClassInitializer::New();
  }
  ClassInitializer::GetReportGets();
}

ClassInitializerCleanup::~ClassInitializerCleanup() { ClassInitializer::CleanUp(); }

namespace {
const ClassInitializerCleanup g_classInitializerCleanup;
}  // namespace

}  // namespace vek
