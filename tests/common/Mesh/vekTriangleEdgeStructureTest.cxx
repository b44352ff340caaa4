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

std::vector<int> List(const VarArray<int>* list) {
  return list ? std::vector<int>(list->GetData(), list->GetData() + list->GetCount()) : std::vector<int>{};
}

TEST(TriangleEdgeStructure, EdgeOrderAndTrianglesWithoutCorners) {
  auto edges = SmartPointer<TriangleEdgeStructure>::New();
  ASSERT_EQ(edges->Initialize(*test::MakeMesh({P(), P(), P()}, {{2, 0, 1}})), VEK_SUCCESS);
  ASSERT_EQ(edges->GetNumberOfEdges(), 3u);
  // (c0, c1), (c0, c2), (c1, c2), each stored smaller end first.
  const Ends expected[] = {{0, 2}, {1, 2}, {0, 1}};
  for (int e = 0; e < 3; ++e) {
    Ends ends;
    edges->GetEdge(e, ends[0], ends[1]);
    EXPECT_EQ(ends, expected[e]);
    EXPECT_EQ(edges->GetNumOwner(e), 1);
    EXPECT_EQ(edges->GetTriangleNeighborWithoutPoint(0, e), -1);
  }

  auto mesh = SmartPointer<TriangleMesh>::New();  // triangle 0 never gets corners
  mesh->SetNumPoints(3);
  mesh->SetNumTriangles(2);
  ASSERT_EQ(mesh->Allocate(), VEK_SUCCESS);
  mesh->AddTriangle(1, 0, 1, 2);
  ASSERT_EQ(edges->Initialize(*mesh), VEK_SUCCESS);
  EXPECT_EQ(edges->GetNumberOfEdges(), 3u);
  EXPECT_EQ(edges->GetTriangleEdges(0)[0], -1);
  EXPECT_EQ(edges->GetTriangleNeighborWithoutPoint(0, 0), -1);
  EXPECT_EQ(edges->GetTriangleEdges(1)[2], 2);
  ASSERT_EQ(edges->Initialize(*SmartPointer<TriangleMesh>::New()), VEK_SUCCESS);
  EXPECT_EQ(edges->GetNumberOfEdges(), 0u);
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
  EXPECT_EQ(List(edges->GetEdgesWithPoint(0)), (std::vector<int>{0, 1, 3}));
  EXPECT_EQ(List(edges->GetEdgesWithPoint(2)), (std::vector<int>{1, 2, 4}));
  EXPECT_EQ(edges->GetEdgesWithPoint(9), nullptr);

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

}  // namespace
}  // namespace vek
