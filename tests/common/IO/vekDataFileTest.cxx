#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <regex>
#include <string>

#include "vekDataFile.h"
#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

constexpr int kBadParse = VEK_BAD_PARSE | 0x8000;
std::string Message(int code) { return ErrorHelper::GetErrorMessageWithNoExtras(code); }

/// One entry of every type; the expected file line of each is worked out by hand.
std::vector<DataFileEntry> EveryType() {
  std::vector<DataFileEntry> entries(13);
  entries[0].SetName("d");
  entries[0].SetDouble(0.1);
  entries[1].SetName("i");
  entries[1].SetInt(-7);
  entries[2].SetName("f");
  entries[2].SetFloat(0.1f);
  entries[3].SetName("s");
  entries[3].SetString("a # b  c");
  entries[4].SetName("b");
  entries[4].SetBool(true);
  const double doubles[] = {0.5, 1.0, 2.25};
  entries[5].SetName("offsets");
  entries[5].SetDoubleArray(doubles, 3);
  const int ints[] = {1, -2};
  entries[6].SetName("ia");
  entries[6].SetIntArray(ints, 2);
  const float floats[] = {1.5f};
  entries[7].SetName("fa");
  entries[7].SetFloatArray(floats, 1);
  const std::string strings[] = {"x y", "", "#z"};
  entries[8].SetName("sa");
  entries[8].SetStringArray(strings, 3);
  const bool bools[] = {true, false};
  entries[9].SetName("ba");
  entries[9].SetBoolArray(bools, 2);
  entries[10].SetName("third");
  entries[10].SetDouble(1.0 / 3.0);  // needs 16 digits to read back
  entries[11].SetName("big");
  entries[11].SetDouble(1234567.0);  // six digits would give 1.23457e+06
  entries[12].SetName("f3");
  entries[12].SetFloat(1.0f / 3.0f);  // needs 8 digits as a float
  return entries;
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

  test::TempDirectory Dir;
  std::string Name = Dir.File("data.txt");
  SmartPointer<DataFile> file = SmartPointer<DataFile>::New();
};

TEST_F(DataFileTest, EmptyFileIsThreeLines) {
  file->SetFileName(Name);
  EXPECT_EQ(file->Write(), 0);
  EXPECT_EQ(test::ReadFile(Name), "#DataFile\n\nFileVersion###1\n");
}

TEST_F(DataFileTest, WritesEveryTypeExactlyAndReadsItBack) {
  for (const DataFileEntry& entry : EveryType()) ASSERT_EQ(file->AddVariable(entry), 0);
  EXPECT_FALSE(file->GetIsEdited());  // adding leaves the flag alone
  file->SetFileName(Name);
  ASSERT_EQ(file->Write(), 0);
  EXPECT_EQ(test::ReadFile(Name), kEveryTypeFile);

  auto back = SmartPointer<DataFile>::New();
  back->SetFileName(Name);
  ASSERT_EQ(back->Read(), 0);
  const std::vector<DataFileEntry> expected = EveryType();
  ASSERT_EQ(back->GetNumVariables(), static_cast<int>(expected.size()));
  for (int n = 0; n < back->GetNumVariables(); ++n) EXPECT_TRUE(*back->GetNthVariable(n) == expected[n]) << n;
  EXPECT_EQ(back->GetNthVariable(8)->GetStringArray()[2], "#z");
  ASSERT_EQ(back->Read(), 0);  // a second read appends
  EXPECT_EQ(back->GetNumVariables(), static_cast<int>(2 * expected.size()));
  EXPECT_TRUE(*back->GetNthVariable(static_cast<int>(expected.size())) == expected[0]);
  EXPECT_EQ(back->GetNthVariable(3)->GetString(), "a # b  c");
}

TEST_F(DataFileTest, ExtremeValuesRoundTrip) {
  DataFileEntry e;
  const double doubles[] = {1e300, -0.0, 5e-324, INFINITY, -INFINITY, NAN, 0.1 + 0.2};
  e.SetName("x");
  e.SetDoubleArray(doubles, 7);
  file->AddVariable(e);
  const int ints[] = {INT_MIN, INT_MAX};
  e.SetIntArray(ints, 2);
  file->AddVariable(e);
  const float floats[] = {3.4028235e38f, 1e-45f, 16777217.0f};
  e.SetFloatArray(floats, 3);
  file->AddVariable(e);
  e.SetString("");
  file->AddVariable(e);
  e.SetString("  #");
  file->AddVariable(e);
  e.SetString("#a#b##");
  file->AddVariable(e);
  file->SetFileName(Name);
  ASSERT_EQ(file->Write(), 0);
  auto back = SmartPointer<DataFile>::New();
  back->SetFileName(Name);
  ASSERT_EQ(back->Read(), 0);
  ASSERT_EQ(back->GetNumVariables(), 6);
  for (int n = 0; n < 6; ++n) EXPECT_TRUE(*back->GetNthVariable(n) == *file->GetNthVariable(n)) << n;
  EXPECT_TRUE(std::signbit(back->GetNthVariable(0)->GetDoubleArray()[1]));
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
  EXPECT_EQ(ReadText("FileVersion###1\nInt###a###1###\nInt###b###2###"), 0);
  ASSERT_EQ(file->GetNumVariables(), 3);
  EXPECT_EQ(file->GetNthVariable(2)->GetName(), "a");
}

