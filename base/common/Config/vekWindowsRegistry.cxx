#include "vekWindowsRegistry.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "vekErrorHelper.h"
#include "vekOutputMessages.h"
#include "vekPlatform.h"
#include "vekSaturatedInt.h"
#include "vekTextConversion.h"

namespace vek {

namespace {

constexpr std::uint32_t kCipherSeed = 0x5EC7E7u;
constexpr char kHexDigits[] = "0123456789ABCDEF";

std::uint8_t NextCipherByte(std::uint32_t& state) {
  state = state * 1664525u + 1013904223u;
  return static_cast<std::uint8_t>(state >> 24);
}

std::string Encipher(const std::string& plain) {
  std::uint32_t state = kCipherSeed;
  std::string stored;
  stored.reserve(plain.size() * 2);
  for (unsigned char c : plain) {
    unsigned char mixed = c ^ NextCipherByte(state);
    stored += kHexDigits[mixed >> 4];
    stored += kHexDigits[mixed & 15];
  }
  return stored;
}

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

bool Decipher(const std::string& stored, std::string& plain) {
  if (stored.size() % 2 != 0) return false;
  std::uint32_t state = kCipherSeed;
  std::string text;
  for (std::size_t i = 0; i < stored.size(); i += 2) {
    int high = HexValue(stored[i]), low = HexValue(stored[i + 1]);
    if (high < 0 || low < 0) return false;
    text += static_cast<char>((high << 4 | low) ^ NextCipherByte(state));
  }
  plain = text;
  return true;
}

}  // namespace

WindowsRegistry* WindowsRegistry::New() { return new (std::nothrow) WindowsRegistry; }

void WindowsRegistry::PrintSelf(std::ostream& os, Indent indent) const { Object::PrintSelf(os, indent); }

int WindowsRegistry::GetRegistryString(const std::string& valueName, std::string& value, const std::string& subkey,
                                       const int& bufferSize, Root root) {
  std::string text;
  if (!platform::RegistryReadString(root, subkey, valueName, text)) return VEK_UNABLE_TO_GET_REGISTRY_VALUE;
  // The text and its terminating NUL must fit the caller's buffer, as with a fixed-size query.
  if (bufferSize <= 0 || text.size() >= static_cast<std::size_t>(bufferSize)) return VEK_UNABLE_TO_GET_REGISTRY_VALUE;
  value = text;
  return VEK_SUCCESS;
}

int WindowsRegistry::SetRegistryString(const std::string& valueName, const std::string& valueText,
                                       const std::string& subkey) {
  if (!platform::RegistryCreateKey(Root::LocalMachine, subkey) ||
      !platform::RegistryWriteString(Root::LocalMachine, subkey, valueName, valueText)) {
    VEK_REPORT_ERROR("Unable to Write Registry KeyValue");
    return VEK_UNABLE_TO_WRITE_REGISTRY_VALUE;
  }
  return VEK_SUCCESS;
}

int WindowsRegistry::SetRegistry(const std::string& subkey, const unsigned long& value, const std::string& valueName,
                                 bool create) {
  if (!platform::RegistryKeyExists(Root::LocalMachine, subkey)) {
    VEK_REPORT_ERROR("Registry Key does not exists");
    if (!create) return VEK_UNABLE_TO_WRITE_REGISTRY_VALUE;
    if (!platform::RegistryCreateKey(Root::LocalMachine, subkey)) {
      VEK_REPORT_ERROR("Unable to Create Non existing Registry KeyValue");
      return VEK_UNABLE_TO_WRITE_REGISTRY_VALUE;
    }
  }
  if (!platform::RegistryWriteDword(Root::LocalMachine, subkey, valueName, value)) {
    VEK_REPORT_ERROR("Unable to Set Registry KeyValue");
    return VEK_UNABLE_TO_WRITE_REGISTRY_VALUE;
  }
  return VEK_SUCCESS;
}

int WindowsRegistry::GetVeltraDisplayString(const std::string& valueName, std::string& value, const int& bufferSize) {
  return GetRegistryString(valueName, value, kRegistryCalibrationKey, bufferSize);
}

int WindowsRegistry::SetVeltraDisplayString(const std::string& valueName, const std::string& valueText) {
  return SetRegistryString(valueName, valueText, kRegistryCalibrationKey);
}

int WindowsRegistry::GetStatus(const char* valueName, bool& on) {
  std::string text;
  int result = GetRegistryString(valueName, text, kRegistryPlaybackKey, kStatusBufferSize);
  if (result == VEK_SUCCESS) on = !text.empty() && text[0] == '1';
  return result;
}

int WindowsRegistry::GetWarpingStatus(bool& on) { return GetStatus("WARPING", on); }

int WindowsRegistry::SetWarpingStatus(const bool& on) {
  return SetRegistryString("WARPING", on ? "1" : "0", kRegistryPlaybackKey);
}

int WindowsRegistry::GetIdentityWarpingStatus(bool& on) { return GetStatus("IdentityWARPING", on); }

int WindowsRegistry::SetIdentityWarpingStatus(bool on) {
  return SetRegistryString("IdentityWARPING", on ? "1" : "0", kRegistryPlaybackKey);
}

int WindowsRegistry::GetRemoteDesktopWarpingStatus(KORRemoteWarpType& mode) {
  std::string text;
  int result = GetRegistryString("RemoteDesktopWARPING", text, kRegistryPlaybackKey, kStatusBufferSize);
  if (result != VEK_SUCCESS) return result;
  // Compared unsigned, so that a negative number is out of range as well.
  auto number = static_cast<unsigned int>(SaturatedAtoi(text.c_str()));
  if (number > static_cast<unsigned int>(KORRemoteWarpMode4))
    return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_GET_REGISTRY_VALUE,
                                               "RemoteDesktopWarp registry value out of expected range");
  mode = static_cast<KORRemoteWarpType>(number);
  return VEK_SUCCESS;
}

