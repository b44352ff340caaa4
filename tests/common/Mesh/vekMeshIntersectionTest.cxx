#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekMeshTestHelpers.h"
#include "vekQuadCollection.h"
#include "vekRectilinearGridIntersectTriangleMesh.h"
#include "vekTriangleCollection.h"
#include "vekTriangleMeshIntersectTriangleMesh.h"

namespace vek {
namespace {

using P = vec2<float>;
using Pairs = std::vector<std::pair<int, int>>;
using Grid = RectilinearGridIntersectTriangleMesh;

SmartPointer<TriangleMeshIntersectTriangleMesh> Intersect(const TriangleMesh& first, const TriangleMesh& second,
                                                          int threads = 0) {
  auto intersect = SmartPointer<TriangleMeshIntersectTriangleMesh>::New();
  intersect->SetFirstMesh(&first);
  intersect->SetSecondMesh(&second);
  intersect->SetBuildOverlapRegion(true);
  intersect->SetNumberOfThreads(threads);
  EXPECT_EQ(intersect->Update(), VEK_SUCCESS);
  return intersect;
}

// The oracle: the overlap is the convex hull of the corners of each triangle that lie in the
// other (closed) and of the proper crossings of their edges, in long double. On the quarter
// lattice used below every test is exact, so touching shapes give a hull of area exactly 0.
using L = long double;
struct LP {
  L x, y;
};

L Cross(const LP& a, const LP& b, const LP& c) { return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x); }

bool OracleUsable(const TriangleMesh& mesh, int t, LP out[3]) {
  const Triangle& triangle = mesh.GetTriangle(t);
  if (!triangle.IsInitialized()) return false;
  for (int k = 0; k < 3; ++k) {
    const P& p = *triangle.GetCorner(k);
    if (p.IsUnset() || !std::isfinite(p.x) || !std::isfinite(p.y)) return false;
    out[k] = {p.x, p.y};
  }
  const L c = Cross(out[0], out[1], out[2]);
  if (c < 0) std::swap(out[1], out[2]);
  return c != 0;
}

bool InClosed(const LP t[3], const LP& p) {
  return Cross(t[0], t[1], p) >= 0 && Cross(t[1], t[2], p) >= 0 && Cross(t[2], t[0], p) >= 0;
}

// Area of the convex hull (monotone chain); `touching` is set when the hull has points but no area.
L OverlapArea(const LP a[3], const LP b[3], bool& touching) {
  std::vector<LP> points;
  for (int k = 0; k < 3; ++k) {
    if (InClosed(b, a[k])) points.push_back(a[k]);
    if (InClosed(a, b[k])) points.push_back(b[k]);
  }
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      const LP &p1 = a[i], &p2 = a[(i + 1) % 3], &q1 = b[j], &q2 = b[(j + 1) % 3];
      const L d1 = Cross(q1, q2, p1), d2 = Cross(q1, q2, p2);
      if (d1 * d2 < 0 && Cross(p1, p2, q1) * Cross(p1, p2, q2) < 0) {
        const L t = d1 / (d1 - d2);
        points.push_back({p1.x + t * (p2.x - p1.x), p1.y + t * (p2.y - p1.y)});
      }
    }
  std::sort(points.begin(), points.end(),
            [](const LP& u, const LP& v) { return u.x < v.x || (u.x == v.x && u.y < v.y); });
  const int n = static_cast<int>(points.size());
  std::vector<LP> hull(2 * n + 1);
  int k = 0;
  for (int i = 0; i < n; ++i) {
    while (k >= 2 && Cross(hull[k - 2], hull[k - 1], points[i]) <= 0) --k;
    hull[k++] = points[i];
  }
  for (int i = n - 2, lower = k + 1; i >= 0; --i) {
    while (k >= lower && Cross(hull[k - 2], hull[k - 1], points[i]) <= 0) --k;
    hull[k++] = points[i];
  }
  L twice = 0;
  for (int i = 0; i + 1 < k; ++i) twice += hull[i].x * hull[i + 1].y - hull[i].y * hull[i + 1].x;
  touching = n > 0 && twice == 0;
  return twice / 2;
}

struct Expected {
  Pairs pairs;
  std::vector<double> areas;
  int touching = 0;
};

