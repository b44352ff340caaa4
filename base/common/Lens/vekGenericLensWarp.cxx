#include "vekGenericLensWarp.h"

#include "vekErrorCodes.h"
#include "vekLensWarpStream.h"

namespace vek {

GenericLensWarp::GenericLensWarp() {
  for (float& p : Parameters) p = 0;
  Parameters[kFocalX] = Parameters[kFocalY] = Parameters[kCenterX] = Parameters[kCenterY] = kUnset;
}

bool GenericLensWarp::IsInitialized() const {
  return !(Parameters[kFocalX] == kUnset || Parameters[kFocalY] == kUnset || Parameters[kCenterX] == kUnset);
}

void GenericLensWarp::SetCameraDimensions(int const& width, int const& height) {
  Parameters[kWidth] = static_cast<float>(width);
  Parameters[kHeight] = static_cast<float>(height);
}

void GenericLensWarp::GetDistortionParams(float* values) const {
  for (int i = 0; i < kNumDistortionParameters; ++i) values[i] = Parameters[kDistortion + i];
}

void GenericLensWarp::SetDistortionParams(float const* values) {
  for (int i = 0; i < kNumDistortionParameters; ++i) Parameters[kDistortion + i] = values[i];
}

int GenericLensWarp::Read(std::istream* in) {
  int code = lens_detail::ReadVersion(in, kFileVersion);
  if (code != VEK_SUCCESS) return code;
  float values[NUM_PARAMETERS];
  code = lens_detail::ReadNumbers(in, values, NUM_PARAMETERS);
  if (code != VEK_SUCCESS) return code;
  for (int i = 0; i < NUM_PARAMETERS; ++i) Parameters[i] = values[i];
  return VEK_SUCCESS;
}

int GenericLensWarp::Write(std::ostream* out) {
  if (!out) return VEK_UNABLE_TO_WRITE_TO_STREAM;
  *out << static_cast<float>(kFileVersion) << " ";
  for (float p : Parameters) *out << p << " ";
  *out << "\n";
  return out->good() ? VEK_SUCCESS : VEK_UNABLE_TO_WRITE_TO_STREAM;
}

}  // namespace vek
