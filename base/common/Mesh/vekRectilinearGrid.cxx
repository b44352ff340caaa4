#include "vekRectilinearGrid.h"

#include <cmath>
#include <new>

#include "vekSaturatedInt.h"

namespace vek {

namespace {

int Nearest(float value, float offset, float space) {
  float q = (value - offset) / space;
  return SaturatedInt(std::floor(static_cast<double>(q) + 0.5));
}

}  // namespace

RectilinearGrid* RectilinearGrid::New() { return new (std::nothrow) RectilinearGrid; }

void RectilinearGrid::Copy(const RectilinearGrid& other) {
  Offsetx = other.Offsetx;
  Offsety = other.Offsety;
  Spacex = other.Spacex;
  Spacey = other.Spacey;
  Numx = other.Numx;
  Numy = other.Numy;
}

int RectilinearGrid::GetPointI(float x) const { return Nearest(x, Offsetx, Spacex); }
int RectilinearGrid::GetPointJ(float y) const { return Nearest(y, Offsety, Spacey); }

int RectilinearGrid::IsInRange(const vec2<float>& p) const {
  return p.x > Offsetx && p.y > Offsety && GetLastPointx() > p.y && GetLastPointy() > p.y ? 1 : 0;
}

void RectilinearGrid::FindPointsInside(const vec2<float>& min, const vec2<float>& max, int& i0, int& j0, int& i1,
                                       int& j1, float tolerance) const {
  i0 = SaturatedInt(std::ceil((min.x - Offsetx) / Spacex - tolerance));
  i1 = SaturatedInt(std::floor((max.x - Offsetx) / Spacex + tolerance));
  j0 = SaturatedInt(std::ceil((min.y - Offsety) / Spacey - tolerance));
  j1 = SaturatedInt(std::floor((max.y - Offsety) / Spacey + tolerance));
  if (i0 < 0) i0 = 0;
  if (j0 < 0) j0 = 0;
  if (i1 > Numx - 1) i1 = Numx - 1;
  if (j1 > Numy - 1) j1 = Numy - 1;
}

void RectilinearGrid::FillInPoints(vec2<float>* out) const {
  double y = Offsety;
  for (int j = 0; j < Numy; ++j, y += Spacey) {
    double x = Offsetx;
    for (int i = 0; i < Numx; ++i, x += Spacex) *out++ = vec2<float>(static_cast<float>(x), static_cast<float>(y));
  }
}

void RectilinearGrid::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "x0      : " << Offsetx << "\n";
  os << indent << "y0      : " << Offsety << "\n";
  os << indent << "SpaceX: " << Spacex << "\n";
  os << indent << "SpaceY: " << Spacey << "\n";
  os << indent << "Numx    : " << Numx << "\n";
  os << indent << "Numy    : " << Numy << "\n";
}

}  // namespace vek
