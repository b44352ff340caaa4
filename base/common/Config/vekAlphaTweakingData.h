#pragma once
#include "vekCommonExport.h"
#include "vekSpatialSubdivisionData.h"

namespace vek {

/// The user's manual correction of the blend: at each grid point of each projector (layer) a gain
/// that multiplies the computed alpha (blend) value there; in between, the gains are interpolated.
/// One component per point, 1 by default (no correction). Stored in the SpatialSubdivisionData
/// text form with the type word "AlphaTweakingData".
class VEK_EXPORT AlphaTweakingData : public SpatialSubdivisionData {
 public:
  static constexpr int kComponents = 1;
  static constexpr float kNoCorrection = 1.0f;

  static AlphaTweakingData* New();
  const char* GetClassName() const override { return "AlphaTweakingData"; }

  /// kNoCorrection when an index is out of range.
  float GetGain(int layer, int point) const { return GetValue(layer, point, 0); }
  /// VEK_INVALID_PARAMETERS when an index is out of range.
  int SetGain(int layer, int point, float gain) { return SetValue(layer, point, 0, gain); }

 protected:
  AlphaTweakingData() : SpatialSubdivisionData(kComponents, kNoCorrection) {}
  ~AlphaTweakingData() override = default;

 private:
  AlphaTweakingData(const AlphaTweakingData&) = delete;
  AlphaTweakingData& operator=(const AlphaTweakingData&) = delete;
};

}  // namespace vek