Expected Oracle(const TriangleMesh& first, const TriangleMesh& second) {
  Expected e;
  for (int f = 0; f < first.GetNumTriangles(); ++f) {
    LP a[3];
    if (!OracleUsable(first, f, a)) continue;
    for (int s = 0; s < second.GetNumTriangles(); ++s) {
      LP b[3];
      if (!OracleUsable(second, s, b)) continue;
      bool touching = false;
      const L area = OverlapArea(a, b, touching);
      e.touching += touching;
      if (area <= 0) continue;
      e.pairs.emplace_back(f, s);
      e.areas.push_back(static_cast<double>(area));
    }
  }
  return e;
}

// Random triangles over random points: on a quarter lattice (shared corners, collinear edges,
// degenerate triangles galore), with some points taken from `shared`, or anywhere.
SmartPointer<TriangleMesh> RandomMesh(std::mt19937& rng, bool lattice, const TriangleMesh* shared = nullptr) {
  const int numPoints = 16, numTriangles = 24;
  auto mesh = SmartPointer<TriangleMesh>::New();
  mesh->SetNumPoints(numPoints);
  mesh->SetNumTriangles(numTriangles);
  EXPECT_EQ(mesh->Allocate(), VEK_SUCCESS);
  std::uniform_int_distribution<int> step(0, 12);
  std::uniform_real_distribution<float> anywhere(0, 3);
  for (int i = 0; i < numPoints; ++i) {
    if (shared && i % 2 == 0)
      mesh->SetPoint(i) = shared->GetPoint(i);
    else if (lattice)
      mesh->AddPoint(i, step(rng) * 0.25f, step(rng) * 0.25f);
    else
      mesh->AddPoint(i, anywhere(rng), anywhere(rng));
  }
  std::uniform_int_distribution<int> corner(0, numPoints - 1);
  for (int t = 0; t < numTriangles; ++t) mesh->AddTriangle(t, corner(rng), corner(rng), corner(rng));
  return mesh;
}

double TriangleArea(const TriangleMesh& mesh, int t) { return std::fabs(mesh.GetTriangle(t).SignedArea()); }

void ExpectRelative(double actual, double expected, const char* what) {
  EXPECT_NEAR(actual, expected, 1e-9 * std::fabs(expected)) << what;
}

TEST(TriangleMeshIntersectTriangleMesh, MatchesHullOracleOnRandomMeshes) {
  std::mt19937 rng(17);
  int touching = 0, pairs = 0;
  for (int trial = 0; trial < 300; ++trial) {
    const bool lattice = trial % 3 != 0;
    auto first = RandomMesh(rng, lattice);
    auto second = RandomMesh(rng, lattice, trial % 2 ? first.GetPointer() : nullptr);
    if (trial % 5 == 0) second->SetPoint(1) = P(std::numeric_limits<float>::quiet_NaN(), 1);
    if (trial % 7 == 0) first->SetPoint(3) = P();
    const Expected e = Oracle(*first, *second);
    auto intersect = Intersect(*first, *second);
    ASSERT_EQ(intersect->GetOverlappingPairs(), e.pairs) << "trial " << trial;
    ASSERT_EQ(intersect->GetNumberOfOverlappingPairs(), static_cast<int>(e.pairs.size()));
    touching += e.touching;
    pairs += static_cast<int>(e.pairs.size());

    std::vector<double> firstAreas(first->GetNumTriangles()), secondAreas(second->GetNumTriangles());
    double total = 0;
    std::map<std::pair<int, int>, double> regionAreas;
    const TriangleCollection& region = *intersect->GetOverlapRegion();
    for (int t = 0; t < region.GetNumberOfTriangles(); ++t) {
      EXPECT_GT(region.GetSignedArea(t), 0);
      regionAreas[{region.GetFirstId(t), region.GetSecondId(t)}] += region.GetSignedArea(t);
    }
    for (size_t k = 0; k < e.pairs.size(); ++k) {
      // A sliver's area carries the rounding of clipping in double, a few ulps of the triangles'.
      const double floor = 1e-15 * (TriangleArea(*first, e.pairs[k].first) + TriangleArea(*second, e.pairs[k].second));
      EXPECT_NEAR(intersect->GetPairOverlapAreas()[k], e.areas[k], 1e-9 * e.areas[k] + floor);
      EXPECT_NEAR(regionAreas[e.pairs[k]], e.areas[k], 1e-9 * e.areas[k] + floor);
      firstAreas[e.pairs[k].first] += e.areas[k];
      secondAreas[e.pairs[k].second] += e.areas[k];
      total += e.areas[k];
    }
    EXPECT_EQ(regionAreas.size(), e.pairs.size());
    for (int f = 0; f < first->GetNumTriangles(); ++f)
      ExpectRelative(intersect->GetFirstOverlapAreas()[f], firstAreas[f], "first area");
    for (int s = 0; s < second->GetNumTriangles(); ++s)
      ExpectRelative(intersect->GetSecondOverlapAreas()[s], secondAreas[s], "second area");
    ExpectRelative(intersect->GetTotalOverlapArea(), total, "total");
  }
  // The lattice must have produced plenty of touching-only pairs for this to mean anything.
  EXPECT_GT(touching, 1000);
  EXPECT_GT(pairs, 5000);
}

