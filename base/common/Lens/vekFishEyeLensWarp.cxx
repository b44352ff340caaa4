#include "vekFishEyeLensWarp.h"

#include "vekErrorCodes.h"
#include "vekLensWarpArray.h"
#include "vekLensWarpStream.h"

namespace vek {

FishEyeLensWarp* FishEyeLensWarp::New() { return new FishEyeLensWarp; }

void FishEyeLensWarp::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Center: (" << CenterX << "," << CenterY << ")\n";
}

void FishEyeLensWarp::SetCameraDimensions(int const& width, int const& height) {
  Width = width;
  Height = height;
  CenterX = static_cast<float>((width - 1) * 0.5);
  CenterY = static_cast<float>((height - 1) * 0.5);
}

// The identity leaves every point, set or unset, as it is.
void FishEyeLensWarp::InplaceForwardArray(vec2<float>* points, unsigned int const& count) const {
  if (!lens_detail::IsExactly(*this)) LensWarp::InplaceForwardArray(points, count);
}
void FishEyeLensWarp::InplaceInvertArray(vec2<float>* points, unsigned int const& count) const {
  if (!lens_detail::IsExactly(*this)) LensWarp::InplaceInvertArray(points, count);
}

void FishEyeLensWarp::Forward(float const& x, float const& y, float& outX, float& outY) const {
  outX = x;
  outY = y;
}

int FishEyeLensWarp::Invert(float const& x, float const& y, float& outX, float& outY) const {
  outX = x;
  outY = y;
  return VEK_SUCCESS;
}

int FishEyeLensWarp::Read(std::istream* in) { return lens_detail::ReadVersion(in, kFileVersion); }

int FishEyeLensWarp::Write(std::ostream* out) {
  if (!out) return VEK_UNABLE_TO_WRITE_TO_STREAM;
  *out << kFileVersion << " \n";
  return out->good() ? VEK_SUCCESS : VEK_UNABLE_TO_WRITE_TO_STREAM;
}

}  // namespace vek
