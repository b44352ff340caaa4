#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "vekClassInitializer.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekKOREnterpriseSystemManager.h"
#include "vekSmartPointer.h"
#include "vekStoreTestFixture.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

using Manager = KOREnterpriseSystemManager;
using System = Manager::System;

System MakeSystem(const std::string& id, const std::string& name, const std::string& base, const std::string& screen,
                  int projectors, int cameras, std::int64_t calibrated = Manager::kNeverCalibrated) {
  System s;
  s.Id = id;
  s.Name = name;
  s.BaseDirectory = base;
  s.ScreenType = screen;
  s.NumProjectors = projectors;
  s.NumCameras = cameras;
  s.LastCalibration = calibrated;
  return s;
}

bool Same(const System& a, const System& b) {
  return a.Id == b.Id && a.Name == b.Name && a.BaseDirectory == b.BaseDirectory && a.ScreenType == b.ScreenType &&
         a.NumProjectors == b.NumProjectors && a.NumCameras == b.NumCameras && a.LastCalibration == b.LastCalibration &&
         a.Active == b.Active;
}

// The ids in list order, the active one marked with "*".
std::string Ids(const Manager& manager) {
  std::vector<System> systems;
  if (manager.List(systems) != VEK_SUCCESS) return "(unreadable)";
  std::string ids;
  for (const System& s : systems) ids += (ids.empty() ? "" : " ") + s.Id + (s.Active ? "*" : "");
  return ids;
}

int Code(int status) { return ErrorHelper::GetErrorWithoutCustomMessageFlag(status); }

class SystemList : public ::testing::Test {
 protected:
  void SetUp() override { Systems->SetFileName(File); }

  test::TempDirectory Folder;
  std::string File = Folder.File("systems.xml");
  SmartPointer<Manager> Systems = SmartPointer<Manager>::New();
};

// 2024-05-01T10:20:30Z: 54 years with 13 leap days to 2024, then 31 + 29 + 31 + 30 days, then 37230 s.
constexpr std::int64_t kMayFirst = (54 * 365 + 13 + 121) * 86400LL + 37230;

