#pragma once
#include <string>

#include "vekCommonExport.h"

namespace vek {

class ConfigurationDatabase;

/// The strict reading of a typed-in option value, for tools that set options on a user's word.
/// The store itself reads leniently and keeps doing so (OptionValue): "3.5" stores as the Int 3,
/// "1e400" as the Double inf and "1,2,3" as the FloatArray 1. Check accepts a text only when the
/// store keeps what was typed (floats up to the store's six digits):
/// - Int: decimal digits with an optional sign, within int.
/// - Float, Double: a finite decimal number ("0.75", "-1e-05", "+2") within the type's range.
/// - Bool: "true" or "false" in any case, "1" or "0".
/// - String: any text (the store's own line rules still apply when it is written).
/// - IntArray, FloatArray, BoolArray, StringArray: elements separated by blanks (or tabs), each
///   read as its scalar type. Only a StringArray may be empty: the store reads any other empty
///   value as a damaged line.
/// A refusal is VEK_INVALID_PARAMETERS with a custom message that names the value and the type,
/// e.g. "abc" is no Float, or "1,2,3" is no FloatArray: element "1,2,3" is no Float (elements
/// are separated by blanks).
class VEK_EXPORT OptionValueCheck {
 public:
  /// The type names of the store: "Int", "Float", "Double", "Bool", "String" and their "...Array".
  static bool IsTypeName(const std::string& type);
  static int Check(const std::string& type, const std::string& valueText);
  /// Check, and also refuse a type other than the one the store's info file describes for the
  /// key: the store would write the value but read it back as the described type. A store without
  /// an info file describes no key.
  static int Check(ConfigurationDatabase& store, const std::string& key, const std::string& type,
                   const std::string& valueText);

 private:
  OptionValueCheck() = delete;
};

}  // namespace vek
