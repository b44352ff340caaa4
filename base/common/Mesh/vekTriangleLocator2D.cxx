#include "vekTriangleLocator2D.h"

#include <cmath>
#include <new>

#include "vekPointArrayBoundingBox.h"

namespace vek {

namespace {

// floor((v - min) / size) in float, held to [-1, n] so that the int tests that follow are exact
// for any input; NaN lands on n, which every caller treats as outside.
inline int CellIndex(float v, float min, float size, int n) {
  float q = std::floor((v - min) / size);
  if (q < 0.0f) return -1;
  if (!(q < static_cast<float>(n))) return n;
  return static_cast<int>(q);
}

}  // namespace

TriangleLocator2D* TriangleLocator2D::New() { return new (std::nothrow) TriangleLocator2D; }

TriangleLocator2D::~TriangleLocator2D() {
  delete Table;
  delete[] BoundingBoxes;
}

int TriangleLocator2D::Initialize(const vec2<float>* points, int numPoints, const Triangle* triangles,
                                  int numTriangles, int nx, int ny, float margin) {
  delete Table;
  delete[] BoundingBoxes;
  Table = nullptr;
  BoundingBoxes = nullptr;
  Triangles = triangles;
  Nx = Ny = 0;
  if (nx < 1 || ny < 1 || static_cast<long long>(nx) * ny > INT_MAX) return VEK_INVALID_PARAMETERS;
  GetPointArrayBoundingBox(points, numPoints, Min, Max);
  vec2<float> extent(Max.x - Min.x, Max.y - Min.y);
  Min = vec2<float>(Min.x - extent.x * margin, Min.y - extent.y * margin);
  Max = vec2<float>(Max.x + extent.x * margin, Max.y + extent.y * margin);
  CellSize.x = (Max.x - Min.x) * static_cast<float>(1.0001 / nx);
  CellSize.y = (Max.y - Min.y) * static_cast<float>(1.0001 / ny);
  if (numTriangles < 0) numTriangles = 0;
  Table = new (std::nothrow) HashTable<int>(static_cast<unsigned int>(nx * ny - 1));
  BoundingBoxes = new (std::nothrow) Box[static_cast<size_t>(numTriangles) + 1];
  if (!Table || !Table->IsValid() || !BoundingBoxes) {
    delete Table;
    delete[] BoundingBoxes;
    Table = nullptr;
    BoundingBoxes = nullptr;
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  Nx = nx;
  Ny = ny;
  int status = VEK_SUCCESS;
  for (int t = 0; t < numTriangles; ++t) {
    if (!triangles[t].IsInitialized()) continue;
    int result = AddTriangle(triangles[t], t);
    if (result != VEK_SUCCESS) status = result;
  }
  return status;
}

int TriangleLocator2D::AddTriangle(const Triangle& triangle, int id) {
  Box& box = BoundingBoxes[id];
  triangle.GetBoundingBox(box.Min, box.Max);
  int i0 = CellIndex(box.Min.x, Min.x, CellSize.x, Nx);
  int j0 = CellIndex(box.Min.y, Min.y, CellSize.y, Ny);
  if (i0 >= Nx || j0 >= Ny) return VEK_SUCCESS;
  int i1 = CellIndex(box.Max.x, Min.x, CellSize.x, Nx);
  int j1 = CellIndex(box.Max.y, Min.y, CellSize.y, Ny);
  if (i1 < 0 || j1 < 0 || i0 > i1) return VEK_SUCCESS;
  // A NaN maximum reads as the last cell + 1; such a triangle can never contain a point.
  if (i1 >= Nx && std::isnan(box.Max.x)) return VEK_SUCCESS;
  if (j1 >= Ny && std::isnan(box.Max.y)) return VEK_SUCCESS;
  if (i0 < 0) i0 = 0;
  if (j0 < 0) j0 = 0;
  if (i1 >= Nx) i1 = Nx - 1;
  if (j1 >= Ny) j1 = Ny - 1;
  int status = VEK_SUCCESS;
  for (int i = i0; i <= i1; ++i) {
    for (int j = j0; j <= j1; ++j) {
      int result = Table->Insert(static_cast<unsigned int>(GetHashIndex(i, j)), id);
      if (result != VEK_SUCCESS) status = result;
    }
  }
  return status;
}

bool TriangleLocator2D::FindCandidateTrianglesContainingPoint(const vec2<float>& p, const int*& ids,
                                                              unsigned int& count) const {
  int i = CellIndex(p.x, Min.x, CellSize.x, Nx);
  int j = CellIndex(p.y, Min.y, CellSize.y, Ny);
  if (Table && i >= 0 && i < Nx && j >= 0 && j < Ny) {
    unsigned int key = static_cast<unsigned int>(GetHashIndex(i, j));
    ids = Table->GetBucket(key);
    count = Table->GetCount(key);
    return true;
  }
  VEK_REPORT_WARNING("Out of Range! " << p.x << " " << p.y << " with range" << Min.x << " " << Min.y << " to "
                                      << Max.x << " " << Max.y);
  count = 0;
  return false;
}

bool TriangleLocator2D::FindFirstTriangleContainingPoint(const vec2<float>& p, float tolerance, int& id,
                                                         float bary[3]) const {
  id = -1;
  const int* ids = nullptr;
  unsigned int count = 0;
  if (!FindCandidateTrianglesContainingPoint(p, ids, count)) return false;
  for (unsigned int k = 0; k < count; ++k) {
    int t = ids[k];
    const Box& box = BoundingBoxes[t];
    if (p.x > box.Min.x - tolerance && p.x < box.Max.x + tolerance && p.y > box.Min.y - tolerance &&
        p.y < box.Max.y + tolerance && Triangles[t].TestInsidedness(p, tolerance, bary)) {
      id = t;
      return true;
    }
  }
  return false;
}

void TriangleLocator2D::PrintSelf(std::ostream& os, Indent indent) const { Object::PrintSelf(os, indent); }

}  // namespace vek
