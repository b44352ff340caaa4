#pragma once
#include "vekCommonExport.h"
#include "vekHashTable.h"
#include "vekObject.h"
#include "vekVarArray.h"
#include "vekVec2.h"

namespace vek {

/// Buckets the addresses of a point array into Nx x Ny cells over the points' bounding box, so
/// that the points inside a box are found without a full scan. Cell (i, j) has key Nx j + i; the
/// cell size is the extent times 1.0001 / N, so a point exactly on the upper border still falls
/// into cell N - 1. Unset points (-5, -5) are skipped. The point array must outlive the locator.
///
/// Choices made here: Initialize returns VEK_INVALID_PARAMETERS (locator left empty) for cell
/// counts below 1 or with Nx Ny above INT_MAX, and VEK_TOO_MANY_ELEMENTS when a bucket
/// overflowed (the other points are still stored). A point whose cell falls outside the grid by
/// rounding, or along an axis of zero extent, is stored in the nearest cell; queries on such an
/// axis return nothing anyway.
class VEK_EXPORT PointLocator2D : public Object {
 public:
  static PointLocator2D* New();
  const char* GetClassName() const override { return "PointLocator2D"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  int Initialize(const vec2<float>* points, int numPoints, int nx, int ny);
  /// Appends (never clears) the stored points with min <= p <= max on both axes, row by row,
  /// cell by cell, in insertion order within a cell.
  void FindPointsInRegion(const vec2<float>& min, const vec2<float>& max, VarArray<const vec2<float>*>& out) const;

  const vec2<float>& GetMin() const { return Min; }
  const vec2<float>& GetMax() const { return Max; }
  const vec2<float>& GetCellSize() const { return CellSize; }
  int GetNx() const { return Nx; }
  int GetNy() const { return Ny; }

 protected:
  PointLocator2D() = default;
  ~PointLocator2D() override;

 private:
  PointLocator2D(const PointLocator2D&) = delete;
  PointLocator2D& operator=(const PointLocator2D&) = delete;

  int GetHashIndex(const vec2<float>& p) const;
  int GetHashIndex(int i, int j) const { return Nx * j + i; }
  int AddPoint(const vec2<float>* p);

  vec2<float> Max;
  vec2<float> Min;
  vec2<float> CellSize;
  HashTable<const vec2<float>*>* Table = nullptr;
  int Nx = 0;
  int Ny = 0;
};

}  // namespace vek
