#include "vekTriangleEdgeStructure.h"

#include <new>

#include "vekErrorCodes.h"
#include "vekTriangleMesh.h"

namespace vek {

TriangleEdgeStructure* TriangleEdgeStructure::New() { return new (std::nothrow) TriangleEdgeStructure; }

TriangleEdgeStructure::~TriangleEdgeStructure() {
  FreePointLists();
  delete[] TriangleEdges;
}

void TriangleEdgeStructure::FreePointLists() {
  for (unsigned int p = 0; p < EdgesWithPoint.GetCount(); ++p) delete EdgesWithPoint[p];
  EdgesWithPoint.Clear();
}

int TriangleEdgeStructure::Initialize(const TriangleMesh& mesh) {
  int status = PrepToInsert(mesh.GetNumPoints(), mesh.GetNumTriangles());
  if (status != VEK_SUCCESS) return status;
  const vec2<float>* points = mesh.GetPoints();
  for (int t = 0; t < NumTriangles; ++t) {
    const Triangle& triangle = mesh.GetTriangle(t);
    if (!triangle.IsInitialized()) continue;
    int v[3];
    bool inside = true;
    for (int k = 0; k < 3; ++k) {
      const vec2<float>* corner = triangle.GetCorner(k);
      inside = inside && corner >= points && corner < points + mesh.GetNumPoints();
    }
    if (!inside) continue;
    triangle.GetVertexNumInArray(points, v);
    status = InsertTriangleEdges(t, v);
    if (status != VEK_SUCCESS) return status;
  }
  ConserveMemory();
  return VEK_SUCCESS;
}

int TriangleEdgeStructure::PrepToInsert(int numPoints, int numTriangles) {
  if (numPoints < 0 || numTriangles < 0) return VEK_INVALID_PARAMETERS;
  FreePointLists();
  Edges.Clear();
  EdgeOwners.Clear();
  NumEdges = 0;
  delete[] TriangleEdges;
  TriangleEdges = nullptr;
  NumTriangles = 0;
  size_t n = 3 * static_cast<size_t>(numTriangles);
  if (n) {
    TriangleEdges = new (std::nothrow) int[n];
    if (!TriangleEdges) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    for (size_t k = 0; k < n; ++k) TriangleEdges[k] = -1;
  }
  NumTriangles = numTriangles;
  unsigned int points = static_cast<unsigned int>(numPoints);
  if (!EdgesWithPoint.Resize(points) || !Edges.Reserve(points) || !EdgeOwners.Reserve(points))
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  return VEK_SUCCESS;
}

int TriangleEdgeStructure::InsertTriangleEdges(int t, const int v[3]) {
  static constexpr int kPairs[3][2] = {{0, 1}, {0, 2}, {1, 2}};
  for (int k = 0; k < 3; ++k) {
    unsigned int before = NumEdges;
    int id = AddEdge(v[kPairs[k][0]], v[kPairs[k][1]]);
    if (id < 0) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    TriangleEdges[3 * static_cast<size_t>(t) + k] = id;
    if (static_cast<unsigned int>(id) < before) {
      EdgeOwners[id].Second = t;
    } else if (!EdgeOwners.Append(Owners{t, kNoTriangle})) {
      return VEK_FAILED_TO_ALLOCATE_MEMORY;
    }
  }
  return VEK_SUCCESS;
}

int TriangleEdgeStructure::AddEdge(int a, int b) {
  int lo = a < b ? a : b;
  int hi = a < b ? b : a;
  if (lo < 0) return -1;
  unsigned int needed = static_cast<unsigned int>(hi) + 1;
  if (EdgesWithPoint.GetCount() < needed && !EdgesWithPoint.Resize(needed)) return -1;
  if (const VarArray<int>* list = EdgesWithPoint[hi]) {
    for (unsigned int k = 0; k < list->GetCount(); ++k) {
      int e = (*list)[k];
      if (Edges[e].Smaller == lo) return e;
    }
  }
  int id = static_cast<int>(NumEdges);
  for (int end : {lo, hi}) {
    VarArray<int>*& list = EdgesWithPoint[end];
    if (!list) list = new (std::nothrow) VarArray<int>(kPointListRoom);
    if (!list || !list->Append(id)) return -1;
  }
  if (!Edges.Append(EdgeEnds{lo, hi})) return -1;
  ++NumEdges;
  return id;
}

int TriangleEdgeStructure::NewEdge(int a, int b) {
  if (!Edges.Append(EdgeEnds{a, b})) return -1;
  return static_cast<int>(NumEdges++);
}

void TriangleEdgeStructure::ConserveMemory() {
  for (unsigned int p = 0; p < EdgesWithPoint.GetCount(); ++p)
    if (EdgesWithPoint[p]) EdgesWithPoint[p]->Squeeze();
  EdgesWithPoint.Squeeze();
  Edges.Squeeze();
  EdgeOwners.Squeeze();
}

int TriangleEdgeStructure::GetTriangleNeighborWithoutPoint(int t, int k) const {
  int e = GetTriangleEdges(t)[2 - k];
  if (e < 0) return kNoTriangle;
  const Owners& owners = EdgeOwners[e];
  return owners.First == t ? owners.Second : owners.First;
}

void TriangleEdgeStructure::PrintEdge(FILE* file, int e) const {
  std::fprintf(file, "%d %d", Edges[e].Smaller, Edges[e].Larger);
}

void TriangleEdgeStructure::PrintAllEdge(std::ostream& os) const {
  os << "Edges: \n";
  for (unsigned int e = 0; e < NumEdges; ++e) {
    const Owners owners = e < EdgeOwners.GetCount() ? EdgeOwners[e] : Owners{kNoTriangle, kNoTriangle};
    os << "Edge " << e << " with points: " << Edges[e].Smaller << " " << Edges[e].Larger << ": Shared by triangles"
       << owners.First << " " << owners.Second << "\n";
  }
  os << "There are " << NumEdges << " Edges\n";
  for (int t = 0; t < NumTriangles; ++t) {
    const int* e = GetTriangleEdges(t);
    os << "Tri " << t << " owns edges " << e[0] << " " << e[1] << " " << e[2] << "\n";
  }
}

void TriangleEdgeStructure::PrintSelf(std::ostream& os, Indent indent) const { Object::PrintSelf(os, indent); }

}  // namespace vek
