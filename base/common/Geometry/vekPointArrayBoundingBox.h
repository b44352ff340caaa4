#pragma once
#include "vekCommonExport.h"
#include "vekVec2.h"

namespace vek {

/// The bounding box of a 2-D point array that passes over unset points (-5, -5): min and max
/// start at the first set point and widen to every later set point. When no point is set (or
/// count is 0) both results are (-5, -5). Returns the number of set points used.
VEK_EXPORT int GetPointArrayBoundingBox(const vec2<float>* points, int count, vec2<float>& min, vec2<float>& max);

}  // namespace vek
