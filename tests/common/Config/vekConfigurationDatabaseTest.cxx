#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <filesystem>
#include <regex>

#include "vekClassInitializer.h"
#include "vekConfigurationDatabase.h"
#include "vekErrorCodes.h"
#include "vekOptionFile.h"
#include "vekPlatform.h"
#include "vekSmartPointer.h"
#include "vekStoreTestFixture.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

class OptionStoreTest : public test::StoreTest {
 protected:
  void WriteOptions(const std::string& text) { test::WriteFile(Store->GetOptionsFileName(), text); }
  void WriteInfo(const std::string& text) { test::WriteFile(Store->GetOptionInfoFileName(), text); }
  std::string Options() const { return test::ReadFile(Store->GetOptionsFileName()); }
  std::string Info() const { return test::ReadFile(Store->GetOptionInfoFileName()); }
};

TEST_F(OptionStoreTest, LoadCreatesAnEmptyOptionsFileAndSaysSo) {
  std::filesystem::remove(Store->GetOptionsFileName());
  test::LogCapture log;
  ASSERT_EQ(Store->LoadOptionsDatabase(), VEK_SUCCESS);
  EXPECT_EQ(Options(), "");
  EXPECT_EQ(log.Text(),
            "Message:vekConfigurationDatabase, 303: Creating empty " + Store->GetOptionsFileName() + " file.\n");
  EXPECT_EQ(Store->GetOptionsFileName(), ConfigurationDatabase::GetConfigurationDirectory() + "KOROptions.txt");
}

TEST_F(OptionStoreTest, ReadsTheLastLineAndFallsBackToDefaults) {
  WriteOptions("Gain = 1\n# Gain = 7\nGain = 2\nTail = 9");  // the unterminated last line is not read
  int gain = 0;
  EXPECT_EQ(Store->GetOption("Gain", gain), VEK_SUCCESS);
  EXPECT_EQ(gain, 2);
  int tail = -1;
  EXPECT_EQ(Store->GetOption("Tail", tail), VEK_SUCCESS);
  EXPECT_EQ(tail, 0);
  WriteInfo("Tail\tInt\t2\t5\n");
  EXPECT_EQ(Store->GetOption("Tail", tail), VEK_SUCCESS);
  EXPECT_EQ(tail, 5);
  std::vector<int> none{1};
  EXPECT_EQ(Store->GetOption("Nothing", none), VEK_SUCCESS);
  EXPECT_TRUE(none.empty());
}

TEST_F(OptionStoreTest, StringValuesKeepInnerAndTrailingBlanks) {
  WriteOptions("Name = two words \nOne = single \nEmpty =\nBare\n");
  std::string text;
  EXPECT_EQ(Store->GetOption("Name", text), VEK_SUCCESS);
  EXPECT_EQ(text, "two words ");
  EXPECT_EQ(Store->GetOption("One", text), VEK_SUCCESS);
  EXPECT_EQ(text, "single");  // three tokens: the token alone
  EXPECT_EQ(Store->GetOption("Empty", text), VEK_SUCCESS);
  EXPECT_EQ(text, "");
  int number = 0;
  EXPECT_EQ(Store->GetOption("Empty", number), VEK_FILE_NOT_FORMATTED_PROPERLY);
  EXPECT_EQ(Store->GetOption("Bare", text), VEK_FILE_NOT_FORMATTED_PROPERLY);
}

TEST_F(OptionStoreTest, AnEmptyValueIsJudgedByTheRequestedTypeNotTheDescription) {
  WriteOptions("Label =\nCount =\nNames =\n");
  WriteInfo("Label\tInt\t2\nCount\tString\t2\nNames\tIntArray\t2\n");
  std::string text = "old";
  EXPECT_EQ(Store->GetOption("Label", text), VEK_SUCCESS);
  EXPECT_EQ(text, "");
  int count = 0;
  EXPECT_EQ(Store->GetOption("Count", count), VEK_FILE_NOT_FORMATTED_PROPERLY);
  std::vector<std::string> names{"old"};
  EXPECT_EQ(Store->GetOption("Names", names), VEK_SUCCESS);
  EXPECT_TRUE(names.empty());
  std::vector<int> numbers;
  EXPECT_EQ(Store->GetOption("Names", numbers), VEK_FILE_NOT_FORMATTED_PROPERLY);
}

