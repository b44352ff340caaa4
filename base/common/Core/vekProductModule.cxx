#include "vekProductModule.h"

#include <filesystem>

#include "vekLanguageTables.h"
#include "vekPlatform.h"
#include "vekRecursiveLock.h"

namespace vek {

namespace {

constexpr char kFileStem[] = "KORProductConfiguration";

std::string& LoadedFrom() {
  static std::string directory;
  return directory;
}

}  // namespace

std::string ProductModule::FileName() { return std::string(kFileStem) + platform::ModuleFileSuffix(); }

bool ProductModule::Load(const std::string& directory) {
  RecursiveLockGuard lock(RecursiveLock::ConfigurationLock());
  std::string folder = directory;
  if (!folder.empty() && folder.back() != '/' && folder.back() != platform::PathSeparator())
    folder += platform::PathSeparator();
  const std::string path = folder + FileName();
  std::error_code error;
  // Asking the loader for a file that is not there can cost a search of the system's folders.
  if (!std::filesystem::is_regular_file(path, error) || !platform::LoadModule(path)) return false;
  LoadedFrom() = folder;
  LanguageTables::CleanUp();
  return true;
}

bool ProductModule::LoadBesideLibrary() {
  RecursiveLockGuard lock(RecursiveLock::ConfigurationLock());
  static const bool loaded = Load(platform::ModuleDirectory());
  return loaded;
}

std::string ProductModule::GetDirectory() {
  RecursiveLockGuard lock(RecursiveLock::ConfigurationLock());
  return LoadedFrom();
}

}  // namespace vek
