#include <gtest/gtest.h>

#include "vekErrorCodes.h"
#include "vekOrderedQuadrilateral.h"
#include "vekPointArrayBoundingBox.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

using P = vec2<float>;

TEST(OrderedQuadrilateral, CornersSetUniqueAndBoxed) {
  OrderedQuadrilateral q(P(0, 0), P(2, 0), P(0, 1), P(2, 1));
  EXPECT_EQ(q.IsInitialized(), 1);
  EXPECT_EQ(q.ArePointsUnique(), 1);
  q.SetPoint(3) = P(0, 1);
  EXPECT_EQ(q.ArePointsUnique(), 0);
  q.SetPoint(0) = P();
  EXPECT_EQ(q.IsInitialized(), 0);
  // Unset corners stay out of the box, but only the pair (-5, -5) means unset: (-5, 3) is real.
  q.SetPoint(2) = P(-5, 3);
  P min, max;
  EXPECT_EQ(GetPointArrayBoundingBox(q.GetPoints(), 4, min, max), 3);
  EXPECT_TRUE(min == P(-5, 0) && max == P(2, 3));
  EXPECT_EQ(GetPointArrayBoundingBox(q.GetPoints(), 1, min, max), 0);
  EXPECT_TRUE(min.IsUnset() && max.IsUnset());
}

TEST(OrderedQuadrilateral, InsideTestUsesBoxesThenEdgeHalfPlanes) {
  OrderedQuadrilateral square(P(0, 0), P(1, 0), P(0, 1), P(1, 1));
  Rectangle outer, inner;
  P normals[4];
  square.GetValuesForTestingInsidedness(outer, inner, normals);
  EXPECT_TRUE(normals[0] == P(0, 1) && normals[1] == P(-1, 0) && normals[2] == P(1, 0) && normals[3] == P(0, -1));
  EXPECT_EQ(square.IsInside(outer, inner, normals, P(1.05f, 0.5f), 0.1f), 1);
  EXPECT_EQ(square.IsInside(outer, inner, normals, P(1.05f, 0.5f), 0.01f), 0);

  // Slanted left side from (0, 0) to (1, 2): x = y / 2. Inner box [1, 3] x [0, 2].
  OrderedQuadrilateral q(P(0, 0), P(4, 0), P(1, 2), P(3, 2));
  q.GetValuesForTestingInsidedness(outer, inner, normals);
  EXPECT_TRUE(inner == Rectangle(1, 0, 3, 2));
  EXPECT_TRUE(outer == Rectangle(0, 0, 4, 2));
  EXPECT_EQ(q.IsInside(outer, inner, normals, P(0.5f, 1), 0), 1);  // exactly on the slanted side
  EXPECT_EQ(q.IsInside(outer, inner, normals, P(0.2f, 1), 0), 0);
  // (0.3 - 0.5) * 2/sqrt 5 is -0.179: rejected at 0.1, accepted at 0.2.
  EXPECT_EQ(q.IsInside(outer, inner, normals, P(0.3f, 1), 0.1f), 0);
  EXPECT_EQ(q.IsInside(outer, inner, normals, P(0.3f, 1), 0.2f), 1);
  EXPECT_EQ(q.IsInside(outer, inner, normals, P(2, 2.5f), 0.4f), 0);  // beyond the outer box
}

TEST(OrderedQuadrilateral, FileFormIsAVectorNumberFile) {
  test::TempDirectory dir;
  const std::string name = dir.File("quad.txt");
  OrderedQuadrilateral q(P(0, 0), P(1.5f, 0), P(0, 1), P(1, -2.25f));
  ASSERT_EQ(q.WriteToFile(name.c_str()), 0);
  EXPECT_EQ(test::ReadFile(name), test::TextFileBytes("8\n0\n0\n1.5\n0\n0\n1\n1\n-2.25\n"));
  OrderedQuadrilateral back;
  ASSERT_EQ(back.ReadFromFile(name.c_str()), 0);
  for (int k = 0; k < 4; ++k) EXPECT_EQ(back.GetPoint(k), q.GetPoint(k));

  test::WriteFile(name, "6\n1\n1\n2\n2\n3\n3\n");
  EXPECT_EQ(back.ReadFromFile(name.c_str()), VEK_FAILURE);
  EXPECT_EQ(back.GetPoint(1), P(1.5f, 0));
  EXPECT_EQ(back.ReadFromFile(dir.File("missing.txt").c_str()), VEK_FILE_NOT_FOUND);
}

}  // namespace
}  // namespace vek
