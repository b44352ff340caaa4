#include "vekFuzzSupport.h"

#include <sanitizer/allocator_interface.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "vekClassInitializer.h"
#include "vekOutputFile.h"

namespace vek::fuzz {

namespace {

// Starting a new log this often keeps the ten generations the log rotates through small.
constexpr unsigned kInputsPerLog = 4096;

std::string g_work;
std::string g_config;
std::string g_log;
unsigned g_inputs = 0;

std::atomic<bool> g_watching{false};
std::atomic<std::size_t> g_largest{0};

void OnMalloc(const volatile void*, std::size_t size) {
  if (!g_watching.load(std::memory_order_relaxed)) return;
  std::size_t seen = g_largest.load(std::memory_order_relaxed);
  while (size > seen && !g_largest.compare_exchange_weak(seen, size, std::memory_order_relaxed)) {
  }
}

void OnFree(const volatile void*) {}

void RemoveWork() {
  std::error_code ignored;
  if (!g_work.empty()) std::filesystem::remove_all(g_work, ignored);
}

}  // namespace

void Setup() {
  std::error_code error;
  const std::filesystem::path shm = "/dev/shm";
  const std::filesystem::path root =
      std::filesystem::is_directory(shm, error) ? shm : std::filesystem::temp_directory_path();
  const std::filesystem::path work = root / ("vek-fuzz-" + std::to_string(::getpid()));
  std::filesystem::remove_all(work, error);
  std::filesystem::create_directories(work, error);
  g_work = work.string() + "/";
  std::atexit(RemoveWork);
  ClassInitializer::Initialize(g_work.c_str());
  g_config = ClassInitializer::GetInstance()->GetConfigDirectoryName();
  g_log = g_work + "FuzzLog.txt";
  OutputFile::SetFileName(g_log.c_str());
  __sanitizer_install_malloc_and_free_hooks(OnMalloc, OnFree);
}

const std::string& WorkDirectory() { return g_work; }
const std::string& ConfigDirectory() { return g_config; }

std::string BeginInput(const std::uint8_t* data, std::size_t size) {
  if (++g_inputs % kInputsPerLog == 0) OutputFile::SetFileName(g_log.c_str());
  return std::string(reinterpret_cast<const char*>(data), size);
}

std::string WriteInput(const std::string& input, const std::string& name) {
  const std::string path = g_work + name;
  WriteFile(path, input);
  return path;
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) Fail("cannot write " + path);
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

void RemoveFile(const std::string& path) {
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
}

std::vector<std::string> SplitParts(const std::uint8_t* data, std::size_t size, std::size_t maxParts) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::string marker = kPartMarker;
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (parts.size() + 1 < maxParts) {
    const std::size_t at = input.find(marker, start);
    if (at == std::string::npos) break;
    // The marker's first line end belongs to the part before it: a file's last line keeps its end.
    parts.push_back(input.substr(start, at + 1 - start));
    start = at + marker.size();
  }
  parts.push_back(input.substr(start));
  return parts;
}

void Fail(const std::string& what) {
  std::fprintf(stderr, "\n==vek fuzz== property broken: %s\n", what.c_str());
  std::fflush(stderr);
  std::abort();
}

AllocationWatch::AllocationWatch(std::size_t inputSize) : Limit(kFixedAllowance + kBytesPerInputByte * inputSize) {
  g_largest.store(0, std::memory_order_relaxed);
  g_watching.store(true, std::memory_order_relaxed);
}

AllocationWatch::~AllocationWatch() {
  g_watching.store(false, std::memory_order_relaxed);
  const std::size_t largest = g_largest.load(std::memory_order_relaxed);
  if (largest > Limit)
    Fail("one allocation of " + std::to_string(largest) + " bytes, more than the " + std::to_string(Limit) +
         " this input's size allows");
}

}  // namespace vek::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  vek::fuzz::Setup();
  return 0;
}
