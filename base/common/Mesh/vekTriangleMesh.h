#pragma once
#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekTriangle.h"
#include "vekVec2.h"

namespace vek {

/// A 2-D triangulation: an owned point array and an owned Triangle array whose corners point
/// into it. Build it with SetNumPoints, SetNumTriangles, Allocate, then AddPoint/AddTriangle (or
/// OverWritePoints). Every operation that replaces the point array (ExpandPoints, Copy,
/// Concatenate) re-points all triangles by index; pointers a caller took into the old array are
/// then stale. Index arguments are not range-checked.
///
/// Choices made here: Allocate, Copy and Concatenate free arrays held before instead of leaking
/// them; ExpandPoints/ExpandTriangles refuse a count smaller than the current one
/// (VEK_INVALID_PARAMETERS, nothing changed); triangles whose corners are not all set stay
/// unset when copied. Operations that allocate return VEK_FAILED_TO_ALLOCATE_MEMORY on
/// failure, leaving the mesh as it was.
class VEK_EXPORT TriangleMesh : public Object {
 public:
  static TriangleMesh* New();
  const char* GetClassName() const override { return "TriangleMesh"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  void SetNumPoints(int n) { NumPoints = n; }
  void SetNumTriangles(int n) { NumTriangles = n; }
  int GetNumPoints() const { return NumPoints; }
  int GetNumTriangles() const { return NumTriangles; }

  /// Points all unset (-5, -5), triangles all with null corners.
  int Allocate();

  void AddPoint(int i, float x, float y) { Points[i] = vec2<float>(x, y); }
  void OverWritePoints(const vec2<float>* source);
  void AddTriangle(int t, int i0, int i1, int i2) { Triangles[t].SetCorners(Points + i0, Points + i1, Points + i2); }

  const vec2<float>* GetPoints() const { return Points; }
  vec2<float>* SetPoints() { return Points; }
  const vec2<float>& GetPoint(int i) const { return Points[i]; }
  vec2<float>& SetPoint(int i) { return Points[i]; }
  const Triangle* GetTriangles() const { return Triangles; }
  const Triangle& GetTriangle(int t) const { return Triangles[t]; }
  Triangle& SetTriangle(int t) { return Triangles[t]; }
  void GetTriangleVerticesInArray(int t, int out[3]) const { Triangles[t].GetVertexNumInArray(Points, out); }
  /// The same as GetTriangleVerticesInArray; both spellings are part of the interface.
  void GetTriangleVerticiesInArray(int t, int out[3]) const { GetTriangleVerticesInArray(t, out); }
  int DoesTriangleContainVertex(int t, int v) const { return Triangles[t].DoesContainVertex(Points + v) ? 1 : 0; }

  /// Sum of the triangles' float signed areas, accumulated in double.
  float TotalSignedArea() const;

  /// New points are unset; triangles keep their vertex indices. Done even for the same count.
  int ExpandPoints(int n);
  /// New triangles have null corners; nothing happens for the same count.
  int ExpandTriangles(int n);

  int Copy(const TriangleMesh* other);
  /// Appends other's points and triangles (other's indices shifted); no points are merged.
  int Concatenate(const TriangleMesh* other);

 protected:
  TriangleMesh() = default;
  ~TriangleMesh() override;

 private:
  TriangleMesh(const TriangleMesh&) = delete;
  TriangleMesh& operator=(const TriangleMesh&) = delete;

  int NumPoints = 0;
  int NumTriangles = 0;
  vec2<float>* Points = nullptr;
  Triangle* Triangles = nullptr;
};

}  // namespace vek