TEST_F(DataFileTest, VersionLineFailures) {
  int code = ReadText("#DataFile\n\nVersion###1\n");
  EXPECT_EQ(code, 0x8028);
  EXPECT_EQ(Message(code), "First Line of File should be file version");
  code = ReadText("FileVersion\n");
  EXPECT_EQ(code, kBadParse);
  EXPECT_EQ(Message(code), "No moreTokensToParse");
  EXPECT_EQ(ReadText("FileVersion### 3\t\n"), 0);  // blanks around the number are no part of it
  EXPECT_EQ(file->GetFileVersion(), 3.0f);
  code = ReadText("FileVersion###one\n");
  EXPECT_EQ(code, kBadParse);
  EXPECT_EQ(Message(code), "Cannot read file version from 'one'");
  file->SetFileName(Dir.File("absent.txt"));
  EXPECT_EQ(file->Read(), VEK_FILE_NOT_FOUND | 0x8000);
}

TEST_F(DataFileTest, BadEntryLineIsLoggedAndEarlierEntriesKept) {
  test::LogCapture log;
  int code = ReadText("#DataFile\n\nFileVersion###1\nInt###a###1###\nComplex###z###1###\nInt###b###2###\n");
  EXPECT_EQ(code, kBadParse);
  EXPECT_EQ(Message(code), "Unknown DataType Complex");
  ASSERT_EQ(file->GetNumVariables(), 1);
  EXPECT_EQ(file->GetNthVariable(0)->GetName(), "a");
  EXPECT_TRUE(std::regex_match(log.Text(), std::regex("ERROR:vekDataFile, [0-9]+: Cannot parse: Complex###z###1###\n")))
      << log.Text();
}

TEST_F(DataFileTest, DamagedEntryLines) {
  const struct {
    const char* line;
    const char* message;
  } cases[] = {
      {"Double", "No moreTokensToParse"},
      {"Double###x", "No moreTokensToParse"},
      {"Double###x###", "No moreTokensToParse"},
      {"double###x###1###", "Unknown DataType double"},  // case matters
      {"   ", "Unknown DataType    "},                   // blank lines are relevant here
      {"Int###n###3.5###", "Cannot convert '3.5' to Int"},
      {"Int###n###99999999999###", "Cannot convert '99999999999' to Int"},
      {"Bool###b###2###", "Cannot convert '2' to Bool"},
      {"Double###d######", "Cannot convert '' to Double"},
      {"IntArray###a######", "Zero Length Array"},
      {"IntArray###a###x@@@1###", "Cannot read array count from 'x'"},
      {"IntArray###a###-1###", "Cannot read array count from '-1'"},
      {"IntArray###a###2000000000@@@1###", "Array count 2000000000 does not match the 1 elements given"},
      {"IntArray###a###1@@@1@@@2###", "Array count 1 does not match the 2 elements given"},
      {"FloatArray###a###2@@@1@@@z###", "Cannot convert 'z' to Float"},
      {"String\x01\xff###\0###", "Unknown DataType String\x01\xff"},
  };
  for (const auto& c : cases) {
    const int code = ReadText(std::string("FileVersion###1\n") + c.line + "\n");
    EXPECT_EQ(code, kBadParse) << c.line;
    EXPECT_EQ(Message(code), c.message) << c.line;
    EXPECT_EQ(file->GetNumVariables(), 0);
  }
}

TEST_F(DataFileTest, BinaryGarbageNeverCrashes) {
  std::string garbage;
  unsigned state = 12345;
  for (int i = 0; i < 20000; ++i) {
    state = state * 1103515245u + 12345u;
    garbage += static_cast<char>(state >> 16);
  }
  EXPECT_NE(ReadText("FileVersion###1\n" + garbage + "\n"), 0);
  EXPECT_NE(ReadText(garbage), 0);
}

