#pragma once
#include <ostream>
#include <string>
#include <vector>

#include "vekDirectoryInitializer.h"

namespace vek {

/// The process-wide initialisation settings: "Name = Value" lines read from the initialisation
/// files, which classes query by name with a default and a range. Files are read in this order,
/// later lines overriding earlier ones: Config/Initialization, Initialization (information
/// directory), Config/AdvancedOptions, Config/AdvancedOptionsOverride, Config/ServiceAdvancedOptions.
/// A line counts only when it has exactly three blank-separated words, the second starting with
/// "=" and the first not with "#"; anything else is ignored silently, and a missing file is no
/// error. Names compare case-insensitively; the last matching line wins. Every static member
/// works on the one instance under one recursive lock.
class VEK_EXPORT ClassInitializer : public DirectoryInitializer {
 public:
  using TokenLine = std::vector<std::string>;

  /// A fresh, fully initialised instance. The process-wide one is made at library start-up.
  static ClassInitializer* New();
  static ClassInitializer* GetInstance();
  const char* GetClassName() const override { return "ClassInitializer"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// Null: read the files once (later calls do nothing). A folder: settle the directories under
  /// it and read everything again from there.
  static void Initialize(const char* baseDirectory);
  /// Replaces all settings by those of one file.
  static void ReInitialize(const char* fileName);
  /// Adds the settings of one file after those held, so that its values take precedence.
  static void ConcatenatedInitialize(const char* fileName);
  /// Releases the process-wide instance (at shutdown).
  static void CleanUp();

  // Typed look-ups: return whether the name was found. Scalars are clamped to [min, max]
  // (max first, so min wins when min > max); bool ignores its range. A float or double whose
  // text reads as NaN takes the default, which is then clamped.
  static int Get(const char* name, double& value, const double& defaultValue, const double& minValue,
                 const double& maxValue);
  static int Get(const char* name, float& value, const float& defaultValue, const float& minValue,
                 const float& maxValue);
  static int Get(const char* name, int& value, const int& defaultValue, const int& minValue, const int& maxValue);
  static int Get(const char* name, bool& value, const bool& defaultValue, const bool& minValue, const bool& maxValue);
  static int Get(const char* name, std::string& value, const char* defaultValue);
  /// `value` becomes a new[] copy that the caller delete[]s.
  static int Get(const char* name, char*& value, const char* defaultValue);
  static bool Get(const char* name, std::vector<std::string>& values);
  static bool Get(const char* name, std::vector<int>& values);
  static bool Get(const char* name, std::vector<float>& values);
  /// The value's words as a new[] array of new[] strings (the caller deletes both levels);
  /// null and 0 when the name is absent.
  static int DeprecatedGet(const char* name, char**& values, int& count);

  /// Reads the report flag from "ReportGets": when set, every look-up is logged.
  static void GetReportGets();
  static void PrintMe(std::ostream& os);
  static int GetNumberOfLines();
  /// The calibration group of the configuration that filled the settings (-1: none).
  static void SetCalibrationGroupId(int id);
  static int GetCalibrationGroupId();

 protected:
  ClassInitializer() = default;
  ~ClassInitializer() override = default;

  static void Initialize(ClassInitializer* instance, const char* baseDirectory);
  void Reset();
  void ParseInputFile(const char* fileName);
  /// Appends the valid lines of a file; returns 1 when it existed and was read, 0 when missing.
  static int ParseFileToTokenLines(const char* fileName, std::vector<TokenLine>& lines);

 private:
  friend class ClassInitializerCleanup;
  friend class ConfigurationDatabase;  // fills the settings from the option files

  /// The value words of the last line named `name`, or null when none matches.
  const std::string* FindValue(const char* name) const;
  template <class T>
  static int GetScalar(const char* name, T& value, const T& defaultValue, const T* minValue, const T* maxValue);
  template <class T>
  static bool GetVector(const char* name, std::vector<T>& values);

  std::vector<TokenLine> Lines;
  bool ReportGets = false;
  int CalibrationGroupId = -1;

  static ClassInitializer* m_InitData;
};

/// Creates the process-wide settings when the library loads and releases them when it unloads.
class VEK_EXPORT ClassInitializerCleanup {
 public:
  ClassInitializerCleanup();
  ~ClassInitializerCleanup();

 private:
  ClassInitializerCleanup(const ClassInitializerCleanup&) = delete;
  ClassInitializerCleanup& operator=(const ClassInitializerCleanup&) = delete;
};

}  // namespace vek
