#pragma once
#include <string>

#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

/// The description kept with a restore point (a saved state of the calibration), so that a user
/// can tell restore points apart before bringing one back: which product and build made it, for how
/// many projectors and cameras, on what kind of screen, and the user's own words.
///
/// The file is XML, written with the declaration version "1.0" and the root element
/// "RestorePointInfo" holding one element per field, in this order, its value as text:
/// "ProductName", "ProductVersion", "BuildId", "NumProjectors", "NumCameras", "ScreenType",
/// "Description" (the counts in decimal). A line end inside a value (CR LF or a lone CR) is
/// written as LF, the line end XML reads such a value back with, and a value of nothing but white
/// space as a CDATA section, since XML drops such a text. (So a file from elsewhere that holds one
/// as plain text reads it as empty.) Reading takes the elements by name, in any order. Only
/// "ScreenType" and "Description" must be there; another missing element reads as an empty text
/// (a count as 0). A missing required element, a count that is not a decimal int, a missing root or
/// a document that does not parse is VEK_FILE_NOT_FORMATTED_PROPERLY (the plain code; the reason
/// goes to the error channel), and the record is left as it was. An empty element is an empty text.
class VEK_EXPORT RestorePointInfo : public Object {
 public:
  static constexpr int kUnsetCount = 0;

  static RestorePointInfo* New();
  const char* GetClassName() const override { return "RestorePointInfo"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  void SetProductName(const std::string& v) { ProductName = v; }
  const std::string& GetProductName() const { return ProductName; }
  void SetProductVersion(const std::string& v) { ProductVersion = v; }
  const std::string& GetProductVersion() const { return ProductVersion; }
  void SetBuildId(const std::string& v) { BuildId = v; }
  const std::string& GetBuildId() const { return BuildId; }
  void SetNumProjectors(int n) { NumProjectors = n; }
  int GetNumProjectors() const { return NumProjectors; }
  void SetNumCameras(int n) { NumCameras = n; }
  int GetNumCameras() const { return NumCameras; }
  void SetScreenType(const std::string& v) { ScreenType = v; }
  const std::string& GetScreenType() const { return ScreenType; }
  void SetDescription(const std::string& v) { Description = v; }
  const std::string& GetDescription() const { return Description; }

  /// Replaces the file in one step (see RecordFile).
  int WriteToFile(const std::string& path) const;
  /// VEK_FILE_NOT_FOUND when there is no such file; otherwise see above.
  int ReadFromFile(const std::string& path);

 protected:
  RestorePointInfo() = default;
  ~RestorePointInfo() override = default;

 private:
  RestorePointInfo(const RestorePointInfo&) = delete;
  RestorePointInfo& operator=(const RestorePointInfo&) = delete;

  std::string ProductName;
  std::string ProductVersion;
  std::string BuildId;
  int NumProjectors = kUnsetCount;
  int NumCameras = kUnsetCount;
  std::string ScreenType;
  std::string Description;
};

}  // namespace vek
