#pragma once
#include <string>

#include "vekCommonExport.h"

namespace vek {

/// UTF-8 to wide text (UTF-16 where wchar_t has 16 bits, UTF-32 elsewhere). A malformed byte
/// becomes U+FFFD.
VEK_EXPORT std::wstring Utf8ToWide(const std::string& text);
/// Wide text to UTF-8.
VEK_EXPORT std::string WideToUtf8(const std::wstring& text);

}  // namespace vek
