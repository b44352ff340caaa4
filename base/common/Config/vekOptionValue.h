#pragma once
#include <string>
#include <vector>

#include "vekCommonExport.h"

namespace vek {

/// How option values of each type look in the store's files: type names ("Int", "Float",
/// "Double", "Bool", "String" and the "...Array" list forms), value text and conversion.
/// Ints are read with "%d"; floats and doubles with "%f"/"%lf" and written in default stream
/// form (six significant digits, so precision beyond that is lost by design); booleans are read
/// as "true"/"false" in any case or a decimal 0 or 1, and written "1"/"0"; strings are the text
/// as it stands; lists are blank-separated elements.
class VEK_EXPORT OptionValue {
 public:
  static const char* TypeName(const int&) { return "Int"; }
  static const char* TypeName(const float&) { return "Float"; }
  static const char* TypeName(const double&) { return "Double"; }
  static const char* TypeName(const bool&) { return "Bool"; }
  static const char* TypeName(const std::string&) { return "String"; }
  static const char* TypeName(const std::vector<int>&) { return "IntArray"; }
  static const char* TypeName(const std::vector<float>&) { return "FloatArray"; }
  static const char* TypeName(const std::vector<bool>&) { return "BoolArray"; }
  static const char* TypeName(const std::vector<std::string>&) { return "StringArray"; }

  /// Each returns false when the text does not convert (the value is then unspecified).
  static bool FromText(const std::string& text, int& value);
  static bool FromText(const std::string& text, float& value);
  static bool FromText(const std::string& text, double& value);
  static bool FromText(const std::string& text, bool& value);
  static bool FromText(const std::string& text, std::string& value);
  template <class T>
  static bool FromText(const std::string& text, std::vector<T>& values);

  static std::string ToText(const int& value);
  static std::string ToText(const float& value);
  static std::string ToText(const double& value);
  static std::string ToText(const bool& value);
  static std::string ToText(const std::string& value);
  template <class T>
  static std::string ToText(const std::vector<T>& values);

  /// Every token of a boolean list as "1" or "0", joined by single blanks; false when one is no
  /// boolean.
  static bool NormalizeBoolText(const std::string& text, std::string& normalized);

 private:
  OptionValue() = delete;
};

template <class T>
bool OptionValue::FromText(const std::string& text, std::vector<T>& values) {
  values.clear();
  std::string rest = text;
  const std::string delimiters = "\n\t\r\f\a ";
  for (std::size_t start = rest.find_first_not_of(delimiters); start != std::string::npos;) {
    std::size_t end = rest.find_first_of(delimiters, start);
    T element{};
    if (!FromText(rest.substr(start, end - start), element)) return false;
    values.push_back(element);
    start = end == std::string::npos ? end : rest.find_first_not_of(delimiters, end);
  }
  return true;
}

template <class T>
std::string OptionValue::ToText(const std::vector<T>& values) {
  std::string text;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i) text += ' ';
    text += ToText(static_cast<T>(values[i]));
  }
  return text;
}

}  // namespace vek