TEST_F(SystemList, EveryOperationWithTheExactFileText) {
  std::vector<System> systems;
  ASSERT_EQ(Systems->List(systems), VEK_SUCCESS);
  EXPECT_TRUE(systems.empty());
  EXPECT_FALSE(std::filesystem::exists(File));

  const System lobby = MakeSystem("lobby", "Lobby", "/walls/lobby/", "Flat", 4, 1, kMayFirst);
  ASSERT_EQ(Systems->Add(lobby), VEK_SUCCESS);
  ASSERT_EQ(Systems->Add(MakeSystem("dome", "Dome", "/walls/dome/", "Dome", 6, 2)), VEK_SUCCESS);
  const std::string text = test::TextFileBytes(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<EnterpriseSystemConfiguration>\n"
      "    <System Id=\"lobby\" Name=\"Lobby\" BaseDirectory=\"/walls/lobby/\" ScreenType=\"Flat\" NumProjectors=\"4\" "
      "NumCameras=\"1\" LastCalibration=\"2024-05-01T10:20:30Z\" Active=\"true\"/>\n"
      "    <System Id=\"dome\" Name=\"Dome\" BaseDirectory=\"/walls/dome/\" ScreenType=\"Dome\" NumProjectors=\"6\" "
      "NumCameras=\"2\" LastCalibration=\"\" Active=\"false\"/>\n"
      "</EnterpriseSystemConfiguration>\n");
  EXPECT_EQ(test::ReadFile(File), text);

  int status = Systems->Add(MakeSystem("lobby", "Other", "/x/", "Flat", 1, 1));
  EXPECT_EQ(Code(status), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status),
            "A display system with the id \"lobby\" is already in " + File + ".");
  EXPECT_EQ(test::ReadFile(File), text);

  System found;
  ASSERT_EQ(Systems->FindById("lobby", found), VEK_SUCCESS);
  System expected = lobby;
  expected.Active = true;  // the first one added
  EXPECT_TRUE(Same(found, expected));
  ASSERT_EQ(Systems->FindByName("Dome", found), VEK_SUCCESS);
  EXPECT_EQ(found.Id, "dome");
  EXPECT_EQ(found.LastCalibration, Manager::kNeverCalibrated);
  EXPECT_EQ(Code(Systems->FindByName("dome", found)), VEK_INVALID_PARAMETERS);  // names are exact
  status = Systems->FindById("hall", found);
  EXPECT_EQ(Code(status), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status), "No display system has the id \"hall\" in " + File + ".");

  ASSERT_EQ(Systems->SetActive("dome"), VEK_SUCCESS);
  EXPECT_EQ(Ids(*Systems), "lobby dome*");
  EXPECT_EQ(Code(Systems->SetActive("hall")), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Ids(*Systems), "lobby dome*");

  // Update changes every field but Active, which only SetActive does.
  System dome = MakeSystem("dome", "Planetarium", "/walls/planetarium/", "Dome", 8, 3, 0);
  ASSERT_EQ(Systems->Update(dome), VEK_SUCCESS);
  ASSERT_EQ(Systems->FindById("dome", found), VEK_SUCCESS);
  dome.Active = true;
  EXPECT_TRUE(Same(found, dome));
  System activeLobby = lobby;
  activeLobby.Active = true;
  ASSERT_EQ(Systems->Update(activeLobby), VEK_SUCCESS);
  EXPECT_EQ(Ids(*Systems), "lobby dome*");
  EXPECT_EQ(Code(Systems->Update(MakeSystem("hall", "Hall", "/h/", "Flat", 1, 1))), VEK_INVALID_PARAMETERS);

  // A system added as active takes over; removing the active one hands it to the first left.
  System hall = MakeSystem("hall", "Hall", "/walls/hall/", "Curved", 3, 1);
  hall.Active = true;
  ASSERT_EQ(Systems->Add(hall), VEK_SUCCESS);
  EXPECT_EQ(Ids(*Systems), "lobby dome hall*");
  ASSERT_EQ(Systems->Remove("hall"), VEK_SUCCESS);
  EXPECT_EQ(Ids(*Systems), "lobby* dome");
  EXPECT_EQ(Code(Systems->Remove("hall")), VEK_INVALID_PARAMETERS);
  ASSERT_EQ(Systems->Remove("lobby"), VEK_SUCCESS);
  EXPECT_EQ(Ids(*Systems), "dome*");
  ASSERT_EQ(Systems->Remove("dome"), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(File), test::TextFileBytes("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                      "<EnterpriseSystemConfiguration/>\n"));
  EXPECT_FALSE(std::filesystem::exists(File + ".tmp"));
}

TEST_F(SystemList, SpecialCharactersAndNonAsciiRoundTripAndBadValuesAreRefused) {
  const System odd = MakeSystem("w<1>", "Tom & Jerry's \"big\" <wall>",
                                "C:\\Walls\\\xC3\x9C"
                                "ber \xE6\x9D\xB1\xE4\xBA\xAC\\",
                                "Curved > 180\xC2\xB0", 12, 0, Manager::kLatestTime);
  ASSERT_EQ(Systems->Add(odd), VEK_SUCCESS);
  const std::string text = test::ReadFile(File);
  EXPECT_NE(text.find("<System Id=\"w&lt;1&gt;\" Name=\"Tom &amp; Jerry&apos;s &quot;big&quot; &lt;wall&gt;\" "
                      "BaseDirectory=\"C:\\Walls\\\xC3\x9C"
                      "ber \xE6\x9D\xB1\xE4\xBA\xAC\\\" "
                      "ScreenType=\"Curved &gt; 180\xC2\xB0\" NumProjectors=\"12\" NumCameras=\"0\" "
                      "LastCalibration=\"9999-12-31T23:59:59Z\" Active=\"true\"/>"),
            std::string::npos)
      << text;
  System back;
  ASSERT_EQ(Systems->FindById("w<1>", back), VEK_SUCCESS);
  System expected = odd;
  expected.Active = true;
  EXPECT_TRUE(Same(back, expected));

  // Nothing that XML cannot hold, or that would not read back the same, is written.
  std::vector<System> refused = {MakeSystem("", "No id", "/a/", "Flat", 1, 1),
                                 MakeSystem("tab", "a\tb", "/a/", "Flat", 1, 1),
                                 MakeSystem("line", "a", "/a/\n", "Flat", 1, 1),
                                 MakeSystem("del", "a", "/a/", "Flat\x7F", 1, 1),
                                 MakeSystem("cut\xC3", "a", "/a/", "Flat", 1, 1),
                                 MakeSystem("long", "\xC0\xAF", "/a/", "Flat", 1, 1),
                                 MakeSystem("half", "\xED\xA0\x80", "/a/", "Flat", 1, 1),
                                 MakeSystem("big", "\xF4\x90\x80\x80", "/a/", "Flat", 1, 1),
                                 MakeSystem("neg", "a", "/a/", "Flat", -1, 1),
                                 MakeSystem("negc", "a", "/a/", "Flat", 1, -1),
                                 MakeSystem("past", "a", "/a/", "Flat", 1, 1, -2),
                                 MakeSystem("late", "a", "/a/", "Flat", 1, 1, Manager::kLatestTime + 1)};
  for (const System& s : refused) {
    EXPECT_EQ(Code(Systems->Add(s)), VEK_INVALID_PARAMETERS) << s.Id;
    EXPECT_EQ(Code(Systems->Update(s)), VEK_INVALID_PARAMETERS) << s.Id;
  }
  EXPECT_EQ(test::ReadFile(File), text);
  // The largest code point, and four-byte UTF-8, are fine.
  EXPECT_EQ(Systems->Add(MakeSystem("top", "\xF4\x8F\xBF\xBF \xF0\x9F\x8E\xA5", "/a/", "Flat", 1, 1)), VEK_SUCCESS);
}

TEST_F(SystemList, HandWrittenFilesReadWithDefaultsAndOneActiveSystem) {
  test::WriteFile(File,
                  "<EnterpriseSystemConfiguration>\r\n"
                  "  <!-- kept by hand -->\r\n"
                  "  <System Id='b' Name='B&#233;' Extra='ignored'/>\r\n"
                  "  <Note>not a system</Note>\r\n"
                  "  <System NumCameras=\"2\" Id=\"a\" Active=\"false\" LastCalibration=\"1970-01-01T00:00:00Z\"/>\r\n"
                  "</EnterpriseSystemConfiguration>");
  std::vector<System> systems;
  ASSERT_EQ(Systems->List(systems), VEK_SUCCESS);
  ASSERT_EQ(systems.size(), 2u);
  System b = MakeSystem("b", "B\xC3\xA9", "", "Flat", 0, 0);
  b.Active = true;  // none is marked: the first one is
  EXPECT_TRUE(Same(systems[0], b));
  EXPECT_TRUE(Same(systems[1], MakeSystem("a", "", "", "Flat", 0, 2, 0)));

  test::WriteFile(File,
                  "<EnterpriseSystemConfiguration><System Id=\"a\" Active=\"true\"/><System Id=\"b\" Active=\"true\"/>"
                  "<System Id=\"c\" Active=\"true\"/></EnterpriseSystemConfiguration>");
  EXPECT_EQ(Ids(*Systems), "a* b c");
  ASSERT_EQ(Systems->Remove("c"), VEK_SUCCESS);
  EXPECT_NE(test::ReadFile(File).find("<System Id=\"b\" Name=\"\" BaseDirectory=\"\" ScreenType=\"Flat\" "
                                      "NumProjectors=\"0\" NumCameras=\"0\" LastCalibration=\"\" Active=\"false\"/>"),
            std::string::npos);
}

TEST_F(SystemList, DamagedFilesAreLeftUntouchedUntilCleared) {
  const std::string head = "<?xml version=\"1.0\"?>\n<EnterpriseSystemConfiguration>\n";
  const std::string tail = "</EnterpriseSystemConfiguration>\n";
  struct Case {
    std::string content, fault;
  };
  const std::vector<Case> cases = {
      {"", ": the XML does not parse (XML_ERROR_EMPTY_DOCUMENT)"},
      {head + "<System Id=\"a\">\n", ", line 3: the XML does not parse (XML_ERROR_PARSING)"},
      {"<?xml version=\"1.0\"?>\n<Systems/>\n",
       ", line 2: the root element is Systems, not EnterpriseSystemConfiguration"},
      {head + "<System Id=\"a\"/>\n<System Name=\"x\"/>\n" + tail, ", line 4: a System element has no Id"},
      {head + "<System Id=\"\"/>\n" + tail, ", line 3: a System element has no Id"},
      {head + "<System Id=\"a\"/>\n<System Id=\"a\"/>\n" + tail, ", line 4: the Id \"a\" is repeated"},
      {head + "<System Id=\"a\" NumProjectors=\"-1\"/>\n" + tail,
       ", line 3: NumProjectors \"-1\" is not a whole number from 0 on"},
      {head + "<System Id=\"a\" NumCameras=\"2x\"/>\n" + tail,
       ", line 3: NumCameras \"2x\" is not a whole number from 0 on"},
      {head + "<System Id=\"a\" LastCalibration=\"2023-02-29T00:00:00Z\"/>\n" + tail,
       ", line 3: LastCalibration \"2023-02-29T00:00:00Z\" is not a time like 1970-01-01T00:00:00Z"},
      {head + "<System Id=\"a\" Active=\"yes\"/>\n" + tail, ", line 3: Active \"yes\" is neither true nor false"},
  };
  for (const Case& c : cases) {
    test::WriteFile(File, c.content);
    std::vector<System> systems;
    const int status = Systems->List(systems);
    EXPECT_EQ(Code(status), VEK_FILE_NOT_FORMATTED_PROPERLY) << c.content;
    EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status),
              "The list of display systems " + File + " is damaged" + c.fault + ". The file is left as it is.");
    EXPECT_TRUE(systems.empty());
    System found;
    EXPECT_EQ(Code(Systems->FindById("a", found)), VEK_FILE_NOT_FORMATTED_PROPERLY);
    EXPECT_EQ(Code(Systems->Add(MakeSystem("new", "New", "/n/", "Flat", 1, 1))), VEK_FILE_NOT_FORMATTED_PROPERLY);
    EXPECT_EQ(Code(Systems->Update(MakeSystem("a", "A", "/a/", "Flat", 1, 1))), VEK_FILE_NOT_FORMATTED_PROPERLY);
    EXPECT_EQ(Code(Systems->SetActive("a")), VEK_FILE_NOT_FORMATTED_PROPERLY);
    EXPECT_EQ(Code(Systems->Remove("a")), VEK_FILE_NOT_FORMATTED_PROPERLY);
    EXPECT_EQ(test::ReadFile(File), c.content);
  }
  ASSERT_EQ(Systems->Clear(), VEK_SUCCESS);
  EXPECT_EQ(Ids(*Systems), "");
  EXPECT_EQ(Systems->Add(MakeSystem("new", "New", "/n/", "Flat", 1, 1)), VEK_SUCCESS);
}

