#pragma once
#include <climits>

namespace vek {

/// v truncated toward zero and held to the int range; NaN gives INT_MIN. A plain cast of a double
/// outside that range is undefined, and sizes and indices often come straight from a file.
inline int SaturatedInt(double v) {
  if (!(v >= static_cast<double>(INT_MIN))) return INT_MIN;
  if (v >= static_cast<double>(INT_MAX)) return INT_MAX;
  return static_cast<int>(v);
}

}  // namespace vek
