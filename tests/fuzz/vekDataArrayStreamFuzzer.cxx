// The brace-framed DataArray form, the input read as one stream of objects. Each array read is
// written and read again: ints must come back exactly, doubles (printed with six digits) from the
// second round on. A failed read leaves the array empty, as the reader promises.
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>

#include "vekDataArrayStream.h"
#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekSmartPointer.h"

using namespace vek;

namespace {

constexpr int kMaxObjects = 256;

template <class T>
std::string Written(const DataArray<T>& array) {
  std::ostringstream out;
  DataArrayStream::Write(out, &array, "  ");
  return out.str();
}

template <class T>
void ReadAll(const std::string& input, bool exact) {
  std::istringstream in(input);
  for (int k = 0; k < kMaxObjects && in.good(); ++k) {
    auto array = SmartPointer<DataArray<T>>::New();
    array->InsertNextValue(T(42));
    if (DataArrayStream::Read(in, *array) != VEK_SUCCESS) {
      VEK_FUZZ_CHECK(array->GetNumberOfValues() == 0, "a failed read left values in the array");
      continue;
    }
    std::string written = Written(*array);
    auto again = SmartPointer<DataArray<T>>::New();
    std::istringstream back(written);
    VEK_FUZZ_CHECK(DataArrayStream::Read(back, *again) == VEK_SUCCESS,
                   "an array written does not read back:\n" + written);
    VEK_FUZZ_CHECK(again->GetNumberOfValues() == array->GetNumberOfValues(), "an array reads back another length");
    if (!exact) {
      written = Written(*again);
      std::istringstream third(written);
      VEK_FUZZ_CHECK(DataArrayStream::Read(third, *array) == VEK_SUCCESS, "an array written twice does not read back");
    }
    for (int i = 0; i < array->GetNumberOfValues(); ++i) {
      const T a = array->GetValue(i), b = again->GetValue(i);
      VEK_FUZZ_CHECK(std::memcmp(&a, &b, sizeof a) == 0, "an array reads back different:\n" + written);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  fuzz::AllocationWatch watch(size);
  ReadAll<int>(input, true);
  ReadAll<double>(input, false);
  return 0;
}
