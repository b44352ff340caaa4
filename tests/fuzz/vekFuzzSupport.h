#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// What every fuzz target shares: a working folder the library is pointed at, files written from
// the input, the input cut into parts, and the checks that go beyond "no crash".
namespace vek::fuzz {

/// Settles the library in a fresh base folder of its own (in memory when /dev/shm exists, so that
/// the durable writes of the records cost nothing) and sends the debug log there. Every target's
/// LLVMFuzzerInitialize, defined with it, calls it once. The folder is removed when the process
/// exits normally.
void Setup();
/// The base folder and the library's configuration folder, each ending in a separator.
const std::string& WorkDirectory();
const std::string& ConfigDirectory();

/// Call at the start of every input: keeps the debug log short by starting a new one now and then.
/// Returns the input's bytes.
std::string BeginInput(const std::uint8_t* data, std::size_t size);
/// Writes the input as the file `name` of the working folder and returns its path.
std::string WriteInput(const std::string& input, const std::string& name);

void WriteFile(const std::string& path, const std::string& bytes);
std::string ReadFile(const std::string& path);
void RemoveFile(const std::string& path);

/// The input cut at every kPartMarker line into at most `maxParts` parts (the last part keeps any
/// further markers). Seeds of multi-file targets put the marker between their files.
inline constexpr char kPartMarker[] = "\n%%%%\n";
std::vector<std::string> SplitParts(const std::uint8_t* data, std::size_t size, std::size_t maxParts);

/// Reports a broken property with the input's context and aborts, which libFuzzer records as a
/// crash with the input saved.
[[noreturn]] void Fail(const std::string& what);
#define VEK_FUZZ_CHECK(condition, what)                                           \
  do {                                                                            \
    if (!(condition)) ::vek::fuzz::Fail(std::string(#condition) + ": " + (what)); \
  } while (false)

/// Watches every allocation while it lives: one block larger than kFixedAllowance plus
/// kBytesPerInputByte times the input's size fails the run when the watch ends. A count read from
/// a file must not claim memory ahead of the values actually present.
class AllocationWatch {
 public:
  static constexpr std::size_t kFixedAllowance = std::size_t(2) << 20;
  static constexpr std::size_t kBytesPerInputByte = 64;

  explicit AllocationWatch(std::size_t inputSize);
  ~AllocationWatch();
  AllocationWatch(const AllocationWatch&) = delete;
  AllocationWatch& operator=(const AllocationWatch&) = delete;

 private:
  std::size_t Limit;
};

}  // namespace vek::fuzz