TEST_F(DataFileTest, WriteStopsAtUnknownType) {
  DataFileEntry good, bad;
  good.SetName("g");
  good.SetInt(1);
  bad.SetName("bad");
  bad.SetDataType(12);
  EXPECT_EQ(bad.GetDataTypeInString(), "");
  file->AddVariable(good);
  file->AddVariable(bad);
  file->AddVariable(good);
  file->SetFileName(Name);
  const int code = file->Write();
  EXPECT_EQ(code, kBadParse);
  EXPECT_EQ(Message(code), "Unknown Data Type");
  EXPECT_EQ(test::ReadFile(Name), "#DataFile\n\nFileVersion###1\nInt###g###1###\n");
  file->SetFileName(Dir.File("no-dir/x.txt"));
  EXPECT_EQ(file->Write(), VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING | 0x8000);
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

TEST(DataFileHooks, SettingAndAddingAskTheDerivedClass) {
  auto file = SmartPointer<RestrictedDataFile>::New();
  DataFileEntry a, x;
  a.SetName("a");
  a.SetInt(1);
  x.SetName("xa");
  EXPECT_EQ(file->AddVariable(a), 0);
  EXPECT_EQ(file->LastAsked, 0);
  EXPECT_EQ(file->AddVariable(x), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(file->LastAsked, 1);
  EXPECT_EQ(file->GetNumVariables(), 1);
  EXPECT_EQ(file->Created, 1);
  EXPECT_FALSE(file->GetIsEdited());

  EXPECT_EQ(file->SetNthVariable(0, x), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(file->SetNthVariable(1, a), VEK_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(file->SetNthVariable(-1, a), VEK_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(file->GetNthVariable(1), nullptr);
  EXPECT_FALSE(file->GetIsEdited());
  a.SetString("two");
  EXPECT_EQ(file->SetNthVariable(0, a), 0);
  EXPECT_TRUE(file->GetIsEdited());
  EXPECT_EQ(file->GetNthVariable(0)->GetString(), "two");

  test::TempDirectory dir;
  file->SetFileName(dir.File("r.txt"));
  EXPECT_EQ(file->Write(), 0);
  EXPECT_FALSE(file->GetIsEdited());
  EXPECT_EQ(file->Read(), 0);
  EXPECT_EQ(file->Created, 2);
}

TEST(DataFilePrune, FlagChoosesFirstOrLast) {
  for (bool keepLast : {false, true}) {
    auto file = SmartPointer<DataFile>::New();
    const char* names[] = {"a", "b", "a", "c", "b"};
    for (int i = 0; i < 5; ++i) {
      DataFileEntry e;
      e.SetName(names[i]);
      e.SetInt(i);
      file->AddVariable(e);
    }
    EXPECT_EQ(file->PruneDuplicates(keepLast), 2);
    EXPECT_TRUE(file->GetIsEdited());
    ASSERT_EQ(file->GetNumVariables(), 3);
    // First: a0 b1 c3. Last: a2 c3 b4 (survivors keep their places).
    const int expected[2][3] = {{0, 1, 3}, {2, 3, 4}};
    for (int n = 0; n < 3; ++n) EXPECT_EQ(file->GetNthVariable(n)->GetInt(), expected[keepLast][n]);
    EXPECT_EQ(file->PruneDuplicates(keepLast), 0);
  }
}

TEST(DataFileEntryArrays, ElementSettingGrowsAndWarnsWhenLarge) {
  test::LogCapture log;
  DataFileEntry e;
  e.SetDataType(DataFileEntry::IntArray);
  EXPECT_EQ(e.SetArrayElementDataFromString(2, "7"), 0);
  ASSERT_EQ(e.GetNumberOfElements(), 3);
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

  int code = e.SetArrayElementDataFromString(UINT_MAX, "1");
  EXPECT_EQ(code, VEK_BAD_PARSE | 0x8000);
  EXPECT_EQ(Message(code), "Failed to allocate array of '4294967296' elements");
  EXPECT_EQ(e.GetNumberOfElements(), 1001);

  DataFileEntry s;
  s.SetDouble(1.0);
  code = s.SetArrayElementDataFromString(0, "1");
  EXPECT_EQ(code, VEK_BAD_PARSE | 0x8000);
  EXPECT_EQ(Message(code), "Variable is not an array type, type is Double");
  s.SetDataType(12);
  code = s.SetArrayElementDataFromString(4, "1");
  EXPECT_EQ(code, VEK_BAD_PARSE | 0x8000);
  EXPECT_EQ(Message(code), "Failed to set array element '4', unknown data type '12'");

  code = s.SetDoubleArray(nullptr, 0);
  EXPECT_EQ(code, kBadParse);
  EXPECT_EQ(Message(code), "Zero Length Array");
  EXPECT_EQ(s.GetDataInString(), "0");
}

}  // namespace
}  // namespace vek
