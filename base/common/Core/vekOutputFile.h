#pragma once
#include <fstream>
#include <string>

#include "vekObject.h"

namespace vek {

/// The rotating debug log every library message ends in. The log opens on the first message
/// (rotating up to ten older generations: DebugLog.txt -> DebugLog_0.txt -> ... -> DebugLog_9.txt)
/// and stays open until Destroy(). Entries are written exactly as given (the caller supplies the
/// line end); the file is opened in binary mode so the bytes are the same on every platform.
///
/// The default file is "DebugLog.txt" in the temporary folder of the base directory: on Windows
/// "C:\VeltraDisplay\temp\DebugLog.txt"; on POSIX <base>/Temp/DebugLog.txt, where <base> is
/// VEK_BASE_DIR when set, else the platform's default base (see vekPlatform.h).
class VEK_EXPORT OutputFile : public Object {
 public:
  static constexpr int kFileNameSize = 4096;
  static constexpr int kGenerations = 10;

  static OutputFile* New();
  const char* GetClassName() const override { return "OutputFile"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  static void ReportMessage(const char* message);
  static void Error(const char* message) { ReportMessage(message); }
  static void Warning(const char* message) { ReportMessage(message); }
  static void ConsoleMessage(const char* message) { ReportMessage(message); }
  static void ProgrammerMessage(const char* message) { ReportMessage(message); }

  /// Opens (and rotates) the log if it is not open yet.
  static void GetInstance();
  /// Closes the log; the next message opens and rotates `fileName`.
  static void SetFileName(const char* fileName);
  static std::string GetFileName();
  static void SetTimestampEntries(bool on) { m_TimestampEntries = on; }
  static bool GetTimestampEntries() { return m_TimestampEntries; }
  /// Writes "Date and Time: " + long timestamp + "\r\n".
  static void Timestamp();
  /// Local time: short form "%b %d %H:%M:%S", long form as asctime, without trailing line ends.
  static std::string GetTimestamp(bool shortForm);
  /// Shifts name -> base_0ext -> ... -> base_(count-1)ext, deleting the oldest; base and ext
  /// split at the last "." of the file name when splitAtExtension. Failures are ignored.
  static void RenameOldFiles(int count, const char* fileName, bool splitAtExtension);
  static void Destroy();

 protected:
  OutputFile() = default;
  ~OutputFile() override = default;

 private:
  static char m_FileName[kFileNameSize];  // empty until set or first needed: then the default
  static std::ofstream* tstream;
  static bool m_TimestampEntries;
};

}  // namespace vek
