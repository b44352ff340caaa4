#pragma once
#include "vekCommonExport.h"
#include "vekHomography.h"
#include "vekScreenModel.h"

namespace vek {

/// A flat screen seen by one pinhole camera: the map from undistorted camera pixels to content is
/// one homography, fixed by the four corners of the fill region. Corner k (OrderedQuadrilateral
/// order) goes to content (0, 0), (1, 0), (0, 1), (1, 1) for k = 0, 1, 2, 3.
class VEK_EXPORT FlatScreenModel : public ScreenModel {
 public:
  static FlatScreenModel* New();
  const char* GetClassName() const override { return "FlatScreenModel"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// VEK_INVALID_PARAMETERS when a corner is unset or the four do not make a convex quadrilateral
  /// in that order (repeated corners and three on a line included).
  int SetFillRegion(const vec2<double> undistortedCorners[4]);
  bool CameraToContent(const vec2<double>& camera, vec2<double>& content) const override;
  /// The inverse map, for pictures and checks.
  bool ContentToCamera(const vec2<double>& content, vec2<double>& camera) const;

 protected:
  FlatScreenModel() = default;
  ~FlatScreenModel() override = default;

 private:
  FlatScreenModel(const FlatScreenModel&) = delete;
  FlatScreenModel& operator=(const FlatScreenModel&) = delete;

  Homography CameraToContentMap;
  Homography ContentToCameraMap;
  bool Initialized = false;
};

}  // namespace vek
