#pragma once
#include "vekCommonExport.h"
#include "vekDataArray.h"
#include "vekObject.h"
#include "vekOrderedQuadrilateral.h"
#include "vekRectangle.h"
#include "vekVec2.h"

namespace vek {

/// An axis-aligned grid with explicit, increasing coordinates per axis: column i at XCoord[i],
/// row j at YCoord[j]. Point (i, j) has number j * Numx + i, cell (i, j) region id
/// j * (Numx - 1) + i. The coordinate arrays are shared by reference count.
///
/// FindPointsInside takes its tolerance in coordinate units and does not clamp. IsInRange compares
/// the last x against the point's y, as callers expect. Choices made here: a missing or empty
/// coordinate array counts as zero columns/rows, and FindSection on it returns -1.
class VEK_EXPORT NonUniformRectilinearGrid : public Object {
 public:
  static NonUniformRectilinearGrid* New();
  const char* GetClassName() const override { return "NonUniformRectilinearGrid"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  void SetXCoord(DataArray<float>* coords) { SetCoord(XCoord, coords); }
  void SetYCoord(DataArray<float>* coords) { SetCoord(YCoord, coords); }
  DataArray<float>* GetXCoord() const { return XCoord; }
  DataArray<float>* GetYCoord() const { return YCoord; }
  /// Replaces the held array by n values start, start + step, ... (accumulated in double).
  int CreateXCoord(int n, float start, float step);
  int CreateYCoord(int n, float start, float step);

  int GetNumx() const { return XCoord ? XCoord->GetNumberOfValues() : 0; }
  int GetNumy() const { return YCoord ? YCoord->GetNumberOfValues() : 0; }
  int GetNumPoints() const { return GetNumx() * GetNumy(); }
  int GetNumRectangularRegions() const { return (GetNumx() - 1) * (GetNumy() - 1); }
  int GetPointNum(int i, int j) const { return GetNumx() * j + i; }
  int GetRegionId(int i, int j) const { return (GetNumx() - 1) * j + i; }
  /// Needs Numx >= 2.
  void RegionIdToIJRegion(int id, int& i, int& j) const {
    j = id / (GetNumx() - 1);
    i = id - (GetNumx() - 1) * j;
  }
  float GetPointx(int i) const { return (*XCoord)[i]; }
  float GetPointy(int j) const { return (*YCoord)[j]; }
  float GetLastPointx() const { return (*XCoord)[GetNumx() - 1]; }
  float GetLastPointy() const { return (*YCoord)[GetNumy() - 1]; }

  /// Corners (x_i, y_j), (x_i+1, y_j), (x_i, y_j+1), (x_i+1, y_j+1).
  OrderedQuadrilateral GetRegion(int i, int j) const;
  Rectangle GetRegionRectangle(int i, int j) const;

  int FindSectionx(float x) const { return FindSection(x, XCoord); }
  int FindSectiony(float y) const { return FindSection(y, YCoord); }
  void FindPointsInside(const vec2<float>& min, const vec2<float>& max, int& i0, int& j0, int& i1, int& j1,
                        float tolerance) const;
  int IsInRange(const vec2<float>& p) const;
  void FillInPoints(vec2<float>* out) const;

 protected:
  NonUniformRectilinearGrid() = default;
  ~NonUniformRectilinearGrid() override;

  /// The s with coords[s] <= value < coords[s + 1]; -1 below the first, n - 1 above the last.
  static int FindSection(float value, const DataArray<float>* coords);
  static DataArray<float>* CreateCoord(int n, float start, float step);

 private:
  NonUniformRectilinearGrid(const NonUniformRectilinearGrid&) = delete;
  NonUniformRectilinearGrid& operator=(const NonUniformRectilinearGrid&) = delete;
  static void SetCoord(DataArray<float>*& held, DataArray<float>* coords);

  DataArray<float>* XCoord = nullptr;
  DataArray<float>* YCoord = nullptr;
};

}  // namespace vek
