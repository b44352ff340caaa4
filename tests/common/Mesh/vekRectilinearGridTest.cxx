#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <vector>

#include "vekMeshTestHelpers.h"
#include "vekNonUniformRectilinearGrid.h"
#include "vekTriangleEdgeStructure.h"

namespace vek {
namespace {

using P = vec2<float>;
using Box = std::array<int, 4>;
using Tri = std::array<int, 3>;
using test::MakeGrid;
using test::TrianglesOf;

template <class Grid>
Box Inside(const Grid& g, P min, P max, float tolerance) {
  Box b;
  g.FindPointsInside(min, max, b[0], b[1], b[2], b[3], tolerance);
  return b;
}

TEST(RectilinearGrid, PrintNumberingNearestIndexAndPointsInside) {
  auto g = SmartPointer<RectilinearGrid>::New();
  EXPECT_EQ(test::Printed(*g),
            "Reference Count: 1\nx0      : -1\ny0      : -1\nSpaceX: -1\nSpaceY: -1\nNumx    : -1\nNumy    : -1\n");
  g->Copy(*MakeGrid(10, 20, 2, 5, 4, 3));
  EXPECT_EQ(test::Printed(*g),
            "Reference Count: 1\nx0      : 10\ny0      : 20\nSpaceX: 2\nSpaceY: 5\nNumx    : 4\nNumy    : 3\n");
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

  EXPECT_EQ(Inside(*g, P(11, 21), P(15, 29), 0), (Box{1, 1, 2, 1}));
  EXPECT_EQ(Inside(*g, P(11, 21), P(15, 29), 0.5f), (Box{0, 0, 3, 2}));
  EXPECT_EQ(Inside(*g, P(11, 21), P(100, 100), 0), (Box{1, 1, 3, 2}));  // clamped
  EXPECT_EQ(Inside(*g, P(0, 21), P(5, 29), 0), (Box{0, 1, -3, 1}));     // entirely left of the grid
}

// Offset 0.3f and step 0.1f: 0.300000011920928955078125 + 10 x 0.100000001490116119384765625 is
// 1.30000002682209014892578125 exactly in double, nearest float 0x1.4ccccep+0. Accumulating in
// float gives 0x1.4cccd0p+0, multiplying in float 0x1.4cccccp+0, so either shortcut shows.
constexpr float kTenthStepFromPointThree = 0x1.4ccccep+0f;

TEST(RectilinearGrid, FillInPointsAccumulatesInDoubleAndRangeTestUsesYAgainstLastX) {
  std::vector<P> points(121);
  MakeGrid(0.3f, 0.3f, 0.1f, 0.1f, 11, 11)->FillInPoints(points.data());
  EXPECT_EQ(points[10], P(kTenthStepFromPointThree, 0.3f));
  EXPECT_EQ(points[110], P(0.3f, kTenthStepFromPointThree));
  EXPECT_EQ(points[120], P(kTenthStepFromPointThree, kTenthStepFromPointThree));

  auto g = MakeGrid(0, 0, 10, 1, 11, 11);  // last x 100, last y 10
  EXPECT_EQ(g->IsInRange(P(50, 5)), 1);
  EXPECT_EQ(g->IsInRange(P(500, 5)), 1);  // x is never compared against the last x
  EXPECT_EQ(g->IsInRange(P(50, 20)), 0);
  EXPECT_EQ(g->IsInRange(P(0, 5)), 0);
  EXPECT_EQ(MakeGrid(0, 0, 1, 10, 11, 11)->IsInRange(P(5, 50)), 0);  // last x 10 > 50 fails
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

TEST(NonUniformRectilinearGrid, SectionsRegionsRangesAndSharing) {
  const std::vector<float> xs = {0, 1, 3, 7, 8};
  auto g = MakeNonUniform(xs, {0, 2, 4});
  EXPECT_EQ(g->FindSectionx(-0.1f), -1);
  EXPECT_EQ(g->FindSectionx(9), 4);
  EXPECT_EQ(g->FindSectionx(8), 3);  // the last coordinate itself belongs to the last section
  for (float v = 0; v < 8; v += 0.125f) {
    int expected = 0;
    while (xs[expected + 1] <= v) ++expected;
    EXPECT_EQ(g->FindSectionx(v), expected) << v;
  }
  auto two = MakeNonUniform({0, 10}, {5});  // one section in x, a single row in y
  EXPECT_EQ((Box{two->FindSectionx(5), two->FindSectiony(5), two->FindSectiony(6), two->FindSectiony(4)}),
            (Box{0, 0, 0, -1}));
  auto none = SmartPointer<NonUniformRectilinearGrid>::New();
  EXPECT_TRUE(none->FindSectionx(1) == -1 && none->IsInRange(P(1, 1)) == 0);

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
  EXPECT_EQ(Inside(*g, P(0.5f, 1), P(7.5f, 10), 0), (Box{1, 1, 3, 2}));
  // Tolerance in coordinate units; a column exactly at min - tolerance is left out (x = 1 here),
  // one exactly at max + tolerance is kept (x = 7).
  EXPECT_EQ(Inside(*g, P(1.5f, 1), P(6.5f, 3), 0.5f), (Box{2, 1, 3, 1}));
  EXPECT_EQ(g->IsInRange(P(5, 3)), 1);
  EXPECT_EQ(g->IsInRange(P(100, 3)), 1);  // the last x is compared against y
  EXPECT_EQ(g->IsInRange(P(5, 5)), 0);
  std::vector<P> points(15);
  g->FillInPoints(points.data());
  EXPECT_EQ(points[7], P(3, 2));
  EXPECT_EQ(points[14], P(8, 4));

  // Coordinates accumulate in double (the same worked value as for the uniform grid).
  ASSERT_EQ(g->CreateXCoord(11, 0.3f, 0.1f), 0);
  EXPECT_EQ(g->GetPointx(0), 0.3f);
  EXPECT_EQ(g->GetLastPointx(), kTenthStepFromPointThree);

  auto shared = SmartPointer<DataArray<float>>::New();
  g->SetYCoord(shared.GetPointer());
  EXPECT_EQ(shared->GetReferenceCount(), 2);
  ASSERT_EQ(g->CreateYCoord(4, 1, 0.5f), 0);
  EXPECT_EQ(shared->GetReferenceCount(), 1);
  EXPECT_EQ(g->GetLastPointy(), 2.5f);  // four rows
  g->SetYCoord(nullptr);
  EXPECT_EQ(test::Printed(*g),
            "Reference Count: 1\nXCoord: Not Null\n  Reference Count: 1\n  NumberOfValues: 11\nYCoord: NULL\n");
}

TEST(RectilinearConnectivityTriangleMesh, TriangulationAndEdgesOfThreeByTwo) {
  auto mesh = test::GridMesh(3, 2);
  EXPECT_EQ(TrianglesOf(*mesh), (std::vector<Tri>{{0, 4, 1}, {4, 0, 3}, {1, 5, 2}, {5, 1, 4}}));
  EXPECT_EQ(mesh->GetPoint(4), P(1, 1));
  EXPECT_EQ(mesh->GetNumEdges(), 9);
  std::vector<std::array<int, 2>> ends(9);
  for (int e = 0; e < 9; ++e) mesh->GetEdgePoints(e, ends[e][0], ends[e][1]);
  // Horizontals, verticals, then the diagonals as the shipped formula gives them.
  EXPECT_EQ(ends, (std::vector<std::array<int, 2>>{
                      {0, 1}, {1, 2}, {3, 4}, {4, 5}, {0, 3}, {1, 4}, {2, 5}, {9, 13}, {10, 14}}));
  EXPECT_EQ(test::Printed(*mesh),
            "Reference Count: 1\n NumTriangles: 4\n NumPoints: 6\nPoints:  Not Null\nTriangles:  Not Null\n"
            "Numx3\nNumy2\n");

  auto fromNonUniform = SmartPointer<RectilinearConnectivityTriangleMesh>::New();
  ASSERT_EQ(fromNonUniform->CreateTriangleMesh(MakeNonUniform({0, 1, 3}, {0, 2}).GetPointer()), 0);
  EXPECT_EQ(TrianglesOf(*fromNonUniform), TrianglesOf(*mesh));
  EXPECT_EQ(fromNonUniform->GetPoint(5), P(3, 2));
}

// Across every edge, the edge structure and the grid arithmetic both name the one other triangle holding
// both edge ends (scan), apart from the grid's two quirks (worked out below); on a grid that is not square.
TEST(RectilinearConnectivityTriangleMesh, NeighboursAndOwnersAgreeWithScans) {
  const int nx = 5, ny = 4;
  auto mesh = test::GridMesh(nx, ny);
  auto edges = SmartPointer<TriangleEdgeStructure>::New();
  ASSERT_EQ(edges->Initialize(*mesh), VEK_SUCCESS);
  EXPECT_EQ(static_cast<int>(edges->GetNumberOfEdges()), mesh->GetNumEdges());
  std::vector<Tri> tris = TrianglesOf(*mesh);
  ASSERT_EQ(tris.size(), 24u);
  auto holds = [&](int t, int p) { return std::count(tris[t].begin(), tris[t].end(), p) > 0; };
  int shared = 0;
  for (int t = 0; t < 24; ++t) {
    for (int k = 0; k < 3; ++k) {
      int a = tris[t][(k + 1) % 3], b = tris[t][(k + 2) % 3], expected = -1;
      for (int u = 0; u < 24; ++u)
        if (u != t && holds(u, a) && holds(u, b)) expected = u;
      EXPECT_EQ(edges->GetTriangleNeighborWithoutPoint(t, k), expected) << t << " " << k;
      shared += expected >= 0;
      int opposite;
      const bool boundary = mesh->GetOppositeTriangle(k, t, opposite);
      const bool lastColumnQuirk = k == 0 && t % 2 == 0 && (t / 2) % (nx - 1) == nx - 2;
      if (!lastColumnQuirk && opposite < 24) {
        EXPECT_EQ(boundary ? -1 : opposite, expected) << t << " " << k;
      }
    }
  }
  EXPECT_EQ(shared, 2 * (mesh->GetNumEdges() - 2 * (nx - 1 + ny - 1)));  // every inner edge seen from both sides

  int owners[6], count;
  for (int p = 0; p < nx * ny; ++p) {
    mesh->GetPointOwners(p, count, owners);
    std::set<int> expected;
    for (int t = 0; t < 24; ++t)
      if (holds(t, p)) expected.insert(t);
    EXPECT_EQ(std::set<int>(owners, owners + count), expected) << p;
    EXPECT_EQ(static_cast<size_t>(count), expected.size());
  }
  // Worked out for a 3 x 3 grid: the order of owners, and opposites on the border and past the quirks.
  auto small = test::GridMesh(3, 3);
  const std::vector<int> order[] = {{0, 1}, {0, 1, 4, 3, 6, 7}, {6, 7}};
  for (int k = 0; k < 3; ++k) {
    small->GetPointOwners(4 * k, count, owners);
    EXPECT_EQ(std::vector<int>(owners, owners + count), order[k]) << 4 * k;
  }
  struct Case {
    int edge, triangle, boundary, opposite;
  };
  const Case cases[] = {
      {1, 0, 1, 0}, {0, 1, 1, 1}, {0, 0, 0, 3},
      {1, 4, 0, 1}, {0, 2, 0, 5},  // even triangle in the last column: not reported
      {1, 5, 0, 8},                // odd triangle in the top row: past the mesh
      {7, 3, 0, 3},                // no such edge
  };
  for (const Case& c : cases) {
    int opposite = -99;
    EXPECT_EQ(small->GetOppositeTriangle(c.edge, c.triangle, opposite), c.boundary) << c.edge << " " << c.triangle;
    EXPECT_EQ(opposite, c.opposite) << c.edge << " " << c.triangle;
  }
}

}  // namespace
}  // namespace vek
