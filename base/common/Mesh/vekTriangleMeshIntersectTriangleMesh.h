#pragma once
#include <utility>
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekSmartPointer.h"
#include "vekTriangle.h"
#include "vekTriangleCollection.h"
#include "vekTriangleLocator2D.h"
#include "vekTriangleMesh.h"

namespace vek {

/// Where two triangle meshes in one plane overlap: every pair (triangle of the first mesh,
/// triangle of the second) whose interiors overlap, the area of each such overlap, the area each
/// triangle shares with the other mesh, and on request the overlap region itself.
///
/// Which pairs overlap is decided exactly from the float corners (orientation tests that fall
/// back to exact arithmetic when double rounding could decide wrongly), so a pair that only
/// touches along an edge or at a corner is never reported, however the touching points round.
/// The areas are computed in double by clipping one triangle against the other; for a reported
/// pair that is so thin that double clipping loses it, the area is 0.
///
/// Triangles that take part are those IsTriangleUsable accepts (corners set, none unset
/// (-5, -5), all finite, non-zero area); the others have no overlap and an area of 0. Either
/// orientation is accepted. The meshes' triangles are not required to be disjoint among
/// themselves: each pair is measured on its own.
///
/// The work is spread over OpenMP threads by first-mesh triangle; every result (pairs, areas,
/// region) is identical, bit for bit and in order, at any thread count.
///
/// Update returns VEK_INVALID_PARAMETERS when a mesh is not set and VEK_FAILED_TO_ALLOCATE_MEMORY
/// when memory runs out (both with a custom message, so compare without the 0x8000 flag), and
/// VEK_TOO_MANY_ELEMENTS when more than 65534 triangles of the second mesh crowd into one cell of
/// its locator (the locator's bucket limit); on failure all results are empty.
class VEK_EXPORT TriangleMeshIntersectTriangleMesh : public Object {
 public:
  static TriangleMeshIntersectTriangleMesh* New();
  const char* GetClassName() const override { return "TriangleMeshIntersectTriangleMesh"; }
  /// Object's lines, then "BuildOverlapRegion: ", "NumberOfThreads: ",
  /// "NumberOfOverlappingPairs: " and "TotalOverlapArea: " with their values.
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// The meshes are not owned and must outlive Update.
  void SetFirstMesh(const TriangleMesh* mesh) { FirstMesh = mesh; }
  void SetSecondMesh(const TriangleMesh* mesh) { SecondMesh = mesh; }
  /// Off by default: Update then computes pairs and areas only.
  void SetBuildOverlapRegion(bool on) { BuildOverlapRegion = on; }
  bool GetBuildOverlapRegion() const { return BuildOverlapRegion; }
  /// Threads for Update; 0 (the default) leaves the choice to OpenMP (OMP_NUM_THREADS).
  void SetNumberOfThreads(int n) { NumberOfThreads = n < 0 ? 0 : n; }
  int GetNumberOfThreads() const { return NumberOfThreads; }

  int Update();

  int GetNumberOfOverlappingPairs() const { return static_cast<int>(Pairs.size()); }
  /// Sum of the pair areas, in pair order.
  double GetTotalOverlapArea() const { return TotalOverlapArea; }
  /// Per triangle id of the first mesh: the sum of its pairs' areas.
  const std::vector<double>& GetFirstOverlapAreas() const { return FirstOverlapAreas; }
  /// Per triangle id of the second mesh: the sum of its pairs' areas, added in pair order.
  const std::vector<double>& GetSecondOverlapAreas() const { return SecondOverlapAreas; }
  /// (first id, second id), ordered by first id, then second id.
  const std::vector<std::pair<int, int>>& GetOverlappingPairs() const { return Pairs; }
  /// The area of each pair, beside GetOverlappingPairs.
  const std::vector<double>& GetPairOverlapAreas() const { return PairAreas; }
  /// Each pair's overlap polygon fanned into triangles from its first corner (pieces of zero
  /// area left out), in pair order, labelled (first id, second id) and oriented so that
  /// Triangle::SignedArea is positive. Empty unless SetBuildOverlapRegion(true) was in force
  /// at the last Update.
  const TriangleCollection* GetOverlapRegion() const { return OverlapRegion.GetPointer(); }

  /// Whether a triangle takes part in the intersections of this floor: all three corners set
  /// and finite, none unset (-5, -5), and a non-zero area (decided exactly).
  static bool IsTriangleUsable(const Triangle& triangle);
  /// Buckets the usable triangles of `mesh` in `locator`, about two to a cell, and puts in `ids`
  /// the mesh id of each locator id (locator ids follow mesh ids in order). With no usable
  /// triangle `ids` is empty and the locator must not be asked. Returns the locator's status,
  /// or VEK_FAILED_TO_ALLOCATE_MEMORY.
  static int InitializeLocator(const TriangleMesh& mesh, TriangleLocator2D& locator, std::vector<int>& ids);

 protected:
  TriangleMeshIntersectTriangleMesh() = default;
  ~TriangleMeshIntersectTriangleMesh() override = default;

 private:
  TriangleMeshIntersectTriangleMesh(const TriangleMeshIntersectTriangleMesh&) = delete;
  TriangleMeshIntersectTriangleMesh& operator=(const TriangleMeshIntersectTriangleMesh&) = delete;

  void ClearResults();
  int Compute();

  const TriangleMesh* FirstMesh = nullptr;
  const TriangleMesh* SecondMesh = nullptr;
  bool BuildOverlapRegion = false;
  int NumberOfThreads = 0;

  std::vector<std::pair<int, int>> Pairs;
  std::vector<double> PairAreas;
  std::vector<double> FirstOverlapAreas;
  std::vector<double> SecondOverlapAreas;
  double TotalOverlapArea = 0;
  SmartPointer<TriangleCollection> OverlapRegion;
};

}  // namespace vek
