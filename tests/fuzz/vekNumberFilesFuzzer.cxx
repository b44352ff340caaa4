// Number-array files: the input is one file, read as every type. What was read is written and read
// again: ints must come back exactly; floats and doubles, which the writer prints with fewer
// digits than they hold, must come back exactly from the second round on.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekOutputNumbers.h"

using namespace vek;

namespace {

template <class T>
bool SameValues(const T* a, const T* b, int count) {
  return count == 0 || std::memcmp(a, b, sizeof(T) * static_cast<size_t>(count)) == 0;
}

// Reads `path` with `read`; on success writes the values to a second file with `write` and reads
// that; returns what the second reading gave.
template <class T, class Reader, class Writer>
int RoundTrip(const std::string& path, Reader read, Writer write, std::unique_ptr<T[]>& first, int& firstCount,
              std::unique_ptr<T[]>& second, int& secondCount) {
  T* values = nullptr;
  firstCount = -1;
  const int status = read(path.c_str(), values, firstCount);
  first.reset(values);
  if (status != VEK_SUCCESS) {
    VEK_FUZZ_CHECK(!values && firstCount == 0, "a failed read handed out values");
    return status;
  }
  const std::string copy = fuzz::WorkDirectory() + "numbers-copy";
  VEK_FUZZ_CHECK(write(copy.c_str(), first.get(), firstCount) == VEK_SUCCESS, "values read cannot be written");
  values = nullptr;
  VEK_FUZZ_CHECK(read(copy.c_str(), values, secondCount) == VEK_SUCCESS, "values written do not read back");
  second.reset(values);
  VEK_FUZZ_CHECK(secondCount == firstCount, "values written read back as another count");
  return status;
}

template <class T, class Reader, class Writer>
void Check(const std::string& path, Reader read, Writer write, bool exact) {
  std::unique_ptr<T[]> first, second;
  int firstCount = 0, secondCount = 0;
  if (RoundTrip<T>(path, read, write, first, firstCount, second, secondCount) != VEK_SUCCESS) return;
  if (exact) {
    VEK_FUZZ_CHECK(SameValues(first.get(), second.get(), firstCount), "values written read back different");
    return;
  }
  std::unique_ptr<T[]> third;
  int thirdCount = 0;
  const std::string again = fuzz::WorkDirectory() + "numbers-again";
  VEK_FUZZ_CHECK(write(again.c_str(), second.get(), secondCount) == VEK_SUCCESS, "values cannot be written again");
  T* values = nullptr;
  VEK_FUZZ_CHECK(read(again.c_str(), values, thirdCount) == VEK_SUCCESS, "values written again do not read back");
  third.reset(values);
  VEK_FUZZ_CHECK(thirdCount == secondCount && SameValues(second.get(), third.get(), secondCount),
                 "values change on a second round");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  const std::string path = fuzz::WriteInput(input, "numbers");
  fuzz::AllocationWatch watch(size);
  Check<int>(path, OutputNumbers::InputIntFile, OutputNumbers::OutputIntFile, true);
  Check<bool>(path, OutputNumbers::InputBoolFile, OutputNumbers::OutputBoolFile, true);
  Check<float>(path, OutputNumbers::InputFloatFile, OutputNumbers::OutputFloatFile, false);
  Check<double>(path, OutputNumbers::InputDoubleFile, OutputNumbers::OutputDoubleFile, false);
  Check<vec2<float>>(path, OutputNumbers::InputVector2File, OutputNumbers::OutputVector2File, false);
  vec2<float> known[3];
  OutputNumbers::ReadVectorArrayOfKnownLength(path.c_str(), known, 3);
  return 0;
}
