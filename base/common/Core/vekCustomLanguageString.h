#pragma once
#include <string>

#include "vekCommonExport.h"

namespace vek {

/// A message in two languages at once: the user's language and the default (English) one, both
/// taken from the language tables by key. Values streamed in fill the numbered placeholders in
/// order: the k-th value (from 0) replaces the first "{k}" of each text; a text without "{k}" just
/// does not show that value.
///   CustomLanguageString("VEK_FILE_NOT_FOUND_CUSTOM") << fileName
class VEK_EXPORT CustomLanguageString {
 public:
  explicit CustomLanguageString(const std::string& key);

  std::wstring GetOutput() const { return Output; }
  std::wstring GetDefaultOutput() const { return DefaultOutput; }

  /// Numbers are printed by a wide string stream in its default formatting.
  template <class T>
  CustomLanguageString& operator<<(T value);
  /// Narrow text is taken as UTF-8.
  CustomLanguageString& operator<<(const std::string& value);
  CustomLanguageString& operator<<(const char* value);
  CustomLanguageString& operator<<(const std::wstring& value);
  CustomLanguageString& operator<<(const wchar_t* value);

  /// Appends one blank and the code's message (by its symbolic name) to each text.
  void AppendDefaultErrorMessage(int code);

 private:
  void FillNextPlaceholder(const std::wstring& value);

  std::wstring Output;
  std::wstring DefaultOutput;
  int NextPlaceholder = 0;
};

#define VEK_CUSTOM_LANGUAGE_STRING_VALUE(T) \
  extern template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <T>(T);
VEK_CUSTOM_LANGUAGE_STRING_VALUE(bool)
VEK_CUSTOM_LANGUAGE_STRING_VALUE(short)
VEK_CUSTOM_LANGUAGE_STRING_VALUE(unsigned short)
VEK_CUSTOM_LANGUAGE_STRING_VALUE(int)
VEK_CUSTOM_LANGUAGE_STRING_VALUE(unsigned int)
VEK_CUSTOM_LANGUAGE_STRING_VALUE(long)
VEK_CUSTOM_LANGUAGE_STRING_VALUE(unsigned long)
VEK_CUSTOM_LANGUAGE_STRING_VALUE(float)
VEK_CUSTOM_LANGUAGE_STRING_VALUE(double)
VEK_CUSTOM_LANGUAGE_STRING_VALUE(long double)
#undef VEK_CUSTOM_LANGUAGE_STRING_VALUE

}  // namespace vek