struct Shapes {
  const char* name;
  std::vector<P> first, second;
  double area;  // 0: no pair
  int pieces;
};

TEST(TriangleMeshIntersectTriangleMesh, HandWorkedOverlapsAndTouchingShapes) {
  const Shapes cases[] = {
      {"identical", {P(0, 0), P(4, 0), P(0, 4)}, {P(0, 0), P(4, 0), P(0, 4)}, 8, 1},
      {"reversed", {P(0, 0), P(4, 0), P(0, 4)}, {P(0, 4), P(4, 0), P(0, 0)}, 8, 1},
      {"inside", {P(0, 0), P(10, 0), P(0, 10)}, {P(1, 1), P(2, 1), P(1, 2)}, 0.5, 1},
      {"around", {P(1, 1), P(2, 1), P(1, 2)}, {P(0, 0), P(10, 0), P(0, 10)}, 0.5, 1},
      {"corner cut", {P(0, 0), P(4, 0), P(0, 4)}, {P(1, 1), P(5, 1), P(1, 5)}, 2, 1},
      {"hexagon", {P(0, 0), P(6, 0), P(3, 6)}, {P(0, 4), P(6, 4), P(3, -2)}, 12, 4},
      {"common edge, same side", {P(0, 0), P(4, 0), P(0, 4)}, {P(0, 0), P(4, 0), P(2, 1)}, 2, 1},
      {"common edge", {P(0, 0), P(2, 0), P(1, 1)}, {P(0, 0), P(2, 0), P(1, -1)}, 0, 0},
      {"part of an edge", {P(0, 0), P(2, 0), P(1, 1)}, {P(1, 0), P(3, 0), P(2, -1)}, 0, 0},
      {"corner to corner", {P(0, 0), P(1, 0), P(0, 1)}, {P(1, 0), P(2, 0), P(1, 1)}, 0, 0},
      {"corner on edge", {P(0, 0), P(2, 0), P(0, 2)}, {P(1, 1), P(3, 1), P(2, 3)}, 0, 0},
      {"apart", {P(0, 0), P(1, 0), P(0, 1)}, {P(5, 5), P(6, 5), P(5, 6)}, 0, 0},
  };
  for (const Shapes& c : cases) {
    auto first = test::MakeMesh({c.first[0], c.first[1], c.first[2]}, {{0, 1, 2}});
    auto second = test::MakeMesh({c.second[0], c.second[1], c.second[2]}, {{0, 1, 2}});
    auto intersect = Intersect(*first, *second);
    EXPECT_EQ(intersect->GetOverlappingPairs(), (c.area > 0 ? Pairs{{0, 0}} : Pairs{})) << c.name;
    EXPECT_NEAR(intersect->GetTotalOverlapArea(), c.area, 1e-12) << c.name;
    EXPECT_EQ(intersect->GetOverlapRegion()->GetNumberOfTriangles(), c.pieces) << c.name;
  }

  // Two squares split along the same line y = x: halves on opposite sides only touch.
  auto first = test::MakeMesh({P(0, 0), P(2, 0), P(2, 2), P(0, 2)}, {{0, 1, 2}, {0, 2, 3}});
  auto second = test::MakeMesh({P(1, 1), P(3, 1), P(3, 3), P(1, 3)}, {{0, 1, 2}, {0, 2, 3}});
  auto intersect = Intersect(*first, *second);
  EXPECT_EQ(intersect->GetOverlappingPairs(), (Pairs{{0, 0}, {1, 1}}));
  EXPECT_EQ(intersect->GetFirstOverlapAreas(), (std::vector<double>{0.5, 0.5}));
  EXPECT_EQ(intersect->GetSecondOverlapAreas(), (std::vector<double>{0.5, 0.5}));
  EXPECT_EQ(intersect->GetTotalOverlapArea(), 1.0);
  intersect->SetBuildOverlapRegion(false);
  ASSERT_EQ(intersect->Update(), VEK_SUCCESS);
  EXPECT_EQ(intersect->GetOverlapRegion()->GetNumberOfTriangles(), 0);
  EXPECT_EQ(intersect->GetNumberOfOverlappingPairs(), 2);
}

