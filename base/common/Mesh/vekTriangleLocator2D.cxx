#include "vekTriangleLocator2D.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <new>

#include "vekPlatform.h"
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

int TriangleLocator2D::Initialize(const vec2<float>* points, int numPoints, const Triangle* triangles, int numTriangles,
                                  int nx, int ny, float margin) {
  BucketStart.clear();
  BucketIds.clear();
  BucketBoxes.clear();
  TriangleCorners.clear();
  Nx = Ny = 0;
  if (nx < 1 || ny < 1 || static_cast<long long>(nx) * ny > INT_MAX) return VEK_INVALID_PARAMETERS;
  GetPointArrayBoundingBox(points, numPoints, Min, Max);
  vec2<float> extent(Max.x - Min.x, Max.y - Min.y);
  Min = vec2<float>(Min.x - extent.x * margin, Min.y - extent.y * margin);
  Max = vec2<float>(Max.x + extent.x * margin, Max.y + extent.y * margin);
  CellSize.x = (Max.x - Min.x) * static_cast<float>(1.0001 / nx);
  CellSize.y = (Max.y - Min.y) * static_cast<float>(1.0001 / ny);
  if (numTriangles < 0) numTriangles = 0;
  HashTable<int> table(static_cast<unsigned int>(nx * ny - 1));
  if (!table.IsValid()) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  Nx = nx;
  Ny = ny;
  int status = VEK_SUCCESS;
  for (int t = 0; t < numTriangles; ++t) {
    if (!triangles[t].IsInitialized()) continue;
    int result = AddTriangle(table, triangles[t], t);
    if (result != VEK_SUCCESS) status = result;
  }
  try {
    Flatten(table, triangles, numTriangles);
  } catch (const std::bad_alloc&) {
    BucketStart.clear();
    BucketIds.clear();
    BucketBoxes.clear();
    TriangleCorners.clear();
    Nx = Ny = 0;
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return status;
}

int TriangleLocator2D::AddTriangle(HashTable<int>& table, const Triangle& triangle, int id) {
  vec2<float> boxMin, boxMax;
  triangle.GetBoundingBox(boxMin, boxMax);
  int i0 = CellIndex(boxMin.x, Min.x, CellSize.x, Nx);
  int j0 = CellIndex(boxMin.y, Min.y, CellSize.y, Ny);
  if (i0 >= Nx || j0 >= Ny) return VEK_SUCCESS;
  int i1 = CellIndex(boxMax.x, Min.x, CellSize.x, Nx);
  int j1 = CellIndex(boxMax.y, Min.y, CellSize.y, Ny);
  if (i1 < 0 || j1 < 0 || i0 > i1) return VEK_SUCCESS;
  // A NaN maximum reads as the last cell + 1; such a triangle can never contain a point.
  if (i1 >= Nx && std::isnan(boxMax.x)) return VEK_SUCCESS;
  if (j1 >= Ny && std::isnan(boxMax.y)) return VEK_SUCCESS;
  if (i0 < 0) i0 = 0;
  if (j0 < 0) j0 = 0;
  if (i1 >= Nx) i1 = Nx - 1;
  if (j1 >= Ny) j1 = Ny - 1;
  int status = VEK_SUCCESS;
  for (int i = i0; i <= i1; ++i) {
    for (int j = j0; j <= j1; ++j) {
      int result = table.Insert(static_cast<unsigned int>(GetHashIndex(i, j)), id);
      if (result != VEK_SUCCESS) status = result;
    }
  }
  return status;
}

void TriangleLocator2D::Flatten(const HashTable<int>& table, const Triangle* triangles, int numTriangles) {
  const unsigned int cells = table.GetMaxKey() + 1;
  BucketStart.assign(static_cast<size_t>(cells) + 1, 0);
  size_t total = 0;
  for (unsigned int key = 0; key < cells; ++key) {
    BucketStart[key] = static_cast<int>(std::min<size_t>(total, INT_MAX));
    total += table.GetCount(key);
  }
  if (total > static_cast<size_t>(INT_MAX)) throw std::bad_alloc();
  BucketStart[cells] = static_cast<int>(total);
  BucketIds.reserve(total);
  platform::AdviseLargePages(BucketIds.data(), total * sizeof(int));
  BucketIds.resize(total);
  BucketBoxes.resize(total);
  TriangleCorners.resize(numTriangles);
  for (unsigned int key = 0; key < cells; ++key) {
    const int* bucket = table.GetBucket(key);
    std::copy(bucket, bucket + table.GetCount(key), BucketIds.begin() + BucketStart[key]);
  }
  for (size_t k = 0; k < total; ++k) {
    const Triangle& triangle = triangles[BucketIds[k]];
    Corners& corners = TriangleCorners[BucketIds[k]];
    for (int c = 0; c < 3; ++c) corners.Point[c] = *triangle.GetCorner(c);
    triangle.GetBoundingBox(BucketBoxes[k].Min, BucketBoxes[k].Max);
  }
}

bool TriangleLocator2D::FindCandidateTrianglesContainingPoint(const vec2<float>& p, const int*& ids,
                                                              unsigned int& count) const {
  int i = CellIndex(p.x, Min.x, CellSize.x, Nx);
  int j = CellIndex(p.y, Min.y, CellSize.y, Ny);
  if (!BucketStart.empty() && i >= 0 && i < Nx && j >= 0 && j < Ny) {
    int key = GetHashIndex(i, j);
    ids = BucketIds.data() + BucketStart[key];
    count = static_cast<unsigned int>(BucketStart[key + 1] - BucketStart[key]);
    return true;
  }
  VEK_REPORT_WARNING("Out of Range! " << p.x << " " << p.y << " with range" << Min.x << " " << Min.y << " to " << Max.x
                                      << " " << Max.y);
  count = 0;
  return false;
}

bool TriangleLocator2D::FindFirstTriangleContainingPoint(const vec2<float>& p, float tolerance, int& id,
                                                         float bary[3]) const {
  id = -1;
  const int* ids = nullptr;
  unsigned int count = 0;
  if (!FindCandidateTrianglesContainingPoint(p, ids, count)) return false;
  const Box* boxes = BucketBoxes.data() + (ids - BucketIds.data());
  for (unsigned int k = 0; k < count; ++k) {
    const Box& b = boxes[k];
    if (!(p.x > b.Min.x - tolerance && p.x < b.Max.x + tolerance && p.y > b.Min.y - tolerance &&
          p.y < b.Max.y + tolerance))
      continue;
    const vec2<float>* c = TriangleCorners[ids[k]].Point;
    if (Triangle::TestInsidedness(c[0], c[1], c[2], p, tolerance, bary)) {
      id = ids[k];
      return true;
    }
  }
  return false;
}

void TriangleLocator2D::PrintSelf(std::ostream& os, Indent indent) const { Object::PrintSelf(os, indent); }

}  // namespace vek
