#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <filesystem>
#include <regex>
#include <string>

#include "vekDataFile.h"
#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

constexpr int kBadParse = VEK_BAD_PARSE | 0x8000;

/// The bad-parse code with exactly `message` as its text.
testing::AssertionResult BadParse(int code, const std::string& message) {
  const std::string text = ErrorHelper::GetErrorMessageWithNoExtras(code);
  if (code == kBadParse && text == message) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "code " << code << " '" << text << "'";
}

/// One entry of every type; the expected file line of each is worked out by hand.
std::vector<DataFileEntry> EveryType() {
  std::vector<DataFileEntry> e(13);
  const char* names[] = {"d", "i", "f", "s", "b", "offsets", "ia", "fa", "sa", "ba", "third", "big", "f3"};
  for (int n = 0; n < 13; ++n) e[n].SetName(names[n]);
  e[0].SetDouble(0.1);
  e[1].SetInt(-7);
  e[2].SetFloat(0.1f);
  e[3].SetString("a # b  c");
  e[4].SetBool(true);
  e[5].SetDoubleArray(std::data({0.5, 1.0, 2.25}), 3);
  e[6].SetIntArray(std::data({1, -2}), 2);
  e[7].SetFloatArray(std::data({1.5f}), 1);
  e[8].SetStringArray(std::data({std::string("x y"), std::string(), std::string("#z")}), 3);
  e[9].SetBoolArray(std::data({true, false}), 2);
  e[10].SetDouble(1.0 / 3.0);   // needs 16 digits to read back
  e[11].SetDouble(1234567.0);   // six digits would give 1.23457e+06
  e[12].SetFloat(1.0f / 3.0f);  // needs 8 digits as a float
  return e;
}

const char kEveryTypeFile[] =
    "#DataFile\n\nFileVersion###1\n"
    "Double###d###0.1###\n"
    "Int###i###-7###\n"
    "Float###f###0.1###\n"
    "String###s###a # b  c###\n"
    "Bool###b###1###\n"
    "DoubleArray###offsets###3@@@0.5@@@1@@@2.25###\n"
    "IntArray###ia###2@@@1@@@-2###\n"
    "FloatArray###fa###1@@@1.5###\n"
    "StringArray###sa###3@@@x y@@@@@@#z###\n"
    "BoolArray###ba###2@@@1@@@0###\n"
    "Double###third###0.3333333333333333###\n"
    "Double###big###1234567###\n"
    "Float###f3###0.33333334###\n";

class DataFileTest : public ::testing::Test {
 protected:
  int ReadText(const std::string& text) {
    test::WriteFile(Name, text);
    file->SetFileName(Name);
    return file->Read();
  }
  /// Writes the entries held and reads them back; reading appends, so the second half must equal the first.
  void ExpectRoundTrip() {
    file->SetFileName(Name);
    ASSERT_EQ(file->Write(), 0);
    const int count = file->GetNumVariables();
    ASSERT_EQ(file->Read(), 0);
    ASSERT_EQ(file->GetNumVariables(), 2 * count);
    for (int n = 0; n < count; ++n) EXPECT_TRUE(*file->GetNthVariable(count + n) == *file->GetNthVariable(n)) << n;
  }

  test::TempDirectory Dir;
  std::string Name = Dir.File("data.txt");
  SmartPointer<DataFile> file = SmartPointer<DataFile>::New();
};

TEST_F(DataFileTest, WritesEveryTypeExactlyAndReadsItBack) {
  for (const DataFileEntry& entry : EveryType()) ASSERT_EQ(file->AddVariable(entry), 0);
  EXPECT_FALSE(file->GetIsEdited());  // adding leaves the flag alone
  ASSERT_NO_FATAL_FAILURE(ExpectRoundTrip());
  EXPECT_EQ(test::ReadFile(Name), test::TextFileBytes(kEveryTypeFile));
  auto empty = SmartPointer<DataFile>::New();
  empty->SetFileName(Name);
  ASSERT_EQ(empty->Write(), 0);
  EXPECT_EQ(test::ReadFile(Name), test::TextFileBytes("#DataFile\n\nFileVersion###1\n"));
}

