#pragma once
#include <cstdint>
#include <ostream>
#include <vector>

#include "vekCommonExport.h"
#include "vekSyntheticWall.h"
#include "vekTextureMesh.h"

namespace vek {

/// How well a set of warps (one TextureMesh per projector: XY in projector pixels, UV in content
/// 0..1, alpha) calibrates a SyntheticWall, judged against the wall's ground truth:
///
/// - Content error: for every warp vertex, the distance in projector pixels between its XY and
///   the pixel that truly shows its UV (SyntheticWall::ContentToProjector); max and RMS. Vertices
///   at (-5, -5) or at the clipped writer's dropped mark, or with an unset UV, are not counted.
/// - Blend error: at Samples random screen points of the fill region, |sum of alpha^gamma - 1|
///   over the projectors whose warp covers the point, alpha interpolated linearly within the warp
///   triangle holding the point's projector pixel; max and RMS. A negative alpha counts as 0.
/// - Uncovered points: sample points no warp covers at all, holes in the image.
/// - Border points: warps end where the measured fill region ends, which lies off the true one by
///   about the content error, so along the image's border a warp may fall a fraction of a pixel
///   short. A sample point within ContentTarget projector pixels of the fill region's border (in
///   the pixels of a projector whose warp misses it) and of that warp's edge is such a sliver: it
///   is counted here and left out of the blend error and the uncovered points, as its light
///   follows from the content error already measured. Gaps between warps inside the image stay
///   uncovered points whatever their width.
///
/// The sample points come from std::mt19937 with a fixed seed, so a report is repeatable.
class VEK_EXPORT CalibrationAccuracy {
 public:
  /// A noise-free wall should be calibrated to within this, in projector pixels...
  static constexpr double kContentTargetNoiseFree = 0.1;
  /// ...and a wall with detection noise to within this.
  static constexpr double kContentTargetNoisy = 0.5;
  static constexpr double kBlendMaxTarget = 0.02;
  static constexpr double kBlendRMSTarget = 0.003;
  static constexpr int kDefaultSamples = 100000;
  static constexpr std::uint32_t kSampleSeed = 7;

  struct Result {
    double ContentErrorMax = 0;
    double ContentErrorRMS = 0;
    int ContentVertices = 0;
    /// The content target that applies to the wall judged (noise-free or noisy).
    double ContentTarget = kContentTargetNoisy;
    double BlendErrorMax = 0;
    double BlendErrorRMS = 0;
    int Samples = 0;
    int UncoveredSamples = 0;
    /// Points along the image's border that a warp misses narrowly, judged by neither measure.
    int BorderSamples = 0;

    bool ContentPassed() const { return ContentVertices > 0 && ContentErrorMax <= ContentTarget; }
    bool BlendPassed() const { return BlendErrorMax <= kBlendMaxTarget && BlendErrorRMS <= kBlendRMSTarget; }
    bool CoveragePassed() const { return UncoveredSamples == 0; }
    bool Passed() const { return ContentPassed() && BlendPassed() && CoveragePassed(); }
  };

  /// VEK_INVALID_PARAMETERS, with a message, for a wall not generated, a warp count other than the
  /// wall's projector count, a missing warp, one with UV in pixels or a triangle whose vertex
  /// index is out of range, a gamma that is not positive, or fewer than 1 sample.
  static int Evaluate(const SyntheticWall& wall, const std::vector<const TextureMesh*>& warps, double gamma,
                      Result& result, int samples = kDefaultSamples);
  /// One line per measure, each with its numbers, its target and PASS or FAIL, and a note of the
  /// border points when there are any.
  static void PrintReport(std::ostream& os, const Result& result);

 private:
  CalibrationAccuracy() = delete;
};

}  // namespace vek
