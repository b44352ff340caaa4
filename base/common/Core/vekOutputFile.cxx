#include "vekOutputFile.h"

#include <cstdio>
#include <cstring>
#include <ctime>

#include "vekDirectoryInitializer.h"
#include "vekPlatform.h"

namespace vek {

char OutputFile::m_FileName[OutputFile::kFileNameSize] = {};
std::ofstream* OutputFile::tstream = nullptr;
bool OutputFile::m_TimestampEntries = false;

namespace {

std::string DefaultLogFileName() {
  std::string base = platform::EnvironmentVariable("VEK_BASE_DIR");
  // Windows keeps the log's historical lower-case folder name; the file system ignores case.
  if (base.empty() && platform::PathSeparator() == '\\') return platform::DefaultBaseDirectory() + "temp\\DebugLog.txt";
  return DirectoryInitializer::ResolveBaseDirectory(nullptr) + "Temp" + platform::PathSeparator() + "DebugLog.txt";
}

void CopyFileName(const std::string& name, char* buffer) {
  std::size_t length = std::min(name.size(), static_cast<std::size_t>(OutputFile::kFileNameSize - 1));
  std::memcpy(buffer, name.data(), length);
  buffer[length] = '\0';
}

}  // namespace

OutputFile* OutputFile::New() { return new OutputFile; }

void OutputFile::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "FileName: " << GetFileName() << "\n";
  os << indent << "TimestampEntries: " << m_TimestampEntries << "\n";
  os << indent << "Open: " << (tstream != nullptr) << "\n";
}

std::string OutputFile::GetFileName() {
  if (m_FileName[0] == '\0') CopyFileName(DefaultLogFileName(), m_FileName);
  return m_FileName;
}

void OutputFile::GetInstance() {
  if (tstream) return;
  std::string name = GetFileName();
  RenameOldFiles(kGenerations, name.c_str(), true);
  tstream = new std::ofstream(name, std::ios::out | std::ios::trunc | std::ios::binary);
  Timestamp();
}

void OutputFile::ReportMessage(const char* message) {
  GetInstance();
  if (m_TimestampEntries) *tstream << "(" << GetTimestamp(true) << ") ";
  *tstream << message;
  tstream->flush();
}

void OutputFile::SetFileName(const char* fileName) {
  CopyFileName(fileName ? fileName : "", m_FileName);
  Destroy();
}

void OutputFile::Timestamp() {
  bool timestampEntries = m_TimestampEntries;
  m_TimestampEntries = false;
  ReportMessage(("Date and Time: " + GetTimestamp(false) + "\r\n").c_str());
  m_TimestampEntries = timestampEntries;
}

std::string OutputFile::GetTimestamp(bool shortForm) {
  std::time_t now = std::time(nullptr);
  const std::tm* local = std::localtime(&now);
  std::string text;
  if (shortForm) {
    char buffer[80] = {};
    std::strftime(buffer, sizeof buffer, "%b %d %H:%M:%S", local);
    text = buffer;
  } else {
    text = std::asctime(local);
  }
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == '\t')) text.pop_back();
  return text;
}

void OutputFile::RenameOldFiles(int count, const char* fileName, bool splitAtExtension) {
  std::string name = fileName;
  std::string base = name;
  std::string extension;
  auto dot = name.find_last_of('.');
  auto separator = name.find_last_of("/\\");
  if (splitAtExtension && dot != std::string::npos && (separator == std::string::npos || dot > separator)) {
    base = name.substr(0, dot);
    extension = name.substr(dot);
  }
  auto generation = [&](int i) { return base + "_" + std::to_string(i) + extension; };
  std::remove(generation(count - 1).c_str());
  for (int i = count - 2; i >= 0; --i) std::rename(generation(i).c_str(), generation(i + 1).c_str());
  std::rename(name.c_str(), generation(0).c_str());
}

void OutputFile::Destroy() {
  delete tstream;
  tstream = nullptr;
}

}  // namespace vek
