// Lens files of every model through LensWarpIO, the input being the file. A lens read is written
// and read again: the writer prints six digits, so from the second round on the file must stay as
// it is. Every lens read, however strange its numbers, is then applied to a few points, one at a
// time and as an array, both ways.
#include <cstdint>
#include <cstring>
#include <string>

#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekLensWarpIO.h"

using namespace vek;

namespace {

void Apply(const LensWarp& lens) {
  const float xs[] = {0.0f, 320.0f, 1919.5f, -40.0f};
  const float ys[] = {0.0f, 240.0f, 1079.5f, 5000.0f};
  vec2<float> points[5];
  for (int k = 0; k < 4; ++k) {
    float x = 0, y = 0;
    lens.Forward(xs[k], ys[k], x, y);
    lens.Invert(xs[k], ys[k], x, y);
    points[k] = vec2<float>(xs[k], ys[k]);
  }
  points[4] = vec2<float>();  // unset: passed over
  vec2<float> inverted[5];
  std::memcpy(inverted, points, sizeof points);
  lens.InplaceForwardArray(points, 5);
  lens.InplaceInvertArray(inverted, 5);
  VEK_FUZZ_CHECK(points[4].IsUnset() && inverted[4].IsUnset(), "an array operation moved an unset point");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  const std::string path = fuzz::WriteInput(input, "camera.lens");
  fuzz::AllocationWatch watch(size);
  SmartPointer<LensWarp> lens;
  const int status = LensWarpIO::ReadFromFile(path.c_str(), lens);
  if (lens) Apply(*lens);
  if (status != VEK_SUCCESS) return 0;

  const std::string first = fuzz::WorkDirectory() + "first.lens";
  VEK_FUZZ_CHECK(LensWarpIO::WriteToFile(first.c_str(), lens.GetPointer()) == VEK_SUCCESS,
                 "a lens read cannot be written");
  SmartPointer<LensWarp> again;
  VEK_FUZZ_CHECK(LensWarpIO::ReadFromFile(first.c_str(), again) == VEK_SUCCESS,
                 "a lens written does not read back:\n" + fuzz::ReadFile(first));
  const std::string second = fuzz::WorkDirectory() + "second.lens";
  VEK_FUZZ_CHECK(LensWarpIO::WriteToFile(second.c_str(), again.GetPointer()) == VEK_SUCCESS,
                 "a lens read back cannot be written");
  VEK_FUZZ_CHECK(fuzz::ReadFile(first) == fuzz::ReadFile(second),
                 "a lens changes on a second round:\n" + fuzz::ReadFile(first) + "\n---\n" + fuzz::ReadFile(second));
  return 0;
}