TEST(KOREnterpriseSystemManager, TimesAreUtcWithWholeSecondsFrom1970To9999) {
  EXPECT_EQ(Manager::TimeText(0), "1970-01-01T00:00:00Z");
  EXPECT_EQ(Manager::TimeText(kMayFirst), "2024-05-01T10:20:30Z");
  // 2000-01-01 is 30 years with 7 leap days on; then 31 + 28 days to 29 February.
  constexpr std::int64_t kLeapDay = (30 * 365 + 7 + 59) * 86400LL;
  EXPECT_EQ(Manager::TimeText(kLeapDay), "2000-02-29T00:00:00Z");
  EXPECT_EQ(Manager::TimeText(kLeapDay - 1), "2000-02-28T23:59:59Z");
  EXPECT_EQ(Manager::TimeText(Manager::kLatestTime), "9999-12-31T23:59:59Z");
  EXPECT_EQ(Manager::TimeText(Manager::kLatestTime + 1), "");
  EXPECT_EQ(Manager::TimeText(Manager::kNeverCalibrated), "");

  for (std::int64_t t : {std::int64_t{0}, kMayFirst, kLeapDay, kLeapDay - 1, Manager::kLatestTime}) {
    std::int64_t back = 1;
    EXPECT_TRUE(Manager::ParseTime(Manager::TimeText(t), back));
    EXPECT_EQ(back, t);
  }
  std::int64_t never = 5;
  EXPECT_TRUE(Manager::ParseTime("", never));
  EXPECT_EQ(never, Manager::kNeverCalibrated);
  for (const char* wrong :
       {"2023-02-29T00:00:00Z", "1969-12-31T23:59:59Z", "2024-05-01T24:00:00Z", "2024-05-01T10:60:00Z",
        "2024-05-01T10:20:60Z", "2024-13-01T10:20:30Z", "2024-00-10T10:20:30Z", "2024-05-01 10:20:30Z",
        "2024-05-01T10:20:30", "2024-05-01T10:20:30+00", "+024-05-01T10:20:30Z", "2024-5-01T10:20:30Z"}) {
    std::int64_t untouched = 42;
    EXPECT_FALSE(Manager::ParseTime(wrong, untouched)) << wrong;
    EXPECT_EQ(untouched, 42);
  }
}

