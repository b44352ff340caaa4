#include "vekCustomLanguageString.h"

#include <sstream>

#include "vekErrorHelper.h"
#include "vekLanguageTables.h"
#include "vekTextConversion.h"

namespace vek {

namespace {

void ReplaceFirst(std::wstring& text, const std::wstring& placeholder, const std::wstring& value) {
  std::size_t at = text.find(placeholder);
  if (at != std::wstring::npos) text.replace(at, placeholder.size(), value);
}

}  // namespace

CustomLanguageString::CustomLanguageString(const std::string& key)
    : Output(LanguageTables::GetText(key)), DefaultOutput(LanguageTables::GetDefaultText(key)) {}

void CustomLanguageString::FillNextPlaceholder(const std::wstring& value) {
  std::wstring placeholder = L"{" + std::to_wstring(NextPlaceholder++) + L"}";
  ReplaceFirst(Output, placeholder, value);
  ReplaceFirst(DefaultOutput, placeholder, value);
}

template <class T>
CustomLanguageString& CustomLanguageString::operator<<(T value) {
  std::wostringstream formatted;
  formatted << value;
  FillNextPlaceholder(formatted.str());
  return *this;
}

CustomLanguageString& CustomLanguageString::operator<<(const std::string& value) {
  FillNextPlaceholder(Utf8ToWide(value));
  return *this;
}

CustomLanguageString& CustomLanguageString::operator<<(const char* value) {
  return *this << std::string(value ? value : "");
}

CustomLanguageString& CustomLanguageString::operator<<(const std::wstring& value) {
  FillNextPlaceholder(value);
  return *this;
}

CustomLanguageString& CustomLanguageString::operator<<(const wchar_t* value) {
  return *this << std::wstring(value ? value : L"");
}

void CustomLanguageString::AppendDefaultErrorMessage(int code) {
  std::string name = ErrorHelper::GetErrorName(code);
  Output += L" " + LanguageTables::GetText(name);
  DefaultOutput += L" " + LanguageTables::GetDefaultText(name);
}

template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <bool>(bool);
template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <short>(short);
template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <unsigned short>(unsigned short);
template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <int>(int);
template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <unsigned int>(unsigned int);
template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <long>(long);
template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <unsigned long>(unsigned long);
template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <float>(float);
template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <double>(double);
template VEK_EXPORT CustomLanguageString& CustomLanguageString::operator<< <long double>(long double);

}  // namespace vek
