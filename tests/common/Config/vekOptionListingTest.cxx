#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "vekErrorHelper.h"
#include "vekOptionListing.h"
#include "vekStoreTestFixture.h"

namespace vek {
namespace {

using OptionListingTest = test::StoreTest;
using Entry = OptionListing::Entry;

std::string Show(const Entry& e) {
  return e.Name + "|" + e.Type + "|" + e.Value + "|" + std::to_string(static_cast<int>(e.From));
}

std::vector<std::string> Shown(const std::vector<Entry>& entries) {
  std::vector<std::string> shown;
  for (const Entry& e : entries) shown.push_back(Show(e));
  return shown;
}

TEST_F(OptionListingTest, ValuesComeFromOptionsThenDefaultsThenInfo) {
  test::WriteFile(Store->GetOptionsFileName(), "A = 1\n# C = 5\nB = two words \nA = 2\r\n\n");
  test::WriteFile(Store->GetDefaultsFileName(), "D = 4\nA = 9\n");
  test::WriteFile(Store->GetOptionInfoFileName(), "# comment\nA\tInt\t2\t7\nE\tBool\t2\tTRUE\nB\tString\t2\n");
  std::vector<Entry> entries;
  ASSERT_EQ(OptionListing::List(*Store, false, entries), 0);
  EXPECT_EQ(Shown(entries), std::vector<std::string>({"A|Int|2|1", "B|String|two words |1"}));
  ASSERT_EQ(OptionListing::List(*Store, true, entries), 0);
  EXPECT_EQ(Shown(entries),
            std::vector<std::string>({"A|Int|2|1", "B|String|two words |1", "E|Bool|1|3", "D|Unknown|4|2"}));

  Entry entry;
  for (const auto& [key, shown] : std::vector<std::pair<std::string, std::string>>{
           {"A", "A|Int|2|1"}, {"D", "D|Unknown|4|2"}, {"E", "E|Bool|1|3"}, {"Z", "Z|Unknown||0"}}) {
    ASSERT_EQ(OptionListing::Find(*Store, key, entry), 0);
    EXPECT_EQ(Show(entry), shown);
  }
}

TEST_F(OptionListingTest, DamagedLinesAndUnloadedStoresFail) {
  test::WriteFile(Store->GetOptionsFileName(), "A = 1\nBare\n");
  std::vector<Entry> entries;
  int status = OptionListing::List(*Store, false, entries);
  EXPECT_EQ(status, VEK_FILE_NOT_FORMATTED_PROPERLY | VEK_CUSTOM_MESSAGE_FLAG);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status),
            Store->GetOptionsFileName() + ", line 2: the option store cannot read this line");
  Entry entry;
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(OptionListing::Find(*Store, "A", entry)),
            VEK_FILE_NOT_FORMATTED_PROPERLY);
  auto unloaded = SmartPointer<ConfigurationDatabase>::New();
  EXPECT_EQ(OptionListing::List(*unloaded, true, entries), VEK_FILE_NOT_FOUND);
}

}  // namespace
}  // namespace vek
