#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <sstream>
#include <vector>

#include "vekErrorCodes.h"
#include "vekRectilinearConnectivityTriangleMesh.h"
#include "vekRectilinearGrid.h"
#include "vekSmartPointer.h"
#include "vekTriangleEdgeStructure.h"

namespace vek {
namespace {

SmartPointer<TriangleMesh> Square() {
  // 3 - 2
  // | / |
  // 0 - 1
  auto mesh = SmartPointer<TriangleMesh>::New();
  mesh->SetNumPoints(4);
  mesh->SetNumTriangles(2);
  mesh->Allocate();
  mesh->AddPoint(0, 0, 0);
  mesh->AddPoint(1, 1, 0);
  mesh->AddPoint(2, 1, 1);
  mesh->AddPoint(3, 0, 1);
  mesh->AddTriangle(0, 0, 1, 2);
  mesh->AddTriangle(1, 0, 2, 3);
  return mesh;
}

std::vector<int> List(const VarArray<int>* list) {
  return list ? std::vector<int>(list->GetData(), list->GetData() + list->GetCount()) : std::vector<int>{};
}

TEST(TriangleEdgeStructure, SingleTriangleEdgeOrder) {
  auto mesh = SmartPointer<TriangleMesh>::New();
  mesh->SetNumPoints(3);
  mesh->SetNumTriangles(1);
  mesh->Allocate();
  mesh->AddTriangle(0, 2, 0, 1);
  auto edges = SmartPointer<TriangleEdgeStructure>::New();
  ASSERT_EQ(edges->Initialize(*mesh), VEK_SUCCESS);
  ASSERT_EQ(edges->GetNumberOfEdges(), 3u);
  int a, b;
  edges->GetEdge(0, a, b);  // (c0, c1) = (2, 0), stored smaller end first
  EXPECT_EQ(a, 0);
  EXPECT_EQ(b, 2);
  edges->GetEdge(1, a, b);  // (c0, c2) = (2, 1)
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, 2);
  edges->GetEdge(2, a, b);  // (c1, c2) = (0, 1)
  EXPECT_EQ(a, 0);
  EXPECT_EQ(b, 1);
  for (int e = 0; e < 3; ++e) EXPECT_EQ(edges->GetNumOwner(e), 1);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(edges->GetTriangleNeighborWithoutPoint(0, k), -1);
}

TEST(TriangleEdgeStructure, SharedEdgeOwnersListsAndPrintout) {
  auto edges = SmartPointer<TriangleEdgeStructure>::New();
  ASSERT_EQ(edges->Initialize(*Square()), VEK_SUCCESS);
  ASSERT_EQ(edges->GetNumberOfEdges(), 5u);
  int t1, t2;
  edges->GetTrianglesWithEdge(1, t1, t2);
  EXPECT_EQ(t1, 0);
  EXPECT_EQ(t2, 1);
  EXPECT_EQ(edges->GetNumOwner(1), 2);
  EXPECT_EQ(edges->GetNumOwner(3), 1);
  const int* e1 = edges->GetTriangleEdges(1);
  EXPECT_EQ(e1[0], 1);
  EXPECT_EQ(e1[1], 3);
  EXPECT_EQ(e1[2], 4);
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

// On a grid triangulation every neighbour must be the one other triangle holding both ends of
// the edge (found by scanning all triangles), and the count must match the grid's edge formula.
TEST(TriangleEdgeStructure, GridNeighboursAgreeWithScan) {
  auto grid = SmartPointer<RectilinearGrid>::New();
  grid->SetOffsetx(0);
  grid->SetOffsety(0);
  grid->SetSpacex(1);
  grid->SetSpacey(1);
  grid->SetNumx(5);
  grid->SetNumy(4);
  auto mesh = SmartPointer<RectilinearConnectivityTriangleMesh>::New();
  ASSERT_EQ(mesh->CreateTriangleMesh(grid.GetPointer()), VEK_SUCCESS);
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
