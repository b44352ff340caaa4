#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <regex>
#include <set>
#include <vector>

#include "vekErrorCodes.h"
#include "vekHashTable.h"
#include "vekMeshTestHelpers.h"
#include "vekPointLocator2D.h"
#include "vekTestSupport.h"
#include "vekTriangleLocator2D.h"

namespace vek {
namespace {

using P = vec2<float>;

TEST(HashTable, BucketsKeepOrderAndStopAtSixteenBits) {
  test::LogCapture log;
  HashTable<int> table(3);
  EXPECT_EQ(table.GetBucket(2), nullptr);
  for (int v = 0; v < 65535; ++v) ASSERT_EQ(table.Insert(1, v), VEK_SUCCESS);
  EXPECT_EQ(log.Text().find("USHRT_MAX"), std::string::npos);
  EXPECT_EQ(table.Insert(1, 99), VEK_TOO_MANY_ELEMENTS);
  EXPECT_EQ(table.GetCount(1), 65535u);
  EXPECT_EQ(table.GetBucket(1)[65534], 65534);
  EXPECT_TRUE(std::regex_search(
      log.Text(), std::regex("ERROR:vekHashTable, [0-9]+: About to pass USHRT_MAX num elements with same hash\n")));
  EXPECT_EQ(table.Insert(3, 7), VEK_SUCCESS);  // the table stays usable
}

TEST(VarArray, AppendsInOrderAndSqueezes) {
  VarArray<int> a(2);
  for (int v = 0; v < 100; ++v) ASSERT_TRUE(a.Append(v * 3));
  a.Squeeze();
  EXPECT_EQ(a.GetCount(), 100u);
  EXPECT_EQ(a.GetCapacity(), 100u);
  for (unsigned int k = 0; k < 100; ++k) EXPECT_EQ(a[k], static_cast<int>(3 * k));
  ASSERT_TRUE(a.Resize(102));
  EXPECT_EQ(a[101], 0);
}

std::vector<const P*> Found(const PointLocator2D& locator, P min, P max) {
  VarArray<const P*> out;
  locator.FindPointsInRegion(min, max, out);
  return std::vector<const P*>(out.GetData(), out.GetData() + out.GetCount());
}

TEST(PointLocator2D, RowByRowOrderInclusiveBordersAndDegenerateBoxes) {
  // Extent 10 over 2 cells: cell size 10 * 0.50005; (5, 5) is still in cell (0, 0).
  const P points[] = {P(0, 0), P(10, 10), P(5, 5), P(1, 9), P()};
  auto locator = SmartPointer<PointLocator2D>::New();
  ASSERT_EQ(locator->Initialize(points, 5, 2, 2), VEK_SUCCESS);
  EXPECT_TRUE(locator->GetMin() == P(0, 0) && locator->GetMax() == P(10, 10));
  EXPECT_EQ(Found(*locator, P(0, 0), P(10, 10)),
            (std::vector<const P*>{&points[0], &points[2], &points[3], &points[1]}));
  EXPECT_EQ(Found(*locator, P(5, 5), P(10, 10)), (std::vector<const P*>{&points[2], &points[1]}));
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(Found(*locator, P(nan, 0), P(10, 10)), (std::vector<const P*>{}));

  const P line[] = {P(0, 3), P(4, 3)};  // zero extent along y
  ASSERT_EQ(locator->Initialize(line, 2, 4, 4), VEK_SUCCESS);
  EXPECT_EQ(Found(*locator, P(-1, -1), P(10, 10)), (std::vector<const P*>{}));
  ASSERT_EQ(locator->Initialize(nullptr, 0, 4, 4), VEK_SUCCESS);
  EXPECT_EQ(Found(*locator, P(-10, -10), P(10, 10)), (std::vector<const P*>{}));
  EXPECT_EQ(locator->Initialize(points, 5, 0, 4), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Found(*locator, P(0, 0), P(10, 10)), (std::vector<const P*>{}));
}

TEST(PointLocator2D, MatchesBruteForceOnRandomPoints) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<float> coord(-50, 150);
  std::vector<P> points(2000);
  for (P& p : points) p = P(coord(rng), coord(rng));
  points[17] = P();
  auto locator = SmartPointer<PointLocator2D>::New();
  ASSERT_EQ(locator->Initialize(points.data(), 2000, 13, 9), VEK_SUCCESS);
  for (int q = 0; q < 200; ++q) {
    P a(coord(rng), coord(rng)), b(coord(rng), coord(rng));
    P min(std::min(a.x, b.x), std::min(a.y, b.y)), max(std::max(a.x, b.x), std::max(a.y, b.y));
    std::set<const P*> expected;
    for (const P& p : points)
      if (!p.IsUnset() && p.x >= min.x && p.x <= max.x && p.y >= min.y && p.y <= max.y) expected.insert(&p);
    std::vector<const P*> found = Found(*locator, min, max);
    EXPECT_EQ(std::set<const P*>(found.begin(), found.end()), expected);
    EXPECT_EQ(found.size(), expected.size());
  }
}

SmartPointer<TriangleLocator2D> Locate(const TriangleMesh& mesh, int nx, int ny, float tolerance) {
  auto locator = SmartPointer<TriangleLocator2D>::New();
  EXPECT_EQ(locator->Initialize(mesh.GetPoints(), mesh.GetNumPoints(), mesh.GetTriangles(), mesh.GetNumTriangles(), nx,
                                ny, tolerance),
            VEK_SUCCESS);
  return locator;
}

TEST(TriangleLocator2D, BorderCellsSharedEdgesOutOfRangeAndDegenerateInputs) {
  auto mesh = test::GridMesh(11, 11, 10);  // (0, 0) to (100, 100)
  auto locator = Locate(*mesh, 10, 10, 0);
  const int* ids;
  unsigned int count;
  ASSERT_TRUE(locator->FindCandidateTrianglesContainingPoint(P(100, 100), ids, count));
  // Cell (9, 9) holds grid cell (9, 9)'s triangles 198 and 199, and by shared box borders some below it.
  EXPECT_TRUE(std::count(ids, ids + count, 198) && std::count(ids, ids + count, 199));
  EXPECT_TRUE(std::is_sorted(ids, ids + count));
  int id;
  float w[3];
  ASSERT_TRUE(locator->FindFirstTriangleContainingPoint(P(5, 5), 0, id, w));  // on the diagonal of 0 and 1
  EXPECT_TRUE(id == 0 && w[0] == 0.5f && w[1] == 0.5f && w[2] == 0.0f);

  test::LogCapture log;
  EXPECT_FALSE(locator->FindCandidateTrianglesContainingPoint(P(100.5f, 50), ids, count));
  EXPECT_EQ(count, 0u);
  EXPECT_TRUE(std::regex_search(
      log.Text(),
      std::regex("WARNING:vekTriangleLocator2D, [0-9]+: Out of Range! 100\\.5 50 with range0 0 to 100 100\n")));
  id = 5;
  EXPECT_FALSE(locator->FindFirstTriangleContainingPoint(P(-1, 50), 0, id, w));
  EXPECT_EQ(id, -1);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_FALSE(locator->FindFirstTriangleContainingPoint(P(50, nan), 0, id, w));
  EXPECT_EQ(id, -1);

  ASSERT_EQ(locator->Initialize(nullptr, 0, nullptr, 0, 4, 4, 0.1f), VEK_SUCCESS);
  EXPECT_FALSE(locator->FindFirstTriangleContainingPoint(P(0, 0), 0, id, w));
  P same[3] = {P(2, 2), P(2, 2), P(2, 2)};
  Triangle t(&same[0], &same[1], &same[2]);
  ASSERT_EQ(locator->Initialize(same, 3, &t, 1, 4, 4, 0), VEK_SUCCESS);
  id = 5;
  EXPECT_FALSE(locator->FindFirstTriangleContainingPoint(P(2, 2), 0, id, w));
  EXPECT_EQ(id, -1);
  EXPECT_EQ(locator->Initialize(same, 3, &t, 1, 4, -1, 0), VEK_INVALID_PARAMETERS);
  EXPECT_FALSE(locator->FindFirstTriangleContainingPoint(P(2, 2), 0, id, w));
}

// Same triangle and weights as a scan of every triangle in id order.
TEST(TriangleLocator2D, MatchesBruteForceOnJitteredMeshes) {
  std::mt19937 rng(11);
  std::uniform_real_distribution<float> jitter(-3.5f, 3.5f);
  for (int trial = 0; trial < 3; ++trial) {
    auto mesh = test::GridMesh(21 + trial, 15, 10);
    for (int i = 0; i < mesh->GetNumPoints(); ++i) {
      P& p = mesh->SetPoint(i);
      p = P(p.x + jitter(rng), p.y + jitter(rng));
    }
    auto locator = Locate(*mesh, 7 + trial, 5, 0.05f);
    std::uniform_real_distribution<float> qx(0, 200 + 10.0f * trial), qy(0, 140);
    int hits = 0;
    for (int q = 0; q < 3000; ++q) {
      P p(qx(rng), qy(rng));
      int expected = -1;
      float expectedW[3] = {0, 0, 0};
      for (int t = 0; t < mesh->GetNumTriangles() && expected < 0; ++t) {
        P mn, mx;
        mesh->GetTriangle(t).GetBoundingBox(mn, mx);
        if (p.x > mn.x && p.x < mx.x && p.y > mn.y && p.y < mx.y &&
            mesh->GetTriangle(t).TestInsidedness(p, 0, expectedW))
          expected = t;
      }
      int id;
      float w[3] = {0, 0, 0};
      bool found = locator->FindFirstTriangleContainingPoint(p, 0, id, w);
      ASSERT_EQ(found, expected >= 0) << p.x << " " << p.y;
      ASSERT_EQ(id, expected);
      hits += found;
      if (found) {
        EXPECT_TRUE(w[0] == expectedW[0] && w[1] == expectedW[1] && w[2] == expectedW[2]) << p.x << " " << p.y;
      }
    }
    EXPECT_GT(hits, 2000);
  }
}

}  // namespace
}  // namespace vek
