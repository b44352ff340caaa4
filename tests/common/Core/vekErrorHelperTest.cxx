#include <gtest/gtest.h>

#include <regex>

#include "vekCustomLanguageString.h"
#include "vekErrorAction.h"
#include "vekErrorHelper.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

TEST(ErrorHelper, FlagArithmetic) {
  EXPECT_TRUE(ErrorHelper::Succeeded(0));
  EXPECT_FALSE(ErrorHelper::Succeeded(0x8000));
  EXPECT_EQ(ErrorHelper::AreErrorsTheSame(79, 79 | 0x8000), 1);
  EXPECT_EQ(ErrorHelper::AreErrorsTheSame(79, 78), 0);
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(0x18000 | 79), 79);
  EXPECT_NE(ErrorHelper::DoesErrorHaveCustomMessage(79 | 0x8000), 0);
  EXPECT_EQ(ErrorHelper::DoesErrorHaveCustomMessage(79), 0);
}

TEST(ErrorHelper, NamesAndDefaultMessages) {
  EXPECT_EQ(ErrorHelper::GetErrorName(VEK_FILE_NOT_FOUND), "VEK_FILE_NOT_FOUND");
  EXPECT_EQ(ErrorHelper::GetErrorName(79 | 0x8000), "VEK_FILE_NOT_FOUND");
  EXPECT_EQ(ErrorHelper::GetErrorName(0), "VEK_SUCCESS");
  EXPECT_EQ(ErrorHelper::GetErrorName(580), "VEK_GDI_PLUS_NOT_INITIALIZED");
  EXPECT_EQ(ErrorHelper::GetErrorName(55), "");  // a message without a name
  EXPECT_EQ(ErrorHelper::GetErrorName(581), "");
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(55), "Improper setup of display based on networked computers.");
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(581), "Unknown Error Message");
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(2), "Unknown Error Message");
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(48),
            "Unable to instantiate an ActiveX Control for the Camera\r\nActiveX DLLs require pre-registration. To "
            "repair, please run the software setup script");
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(308), ErrorHelper::GetErrorMessageWithNoExtras(311));
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(366), ErrorHelper::GetErrorMessageWithNoExtras(427));
}

TEST(ErrorHelper, KnownCodesAreTheCatalogueWithOrWithoutTheFlag) {
  for (int code : {0, 55, 79, 79 | 0x8000, 580, 580 | 0x8000}) EXPECT_TRUE(ErrorHelper::IsKnownCode(code)) << code;
  for (int code : {2, 581, 0x7FFF, 40000, 0x10000 | 79, -1, -79}) EXPECT_FALSE(ErrorHelper::IsKnownCode(code)) << code;
}

TEST(ErrorHelper, FetchingWithExtrasLogsTheMessage) {
  test::LogCapture log;
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithExtras(79), "File Not Found (Error 79)");
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithExtras(0), "All is Good (Error 0)");
  EXPECT_TRUE(std::regex_match(log.Text(), std::regex("ERROR:vekErrorHelper, [0-9]+: File Not Found \\(Error 79\\)\n"
                                                      "Message:vekErrorHelper, [0-9]+: All is Good \\(Error 0\\)\n")))
      << log.Text();
  EXPECT_EQ(ErrorHelper::GetErrorMessageIntlWithExtras(79), L"File Not Found (Error 79)");
}

TEST(ErrorHelper, CustomMessagesReplaceTheRecord) {
  ErrorHelper::GetErrorMetadata(5)->AttachCamera(3);
  EXPECT_EQ(ErrorHelper::ErrorWithCustomMessage(74, ""), 0x804A);
  EXPECT_EQ(ErrorHelper::GetErrorMetadata(5)->GetNumAttachedCameras(), 1);  // untouched

  int code = ErrorHelper::ErrorWithCustomMessage(VEK_FILE_NOT_FOUND, "No lens file c:/lens.txt");
  EXPECT_EQ(code, 79 | 0x8000);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(code), "No lens file c:/lens.txt");
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(79), "File Not Found");
  EXPECT_EQ(ErrorHelper::DoesErrorHaveIntlCustomMessage(code), 0);
  EXPECT_EQ(ErrorHelper::GetErrorMessageIntlWithNoExtras(code), L"No lens file c:/lens.txt");
  EXPECT_FALSE(ErrorHelper::GetErrorMetadata(code)->HasAttachedCamera());  // earlier attachments dropped
}

