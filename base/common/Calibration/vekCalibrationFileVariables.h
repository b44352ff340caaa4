#pragma once
#include <optional>
#include <string>
#include <vector>

#include "vekCommonExport.h"
#include "vekDataFile.h"
#include "vekSmartPointer.h"

namespace vek {

/// The named variables of one file of a calibration folder (a DataFile), fetched by name with the
/// type the folder format gives them, and put together for writing. Every failure carries a
/// message that names the file, since a folder holds several and the reader of the message has to
/// know which one to fix.
///
/// Reading: a missing file is VEK_FILE_NOT_FOUND, a file that is not a DataFile is VEK_BAD_PARSE;
/// a variable that is absent or of another type than asked for is VEK_BAD_PARSE. When a name
/// appears twice, the later line counts. Variables nobody asks for are ignored, so newer folders
/// with more in them still read.
class VEK_EXPORT CalibrationFileVariables {
 public:
  CalibrationFileVariables();
  CalibrationFileVariables(const CalibrationFileVariables&) = delete;
  CalibrationFileVariables& operator=(const CalibrationFileVariables&) = delete;

  /// `what` says what the file is for ("Spot grid file"), for the messages.
  int Read(const std::string& path, const std::string& what);
  const std::string& GetPath() const { return Path; }

  int GetInt(const std::string& name, int& value) const;
  int GetDouble(const std::string& name, double& value) const;
  int GetString(const std::string& name, std::string& value) const;
  int GetStringArray(const std::string& name, std::vector<std::string>& values) const;
  /// Also VEK_BAD_PARSE for an element that is not a finite number.
  int GetFloatArray(const std::string& name, std::vector<float>& values) const;
  /// Absent is fine (the value is reset); present with another type is not.
  int GetOptionalInt(const std::string& name, std::optional<int>& value) const;
  int GetOptionalDouble(const std::string& name, std::optional<double>& value) const;

  /// `code` (flag removed) with the message "<path>: <text>".
  int Fail(int code, const std::string& text) const;

  /// Each Add appends a variable to those Write writes. Arrays must not be empty (the file format
  /// has no empty array).
  int AddInt(const std::string& name, int value);
  int AddDouble(const std::string& name, double value);
  int AddString(const std::string& name, const std::string& value);
  int AddStringArray(const std::string& name, const std::vector<std::string>& values);
  int AddFloatArray(const std::string& name, const std::vector<float>& values);
  /// Writes the variables added, in order, replacing the file in one step.
  int Write(const std::string& path);

 private:
  /// The entry of that name, null when absent; VEK_BAD_PARSE when present with another type.
  int Find(const std::string& name, int type, const DataFileEntry*& entry) const;
  int FindRequired(const std::string& name, int type, const DataFileEntry*& entry) const;
  int Add(const DataFileEntry& entry);

  SmartPointer<DataFile> File;
  std::string Path;
};

}  // namespace vek