TEST_F(OptionStoreTest, TypesAreCheckedAndConverted) {
  WriteOptions("Flag = TRUE\nBad = 2\nRatio = 0.5\nWord = abc\nHuge = 4294967296\n");
  WriteInfo("Ratio\tFloat\t2\n");
  bool flag = false;
  EXPECT_EQ(Store->GetOption("Flag", flag), VEK_SUCCESS);
  EXPECT_TRUE(flag);
  EXPECT_EQ(Store->GetOption("Bad", flag), VEK_INVALID_PARAMETERS);
  int asInt = 0;
  EXPECT_EQ(Store->GetOption("Ratio", asInt), VEK_INVALID_PARAMETERS);  // described as Float
  EXPECT_EQ(Store->GetOption("Word", asInt), VEK_INVALID_PARAMETERS);   // does not convert
  EXPECT_EQ(Store->GetOption("Huge", asInt), VEK_INVALID_PARAMETERS);   // beyond int, not wrapped to 0
  EXPECT_EQ(Store->GetOption("Huge", flag), VEK_INVALID_PARAMETERS);
  float ratio = 0;
  EXPECT_EQ(Store->GetOption("Ratio", ratio), VEK_SUCCESS);
  EXPECT_EQ(ratio, 0.5f);
}

TEST_F(OptionStoreTest, SetOptionRewritesOneLineInPlaceAndRegistersNewOptions) {
  WriteOptions("B = 0\nA = 1\n# comment\n\nA = 1\nC = 2\n");
  WriteInfo("A\tInt\t3\n");
  ASSERT_EQ(Store->SetOption("A", 2), VEK_SUCCESS);
  EXPECT_EQ(Options(), test::TextFileBytes("B = 0\nA = 2\n# comment\n\nC = 2\n"));
  EXPECT_EQ(Info(), "A\tInt\t3\n");  // a described option keeps its info line: the file is not rewritten
  ASSERT_EQ(Store->SetOption("Pi", 3.14159265f), VEK_SUCCESS);
  ASSERT_EQ(Store->SetOption<std::string>("Title", "My first title"), VEK_SUCCESS);
  ASSERT_EQ(Store->SetOption("On", true), VEK_SUCCESS);
  ASSERT_EQ(Store->SetOption("Cams", std::vector<int>{1, 2, 3}), VEK_SUCCESS);
  EXPECT_EQ(Options(), test::TextFileBytes("B = 0\nA = 2\n# comment\n\nC = 2\nPi = 3.14159\nTitle = My first "
                                           "title\nOn = 1\nCams = 1 2 3\n"));
  EXPECT_EQ(Info(), test::TextFileBytes("A\tInt\t3\nPi\tFloat\t2\nTitle\tString\t2\nOn\tBool\t2\nCams\tIntArray\t2\n"));
  float pi = 0;
  EXPECT_EQ(Store->GetOption("Pi", pi), VEK_SUCCESS);
  EXPECT_EQ(pi, 3.14159f);
  double fromRegistry = 0;
  EXPECT_EQ(ClassInitializer::Get("Pi", fromRegistry, 0.0, 0.0, 10.0), 1);  // reloaded into the settings
  EXPECT_EQ(fromRegistry, 3.14159);
  EXPECT_FALSE(std::filesystem::exists(Store->GetOptionsFileName() + ".tmp"));
}