// A corner 2^-70 off a long edge through (-1024, -3072) and (2048, 6144): in double the
// orientation rounds to exactly 0 (worked out with rationals), so only an exact decision sees it.
TEST(TriangleMeshIntersectTriangleMesh, DecidesExactlyWhereDoubleRoundingCannot) {
  auto first = test::MakeMesh({P(-1024, -3072), P(2048, 0), P(2048, 6144)}, {{0, 1, 2}});
  const float x = std::ldexp(1.0f, -50), y = std::ldexp(3.0f, -50), off = std::ldexp(1.0f, -70);
  for (float sign : {1.0f, -1.0f}) {
    auto second = test::MakeMesh({P(x, y - sign * off), P(1, 100), P(-1, 100)}, {{0, 1, 2}});
    auto intersect = Intersect(*first, *second);
    EXPECT_EQ(intersect->GetOverlappingPairs(), (sign > 0 ? Pairs{{0, 0}} : Pairs{})) << sign;
    EXPECT_LT(intersect->GetTotalOverlapArea(), 1e-30);
  }
  auto thin = test::MakeMesh({P(-1024, -3072), P(2048, 6144), P(x, y - off)}, {{0, 1, 2}});
  EXPECT_TRUE(TriangleMeshIntersectTriangleMesh::IsTriangleUsable(thin->GetTriangle(0)));
}

TEST(TriangleMeshIntersectTriangleMesh, UnusableTrianglesEmptyMeshesAndMissingMeshes) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  auto first = test::MakeMesh({P(0, 0), P(4, 0), P(0, 4), P(2, 2), P(), P(nan, 1), P(1, 1)},
                              {{0, 1, 2}, {1, 2, 3}, {0, 1, 4}, {0, 1, 5}, {0, 0, 1}, {0, 1, 2}, {0, 6, 1}});
  first->SetTriangle(5).SetCorners(nullptr, nullptr, nullptr);
  auto second = test::MakeMesh({P(-10, -10), P(20, -10), P(-10, 20), P(5, 5)}, {{0, 1, 2}, {3, 3, 3}});
  auto intersect = Intersect(*first, *second);
  EXPECT_EQ(intersect->GetOverlappingPairs(), (Pairs{{0, 0}, {6, 0}}));
  EXPECT_EQ(intersect->GetFirstOverlapAreas(), (std::vector<double>{8, 0, 0, 0, 0, 0, 2}));
  EXPECT_EQ(intersect->GetSecondOverlapAreas(), (std::vector<double>{10, 0}));
  const bool usable[] = {true, false, false, false, false, false, true};
  for (int t = 0; t < 7; ++t)
    EXPECT_EQ(TriangleMeshIntersectTriangleMesh::IsTriangleUsable(first->GetTriangle(t)), usable[t]) << t;

  auto empty = SmartPointer<TriangleMesh>::New();
  intersect->SetFirstMesh(empty.GetPointer());
  ASSERT_EQ(intersect->Update(), VEK_SUCCESS);
  EXPECT_EQ(intersect->GetNumberOfOverlappingPairs(), 0);
  EXPECT_TRUE(intersect->GetFirstOverlapAreas().empty());
  EXPECT_EQ(intersect->GetSecondOverlapAreas(), (std::vector<double>{0, 0}));

  intersect->SetFirstMesh(first.GetPointer());
  intersect->SetSecondMesh(nullptr);
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(intersect->Update()), VEK_INVALID_PARAMETERS);
  EXPECT_TRUE(intersect->GetFirstOverlapAreas().empty());
  EXPECT_EQ(intersect->GetTotalOverlapArea(), 0);
}