TEST(ErrorHelper, MetadataIsKeptPerCodeAndCanBeRestored) {
  ErrorMetadata* first = ErrorHelper::GetErrorMetadata(VEK_TOO_FEW_SPOTS_FOUND);
  first->AttachProjector(2);
  first->AttachProjector(4);
  ErrorMetadata* again = ErrorHelper::GetErrorMetadata(VEK_TOO_FEW_SPOTS_FOUND | 0x8000);
  EXPECT_EQ(again, first);
  EXPECT_EQ(again->GetAttachedProjectors(), (std::vector<int>{2, 4}));
  auto image = SmartPointer<ImageContainer>::New();
  ASSERT_EQ(image->Allocate(4, 2, 3, 16), VEK_SUCCESS);
  again->AttachImage(image);
  EXPECT_EQ(again->GetJavaAttachedImage(0), image.GetPointer());
  EXPECT_EQ(image->GetReferenceCount(), 2);

  ErrorMetadata saved = *again;
  ErrorMetadata* other = ErrorHelper::GetErrorMetadata(VEK_FAILURE);
  EXPECT_FALSE(other->HasAttachedProjector());
  EXPECT_EQ(image->GetReferenceCount(), 2);  // the saved copy holds it
  EXPECT_EQ(ErrorHelper::RestoreError(&saved), VEK_TOO_FEW_SPOTS_FOUND);
  EXPECT_EQ(ErrorHelper::GetErrorMetadata(VEK_TOO_FEW_SPOTS_FOUND)->GetNumAttachedProjectors(), 2);
  EXPECT_EQ(ErrorHelper::GetErrorMetadata(VEK_TOO_FEW_SPOTS_FOUND)->GetNumAttachedImages(), 1);
}

TEST(ErrorHelper, TranslatedCustomMessageCarriesBothLanguages) {
  CustomLanguageString message("VEK_FILE_NOT_FOUND_CUSTOM");
  message << std::string("grid.txt");
  int code = ErrorHelper::ErrorWithCustomMessage(VEK_FILE_NOT_FOUND, message);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(code), "File Not Found: grid.txt");
  EXPECT_EQ(ErrorHelper::GetErrorMessageIntlWithNoExtras(code), message.GetOutput());
}

TEST(ImageContainer, RejectsUnsupportedLayouts) {
  auto image = SmartPointer<ImageContainer>::New();
  EXPECT_EQ(image->Allocate(2, 2, 2, 8), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(image->Allocate(2, 2, 1, 12), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(image->Allocate(-1, 2, 1, 8), VEK_INVALID_PARAMETERS);
  ASSERT_EQ(image->Allocate(3, 2, 3, 8), VEK_SUCCESS);
  image->SetValue(2, 1, 2, 300);
  EXPECT_EQ(image->GetValue(2, 1, 2), 300 % 256);
  EXPECT_EQ(image->GetData8()[(1 * 3 + 2) * 3 + 2], 300 % 256);
}

struct AlwaysRetry : ErrorActionCallback {
  ErrorAction GetErrorAction(const int&, const ErrorAction&) override { return ErrorAction::Retry; }
};

TEST(ErrorActionGlobalCallback, AnswersWithTheCallbackOrTheDefault) {
  EXPECT_EQ(ErrorActionGlobalCallback::GetErrorAction(79, ErrorAction::Abort), ErrorAction::Abort);
  AlwaysRetry retry;
  ErrorActionGlobalCallback::SetErrorActionCallback(&retry);
  EXPECT_TRUE(ErrorActionGlobalCallback::HasErrorActionCallback());
  EXPECT_EQ(ErrorActionGlobalCallback::GetErrorAction(79, ErrorAction::Abort), ErrorAction::Retry);
  ErrorActionGlobalCallback::SetErrorActionCallback(nullptr);
  EXPECT_FALSE(ErrorActionGlobalCallback::HasErrorActionCallback());
  auto fromGui = ErrorActionGlobalCallback::GetErrorActionAndPreferenceFromGui(79, ErrorAction::Skip);
  EXPECT_EQ(fromGui.Action, ErrorAction::Skip);
  EXPECT_EQ(fromGui.Preference, 0);
}

}  // namespace
}  // namespace vek
