#include "vekTextConversion.h"

namespace vek {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendWide(std::wstring& out, char32_t c) {
  if constexpr (sizeof(wchar_t) == 2) {
    if (c >= 0x10000) {
      c -= 0x10000;
      out += static_cast<wchar_t>(0xD800 + (c >> 10));
      out += static_cast<wchar_t>(0xDC00 + (c & 0x3FF));
      return;
    }
  }
  out += static_cast<wchar_t>(c);
}

void AppendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

}  // namespace

std::wstring Utf8ToWide(const std::string& text) {
  std::wstring out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    auto lead = static_cast<unsigned char>(text[i]);
    int length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 0;
    if (length == 0 || i + length > text.size()) {
      AppendWide(out, kReplacement);
      ++i;
      continue;
    }
    char32_t c = length == 1 ? lead : lead & (0x7F >> length);
    bool valid = true;
    for (int k = 1; k < length; ++k) {
      auto next = static_cast<unsigned char>(text[i + k]);
      valid = valid && (next & 0xC0) == 0x80;
      c = (c << 6) | (next & 0x3F);
    }
    if (!valid || c > 0x10FFFF) {
      AppendWide(out, kReplacement);
      ++i;
      continue;
    }
    AppendWide(out, c);
    i += length;
  }
  return out;
}

std::string WideToUtf8(const std::wstring& text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = static_cast<char32_t>(text[i]);
    if constexpr (sizeof(wchar_t) == 2) {
      c &= 0xFFFF;
      if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size()) {
        char32_t low = static_cast<char32_t>(text[i + 1]) & 0xFFFF;
        if (low >= 0xDC00 && low < 0xE000) {
          c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
          ++i;
        }
      }
    }
    AppendUtf8(out, c);
  }
  return out;
}

}  // namespace vek
