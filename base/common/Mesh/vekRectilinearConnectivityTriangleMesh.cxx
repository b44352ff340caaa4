#include "vekRectilinearConnectivityTriangleMesh.h"

#include <new>

#include "vekErrorCodes.h"
#include "vekNonUniformRectilinearGrid.h"
#include "vekRectilinearGrid.h"

namespace vek {

RectilinearConnectivityTriangleMesh* RectilinearConnectivityTriangleMesh::New() {
  return new (std::nothrow) RectilinearConnectivityTriangleMesh;
}

int RectilinearConnectivityTriangleMesh::Prepare(int numx, int numy) {
  if (numx < 0 || numy < 0) return VEK_INVALID_PARAMETERS;
  Numx = numx;
  Numy = numy;
  SetNumPoints(Numx * Numy);
  SetNumTriangles(Numy > 0 && Numx > 0 ? (2 * Numy - 2) * (Numx - 1) : 0);
  return Allocate();
}

int RectilinearConnectivityTriangleMesh::CreateTriangleMesh(const RectilinearGrid* grid) {
  int status = Prepare(grid->GetNumx(), grid->GetNumy());
  if (status != VEK_SUCCESS) return status;
  grid->FillInPoints(SetPoints());
  FillInTriangles();
  return VEK_SUCCESS;
}

int RectilinearConnectivityTriangleMesh::CreateTriangleMesh(const NonUniformRectilinearGrid* grid) {
  int status = Prepare(grid->GetNumx(), grid->GetNumy());
  if (status != VEK_SUCCESS) return status;
  grid->FillInPoints(SetPoints());
  FillInTriangles();
  return VEK_SUCCESS;
}

void RectilinearConnectivityTriangleMesh::FillInTriangles() {
  int t = 0;
  for (int j = 0; j < Numy - 1; ++j) {
    for (int i = 0; i < Numx - 1; ++i) {
      int p = j * Numx + i;
      AddTriangle(t++, p, p + Numx + 1, p + 1);
      AddTriangle(t++, p + Numx + 1, p, p + Numx);
    }
  }
}

int RectilinearConnectivityTriangleMesh::GetOppositeTriangle(int edge, int triangle, int& opposite) const {
  opposite = triangle;
  if (Numx < 2) return 1;
  int r = triangle / 2;
  int i = r % (Numx - 1);
  int j = r / (Numx - 1);
  bool even = triangle % 2 == 0;
  int s = even ? 1 : -1;
  switch (edge) {
    case 2:
      opposite = triangle + s;
      return 0;
    case 0:
      if ((i == Numx - 1 && even) || (i == 0 && !even)) return 1;
      opposite = triangle + 3 * s;
      return 0;
    case 1:
      if ((j == Numy - 1 && !even) || (j == 0 && even)) return 1;
      opposite = triangle + (3 - 2 * Numx) * s;
      return 0;
    default:
      return 0;
  }
}

void RectilinearConnectivityTriangleMesh::GetPointOwners(int point, int& count, int owners[6]) const {
  count = 0;
  if (Numx < 1) return;
  int i = point % Numx;
  int j = point / Numx;
  auto first = [this](int ci, int cj) { return 2 * (cj * (Numx - 1) + ci); };
  if (i > 0 && j > 0) {
    owners[count++] = first(i - 1, j - 1);
    owners[count++] = first(i - 1, j - 1) + 1;
  }
  if (i > 0 && j < Numy - 1) owners[count++] = first(i - 1, j);
  if (i < Numx - 1 && j > 0) owners[count++] = first(i, j - 1) + 1;
  if (i < Numx - 1 && j < Numy - 1) {
    owners[count++] = first(i, j);
    owners[count++] = first(i, j) + 1;
  }
}

void RectilinearConnectivityTriangleMesh::GetEdgePoints(int edge, int& a, int& b) const {
  if (Numx < 2) {
    a = b = -1;
    return;
  }
  int h = (Numx - 1) * Numy;
  int v = Numx * (Numy - 1);
  if (edge < h) {
    a = edge / (Numx - 1) + edge;
    b = a + 1;
  } else if (edge < h + v) {
    a = edge - h;
    b = a + Numx;
  } else {
    int d = edge - h + v;
    a = d / (Numx - 1) + d;
    b = a + Numx + 1;
  }
}

void RectilinearConnectivityTriangleMesh::PrintSelf(std::ostream& os, Indent indent) const {
  TriangleMesh::PrintSelf(os, indent);
  os << indent << "Numx" << Numx << "\n";
  os << indent << "Numy" << Numy << "\n";
}

}  // namespace vek
