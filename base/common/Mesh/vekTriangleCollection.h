#pragma once
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekVec2.h"

namespace vek {

/// A flat list of triangles, each labelled with the ids of the two source triangles it came from
/// (for the overlap of two meshes: the triangle of the first mesh, then that of the second).
/// Triangles are kept in the order they were added; corners are doubles, as computed, so that
/// the areas of the pieces add up to the areas reported with them. Nothing is shared between
/// triangles: this is a result to read, not a mesh to edit (see TriangleMesh for that).
/// Reserve returns VEK_INVALID_PARAMETERS for a negative count.
class VEK_EXPORT TriangleCollection : public Object {
 public:
  static TriangleCollection* New();
  const char* GetClassName() const override { return "TriangleCollection"; }
  /// Object's lines, then "NumberOfTriangles: n".
  void PrintSelf(std::ostream& os, Indent indent) const override;

  int GetNumberOfTriangles() const { return static_cast<int>(Items.size()); }
  const vec2<double>& GetCorner(int t, int k) const { return Items[t].Corners[k]; }
  int GetFirstId(int t) const { return Items[t].FirstId; }
  int GetSecondId(int t) const { return Items[t].SecondId; }
  /// Triangle::SignedArea of the corners, in double: positive for the orientation of the grid
  /// triangulation (counter-clockwise on screen with y down).
  double GetSignedArea(int t) const {
    return SignedArea(Items[t].Corners[0], Items[t].Corners[1], Items[t].Corners[2]);
  }
  static double SignedArea(const vec2<double>& a, const vec2<double>& b, const vec2<double>& c) {
    return ((b.y - a.y) * (c.x - a.x) - (c.y - a.y) * (b.x - a.x)) * 0.5;
  }

  /// VEK_FAILED_TO_ALLOCATE_MEMORY when the list cannot grow (nothing added).
  int AddTriangle(const vec2<double>& a, const vec2<double>& b, const vec2<double>& c, int firstId, int secondId);
  /// Room for n triangles in all, so that adding up to n cannot fail.
  int Reserve(int n);
  void Reset() { Items.clear(); }

 protected:
  TriangleCollection() = default;
  ~TriangleCollection() override = default;

 private:
  TriangleCollection(const TriangleCollection&) = delete;
  TriangleCollection& operator=(const TriangleCollection&) = delete;

  struct Item {
    vec2<double> Corners[3];
    int FirstId;
    int SecondId;
  };
  std::vector<Item> Items;
};

}  // namespace vek
