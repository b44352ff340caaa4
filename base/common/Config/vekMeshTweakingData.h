#pragma once
#include "vekCommonExport.h"
#include "vekSpatialSubdivisionData.h"
#include "vekVec2.h"

namespace vek {

/// The user's manual correction of the orthographic warping mesh: at each grid point of each
/// projector (layer) an offset (dx, dy), in input-space pixels, added to where the mesh puts that
/// point; in between, the offsets are interpolated. Two components per point, 0 by default (no
/// correction). Stored in the SpatialSubdivisionData text form with the type word "MeshTweakingData".
class VEK_EXPORT MeshTweakingData : public SpatialSubdivisionData {
 public:
  static constexpr int kComponents = 2;

  static MeshTweakingData* New();
  const char* GetClassName() const override { return "MeshTweakingData"; }

  /// (0, 0) when an index is out of range.
  vec2<float> GetOffset(int layer, int point) const {
    return vec2<float>(GetValue(layer, point, 0), GetValue(layer, point, 1));
  }
  /// VEK_INVALID_PARAMETERS when an index is out of range.
  int SetOffset(int layer, int point, const vec2<float>& offset);

 protected:
  MeshTweakingData() : SpatialSubdivisionData(kComponents, 0.0f) {}
  ~MeshTweakingData() override = default;

 private:
  MeshTweakingData(const MeshTweakingData&) = delete;
  MeshTweakingData& operator=(const MeshTweakingData&) = delete;
};

}  // namespace vek
