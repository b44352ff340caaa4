// POSIX bodies of the platform layer.
#include "vekPlatform.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <mutex>
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

}  // namespace

char PathSeparator() { return '/'; }

std::string ModuleDirectory() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&ModuleDirectory), &info) == 0 || info.dli_fname == nullptr)
    return "./";
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

void RegisterModuleResource(const std::string& moduleName, const std::string& type, int id,
                            const unsigned char* data, std::size_t size) {
  std::lock_guard<std::mutex> lock(ResourceMutex());
  ResourceTable()[{moduleName, type, id}] = {data, size};
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

}  // namespace vek::platform
