#include "vekPointArrayBoundingBox.h"

namespace vek {

int GetPointArrayBoundingBox(const vec2<float>* points, int count, vec2<float>& min, vec2<float>& max) {
  min = vec2<float>();
  max = vec2<float>();
  int used = 0;
  for (int i = 0; i < count; ++i) {
    const vec2<float>& p = points[i];
    if (p.IsUnset()) continue;
    if (used++ == 0) {
      min = p;
      max = p;
      continue;
    }
    if (p.x < min.x) min.x = p.x;
    if (p.y < min.y) min.y = p.y;
    if (p.x > max.x) max.x = p.x;
    if (p.y > max.y) max.y = p.y;
  }
  return used;
}

}  // namespace vek
