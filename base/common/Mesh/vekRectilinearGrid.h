#pragma once
#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekVec2.h"

namespace vek {

/// A uniform axis-aligned grid of sample points: origin, spacing and counts.
/// Point (i, j) has number j * Numx + i; cell (i, j) is the one whose lower-left point is (i, j).
///
/// IsInRange compares the last x against the point's y (not its x); callers depend on that, so
/// it stays. Indices computed from coordinates (GetPointI/J, FindPointsInside) saturate at the
/// int range, and NaN gives INT_MIN, instead of overflowing.
class VEK_EXPORT RectilinearGrid : public Object {
 public:
  static constexpr float kUnsetFloat = -1.0f;
  static constexpr int kUnsetInt = -1;

  static RectilinearGrid* New();
  const char* GetClassName() const override { return "RectilinearGrid"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  void SetOffsetx(float v) { Offsetx = v; }
  float GetOffsetx() const { return Offsetx; }
  void SetOffsety(float v) { Offsety = v; }
  float GetOffsety() const { return Offsety; }
  void SetSpacex(float v) { Spacex = v; }
  float GetSpacex() const { return Spacex; }
  void SetSpacey(float v) { Spacey = v; }
  float GetSpacey() const { return Spacey; }
  void SetNumx(int n) { Numx = n; }
  int GetNumx() const { return Numx; }
  void SetNumy(int n) { Numy = n; }
  int GetNumy() const { return Numy; }
  void Copy(const RectilinearGrid& other);

  int GetNumPoints() const { return Numx * Numy; }
  int GetNumRectangularRegions() const { return (Numx - 1) * (Numy - 1); }
  int GetPointNum(int i, int j) const { return Numx * j + i; }
  float GetPointx(int i) const { return static_cast<float>(i) * Spacex + Offsetx; }
  float GetPointy(int j) const { return static_cast<float>(j) * Spacey + Offsety; }
  float GetLastPointx() const { return static_cast<float>(Numx - 1) * Spacex + Offsetx; }
  float GetLastPointy() const { return static_cast<float>(Numy - 1) * Spacey + Offsety; }

  /// The nearest column (halves round up); not clamped.
  int GetPointI(float x) const;
  int GetPointJ(float y) const;
  int IsInRange(const vec2<float>& p) const;
  /// Grid points in [min, max] widened by `tolerance` grid steps, clamped to the grid; the range
  /// is empty when i0 > i1 or j0 > j1.
  void FindPointsInside(const vec2<float>& min, const vec2<float>& max, int& i0, int& j0, int& i1, int& j1,
                        float tolerance) const;
  /// All points in point-number order; coordinates accumulate the spacing in double.
  void FillInPoints(vec2<float>* out) const;

 protected:
  RectilinearGrid() = default;
  ~RectilinearGrid() override = default;

 private:
  RectilinearGrid(const RectilinearGrid&) = delete;
  RectilinearGrid& operator=(const RectilinearGrid&) = delete;

  float Offsetx = kUnsetFloat;
  float Offsety = kUnsetFloat;
  float Spacex = kUnsetFloat;
  float Spacey = kUnsetFloat;
  int Numx = kUnsetInt;
  int Numy = kUnsetInt;
};

}  // namespace vek
