#include <gtest/gtest.h>

#include <array>
#include <sstream>

#include "vekMeshTestHelpers.h"

namespace vek {
namespace {

using P = vec2<float>;
using W = std::array<float, 3>;
using test::MakeMesh;

// Corners (0, 0), (4, 0), (4, 4): p = (4a, 4b), so the weights are easy to work out by hand.
struct RightTriangle {
  P c[3] = {P(0, 0), P(4, 0), P(4, 4)};
  Triangle t{&c[0], &c[1], &c[2]};
};

W InsideWeights(const Triangle& t, P p) {
  W w{9, 9, 9};
  EXPECT_TRUE(t.TestInsidedness(p, 0, w.data())) << p.x << "," << p.y;
  return w;
}

TEST(Triangle, WeightsAreaBoundingBoxAndPrinting) {
  RightTriangle r;
  EXPECT_EQ(InsideWeights(r.t, P(0, 0)), (W{1, 0, 0}));
  EXPECT_EQ(InsideWeights(r.t, P(4, 4)), (W{0, 0, 1}));
  EXPECT_EQ(InsideWeights(r.t, P(2, 1)), (W{0.5f, 0.25f, 0.25f}));
  // On edge c0-c2 (b = a): inside at tolerance 0; moved 0.01 outward (b - a = 0.0025) it needs a
  // tolerance to stay inside.
  EXPECT_EQ(InsideWeights(r.t, P(2, 2)), (W{0.5f, 0, 0.5f}));
  W w;
  EXPECT_TRUE(r.t.TestInsidedness(P(2, 2.01f), 0.01f, w.data()));
  W untouched{7, 8, 9};
  EXPECT_FALSE(r.t.TestInsidedness(P(2, 2.01f), 0.001f, untouched.data()));
  EXPECT_FALSE(r.t.TestInsidedness(P(5, 0), 0, untouched.data()));
  EXPECT_EQ(untouched, (W{7, 8, 9}));
  r.t.GetBaryCoord(P(6, 2), w.data());  // outside, but the weights are still reported
  EXPECT_EQ(w, (W{-0.5f, 1, 0.5f}));

  EXPECT_EQ(r.t.SignedArea(), -8.0f);  // counter-clockwise with y up is negative
  EXPECT_EQ(Triangle::SignedArea(r.c[0], r.c[2], r.c[1]), 8.0f);
  EXPECT_EQ(r.t.IsCornersInitialized(), 1);

  std::ostringstream os;
  r.c[1] = P(0.5f, -2);
  r.t.PrintTriangle(os);
  EXPECT_EQ(os.str(), "0 0 0.5 -2 4 4");

  P mn, mx;
  r.c[0] = P(1, 5);
  r.c[1] = P();
  r.c[2] = P(3, -2);
  EXPECT_EQ(r.t.IsCornersInitialized(), 0);
  r.t.GetBoundingBox(mn, mx);  // the unset corner is left out
  EXPECT_TRUE(mn == P(1, -2) && mx == P(3, 5));
  r.c[0] = P();
  r.c[2] = P();
  r.t.GetBoundingBox(mn, mx);
  EXPECT_TRUE(mn.IsUnset() && mx.IsUnset());
}

std::array<int, 3> Vertices(const TriangleMesh& mesh, int t) {
  std::array<int, 3> v;
  mesh.GetTriangleVerticesInArray(t, v.data());
  // Every corner must point into this mesh's own array.
  for (int k = 0; k < 3; ++k) EXPECT_EQ(mesh.GetTriangle(t).GetCorner(k), mesh.GetPoints() + v[k]);
  return v;
}

TEST(TriangleMesh, NewAllocateAndPrint) {
  auto mesh = SmartPointer<TriangleMesh>::New();
  EXPECT_EQ(test::Printed(*mesh),
            "Reference Count: 1\n NumTriangles: 0\n NumPoints: 0\nPoints:  NULL\nTriangles:  NULL\n");
  EXPECT_EQ(mesh->TotalSignedArea(), 0.0f);
  mesh->SetNumPoints(2);
  mesh->SetNumTriangles(1);
  ASSERT_EQ(mesh->Allocate(), VEK_SUCCESS);
  EXPECT_EQ(mesh->GetPoint(1), P(-5, -5));
  EXPECT_EQ(mesh->GetTriangle(0).IsInitialized(), 0);
  EXPECT_EQ(test::Printed(*mesh, 2),
            "  Reference Count: 1\n   NumTriangles: 1\n   NumPoints: 2\n  Points:  Not Null\n  Triangles:  Not Null\n");
}

// Areas +1e8, +1, -1e8 (all exact in float): a float running sum loses the 1 against 1e8
// (float spacing there is 8), a double running sum keeps it.
TEST(TriangleMesh, TotalSignedAreaSumsInDouble) {
  auto mesh = MakeMesh({P(0, 0), P(0, 20000), P(10000, 0), P(0, 2), P(1, 0)}, {{0, 1, 2}, {0, 3, 4}, {0, 2, 1}});
  EXPECT_EQ(mesh->TotalSignedArea(), 1.0f);
}

TEST(TriangleMesh, ExpandKeepsIndicesAndRepoints) {
  auto mesh = MakeMesh({P(0, 0), P(1, 0), P(1, 1)}, {{2, 0, 1}});
  ASSERT_EQ(mesh->ExpandPoints(5), VEK_SUCCESS);
  EXPECT_EQ(mesh->GetNumPoints(), 5);
  EXPECT_EQ(mesh->GetPoint(2), P(1, 1));
  EXPECT_TRUE(mesh->GetPoint(3).IsUnset() && mesh->GetPoint(4).IsUnset());
  EXPECT_EQ(Vertices(*mesh, 0), (std::array<int, 3>{2, 0, 1}));
  ASSERT_EQ(mesh->ExpandTriangles(3), VEK_SUCCESS);
  EXPECT_EQ(Vertices(*mesh, 0), (std::array<int, 3>{2, 0, 1}));
  EXPECT_EQ(mesh->GetTriangle(2).IsInitialized(), 0);
  // A partly set triangle moves with the points too: no corner may stay in the freed array.
  mesh->SetTriangle(1).SetCorners(&mesh->SetPoint(3), nullptr, nullptr);
  ASSERT_EQ(mesh->ExpandPoints(6), VEK_SUCCESS);
  EXPECT_EQ(mesh->GetTriangle(1).GetCorner(0), mesh->GetPoints() + 3);
  EXPECT_EQ(mesh->GetTriangle(1).GetCorner(1), nullptr);
  EXPECT_EQ(mesh->ExpandPoints(4), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(mesh->ExpandTriangles(2), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(mesh->GetNumPoints(), 6);
  EXPECT_EQ(mesh->GetNumTriangles(), 3);
}

TEST(TriangleMesh, IndicesConcatenationAndOntoEmptyIsCopy) {
  auto a = MakeMesh({P(0, 0), P(1, 0), P(1, 1), P(0, 1)}, {{0, 1, 2}, {0, 2, 3}});
  int v[3];
  a->GetTriangleVerticiesInArray(0, v);  // the old spelling
  EXPECT_TRUE(v[0] == 0 && v[1] == 1 && v[2] == 2);
  EXPECT_EQ(a->DoesTriangleContainVertex(1, 3), 1);
  EXPECT_EQ(a->DoesTriangleContainVertex(1, 1), 0);
  EXPECT_EQ(a->TotalSignedArea(), -1.0f);  // -0.5 each
  auto b = MakeMesh({P(5, 5), P(6, 5), P(6, 6)}, {{2, 1, 0}});
  ASSERT_EQ(a->Concatenate(b.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(a->GetNumPoints(), 7);
  EXPECT_EQ(a->GetNumTriangles(), 3);
  EXPECT_EQ(a->GetPoint(3), P(0, 1));
  EXPECT_EQ(a->GetPoint(4), P(5, 5));
  EXPECT_EQ(Vertices(*a, 1), (std::array<int, 3>{0, 2, 3}));
  EXPECT_EQ(Vertices(*a, 2), (std::array<int, 3>{6, 5, 4}));
  EXPECT_EQ(a->TotalSignedArea(), -0.5f);  // the added triangle is clockwise: +0.5

  auto empty = SmartPointer<TriangleMesh>::New();
  ASSERT_EQ(empty->Concatenate(a.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(empty->GetNumTriangles(), 3);
  ASSERT_EQ(empty->GetNumPoints(), 7);
  EXPECT_NE(empty->GetPoints(), a->GetPoints());
  for (int i = 0; i < 7; ++i) EXPECT_EQ(empty->GetPoint(i), a->GetPoint(i));
  EXPECT_EQ(Vertices(*empty, 2), (std::array<int, 3>{6, 5, 4}));
}

}  // namespace
}  // namespace vek
