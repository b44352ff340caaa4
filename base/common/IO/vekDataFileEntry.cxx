#include "vekDataFileEntry.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <limits>
#include <sstream>
#include <string_view>
#include <system_error>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekOutputMessages.h"

namespace vek {

std::string DataFileEntry::m_ArraySeperator = "@@@";

namespace {

const char* const kTypeTexts[] = {"Double",      "Int",      "Float",      "String",      "Bool",
                                  "DoubleArray", "IntArray", "FloatArray", "StringArray", "BoolArray"};
constexpr int kNumTypes = 10;
constexpr int kFirstArrayType = DataFileEntry::DoubleArray;

bool IsKnownType(int type) { return type >= 0 && type < kNumTypes; }

/// The scalar type of an array type's elements (and of a scalar type itself).
int ElementType(int type) { return type >= kFirstArrayType ? type - kFirstArrayType : type; }

int Fail(int code, const std::string& message) { return ErrorHelper::ErrorWithCustomMessage(code, message); }

template <class Real>
bool SameReal(Real a, Real b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

template <class Real>
bool SameReals(const std::vector<Real>& a, const std::vector<Real>& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (!SameReal(a[i], b[i])) return false;
  return true;
}

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

template <class Number>
bool ParseNumber(std::string_view text, Number& value) {
  text = Trimmed(text);
  if (text.empty()) return false;
  Number parsed{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
  if (error != std::errc() || end != text.data() + text.size()) return false;
  value = parsed;
  return true;
}

bool ParseBool(std::string_view text, unsigned char& value) {
  text = Trimmed(text);
  if (text == "0" || text == "false") {
    value = 0;
  } else if (text == "1" || text == "true") {
    value = 1;
  } else {
    return false;
  }
  return true;
}

/// The default stream form when it reads back exactly, else the fewest extra digits that do.
template <class Real>
std::string FormatReal(Real value) {
  std::ostringstream out;
  out << value;
  for (int precision = 7; precision <= std::numeric_limits<Real>::max_digits10; ++precision) {
    Real back{};
    if (ParseNumber(out.str(), back) && SameReal(back, value)) break;
    out.str(std::string());
    out.precision(precision);
    out << value;
  }
  return out.str();
}

/// Parses one element (or scalar) of the given scalar type into the matching list at index i.
class ElementParser {
 public:
  ElementParser(std::vector<double>& d, std::vector<int>& n, std::vector<float>& f, std::vector<std::string>& s,
                std::vector<unsigned char>& b)
      : Doubles(d), Ints(n), Floats(f), Strings(s), Bools(b) {}

  bool Parse(int elementType, std::string_view text, size_t i) {
    switch (elementType) {
      case DataFileEntry::Double:
        return ParseNumber(text, Doubles[i]);
      case DataFileEntry::Int:
        return ParseNumber(text, Ints[i]);
      case DataFileEntry::Float:
        return ParseNumber(text, Floats[i]);
      case DataFileEntry::String:
        Strings[i] = std::string(text);
        return true;
      case DataFileEntry::Bool:
        return ParseBool(text, Bools[i]);
    }
    return false;
  }

 private:
  std::vector<double>& Doubles;
  std::vector<int>& Ints;
  std::vector<float>& Floats;
  std::vector<std::string>& Strings;
  std::vector<unsigned char>& Bools;
};

std::string CannotConvert(std::string_view text, int elementType) {
  return "Cannot convert '" + std::string(text) + "' to " + kTypeTexts[elementType];
}

}  // namespace

bool DataFileEntry::operator==(const DataFileEntry& other) const {
  return Name == other.Name && Type == other.Type && Count == other.Count && SameReals(Doubles, other.Doubles) &&
         Ints == other.Ints && SameReals(Floats, other.Floats) && Strings == other.Strings && Bools == other.Bools;
}

void DataFileEntry::SetDataType(int type) {
  Type = type;
  Count = 0;
  Doubles.clear();
  Ints.clear();
  Floats.clear();
  Strings.clear();
  Bools.clear();
  switch (type) {
    case Double:
      Doubles.push_back(0.0);
      break;
    case Int:
      Ints.push_back(0);
      break;
    case Float:
      Floats.push_back(0.0f);
      break;
    case String:
      Strings.emplace_back();
      break;
    case Bool:
      Bools.push_back(0);
      break;
    default:
      break;
  }
}

std::string DataFileEntry::GetDataTypeInString() const { return IsKnownType(Type) ? kTypeTexts[Type] : ""; }

int DataFileEntry::SetDataTypeFromString(const std::string& text) {
  for (int type = 0; type < kNumTypes; ++type) {
    if (text == kTypeTexts[type]) {
      SetDataType(type);
      return VEK_SUCCESS;
    }
  }
  return Fail(VEK_BAD_PARSE, "Unknown DataType " + text);
}

void DataFileEntry::SetDouble(double value) {
  SetDataType(Double);
  Doubles[0] = value;
}

void DataFileEntry::SetInt(int value) {
  SetDataType(Int);
  Ints[0] = value;
}

void DataFileEntry::SetFloat(float value) {
  SetDataType(Float);
  Floats[0] = value;
}

void DataFileEntry::SetString(const std::string& value) {
  SetDataType(String);
  Strings[0] = value;
}

void DataFileEntry::SetBool(bool value) {
  SetDataType(Bool);
  Bools[0] = value ? 1 : 0;
}

namespace {

template <class Stored, class Given>
int CopyArray(std::vector<Stored>& to, int& count, const Given* values, int n) {
  if (!values || n <= 0) return Fail(VEK_BAD_PARSE, "Zero Length Array");
  try {
    to.assign(values, values + n);
  } catch (...) {
    return Fail(VEK_BAD_PARSE, "Failed to allocate array of '" + std::to_string(n) + "' elements");
  }
  count = n;
  return VEK_SUCCESS;
}

}  // namespace

int DataFileEntry::SetDoubleArray(const double* values, const int& count) {
  SetDataType(DoubleArray);
  return CopyArray(Doubles, Count, values, count);
}

int DataFileEntry::SetIntArray(const int* values, const int& count) {
  SetDataType(IntArray);
  return CopyArray(Ints, Count, values, count);
}

int DataFileEntry::SetFloatArray(const float* values, const int& count) {
  SetDataType(FloatArray);
  return CopyArray(Floats, Count, values, count);
}

int DataFileEntry::SetStringArray(const std::string* values, const int& count) {
  SetDataType(StringArray);
  return CopyArray(Strings, Count, values, count);
}

int DataFileEntry::SetBoolArray(const bool* values, const int& count) {
  SetDataType(BoolArray);
  return CopyArray(Bools, Count, values, count);
}

std::string DataFileEntry::GetArrayElementDataInString(const unsigned int& i) const {
  if (!IsArrayType() || i >= static_cast<unsigned int>(Count)) return std::string();
  switch (Type) {
    case DoubleArray:
      return FormatReal(Doubles[i]);
    case IntArray:
      return std::to_string(Ints[i]);
    case FloatArray:
      return FormatReal(Floats[i]);
    case StringArray:
      return Strings[i];
    case BoolArray:
      return Bools[i] ? "1" : "0";
  }
  return std::string();
}

std::string DataFileEntry::GetDataInString() const {
  switch (Type) {
    case Double:
      return FormatReal(Doubles[0]);
    case Int:
      return std::to_string(Ints[0]);
    case Float:
      return FormatReal(Floats[0]);
    case String:
      return Strings[0];
    case Bool:
      return Bools[0] ? "1" : "0";
  }
  if (!IsArrayType()) return std::string();
  std::string text = std::to_string(Count);
  for (unsigned int i = 0; i < static_cast<unsigned int>(Count); ++i)
    text += m_ArraySeperator + GetArrayElementDataInString(i);
  return text;
}

int DataFileEntry::SetDataFromString(const std::string& text) {
  if (!IsKnownType(Type)) return Fail(VEK_BAD_PARSE, "Unknown Data Type");
  const int elementType = ElementType(Type);
  if (!IsArrayType()) {
    DataFileEntry parsed;
    parsed.SetDataType(Type);
    ElementParser parser(parsed.Doubles, parsed.Ints, parsed.Floats, parsed.Strings, parsed.Bools);
    if (!parser.Parse(elementType, text, 0)) return Fail(VEK_BAD_PARSE, CannotConvert(text, elementType));
    parsed.Name = Name;
    *this = std::move(parsed);
    return VEK_SUCCESS;
  }

  if (Trimmed(text).empty()) return Fail(VEK_BAD_PARSE, "Zero Length Array");
  const std::string& separator = m_ArraySeperator.empty() ? std::string("@@@") : m_ArraySeperator;
  // The count must match the separators present before anything is allocated for it.
  const size_t countEnd = std::min(text.find(separator), text.size());
  int count = 0;
  if (!ParseNumber(std::string_view(text).substr(0, countEnd), count) || count < 0)
    return Fail(VEK_BAD_PARSE, "Cannot read array count from '" + text.substr(0, countEnd) + "'");
  size_t given = 0;
  for (size_t at = text.find(separator); at != std::string::npos; at = text.find(separator, at + separator.size()))
    ++given;
  if (given != static_cast<size_t>(count))
    return Fail(VEK_BAD_PARSE, "Array count " + std::to_string(count) + " does not match the " + std::to_string(given) +
                                   " elements given");

  DataFileEntry parsed;
  parsed.SetDataType(Type);
  if (count > 0) {
    const int status = parsed.GrowArray(static_cast<unsigned int>(count));
    if (status != VEK_SUCCESS) return status;
  }
  ElementParser parser(parsed.Doubles, parsed.Ints, parsed.Floats, parsed.Strings, parsed.Bools);
  size_t start = countEnd + separator.size();
  for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
    const size_t end = std::min(text.find(separator, start), text.size());
    const std::string_view element = std::string_view(text).substr(start, end - start);
    if (!parser.Parse(elementType, element, i)) return Fail(VEK_BAD_PARSE, CannotConvert(element, elementType));
    start = end + separator.size();
  }
  parsed.Name = Name;
  *this = std::move(parsed);
  return VEK_SUCCESS;
}

int DataFileEntry::GrowArray(const unsigned int& size) {
  if (!IsKnownType(Type))
    return Fail(VEK_BAD_PARSE, "Failed to grow array to size '" + std::to_string(size) + "', unknown data type '" +
                                   std::to_string(Type) + "'");
  if (!IsArrayType()) return Fail(VEK_BAD_PARSE, "Variable is not an array type, type is " + GetDataTypeInString());
  if (size <= static_cast<unsigned int>(Count)) return VEK_SUCCESS;
  const std::string noRoom = "Failed to allocate array of '" + std::to_string(size) + "' elements";
  if (size > static_cast<unsigned int>(INT_MAX)) return Fail(VEK_BAD_PARSE, noRoom);
  try {
    switch (Type) {
      case DoubleArray:
        Doubles.resize(size, 0.0);
        break;
      case IntArray:
        Ints.resize(size, 0);
        break;
      case FloatArray:
        Floats.resize(size, 0.0f);
        break;
      case StringArray:
        Strings.resize(size);
        break;
      case BoolArray:
        Bools.resize(size, 0);
        break;
    }
  } catch (...) {
    return Fail(VEK_BAD_PARSE, noRoom);
  }
  Count = static_cast<int>(size);
  return VEK_SUCCESS;
}

int DataFileEntry::SetArrayElementDataFromString(const unsigned int& i, const std::string& text) {
  if (!IsKnownType(Type))
    return Fail(VEK_BAD_PARSE, "Failed to set array element '" + std::to_string(i) + "', unknown data type '" +
                                   std::to_string(Type) + "'");
  if (!IsArrayType()) return Fail(VEK_BAD_PARSE, "Variable is not an array type, type is " + GetDataTypeInString());
  const int elementType = ElementType(Type);
  // Parse into a one-element scratch list first, so a bad text neither grows nor changes the array.
  std::vector<double> d(1);
  std::vector<int> n(1);
  std::vector<float> f(1);
  std::vector<std::string> s(1);
  std::vector<unsigned char> b(1);
  if (!ElementParser(d, n, f, s, b).Parse(elementType, text, 0))
    return Fail(VEK_BAD_PARSE, CannotConvert(text, elementType));
  if (i >= static_cast<unsigned int>(Count)) {
    if (i >= kLargeArrayWarning)
      VEK_REPORT_WARNING("Array element " << i << " request to be set, growing array to a large number!");
    if (i >= static_cast<unsigned int>(INT_MAX))  // i + 1 elements cannot be counted
      return Fail(VEK_BAD_PARSE, "Failed to allocate array of '" + std::to_string(i + 1ULL) + "' elements");
    const int status = GrowArray(i + 1);
    if (status != VEK_SUCCESS) return status;
  }
  switch (Type) {
    case DoubleArray:
      Doubles[i] = d[0];
      break;
    case IntArray:
      Ints[i] = n[0];
      break;
    case FloatArray:
      Floats[i] = f[0];
      break;
    case StringArray:
      Strings[i] = std::move(s[0]);
      break;
    case BoolArray:
      Bools[i] = b[0];
      break;
  }
  return VEK_SUCCESS;
}

int DataFileEntry::WriteDataToStream(std::ostream& os) const {
  if (!IsKnownType(Type)) return Fail(VEK_BAD_PARSE, "Unknown Data Type");
  os << GetDataInString();
  return VEK_SUCCESS;
}

}  // namespace vek
