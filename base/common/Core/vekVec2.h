#pragma once

namespace vek {

/// A 2-D point, x then y. A default-constructed point is "unset", (-5, -5): new point arrays start
/// unset, and bounding boxes and array operations pass over unset points.
template <class T>
struct vec2 {
  static constexpr T kUnset = T(-5);

  T x = kUnset;
  T y = kUnset;

  constexpr vec2() = default;
  constexpr vec2(T xValue, T yValue) : x(xValue), y(yValue) {}

  constexpr bool IsUnset() const { return x == kUnset && y == kUnset; }
  constexpr bool operator==(const vec2& other) const = default;
};

}  // namespace vek
