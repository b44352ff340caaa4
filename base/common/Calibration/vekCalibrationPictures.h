#pragma once
#include <string>
#include <vector>

#include "vekCommonExport.h"
#include "vekFlatScreenModel.h"
#include "vekProjectorFootprint.h"
#include "vekTextureMesh.h"

namespace vek {

/// Pictures of a calibration, for a person to look at rather than read. Both are written in one
/// step (a failure leaves an earlier file whole) and fail with VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING
/// naming the file.
class VEK_EXPORT CalibrationPictures {
 public:
  /// The camera's view, in undistorted camera pixels: each projector's footprint (the outline of
  /// its spot grid) filled in its own translucent colour, so overlaps show darker and mixed; its
  /// warp grid drawn where it lands (through the screen model's content -> camera map); its
  /// number at the footprint's centre; and the fill region as a dashed black outline.
  static int WriteCameraViewSvg(const std::string& path, const std::vector<const ProjectorFootprint*>& footprints,
                                const std::vector<const TextureMesh*>& warps, const FlatScreenModel& screen);

  /// The warp's alpha as an 8-bit grey PNG of width x height projector pixels: every pixel whose
  /// centre lies in a warp triangle gets the alpha interpolated there (0..1 as 0..255), the rest 0.
  static int WriteAlphaPng(const std::string& path, const TextureMesh& warp, int width, int height);

 private:
  CalibrationPictures() = delete;
};

}  // namespace vek
