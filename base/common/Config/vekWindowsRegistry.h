#pragma once
#include <string>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekRegistryRoot.h"

namespace vek {

/// The remote-desktop warping mode kept in "RemoteDesktopWARPING" as decimal text. What each mode
/// does is the playback side's business; this library only keeps the number within 0 to 4.
enum KORRemoteWarpType : int {
  KORRemoteWarpMode0 = 0,
  KORRemoteWarpMode1 = 1,
  KORRemoteWarpMode2 = 2,
  KORRemoteWarpMode3 = 3,
  KORRemoteWarpMode4 = 4,
};

// The keys, outside the class: static data of an exported class would have to be imported from
// the library.
inline constexpr char kRegistryPlaybackKey[] = "Software\\Veltra Display\\Playback";
inline constexpr char kRegistryCalibrationKey[] = "Software\\Veltra Display\\Calibration";
/// The product-specific key under the current user that a companion program reads.
inline constexpr char kRegistryCompanionKey[] = "Software\\Veltra Display\\Calibration Companion";

/// The few settings that programs which never read the option files need: warping switches, the
/// remote-desktop warping mode and the projector colour state file (strings under two keys of the
/// local machine), and the last error of a calibration run (under the companion key of the current
/// user). On POSIX the registry is the store on disk described in vekRegistryRoot.h.
///
/// Reads never create keys and leave their output untouched on any failure (missing key or value,
/// a value of another type, a string that with its terminating NUL does not fit `bufferSize`
/// bytes of UTF-8), so callers preset a default. Writes report a line to the error window and
/// return VEK_UNABLE_TO_WRITE_REGISTRY_VALUE.
///
/// The enciphered strings: each byte of the UTF-8 text is XORed with the top byte of a 32-bit
/// linear congruential sequence (x = x * 1664525 + 1013904223, starting from 0x5EC7E7 and advanced
/// once before every byte) and written as two upper-case hexadecimal digits. `bufferSize` of the
/// enciphered getter applies to that stored text; stored text that is not such hexadecimal reads
/// as a failure.
///
/// SetRegistry without `create` on a missing key reports "Registry Key does not exists" and fails
/// without trying the write. WriteLastErrorMessage creates the companion key when it is missing.
/// SetRemoteDesktopWarpingStatus refuses a mode outside 0 to 4, so that what it writes always reads
/// back.
class VEK_EXPORT WindowsRegistry : public Object {
 public:
  using Root = platform::RegistryRoot;
  static constexpr int kStatusBufferSize = 1024;

  static WindowsRegistry* New();
  const char* GetClassName() const override { return "WindowsRegistry"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  static int GetRegistryString(const std::string& valueName, std::string& value, const std::string& subkey,
                               const int& bufferSize, Root root = Root::LocalMachine);
  /// Creates the key of the local machine when it is missing.
  static int SetRegistryString(const std::string& valueName, const std::string& valueText, const std::string& subkey);
  /// Writes a DWORD under the local machine.
  static int SetRegistry(const std::string& subkey, const unsigned long& value, const std::string& valueName,
                         bool create);

  static int GetVeltraDisplayString(const std::string& valueName, std::string& value, const int& bufferSize);
  static int SetVeltraDisplayString(const std::string& valueName, const std::string& valueText);

  /// True exactly when the stored text starts with "1".
  static int GetWarpingStatus(bool& on);
  static int SetWarpingStatus(const bool& on);
  static int GetIdentityWarpingStatus(bool& on);
  static int SetIdentityWarpingStatus(bool on);
  /// The text is read as atoi does ("abc" is 0); a number outside 0 to 4 fails.
  static int GetRemoteDesktopWarpingStatus(KORRemoteWarpType& mode);
  static int SetRemoteDesktopWarpingStatus(const KORRemoteWarpType& mode);
  /// Read with a buffer of kStatusBufferSize bytes.
  static int GetProjectorColorStateFile(std::string& path);
  static int SetProjectorColorStateFile(const std::string& path);

  /// "LastError" (DWORD, the code's bit pattern) and "LastErrorMessage" (string) of the companion key.
  static int WriteLastErrorMessage(int code, const std::wstring& message);

  static int SetEncryptedRegistryString(const std::string& valueName, const std::string& valueText,
                                        const std::string& subkey);
  static int GetEncryptedRegistryString(const std::string& valueName, std::string& value, const std::string& subkey,
                                        const int& bufferSize);

  /// A float kept as decimal text in a string value of the companion key; `value` is left as it was
  /// when the value is missing, not a string, or not wholly a number.
  static void GetCompanionFloat(const std::wstring& valueName, float& value);
  /// A DWORD value of the companion key; `value` is left as it was when it is missing or no DWORD.
  static void GetCompanionDword(const std::wstring& valueName, unsigned long& value);

 protected:
  WindowsRegistry() = default;
  ~WindowsRegistry() override = default;

 private:
  WindowsRegistry(const WindowsRegistry&) = delete;
  WindowsRegistry& operator=(const WindowsRegistry&) = delete;

  static int GetStatus(const char* valueName, bool& on);
};

}  // namespace vek
