#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <sstream>
#include <vector>

#include "vekMeshTestHelpers.h"
#include "vekNonUniformRectilinearGrid.h"

namespace vek {
namespace {

using P = vec2<float>;
using test::MakeGrid;

TEST(RectilinearGrid, DefaultsAndPrint) {
  auto g = SmartPointer<RectilinearGrid>::New();
  std::ostringstream os;
  g->PrintSelf(os, Indent(0));
  EXPECT_EQ(os.str(),
            "Reference Count: 1\nx0      : -1\ny0      : -1\nSpaceX: -1\nSpaceY: -1\nNumx    : -1\nNumy    : -1\n");
  auto h = MakeGrid(10, 20, 2, 5, 4, 3);
  g->Copy(*h);
  os.str("");
  g->PrintSelf(os, Indent(0));
  EXPECT_EQ(os.str(),
            "Reference Count: 1\nx0      : 10\ny0      : 20\nSpaceX: 2\nSpaceY: 5\nNumx    : 4\nNumy    : 3\n");
}

TEST(RectilinearGrid, NumberingAndNearestIndex) {
  auto g = MakeGrid(10, 20, 2, 5, 4, 3);
  EXPECT_EQ(g->GetNumPoints(), 12);
  EXPECT_EQ(g->GetNumRectangularRegions(), 6);
  EXPECT_EQ(g->GetPointNum(2, 1), 6);
  EXPECT_EQ(g->GetLastPointx(), 16.0f);
  EXPECT_EQ(g->GetLastPointy(), 30.0f);
  EXPECT_EQ(g->GetPointI(15), 3);  // halfway between columns 2 and 3 rounds up
  EXPECT_EQ(g->GetPointI(14.9f), 2);
  EXPECT_EQ(g->GetPointI(8.9f), -1);  // not clamped
  EXPECT_EQ(g->GetPointJ(32.5f), 3);
  std::vector<P> points(12);
  g->FillInPoints(points.data());
  EXPECT_EQ(points[5], P(12, 25));
  EXPECT_EQ(points[11], P(16, 30));
}

// Offset 0.3f and step 0.1f: 0.300000011920928955078125 + 10 x 0.100000001490116119384765625 is
// 1.30000002682209014892578125 exactly in double, nearest float 0x1.4ccccep+0. Accumulating in
// float gives 0x1.4cccd0p+0, multiplying in float 0x1.4cccccp+0, so either shortcut shows.
constexpr float kTenthStepFromPointThree = 0x1.4ccccep+0f;

TEST(RectilinearGrid, FillInPointsAccumulatesInDouble) {
  auto g = MakeGrid(0.3f, 0.3f, 0.1f, 0.1f, 11, 11);
  std::vector<P> points(121);
  g->FillInPoints(points.data());
  EXPECT_EQ(points[10].x, kTenthStepFromPointThree);
  EXPECT_EQ(points[10].y, 0.3f);
  EXPECT_EQ(points[110].x, 0.3f);
  EXPECT_EQ(points[110].y, kTenthStepFromPointThree);
  EXPECT_EQ(points[120], P(kTenthStepFromPointThree, kTenthStepFromPointThree));
}

TEST(RectilinearGrid, RangeTestUsesYAgainstLastX) {
  auto g = MakeGrid(0, 0, 10, 1, 11, 11);  // last x 100, last y 10
  EXPECT_EQ(g->IsInRange(P(50, 5)), 1);
  EXPECT_EQ(g->IsInRange(P(500, 5)), 1);  // x is never compared against the last x
  EXPECT_EQ(g->IsInRange(P(50, 20)), 0);
  EXPECT_EQ(g->IsInRange(P(0, 5)), 0);
  auto h = MakeGrid(0, 0, 1, 10, 11, 11);  // last x 10, last y 100
  EXPECT_EQ(h->IsInRange(P(5, 50)), 0);    // 10 > 50 fails
}

TEST(RectilinearGrid, FindPointsInsideWithToleranceAndClamping) {
  auto g = MakeGrid(10, 20, 2, 5, 4, 3);
  int i0, j0, i1, j1;
  g->FindPointsInside(P(11, 21), P(15, 29), i0, j0, i1, j1, 0);
  EXPECT_EQ((std::array<int, 4>{i0, j0, i1, j1}), (std::array<int, 4>{1, 1, 2, 1}));
  g->FindPointsInside(P(11, 21), P(15, 29), i0, j0, i1, j1, 0.5f);
  EXPECT_EQ((std::array<int, 4>{i0, j0, i1, j1}), (std::array<int, 4>{0, 0, 3, 2}));
  g->FindPointsInside(P(11, 21), P(100, 100), i0, j0, i1, j1, 0);
  EXPECT_EQ((std::array<int, 4>{i0, j0, i1, j1}), (std::array<int, 4>{1, 1, 3, 2}));
  g->FindPointsInside(P(0, 21), P(5, 29), i0, j0, i1, j1, 0);  // entirely left of the grid
  EXPECT_EQ(i0, 0);
  EXPECT_EQ(i1, -3);
}

SmartPointer<NonUniformRectilinearGrid> MakeNonUniform(std::vector<float> xs, std::vector<float> ys) {
  auto g = SmartPointer<NonUniformRectilinearGrid>::New();
  for (int axis = 0; axis < 2; ++axis) {
    auto a = SmartPointer<DataArray<float>>::New();
    for (float v : axis ? ys : xs) a->InsertNextValue(v);
    axis ? g->SetYCoord(a.GetPointer()) : g->SetXCoord(a.GetPointer());
  }
  return g;
}

TEST(NonUniformRectilinearGrid, FindSectionAgainstLinearScan) {
  auto g = MakeNonUniform({0, 1, 3, 7, 8}, {0, 2, 4});
  EXPECT_EQ(g->FindSectionx(-0.1f), -1);
  EXPECT_EQ(g->FindSectionx(9), 4);
  EXPECT_EQ(g->FindSectionx(8), 3);  // the last coordinate itself belongs to the last section
  const float xs[] = {0, 1, 3, 7, 8};
  for (float v = 0; v < 8; v += 0.125f) {
    int expected = 0;
    while (xs[expected + 1] <= v) ++expected;
    EXPECT_EQ(g->FindSectionx(v), expected) << v;
  }
  auto two = MakeNonUniform({0, 10}, {5});
  EXPECT_EQ(two->FindSectionx(5), 0);
  EXPECT_EQ(two->FindSectiony(5), 0);
  EXPECT_EQ(two->FindSectiony(6), 0);
  EXPECT_EQ(two->FindSectiony(4), -1);
  auto none = SmartPointer<NonUniformRectilinearGrid>::New();
  EXPECT_EQ(none->FindSectionx(1), -1);
  EXPECT_EQ(none->IsInRange(P(1, 1)), 0);
}

TEST(NonUniformRectilinearGrid, RegionsRangesAndSharing) {
  auto g = MakeNonUniform({0, 1, 3, 7, 8}, {0, 2, 4});
  EXPECT_EQ(g->GetNumPoints(), 15);
  EXPECT_EQ(g->GetNumRectangularRegions(), 8);
  EXPECT_EQ(g->GetRegionId(2, 1), 6);
  int i, j;
  g->RegionIdToIJRegion(6, i, j);
  EXPECT_TRUE(i == 2 && j == 1);
  OrderedQuadrilateral q = g->GetRegion(1, 0);
  EXPECT_TRUE(q.GetPoint(0) == P(1, 0) && q.GetPoint(1) == P(3, 0) && q.GetPoint(2) == P(1, 2) &&
              q.GetPoint(3) == P(3, 2));
  EXPECT_TRUE(g->GetRegionRectangle(1, 0) == Rectangle(1, 0, 3, 2));

  int i0, j0, i1, j1;
  g->FindPointsInside(P(0.5f, 1), P(7.5f, 10), i0, j0, i1, j1, 0);
  EXPECT_EQ((std::array<int, 4>{i0, j0, i1, j1}), (std::array<int, 4>{1, 1, 3, 2}));
  // Tolerance in coordinate units; a column exactly at min - tolerance is left out (x = 1 here),
  // one exactly at max + tolerance is kept (x = 7).
  g->FindPointsInside(P(1.5f, 1), P(6.5f, 3), i0, j0, i1, j1, 0.5f);
  EXPECT_EQ((std::array<int, 4>{i0, j0, i1, j1}), (std::array<int, 4>{2, 1, 3, 1}));

  EXPECT_EQ(g->IsInRange(P(5, 3)), 1);
  EXPECT_EQ(g->IsInRange(P(100, 3)), 1);  // the last x is compared against y
  EXPECT_EQ(g->IsInRange(P(5, 5)), 0);

  std::vector<P> points(15);
  g->FillInPoints(points.data());
  EXPECT_EQ(points[7], P(3, 2));
  EXPECT_EQ(points[14], P(8, 4));

  // Coordinates accumulate in double (the same worked value as for the uniform grid).
  ASSERT_EQ(g->CreateXCoord(11, 0.3f, 0.1f), 0);
  EXPECT_EQ(g->GetNumx(), 11);
  EXPECT_EQ(g->GetPointx(0), 0.3f);
  EXPECT_EQ(g->GetLastPointx(), kTenthStepFromPointThree);
  ASSERT_EQ(g->CreateXCoord(5, 0, 1), 0);  // back to the five columns printed below

  auto shared = SmartPointer<DataArray<float>>::New();
  shared->InsertNextValue(1);
  g->SetYCoord(shared.GetPointer());
  EXPECT_EQ(shared->GetReferenceCount(), 2);
  ASSERT_EQ(g->CreateYCoord(4, 1, 0.5f), 0);
  EXPECT_EQ(shared->GetReferenceCount(), 1);
  EXPECT_EQ(g->GetNumy(), 4);
  EXPECT_EQ(g->GetLastPointy(), 2.5f);
  g->SetYCoord(nullptr);
  std::ostringstream os;
  g->PrintSelf(os, Indent(0));
  EXPECT_EQ(os.str(),
            "Reference Count: 1\nXCoord: Not Null\n  Reference Count: 1\n  NumberOfValues: 5\nYCoord: NULL\n");
}

using Tri = std::array<int, 3>;

std::vector<Tri> TrianglesOf(const TriangleMesh& mesh) {
  std::vector<Tri> out(mesh.GetNumTriangles());
  for (int t = 0; t < mesh.GetNumTriangles(); ++t) mesh.GetTriangleVerticesInArray(t, out[t].data());
  return out;
}

TEST(RectilinearConnectivityTriangleMesh, TriangulationAndEdgesOfThreeByTwo) {
  auto mesh = test::GridMesh(3, 2);
  EXPECT_EQ(mesh->GetNumPoints(), 6);
  EXPECT_EQ(TrianglesOf(*mesh), (std::vector<Tri>{{0, 4, 1}, {4, 0, 3}, {1, 5, 2}, {5, 1, 4}}));
  EXPECT_EQ(mesh->GetPoint(4), P(1, 1));
  EXPECT_EQ(mesh->GetNumEdges(), 9);
  std::vector<std::array<int, 2>> ends;
  for (int e = 0; e < 9; ++e) {
    int a, b;
    mesh->GetEdgePoints(e, a, b);
    ends.push_back({a, b});
  }
  // Horizontals, verticals, then the diagonals as the shipped formula gives them.
  EXPECT_EQ(ends, (std::vector<std::array<int, 2>>{
                      {0, 1}, {1, 2}, {3, 4}, {4, 5}, {0, 3}, {1, 4}, {2, 5}, {9, 13}, {10, 14}}));
  std::ostringstream os;
  mesh->PrintSelf(os, Indent(0));
  EXPECT_EQ(os.str(),
            "Reference Count: 1\n NumTriangles: 4\n NumPoints: 6\nPoints:  Not Null\nTriangles:  Not Null\n"
            "Numx3\nNumy2\n");

  auto fromNonUniform = SmartPointer<RectilinearConnectivityTriangleMesh>::New();
  ASSERT_EQ(fromNonUniform->CreateTriangleMesh(MakeNonUniform({0, 1, 3}, {0, 2}).GetPointer()), 0);
  EXPECT_EQ(TrianglesOf(*fromNonUniform), TrianglesOf(*mesh));
  EXPECT_EQ(fromNonUniform->GetPoint(5), P(3, 2));
}

TEST(RectilinearConnectivityTriangleMesh, OppositeTrianglesOfThreeByThree) {
  auto mesh = test::GridMesh(3, 3);
  struct Case {
    int edge, triangle, boundary, opposite;
  };
  const Case cases[] = {
      {1, 0, 1, 0}, {2, 0, 0, 1}, {2, 1, 0, 0}, {0, 1, 1, 1}, {0, 0, 0, 3},
      {0, 3, 0, 0}, {1, 1, 0, 4}, {1, 4, 0, 1}, {0, 2, 0, 5},  // even triangle in the last column: not reported
      {1, 5, 0, 8},                                            // odd triangle in the top row: past the mesh
      {7, 3, 0, 3},
  };
  for (const Case& c : cases) {
    int opposite = -99;
    EXPECT_EQ(mesh->GetOppositeTriangle(c.edge, c.triangle, opposite), c.boundary) << c.edge << " " << c.triangle;
    EXPECT_EQ(opposite, c.opposite) << c.edge << " " << c.triangle;
  }
}

// Neighbours across inner edges share both edge ends (scan of corners), on a grid that is not square.
TEST(RectilinearConnectivityTriangleMesh, NeighboursAndOwnersAgreeWithCornerScan) {
  const int nx = 5, ny = 4;
  auto mesh = test::GridMesh(nx, ny);
  std::vector<Tri> tris = TrianglesOf(*mesh);
  ASSERT_EQ(tris.size(), 24u);
  for (int t = 0; t < 24; ++t) {
    for (int k = 0; k < 3; ++k) {
      int opposite;
      if (mesh->GetOppositeTriangle(k, t, opposite)) continue;
      if (opposite < 0 || opposite >= 24) continue;  // the top-row quirk
      int a = tris[t][(k + 1) % 3], b = tris[t][(k + 2) % 3];
      bool shares = std::count(tris[opposite].begin(), tris[opposite].end(), a) &&
                    std::count(tris[opposite].begin(), tris[opposite].end(), b);
      int r = t / 2;
      bool lastColumnQuirk = k == 0 && t % 2 == 0 && r % (nx - 1) == nx - 2;
      if (!lastColumnQuirk) {
        EXPECT_TRUE(shares) << t << " " << k;
        EXPECT_NE(opposite, t);
      }
    }
  }
  int owners[6], count;
  for (int p = 0; p < nx * ny; ++p) {
    mesh->GetPointOwners(p, count, owners);
    std::set<int> expected;
    for (int t = 0; t < 24; ++t)
      if (std::count(tris[t].begin(), tris[t].end(), p)) expected.insert(t);
    EXPECT_EQ(std::set<int>(owners, owners + count), expected) << p;
    EXPECT_EQ(static_cast<size_t>(count), expected.size());
  }
  // The order within the list, worked out for the centre of a 3 x 3 grid.
  auto small = test::GridMesh(3, 3);
  small->GetPointOwners(4, count, owners);
  EXPECT_EQ(std::vector<int>(owners, owners + count), (std::vector<int>{0, 1, 4, 3, 6, 7}));
  small->GetPointOwners(0, count, owners);
  EXPECT_EQ(std::vector<int>(owners, owners + count), (std::vector<int>{0, 1}));
  small->GetPointOwners(8, count, owners);
  EXPECT_EQ(std::vector<int>(owners, owners + count), (std::vector<int>{6, 7}));
}

}  // namespace
}  // namespace vek