int WindowsRegistry::SetRemoteDesktopWarpingStatus(const KORRemoteWarpType& mode) {
  if (static_cast<unsigned int>(mode) > static_cast<unsigned int>(KORRemoteWarpMode4))
    return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_WRITE_REGISTRY_VALUE,
                                               "RemoteDesktopWarp value out of expected range");
  return SetRegistryString("RemoteDesktopWARPING", std::to_string(static_cast<int>(mode)), kRegistryPlaybackKey);
}

int WindowsRegistry::GetProjectorColorStateFile(std::string& path) {
  return GetRegistryString("ProjectorColorStateFile", path, kRegistryPlaybackKey, kStatusBufferSize);
}

int WindowsRegistry::SetProjectorColorStateFile(const std::string& path) {
  return SetRegistryString("ProjectorColorStateFile", path, kRegistryPlaybackKey);
}

int WindowsRegistry::WriteLastErrorMessage(int code, const std::wstring& message) {
  bool keyReady = platform::RegistryCreateKey(Root::CurrentUser, kRegistryCompanionKey);
  int result = VEK_SUCCESS;
  if (!keyReady || !platform::RegistryWriteDword(Root::CurrentUser, kRegistryCompanionKey, "LastError",
                                                 static_cast<std::uint32_t>(code))) {
    VEK_REPORT_ERROR("Unable to Write  Registry Key Value LastError");
    result = VEK_UNABLE_TO_WRITE_REGISTRY_VALUE;
  }
  if (!keyReady || !platform::RegistryWriteString(Root::CurrentUser, kRegistryCompanionKey, "LastErrorMessage",
                                                  WideToUtf8(message))) {
    VEK_REPORT_ERROR("Unable to Write  Registry Key Value LastErrorMessage");
    result = VEK_UNABLE_TO_WRITE_REGISTRY_VALUE;
  }
  return result;
}

int WindowsRegistry::SetEncryptedRegistryString(const std::string& valueName, const std::string& valueText,
                                                const std::string& subkey) {
  return SetRegistryString(valueName, Encipher(valueText), subkey);
}

int WindowsRegistry::GetEncryptedRegistryString(const std::string& valueName, std::string& value,
                                                const std::string& subkey, const int& bufferSize) {
  std::string stored, plain;
  int result = GetRegistryString(valueName, stored, subkey, bufferSize);
  if (result != VEK_SUCCESS) return result;
  if (!Decipher(stored, plain)) return VEK_UNABLE_TO_GET_REGISTRY_VALUE;
  value = plain;
  return VEK_SUCCESS;
}

void WindowsRegistry::GetCompanionFloat(const std::wstring& valueName, float& value) {
  std::string text;
  if (!platform::RegistryReadString(Root::CurrentUser, kRegistryCompanionKey, WideToUtf8(valueName), text) ||
      text.empty())
    return;
  char* end = nullptr;
  errno = 0;
  float number = std::strtof(text.c_str(), &end);
  if (errno == 0 && end == text.c_str() + text.size()) value = number;
}

void WindowsRegistry::GetCompanionDword(const std::wstring& valueName, unsigned long& value) {
  platform::RegistryReadDword(Root::CurrentUser, kRegistryCompanionKey, WideToUtf8(valueName), value);
}

}  // namespace vek
