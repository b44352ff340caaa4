#include "vekPointLocator2D.h"

#include <cmath>
#include <new>

#include "vekPointArrayBoundingBox.h"

namespace vek {

namespace {

// floor((v - min) / size) in float, held to [-1, n] so that the int tests that follow are exact
// for any input; NaN lands on n, which every caller treats as outside.
int CellIndex(float v, float min, float size, int n) {
  float q = std::floor((v - min) / size);
  if (q < 0.0f) return -1;
  if (!(q < static_cast<float>(n))) return n;
  return static_cast<int>(q);
}

int Clamp(int v, int n) { return v < 0 ? 0 : (v >= n ? n - 1 : v); }

}  // namespace

PointLocator2D* PointLocator2D::New() { return new (std::nothrow) PointLocator2D; }

PointLocator2D::~PointLocator2D() { delete Table; }

int PointLocator2D::Initialize(const vec2<float>* points, int numPoints, int nx, int ny) {
  delete Table;
  Table = nullptr;
  Nx = Ny = 0;
  if (nx < 1 || ny < 1 || static_cast<long long>(nx) * ny > INT_MAX) return VEK_INVALID_PARAMETERS;
  GetPointArrayBoundingBox(points, numPoints, Min, Max);
  CellSize.x = (Max.x - Min.x) * static_cast<float>(1.0001 / nx);
  CellSize.y = (Max.y - Min.y) * static_cast<float>(1.0001 / ny);
  Table = new (std::nothrow) HashTable<const vec2<float>*>(static_cast<unsigned int>(nx * ny - 1));
  if (!Table || !Table->IsValid()) {
    delete Table;
    Table = nullptr;
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  Nx = nx;
  Ny = ny;
  int status = VEK_SUCCESS;
  for (int i = 0; i < numPoints; ++i) {
    if (points[i].IsUnset()) continue;
    int result = AddPoint(points + i);
    if (result != VEK_SUCCESS) status = result;
  }
  return status;
}

int PointLocator2D::GetHashIndex(const vec2<float>& p) const {
  int i = Clamp(CellIndex(p.x, Min.x, CellSize.x, Nx), Nx);
  int j = Clamp(CellIndex(p.y, Min.y, CellSize.y, Ny), Ny);
  return GetHashIndex(i, j);
}

int PointLocator2D::AddPoint(const vec2<float>* p) {
  return Table->Insert(static_cast<unsigned int>(GetHashIndex(*p)), p);
}

void PointLocator2D::FindPointsInRegion(const vec2<float>& min, const vec2<float>& max,
                                        VarArray<const vec2<float>*>& out) const {
  if (!Table || CellSize.x == 0.0f || CellSize.y == 0.0f) return;
  int i0 = CellIndex(min.x, Min.x, CellSize.x, Nx);
  int j0 = CellIndex(min.y, Min.y, CellSize.y, Ny);
  if (i0 >= Nx || j0 >= Ny) return;
  int i1 = CellIndex(max.x, Min.x, CellSize.x, Nx);
  int j1 = CellIndex(max.y, Min.y, CellSize.y, Ny);
  if (i1 < 0 || j1 < 0) return;
  i0 = Clamp(i0, Nx);
  j0 = Clamp(j0, Ny);
  i1 = Clamp(i1, Nx);
  j1 = Clamp(j1, Ny);
  for (int j = j0; j <= j1; ++j) {
    for (int i = i0; i <= i1; ++i) {
      unsigned int key = static_cast<unsigned int>(GetHashIndex(i, j));
      const vec2<float>* const* bucket = Table->GetBucket(key);
      unsigned int count = Table->GetCount(key);
      for (unsigned int k = 0; k < count; ++k) {
        const vec2<float>& p = *bucket[k];
        if (p.x >= min.x && p.x <= max.x && p.y >= min.y && p.y <= max.y) out.Append(bucket[k]);
      }
    }
  }
}

void PointLocator2D::PrintSelf(std::ostream& os, Indent indent) const { Object::PrintSelf(os, indent); }

}  // namespace vek
