#include "vekRectangle.h"

#include <algorithm>

namespace vek {

void Rectangle::Init(float minx, float miny, float maxx, float maxy) {
  Minx = minx;
  Miny = miny;
  Maxx = maxx;
  Maxy = maxy;
}

int Rectangle::IsInitialized() const {
  return (Minx == kUnset || Miny == kUnset || Maxx == kUnset || Maxy == kUnset) ? 0 : 1;
}

vec2<float> Rectangle::GetCorner(int k) const {
  switch (k) {
    case 0:
      return {Minx, Maxy};
    case 1:
      return {Maxx, Maxy};
    case 2:
      return {Maxx, Miny};
    default:
      return {Minx, Miny};
  }
}

void Rectangle::Move(const vec2<float>& d) {
  Minx += d.x;
  Maxx += d.x;
  Miny += d.y;
  Maxy += d.y;
}

void Rectangle::ScaleX(float s) {
  Minx *= s;
  Maxx *= s;
}

void Rectangle::ScaleY(float s) {
  Miny *= s;
  Maxy *= s;
}

int Rectangle::IsInRange(const vec2<float>& p) const { return IsXInRange(p) && IsYInRange(p); }

int Rectangle::IsInRange(const vec2<float>& p, float t) const {
  return (Minx - t <= p.x && p.x <= Maxx + t && Miny - t <= p.y && p.y <= Maxy + t) ? 1 : 0;
}

int Rectangle::IsInside(const vec2<float>& p, float t) const {
  return (Minx - t < p.x && p.x < Maxx + t && Miny - t < p.y && p.y < Maxy + t) ? 1 : 0;
}

int Rectangle::IsXInRange(const vec2<float>& p) const { return (Minx <= p.x && p.x <= Maxx) ? 1 : 0; }
int Rectangle::IsYInRange(const vec2<float>& p) const { return (Miny <= p.y && p.y <= Maxy) ? 1 : 0; }
int Rectangle::IsXInside(const vec2<float>& p) const { return (Minx < p.x && p.x < Maxx) ? 1 : 0; }
int Rectangle::IsYInside(const vec2<float>& p) const { return (Miny < p.y && p.y < Maxy) ? 1 : 0; }

int Rectangle::IsCorner(const vec2<float>& p) const {
  for (int k = 0; k < 4; ++k)
    if (GetCorner(k) == p) return 1;
  return 0;
}

int Rectangle::IsOnBoundary(const vec2<float>& p) const {
  const bool onVertical = (p.x == Maxx || p.x == Minx) && IsYInRange(p);
  const bool onHorizontal = (p.y == Maxy || p.y == Miny) && IsXInRange(p);
  return (onVertical || onHorizontal) ? 1 : 0;
}

int Rectangle::IsOnSameRectEdge(const vec2<float>& a, const vec2<float>& b) const {
  const bool sameVertical = a.x == b.x && (a.x == Maxx || a.x == Minx) && IsYInRange(a) && IsYInRange(b);
  const bool sameHorizontal = a.y == b.y && (a.y == Maxy || a.y == Miny) && IsXInRange(a) && IsXInRange(b);
  return (sameVertical || sameHorizontal) ? 1 : 0;
}

int Rectangle::IsOnAdjacentEdge(const vec2<float>& a, const vec2<float>& b) const {
  auto inVerticalSide = [this](const vec2<float>& p) { return (p.x == Maxx || p.x == Minx) && IsYInside(p); };
  auto inHorizontalSide = [this](const vec2<float>& p) { return (p.y == Miny || p.y == Maxy) && IsXInside(p); };
  return ((inVerticalSide(a) && inHorizontalSide(b)) || (inVerticalSide(b) && inHorizontalSide(a))) ? 1 : 0;
}

float Rectangle::GetLInfinityDistanceToInterior(const vec2<float>& p) const {
  return std::max({0.0f, p.x - Maxx, p.y - Maxy, Minx - p.x, Miny - p.y});
}

}  // namespace vek
