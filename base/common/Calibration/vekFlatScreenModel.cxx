#include "vekFlatScreenModel.h"

#include <cmath>
#include <new>
#include <ostream>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"

namespace vek {

namespace {

// Twice the signed area of the triangle a, b, c.
double Cross(const vec2<double>& a, const vec2<double>& b, const vec2<double>& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

}  // namespace

FlatScreenModel* FlatScreenModel::New() { return new (std::nothrow) FlatScreenModel; }

void FlatScreenModel::PrintSelf(std::ostream& os, Indent indent) const {
  ScreenModel::PrintSelf(os, indent);
  os << indent << "Initialized: " << (Initialized ? 1 : 0) << "\n";
  const double* m = CameraToContentMap.GetMatrix();
  os << indent << "Camera To Content:";
  for (int k = 0; k < 9; ++k) os << " " << m[k];
  os << "\n";
}

int FlatScreenModel::SetFillRegion(const vec2<double> corners[4]) {
  // The boundary runs 0 -> 1 -> 3 -> 2 and must turn the same way at every corner: corners in
  // another order make a crossed quadrilateral, whose map folds the content over.
  const int boundary[4] = {0, 1, 3, 2};
  int turns = 0;
  for (int k = 0; k < 4; ++k) {
    const vec2<double>& a = corners[boundary[k]];
    const vec2<double>& b = corners[boundary[(k + 1) % 4]];
    const vec2<double>& c = corners[boundary[(k + 2) % 4]];
    if (a.IsUnset() || !std::isfinite(a.x) || !std::isfinite(a.y))
      return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "A corner of the fill region is unset");
    const double turn = Cross(a, b, c);
    turns += turn > 1e-9 ? 1 : turn < -1e-9 ? -1 : 0;
  }
  if (turns != 4 && turns != -4)
    return ErrorHelper::ErrorWithCustomMessage(
        VEK_INVALID_PARAMETERS,
        "The fill region is not a convex quadrilateral with corners in the order top-left, top-right, "
        "bottom-left, bottom-right");
  const vec2<double> content[4] = {{0, 0}, {1, 0}, {0, 1}, {1, 1}};
  Homography forward, inverse;
  int status = Homography::FromCorners(corners, content, forward);
  if (status == VEK_SUCCESS) status = forward.Invert(inverse);
  if (status != VEK_SUCCESS) return status;
  CameraToContentMap = forward;
  ContentToCameraMap = inverse;
  Initialized = true;
  return VEK_SUCCESS;
}

bool FlatScreenModel::CameraToContent(const vec2<double>& camera, vec2<double>& content) const {
  return Initialized && CameraToContentMap.Apply(camera, content);
}

bool FlatScreenModel::ContentToCamera(const vec2<double>& content, vec2<double>& camera) const {
  return Initialized && ContentToCameraMap.Apply(content, camera);
}

}  // namespace vek
