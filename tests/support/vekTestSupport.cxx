#include "vekTestSupport.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <random>
#include <sstream>

#include "vekOutputFile.h"

namespace vek::test {

TempDirectory::TempDirectory() {
  std::random_device seed;
  std::mt19937_64 random(seed() ^
                         static_cast<unsigned long long>(std::chrono::steady_clock::now().time_since_epoch().count()));
  do {
    Root = std::filesystem::temp_directory_path() / ("vek-test-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(Root));
}

TempDirectory::~TempDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(Root, ignored);
}

std::string TempDirectory::File(const std::string& name) const { return (Root / name).string(); }

LogCapture::LogCapture() : PreviousFile(OutputFile::GetFileName()) {
  OutputFile::SetFileName(Directory.File("DebugLog.txt").c_str());
}

LogCapture::~LogCapture() { OutputFile::SetFileName(PreviousFile.c_str()); }

std::string LogCapture::Text() const {
  std::string text = ReadFile(Directory.File("DebugLog.txt"));
  auto firstLineEnd = text.find('\n');
  return firstLineEnd == std::string::npos ? std::string() : text.substr(firstLineEnd + 1);
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << bytes;
}

std::string TextFileBytes(const std::string& text) {
#ifdef _WIN32
  std::string bytes;
  for (char c : text) {
    if (c == '\n') bytes += '\r';
    bytes += c;
  }
  return bytes;
#else
  return text;
#endif
}

}  // namespace vek::test
