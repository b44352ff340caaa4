#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "vekClassInitializer.h"
#include "vekConfigurationDatabase.h"
#include "vekCustomLanguageString.h"
#include "vekErrorHelper.h"
#include "vekTestSupport.h"
#include "vekTextConversion.h"

namespace vek {
namespace {

// Every test starts and ends in English with fresh tables, in a configuration directory of its
// own (test processes run side by side).
class LanguageTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ClassInitializer::Initialize(Base.Path().string().c_str());
    Reset();
  }
  void TearDown() override {
    ClassInitializer::Initialize(PreviousBase.c_str());
    Reset();
  }
  static void Reset() {
    ConfigurationDatabase::SetLanguage("en");
    ConfigurationDatabase::CleanUp();
  }
  static std::string PackFile() { return ConfigurationDatabase::GetConfigurationDirectory() + "LanguagePack.lang"; }
  std::string PreviousBase = ClassInitializer::GetInstance()->GetBaseDirectoryName();
  test::TempDirectory Base;

  static LanguageTables::Table BuiltInPack(int languageId) {
    std::stringstream stream;
    EXPECT_EQ(ConfigurationDatabase::OpenLanguagePackFromResource(languageId, stream, "vekCommon"), VEK_SUCCESS);
    LanguageTables::Table table;
    ConfigurationDatabase::LoadLanguagePackFromStream(stream, table, L"");
    return table;
  }
};

TEST_F(LanguageTest, SetLanguageSwitchesTheTexts) {
  EXPECT_EQ(ConfigurationDatabase::GetText("VEK_FILE_NOT_FOUND"), L"File Not Found");
  ConfigurationDatabase::SetLanguage("de");
  EXPECT_EQ(ConfigurationDatabase::GetPrimaryLanguageID(), 7);
  EXPECT_EQ(ConfigurationDatabase::GetTwoLetterLanguageCode(), "de");
  EXPECT_EQ(ConfigurationDatabase::GetText("VEK_FILE_NOT_FOUND"), L"Datei nicht gefunden");
  std::wstring english;
  EXPECT_EQ(ConfigurationDatabase::GetDefaultText("VEK_FILE_NOT_FOUND", english), VEK_SUCCESS);
  EXPECT_EQ(english, L"File Not Found");
  ConfigurationDatabase::SetLanguage("xx");  // unknown codes keep the language in force
  EXPECT_EQ(ConfigurationDatabase::GetTwoLetterLanguageCode(), "de");
  ConfigurationDatabase::SetLanguage("JA");
  EXPECT_EQ(ConfigurationDatabase::GetPrimaryLanguageID(), 17);
  EXPECT_EQ(ConfigurationDatabase::GetText("VEK_FILE_NOT_FOUND"), Utf8ToWide("ファイルが見つかりません"));
  ConfigurationDatabase::SetLanguage("FR");
  EXPECT_EQ(ConfigurationDatabase::GetText("VEK_SUCCESS"), L"Tout est correct");
  std::wstring missing = L"untouched";
  EXPECT_EQ(ConfigurationDatabase::GetText("NO_SUCH_KEY", missing), VEK_FAILURE);
  EXPECT_EQ(missing, L"");
}

TEST_F(LanguageTest, EnglishPackHoldsEveryDefaultMessage) {
  LanguageTables::Table english = BuiltInPack(9);
  for (int code = 0; code <= 0x7FFF; ++code) {
    std::string name = ErrorHelper::GetErrorName(code);
    if (name.empty()) continue;
    std::string message = ErrorHelper::GetErrorMessageWithNoExtras(code);
    // A pack text cannot start with a blank, so one message loses its leading blank there.
    if (message[0] == ' ') message.erase(0, 1);
    ASSERT_EQ(english.count(name), 1u) << name;
    EXPECT_EQ(WideToUtf8(english[name]), message) << name;
  }
}

TEST_F(LanguageTest, EveryPackHasTheSameKeys) {
  LanguageTables::Table english = BuiltInPack(9);
  for (int id : {7, 12, 17}) {
    LanguageTables::Table translated = BuiltInPack(id);
    EXPECT_EQ(translated.size(), english.size()) << id;
    for (const auto& [key, text] : english) {
      ASSERT_EQ(translated.count(key), 1u) << key << " in " << id;
      EXPECT_NE(translated[key], L"") << key;
      for (const wchar_t* placeholder : {L"{0}", L"{1}"})
        EXPECT_EQ(text.find(placeholder) == std::wstring::npos, translated[key].find(placeholder) == std::wstring::npos)
            << key << " in " << id;
    }
  }
  EXPECT_NE(BuiltInPack(7)["VEK_FILE_NOT_FOUND"], english["VEK_FILE_NOT_FOUND"]);
}

