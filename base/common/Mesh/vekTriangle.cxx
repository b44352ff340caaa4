#include "vekTriangle.h"

#include "vekPointArrayBoundingBox.h"

namespace vek {

void Triangle::GetCorners(float* a, float* b, float* c) const {
  float* out[3] = {a, b, c};
  for (int k = 0; k < 3; ++k) {
    out[k][0] = Corners[k]->x;
    out[k][1] = Corners[k]->y;
  }
}

int Triangle::IsInitialized() const {
  return Corners[0] != nullptr && Corners[1] != nullptr && Corners[2] != nullptr ? 1 : 0;
}

int Triangle::IsCornersInitialized() const {
  for (const vec2<float>* corner : Corners)
    if (corner->IsUnset()) return 0;
  return 1;
}

void Triangle::GetVertexNumInArray(const vec2<float>* base, int out[3]) const {
  for (int k = 0; k < 3; ++k) out[k] = static_cast<int>(Corners[k] - base);
}

void Triangle::GetBoundingBox(vec2<float>& min, vec2<float>& max) const {
  const vec2<float> points[3] = {*Corners[0], *Corners[1], *Corners[2]};
  GetPointArrayBoundingBox(points, 3, min, max);
}

void Triangle::GetBaryCoord(const vec2<float>& p, float bary[3]) const {
  float a, b;
  GetAB(p, a, b);
  bary[0] = 1.0f - a;
  bary[1] = a - b;
  bary[2] = b;
}

void Triangle::PrintTriangle(std::ostream& os) const {
  os << Corners[0]->x << " " << Corners[0]->y << " " << Corners[1]->x << " " << Corners[1]->y << " " << Corners[2]->x
     << " " << Corners[2]->y;
}

}  // namespace vek
