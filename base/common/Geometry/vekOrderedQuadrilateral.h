#pragma once
#include "vekCommonExport.h"
#include "vekRectangle.h"
#include "vekVec2.h"

namespace vek {

/// One cell of a (possibly distorted) grid: corners in grid order P0 lower-left, P1 lower-right,
/// P2 upper-left, P3 upper-right, so the boundary runs P0 -> P1 -> P3 -> P2. A corner at (-5, -5)
/// is unset; the cell is initialised only when none is.
///
/// The inside test is split in two so that a caller testing many points against one cell pays
/// for the boxes and edge normals once: GetValuesForTestingInsidedness, then IsInside per point.
class VEK_EXPORT OrderedQuadrilateral {
 public:
  OrderedQuadrilateral() = default;
  OrderedQuadrilateral(const vec2<float>& p0, const vec2<float>& p1, const vec2<float>& p2, const vec2<float>& p3)
      : Points{p0, p1, p2, p3} {}
  explicit OrderedQuadrilateral(const vec2<float> points[4]);
  OrderedQuadrilateral(const OrderedQuadrilateral&) = default;
  OrderedQuadrilateral& operator=(const OrderedQuadrilateral&) = default;

  int IsInitialized() const;
  void Reset();

  const vec2<float>& GetPoint(int k) const { return Points[k]; }
  vec2<float>& SetPoint(int k) { return Points[k]; }
  const vec2<float>* GetPoints() const { return Points; }

  /// Bounding box of the set corners; (-5, -5) for both when none is set.
  void GetBoundingBox(vec2<float>& min, vec2<float>& max) const;
  int ArePointsUnique() const;

  /// The four corners as a vector number file; the number-file utilities' status is returned.
  int ReadFromFile(const char* fileName);
  int WriteToFile(const char* fileName) const;

  /// outer: the bounding box; inner: an axis-aligned box inside a convex cell; normals[k]: the unit
  /// inward normal of edge k (through corner k: P0->P1, P1->P3, P2->P0, P3->P2). A zero-length
  /// edge gives a NaN normal, which never rejects a point.
  void GetValuesForTestingInsidedness(Rectangle& outer, Rectangle& inner, vec2<float> normals[4]) const;
  /// 1 when p lies in the cell widened by `tolerance` (all borders inclusive).
  int IsInside(const Rectangle& outer, const Rectangle& inner, const vec2<float> normals[4], const vec2<float>& p,
               float tolerance) const;

 private:
  vec2<float> Points[4];
};

}  // namespace vek
