#pragma once
#include <string>

#include "vekCommonExport.h"

namespace vek {

/// The companion product module: an optional module that a product built on this library ships
/// beside it. Its resources hold the product's facts (a "PRODUCT_CONFIG" resource, read by
/// KORProductConfiguration) and the product's language packs, which the language tables merge
/// over the library's own. Resources are looked up under the module name
/// LanguageTables::kProductModule ("KORProductConfiguration.dll") on every system. The file is
/// KORProductConfiguration.dll on Windows, a DLL with real resources; elsewhere it is
/// KORProductConfiguration.so, which registers its resources with the platform layer when loaded.
///
/// Without the module the library keeps its defaults and its own texts: that is a normal state,
/// not an error. A module once loaded stays for the whole process.
class VEK_EXPORT ProductModule {
 public:
  /// The module's file name on this system.
  static std::string FileName();
  /// Loads the module file from `directory` (with or without a trailing separator) and makes the
  /// language tables reload, so that its texts join them at the next look-up. True when it is
  /// loaded; false, with nothing changed, when the folder holds no such file or it cannot be loaded.
  static bool Load(const std::string& directory);
  /// Tries, once per process, to load the module from the folder of this library; later calls
  /// return the first answer. The language tables call this before they merge product texts.
  static bool LoadBesideLibrary();
  /// The folder the module was loaded from by Load, ending in a separator; "" when none was.
  static std::string GetDirectory();

 private:
  ProductModule() = delete;
};

}  // namespace vek
