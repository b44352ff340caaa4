// Windows bodies of the platform layer.
#include "vekPlatform.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace vek::platform {

namespace {

HWND g_editControl = nullptr;
HWND g_frame = nullptr;
constexpr char kWindowClass[] = "OutputWindow";

HMODULE OwnModule() {
  HMODULE module = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCSTR>(&OwnModule), &module);
  return module;
}

LRESULT CALLBACK OutputWindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_DESTROY:
      g_editControl = nullptr;
      g_frame = nullptr;
      return 0;
    case WM_SIZE:
      if (g_editControl) MoveWindow(g_editControl, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

bool RegisterWindowClassOnce() {
  static bool registered = false;
  if (registered) return true;
  WNDCLASSA windowClass{};
  windowClass.style = CS_HREDRAW | CS_VREDRAW;
  windowClass.lpfnWndProc = OutputWindowProcedure;
  windowClass.hInstance = OwnModule();
  windowClass.hIcon = LoadIcon(nullptr, IDI_APPLICATION);
  windowClass.hCursor = LoadCursor(nullptr, IDC_ARROW);
  windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  windowClass.lpszClassName = kWindowClass;
  registered = RegisterClassA(&windowClass) != 0;
  return registered;
}

HKEY RootHandle(RegistryRoot root) {
  return root == RegistryRoot::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

std::wstring WideFromUtf8(const std::string& text) {
  if (text.empty()) return std::wstring();
  int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(), length);
  return wide;
}

std::string Utf8FromWide(const std::wstring& wide) {
  if (wide.empty()) return std::string();
  int length =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), text.data(), length, nullptr, nullptr);
  return text;
}

// The type and bytes of a value, read through a key opened for reading only.
bool ReadRawRegistryValue(RegistryRoot root, const std::string& subkey, const std::string& name, DWORD& type,
                          std::vector<BYTE>& data) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(RootHandle(root), WideFromUtf8(subkey).c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  std::wstring wideName = WideFromUtf8(name);
  DWORD size = 0;
  LSTATUS status = RegQueryValueExW(key, wideName.c_str(), nullptr, &type, nullptr, &size);
  if (status == ERROR_SUCCESS) {
    data.assign(size, 0);
    status = RegQueryValueExW(key, wideName.c_str(), nullptr, &type, data.data(), &size);
    data.resize(size);
  }
  RegCloseKey(key);
  return status == ERROR_SUCCESS;
}

bool WriteRawRegistryValue(RegistryRoot root, const std::string& subkey, const std::string& name, DWORD type,
                           const void* data, DWORD size) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(RootHandle(root), WideFromUtf8(subkey).c_str(), 0, KEY_SET_VALUE, &key) != ERROR_SUCCESS)
    return false;
  LSTATUS status = RegSetValueExW(key, WideFromUtf8(name).c_str(), 0, type, static_cast<const BYTE*>(data), size);
  RegCloseKey(key);
  return status == ERROR_SUCCESS;
}

}  // namespace

char PathSeparator() { return '\\'; }

std::string ModuleDirectory() {
  char path[MAX_PATH] = {};
  DWORD length = GetModuleFileNameA(OwnModule(), path, MAX_PATH);
  std::string name(path, length);
  auto slash = name.find_last_of("\\/");
  return slash == std::string::npos ? std::string(".\\") : name.substr(0, slash + 1);
}

std::string EnvironmentVariable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string DefaultBaseDirectory() { return "C:\\VeltraDisplay\\"; }

int PrimaryLanguageId() { return static_cast<int>(GetThreadLocale() & 0x3FF); }

bool ModuleResource(const std::string& moduleName, const std::string& type, int id, std::string& bytes) {
  HMODULE module = GetModuleHandleA(moduleName.c_str());
  if (!module) return false;
  HRSRC resource = FindResourceA(module, MAKEINTRESOURCEA(id), type.c_str());
  if (!resource) return false;
  HGLOBAL loaded = LoadResource(module, resource);
  const void* data = loaded ? LockResource(loaded) : nullptr;
  if (!data) return false;
  bytes.assign(static_cast<const char*>(data), SizeofResource(module, resource));
  return true;
}

void RegisterModuleResource(const std::string&, const std::string&, int, const unsigned char*, std::size_t) {}

const char* ModuleFileSuffix() { return ".dll"; }

bool LoadModule(const std::string& path) {
  // Never freed, so that look-ups by the module's name find it for the rest of the process.
  return LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH) != nullptr;
}

void AdviseLargePages(const void*, std::size_t) {}

bool WriteFileDurably(const std::string& path, const std::string& bytes) {
  HANDLE file =
      CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  bool ok = true;
  std::size_t offset = 0;
  while (ok && offset < bytes.size()) {
    DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - offset, 1u << 30));
    DWORD written = 0;
    ok = WriteFile(file, bytes.data() + offset, chunk, &written, nullptr) && written > 0;
    offset += written;
  }
  ok = ok && FlushFileBuffers(file);
  return CloseHandle(file) && ok;
}