TEST_F(DataFileTest, ExtremeValuesRoundTrip) {
  DataFileEntry e;
  e.SetName("x");
  e.SetDoubleArray(std::data({1e300, -0.0, 5e-324, HUGE_VAL, -HUGE_VAL, std::nan(""), 0.1 + 0.2}), 7);
  file->AddVariable(e);
  e.SetIntArray(std::data({INT_MIN, INT_MAX}), 2);
  file->AddVariable(e);
  e.SetFloatArray(std::data({3.4028235e38f, 1e-45f, 16777217.0f}), 3);
  file->AddVariable(e);
  for (const char* text : {"", "  #", "#a#b##"}) {
    e.SetString(text);
    file->AddVariable(e);
  }
  ASSERT_NO_FATAL_FAILURE(ExpectRoundTrip());
  EXPECT_TRUE(std::signbit(file->GetNthVariable(6)->GetDoubleArray()[1]));
}

TEST_F(DataFileTest, HeaderOnlyAndLenientLines) {
  EXPECT_EQ(ReadText("#DataFile\n"), 0);
  EXPECT_EQ(file->GetNumVariables(), 0);
  // Trailing "###" optional, extra fields ignored, comments and CRLF line ends allowed.
  EXPECT_EQ(ReadText("#DataFile\r\n\r\nFileVersion###2.5\r\n# note\r\nInt###a###5\r\nString###b###x###y###\r\n"), 0);
  EXPECT_EQ(file->GetFileVersion(), 2.5f);
  ASSERT_EQ(file->GetNumVariables(), 2);
  EXPECT_EQ(file->GetNthVariable(0)->GetInt(), 5);
  EXPECT_EQ(file->GetNthVariable(1)->GetString(), "x");
  // Reading appends; an unterminated last line is a truncated one and is dropped.
  EXPECT_EQ(ReadText("FileVersion### 3\t\nInt###a###1###\nInt###b###2###"), 0);
  EXPECT_EQ(file->GetFileVersion(), 3.0f);  // blanks around the number are no part of it
  ASSERT_EQ(file->GetNumVariables(), 3);
  EXPECT_EQ(file->GetNthVariable(2)->GetName(), "a");
}

TEST_F(DataFileTest, DamagedLinesReadNothing) {
  const std::string v = "FileVersion###1\n";
  const struct {
    std::string text;
    const char* message;
  } cases[] = {
      {"#DataFile\n\nVersion###1\n", "First Line of File should be file version"},
      {"FileVersion\n", "No moreTokensToParse"},
      {"FileVersion###one\n", "Cannot read file version from 'one'"},
      {v + "Double\n", "No moreTokensToParse"},
      {v + "Double###x\n", "No moreTokensToParse"},
      {v + "double###x###1###\n", "Unknown DataType double"},  // case matters
      {v + "   \n", "Unknown DataType    "},                   // blank lines are relevant here
      {v + "Int###n###3.5###\n", "Cannot convert '3.5' to Int"},
      {v + "Int###n###99999999999###\n", "Cannot convert '99999999999' to Int"},
      {v + "Bool###b###2###\n", "Cannot convert '2' to Bool"},
      {v + "Double###d######\n", "Cannot convert '' to Double"},
      {v + "IntArray###a######\n", "Zero Length Array"},
      {v + "IntArray###a###x@@@1###\n", "Cannot read array count from 'x'"},
      {v + "IntArray###a###-1###\n", "Cannot read array count from '-1'"},
      {v + "IntArray###a###2000000000@@@1###\n", "Array count 2000000000 does not match the 1 elements given"},
      {v + "IntArray###a###1@@@1@@@2###\n", "Array count 1 does not match the 2 elements given"},
      {v + "FloatArray###a###2@@@1@@@z###\n", "Cannot convert 'z' to Float"},
      {v + std::string("String\x01\xff###\0###\n", 16), "Unknown DataType String\x01\xff"},
  };
  for (const auto& c : cases) {
    EXPECT_TRUE(BadParse(ReadText(c.text), c.message)) << c.text;
    EXPECT_EQ(file->GetNumVariables(), 0);
  }
}

