// POSIX bodies of the platform layer.
#include "vekPlatform.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <sstream>
#include <string_view>
#include <tuple>

namespace vek::platform {

namespace {

struct ResourceBytes {
  const unsigned char* data;
  std::size_t size;
};
using ResourceKey = std::tuple<std::string, std::string, int>;

// Function-local statics: modules register from their static initialisers, whose order across
// modules is not fixed.
std::map<ResourceKey, ResourceBytes>& ResourceTable() {
  static std::map<ResourceKey, ResourceBytes> table;
  return table;
}
std::mutex& ResourceMutex() {
  static std::mutex mutex;
  return mutex;
}

// Windows primary language identifiers of the languages a locale name can start with.
struct LanguageCode {
  std::string_view code;
  int id;
};
constexpr LanguageCode kLanguageCodes[] = {
    {"ar", 1},  {"bg", 2},  {"ca", 3},  {"zh", 4},  {"cs", 5},  {"da", 6},  {"de", 7},  {"el", 8},
    {"en", 9},  {"es", 10}, {"fi", 11}, {"fr", 12}, {"he", 13}, {"hu", 14}, {"is", 15}, {"it", 16},
    {"ja", 17}, {"ko", 18}, {"nl", 19}, {"no", 20}, {"nb", 20}, {"nn", 20}, {"pl", 21}, {"pt", 22},
    {"ro", 24}, {"ru", 25}, {"hr", 26}, {"sk", 27}, {"sv", 29}, {"th", 30}, {"tr", 31}, {"id", 33},
    {"uk", 34}, {"sl", 36}, {"et", 37}, {"lv", 38}, {"lt", 39}, {"vi", 42}};
constexpr int kEnglish = 9;

std::string g_windowText;
bool g_windowExists = false;

std::string RegistryRootDirectory(RegistryRoot root) {
  const char* leaf = root == RegistryRoot::LocalMachine ? "LocalMachine" : "CurrentUser";
  std::string base = EnvironmentVariable("VEK_REGISTRY_DIR");
  if (!base.empty()) return base + (base.back() == '/' ? "" : "/") + leaf;
  if (root == RegistryRoot::LocalMachine) return "/var/lib/VeltraDisplay/Registry";
  // VEK_BASE_DIR is how a process keeps out of the home folder, so the user's store moves with it.
  std::string baseDirectory = EnvironmentVariable("VEK_BASE_DIR");
  if (!baseDirectory.empty()) return baseDirectory + (baseDirectory.back() == '/' ? "" : "/") + "Registry/CurrentUser";
  std::string config = EnvironmentVariable("XDG_CONFIG_HOME");
  if (config.empty()) {
    std::string home = EnvironmentVariable("HOME");
    if (home.empty()) return "/tmp/VeltraDisplay/Registry";
    config = home + "/.config";
  }
  return config + "/VeltraDisplay/Registry";
}

// Lower-case (names are case-blind) and percent-encode everything but [a-z0-9 _-]: no name can
// then be "." or "..", hold a "/", or collide with the ".lock", ".tmp" and ".value" files.
std::string EncodeRegistryName(const std::string& name) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string encoded;
  for (unsigned char c : name) {
    c = static_cast<unsigned char>(std::tolower(c));
    if (std::isalnum(c) && c < 0x80) {
      encoded += static_cast<char>(c);
    } else if (c == ' ' || c == '_' || c == '-') {
      encoded += static_cast<char>(c);
    } else {
      encoded += '%';
      encoded += kHex[c >> 4];
      encoded += kHex[c & 15];
    }
  }
  return encoded;
}

std::string RegistryKeyDirectory(RegistryRoot root, const std::string& subkey) {
  std::string path = RegistryRootDirectory(root);
  std::size_t start = 0;
  while (start <= subkey.size()) {
    std::size_t end = std::min(subkey.find('\\', start), subkey.size());
    if (end > start) path += "/" + EncodeRegistryName(subkey.substr(start, end - start));
    start = end + 1;
  }
  return path;
}

std::string RegistryValueFile(const std::string& keyDirectory, const std::string& name) {
  return keyDirectory + "/" + EncodeRegistryName(name) + ".value";
}

bool IsDirectory(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

// The stored value: its type tag and its text. False when the file is missing or unreadable.
bool ReadRegistryValueFile(RegistryRoot root, const std::string& subkey, const std::string& name, std::string& type,
                           std::string& text) {
  std::ifstream in(RegistryValueFile(RegistryKeyDirectory(root, subkey), name), std::ios::binary);
  if (!in || !std::getline(in, type)) return false;
  std::ostringstream rest;
  rest << in.rdbuf();
  text = rest.str();
  return true;
}

bool WriteRegistryValueFile(RegistryRoot root, const std::string& subkey, const std::string& name,
                            const std::string& content) {
  std::string key = RegistryKeyDirectory(root, subkey);
  if (!IsDirectory(key)) return false;
  FileLock lock(key + "/.lock");
  if (!lock.IsLocked()) return false;
  std::string temporary = key + "/.tmp";
  if (WriteFileDurably(temporary, content) && ReplaceFileAtomically(temporary, RegistryValueFile(key, name)))
    return true;
  ::unlink(temporary.c_str());
  return false;
}

}  // namespace

char PathSeparator() { return '/'; }

std::string ModuleDirectory() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&ModuleDirectory), &info) == 0 || info.dli_fname == nullptr) return "./";
  std::string path = info.dli_fname;
  auto slash = path.find_last_of('/');
  return slash == std::string::npos ? std::string("./") : path.substr(0, slash + 1);
}

