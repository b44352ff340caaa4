#pragma once
#include <filesystem>
#include <string>

namespace vek::test {

/// A fresh directory for one test, removed with everything in it when the test ends.
class TempDirectory {
 public:
  TempDirectory();
  ~TempDirectory();
  TempDirectory(const TempDirectory&) = delete;
  TempDirectory& operator=(const TempDirectory&) = delete;

  const std::filesystem::path& Path() const { return Root; }
  /// The path of `name` inside the directory, as a narrow string.
  std::string File(const std::string& name) const;

 private:
  std::filesystem::path Root;
};

/// Sends the debug log to a file of its own for one test, and back to the previous file after.
class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  /// Everything logged since the capture began, without the log's opening timestamp line.
  std::string Text() const;

 private:
  TempDirectory Directory;
  std::string PreviousFile;
};

/// The whole file as bytes ("" when it cannot be read).
std::string ReadFile(const std::string& path);
/// Writes bytes exactly as given.
void WriteFile(const std::string& path, const std::string& bytes);
/// The bytes of a text file the library writes, given its text with "\n" line ends: on Windows
/// every "\n" becomes "\r\n", elsewhere the text stays as it is.
std::string TextFileBytes(const std::string& text);

}  // namespace vek::test
