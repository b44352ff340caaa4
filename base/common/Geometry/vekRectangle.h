#pragma once
#include "vekCommonExport.h"
#include "vekVec2.h"

namespace vek {

/// An axis-aligned box Minx, Miny, Maxx, Maxy (float). A default rectangle holds -43 in every
/// field and is not initialised until all four differ from it. The predicates return 1/0; each
/// states whether the border counts ("in range" includes it, "inside" does not).
class VEK_EXPORT Rectangle {
 public:
  static constexpr float kUnset = -43.0f;

  Rectangle() = default;
  Rectangle(float minx, float miny, float maxx, float maxy) : Minx(minx), Miny(miny), Maxx(maxx), Maxy(maxy) {}
  Rectangle(const vec2<float>& min, const vec2<float>& max) : Minx(min.x), Miny(min.y), Maxx(max.x), Maxy(max.y) {}
  Rectangle(const Rectangle&) = default;
  Rectangle& operator=(const Rectangle&) = default;
  void Init(float minx, float miny, float maxx, float maxy);

  bool operator==(const Rectangle& o) const {
    return Minx == o.Minx && Miny == o.Miny && Maxx == o.Maxx && Maxy == o.Maxy;
  }
  bool operator!=(const Rectangle& o) const { return !(*this == o); }
  int IsInitialized() const;

  void SetMinx(float v) { Minx = v; }
  void SetMiny(float v) { Miny = v; }
  void SetMaxx(float v) { Maxx = v; }
  void SetMaxy(float v) { Maxy = v; }
  float GetMinx() const { return Minx; }
  float GetMiny() const { return Miny; }
  float GetMaxx() const { return Maxx; }
  float GetMaxy() const { return Maxy; }
  float GetXExtent() const { return Maxx - Minx; }
  float GetYExtent() const { return Maxy - Miny; }

  /// 0: (Minx, Maxy), 1: (Maxx, Maxy), 2: (Maxx, Miny), anything else: (Minx, Miny); clockwise
  /// from the top-left with y up.
  vec2<float> GetCorner(int k) const;

  void Move(const vec2<float>& d);
  void ScaleX(float s);
  void ScaleY(float s);

  int IsInRange(const vec2<float>& p) const;
  int IsInRange(const vec2<float>& p, float tolerance) const;
  int IsInside(const vec2<float>& p, float tolerance) const;
  int IsXInRange(const vec2<float>& p) const;
  int IsYInRange(const vec2<float>& p) const;
  int IsXInside(const vec2<float>& p) const;
  int IsYInside(const vec2<float>& p) const;
  int IsCorner(const vec2<float>& p) const;
  int IsOnBoundary(const vec2<float>& p) const;
  /// Both points on one and the same side (corners included).
  int IsOnSameRectEdge(const vec2<float>& a, const vec2<float>& b) const;
  /// One point strictly inside a vertical side, the other strictly inside a horizontal side.
  int IsOnAdjacentEdge(const vec2<float>& a, const vec2<float>& b) const;
  /// The largest axis distance outside the box; 0 inside or on the border.
  float GetLInfinityDistanceToInterior(const vec2<float>& p) const;

 private:
  float Minx = kUnset;
  float Miny = kUnset;
  float Maxx = kUnset;
  float Maxy = kUnset;
};

}  // namespace vek
