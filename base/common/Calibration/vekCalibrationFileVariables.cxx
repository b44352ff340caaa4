#include "vekCalibrationFileVariables.h"

#include <cmath>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"

namespace vek {

namespace {

const char* TypeName(int type) {
  switch (type) {
    case DataFileEntry::Int:
      return "Int";
    case DataFileEntry::Double:
      return "Double";
    case DataFileEntry::String:
      return "String";
    case DataFileEntry::StringArray:
      return "StringArray";
    case DataFileEntry::FloatArray:
      return "FloatArray";
    default:
      return "?";
  }
}

}  // namespace

CalibrationFileVariables::CalibrationFileVariables() : File(SmartPointer<DataFile>::New()) {}

int CalibrationFileVariables::Fail(int code, const std::string& text) const {
  return ErrorHelper::ErrorWithCustomMessage(ErrorHelper::GetErrorWithoutCustomMessageFlag(code), Path + ": " + text);
}

int CalibrationFileVariables::Read(const std::string& path, const std::string& what) {
  Path = path;
  File = SmartPointer<DataFile>::New();
  if (!File) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  File->SetFileName(path);
  const int status = File->Read();
  if (status == VEK_SUCCESS) {
    File->PruneDuplicates(true);
    return VEK_SUCCESS;
  }
  const int code = ErrorHelper::GetErrorWithoutCustomMessageFlag(status);
  if (code == VEK_FILE_NOT_FOUND) return Fail(code, what + " not found");
  // The reader's own words say what is wrong with the content.
  const std::string detail = ErrorHelper::GetErrorMessageWithNoExtras(status);
  if (code == VEK_UNABLE_TO_OPEN_FILE_FOR_READING || code == VEK_FAILED_TO_ALLOCATE_MEMORY)
    return Fail(code, "cannot read the " + what + " (" + detail + ")");
  return Fail(VEK_BAD_PARSE, "damaged " + what + " (" + detail + ")");
}

int CalibrationFileVariables::Find(const std::string& name, int type, const DataFileEntry*& entry) const {
  entry = nullptr;
  if (!File) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  for (int n = 0; n < File->GetNumVariables(); ++n) {
    const DataFileEntry* candidate = File->GetNthVariable(n);
    if (candidate->GetName() != name) continue;
    if (candidate->GetDataType() != type)
      return Fail(VEK_BAD_PARSE, name + " should be " + TypeName(type) + ", not " + candidate->GetDataTypeInString());
    entry = candidate;
    break;
  }
  return VEK_SUCCESS;
}

int CalibrationFileVariables::FindRequired(const std::string& name, int type, const DataFileEntry*& entry) const {
  const int status = Find(name, type, entry);
  if (status != VEK_SUCCESS) return status;
  if (!entry) return Fail(VEK_BAD_PARSE, std::string("no ") + TypeName(type) + " variable " + name);
  return VEK_SUCCESS;
}

int CalibrationFileVariables::GetInt(const std::string& name, int& value) const {
  const DataFileEntry* entry = nullptr;
  const int status = FindRequired(name, DataFileEntry::Int, entry);
  if (status == VEK_SUCCESS) value = entry->GetInt();
  return status;
}

int CalibrationFileVariables::GetDouble(const std::string& name, double& value) const {
  const DataFileEntry* entry = nullptr;
  const int status = FindRequired(name, DataFileEntry::Double, entry);
  if (status == VEK_SUCCESS) value = entry->GetDouble();
  return status;
}

int CalibrationFileVariables::GetString(const std::string& name, std::string& value) const {
  const DataFileEntry* entry = nullptr;
  const int status = FindRequired(name, DataFileEntry::String, entry);
  if (status == VEK_SUCCESS) value = entry->GetString();
  return status;
}

int CalibrationFileVariables::GetStringArray(const std::string& name, std::vector<std::string>& values) const {
  const DataFileEntry* entry = nullptr;
  const int status = FindRequired(name, DataFileEntry::StringArray, entry);
  if (status != VEK_SUCCESS) return status;
  const std::string* first = entry->GetStringArray();
  values.assign(first, first + (first ? entry->GetNumberOfElements() : 0));
  return VEK_SUCCESS;
}

int CalibrationFileVariables::GetFloatArray(const std::string& name, std::vector<float>& values) const {
  const DataFileEntry* entry = nullptr;
  const int status = FindRequired(name, DataFileEntry::FloatArray, entry);
  if (status != VEK_SUCCESS) return status;
  const float* first = entry->GetFloatArray();
  const int count = first ? entry->GetNumberOfElements() : 0;
  for (int k = 0; k < count; ++k)
    if (!std::isfinite(first[k])) return Fail(VEK_BAD_PARSE, name + " element " + std::to_string(k) + " is no number");
  values.assign(first, first + count);
  return VEK_SUCCESS;
}

int CalibrationFileVariables::GetOptionalInt(const std::string& name, std::optional<int>& value) const {
  const DataFileEntry* entry = nullptr;
  const int status = Find(name, DataFileEntry::Int, entry);
  if (status != VEK_SUCCESS) return status;
  value.reset();
  if (entry) value = entry->GetInt();
  return VEK_SUCCESS;
}

int CalibrationFileVariables::GetOptionalDouble(const std::string& name, std::optional<double>& value) const {
  const DataFileEntry* entry = nullptr;
  const int status = Find(name, DataFileEntry::Double, entry);
  if (status != VEK_SUCCESS) return status;
  value.reset();
  if (entry) value = entry->GetDouble();
  return VEK_SUCCESS;
}

int CalibrationFileVariables::Add(const DataFileEntry& entry) {
  return File ? File->AddVariable(entry) : VEK_FAILED_TO_ALLOCATE_MEMORY;
}

int CalibrationFileVariables::AddInt(const std::string& name, int value) {
  DataFileEntry entry;
  entry.SetName(name);
  entry.SetDataType(DataFileEntry::Int);
  entry.SetInt(value);
  return Add(entry);
}

int CalibrationFileVariables::AddDouble(const std::string& name, double value) {
  DataFileEntry entry;
  entry.SetName(name);
  entry.SetDataType(DataFileEntry::Double);
  entry.SetDouble(value);
  return Add(entry);
}

int CalibrationFileVariables::AddString(const std::string& name, const std::string& value) {
  DataFileEntry entry;
  entry.SetName(name);
  entry.SetDataType(DataFileEntry::String);
  entry.SetString(value);
  return Add(entry);
}

int CalibrationFileVariables::AddStringArray(const std::string& name, const std::vector<std::string>& values) {
  DataFileEntry entry;
  entry.SetName(name);
  entry.SetDataType(DataFileEntry::StringArray);
  const int status = entry.SetStringArray(values.data(), static_cast<int>(values.size()));
  return status == VEK_SUCCESS ? Add(entry) : status;
}

int CalibrationFileVariables::AddFloatArray(const std::string& name, const std::vector<float>& values) {
  DataFileEntry entry;
  entry.SetName(name);
  entry.SetDataType(DataFileEntry::FloatArray);
  const int status = entry.SetFloatArray(values.data(), static_cast<int>(values.size()));
  return status == VEK_SUCCESS ? Add(entry) : status;
}

int CalibrationFileVariables::Write(const std::string& path) {
  Path = path;
  if (!File) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  File->SetFileName(path);
  const int status = File->Write();
  if (status == VEK_SUCCESS) return VEK_SUCCESS;
  return Fail(status, "cannot write (" + ErrorHelper::GetErrorMessageWithNoExtras(status) + ")");
}

}  // namespace vek
