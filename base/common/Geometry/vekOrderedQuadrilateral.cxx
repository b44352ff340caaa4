#include "vekOrderedQuadrilateral.h"

#include <algorithm>
#include <cmath>

#include "vekOutputNumbers.h"
#include "vekPointArrayBoundingBox.h"

namespace vek {

OrderedQuadrilateral::OrderedQuadrilateral(const vec2<float> points[4]) { std::copy(points, points + 4, Points); }

int OrderedQuadrilateral::IsInitialized() const {
  for (const auto& p : Points)
    if (p.IsUnset()) return 0;
  return 1;
}

void OrderedQuadrilateral::Reset() {
  for (auto& p : Points) p = vec2<float>();
}

void OrderedQuadrilateral::GetBoundingBox(vec2<float>& min, vec2<float>& max) const {
  GetPointArrayBoundingBox(Points, 4, min, max);
}

int OrderedQuadrilateral::ArePointsUnique() const {
  for (int i = 0; i < 4; ++i)
    for (int j = i + 1; j < 4; ++j)
      if (Points[i] == Points[j]) return 0;
  return 1;
}

int OrderedQuadrilateral::ReadFromFile(const char* fileName) {
  return OutputNumbers::ReadVectorArrayOfKnownLength(fileName, Points, 4);
}

int OrderedQuadrilateral::WriteToFile(const char* fileName) const {
  return OutputNumbers::OutputVector2File(fileName, Points, 4);
}

void OrderedQuadrilateral::GetValuesForTestingInsidedness(Rectangle& outer, Rectangle& inner,
                                                          vec2<float> normals[4]) const {
  vec2<float> min, max;
  GetBoundingBox(min, max);
  outer = Rectangle(min, max);
  const vec2<float>&p0 = Points[0], &p1 = Points[1], &p2 = Points[2], &p3 = Points[3];
  inner.Init(std::max(p0.x, p2.x), std::max(p0.y, p1.y), std::min(p1.x, p3.x), std::min(p2.y, p3.y));
  const vec2<float> directions[4] = {
      {p1.x - p0.x, p1.y - p0.y}, {p3.x - p1.x, p3.y - p1.y}, {p0.x - p2.x, p0.y - p2.y}, {p2.x - p3.x, p2.y - p3.y}};
  for (int k = 0; k < 4; ++k) {
    const vec2<float>& d = directions[k];
    const float length = std::sqrt(d.x * d.x + d.y * d.y);
    normals[k] = vec2<float>(-d.y / length, d.x / length);
  }
}

int OrderedQuadrilateral::IsInside(const Rectangle& outer, const Rectangle& inner, const vec2<float> normals[4],
                                   const vec2<float>& p, float t) const {
  if (inner.GetMinx() - t <= p.x && p.x <= inner.GetMaxx() + t && inner.GetMiny() - t <= p.y &&
      p.y <= inner.GetMaxy() + t)
    return 1;
  if (p.x > outer.GetMaxx() + t || p.x < outer.GetMinx() - t || p.y > outer.GetMaxy() + t || p.y < outer.GetMiny() - t)
    return 0;
  for (int k = 0; k < 4; ++k) {
    const float s = (p.x - Points[k].x) * normals[k].x + (p.y - Points[k].y) * normals[k].y;
    if (s < -t) return 0;
  }
  return 1;
}

}  // namespace vek
