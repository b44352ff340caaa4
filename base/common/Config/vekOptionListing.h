#pragma once
#include <string>
#include <vector>

#include "vekCommonExport.h"

namespace vek {

class ConfigurationDatabase;

/// The option store as a user reads it, across its three files: the options file (values set),
/// the defaults file (factory values) and the info file (type, and a default of its own). The
/// store's typed reads stay as they are, including the lenient zero for an option no file names;
/// this is for tools that show what the files hold and say where a value comes from.
///
/// Value texts are as the files hold them, except that an info file's Bool and BoolArray defaults
/// read as "1"/"0", as GetOptionDefaultAsString gives them. A line the store cannot split (one
/// token, or an info line with fewer than three columns or a visibility that is no integer) fails
/// with the store's code and a custom message naming the file and line.
class VEK_EXPORT OptionListing {
 public:
  enum Source : int { Nowhere = 0, OptionsFile, DefaultsFile, InfoFile };
  struct Entry {
    std::string Name;
    std::string Type = "Unknown";  // the info file's type; "Unknown" when it has no line
    std::string Value;
    Source From = Nowhere;
  };

  /// The value a user sees: the last options-file line for the key, else the last defaults-file
  /// line, else the info file's default. VEK_SUCCESS with From == Nowhere when no file names it.
  static int Find(ConfigurationDatabase& store, const std::string& key, Entry& entry);
  /// Every option the options file sets, in the order of their first lines, each with its last
  /// line's value. With `all`, then the options only the info file (in its order) or only the
  /// defaults file (after those) names, each with its value as Find gives it.
  static int List(ConfigurationDatabase& store, bool all, std::vector<Entry>& entries);

 private:
  OptionListing() = delete;
};

}  // namespace vek
