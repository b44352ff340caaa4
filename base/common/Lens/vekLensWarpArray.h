#pragma once
#include <cstdint>
#include <typeinfo>

#include "vekVec2.h"

namespace vek::lens_detail {

/// Arrays shorter than this stay on the calling thread: starting threads costs more.
inline constexpr std::int64_t kParallelThreshold = 8192;

/// A model's own array loop computes its formulas directly, so it serves only objects of exactly
/// that class: a subclass may have changed Forward or Invert and gets the shared loop, which calls
/// them.
template <class Model>
bool IsExactly(const Model& warp) {
  return typeid(warp) == typeid(Model);
}

inline bool IsUnsetPoint(const vec2<float>& p) { return p.x == vec2<float>::kUnset && p.y == vec2<float>::kUnset; }

/// The shared loop of the array operations: `map(x, y, point)` on every set point (x and y by
/// value, so the map may write the point it reads), in
/// parallel for large arrays. Each point depends on itself only, so the result does not depend on
/// the number of threads. `dynamicSchedule` suits maps whose cost varies from point to point.
/// Only for the library's .cxx files (they are built with OpenMP).
template <class Map>
void MapPoints(vec2<float>* points, unsigned int count, const Map& map, bool dynamicSchedule = false) {
  const std::int64_t n = count;
  if (dynamicSchedule) {
#pragma omp parallel for schedule(dynamic, 1024) if (n >= kParallelThreshold)
    for (std::int64_t i = 0; i < n; ++i) {
      vec2<float>& p = points[i];
      if (!IsUnsetPoint(p)) map(p.x, p.y, p);
    }
  } else {
#pragma omp parallel for schedule(static) if (n >= kParallelThreshold)
    for (std::int64_t i = 0; i < n; ++i) {
      vec2<float>& p = points[i];
      if (!IsUnsetPoint(p)) map(p.x, p.y, p);
    }
  }
}

}  // namespace vek::lens_detail
