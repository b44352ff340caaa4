#pragma once
#include <climits>
#include <cstdlib>

namespace vek {

/// v truncated toward zero and held to the int range; NaN gives INT_MIN. A plain cast of a double
/// outside that range is undefined, and sizes and indices often come straight from a file.
inline int SaturatedInt(double v) {
  if (!(v >= static_cast<double>(INT_MIN))) return INT_MIN;
  if (v >= static_cast<double>(INT_MAX)) return INT_MAX;
  return static_cast<int>(v);
}

/// The leading integer of `text` as atoi reads it (blanks, a sign, digits; 0 when there are
/// none), held to the int range. atoi itself leaves a number beyond int undefined, and in practice
/// wraps it on one platform and clamps it on another.
inline int SaturatedAtoi(const char* text) {
  long long value = std::strtoll(text, nullptr, 10);
  if (value < INT_MIN) return INT_MIN;
  if (value > INT_MAX) return INT_MAX;
  return static_cast<int>(value);
}

}  // namespace vek
