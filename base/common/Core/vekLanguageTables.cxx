#include "vekLanguageTables.h"

#include <cwchar>
#include <filesystem>
#include <fstream>

#include "vekClassInitializer.h"
#include "vekErrorCodes.h"
#include "vekPlatform.h"
#include "vekProductModule.h"
#include "vekRecursiveLock.h"
#include "vekTextConversion.h"

namespace vek {

LanguageTables::Table* LanguageTables::m_StringTable = nullptr;
LanguageTables::Table* LanguageTables::m_DefaultStringTable = nullptr;
int LanguageTables::m_LanguageOverride = 0;
const char* const LanguageTables::kLibraryModule = "vekCommon";
const char* const LanguageTables::kProductModule = "KORProductConfiguration.dll";

namespace {

constexpr char kDelimiters[] = "\n\t\r\f\a ";
constexpr char kResourceType[] = "LANGUAGE_PACK";
constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
constexpr std::size_t kFormattedLength = 50;

struct LanguageCode {
  const char* lower;
  const char* upper;
  int id;
};
constexpr LanguageCode kLanguages[] = {{"en", "EN", LanguageTables::kEnglish},
                                       {"de", "DE", LanguageTables::kGerman},
                                       {"fr", "FR", LanguageTables::kFrench},
                                       {"ja", "JA", LanguageTables::kJapanese}};

RecursiveLock& Lock() { return RecursiveLock::ConfigurationLock(); }

std::string LanguagePackFile() {
  ClassInitializer* settings = ClassInitializer::GetInstance();
  return settings ? settings->GetConfigDirectoryName() + "LanguagePack.lang" : std::string();
}

int Lookup(const LanguageTables::Table* table, const std::string& key, std::wstring& text) {
  auto found = table ? table->find(key) : LanguageTables::Table::const_iterator();
  if (!table || found == table->end()) return VEK_FAILURE;
  text = found->second;
  return VEK_SUCCESS;
}

}  // namespace

void LanguageTables::SetLanguage(const std::string& code) {
  RecursiveLockGuard lock(Lock());
  for (const auto& language : kLanguages) {
    if (code == language.lower || code == language.upper) {
      m_LanguageOverride = language.id;
      delete m_StringTable;
      m_StringTable = nullptr;
      return;
    }
  }
}

std::string LanguageTables::GetTwoLetterLanguageCode() {
  int id = GetPrimaryLanguageID();
  for (const auto& language : kLanguages)
    if (language.id == id) return language.lower;
  return "en";
}

int LanguageTables::GetPrimaryLanguageID() {
  RecursiveLockGuard lock(Lock());
  return m_LanguageOverride != 0 ? m_LanguageOverride : platform::PrimaryLanguageId();
}

int LanguageTables::GetText(const std::string& key, std::wstring& text) {
  RecursiveLockGuard lock(Lock());
  text.clear();
  // Before the tables are built: a module found now discards them.
  ProductModule::LoadBesideLibrary();
  if (!m_DefaultStringTable) {
    m_DefaultStringTable = new Table;
    LoadDefaultLanguagePack(*m_DefaultStringTable);
  }
  if (!m_StringTable) {
    m_StringTable = new Table;
    std::string packFile = LanguagePackFile();
    std::error_code error;
    if (!packFile.empty() && std::filesystem::exists(packFile, error)) {
      if (LoadLanguagePackFromFile(packFile, *m_StringTable) != VEK_SUCCESS)
        LoadLanguagePack(*m_StringTable, kLibraryModule);
    } else {
      LoadLanguagePack(*m_StringTable, kLibraryModule);
    }
    Table product;
    LoadLanguagePack(product, kProductModule);
    for (auto& [productKey, productText] : product) (*m_StringTable)[productKey] = productText;
  }
  if (Lookup(m_StringTable, key, text) == VEK_SUCCESS) return VEK_SUCCESS;
  return Lookup(m_DefaultStringTable, key, text);
}

std::wstring LanguageTables::GetText(const std::string& key) {
  std::wstring text;
  GetText(key, text);
  return text;
}

int LanguageTables::GetDefaultText(const std::string& key, std::wstring& text) {
  RecursiveLockGuard lock(Lock());
  text.clear();
  if (!m_DefaultStringTable) {
    m_DefaultStringTable = new Table;
    LoadDefaultLanguagePack(*m_DefaultStringTable);
  }
  return Lookup(m_DefaultStringTable, key, text);
}

std::wstring LanguageTables::GetDefaultText(const std::string& key) {
  std::wstring text;
  GetDefaultText(key, text);
  return text;
}

int LanguageTables::LoadLanguagePack(Table& table, const std::string& moduleName) {
  RecursiveLockGuard lock(Lock());
  std::stringstream stream;
  int result = OpenLanguagePackFromResource(GetPrimaryLanguageID(), stream, moduleName);
  if (result != VEK_SUCCESS) return result;
  return LoadLanguagePackFromStream(stream, table, L"");
}

int LanguageTables::LoadDefaultLanguagePack(Table& table) {
  RecursiveLockGuard lock(Lock());
  std::stringstream stream;
  int result = OpenLanguagePackFromResource(kEnglish, stream, kLibraryModule);
  if (result != VEK_SUCCESS) return result;
  return LoadLanguagePackFromStream(stream, table, L"");
}

int LanguageTables::LoadLanguagePackFromFile(const std::string& path, Table& table) {
  RecursiveLockGuard lock(Lock());
  std::ifstream in(path, std::ios::binary);
  if (!in) return VEK_FILE_NOT_FOUND;
  std::stringstream content;
  content << in.rdbuf();
  std::string bytes = content.str();
  if (bytes.compare(0, 3, kByteOrderMark) == 0) bytes.erase(0, 3);
  std::istringstream stream(bytes);
  return LoadLanguagePackFromStream(stream, table, L"");
}

int LanguageTables::OpenLanguagePackFromResource(int languageId, std::stringstream& stream,
                                                 const std::string& moduleName) {
  RecursiveLockGuard lock(Lock());
  std::string bytes;
  if (!platform::ModuleResource(moduleName, kResourceType, languageId, bytes) &&
      !platform::ModuleResource(moduleName, kResourceType, kEnglish, bytes))
    return VEK_FAILURE;
  if (bytes.compare(0, 3, kByteOrderMark) == 0) bytes.erase(0, 3);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return VEK_SUCCESS;
}

int LanguageTables::LoadLanguagePackFromStream(std::istream& stream, Table& table, const std::wstring& suffix) {
  RecursiveLockGuard lock(Lock());
  std::string line;
  // Unlike the option files, a last line without a line end counts too.
  while (std::getline(stream, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::size_t keyStart = line.find_first_not_of(kDelimiters);
    if (keyStart == std::string::npos || line[keyStart] == '#') continue;
    std::size_t keyEnd = line.find_first_of(kDelimiters, keyStart);
    std::size_t separatorStart = line.find_first_not_of(kDelimiters, keyEnd);
    std::size_t separatorEnd = line.find_first_of(kDelimiters, separatorStart);
    std::size_t textStart = line.find_first_not_of(kDelimiters, separatorEnd);
    if (textStart == std::string::npos) continue;
    std::wstring text = Utf8ToWide(line.substr(textStart));
    HandleMultilineDescription(text);
    table[line.substr(keyStart, keyEnd - keyStart)] = text + suffix;
  }
  return VEK_SUCCESS;
}

void LanguageTables::HandleMultilineDescription(std::wstring& text) {
  for (std::size_t at = text.find(L"\\n"); at != std::wstring::npos; at = text.find(L"\\n", at + 1))
    text.replace(at, 2, L"\n");
}

template <class T>
std::wstring LanguageTables::FormatLanguageString(std::wstring& text, int index, const wchar_t* format,
                                                  const T& value) {
  std::wstring placeholder = L"{" + std::to_wstring(index) + L"}";
  std::size_t at = text.find(placeholder);
  if (at == std::wstring::npos) return text;
  wchar_t formatted[kFormattedLength + 1] = {};
  std::swprintf(formatted, kFormattedLength + 1, format, value);
  text.replace(at, placeholder.size(), formatted);
  return text;
}

template VEK_EXPORT std::wstring LanguageTables::FormatLanguageString<int>(std::wstring&, int, const wchar_t*,
                                                                           const int&);
template VEK_EXPORT std::wstring LanguageTables::FormatLanguageString<float>(std::wstring&, int, const wchar_t*,
                                                                             const float&);
template VEK_EXPORT std::wstring LanguageTables::FormatLanguageString<double>(std::wstring&, int, const wchar_t*,
                                                                              const double&);

void LanguageTables::CleanUp() {
  RecursiveLockGuard lock(Lock());
  delete m_StringTable;
  delete m_DefaultStringTable;
  m_StringTable = nullptr;
  m_DefaultStringTable = nullptr;
}

}  // namespace vek