TEST_F(OptionStoreTest, RefusesKeysAndValuesThatWouldBreakTheFile) {
  WriteOptions("A = 1\n");
  WriteInfo("A\tInt\t2\n");
  for (const std::string& key :
       {std::string("two words"), std::string(""), std::string("#x"), std::string("a\nb"), std::string("tab\tkey")})
    EXPECT_EQ(Store->SetOption(key, 1), VEK_INVALID_PARAMETERS) << key;
  EXPECT_EQ(Store->SetOption<std::string>("S", "line\nB = 2"), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Store->SetOption<std::string>("S", "carriage\rreturn"), VEK_INVALID_PARAMETERS);
  // "S = " and the value: 511 characters and the line end would not fit the read buffer.
  EXPECT_EQ(Store->SetOption<std::string>("S", std::string(507, 'x')), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Store->SetOptionAsString("A", "Int", "seven"), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Store->SetOptionAsString("A", "Integer", "7"), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Options(), "A = 1\n");
  EXPECT_EQ(Info(), "A\tInt\t2\n");
}

TEST_F(OptionStoreTest, LongestLineReadsBackAsOneLine) {
  WriteOptions("A = 1\n");
  WriteInfo("S\tString\t2\n");
  const std::string value(506, 'x');  // "S = " + value: 510 characters
  ASSERT_EQ(Store->SetOption<std::string>("S", value), VEK_SUCCESS);
  ASSERT_EQ(Store->SetOption("A", 2), VEK_SUCCESS);
  EXPECT_EQ(Options(), test::TextFileBytes("A = 2\nS = " + value + "\n"));
  std::string read;
  EXPECT_EQ(Store->GetOption<std::string>("S", read), VEK_SUCCESS);
  EXPECT_EQ(read, value);
}

TEST_F(OptionStoreTest, InfoColumnsGiveDefaultsRangesAndVisibility) {
  WriteInfo(
      "Gain\tFloat\t1\t0.5\t0\t2\nTitle\tString\t3\tMy first title\nCount\tInt\t2\t4\nOn\tBool\t2\tTRUE\n"
      "Odd\tInt\tx\n");
  float gain = 0, low = 0, high = 0;
  EXPECT_EQ(Store->GetOption("Gain", gain), VEK_SUCCESS);
  EXPECT_EQ(gain, 0.5f);
  EXPECT_EQ(Store->GetOptionRange("Gain", low, high), VEK_SUCCESS);
  EXPECT_EQ(low, 0.0f);
  EXPECT_EQ(high, 2.0f);
  std::string title;
  EXPECT_EQ(Store->GetOptionDefault("Title", title), VEK_SUCCESS);
  EXPECT_EQ(title, "My first title");
  int countLow = 0, countHigh = 0;
  EXPECT_EQ(Store->GetOptionRange("Count", countLow, countHigh), VEK_SUCCESS);
  EXPECT_EQ(countLow, INT_MIN);
  EXPECT_EQ(countHigh, INT_MAX);
  double anyLow = 0, anyHigh = 0;
  EXPECT_EQ(Store->GetOptionRange("Nothing", anyLow, anyHigh), VEK_SUCCESS);
  EXPECT_EQ(anyLow, -DBL_MAX);
  EXPECT_EQ(anyHigh, DBL_MAX);
  std::string text;
  EXPECT_EQ(Store->GetOptionDefaultAsString("On", text), VEK_SUCCESS);
  EXPECT_EQ(text, "1");
  std::string type;
  EXPECT_EQ(Store->GetOptionType("Nothing", type), VEK_SUCCESS);
  EXPECT_EQ(type, "Unknown");
  OptionVisibility visibility = OptionVisibilityHidden;
  EXPECT_EQ(Store->GetOptionVisibility("Title", visibility), VEK_SUCCESS);
  EXPECT_EQ(visibility, 3);
  EXPECT_EQ(Store->GetOptionVisibility("Odd", visibility), VEK_INVALID_PARAMETERS);
  ASSERT_EQ(Store->SetOptionVisibility("Gain", static_cast<OptionVisibility>(5)), VEK_SUCCESS);
  EXPECT_EQ(Info().substr(0, Info().find('\n') + 1), test::TextFileBytes("Gain\tFloat\t5\t0.5\t0\t2\n"));
}