std::string EnvironmentVariable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string DefaultBaseDirectory() {
  std::string data = EnvironmentVariable("XDG_DATA_HOME");
  if (data.empty()) {
    std::string home = EnvironmentVariable("HOME");
    if (home.empty()) return "/tmp/VeltraDisplay/";
    data = home + "/.local/share";
  }
  if (data.back() != '/') data += '/';
  return data + "VeltraDisplay/";
}

int PrimaryLanguageId() {
  std::string locale;
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    locale = EnvironmentVariable(name);
    if (!locale.empty()) break;
  }
  if (locale.size() < 2) return kEnglish;
  std::string code = locale.substr(0, 2);
  std::transform(code.begin(), code.end(), code.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (locale.size() > 2 && std::isalpha(static_cast<unsigned char>(locale[2]))) return kEnglish;
  for (const auto& entry : kLanguageCodes)
    if (entry.code == code) return entry.id;
  return kEnglish;
}

bool ModuleResource(const std::string& moduleName, const std::string& type, int id, std::string& bytes) {
  std::lock_guard<std::mutex> lock(ResourceMutex());
  auto found = ResourceTable().find({moduleName, type, id});
  if (found == ResourceTable().end()) return false;
  bytes.assign(reinterpret_cast<const char*>(found->second.data), found->second.size);
  return true;
}

void RegisterModuleResource(const std::string& moduleName, const std::string& type, int id, const unsigned char* data,
                            std::size_t size) {
  std::lock_guard<std::mutex> lock(ResourceMutex());
  ResourceTable()[{moduleName, type, id}] = {data, size};
}

const char* ModuleFileSuffix() { return ".so"; }

bool LoadModule(const std::string& path) {
  // Never closed: the resources it registered point into its static data.
  return ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) != nullptr;
}

void AdviseLargePages(const void* data, std::size_t bytes) {
#ifdef MADV_HUGEPAGE
  const std::uintptr_t page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  std::uintptr_t begin = (reinterpret_cast<std::uintptr_t>(data) + page - 1) & ~(page - 1);
  std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(data) + bytes) & ~(page - 1);
  if (end > begin) ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#else
  (void)data;
  (void)bytes;
#endif
}

bool WriteFileDurably(const std::string& path, const std::string& bytes) {
  int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (fd < 0) return false;
  const char* data = bytes.data();
  std::size_t left = bytes.size();
  bool ok = true;
  while (ok && left > 0) {
    ssize_t written = ::write(fd, data, left);
    if (written < 0 && errno == EINTR) continue;
    ok = written > 0;
    if (ok) {
      data += written;
      left -= static_cast<std::size_t>(written);
    }
  }
  ok = ok && ::fsync(fd) == 0;
  return ::close(fd) == 0 && ok;
}

