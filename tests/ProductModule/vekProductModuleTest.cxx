#include <gtest/gtest.h>

#include <map>
#include <string>

#include "vekErrorCodes.h"
#include "vekKORProductConfiguration.h"
#include "vekLanguageTables.h"
#include "vekPlatform.h"
#include "vekProductModule.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

// Every test loads the sample module (the first load stays for the whole program; later ones
// change nothing) and works in English unless it says otherwise.
class SampleProduct : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(ProductModule::Load(VEK_SAMPLE_PRODUCT_MODULE_DIR));
    LanguageTables::SetLanguage("en");
  }
  void TearDown() override { LanguageTables::SetLanguage("en"); }
};

TEST_F(SampleProduct, FactsAndSwitchesComeFromTheModule) {
  test::LogCapture log;
  auto product = SmartPointer<KORProductConfiguration>::New();
  ASSERT_EQ(product->Load(), VEK_SUCCESS);
  EXPECT_EQ(product->GetSourceName(), "KORProductConfiguration.dll");
  EXPECT_EQ(product->GetProductName(), "Sample Wall Studio");
  EXPECT_EQ(product->GetEdition(), "Enterprise");
  EXPECT_EQ(product->GetVersion(), "3.2.1");
  EXPECT_EQ(product->GetBuild(), "2024.11-417");
  EXPECT_EQ(product->GetMaxProjectors(), 24);
  EXPECT_EQ(product->GetMaxCameras(), 6);
  EXPECT_EQ(product->GetFeatures(),
            (std::map<std::string, bool>{{"DomeScreens", false}, {"EdgeBlending", true}, {"MultiCamera", true}}));
  EXPECT_FALSE(product->IsFeatureEnabled("Stereo"));
  EXPECT_TRUE(product->IsFromResource("Build"));
  EXPECT_EQ(product->GetNumberOfBadLines(), 0);
  EXPECT_EQ(log.Text(), "");

  const std::string folder = ProductModule::GetDirectory();
  ASSERT_FALSE(folder.empty());
  EXPECT_EQ(folder.back(), platform::PathSeparator());
  EXPECT_FALSE(test::ReadFile(folder + ProductModule::FileName()).empty());
}

TEST_F(SampleProduct, TextsJoinTheLanguageTablesOverTheLibrarys) {
  EXPECT_EQ(LanguageTables::GetText("KOR_PRODUCT_TITLE"), L"Sample Wall Studio");
  EXPECT_EQ(LanguageTables::GetText("KOR_PRODUCT_WELCOME"),
            L"Welcome to Sample Wall Studio.\nCalibrate a wall in minutes.");
  // The product's text replaces the library's, which stays the English default.
  EXPECT_EQ(LanguageTables::GetText("VEK_FILE_NOT_FOUND"), L"Sample Wall Studio cannot find a file");
  EXPECT_EQ(LanguageTables::GetDefaultText("VEK_FILE_NOT_FOUND"), L"File Not Found");
  EXPECT_EQ(LanguageTables::GetText("VEK_INVALID_PARAMETERS"), L"Invalid parameter.");

  LanguageTables::SetLanguage("de");
  EXPECT_EQ(LanguageTables::GetText("KOR_PRODUCT_TITLE"), L"Beispiel-Wandstudio");
  EXPECT_EQ(LanguageTables::GetText("KOR_PRODUCT_WELCOME"),
            L"Willkommen im Beispiel-Wandstudio.\nEine Wand in Minuten kalibrieren \u2013 schnell & genau.");
  EXPECT_NE(LanguageTables::GetText("VEK_FILE_NOT_FOUND"), L"Sample Wall Studio cannot find a file");
}

TEST_F(SampleProduct, AFolderWithoutTheModuleChangesNothing) {
  const std::string before = ProductModule::GetDirectory();
  test::TempDirectory empty;
  EXPECT_FALSE(ProductModule::Load(empty.Path().string()));
  EXPECT_EQ(ProductModule::GetDirectory(), before);
  auto product = SmartPointer<KORProductConfiguration>::New();
  ASSERT_EQ(product->Load(), VEK_SUCCESS);
  EXPECT_EQ(product->GetMaxCameras(), 6);
}

}  // namespace
}  // namespace vek
