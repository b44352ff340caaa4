#include "vekDirectoryInitializer.h"

#include <filesystem>
#include <system_error>

#include "vekOutputMessages.h"
#include "vekPlatform.h"

namespace vek {

namespace {

std::string WithSeparator(std::string name) {
  if (name.empty() || (name.back() != '/' && name.back() != '\\')) name += platform::PathSeparator();
  return name;
}

}  // namespace

std::string DirectoryInitializer::ResolveBaseDirectory(const char* baseDirectory) {
  if (baseDirectory && *baseDirectory) return WithSeparator(baseDirectory);
  std::string fromEnvironment = platform::EnvironmentVariable("VEK_BASE_DIR");
  if (!fromEnvironment.empty()) return WithSeparator(fromEnvironment);
  return platform::DefaultBaseDirectory();
}

std::string DirectoryInitializer::SettleDirectory(const std::string& name) {
  std::error_code error;
  std::filesystem::path path(name);
  if (!std::filesystem::is_directory(path, error)) {
    std::filesystem::create_directories(path, error);
    if (!std::filesystem::is_directory(path, error)) VEK_REPORT_ERROR("Could not create directory " << name);
  }
  return name;
}

void DirectoryInitializer::InitDirectoriesAndFiles(const char* baseDirectory) {
  if (Settled && !baseDirectory) return;
  BaseDirectory = ResolveBaseDirectory(baseDirectory);
  BinaryDirectory = platform::ModuleDirectory();
  const char separator = platform::PathSeparator();
  InformationDirectory = SettleDirectory(BaseDirectory);
  TempDirectory = SettleDirectory(InformationDirectory + "Temp" + separator);
  ConfigDirectory = SettleDirectory(BaseDirectory + "Config" + separator);
  LocalCalibrationDirectory = SettleDirectory(BaseDirectory + "LocalCalibration" + separator);
  SystemDataDirectory = SettleDirectory(BaseDirectory + "SystemData" + separator);
  TestImagesDirectory = SettleDirectory(BaseDirectory + "TestImages" + separator);
  RestorePointsDirectory = SettleDirectory(BaseDirectory + "RestorePoints" + separator);
  Settled = true;
}

void DirectoryInitializer::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "BinaryDirectory: " << BinaryDirectory << "\n";
  os << indent << "ConfigDirectory: " << ConfigDirectory << "\n";
  os << indent << "InformationDirectory: " << InformationDirectory << "\n";
  os << indent << "TempDirectory: " << TempDirectory << "\n";
  os << indent << "LocalCalibrationDirectory: " << LocalCalibrationDirectory << "\n";
  os << indent << "SystemDataDirectory: " << SystemDataDirectory << "\n";
  os << indent << "TestImagesDirectory: " << TestImagesDirectory << "\n";
  os << indent << "RestorePointsDirectory: " << RestorePointsDirectory << "\n";
}

}  // namespace vek