SmartPointer<RectilinearConnectivityTriangleMesh> Jittered(std::mt19937& rng, int nx, int ny, float x0, float y0) {
  auto mesh = SmartPointer<RectilinearConnectivityTriangleMesh>::New();
  EXPECT_EQ(mesh->CreateTriangleMesh(test::MakeGrid(x0, y0, 1, 1, nx, ny).GetPointer()), VEK_SUCCESS);
  std::uniform_real_distribution<float> jitter(-0.3f, 0.3f);
  for (int j = 1; j < ny - 1; ++j)
    for (int i = 1; i < nx - 1; ++i) {
      P& p = mesh->SetPoint(j * nx + i);
      p = P(p.x + jitter(rng), p.y + jitter(rng));
    }
  return mesh;
}

TEST(TriangleMeshIntersectTriangleMesh, SameResultsAtAnyThreadCountAndExactTotalOfTiledRectangles) {
  std::mt19937 rng(23);
  auto first = Jittered(rng, 40, 30, 0, 0);
  auto second = Jittered(rng, 40, 30, 13, 5);  // overlap [13, 39] x [5, 29]
  auto one = Intersect(*first, *second, 1);
  EXPECT_NEAR(one->GetTotalOverlapArea(), 26.0 * 24.0, 1e-9 * 624);
  double secondSum = 0;
  for (double a : one->GetSecondOverlapAreas()) secondSum += a;
  EXPECT_NEAR(secondSum, 624, 1e-9 * 624);
  for (int threads : {2, 3}) {
    auto other = Intersect(*first, *second, threads);
    EXPECT_EQ(other->GetOverlappingPairs(), one->GetOverlappingPairs());
    EXPECT_EQ(other->GetPairOverlapAreas(), one->GetPairOverlapAreas());
    EXPECT_EQ(other->GetFirstOverlapAreas(), one->GetFirstOverlapAreas());
    EXPECT_EQ(other->GetSecondOverlapAreas(), one->GetSecondOverlapAreas());
    EXPECT_EQ(other->GetTotalOverlapArea(), one->GetTotalOverlapArea());
    const TriangleCollection &a = *one->GetOverlapRegion(), &b = *other->GetOverlapRegion();
    ASSERT_EQ(a.GetNumberOfTriangles(), b.GetNumberOfTriangles());
    for (int t = 0; t < a.GetNumberOfTriangles(); ++t) {
      ASSERT_TRUE(a.GetFirstId(t) == b.GetFirstId(t) && a.GetSecondId(t) == b.GetSecondId(t));
      for (int k = 0; k < 3; ++k) ASSERT_TRUE(a.GetCorner(t, k) == b.GetCorner(t, k));
    }
  }
}

TEST(MeshIntersectionCollections, KeepOrderIdsAndOrientation) {
  auto triangles = SmartPointer<TriangleCollection>::New();
  EXPECT_EQ(triangles->Reserve(-1), VEK_INVALID_PARAMETERS);
  ASSERT_EQ(triangles->AddTriangle({0, 0}, {1, 1}, {1, 0}, 7, 9), VEK_SUCCESS);
  ASSERT_EQ(triangles->AddTriangle({0, 0}, {1, 0}, {1, 1}, 8, 2), VEK_SUCCESS);
  // The first has the grid triangulation's orientation.
  EXPECT_EQ(triangles->GetSignedArea(0), 0.5);
  EXPECT_EQ(triangles->GetSignedArea(1), -0.5);
  EXPECT_TRUE(triangles->GetFirstId(1) == 8 && triangles->GetSecondId(1) == 2 &&
              triangles->GetCorner(1, 2) == vec2<double>(1, 1));
  EXPECT_EQ(test::Printed(*triangles), "Reference Count: 1\nNumberOfTriangles: 2\n");

  auto quads = SmartPointer<QuadCollection>::New();
  EXPECT_EQ(quads->Reserve(-3), VEK_INVALID_PARAMETERS);
  ASSERT_EQ(quads->AddQuad(OrderedQuadrilateral(P(0, 0), P(1, 0), P(0, 1), P(1, 1)), 12), VEK_SUCCESS);
  EXPECT_EQ(quads->GetNumberOfQuads(), 1);
  EXPECT_TRUE(quads->GetId(0) == 12 && quads->GetCorner(0, 1) == P(1, 0));
  quads->Reset();
  EXPECT_EQ(test::Printed(*quads), "Reference Count: 1\nNumberOfQuads: 0\n");
}

