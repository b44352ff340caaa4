#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <sstream>
#include <vector>

#include "vekMeshTestHelpers.h"
#include "vekTriangleEdgeStructure.h"

namespace vek {
namespace {

using P = vec2<float>;
using Ends = std::array<int, 2>;

Ends EdgeEnds(const TriangleEdgeStructure& edges, int e) {
  Ends ends;
  edges.GetEdge(e, ends[0], ends[1]);
  return ends;
}

std::vector<int> List(const VarArray<int>* list) {
  return list ? std::vector<int>(list->GetData(), list->GetData() + list->GetCount()) : std::vector<int>{};
}

TEST(TriangleEdgeStructure, SingleTriangleEdgeOrder) {
  auto edges = SmartPointer<TriangleEdgeStructure>::New();
  ASSERT_EQ(edges->Initialize(*test::MakeMesh({P(), P(), P()}, {{2, 0, 1}})), VEK_SUCCESS);
  ASSERT_EQ(edges->GetNumberOfEdges(), 3u);
  // (c0, c1), (c0, c2), (c1, c2), each stored smaller end first.
  EXPECT_EQ(EdgeEnds(*edges, 0), (Ends{0, 2}));
  EXPECT_EQ(EdgeEnds(*edges, 1), (Ends{1, 2}));
  EXPECT_EQ(EdgeEnds(*edges, 2), (Ends{0, 1}));
  for (int e = 0; e < 3; ++e) EXPECT_EQ(edges->GetNumOwner(e), 1);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(edges->GetTriangleNeighborWithoutPoint(0, k), -1);
}

TEST(TriangleEdgeStructure, SharedEdgeOwnersListsAndPrintout) {
  auto edges = SmartPointer<TriangleEdgeStructure>::New();
  // 3 - 2
  // | / |
  // 0 - 1
  ASSERT_EQ(edges->Initialize(*test::MakeMesh({P(0, 0), P(1, 0), P(1, 1), P(0, 1)}, {{0, 1, 2}, {0, 2, 3}})),
            VEK_SUCCESS);
  ASSERT_EQ(edges->GetNumberOfEdges(), 5u);
  int t1, t2;
  edges->GetTrianglesWithEdge(1, t1, t2);
  EXPECT_TRUE(t1 == 0 && t2 == 1);
  EXPECT_EQ(edges->GetNumOwner(1), 2);
  EXPECT_EQ(edges->GetNumOwner(3), 1);
  const int* e1 = edges->GetTriangleEdges(1);
  EXPECT_TRUE(e1[0] == 1 && e1[1] == 3 && e1[2] == 4);
  EXPECT_EQ(edges->GetTriangleNeighborWithoutPoint(0, 1), 1);   // corner 1 is point 1: edge (0, 2)
  EXPECT_EQ(edges->GetTriangleNeighborWithoutPoint(1, 2), 0);   // corner 2 is point 3: edge (0, 2)
  EXPECT_EQ(edges->GetTriangleNeighborWithoutPoint(1, 1), -1);  // edge (0, 3)
  EXPECT_EQ(List(edges->GetEdgesWithPoint(0)), (std::vector<int>{0, 1, 3}));
  EXPECT_EQ(List(edges->GetEdgesWithPoint(2)), (std::vector<int>{1, 2, 4}));
  EXPECT_EQ(edges->GetEdgesWithPoint(9), nullptr);
  EXPECT_EQ(edges->GetOtherEdgeEnd(1, 0), 2);
  EXPECT_EQ(edges->GetOtherEdgeEnd(1, 2), 0);
  EXPECT_TRUE(edges->DoesEdgeContainPoint(4, 3));
  EXPECT_FALSE(edges->DoesEdgeContainPoint(4, 0));
  EXPECT_EQ(edges->GetSmallerEdgeEnd(4), 2);
  EXPECT_EQ(edges->GetLargerEdgeEnd(4), 3);

  std::ostringstream os;
  edges->PrintAllEdge(os);
  EXPECT_EQ(os.str(),
            "Edges: \n"
            "Edge 0 with points: 0 1: Shared by triangles0 -1\n"
            "Edge 1 with points: 0 2: Shared by triangles0 1\n"
            "Edge 2 with points: 1 2: Shared by triangles0 -1\n"
            "Edge 3 with points: 0 3: Shared by triangles1 -1\n"
            "Edge 4 with points: 2 3: Shared by triangles1 -1\n"
            "There are 5 Edges\n"
            "Tri 0 owns edges 0 1 2\n"
            "Tri 1 owns edges 1 3 4\n");
  std::FILE* file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  edges->PrintEdge(file, 4);
  std::rewind(file);
  char text[16] = {};
  EXPECT_EQ(std::fread(text, 1, sizeof text - 1, file), 3u);
  EXPECT_STREQ(text, "2 3");
  std::fclose(file);
}

// Each neighbour is the one other triangle holding both edge ends (scan), and the edge count is the grid's.
TEST(TriangleEdgeStructure, GridNeighboursAgreeWithScan) {
  auto mesh = test::GridMesh(5, 4);
  auto edges = SmartPointer<TriangleEdgeStructure>::New();
  ASSERT_EQ(edges->Initialize(*mesh), VEK_SUCCESS);
  EXPECT_EQ(static_cast<int>(edges->GetNumberOfEdges()), mesh->GetNumEdges());
  int n = mesh->GetNumTriangles();
  std::vector<std::array<int, 3>> v(n);
  for (int t = 0; t < n; ++t) mesh->GetTriangleVerticesInArray(t, v[t].data());
  int shared = 0;
  for (int t = 0; t < n; ++t) {
    for (int k = 0; k < 3; ++k) {
      int a = v[t][(k + 1) % 3], b = v[t][(k + 2) % 3];
      int expected = -1;
      for (int u = 0; u < n; ++u) {
        if (u == t) continue;
        bool hasA = v[u][0] == a || v[u][1] == a || v[u][2] == a;
        bool hasB = v[u][0] == b || v[u][1] == b || v[u][2] == b;
        if (hasA && hasB) expected = u;
      }
      EXPECT_EQ(edges->GetTriangleNeighborWithoutPoint(t, k), expected) << t << " " << k;
      if (expected >= 0) ++shared;
    }
  }
  EXPECT_EQ(shared, 2 * (mesh->GetNumEdges() - 2 * (4 + 3)));  // every inner edge seen from both sides
}

TEST(TriangleEdgeStructure, TrianglesWithoutCornersGetNoEdges) {
  auto mesh = SmartPointer<TriangleMesh>::New();
  mesh->SetNumPoints(3);
  mesh->SetNumTriangles(2);
  mesh->Allocate();
  mesh->AddTriangle(1, 0, 1, 2);
  auto edges = SmartPointer<TriangleEdgeStructure>::New();
  ASSERT_EQ(edges->Initialize(*mesh), VEK_SUCCESS);
  EXPECT_EQ(edges->GetNumberOfEdges(), 3u);
  EXPECT_EQ(edges->GetTriangleEdges(0)[0], -1);
  EXPECT_EQ(edges->GetTriangleNeighborWithoutPoint(0, 0), -1);
  EXPECT_EQ(edges->GetTriangleEdges(1)[2], 2);
  auto empty = SmartPointer<TriangleMesh>::New();
  ASSERT_EQ(edges->Initialize(*empty), VEK_SUCCESS);
  EXPECT_EQ(edges->GetNumberOfEdges(), 0u);
}

}  // namespace
}  // namespace vek