TEST_F(LanguageTest, UnknownLanguageFallsBackToTheEnglishPack) {
  std::stringstream stream;
  EXPECT_EQ(ConfigurationDatabase::OpenLanguagePackFromResource(25, stream, "vekCommon"), VEK_SUCCESS);
  EXPECT_NE(stream.str().find("VEK_SUCCESS = All is Good"), std::string::npos);
  std::stringstream none;
  EXPECT_NE(ConfigurationDatabase::OpenLanguagePackFromResource(9, none, "KORProductConfiguration.dll"), VEK_SUCCESS);
}

TEST_F(LanguageTest, ReplacementPackFileWinsAndMissingKeysFallBack) {
  test::WriteFile(PackFile(), "\xEF\xBB\xBFVEK_SUCCESS = Alles gut\nCAMERA_OF = Kamera {1}/{0}\n");
  ConfigurationDatabase::CleanUp();
  EXPECT_EQ(ConfigurationDatabase::GetText("VEK_SUCCESS"), L"Alles gut");
  EXPECT_EQ(ConfigurationDatabase::GetText("VEK_FILE_NOT_FOUND"), L"File Not Found");
  CustomLanguageString message("CAMERA_OF");
  message << 2 << 5;
  EXPECT_EQ(message.GetOutput(), L"Kamera 5/2");
  EXPECT_EQ(message.GetDefaultOutput(), L"");  // no English text for that key

  // Such a message still reaches the user: the record keeps the translation, though the empty
  // English text leaves the record in place.
  int earlier = ErrorHelper::ErrorWithCustomMessage(VEK_FAILURE, std::string("earlier"));
  int code = ErrorHelper::ErrorWithCustomMessage(VEK_FILE_NOT_FOUND, message);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(earlier), "earlier");
  EXPECT_EQ(ErrorHelper::DoesErrorHaveIntlCustomMessage(code), 1);
  EXPECT_EQ(ErrorHelper::GetErrorMessageIntlWithNoExtras(code), L"Kamera 5/2");
}

TEST_F(LanguageTest, CustomStringFillsPlaceholdersInBothLanguages) {
  ConfigurationDatabase::SetLanguage("de");
  CustomLanguageString message("VEK_FILE_NOT_FOUND_CUSTOM");
  message << "lens.txt" << 3.5;  // the second value has no placeholder in either text
  EXPECT_EQ(message.GetOutput(), L"Datei nicht gefunden: lens.txt");
  EXPECT_EQ(message.GetDefaultOutput(), L"File Not Found: lens.txt");
  CustomLanguageString appended("VEK_FILE_NOT_FOUND_CUSTOM");
  appended << true;
  appended.AppendDefaultErrorMessage(VEK_INVALID_PARAMETERS | 0x8000);
  EXPECT_EQ(appended.GetDefaultOutput(), L"File Not Found: 1 Invalid parameter.");
}

TEST_F(LanguageTest, StreamLoaderRules) {
  std::istringstream pack(
      "# comment = ignored\n"
      "TWO = \n"
      "ONLY\n"
      "A = first\n"
      "A = second line\\nthird\r\n"
      "B\t:=\t  spaced  text \n"
      "C = last without line end");
  LanguageTables::Table table;
  EXPECT_EQ(ConfigurationDatabase::LoadLanguagePackFromStream(pack, table, L"!"), VEK_SUCCESS);
  EXPECT_EQ(table.size(), 3u);
  EXPECT_EQ(table["A"], L"second line\nthird!");
  EXPECT_EQ(table["B"], L"spaced  text !");
  EXPECT_EQ(table["C"], L"last without line end!");
}

TEST_F(LanguageTest, FormatLanguageStringReplacesOnePlaceholder) {
  std::wstring text = L"{1} of {2}";
  EXPECT_EQ(ConfigurationDatabase::FormatLanguageString(text, 2, L"%d", 7), L"{1} of 7");
  EXPECT_EQ(text, L"{1} of 7");
  EXPECT_EQ(ConfigurationDatabase::FormatLanguageString(text, 5, L"%d", 7), L"{1} of 7");
  std::wstring twice = L"{0}+{0}";
  EXPECT_EQ(ConfigurationDatabase::FormatLanguageString(twice, 0, L"%.2f", 1.5), L"1.50+{0}");
  std::wstring multiline = L"one\\ntwo\\n";
  ConfigurationDatabase::HandleMultilineDescription(multiline);
  EXPECT_EQ(multiline, L"one\ntwo\n");
}

TEST(TextConversion, RoundTripsBeyondTheBasicPlane) {
  std::string utf8 = "A\xC3\xA9\xE2\x80\x9D\xF0\x9F\x98\x80";
  std::wstring wide = Utf8ToWide(utf8);
  EXPECT_EQ(wide.size(), sizeof(wchar_t) == 2 ? 5u : 4u);
  EXPECT_EQ(WideToUtf8(wide), utf8);
  EXPECT_EQ(Utf8ToWide("\xFF"), std::wstring(1, static_cast<wchar_t>(0xFFFD)));
}

}  // namespace
}  // namespace vek
