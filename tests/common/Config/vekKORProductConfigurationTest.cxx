#include <gtest/gtest.h>

#include <map>
#include <string>

#include "vekErrorCodes.h"
#include "vekKORProductConfiguration.h"
#include "vekLanguageTables.h"
#include "vekProductModule.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"
#include "vekVersion.h"

namespace vek {
namespace {

using Product = KORProductConfiguration;

// This program runs without a companion module: beside the library there is none.
TEST(KORProductConfiguration, WithoutTheModuleEveryFactIsItsDefaultAndNothingIsReported) {
  test::LogCapture log;
  auto product = SmartPointer<Product>::New();
  ASSERT_EQ(product->Load(), VEK_SUCCESS);
  EXPECT_EQ(product->GetSourceName(), "");
  EXPECT_EQ(product->GetProductName(), "vek");
  EXPECT_EQ(product->GetEdition(), "Standard");
  EXPECT_EQ(product->GetVersion(), VEK_VERSION_STRING);
  EXPECT_EQ(product->GetBuild(), "0");
  EXPECT_EQ(product->GetMaxProjectors(), 64);
  EXPECT_EQ(product->GetMaxCameras(), 16);
  EXPECT_TRUE(product->GetFeatures().empty());
  EXPECT_FALSE(product->IsFeatureEnabled("EdgeBlending"));
  EXPECT_FALSE(product->IsFromResource("ProductName"));
  EXPECT_EQ(ProductModule::GetDirectory(), "");
  EXPECT_EQ(LanguageTables::GetText("KOR_PRODUCT_TITLE"), L"");

  // A module that is not loaded is no error either.
  ASSERT_EQ(product->ReadFromModule("NoSuchProduct.dll"), VEK_SUCCESS);
  EXPECT_EQ(product->GetMaxCameras(), 16);
  test::TempDirectory empty;
  EXPECT_FALSE(ProductModule::Load(empty.Path().string()));
  EXPECT_EQ(log.Text(), "");
}

TEST(KORProductConfiguration, ReadsEveryKeyWhateverTheLayout) {
  test::LogCapture log;
  auto product = SmartPointer<Product>::New();
  const std::string text =
      "\xEF\xBB\xBF# made up\r\n"
      "ProductName=Wall  Works\r\n"
      "  \t# indented comment\r\n"
      "\r\n"
      "Edition\t =\tLumi\xC3\xA8re \r\n"  // UTF-8 kept byte for byte
      "Version = 1.0\n"
      "Version = 2.5.0-rc1\n"  // a later line wins
      "Build = 77=seventy-seven\n"
      "MaxProjectors = 1\n"
      "MaxCameras = 10000\n"
      "Feature.A = ON\nFeature.B = true\nFeature.C = yes\nFeature.D = 1\n"
      "Feature.E = Off\nFeature.F = FALSE\nFeature.G = no\nFeature.H_2 = 0";  // no final line end
  ASSERT_EQ(product->ReadFromText(text, "Sample"), VEK_SUCCESS);
  EXPECT_EQ(product->GetSourceName(), "Sample");
  EXPECT_EQ(product->GetProductName(), "Wall  Works");
  EXPECT_EQ(product->GetEdition(), "Lumi\xC3\xA8re");
  EXPECT_EQ(product->GetVersion(), "2.5.0-rc1");
  EXPECT_EQ(product->GetBuild(), "77=seventy-seven");
  EXPECT_EQ(product->GetMaxProjectors(), 1);
  EXPECT_EQ(product->GetMaxCameras(), 10000);
  const std::map<std::string, bool> switches = {{"A", true},  {"B", true},  {"C", true},  {"D", true},
                                                {"E", false}, {"F", false}, {"G", false}, {"H_2", false}};
  EXPECT_EQ(product->GetFeatures(), switches);
  EXPECT_TRUE(product->IsFeatureEnabled("A"));
  EXPECT_FALSE(product->IsFeatureEnabled("a"));  // names are case-sensitive
  EXPECT_TRUE(product->IsFromResource("Feature.H_2"));
  EXPECT_TRUE(product->IsFromResource("MaxCameras"));
  EXPECT_EQ(product->GetNumberOfBadLines(), 0);
  EXPECT_EQ(log.Text(), "");

  // Reading again starts from the defaults.
  ASSERT_EQ(product->ReadFromText("MaxCameras = 3\n", "Other"), VEK_SUCCESS);
  EXPECT_EQ(product->GetProductName(), "vek");
  EXPECT_EQ(product->GetMaxCameras(), 3);
  EXPECT_TRUE(product->GetFeatures().empty());
  EXPECT_FALSE(product->IsFromResource("Feature.A"));
}

TEST(KORProductConfiguration, BadLinesKeepTheirDefaultsWithOneWarningNamingTheFirst) {
  test::LogCapture log;
  auto product = SmartPointer<Product>::New();
  const std::string text =
      "ProductName = Wall One\n"
      "# fine so far\n"
      "MaxProjectors = many\n"
      "MaxCameras = 10001\n"
      "MaxCameras = 0\n"
      "Feature.Blend = maybe\n"
      "Feature.Bad-Name = on\n"
      "Feature. = on\n"
      "Edition =\n"
      "Colour = blue\n"
      "just words\n"
      "Feature.Warp = off\n"
      "MaxProjectors = +5\n"
      "MaxProjectors = 12abc\n";
  ASSERT_EQ(product->ReadFromText(text, "Damaged.dll"), VEK_SUCCESS);
  EXPECT_EQ(product->GetProductName(), "Wall One");
  EXPECT_EQ(product->GetEdition(), "Standard");
  EXPECT_EQ(product->GetMaxProjectors(), 64);
  EXPECT_EQ(product->GetMaxCameras(), 16);
  EXPECT_EQ(product->GetFeatures(), (std::map<std::string, bool>{{"Warp", false}}));
  EXPECT_FALSE(product->IsFromResource("MaxProjectors"));
  EXPECT_EQ(product->GetNumberOfBadLines(), 11);

  const std::string logged = log.Text();
  const std::string warning =
      ": PRODUCT_CONFIG of Damaged.dll, line 3 \"MaxProjectors = many\": MaxProjectors is not a whole number from 1 "
      "to 10000; 11 lines passed over, their facts keep their defaults.\n";
  EXPECT_EQ(logged.find("WARNING:vekKORProductConfiguration, "), 0u) << logged;
  EXPECT_EQ(logged.size() - logged.find(warning), warning.size()) << logged;
  EXPECT_EQ(logged.find("WARNING:", 1), std::string::npos) << logged;

  // What each kind of bad line is told.
  for (const auto& [line, why] : std::map<std::string, std::string>{
           {"Feature.Blend = maybe", "a feature switch is on or off"},
           {"Feature.Bad-Name = on", "a feature name is letters, digits and underscores"},
           {"Edition =", "Edition is empty"},
           {"Colour = blue", "unknown key \"Colour\""},
           {"just words", "no \"=\" between key and value"}}) {
    test::LogCapture one;
    product->ReadFromText(line + "\n", "One");
    EXPECT_NE(one.Text().find("line 1 \"" + line + "\": " + why + "; 1 line passed over"), std::string::npos)
        << one.Text();
  }
}

}  // namespace
}  // namespace vek
