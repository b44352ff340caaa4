#pragma once
#include <vector>

#include "vekCommonExport.h"
#include "vekHashTable.h"
#include "vekObject.h"
#include "vekTriangle.h"
#include "vekVec2.h"

namespace vek {

/// Buckets the triangles of a mesh into Nx x Ny cells over the points' bounding box (widened by
/// `margin` times the extent on each side), so that the triangle containing a point is found by
/// testing only the few triangles of its cell. A triangle goes into every cell its bounding box
/// touches, in triangle-id order, so candidates come back in id order. The cell size is the
/// extent times 1.0001 / N: a point exactly on the upper border falls into cell N - 1.
///
/// Queries are the hot path, so once built every bucket holds, beside each id, a copy of that
/// triangle's box: a query scans its cell's boxes in one contiguous run and reads corners (one
/// record per triangle, copied from the mesh) only where a box holds the point. With points in no
/// particular order and a mesh far larger than the caches, a query then waits on memory about
/// twice rather than once per candidate; the boxes cost 16 bytes per bucket entry. The locator
/// reflects the mesh as it was at Initialize; moving points afterwards needs a new Initialize.
///
/// A point outside the cells (or NaN) is reported with the warning "Out of Range! ..." and has
/// no candidates. Choices made here: Initialize returns VEK_INVALID_PARAMETERS (locator left
/// empty) for cell counts below 1 or with Nx Ny above INT_MAX, VEK_TOO_MANY_ELEMENTS when a
/// bucket overflowed; a triangle box that sticks out of the cell grid is clipped to it, and
/// triangles with a NaN corner are left out.
class VEK_EXPORT TriangleLocator2D : public Object {
 public:
  static TriangleLocator2D* New();
  const char* GetClassName() const override { return "TriangleLocator2D"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  int Initialize(const vec2<float>* points, int numPoints, const Triangle* triangles, int numTriangles, int nx, int ny,
                 float margin);
  /// The ids of p's cell, in bucket order; false (count 0) when p is outside the cells.
  bool FindCandidateTrianglesContainingPoint(const vec2<float>& p, const int*& ids, unsigned int& count) const;
  /// The first candidate whose box (widened by `tolerance`, strict) and barycentric test (widened
  /// by `tolerance`) accept p; false with id -1 when there is none.
  bool FindFirstTriangleContainingPoint(const vec2<float>& p, float tolerance, int& id, float bary[3]) const;

  const vec2<float>& GetMin() const { return Min; }
  const vec2<float>& GetMax() const { return Max; }
  const vec2<float>& GetCellSize() const { return CellSize; }
  int GetNx() const { return Nx; }
  int GetNy() const { return Ny; }

 protected:
  TriangleLocator2D() = default;
  ~TriangleLocator2D() override = default;

 private:
  TriangleLocator2D(const TriangleLocator2D&) = delete;
  TriangleLocator2D& operator=(const TriangleLocator2D&) = delete;

  // What a query needs of one triangle, side by side in memory.
  struct Box {
    vec2<float> Min;
    vec2<float> Max;
  };
  struct Corners {
    vec2<float> Point[3];
  };
  int AddTriangle(HashTable<int>& table, const Triangle& triangle, int id);
  void Flatten(const HashTable<int>& table, const Triangle* triangles, int numTriangles);
  int GetHashIndex(int i, int j) const { return Nx * j + i; }

  vec2<float> Max;
  vec2<float> Min;
  vec2<float> CellSize;
  std::vector<int> BucketStart;  // Nx * Ny + 1 offsets into BucketIds
  std::vector<int> BucketIds;
  std::vector<Box> BucketBoxes;          // beside BucketIds
  std::vector<Corners> TriangleCorners;  // by id
  int Nx = 0;
  int Ny = 0;
};

}  // namespace vek