TEST_F(OptionStoreTest, WithoutAnInfoFileDescribingLookupsFailAndValuesStillRead) {
  WriteOptions("A = 7\nL = 5 7 5\n");
  ASSERT_FALSE(std::filesystem::exists(Store->GetOptionInfoFileName()));
  std::string type = "stale", text = "stale";
  EXPECT_EQ(Store->GetOptionType("A", type), VEK_FILE_NOT_FOUND);
  EXPECT_EQ(type, "Unknown");
  OptionVisibility visibility = OptionVisibilityHidden;
  EXPECT_EQ(Store->GetOptionVisibility("A", visibility), VEK_FILE_NOT_FOUND);
  EXPECT_EQ(Store->SetOptionVisibility("A", OptionVisibilityNewOption), VEK_FILE_NOT_FOUND);
  int low = 1, high = 2;
  EXPECT_EQ(Store->GetOptionRange("A", low, high), VEK_FILE_NOT_FOUND);
  EXPECT_EQ(Store->GetOptionDefaultAsString("A", text), VEK_FILE_NOT_FOUND);
  // An option nobody described reads as its fallback, and a value as of any type.
  int value = -1;
  EXPECT_EQ(Store->GetOptionDefault("A", value), VEK_SUCCESS);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(Store->GetOption("Missing", value), VEK_SUCCESS);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(Store->GetOption("A", value), VEK_SUCCESS);
  EXPECT_EQ(value, 7);
  EXPECT_EQ(Store->GetOptionItemIndex("L", 7), 1);
  EXPECT_FALSE(std::filesystem::exists(Store->GetOptionInfoFileName()));
  // List edits write, and writing registers the option in a new info file.
  ASSERT_EQ(Store->RemoveItemFromOption("L", 5), VEK_SUCCESS);
  EXPECT_EQ(Info(), test::TextFileBytes("L\tIntArray\t2\n"));
  std::filesystem::remove(Store->GetOptionInfoFileName());
  ASSERT_EQ(Store->AddItemToOption("L", 9), VEK_SUCCESS);
  EXPECT_EQ(Options(), test::TextFileBytes("A = 7\nL = 5 7 9\n"));
  EXPECT_EQ(Store->GetOptionType("L", type), VEK_SUCCESS);
  EXPECT_EQ(type, "IntArray");
}

TEST_F(OptionStoreTest, RewritesGiveEveryLineThePlatformLineEnd) {
  const std::string longest = "S = " + std::string(506, 'x');  // 510 characters: the longest line
  WriteOptions("A = 1\r\n# note\r\n\r\n" + longest + "\r\nB = 2\n");
  WriteInfo("S\tString\t2\r\nA\tInt\t2\r\n");
  int b = 0;
  ASSERT_EQ(Store->GetOption("B", b), VEK_SUCCESS);  // the longest CR LF line is one line
  EXPECT_EQ(b, 2);
  std::string s;
  ASSERT_EQ(Store->GetOption("S", s), VEK_SUCCESS);
  EXPECT_EQ(s, std::string(506, 'x'));
  std::string type;
  EXPECT_EQ(Store->GetOptionType("A", type), VEK_SUCCESS);
  EXPECT_EQ(type, "Int");
  ASSERT_EQ(Store->SetOption("A", 3), VEK_SUCCESS);
  EXPECT_EQ(Options(), test::TextFileBytes("A = 3\n# note\n\n" + longest + "\nB = 2\n"));
}