TEST_F(DataFileTest, BadEntryLineIsLoggedAndEarlierEntriesKept) {
  test::LogCapture log;
  EXPECT_TRUE(BadParse(ReadText("#DataFile\n\nFileVersion###1\nInt###a###1###\nComplex###z###1###\nInt###b###2###\n"),
                       "Unknown DataType Complex"));
  ASSERT_EQ(file->GetNumVariables(), 1);
  EXPECT_EQ(file->GetNthVariable(0)->GetName(), "a");
  EXPECT_TRUE(std::regex_match(log.Text(), std::regex("ERROR:vekDataFile, [0-9]+: Cannot parse: Complex###z###1###\n")))
      << log.Text();
}

TEST_F(DataFileTest, BinaryGarbageNeverCrashes) {
  std::string garbage;
  unsigned state = 12345;
  for (int i = 0; i < 20000; ++i) garbage += static_cast<char>((state = state * 1103515245u + 12345u) >> 16);
  EXPECT_NE(ReadText("FileVersion###1\n" + garbage + "\n"), 0);
  EXPECT_NE(ReadText(garbage), 0);
}

TEST_F(DataFileTest, FailedWritesLeaveTheEarlierFileWhole) {
  const DataFileEntry good = EveryType()[1];
  DataFileEntry bad;
  bad.SetName("bad");
  bad.SetDataType(12);
  EXPECT_EQ(bad.GetDataTypeInString(), "");
  file->AddVariable(good);
  file->AddVariable(bad);
  file->AddVariable(good);
  file->SetFileName(Name);
  test::WriteFile(Name, "earlier\n");
  EXPECT_TRUE(BadParse(file->Write(), "Unknown Data Type"));
  EXPECT_EQ(test::ReadFile(Name), "earlier\n");  // never cut short at the bad entry
  auto goodOnly = SmartPointer<DataFile>::New();
  goodOnly->AddVariable(good);
  goodOnly->SetFileName(Name);
  std::filesystem::create_directory(Name + ".tmp");  // the new text cannot be written
  EXPECT_EQ(goodOnly->Write(), VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING | 0x8000);
  EXPECT_EQ(test::ReadFile(Name), "earlier\n");
  const std::string folder = Dir.File("folder");  // a folder where the file belongs
  std::filesystem::create_directory(folder);
  goodOnly->SetFileName(folder);
  EXPECT_EQ(goodOnly->Write(), VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING | 0x8000);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING | 0x8000),
            "Unable to open file for writing: " + folder);
  EXPECT_TRUE(std::filesystem::is_directory(folder));
  EXPECT_FALSE(std::filesystem::exists(folder + ".tmp"));
  goodOnly->SetFileName(Dir.File("no-dir/x.txt"));
  ASSERT_EQ(goodOnly->SetNthVariable(0, good), VEK_SUCCESS);
  EXPECT_EQ(goodOnly->Write(), VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING | 0x8000);
  EXPECT_TRUE(goodOnly->GetIsEdited());  // the edit is not saved
  EXPECT_EQ(goodOnly->Read(), VEK_FILE_NOT_FOUND | 0x8000);
}

/// Refuses names starting with "x" and counts the entries it hands out.
class RestrictedDataFile : public DataFile {
 public:
  static RestrictedDataFile* New() { return new RestrictedDataFile; }
  int WouldSettingNthVariableBeOK(const int& n, const DataFileEntry& entry) override {
    LastAsked = n;
    return entry.GetName().rfind("x", 0) == 0 ? VEK_INVALID_PARAMETERS : VEK_SUCCESS;
  }
  DataFileEntry* CreateNewVariable() const override {
    ++Created;
    return DataFile::CreateNewVariable();
  }
  int LastAsked = -1;
  mutable int Created = 0;
};