bool ReplaceFileAtomically(const std::string& source, const std::string& target) {
  if (::rename(source.c_str(), target.c_str()) != 0) return false;
  // Make the new directory entry itself durable; failing that is no reason to report failure.
  auto slash = target.find_last_of('/');
  std::string folder = slash == std::string::npos ? std::string(".") : target.substr(0, slash + 1);
  int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd >= 0) {
    ::fsync(fd);
    ::close(fd);
  }
  return true;
}

bool FileRefusesWriting(const std::string& path) {
  // O_NONBLOCK: a FIFO without a reader would otherwise hold the caller here.
  const int fd = ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (fd >= 0) {
    ::close(fd);
    return false;
  }
  return errno != ENOENT;
}

const char* LineEnd() { return "\n"; }

FileLock::FileLock(const std::string& lockFile) {
  int fd = ::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
  if (fd < 0) return;
  int result;
  do {
    result = ::flock(fd, LOCK_EX);
  } while (result != 0 && errno == EINTR);
  Handle = reinterpret_cast<void*>(static_cast<std::intptr_t>(fd));
  Locked = result == 0;
}

FileLock::~FileLock() {
  if (!Handle) return;
  int fd = static_cast<int>(reinterpret_cast<std::intptr_t>(Handle));
  if (Locked) ::flock(fd, LOCK_UN);
  ::close(fd);
}

bool TextWindowExists() { return g_windowExists; }

bool TextWindowCreate() {
  g_windowExists = true;
  return true;
}

void TextWindowAppend(const std::string& text) {
  if (!g_windowExists) return;
  std::size_t room = kTextWindowLimit - std::min(kTextWindowLimit, g_windowText.size());
  g_windowText.append(text, 0, std::min(room, text.size()));
}

std::string TextWindowText() { return g_windowText; }

void TextWindowDestroy() {
  g_windowExists = false;
  g_windowText.clear();
}

void SetEnvironmentValue(const char* name, const std::string& value) {
  if (value.empty())
    ::unsetenv(name);
  else
    ::setenv(name, value.c_str(), 1);
}

bool RegistryKeyExists(RegistryRoot root, const std::string& subkey) {
  return IsDirectory(RegistryKeyDirectory(root, subkey));
}

bool RegistryCreateKey(RegistryRoot root, const std::string& subkey) {
  std::string key = RegistryKeyDirectory(root, subkey);
  for (std::size_t slash = key.find('/', 1);; slash = key.find('/', slash + 1)) {
    std::string level = key.substr(0, slash);
    if (::mkdir(level.c_str(), 0755) != 0 && errno != EEXIST) return false;
    if (slash == std::string::npos) break;
  }
  return IsDirectory(key);
}

bool RegistryDeleteKey(RegistryRoot root, const std::string& subkey) {
  std::error_code error;
  std::filesystem::remove_all(RegistryKeyDirectory(root, subkey), error);
  return !error;
}

bool RegistryReadString(RegistryRoot root, const std::string& subkey, const std::string& name, std::string& text) {
  std::string type, stored;
  if (!ReadRegistryValueFile(root, subkey, name, type, stored) || type != "REG_SZ") return false;
  text = stored;
  return true;
}

bool RegistryReadDword(RegistryRoot root, const std::string& subkey, const std::string& name, unsigned long& value) {
  std::string type, stored;
  if (!ReadRegistryValueFile(root, subkey, name, type, stored) || type != "REG_DWORD") return false;
  if (stored.empty() || stored.size() > 10 || stored.find_first_not_of("0123456789") != std::string::npos) return false;
  unsigned long long number = std::stoull(stored);
  if (number > 0xFFFFFFFFull) return false;
  value = static_cast<unsigned long>(number);
  return true;
}

bool RegistryWriteString(RegistryRoot root, const std::string& subkey, const std::string& name,
                         const std::string& text) {
  return WriteRegistryValueFile(root, subkey, name, "REG_SZ\n" + text);
}

bool RegistryWriteDword(RegistryRoot root, const std::string& subkey, const std::string& name, unsigned long value) {
  return WriteRegistryValueFile(root, subkey, name, "REG_DWORD\n" + std::to_string(value & 0xFFFFFFFFul));
}

std::string ShellCommandForProgram(const std::string& path) {
  std::string quoted = "'";
  for (char c : path) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

bool IsStandardErrorTerminal() { return isatty(STDERR_FILENO) == 1; }

}  // namespace vek::platform
