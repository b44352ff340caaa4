#include "vekOutputMessages.h"

#include <cstring>

#include "vekOutputFile.h"

namespace vek {

void OutputWindowError(const char* message) { OutputFile::Error(message); }
void OutputWindowWarning(const char* message) { OutputFile::Error(message); }
void OutputWindowConsoleMessage(const char* message) { OutputFile::Error(message); }
void OutputWindowProgrammerMessage(const char* message) { OutputFile::Error(message); }
void OutputWindowReportMessage(const char* message) { OutputFile::ReportMessage(message); }

std::string LocationPrefix(const char* kind, const char* sourceFile, int line) {
  std::string stem = sourceFile;
  auto slash = stem.find_last_of("/\\");
  if (slash != std::string::npos) stem.erase(0, slash + 1);
  auto dot = stem.find_last_of('.');
  if (dot != std::string::npos) stem.erase(dot);
  return std::string(kind) + stem + ", " + std::to_string(line) + ": ";
}

}  // namespace vek
