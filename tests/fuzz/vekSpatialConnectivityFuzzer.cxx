// SpatialConnectivity's stream form, the input read as a stream of objects. A failed read must
// leave the model as it was; a model read is written and must read back to the same text.
#include <cstdint>
#include <sstream>
#include <string>

#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekSmartPointer.h"
#include "vekSpatialConnectivity.h"

using namespace vek;

namespace {

constexpr int kMaxObjects = 64;

std::string Text(const SpatialConnectivity& model) {
  std::ostringstream out;
  model.Write(out, "");
  return out.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  std::istringstream in(input);
  fuzz::AllocationWatch watch(size);
  auto model = SmartPointer<SpatialConnectivity>::New();
  model->Initialize(2, 1, SpatialConnectivity::kGeneric);
  model->AddNeighbor(0, 1);
  for (int k = 0; k < kMaxObjects && in.good(); ++k) {
    const std::string before = Text(*model);
    if (model->Read(in) != VEK_SUCCESS) {
      VEK_FUZZ_CHECK(Text(*model) == before, "a failed read changed the model");
      continue;
    }
    const std::string written = Text(*model);
    auto again = SmartPointer<SpatialConnectivity>::New();
    std::istringstream back(written);
    VEK_FUZZ_CHECK(again->Read(back) == VEK_SUCCESS, "a model written does not read back:\n" + written);
    VEK_FUZZ_CHECK(Text(*again) == written, "a model written reads back different:\n" + written);
    std::ostringstream printed;
    again->Print(printed);
  }
  return 0;
}
