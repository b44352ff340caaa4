#include "vekMeshTweakingData.h"

#include <new>

#include "vekErrorCodes.h"

namespace vek {

MeshTweakingData* MeshTweakingData::New() { return new (std::nothrow) MeshTweakingData; }

int MeshTweakingData::SetOffset(int layer, int point, const vec2<float>& offset) {
  if (IndexOf(layer, point, 0) < 0) return VEK_INVALID_PARAMETERS;
  SetValue(layer, point, 0, offset.x);
  return SetValue(layer, point, 1, offset.y);
}

}  // namespace vek
