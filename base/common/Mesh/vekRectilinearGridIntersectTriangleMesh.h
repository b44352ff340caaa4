#pragma once
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekQuadCollection.h"
#include "vekRectilinearGrid.h"
#include "vekSmartPointer.h"
#include "vekTriangleMesh.h"

namespace vek {

/// A uniform grid laid over a triangle mesh in the same plane: for every grid point the triangle
/// that holds it and its barycentric weights there, and for every grid cell how much of it the
/// mesh covers. This resamples a measured mesh onto a regular grid: a warp grid in projector
/// pixels over a spot-grid mesh in projector pixels, whose weights then carry each grid point to
/// the camera.
///
/// Only triangles that TriangleMeshIntersectTriangleMesh::IsTriangleUsable accepts take part;
/// the others (a spot not found, a degenerate triangle) are holes in the mesh.
///
/// Points. A point is looked for first exactly (Triangle::TestInsidedness at tolerance 0, which
/// accepts the border), then, if no triangle holds it, with the barycentric tolerance
/// kTolerance, so that points on the mesh's outer border (the last spot row or column) are found
/// despite rounding. Among the triangles that accept a point in the same pass, the lowest id wins,
/// so a point on an edge or corner shared by several triangles always gets the same one. Weights
/// are floats, in the triangle's corner order 0, 1, 2, and sum to 1; a point found only in the
/// second pass has them clamped to [0, 1] and rescaled, which puts it on the triangle's border.
/// The second pass searches the locator cells next to the point's own, which reaches every
/// triangle that can accept the point unless a triangle spans thousands of cells.
/// A point with no triangle has kNoTriangle and weights (0, 0, 0).
///
/// Cells. A cell's covered area is the sum of the areas it shares with the triangles (decided
/// and measured as TriangleMeshIntersectTriangleMesh does, the cell split along its diagonal as
/// in RectilinearConnectivityTriangleMesh). A cell is:
/// - NotCovered when it shares no area with any triangle (touching along its border or at a
///   corner does not count);
/// - FullyCovered when its uncovered part is at most kTolerance of its area and all four of its
///   corner points have a triangle: a hole inside the cell or a notch of a concave outline that
///   cuts into it leaves the cell PartlyCovered even when all four corners are inside the mesh;
/// - PartlyCovered otherwise. These cells also go into GetPartlyCoveredCells, in cell order, as
///   quads of their four grid points labelled with their cell number j (Numx - 1) + i.
/// The mesh's triangles are taken not to overlap one another (it is a triangulation); where a
/// folded mesh does overlap itself, the doubled area can hide a hole.
///
/// Update returns VEK_INVALID_PARAMETERS (with a custom message, so compare without the 0x8000
/// flag) when the grid or mesh is not set, for a grid with fewer than 2 x 2 points, a spacing or
/// offset that is not finite, a spacing that is not positive, or more cells than an int can number
/// twice; VEK_FAILED_TO_ALLOCATE_MEMORY or VEK_TOO_MANY_ELEMENTS as the mesh intersection does.
/// On failure all results are empty.
class VEK_EXPORT RectilinearGridIntersectTriangleMesh : public Object {
 public:
  static constexpr int kNoTriangle = -1;
  /// Barycentric slack of the second point pass, and the uncovered fraction a fully covered cell
  /// may have.
  static constexpr float kTolerance = 1e-4f;
  enum CellCoverage { NotCovered = 0, PartlyCovered = 1, FullyCovered = 2 };

  static RectilinearGridIntersectTriangleMesh* New();
  const char* GetClassName() const override { return "RectilinearGridIntersectTriangleMesh"; }
  /// Object's lines, then "NumberOfThreads: ", "NumberOfFoundPoints: " and the cell counts
  /// "NotCoveredCells: ", "PartlyCoveredCells: ", "FullyCoveredCells: ".
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// Not owned; must outlive Update.
  void SetGrid(const RectilinearGrid* grid) { Grid = grid; }
  /// Not owned; must outlive Update.
  void SetMesh(const TriangleMesh* mesh) { Mesh = mesh; }
  /// Threads for Update; 0 (the default) leaves the choice to OpenMP (OMP_NUM_THREADS).
  void SetNumberOfThreads(int n) { NumberOfThreads = n < 0 ? 0 : n; }
  int GetNumberOfThreads() const { return NumberOfThreads; }

  int Update();

  /// By grid point number j Numx + i.
  int GetPointTriangle(int point) const { return PointTriangles[point]; }
  /// Three floats, the weights of the triangle's corners 0, 1, 2.
  const float* GetPointWeights(int point) const { return &PointWeights[3 * static_cast<size_t>(point)]; }
  int GetNumberOfFoundPoints() const { return FoundPoints; }

  /// By cell number j (Numx - 1) + i.
  CellCoverage GetCellCoverage(int cell) const { return static_cast<CellCoverage>(Coverage[cell]); }
  /// The area of the cell that the mesh covers.
  double GetCellCoveredArea(int cell) const { return CoveredAreas[cell]; }
  int GetNumberOfCells(CellCoverage coverage) const { return CoverageCounts[coverage]; }
  const QuadCollection* GetPartlyCoveredCells() const { return PartlyCoveredCells.GetPointer(); }

 protected:
  RectilinearGridIntersectTriangleMesh() = default;
  ~RectilinearGridIntersectTriangleMesh() override = default;

 private:
  RectilinearGridIntersectTriangleMesh(const RectilinearGridIntersectTriangleMesh&) = delete;
  RectilinearGridIntersectTriangleMesh& operator=(const RectilinearGridIntersectTriangleMesh&) = delete;

  void ClearResults();
  int Compute();
  int LocatePoints(const vec2<float>* points, int numPoints);
  int CoverCells(const TriangleMesh& gridMesh);

  const RectilinearGrid* Grid = nullptr;
  const TriangleMesh* Mesh = nullptr;
  int NumberOfThreads = 0;

  std::vector<int> PointTriangles;
  std::vector<float> PointWeights;
  int FoundPoints = 0;
  std::vector<unsigned char> Coverage;
  std::vector<double> CoveredAreas;
  int CoverageCounts[3] = {0, 0, 0};
  SmartPointer<QuadCollection> PartlyCoveredCells;
};

}  // namespace vek