TEST_F(OptionStoreTest, OptionListsFollowTheVisibilityThreshold) {
  WriteInfo("A\tInt\t1\n# B\tInt\t3\nC\tInt\t2\nD\tString\t3\nC\tInt\t2\n");
  WriteOptions("C = 4\n");
  std::vector<std::string> names, values;
  EXPECT_EQ(Store->GetOptionList(names, false), VEK_SUCCESS);
  EXPECT_EQ(names, (std::vector<std::string>{"A", "C", "D", "C"}));
  // An undescribed threshold reads as 0 without error, like every undescribed option.
  EXPECT_EQ(Store->GetOptionList(names, true), VEK_SUCCESS);
  EXPECT_EQ(names, (std::vector<std::string>{"A", "C", "D", "C"}));
  ASSERT_EQ(Store->SetOption("AdvancedOptionsVisibilityThreshold", 2), VEK_SUCCESS);  // registered at 2
  EXPECT_EQ(Store->GetOptionList(names, true), VEK_SUCCESS);
  EXPECT_EQ(names, (std::vector<std::string>{"C", "D", "C", "AdvancedOptionsVisibilityThreshold"}));
  ASSERT_EQ(Store->SetOption("AdvancedOptionsVisibilityThreshold", 3), VEK_SUCCESS);
  EXPECT_EQ(Store->GetOptionListWithValue(names, values, true), VEK_SUCCESS);
  EXPECT_EQ(names, (std::vector<std::string>{"D"}));
  EXPECT_EQ(values, (std::vector<std::string>{""}));
  std::filesystem::remove(Store->GetOptionInfoFileName());
  EXPECT_EQ(Store->GetOptionList(names, false), VEK_FILE_NOT_FOUND);
}

TEST_F(OptionStoreTest, ItemListsEditTheRightElement) {
  ASSERT_EQ(Store->SetOption("L", std::vector<int>{1, 2, 1}), VEK_SUCCESS);
  ASSERT_EQ(Store->RemoveItemFromOption("L", 1), VEK_SUCCESS);
  std::vector<int> list;
  Store->GetOption("L", list);
  EXPECT_EQ(list, (std::vector<int>{1, 2}));
  ASSERT_EQ(Store->SetOption("F", std::vector<float>{5, 7, 5}), VEK_SUCCESS);
  EXPECT_EQ(Store->GetOptionItemIndex("F", 5.0f), 0);
  EXPECT_EQ(Store->GetOptionItemIndex("F", 9.0f), -1);
  ASSERT_EQ(Store->AddItemToOption<std::string>("Names", "left"), VEK_SUCCESS);
  ASSERT_EQ(Store->AddItemToOption<std::string>("Names", "left"), VEK_SUCCESS);
  EXPECT_NE(Options().find(test::TextFileBytes("Names = left left\n")), std::string::npos);
}

TEST_F(OptionStoreTest, DeleteAndImportDefaults) {
  WriteInfo("Gain\tFloat\t2\t0.5\nName\tString\t2\tBig Wall\nNetworkGroupId\tInt\t2\t-1\nBare\tInt\t2\n");
  test::WriteFile(Store->GetDefaultsFileName(), "Gain = 0.75\n");
  ASSERT_EQ(Store->ImportDefaultOptions(), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(Store->GetDefaultsFileName()),
            test::TextFileBytes("Gain = 0.75\nName = Big Wall\nNetworkGroupId = -1\n"));
  int group = -1;
  EXPECT_EQ(Store->GetOption("NetworkGroupId", group), VEK_SUCCESS);
  EXPECT_GE(group, 0);
  ASSERT_EQ(Store->ImportDefaultOptions(), VEK_SUCCESS);
  int again = -1;
  Store->GetOption("NetworkGroupId", again);
  EXPECT_EQ(again, group);  // only -1 is replaced

  ASSERT_EQ(Store->DeleteOption("NetworkGroupId"), VEK_SUCCESS);
  EXPECT_EQ(Options().find("NetworkGroupId"), std::string::npos);
  EXPECT_EQ(Info().find("NetworkGroupId"), std::string::npos);
}

