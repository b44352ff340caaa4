#pragma once
#include <string>

#include "vekCommonExport.h"
#include "vekErrorCodes.h"
#include "vekErrorMetadata.h"

namespace vek {

class CustomLanguageString;

/// Interprets status codes: success tests, comparison ignoring the custom-message flag (0x8000),
/// messages, names, and the one process-wide record of the last error's extra information.
///
/// The record is replaced, never accumulated: a custom message, RestoreError and GetErrorMetadata
/// for another code each overwrite it. It has no lock; errors are raised and read on one thread.
/// Fetching a message with its extras also logs it: "ERROR:" lines for failures, "Message:" lines
/// for success.
class VEK_EXPORT ErrorHelper {
 public:
  static bool Succeeded(const int& code) { return code == VEK_SUCCESS; }
  static int DoesErrorHaveCustomMessage(int code) { return code & VEK_CUSTOM_MESSAGE_FLAG; }
  static int DoesErrorHaveIntlCustomMessage(int code);
  static int AreErrorsTheSame(int a, int b);
  static int GetErrorWithoutCustomMessageFlag(int code) { return code & 0x7FFF; }

  /// Returns code | 0x8000. A non-empty message replaces the last error record (dropping earlier
  /// attachments); an empty one changes nothing.
  static int ErrorWithCustomMessage(int code, const std::string& message);
  /// As above with the English text; then the current record (replaced or not: an empty English
  /// text leaves it in place) gets the text in the user's language.
  static int ErrorWithCustomMessage(int code, const CustomLanguageString& message);
  /// Copies a saved record back and returns its code.
  static int RestoreError(const ErrorMetadata* const metadata);
  /// The last error record when it is about `code` (flag ignored); otherwise a fresh record for
  /// `code` replaces it. Callers attach projectors, cameras and images to it.
  static ErrorMetadata* GetErrorMetadata(const int& code);

  /// Flagged codes: the record's custom message; others: the default message.
  static std::string GetErrorMessageWithNoExtras(const int& code);
  /// The message + " (Error N)" with the unflagged value N; logs the text.
  static std::string GetErrorMessageWithExtras(const int& code);
  static std::wstring GetErrorMessageIntlWithNoExtras(const int& code);
  static std::wstring GetErrorMessageIntlWithExtras(const int& code);

  /// The symbolic name ("VEK_FILE_NOT_FOUND"), flag ignored; "" for unnamed or unknown values.
  static std::string GetErrorName(int code);
  /// Whether the catalogue has a message for the code, flag ignored, named or not. Values outside
  /// 0 .. 0xFFFF are never codes: the flag is the highest bit a code carries.
  static bool IsKnownCode(int code);

  /// Destroys the last error record (at shutdown); the next use makes a fresh one.
  static void CleanUp();

 private:
  ErrorHelper() = delete;

  static std::string GetDefaultErrorMessage(const int& code);
  static std::string GetCustomErrorMessage();
  static ErrorMetadata& Record();

  static ErrorMetadata* m_ErrorMetadataPointer;
};

}  // namespace vek