SmartPointer<Grid> Resample(const RectilinearGrid& grid, const TriangleMesh& mesh) {
  auto resample = SmartPointer<Grid>::New();
  resample->SetGrid(&grid);
  resample->SetMesh(&mesh);
  EXPECT_EQ(resample->Update(), VEK_SUCCESS);
  return resample;
}

// The weights must rebuild the point from the triangle's corners.
void ExpectWeightsRebuild(const Grid& resample, const TriangleMesh& mesh, int point, const P& p, double tolerance) {
  const float* w = resample.GetPointWeights(point);
  const Triangle& t = mesh.GetTriangle(resample.GetPointTriangle(point));
  double x = 0, y = 0;
  for (int k = 0; k < 3; ++k) {
    EXPECT_TRUE(w[k] >= 0 && w[k] <= 1);
    x += w[k] * double(t.GetCorner(k)->x);
    y += w[k] * double(t.GetCorner(k)->y);
  }
  EXPECT_NEAR(w[0] + w[1] + w[2], 1.0, 1e-6);
  EXPECT_NEAR(x, p.x, tolerance);
  EXPECT_NEAR(y, p.y, tolerance);
}

TEST(RectilinearGridIntersectTriangleMesh, PointsGetTheLowestTriangleThatHoldsThemEvenOnEdgesAndTheBorder) {
  auto mesh = test::GridMesh(3, 3, 2);  // (0, 0) to (4, 4), 8 triangles
  auto grid = test::MakeGrid(-1, -1, 1, 1, 7, 7);
  auto resample = Resample(*grid, *mesh);
  int found = 0;
  for (int j = 0; j < 7; ++j)
    for (int i = 0; i < 7; ++i) {
      const int point = j * 7 + i;
      const LP p{L(i - 1), L(j - 1)};
      int expected = Grid::kNoTriangle;
      for (int t = 0; t < mesh->GetNumTriangles() && expected < 0; ++t) {
        LP c[3];
        ASSERT_TRUE(OracleUsable(*mesh, t, c));
        if (InClosed(c, p)) expected = t;
      }
      ASSERT_EQ(resample->GetPointTriangle(point), expected) << i - 1 << " " << j - 1;
      if (expected < 0) {
        const float* w = resample->GetPointWeights(point);
        EXPECT_TRUE(w[0] == 0 && w[1] == 0 && w[2] == 0);
        continue;
      }
      ++found;
      ExpectWeightsRebuild(*resample, *mesh, point, P(i - 1.0f, j - 1.0f), 1e-6);
    }
  EXPECT_EQ(found, 25);
  EXPECT_EQ(resample->GetNumberOfFoundPoints(), 25);
}

TEST(RectilinearGridIntersectTriangleMesh, BorderPointsAreFoundDespiteRounding) {
  // The warp grid overshoots the spot grid's (0, 0)-(1, 1) by about an ulp on every side.
  auto mesh = test::GridMesh(11, 11, 0.1f);
  const float step = std::nextafter(std::nextafter(1.0f / 30, 1.0f), 1.0f);
  auto grid = test::MakeGrid(-1e-7f, -1e-7f, step, step, 31, 31);
  EXPECT_GT(grid->GetLastPointx(), 1.0f);
  auto resample = Resample(*grid, *mesh);
  EXPECT_EQ(resample->GetNumberOfFoundPoints(), 31 * 31);
  std::vector<P> points(31 * 31);
  grid->FillInPoints(points.data());
  for (int point = 0; point < 31 * 31; ++point) {
    ASSERT_NE(resample->GetPointTriangle(point), Grid::kNoTriangle) << point;
    ExpectWeightsRebuild(*resample, *mesh, point, points[point], 1e-5);
  }
  EXPECT_EQ(resample->GetNumberOfCells(Grid::FullyCovered), 900);
}

