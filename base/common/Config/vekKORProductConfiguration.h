#pragma once
#include <map>
#include <set>
#include <string>

#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

// Texts outside the class: static data of an exported class would have to be imported from the
// library.
inline constexpr char kProductConfigResourceType[] = "PRODUCT_CONFIG";
inline constexpr char kDefaultProductName[] = "vek";
inline constexpr char kDefaultProductEdition[] = "Standard";
inline constexpr char kDefaultProductBuild[] = "0";

/// The facts of the product built on this library (name, edition, version, build, how many
/// projectors and cameras it drives) and its feature switches, as the companion product module
/// (ProductModule) states them in its resource "PRODUCT_CONFIG", id 1.
///
/// The resource is UTF-8 text (a byte-order mark is skipped; LF or CR LF), one fact a line:
///
///     # comment
///     ProductName = Sample Wall Studio
///     MaxProjectors = 24
///     Feature.EdgeBlending = on
///
/// The key is the text before the first "=", the value the text after it, both without the blanks
/// and tabs around them; keys are case-sensitive. Empty lines and lines whose first character
/// other than a blank or tab is "#" are comments. A later line for a key replaces an earlier one.
///
/// | key              | value                                  | default without it       |
/// |------------------|----------------------------------------|--------------------------|
/// | ProductName      | text, not empty                        | "vek"                    |
/// | Edition          | text, not empty                        | "Standard"               |
/// | Version          | text, not empty                        | the library's version    |
/// | Build            | text, not empty                        | "0"                      |
/// | MaxProjectors    | decimal from 1 to kCountLimit          | kDefaultMaxProjectors    |
/// | MaxCameras       | decimal from 1 to kCountLimit          | kDefaultMaxCameras       |
/// | Feature.<name>   | on/off, true/false, yes/no, 1/0, any case | off                   |
///
/// A feature name is letters, digits and underscores. A switch the module does not name is off.
///
/// No module, or a module without the resource, is normal: every fact keeps its default and
/// nothing is reported. A damaged resource is read as far as it can be: each line that breaks the
/// rules above (no "=", an unknown key, a value that does not fit) is passed over, so its fact
/// keeps its default (or an earlier good line's value), and one warning names the first such
/// line, its number and what is wrong with it, and says how many lines were passed over.
class VEK_EXPORT KORProductConfiguration : public Object {
 public:
  static constexpr int kResourceId = 1;
  static constexpr int kDefaultMaxProjectors = 64;
  static constexpr int kDefaultMaxCameras = 16;
  static constexpr int kCountLimit = 10000;

  static KORProductConfiguration* New();
  const char* GetClassName() const override { return "KORProductConfiguration"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// Looks for the companion module beside the library (once per process), then reads its
  /// resource as ReadFromModule does. VEK_SUCCESS with the defaults when there is no module.
  int Load();
  /// Reads the resource of the loaded module `moduleName`, starting from the defaults. A module
  /// that is not loaded, or has no such resource, leaves the defaults: VEK_SUCCESS either way.
  int ReadFromModule(const std::string& moduleName);
  /// Reads facts from resource text, starting from the defaults; `sourceName` names the text in
  /// the warning about bad lines and in GetSourceName. VEK_SUCCESS whatever the text holds, since
  /// bad lines only warn; VEK_FAILED_TO_ALLOCATE_MEMORY, with every default, when memory runs out.
  int ReadFromText(const std::string& text, const std::string& sourceName);

  const std::string& GetProductName() const { return ProductName; }
  const std::string& GetEdition() const { return Edition; }
  const std::string& GetVersion() const { return Version; }
  const std::string& GetBuild() const { return Build; }
  int GetMaxProjectors() const { return MaxProjectors; }
  int GetMaxCameras() const { return MaxCameras; }
  /// Whether the switch `name` (without "Feature.") is on; off when the resource does not name it.
  bool IsFeatureEnabled(const std::string& name) const;
  /// Every switch the resource names, by name.
  const std::map<std::string, bool>& GetFeatures() const { return Features; }

  /// The module (or text) the facts were read from; "" when every fact is a default.
  const std::string& GetSourceName() const { return SourceName; }
  /// Whether the fact `key` ("MaxCameras", "Feature.EdgeBlending", ...) was read from the
  /// resource rather than being its default.
  bool IsFromResource(const std::string& key) const { return KeysRead.count(key) > 0; }
  /// The lines of the last text read that were passed over as bad.
  int GetNumberOfBadLines() const { return BadLines; }

 protected:
  KORProductConfiguration();
  ~KORProductConfiguration() override = default;

 private:
  KORProductConfiguration(const KORProductConfiguration&) = delete;
  KORProductConfiguration& operator=(const KORProductConfiguration&) = delete;

  void SetDefaults();
  /// "" when the line was taken, else what is wrong with it.
  std::string ReadLine(const std::string& key, const std::string& value);

  std::string ProductName;
  std::string Edition;
  std::string Version;
  std::string Build;
  int MaxProjectors = kDefaultMaxProjectors;
  int MaxCameras = kDefaultMaxCameras;
  std::map<std::string, bool> Features;
  std::set<std::string> KeysRead;
  std::string SourceName;
  int BadLines = 0;
};

}  // namespace vek
