#pragma once
#include <cstdio>
#include <ostream>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekVarArray.h"

namespace vek {

class TriangleMesh;

/// Gives every distinct edge of a triangle mesh an id (in order of first appearance) and records
/// the one or two triangles that share it, so neighbours across an edge are found in constant
/// time. Within a triangle with corners (c0, c1, c2), edge 0 is (c0, c1), edge 1 (c0, c2) and
/// edge 2 (c1, c2); the edge without corner k is edge 2 - k. Edges store (smaller end, larger
/// end); a second owner of -1 marks a boundary edge.
///
/// Choices made here: the three edge ids of triangle t are kept at 3t in one block, and
/// GetTriangleEdges points into it; Initialize leaves the edge ids of a triangle without all three
/// corners, or with a corner outside the mesh's point array, at -1 (no edges are made for it);
/// operations that allocate return VEK_FAILED_TO_ALLOCATE_MEMORY (AddEdge: -1) when they cannot.
class VEK_EXPORT TriangleEdgeStructure : public Object {
 public:
  static constexpr int kNoTriangle = -1;

  static TriangleEdgeStructure* New();
  const char* GetClassName() const override { return "TriangleEdgeStructure"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  int Initialize(const TriangleMesh& mesh);
  int PrepToInsert(int numPoints, int numTriangles);
  /// v holds the triangle's three vertex indices in corner order.
  int InsertTriangleEdges(int t, const int v[3]);
  void ConserveMemory();

  unsigned int GetNumberOfEdges() const { return NumEdges; }
  const int* GetTriangleEdges(int t) const { return TriangleEdges + 3 * static_cast<size_t>(t); }
  /// Null when the point has no edge.
  const VarArray<int>* GetEdgesWithPoint(int p) const {
    return p >= 0 && static_cast<unsigned int>(p) < EdgesWithPoint.GetCount() ? EdgesWithPoint[p] : nullptr;
  }
  void GetTrianglesWithEdge(int e, int& t1, int& t2) const {
    t1 = EdgeOwners[e].First;
    t2 = EdgeOwners[e].Second;
  }
  void GetEdge(int e, int& a, int& b) const {
    a = Edges[e].Smaller;
    b = Edges[e].Larger;
  }
  int GetSmallerEdgeEnd(int e) const { return Edges[e].Smaller; }
  int GetLargerEdgeEnd(int e) const { return Edges[e].Larger; }
  int GetOtherEdgeEnd(int e, int p) const { return Edges[e].Smaller == p ? Edges[e].Larger : Edges[e].Smaller; }
  bool DoesEdgeContainPoint(int e, int p) const { return Edges[e].Smaller == p || Edges[e].Larger == p; }
  int GetNumOwner(int e) const { return EdgeOwners[e].Second < 0 ? 1 : 2; }
  /// The triangle across the edge of t that does not contain t's corner k; -1 on the boundary.
  int GetTriangleNeighborWithoutPoint(int t, int k) const;

  /// "lo hi", no line end.
  void PrintEdge(FILE* file, int e) const;
  void PrintAllEdge(std::ostream& os) const;

 protected:
  TriangleEdgeStructure() = default;
  ~TriangleEdgeStructure() override;

  int AddEdge(int a, int b);
  int NewEdge(int a, int b);

 private:
  TriangleEdgeStructure(const TriangleEdgeStructure&) = delete;
  TriangleEdgeStructure& operator=(const TriangleEdgeStructure&) = delete;

  struct EdgeEnds {
    int Smaller, Larger;
  };
  struct Owners {
    int First, Second;
  };
  static constexpr unsigned int kPointListRoom = 6;
  void FreePointLists();

  VarArray<VarArray<int>*> EdgesWithPoint;
  VarArray<EdgeEnds> Edges;
  VarArray<Owners> EdgeOwners;
  int* TriangleEdges = nullptr;
  int NumTriangles = 0;
  unsigned int NumEdges = 0;
};

}  // namespace vek