TEST(KOREnterpriseSystemManager, TwoWritersAddingAtOnceLoseNothing) {
  test::TempDirectory folder;
  const std::string file = folder.File("systems.xml");
  constexpr int kEach = 25;
  auto writer = [&file](const std::string& prefix) {
    auto systems = SmartPointer<Manager>::New();
    systems->SetFileName(file);
    for (int k = 0; k < kEach; ++k)
      EXPECT_EQ(systems->Add(MakeSystem(prefix + std::to_string(k), "Wall", "/w/", "Flat", 1, 1)), VEK_SUCCESS);
  };
  std::thread first(writer, "A"), second(writer, "B");
  first.join();
  second.join();

  auto systems = SmartPointer<Manager>::New();
  systems->SetFileName(file);
  std::vector<System> all;
  ASSERT_EQ(systems->List(all), VEK_SUCCESS);
  std::set<std::string> ids;
  int active = 0;
  for (const System& s : all) {
    ids.insert(s.Id);
    active += s.Active;
  }
  EXPECT_EQ(all.size(), 2u * kEach);
  EXPECT_EQ(ids.size(), 2u * kEach);
  EXPECT_EQ(active, 1);
}

class SystemListInStore : public test::StoreTest {};

TEST_F(SystemListInStore, TheFileIsInTheConfigurationDirectory) {
  auto systems = SmartPointer<Manager>::New();
  EXPECT_EQ(systems->GetFileName(), ClassInitializer::GetInstance()->GetConfigDirectoryName() + "systems.xml");
  ASSERT_EQ(systems->Add(MakeSystem("lobby", "Lobby", "/l/", "Flat", 2, 1)), VEK_SUCCESS);
  EXPECT_TRUE(std::filesystem::exists(ClassInitializer::GetInstance()->GetConfigDirectoryName() + "systems.xml"));
}

}  // namespace
}  // namespace vek
