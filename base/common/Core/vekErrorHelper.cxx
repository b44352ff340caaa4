#include "vekErrorHelper.h"

#include "vekCustomLanguageString.h"
#include "vekErrorTable.h"
#include "vekOutputFile.h"
#include "vekOutputMessages.h"
#include "vekTextConversion.h"

namespace vek {

ErrorMetadata* ErrorHelper::m_ErrorMetadataPointer = nullptr;

namespace {

constexpr char kUnknownMessage[] = "Unknown Error Message";

struct ErrorRecordCleanup {
  ~ErrorRecordCleanup() { ErrorHelper::CleanUp(); }
};
const ErrorRecordCleanup g_errorRecordCleanup;

}  // namespace

ErrorMetadata& ErrorHelper::Record() {
  if (!m_ErrorMetadataPointer) m_ErrorMetadataPointer = new ErrorMetadata;
  return *m_ErrorMetadataPointer;
}

int ErrorHelper::DoesErrorHaveIntlCustomMessage(int code) {
  return DoesErrorHaveCustomMessage(code) && !Record().GetCustomErrorMessageIntl().empty() ? 1 : 0;
}

int ErrorHelper::AreErrorsTheSame(int a, int b) {
  return (a | VEK_CUSTOM_MESSAGE_FLAG) == (b | VEK_CUSTOM_MESSAGE_FLAG) ? 1 : 0;
}

int ErrorHelper::ErrorWithCustomMessage(int code, const std::string& message) {
  int flagged = code | VEK_CUSTOM_MESSAGE_FLAG;
  if (message.empty()) return flagged;
  Record() = ErrorMetadata(flagged);
  Record().SetCustomErrorMessage(message);
  return flagged;
}

int ErrorHelper::ErrorWithCustomMessage(int code, const CustomLanguageString& message) {
  std::string english = WideToUtf8(message.GetDefaultOutput());
  int flagged = ErrorWithCustomMessage(code, english);
  // A key translated only into the user's language still reaches the user through the record.
  Record().SetCustomErrorMessageIntl(message.GetOutput());
  return flagged;
}

int ErrorHelper::RestoreError(const ErrorMetadata* const metadata) {
  Record() = *metadata;
  return metadata->GetErrorCode();
}

ErrorMetadata* ErrorHelper::GetErrorMetadata(const int& code) {
  if (!AreErrorsTheSame(Record().GetErrorCode(), code)) Record() = ErrorMetadata(code);
  return &Record();
}

std::string ErrorHelper::GetErrorMessageWithNoExtras(const int& code) {
  return DoesErrorHaveCustomMessage(code) ? GetCustomErrorMessage() : GetDefaultErrorMessage(code);
}

std::string ErrorHelper::GetErrorMessageWithExtras(const int& code) {
  std::string text =
      GetErrorMessageWithNoExtras(code) + " (Error " + std::to_string(GetErrorWithoutCustomMessageFlag(code)) + ")";
  if (code != VEK_SUCCESS)
    VEK_REPORT_ERROR(text);
  else
    VEK_REPORT(OutputFile::Error, "Message:", text);
  return text;
}

std::wstring ErrorHelper::GetErrorMessageIntlWithNoExtras(const int& code) {
  if (DoesErrorHaveIntlCustomMessage(code)) return Record().GetCustomErrorMessageIntl();
  return Utf8ToWide(GetErrorMessageWithNoExtras(code));
}

std::wstring ErrorHelper::GetErrorMessageIntlWithExtras(const int& code) {
  if (!DoesErrorHaveIntlCustomMessage(code)) return Utf8ToWide(GetErrorMessageWithExtras(code));
  std::wstring text = Record().GetCustomErrorMessageIntl() + L" (Error " +
                      std::to_wstring(GetErrorWithoutCustomMessageFlag(code)) + L")";
  VEK_REPORT_ERROR(WideToUtf8(text));
  return text;
}

std::string ErrorHelper::GetErrorName(int code) {
  const ErrorTableRow* row = FindErrorTableRow(GetErrorWithoutCustomMessageFlag(code));
  return row ? row->name : "";
}

bool ErrorHelper::IsKnownCode(int code) {
  return code >= 0 && code <= 0xFFFF && FindErrorTableRow(GetErrorWithoutCustomMessageFlag(code)) != nullptr;
}

std::string ErrorHelper::GetDefaultErrorMessage(const int& code) {
  int plain = code;
  if (DoesErrorHaveCustomMessage(code)) {
    VEK_REPORT_CODER("Should never get here");
    plain = GetErrorWithoutCustomMessageFlag(code);
  }
  const ErrorTableRow* row = FindErrorTableRow(plain);
  return row ? row->message : kUnknownMessage;
}

std::string ErrorHelper::GetCustomErrorMessage() { return Record().GetCustomErrorMessage(); }

void ErrorHelper::CleanUp() {
  delete m_ErrorMetadataPointer;
  m_ErrorMetadataPointer = nullptr;
}

}  // namespace vek
