#include <gtest/gtest.h>

#include "vekRectangle.h"

namespace vek {
namespace {

using P = vec2<float>;

TEST(Rectangle, InitialisationAndCorners) {
  Rectangle r(0, 0, 1, Rectangle::kUnset);
  EXPECT_EQ(r.IsInitialized(), 0);
  r.SetMaxy(1);
  EXPECT_EQ(r.IsInitialized(), 1);
  EXPECT_TRUE(r == Rectangle(P(0, 0), P(1, 1)));
  EXPECT_TRUE(r != Rectangle(0, 0, 1, 2));
  // Clockwise from the top-left, y up; any other index is the bottom-left.
  Rectangle c(1, 2, 4, 8);
  EXPECT_TRUE(c.GetCorner(0) == P(1, 8) && c.GetCorner(1) == P(4, 8) && c.GetCorner(2) == P(4, 2));
  EXPECT_EQ(c.GetCorner(-1), P(1, 2));
}

TEST(Rectangle, InRangeIncludesBorderInsideExcludesIt) {
  Rectangle r(0, 0, 2, 1);
  for (P p : {P(0, 0), P(2, 1), P(1, 0), P(0, 0.5f)}) {
    EXPECT_EQ(r.IsInRange(p), 1) << p.x << "," << p.y;
    EXPECT_EQ(r.IsInside(p, 0), 0) << p.x << "," << p.y;
    EXPECT_EQ(r.GetLInfinityDistanceToInterior(p), 0.0f) << p.x << "," << p.y;
  }
  EXPECT_EQ(r.IsInside(P(1, 0.5f), 0), 1);
  EXPECT_EQ(r.IsInRange(P(2.5f, 1)), 0);
  EXPECT_EQ(r.IsInRange(P(2.5f, 1), 0.5f), 1);
  EXPECT_EQ(r.IsInside(P(2.5f, 1), 0.5f), 0);
  EXPECT_EQ(r.IsInside(P(2.25f, 1), 0.5f), 1);
  EXPECT_EQ(r.IsXInside(P(2, 0.5f)), 0);
  EXPECT_EQ(r.IsYInside(P(1, 1)), 0);
  EXPECT_EQ(r.GetLInfinityDistanceToInterior(P(4, 4)), 3.0f);
  EXPECT_EQ(r.GetLInfinityDistanceToInterior(P(-0.5f, 0.75f)), 0.5f);
}

TEST(Rectangle, CornerAndBoundaryPredicates) {
  Rectangle r(0, 0, 1, 1);
  EXPECT_EQ(r.IsCorner(P(1, 0)), 1);
  EXPECT_EQ(r.IsCorner(P(0.5f, 0)), 0);
  EXPECT_EQ(r.IsOnBoundary(P(0.5f, 0)), 1);
  EXPECT_EQ(r.IsOnBoundary(P(1, 1)), 1);
  EXPECT_EQ(r.IsOnBoundary(P(1, 1.5f)), 0);  // on the line of a side, past its end

  EXPECT_EQ(r.IsOnSameRectEdge(P(0, 0), P(0, 1)), 1);
  EXPECT_EQ(r.IsOnSameRectEdge(P(0.2f, 1), P(0.7f, 1)), 1);
  EXPECT_EQ(r.IsOnSameRectEdge(P(0, 0.5f), P(0.5f, 0)), 0);
  EXPECT_EQ(r.IsOnSameRectEdge(P(0.5f, 0.5f), P(0.5f, 1)), 0);  // same x but not a side
  EXPECT_EQ(r.IsOnSameRectEdge(P(1, 0.5f), P(1, 2)), 0);

  EXPECT_EQ(r.IsOnAdjacentEdge(P(0, 0.5f), P(0.5f, 0)), 1);
  EXPECT_EQ(r.IsOnAdjacentEdge(P(0.5f, 1), P(1, 0.5f)), 1);  // roles exchanged
  EXPECT_EQ(r.IsOnAdjacentEdge(P(0, 0), P(0.5f, 0)), 0);     // a corner is not strictly inside a side
  EXPECT_EQ(r.IsOnAdjacentEdge(P(0, 0.5f), P(1, 0.5f)), 0);  // opposite sides
}

}  // namespace
}  // namespace vek
