#pragma once
#include <ostream>
#include <string>
#include <vector>

#include "vekCommonExport.h"

namespace vek {

class DataFile;

/// One named, typed variable of a DataFile: a scalar or an array of double, int, float, string
/// or bool. The type's text ("Double", "IntArray", ...) is what the file holds.
///
/// Data text: scalars as a default-formatted stream prints them (bool as 0 or 1, strings as they
/// are); arrays as the element count followed by m_ArraySeperator and the element for each element
/// ("3@@@0.5@@@1@@@2.25"). Doubles and floats get more than the default six digits only when six
/// would not read back to the same value, so every value round-trips. Numbers are read without
/// locale, ignoring blanks around them; a bool reads "0", "1", "false" or "true". An array's count
/// must match the elements given, so a damaged count never makes the entry allocate.
///
/// Setting the type resets the value (0, empty string, or an empty array). Every failure (an
/// element operation on a scalar or an unknown type, an array that cannot grow, text that does
/// not parse) returns VEK_BAD_PARSE with a custom message saying which.
class VEK_EXPORT DataFileEntry {
 public:
  enum VariableType {
    Double = 0,
    Int = 1,
    Float = 2,
    String = 3,
    Bool = 4,
    DoubleArray = 5,
    IntArray = 6,
    FloatArray = 7,
    StringArray = 8,
    BoolArray = 9
  };
  /// Growing an array to this many elements or more is reported as a warning first.
  static constexpr unsigned int kLargeArrayWarning = 1000;

  /// The separator between array elements; DataFile sets it before every read and write.
  static std::string m_ArraySeperator;

  DataFileEntry() = default;
  DataFileEntry(const DataFileEntry&) = default;
  DataFileEntry& operator=(const DataFileEntry&) = default;
  virtual ~DataFileEntry() = default;
  /// Same name, type and value (the elements of an array, compared exactly).
  bool operator==(const DataFileEntry& other) const;
  bool operator!=(const DataFileEntry& other) const { return !(*this == other); }

  const std::string& GetName() const { return Name; }
  void SetName(const std::string& name) { Name = name; }
  int GetDataType() const { return Type; }
  /// Any value is stored; one outside the table makes the entry unwritable.
  void SetDataType(int type);
  bool IsArrayType() const { return Type >= DoubleArray && Type <= BoolArray; }
  /// The type's text; "" for a value outside the table.
  std::string GetDataTypeInString() const;
  /// Exact, case-sensitive match of a type text; VEK_BAD_PARSE ("Unknown DataType <text>") else.
  int SetDataTypeFromString(const std::string& text);

  void SetDouble(double value);
  void SetInt(int value);
  void SetFloat(float value);
  void SetString(const std::string& value);
  void SetBool(bool value);
  /// Copy `count` elements. A count of 0 or less (or no elements) leaves an empty array of the
  /// type and reports VEK_BAD_PARSE with "Zero Length Array".
  int SetDoubleArray(const double* values, const int& count);
  int SetIntArray(const int* values, const int& count);
  int SetFloatArray(const float* values, const int& count);
  int SetStringArray(const std::string* values, const int& count);
  int SetBoolArray(const bool* values, const int& count);

  /// Scalar getters read the value of their own type only (0 / "" otherwise).
  double GetDouble() const { return Type == Double && !Doubles.empty() ? Doubles[0] : 0.0; }
  int GetInt() const { return Type == Int && !Ints.empty() ? Ints[0] : 0; }
  float GetFloat() const { return Type == Float && !Floats.empty() ? Floats[0] : 0.0f; }
  std::string GetString() const { return Type == String && !Strings.empty() ? Strings[0] : std::string(); }
  bool GetBool() const { return Type == Bool && !Bools.empty() && Bools[0] != 0; }
  /// Arrays: the element count and the elements (null for another type or an empty array).
  int GetNumberOfElements() const { return IsArrayType() ? Count : 0; }
  const double* GetDoubleArray() const { return Type == DoubleArray && Count ? Doubles.data() : nullptr; }
  const int* GetIntArray() const { return Type == IntArray && Count ? Ints.data() : nullptr; }
  const float* GetFloatArray() const { return Type == FloatArray && Count ? Floats.data() : nullptr; }
  const std::string* GetStringArray() const { return Type == StringArray && Count ? Strings.data() : nullptr; }
  bool GetBoolArrayElement(const unsigned int& i) const {
    return Type == BoolArray && i < Bools.size() && Bools[i] != 0;
  }

  /// The data text as written to a file; "" for an unknown type.
  std::string GetDataInString() const;
  /// Parses the data text for the current type; on failure the value is left unchanged.
  int SetDataFromString(const std::string& text);
  /// One element's text; "" for a scalar or an index past the end.
  std::string GetArrayElementDataInString(const unsigned int& i) const;
  /// Sets element i, growing the array to i + 1 elements first when it is shorter.
  int SetArrayElementDataFromString(const unsigned int& i, const std::string& text);

 protected:
  /// Grows (never shrinks) the array to `size` elements; new elements are 0, false or "".
  int GrowArray(const unsigned int& size);
  /// Writes the data text; VEK_BAD_PARSE ("Unknown Data Type") for an unknown type.
  int WriteDataToStream(std::ostream& os) const;

 private:
  friend class DataFile;

  std::string Name;
  int Type = Double;
  // A scalar is held as the one element of its type's list; an array as Count elements.
  std::vector<double> Doubles{0.0};
  std::vector<int> Ints;
  std::vector<float> Floats;
  std::vector<std::string> Strings;
  std::vector<unsigned char> Bools;  // not vector<bool>: elements stay addressable
  int Count = 0;
};

}  // namespace vek
