#include "vekOptionValue.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace vek {

namespace {

template <class T>
std::string StreamText(const T& value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

}  // namespace

// As "%d" reads (blanks, a sign, digits; what follows is ignored), except that a number beyond
// int does not convert: "%d" leaves it undefined, and a wrapped "4294967296" would read as 0.
bool OptionValue::FromText(const std::string& text, int& value) {
  const char* begin = text.c_str();
  char* end = nullptr;
  errno = 0;
  const long long number = std::strtoll(begin, &end, 10);
  if (end == begin || errno == ERANGE || number < INT_MIN || number > INT_MAX) return false;
  value = static_cast<int>(number);
  return true;
}

bool OptionValue::FromText(const std::string& text, float& value) {
  return std::sscanf(text.c_str(), "%f", &value) == 1;
}

bool OptionValue::FromText(const std::string& text, double& value) {
  return std::sscanf(text.c_str(), "%lf", &value) == 1;
}

bool OptionValue::FromText(const std::string& text, bool& value) {
  std::string word = Lower(text);
  if (word == "true" || word == "false") {
    value = word == "true";
    return true;
  }
  int number = 0;
  if (!FromText(text, number) || (number != 0 && number != 1)) return false;
  value = number == 1;
  return true;
}

bool OptionValue::FromText(const std::string& text, std::string& value) {
  value = text;
  return true;
}

std::string OptionValue::ToText(const int& value) { return std::to_string(value); }
std::string OptionValue::ToText(const float& value) { return StreamText(value); }
std::string OptionValue::ToText(const double& value) { return StreamText(value); }
std::string OptionValue::ToText(const bool& value) { return value ? "1" : "0"; }
std::string OptionValue::ToText(const std::string& value) { return value; }

bool OptionValue::NormalizeBoolText(const std::string& text, std::string& normalized) {
  std::vector<bool> values;
  if (!FromText(text, values)) return false;
  normalized = ToText(values);
  return true;
}

}  // namespace vek