TEST_F(OptionStoreTest, ACrashBeforeTheReplaceLeavesTheOldFile) {
  WriteOptions("A = 1\nB = 2\n");
  // The rewrite's first half ran, the process died before the second.
  ASSERT_TRUE(platform::WriteFileDurably(Store->GetOptionsFileName() + ".tmp", "A = 9\n"));
  EXPECT_EQ(Options(), "A = 1\nB = 2\n");
  int a = 0;
  EXPECT_EQ(Store->GetOption("A", a), VEK_SUCCESS);
  EXPECT_EQ(a, 1);
  ASSERT_EQ(Store->SetOption("B", 3), VEK_SUCCESS);  // the stale temporary is simply overwritten
  EXPECT_EQ(Options(), test::TextFileBytes("A = 1\nB = 3\n"));
}

TEST(OptionFile, MergeKeepsTheFirstOrderAndLetsTheSecondWin) {
  test::TempDirectory directory;
  test::WriteFile(directory.File("first"), "# info\nA\tInt\t1\nB\tInt\t1\n");
  test::WriteFile(directory.File("second"), "B\tInt\t3\t7\nC\tFloat\t2\nB\tInt\t4\n");
  ASSERT_EQ(
      OptionFile::MergeOptionInfoFiles(directory.File("first"), directory.File("second"), directory.File("merged")),
      VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(directory.File("merged")),
            test::TextFileBytes("# info\nA\tInt\t1\nB\tInt\t4\nC\tFloat\t2\n"));
}

TEST(OptionFile, RewritingAMissingFileSaysSoAndStartsEmpty) {
  test::TempDirectory directory;
  test::LogCapture log;
  ASSERT_EQ(OptionFile::AddOrModifyOneLine(directory.File("new.txt"), "K", "K = 1\n"), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(directory.File("new.txt")), test::TextFileBytes("K = 1\n"));
  EXPECT_EQ(log.Text(), "ERROR:vekConfigurationDatabase, 788: " + directory.File("new.txt") +
                            " could not be opened for reading!\n");
  EXPECT_EQ(OptionFile::AddOrModifyOneLine("", "K", "K = 1\n"), VEK_FILE_NOT_FOUND);
}

TEST(OptionFile, ATargetThatCannotBeWrittenCannotBeReplaced) {
  test::TempDirectory directory;
  const std::string folder = directory.File("folder"), nowhere = directory.File("no-dir/options.txt");
  std::filesystem::create_directory(folder);
  for (const std::string& file : {folder, nowhere}) {
    test::LogCapture log;
    EXPECT_EQ(OptionFile::AddOrModifyOneLine(file, "K", "K = 2\n"), VEK_UNABLE_TO_COPY_FILE) << file;
    EXPECT_EQ(log.Text(), "ERROR:vekConfigurationDatabase, 788: " + file +
                              " could not be opened for reading!\nERROR:vekConfigurationDatabase, 793: Failure "
                              "writing to " +
                              file + "!\n");
    EXPECT_FALSE(std::filesystem::exists(file + ".tmp"));
  }
  EXPECT_TRUE(std::filesystem::is_directory(folder));
}

TEST(OptionFile, AFailedTemporaryWriteSaysSoAndKeepsTheFile) {
  test::TempDirectory directory;
  const std::string file = directory.File("options.txt");
  test::WriteFile(file, "K = 1\n");
  std::filesystem::create_directory(file + ".tmp");  // the temporary file cannot be written
  test::LogCapture log;
  EXPECT_EQ(OptionFile::AddOrModifyOneLine(file, "K", "K = 2\n"), VEK_UNABLE_TO_COPY_FILE);
  EXPECT_EQ(log.Text(), "ERROR:vekConfigurationDatabase, 793: Failure writing to " + file + "!\n");
  EXPECT_EQ(test::ReadFile(file), "K = 1\n");
}

}  // namespace
}  // namespace vek
