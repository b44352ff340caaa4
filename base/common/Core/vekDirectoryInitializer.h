#pragma once
#include <string>

#include "vekObject.h"

namespace vek {

/// The directory service: settles, once, the absolute folders the library works in, each ending
/// in a path separator, and creates those that are missing. Under a base folder B:
///   information directory  B                 (the log lives in its Temp folder)
///   temporary directory    B + "Temp"
///   configuration          B + "Config"
///   calibration            B + "LocalCalibration", "SystemData", "TestImages", "RestorePoints"
/// and the binary directory is the folder of the loaded library module. B is the folder given to
/// InitDirectoriesAndFiles; when none is given, VEK_BASE_DIR if set, else the platform default
/// ("C:\VeltraDisplay\" on Windows; $XDG_DATA_HOME/VeltraDisplay/ or ~/.local/share/VeltraDisplay/
/// on POSIX). A folder that cannot be created is reported ("Could not create directory").
class VEK_EXPORT DirectoryInitializer : public Object {
 public:
  const char* GetClassName() const override { return "DirectoryInitializer"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// With a folder: settles every directory under it. Without one (null): settles them under the
  /// default base unless they are settled already.
  void InitDirectoriesAndFiles(const char* baseDirectory);
  bool AreDirectoriesSettled() const { return Settled; }

  const std::string& GetBaseDirectoryName() const { return BaseDirectory; }
  const std::string& GetBinaryDirectoryName() const { return BinaryDirectory; }
  const std::string& GetConfigDirectoryName() const { return ConfigDirectory; }
  const std::string& GetInformationDirectoryName() const { return InformationDirectory; }
  const std::string& GetTempDirectoryName() const { return TempDirectory; }
  const std::string& GetLocalCalibrationDirectoryName() const { return LocalCalibrationDirectory; }
  const std::string& GetSystemDataDirectoryName() const { return SystemDataDirectory; }
  const std::string& GetTestImagesDirectoryName() const { return TestImagesDirectory; }
  const std::string& GetRestorePointsDirectoryName() const { return RestorePointsDirectory; }

  /// The base folder that `baseDirectory` (or, when null, VEK_BASE_DIR or the platform default)
  /// names, ending in a path separator. Creates nothing.
  static std::string ResolveBaseDirectory(const char* baseDirectory);

 protected:
  DirectoryInitializer() = default;
  ~DirectoryInitializer() override = default;

 private:
  std::string SettleDirectory(const std::string& name);

  bool Settled = false;
  std::string BaseDirectory;
  std::string BinaryDirectory;
  std::string ConfigDirectory;
  std::string InformationDirectory;
  std::string TempDirectory;
  std::string LocalCalibrationDirectory;
  std::string SystemDataDirectory;
  std::string TestImagesDirectory;
  std::string RestorePointsDirectory;
};

}  // namespace vek