TEST_F(DataFileTest, HooksAskTheDerivedClassWhenSettingAndAdding) {
  auto restricted = SmartPointer<RestrictedDataFile>::New();
  DataFileEntry a, x;
  a.SetName("a");
  x.SetName("xa");
  EXPECT_EQ(restricted->AddVariable(a), 0);
  EXPECT_EQ(restricted->AddVariable(x), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(restricted->LastAsked, 1);  // adding asks about the index past the end
  EXPECT_EQ(restricted->GetNumVariables(), 1);
  EXPECT_EQ(restricted->Created, 1);

  EXPECT_EQ(restricted->SetNthVariable(0, x), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(restricted->SetNthVariable(1, a), VEK_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(restricted->SetNthVariable(-1, a), VEK_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(restricted->GetNthVariable(1), nullptr);
  EXPECT_FALSE(restricted->GetIsEdited());
  a.SetString("two");
  EXPECT_EQ(restricted->SetNthVariable(0, a), 0);
  EXPECT_TRUE(restricted->GetIsEdited());
  EXPECT_EQ(restricted->GetNthVariable(0)->GetString(), "two");

  restricted->SetFileName(Name);
  EXPECT_EQ(restricted->Write(), 0);
  EXPECT_FALSE(restricted->GetIsEdited());
  EXPECT_EQ(restricted->Read(), 0);
  EXPECT_EQ(restricted->Created, 2);  // reading creates through the hook too
}

TEST(DataFilePrune, FlagChoosesFirstOrLast) {
  // First: a0 b1 c3. Last: a2 c3 b4 (survivors keep their places).
  const int expected[2][3] = {{0, 1, 3}, {2, 3, 4}};
  for (bool keepLast : {false, true}) {
    auto file = SmartPointer<DataFile>::New();
    DataFileEntry e;
    for (int i = 0; i < 5; ++i) {
      e.SetName(std::string(1, "abacb"[i]));
      e.SetInt(i);
      file->AddVariable(e);
    }
    EXPECT_EQ(file->PruneDuplicates(keepLast), 2);
    EXPECT_TRUE(file->GetIsEdited());
    ASSERT_EQ(file->GetNumVariables(), 3);
    for (int n = 0; n < 3; ++n) EXPECT_EQ(file->GetNthVariable(n)->GetInt(), expected[keepLast][n]);
    EXPECT_EQ(file->PruneDuplicates(keepLast), 0);
  }
}

TEST(DataFileEntryArrays, ElementSettingGrowsAndWarnsWhenLarge) {
  test::LogCapture log;
  DataFileEntry e;
  e.SetDataType(DataFileEntry::IntArray);
  EXPECT_EQ(e.SetArrayElementDataFromString(2, "7"), 0);
  EXPECT_EQ(e.GetDataInString(), "3@@@0@@@0@@@7");
  EXPECT_EQ(e.SetArrayElementDataFromString(0, "-1"), 0);
  EXPECT_EQ(e.GetArrayElementDataInString(0), "-1");
  EXPECT_EQ(e.GetArrayElementDataInString(3), "");
  EXPECT_EQ(e.SetArrayElementDataFromString(1, "x"), kBadParse);
  EXPECT_EQ(e.GetDataInString(), "3@@@-1@@@0@@@7");
  EXPECT_EQ(e.SetArrayElementDataFromString(999, "1"), 0);
  EXPECT_EQ(log.Text(), "");
  EXPECT_EQ(e.SetArrayElementDataFromString(1000, "1"), 0);
  EXPECT_EQ(e.GetNumberOfElements(), 1001);
  EXPECT_TRUE(std::regex_match(
      log.Text(), std::regex("WARNING:vekDataFileEntry, [0-9]+: Array element 1000 request to be set, growing "
                             "array to a large number!\n")))
      << log.Text();
  EXPECT_TRUE(
      BadParse(e.SetArrayElementDataFromString(UINT_MAX, "1"), "Failed to allocate array of '4294967296' elements"));
  EXPECT_EQ(e.GetNumberOfElements(), 1001);

  DataFileEntry s;
  s.SetDouble(1.0);
  EXPECT_TRUE(BadParse(s.SetArrayElementDataFromString(0, "1"), "Variable is not an array type, type is Double"));
  s.SetDataType(12);
  EXPECT_TRUE(
      BadParse(s.SetArrayElementDataFromString(4, "1"), "Failed to set array element '4', unknown data type '12'"));
  EXPECT_TRUE(BadParse(s.SetDoubleArray(nullptr, 0), "Zero Length Array"));
  EXPECT_EQ(s.GetDataInString(), "0");
}

}  // namespace
}  // namespace vek