TEST(RectilinearGridIntersectTriangleMesh, CoverageAroundAMissingTriangle) {
  auto mesh = test::GridMesh(3, 3, 10);                        // (0, 0) to (20, 20)
  mesh->SetTriangle(7).SetCorners(nullptr, nullptr, nullptr);  // (20, 20), (10, 10), (10, 20)
  auto resample = Resample(*test::MakeGrid(0, 0, 5, 5, 5, 5), *mesh);
  std::vector<Grid::CellCoverage> expected(16, Grid::FullyCovered);
  std::vector<double> area(16, 25);
  expected[10] = expected[15] = Grid::PartlyCovered;  // halved by the missing triangle's diagonal
  area[10] = area[15] = 12.5;
  expected[14] = Grid::NotCovered;  // inside the missing triangle, touching the rest at a corner
  area[14] = 0;
  for (int cell = 0; cell < 16; ++cell) {
    EXPECT_EQ(resample->GetCellCoverage(cell), expected[cell]) << cell;
    EXPECT_NEAR(resample->GetCellCoveredArea(cell), area[cell], 1e-12) << cell;
  }
  EXPECT_EQ(resample->GetNumberOfCells(Grid::FullyCovered), 13);
  const QuadCollection& partly = *resample->GetPartlyCoveredCells();
  ASSERT_EQ(partly.GetNumberOfQuads(), 2);
  EXPECT_EQ(partly.GetId(0), 10);
  EXPECT_EQ(partly.GetId(1), 15);
  const P corners[4] = {P(15, 15), P(20, 15), P(15, 20), P(20, 20)};
  for (int k = 0; k < 4; ++k) EXPECT_EQ(partly.GetCorner(1, k), corners[k]) << k;
  EXPECT_EQ(resample->GetPointTriangle(18), 6);                  // (15, 15) on the missing triangle's diagonal
  EXPECT_EQ(resample->GetPointTriangle(23), Grid::kNoTriangle);  // (15, 20), on its outer edge only
}

TEST(RectilinearGridIntersectTriangleMesh, HolesAndNotchesInsideACellWithAllCornersFound) {
  // One cell [5, 25]^2 over a 3 x 3-cell spot grid of spacing 10; all four corners stay in the mesh.
  const std::vector<int> removed[] = {{}, {9}, {14, 15}};  // none, a hole, a notch from the top
  const double covered[] = {400, 350, 350};
  for (int c = 0; c < 3; ++c) {
    auto mesh = test::GridMesh(4, 4, 10);
    for (int t : removed[c]) mesh->SetTriangle(t).SetCorners(nullptr, nullptr, nullptr);
    auto resample = Resample(*test::MakeGrid(5, 5, 20, 20, 2, 2), *mesh);
    EXPECT_EQ(resample->GetNumberOfFoundPoints(), 4);
    EXPECT_NEAR(resample->GetCellCoveredArea(0), covered[c], 1e-9);
    EXPECT_EQ(resample->GetCellCoverage(0), c == 0 ? Grid::FullyCovered : Grid::PartlyCovered) << c;
    EXPECT_EQ(resample->GetPartlyCoveredCells()->GetNumberOfQuads(), c == 0 ? 0 : 1);
  }
}

TEST(RectilinearGridIntersectTriangleMesh, RefusesGridsWithoutCellsOrSpacing) {
  auto mesh = test::GridMesh(3, 3, 10);
  auto resample = Resample(*test::MakeGrid(0, 0, 5, 5, 5, 5), *mesh);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (auto grid :
       {test::MakeGrid(0, 0, 5, 5, 1, 5), test::MakeGrid(0, 0, 0, 5, 5, 5), test::MakeGrid(0, 0, 5, -5, 5, 5),
        test::MakeGrid(0, 0, nan, 5, 5, 5), SmartPointer<RectilinearGrid>::New()}) {
    resample->SetGrid(grid.GetPointer());
    EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(resample->Update()), VEK_INVALID_PARAMETERS);
    EXPECT_EQ(resample->GetNumberOfFoundPoints(), 0);
    EXPECT_EQ(resample->GetPartlyCoveredCells()->GetNumberOfQuads(), 0);
  }
  resample->SetGrid(nullptr);
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(resample->Update()), VEK_INVALID_PARAMETERS);
}

}  // namespace
}  // namespace vek
