#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "vekErrorHelper.h"
#include "vekOptionValueCheck.h"
#include "vekStoreTestFixture.h"

namespace vek {
namespace {

TEST(OptionValueCheck, AcceptsWhatTheStoreKeepsAsTyped) {
  const std::vector<std::pair<std::string, std::string>> accepted = {
      {"Int", "3"},          {"Int", "-7"},          {"Int", "+3"},          {"Int", "2147483647"},
      {"Float", "0.75"},     {"Float", "-1e-05"},    {"Float", "+2"},        {"Float", "3.4e38"},
      {"Double", "1e300"},   {"Bool", "TRUE"},       {"Bool", "false"},      {"Bool", "1"},
      {"Bool", "0"},         {"String", ""},         {"String", "two words"}, {"IntArray", "1 -2 3"},
      {"FloatArray", "1 2.5\t3"}, {"BoolArray", "true 0"}, {"StringArray", ""}, {"StringArray", "a,b c"}};
  for (const auto& [type, text] : accepted) EXPECT_EQ(OptionValueCheck::Check(type, text), 0) << type << " " << text;
}

TEST(OptionValueCheck, RefusalsNameTheValueAndTheType) {
  const std::vector<std::vector<std::string>> refused = {
      {"Int", "3.5", "\"3.5\" is no Int"},
      {"Int", " 3", "\" 3\" is no Int"},
      {"Int", "", "\"\" is no Int"},
      {"Int", "2147483648", "\"2147483648\" is beyond the Int range"},
      {"Float", "abc", "\"abc\" is no Float"},
      {"Float", "0x10", "\"0x10\" is no Float"},
      {"Float", "1e39", "\"1e39\" is beyond the Float range"},
      {"Double", "1e400", "\"1e400\" is beyond the Double range"},
      {"Double", "inf", "\"inf\" is beyond the Double range"},
      {"Double", "nan", "\"nan\" is no Double"},
      {"Bool", "2", "\"2\" is no Bool"},
      {"Bool", "yes", "\"yes\" is no Bool"},
      {"FloatArray", "1,2,3",
       "\"1,2,3\" is no FloatArray: element \"1,2,3\" is no Float (elements are separated by blanks)"},
      {"IntArray", "1 2.5", "\"1 2.5\" is no IntArray: element \"2.5\" is no Int (elements are separated by blanks)"},
      {"IntArray", "", "\"\" is no IntArray: the list is empty"},
      {"float", "1",
       "\"float\" is no option type (Int, Float, Double, Bool, String, IntArray, FloatArray, BoolArray, StringArray)"},
      {"Array", "1", "\"Array\" is no option type"},
  };
  for (const auto& c : refused) {
    const int status = OptionValueCheck::Check(c[0], c[1]);
    EXPECT_EQ(status, VEK_INVALID_PARAMETERS | VEK_CUSTOM_MESSAGE_FLAG) << c[0] << " " << c[1];
    EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status).rfind(c[2], 0), 0u)
        << ErrorHelper::GetErrorMessageWithNoExtras(status);
  }
}

using OptionValueCheckStore = test::StoreTest;

TEST_F(OptionValueCheckStore, RefusesAnotherTypeThanTheDescribedOne) {
  test::WriteFile(Store->GetOptionInfoFileName(), "Gain\tInt\t2\t5\n");
  EXPECT_EQ(OptionValueCheck::Check(*Store, "Gain", "Int", "4"), 0);
  EXPECT_EQ(OptionValueCheck::Check(*Store, "Other", "Float", "0.5"), 0);
  const int status = OptionValueCheck::Check(*Store, "Gain", "Float", "0.75");
  EXPECT_EQ(status, VEK_INVALID_PARAMETERS | VEK_CUSTOM_MESSAGE_FLAG);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status), "Gain is described as Int, not Float");
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(OptionValueCheck::Check(*Store, "Gain", "Int", "x")),
            "\"x\" is no Int");
  std::filesystem::remove(Store->GetOptionInfoFileName());  // nothing described: any type
  EXPECT_EQ(OptionValueCheck::Check(*Store, "Gain", "Float", "0.75"), 0);
}

}  // namespace
}  // namespace vek
