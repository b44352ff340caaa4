#include "vekOptionValueCheck.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <type_traits>
#include <vector>

#include "vekConfigurationDatabase.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekOptionFile.h"

namespace vek {

namespace {

constexpr const char* kTypeNames[] = {"Int",      "Float",      "Double",     "Bool",       "String",
                                      "IntArray", "FloatArray", "BoolArray", "StringArray"};
constexpr std::string_view kArraySuffix = "Array";

// from_chars takes no "+"; a typed value may carry one.
std::string_view WithoutPlus(std::string_view text) {
  return text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+' ? text.substr(1) : text;
}

// Why the text is no number of the type ("" when it is one): not a number at all, or one the
// type cannot hold (NaN and infinities included, which the store would not read back).
template <class Number>
std::string NumberProblem(std::string_view text, const std::string& type) {
  text = WithoutPlus(text);
  Number value{};
  const char* end = text.data() + text.size();
  auto [ptr, error] = std::from_chars(text.data(), end, value);
  if (text.empty() || ptr != end || (error != std::errc() && error != std::errc::result_out_of_range))
    return "no " + type;
  if constexpr (std::is_floating_point_v<Number>) {
    if (std::isnan(value)) return "no " + type;
    if (std::isinf(value)) error = std::errc::result_out_of_range;
  }
  return error == std::errc() ? "" : "beyond the " + type + " range";
}

// Why a scalar text is no value of the type; "" when it is one.
std::string ScalarProblem(std::string_view scalar, std::string_view text) {
  const std::string type(scalar);
  if (type == "String") return "";
  if (type == "Int") return NumberProblem<int>(text, type);
  if (type == "Float") return NumberProblem<float>(text, type);
  if (type == "Double") return NumberProblem<double>(text, type);
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  return lower == "true" || lower == "false" || text == "1" || text == "0" ? "" : "no Bool";
}

int Refuse(const std::string& text, const std::string& why) {
  return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "\"" + text + "\" is " + why);
}

}  // namespace

bool OptionValueCheck::IsTypeName(const std::string& type) {
  for (const char* name : kTypeNames)
    if (type == name) return true;
  return false;
}

int OptionValueCheck::Check(const std::string& type, const std::string& valueText) {
  if (!IsTypeName(type)) {
    std::string names;
    for (const char* name : kTypeNames) names += std::string(names.empty() ? "" : ", ") + name;
    return Refuse(type, "no option type (" + names + ")");
  }
  const std::string_view name = type;
  const bool list = name.size() > kArraySuffix.size() && name.ends_with(kArraySuffix);
  if (!list) {
    const std::string problem = ScalarProblem(name, valueText);
    return problem.empty() ? VEK_SUCCESS : Refuse(valueText, problem);
  }
  const std::string_view scalar = name.substr(0, name.size() - kArraySuffix.size());
  std::vector<std::string> elements;
  OptionFile::Tokenize(valueText, elements);
  if (elements.empty() && scalar != "String") return Refuse(valueText, "no " + type + ": the list is empty");
  for (const std::string& element : elements) {
    const std::string problem = ScalarProblem(scalar, element);
    if (!problem.empty())
      return Refuse(valueText, "no " + type + ": element \"" + element + "\" is " + problem +
                                   " (elements are separated by blanks)");
  }
  return VEK_SUCCESS;
}

int OptionValueCheck::Check(ConfigurationDatabase& store, const std::string& key, const std::string& type,
                            const std::string& valueText) {
  int status = Check(type, valueText);
  if (status != VEK_SUCCESS) return status;
  std::string described;
  status = store.GetOptionType(key, described);
  // Without an info file nothing is described ("Unknown"); setting the option creates the file.
  if (status != VEK_SUCCESS && status != VEK_FILE_NOT_FOUND) return status;
  if (described != "Unknown" && described != type)
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS,
                                               key + " is described as " + described + ", not " + type);
  return VEK_SUCCESS;
}

}  // namespace vek
