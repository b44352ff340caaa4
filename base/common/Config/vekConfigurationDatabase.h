#pragma once
#include <sstream>
#include <string>

#include "vekLanguageTables.h"
#include "vekObject.h"

namespace vek {

/// The option store of the calibration suite, and the public face of the language tables and of
/// the directory service. Each client makes its own instance; instances share only the files,
/// the configuration lock and the language tables.
class VEK_EXPORT ConfigurationDatabase : public Object {
 public:
  static constexpr int kNoCalibrationGroup = -1;

  static ConfigurationDatabase* New();
  const char* GetClassName() const override { return "ConfigurationDatabase"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  virtual const int& GetCalibrationGroupId() const { return CalibrationGroupId; }
  void SetCalibrationGroupId(const int& id) { CalibrationGroupId = id; }

  /// The configuration directory of the directory service, ending in a separator.
  static std::string GetConfigurationDirectory();

  // Language tables (see LanguageTables for the rules).
  static void SetLanguage(const std::string& code) { LanguageTables::SetLanguage(code); }
  static std::string GetTwoLetterLanguageCode() { return LanguageTables::GetTwoLetterLanguageCode(); }
  static int GetPrimaryLanguageID() { return LanguageTables::GetPrimaryLanguageID(); }
  static int GetText(const std::string& key, std::wstring& text) { return LanguageTables::GetText(key, text); }
  static std::wstring GetText(const std::string& key) { return LanguageTables::GetText(key); }
  static int GetDefaultText(const std::string& key, std::wstring& text) {
    return LanguageTables::GetDefaultText(key, text);
  }
  static int LoadLanguagePack(LanguageTables::Table& table, const std::string& moduleName) {
    return LanguageTables::LoadLanguagePack(table, moduleName);
  }
  static int LoadDefaultLanguagePack(LanguageTables::Table& table) {
    return LanguageTables::LoadDefaultLanguagePack(table);
  }
  static int LoadLanguagePackFromFile(const std::string& path, LanguageTables::Table& table) {
    return LanguageTables::LoadLanguagePackFromFile(path, table);
  }
  static int OpenLanguagePackFromResource(int languageId, std::stringstream& stream, const std::string& moduleName) {
    return LanguageTables::OpenLanguagePackFromResource(languageId, stream, moduleName);
  }
  static int LoadLanguagePackFromStream(std::istream& stream, LanguageTables::Table& table,
                                        const std::wstring& suffix) {
    return LanguageTables::LoadLanguagePackFromStream(stream, table, suffix);
  }
  static void HandleMultilineDescription(std::wstring& text) { LanguageTables::HandleMultilineDescription(text); }
  template <class T>
  static std::wstring FormatLanguageString(std::wstring& text, int index, const wchar_t* format, const T& value) {
    return LanguageTables::FormatLanguageString(text, index, format, value);
  }
  /// Frees the process-wide language tables (at shutdown).
  static void CleanUp() { LanguageTables::CleanUp(); }

 protected:
  ConfigurationDatabase() = default;
  ~ConfigurationDatabase() override = default;

 private:
  int CalibrationGroupId = kNoCalibrationGroup;
};

}  // namespace vek
