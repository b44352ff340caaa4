#pragma once
#include "vekCommonExport.h"
#include "vekTriangleMesh.h"

namespace vek {

class RectilinearGrid;
class NonUniformRectilinearGrid;

/// The standard triangulation of a Numx x Numy grid, numbered so that neighbours, owners and edges
/// follow by arithmetic. Cell (i, j) with region r = j (Numx - 1) + i and lower-left point
/// p = j Numx + i holds triangle 2r = (p, p + Numx + 1, p + 1) and 2r + 1 = (p + Numx + 1, p,
/// p + Numx); edge k of a triangle is opposite its corner k (0 vertical, 1 horizontal, 2 the
/// shared diagonal). Edges are numbered horizontals first (row by row), then verticals (edge e'
/// from point e' to e' + Numx), then diagonals.
///
/// Kept as callers know them: GetOppositeTriangle reports only the left and bottom boundaries
/// (an even triangle in the last column gets triangle + 3 across edge 0, an odd one in the top row
/// an index past the mesh across edge 1), and the diagonal branch of GetEdgePoints adds the
/// vertical count instead of subtracting it. Choice made here: with Numx < 2 there are no cells,
/// GetOppositeTriangle reports a boundary and GetEdgePoints gives -1 for both ends instead of
/// dividing by zero.
class VEK_EXPORT RectilinearConnectivityTriangleMesh : public TriangleMesh {
 public:
  static RectilinearConnectivityTriangleMesh* New();
  const char* GetClassName() const override { return "RectilinearConnectivityTriangleMesh"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  void SetNumx(int n) { Numx = n; }
  int GetNumx() const { return Numx; }
  void SetNumy(int n) { Numy = n; }
  int GetNumy() const { return Numy; }
  int GetPointNum(int i, int j) const { return Numx * j + i; }
  int GetNumEdges() const { return (3 * Numx - 2) * Numy - 2 * Numx + 1; }

  /// Points from the grid, then FillInTriangles; call once on a fresh mesh.
  int CreateTriangleMesh(const RectilinearGrid* grid);
  int CreateTriangleMesh(const NonUniformRectilinearGrid* grid);
  void FillInTriangles();

  /// 1 on a (left or bottom) boundary, else 0 with the neighbour in `opposite`.
  int GetOppositeTriangle(int edge, int triangle, int& opposite) const;
  /// Up to six triangles around the point, in cell order; `owners` needs room for 6.
  void GetPointOwners(int point, int& count, int owners[6]) const;
  void GetEdgePoints(int edge, int& a, int& b) const;

 protected:
  RectilinearConnectivityTriangleMesh() = default;
  ~RectilinearConnectivityTriangleMesh() override = default;

 private:
  RectilinearConnectivityTriangleMesh(const RectilinearConnectivityTriangleMesh&) = delete;
  RectilinearConnectivityTriangleMesh& operator=(const RectilinearConnectivityTriangleMesh&) = delete;
  int Prepare(int numx, int numy);

  int Numx = 0;
  int Numy = 0;
};

}  // namespace vek