bool ReplaceFileAtomically(const std::string& source, const std::string& target) {
  return MoveFileExA(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

bool FileRefusesWriting(const std::string& path) {
  HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                            nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) {
    CloseHandle(file);
    return false;
  }
  const DWORD error = GetLastError();
  return error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND;
}

const char* LineEnd() { return "\r\n"; }

FileLock::FileLock(const std::string& lockFile) {
  HANDLE file = CreateFileA(lockFile.c_str(), GENERIC_READ | GENERIC_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return;
  Handle = file;
  OVERLAPPED whole{};
  Locked = LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, MAXDWORD, MAXDWORD, &whole) != 0;
}

FileLock::~FileLock() {
  if (!Handle) return;
  if (Locked) {
    OVERLAPPED whole{};
    UnlockFileEx(Handle, 0, MAXDWORD, MAXDWORD, &whole);
  }
  CloseHandle(Handle);
}

bool TextWindowExists() { return g_editControl != nullptr; }

bool TextWindowCreate() {
  if (g_editControl) return true;
  if (!RegisterWindowClassOnce()) return true;
  g_frame = CreateWindowExA(0, kWindowClass, "OutputWindow", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0, 0, 512, 512,
                            nullptr, nullptr, OwnModule(), nullptr);
  if (!g_frame) return true;
  RECT client{};
  GetClientRect(g_frame, &client);
  g_editControl = CreateWindowExA(
      0, "EDIT", "",
      WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL | ES_AUTOHSCROLL, 0,
      0, client.right - client.left, client.bottom - client.top, g_frame, nullptr, OwnModule(), nullptr);
  if (g_editControl) SendMessageA(g_editControl, EM_SETLIMITTEXT, kTextWindowLimit, 0);
  ShowWindow(g_frame, SW_SHOW);
  return true;
}

void TextWindowAppend(const std::string& text) {
  if (!g_editControl) return;
  LRESULT length = SendMessageA(g_editControl, WM_GETTEXTLENGTH, 0, 0);
  SendMessageA(g_editControl, EM_SETSEL, static_cast<WPARAM>(length), length);
  SendMessageA(g_editControl, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text.c_str()));
}

std::string TextWindowText() {
  if (!g_editControl) return "";
  int length = GetWindowTextLengthA(g_editControl);
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  int copied = GetWindowTextA(g_editControl, text.data(), length + 1);
  text.resize(static_cast<std::size_t>(copied));
  return text;
}

void TextWindowDestroy() {
  if (g_frame) DestroyWindow(g_frame);
  g_frame = nullptr;
  g_editControl = nullptr;
}

void SetEnvironmentValue(const char* name, const std::string& value) { _putenv_s(name, value.c_str()); }

bool RegistryKeyExists(RegistryRoot root, const std::string& subkey) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(RootHandle(root), WideFromUtf8(subkey).c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

bool RegistryCreateKey(RegistryRoot root, const std::string& subkey) {
  HKEY key = nullptr;
  if (RegCreateKeyExW(RootHandle(root), WideFromUtf8(subkey).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                      KEY_ALL_ACCESS, nullptr, &key, nullptr) != ERROR_SUCCESS)
    return false;
  RegCloseKey(key);
  return true;
}

bool RegistryDeleteKey(RegistryRoot root, const std::string& subkey) {
  LSTATUS status = RegDeleteTreeW(RootHandle(root), WideFromUtf8(subkey).c_str());
  return status == ERROR_SUCCESS || status == ERROR_FILE_NOT_FOUND;
}

bool RegistryReadString(RegistryRoot root, const std::string& subkey, const std::string& name, std::string& text) {
  DWORD type = 0;
  std::vector<BYTE> data;
  if (!ReadRawRegistryValue(root, subkey, name, type, data) || (type != REG_SZ && type != REG_EXPAND_SZ)) return false;
  std::wstring wide(reinterpret_cast<const wchar_t*>(data.data()), data.size() / sizeof(wchar_t));
  while (!wide.empty() && wide.back() == L'\0') wide.pop_back();
  text = Utf8FromWide(wide);
  return true;
}

bool RegistryReadDword(RegistryRoot root, const std::string& subkey, const std::string& name, unsigned long& value) {
  DWORD type = 0;
  std::vector<BYTE> data;
  if (!ReadRawRegistryValue(root, subkey, name, type, data) || type != REG_DWORD || data.size() != sizeof(DWORD))
    return false;
  DWORD number = 0;
  std::copy(data.begin(), data.end(), reinterpret_cast<BYTE*>(&number));
  value = number;
  return true;
}

bool RegistryWriteString(RegistryRoot root, const std::string& subkey, const std::string& name,
                         const std::string& text) {
  std::wstring wide = WideFromUtf8(text);
  return WriteRawRegistryValue(root, subkey, name, REG_SZ, wide.c_str(),
                               static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t)));
}

bool RegistryWriteDword(RegistryRoot root, const std::string& subkey, const std::string& name, unsigned long value) {
  DWORD number = value;
  return WriteRawRegistryValue(root, subkey, name, REG_DWORD, &number, sizeof(number));
}

std::string ShellCommandForProgram(const std::string& path) { return "call \"" + path + "\""; }

bool IsStandardErrorTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

}  // namespace vek::platform
