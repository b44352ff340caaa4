#pragma once
#include <istream>
#include <map>
#include <sstream>
#include <string>

#include "vekCommonExport.h"

namespace vek {

/// The language-string tables: every user-visible text of the library, looked up by key in the
/// language in force, falling back to English. Texts come from language packs (UTF-8 lines
/// "KEY = text", a backslash followed by n meaning a line break) held as "LANGUAGE_PACK" resources
/// of a module under the Windows primary language identifier (9 English, 7 German, 12 French,
/// 17 Japanese), or from the file LanguagePack.lang in the configuration directory, which replaces
/// the built-in pack. The product module "KORProductConfiguration.dll" (ProductModule, looked for
/// beside the library) may add or replace texts; when it is absent nothing is added.
/// ConfigurationDatabase offers all of this as its statics.
/// Every member runs under the configuration lock.
class VEK_EXPORT LanguageTables {
 public:
  using Table = std::map<std::string, std::wstring>;
  static constexpr int kEnglish = 9;
  static constexpr int kGerman = 7;
  static constexpr int kFrench = 12;
  static constexpr int kJapanese = 17;

  /// "en"/"EN", "de"/"DE", "fr"/"FR", "ja"/"JA" select a language for the whole process and make
  /// the next look-up reload the current table. Any other code keeps the language in force.
  static void SetLanguage(const std::string& code);
  /// "en", "de", "fr" or "ja" for the language in force; "en" for every other language, whose
  /// texts come from the English table.
  static std::string GetTwoLetterLanguageCode();
  /// The chosen language, or else the user's language from the operating system.
  static int GetPrimaryLanguageID();

  /// The text of `key` in the language in force, else in English. Returns VEK_SUCCESS, or
  /// VEK_FAILURE with an empty text when neither table has the key.
  static int GetText(const std::string& key, std::wstring& text);
  static std::wstring GetText(const std::string& key);
  /// The English text of `key` (VEK_FAILURE and empty when missing).
  static int GetDefaultText(const std::string& key, std::wstring& text);
  static std::wstring GetDefaultText(const std::string& key);

  /// Loads the pack of the language in force from a module (falling back to its English pack).
  static int LoadLanguagePack(Table& table, const std::string& moduleName);
  /// Loads this library's English pack.
  static int LoadDefaultLanguagePack(Table& table);
  /// VEK_FILE_NOT_FOUND when the file cannot be opened.
  static int LoadLanguagePackFromFile(const std::string& path, Table& table);
  /// Puts the bytes of a module's pack (languageId, else 9) into `stream`, without a UTF-8
  /// byte-order mark. VEK_FAILURE when the module is not loaded or has neither pack.
  static int OpenLanguagePackFromResource(int languageId, std::stringstream& stream, const std::string& moduleName);
  /// Adds every "KEY = text" line of the stream to the table, appending `suffix` to each text.
  static int LoadLanguagePackFromStream(std::istream& stream, Table& table, const std::wstring& suffix);
  /// Turns every backslash + "n" into a line break.
  static void HandleMultilineDescription(std::wstring& text);
  /// Replaces the first "{index}" in `text` by `value` printed with `format` (at most 50 wide
  /// characters); returns the new text. `text` is unchanged when it has no such placeholder.
  template <class T>
  static std::wstring FormatLanguageString(std::wstring& text, int index, const wchar_t* format, const T& value);

  /// Frees both tables; the next look-up loads them again.
  static void CleanUp();

  /// The module whose resources hold this library's packs.
  static const char* const kLibraryModule;
  /// The optional product module whose packs add to the library's.
  static const char* const kProductModule;

 private:
  static Table* m_StringTable;
  static Table* m_DefaultStringTable;
  static int m_LanguageOverride;  // 0 = follow the operating system
};

extern template VEK_EXPORT std::wstring LanguageTables::FormatLanguageString<int>(std::wstring&, int, const wchar_t*,
                                                                                  const int&);
extern template VEK_EXPORT std::wstring LanguageTables::FormatLanguageString<float>(std::wstring&, int, const wchar_t*,
                                                                                    const float&);
extern template VEK_EXPORT std::wstring LanguageTables::FormatLanguageString<double>(std::wstring&, int, const wchar_t*,
                                                                                     const double&);

}  // namespace vek
