#include "vekDataFile.h"

#include <algorithm>
#include <charconv>
#include <new>
#include <sstream>
#include <unordered_map>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekOutputMessages.h"

namespace vek {

namespace {

constexpr char kVersionKey[] = "FileVersion";
constexpr size_t kVersionKeyLength = sizeof(kVersionKey) - 1;

int Fail(int code, const std::string& message) { return ErrorHelper::ErrorWithCustomMessage(code, message); }

}  // namespace

DataFile* DataFile::New() { return new (std::nothrow) DataFile; }

DataFile::DataFile() { Entries.reserve(2); }

DataFile::~DataFile() { ClearEntries(); }

void DataFile::ClearEntries() {
  for (DataFileEntry* entry : Entries) delete entry;
  Entries.clear();
}

void DataFile::PrintSelf(std::ostream& os, Indent indent) const {
  IOBase::PrintSelf(os, indent);
  os << indent << "FileVersion: " << FileVersion << "\n";
  os << indent << "NumVariables: " << GetNumVariables() << "\n";
  os << indent << "IsEdited: " << (Edited ? 1 : 0) << "\n";
}

const DataFileEntry* DataFile::GetNthVariable(const int& n) const {
  return n >= 0 && n < GetNumVariables() ? Entries[static_cast<size_t>(n)] : nullptr;
}

int DataFile::SetNthVariable(const int& n, const DataFileEntry& entry) {
  if (n < 0 || n >= GetNumVariables()) return VEK_INDEX_OUT_OF_RANGE;
  const int allowed = WouldSettingNthVariableBeOK(n, entry);
  if (allowed != VEK_SUCCESS) return allowed;
  const int status = CopyDataFileEntry(*Entries[static_cast<size_t>(n)], entry);
  if (status != VEK_SUCCESS) return status;
  Edited = true;
  return VEK_SUCCESS;
}

int DataFile::AddVariable(const DataFileEntry& entry) {
  const int allowed = WouldSettingNthVariableBeOK(GetNumVariables(), entry);
  if (allowed != VEK_SUCCESS) return allowed;
  DataFileEntry* added = CreateNewVariable();
  if (!added) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  const int status = CopyDataFileEntry(*added, entry);
  if (status != VEK_SUCCESS) {
    delete added;
    return status;
  }
  try {
    Entries.push_back(added);
  } catch (...) {
    delete added;
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int DataFile::WouldSettingNthVariableBeOK(const int&, const DataFileEntry&) { return VEK_SUCCESS; }

DataFileEntry* DataFile::CreateNewVariable() const { return new (std::nothrow) DataFileEntry; }

int DataFile::CopyDataFileEntry(DataFileEntry& to, const DataFileEntry& from) {
  try {
    to = from;
  } catch (...) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int DataFile::PruneDuplicates(bool keepLast) {
  // The index of the entry that stays for each name.
  std::unordered_map<std::string, size_t> survivor;
  for (size_t i = 0; i < Entries.size(); ++i) {
    auto [at, inserted] = survivor.try_emplace(Entries[i]->GetName(), i);
    if (!inserted && keepLast) at->second = i;
  }
  size_t kept = 0;
  for (size_t i = 0; i < Entries.size(); ++i) {
    if (survivor[Entries[i]->GetName()] == i)
      Entries[kept++] = Entries[i];
    else
      delete Entries[i];
  }
  const int removed = static_cast<int>(Entries.size() - kept);
  Entries.resize(kept);
  if (removed > 0) Edited = true;
  return removed;
}

size_t DataFile::FindEndofFirstToken(const std::string& text) const {
  const size_t end = FieldSeparator.empty() ? std::string::npos : text.find(FieldSeparator);
  return end == std::string::npos ? text.size() : end;
}

int DataFile::GetNextTokenAndIncrement(std::string& remainder, std::string& token) const {
  if (remainder.empty()) return Fail(VEK_BAD_PARSE, "No moreTokensToParse");
  const size_t end = FindEndofFirstToken(remainder);
  token = remainder.substr(0, end);
  remainder.erase(0, std::min(remainder.size(), end + FieldSeparator.size()));
  return VEK_SUCCESS;
}

int DataFile::WriteDataFileEntry(std::ostream& os, const DataFileEntry& entry) {
  // Build the whole line first so a failing entry leaves no partial line behind.
  std::ostringstream line;
  const int status = entry.WriteDataToStream(line);
  if (status != VEK_SUCCESS) return status;
  os << entry.GetDataTypeInString() << FieldSeparator << entry.GetName() << FieldSeparator << line.str()
     << FieldSeparator << "\n";
  return VEK_SUCCESS;
}

int DataFile::ReadDataFileEntry(std::string& line, DataFileEntry& entry) const {
  if (line.empty()) return Fail(VEK_BAD_PARSE, "Empty Line in File");
  std::string remainder = line;
  std::string token;
  int status = GetNextTokenAndIncrement(remainder, token);
  if (status == VEK_SUCCESS) status = entry.SetDataTypeFromString(token);
  if (status == VEK_SUCCESS) status = GetNextTokenAndIncrement(remainder, token);
  if (status == VEK_SUCCESS) entry.SetName(token);
  if (status != VEK_SUCCESS) return status;
  if (remainder.empty()) return Fail(VEK_BAD_PARSE, "No moreTokensToParse");
  // The data is the last field: when the separator after it lies in a longer run of its
  // characters, the separator is the end of the run, so that a value may end in "#".
  size_t end = FindEndofFirstToken(remainder);
  while (end < remainder.size() && remainder.compare(end + 1, FieldSeparator.size(), FieldSeparator) == 0) ++end;
  return entry.SetDataFromString(remainder.substr(0, end));
}

void DataFile::WriteFileVersion(std::ostream& os) const { os << kVersionKey << FieldSeparator << FileVersion << "\n"; }

int DataFile::ReadFileVersion(const std::string& line) {
  if (line.empty()) return Fail(VEK_BAD_PARSE, "Empty First Line in File");
  if (line.compare(0, kVersionKeyLength, kVersionKey) != 0)
    return Fail(VEK_BAD_PARSE, "First Line of File should be file version");
  std::string remainder = line;
  std::string token;
  int status = GetNextTokenAndIncrement(remainder, token);
  if (status == VEK_SUCCESS) status = GetNextTokenAndIncrement(remainder, token);
  if (status != VEK_SUCCESS) return status;
  // Blanks around the number are allowed, as around the numbers of the entries.
  const size_t first = token.find_first_not_of(" \t");
  const size_t last = token.find_last_not_of(" \t");
  const char* begin = token.data() + (first == std::string::npos ? token.size() : first);
  const char* stop = token.data() + (first == std::string::npos ? token.size() : last + 1);
  float version = 0.0f;
  const auto [end, error] = std::from_chars(begin, stop, version);
  if (begin == stop || error != std::errc() || end != stop)
    return Fail(VEK_BAD_PARSE, "Cannot read file version from '" + token + "'");
  FileVersion = version;
  return VEK_SUCCESS;
}

int DataFile::Write() {
  DataFileEntry::m_ArraySeperator = ArraySeparator;
  std::ostringstream out;
  out << Header << "\n";
  WriteFileVersion(out);
  int status = VEK_SUCCESS;
  for (const DataFileEntry* entry : Entries) {
    status = WriteDataFileEntry(out, *entry);
    if (status != VEK_SUCCESS) break;
  }
  if (status == VEK_SUCCESS) status = ReplaceTextFile(GetFileName(), out.str());
  // Edits that did not reach the file are still unsaved.
  if (status == VEK_SUCCESS) Edited = false;
  return status;
}

int DataFile::Read() {
  DataFileEntry::m_ArraySeperator = ArraySeparator;
  std::ifstream* in = nullptr;
  int status = OpenFileForReading(in, GetFileName());
  if (status != VEK_SUCCESS) return status;
  std::string line;
  // The end of the file is the only way out of the line reader, and a normal one.
  if (ReadLineIgnoreIrrelevantLines(in, line) == VEK_SUCCESS) {
    status = ReadFileVersion(line);
    while (status == VEK_SUCCESS && ReadLineIgnoreIrrelevantLines(in, line) == VEK_SUCCESS) {
      DataFileEntry* entry = CreateNewVariable();
      if (!entry) {
        status = VEK_FAILED_TO_ALLOCATE_MEMORY;
        break;
      }
      std::string text = line;
      status = ReadDataFileEntry(text, *entry);
      if (status != VEK_SUCCESS) {
        VEK_REPORT_ERROR("Cannot parse: " << line);
        delete entry;
        break;
      }
      try {
        Entries.push_back(entry);
      } catch (...) {
        delete entry;
        status = VEK_FAILED_TO_ALLOCATE_MEMORY;
      }
    }
  }
  delete in;
  if (status == VEK_SUCCESS) Edited = false;
  return status;
}

}  // namespace vek
