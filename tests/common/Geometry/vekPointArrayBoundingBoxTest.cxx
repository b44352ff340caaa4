#include <gtest/gtest.h>

#include "vekPointArrayBoundingBox.h"

namespace vek {
namespace {

TEST(PointArrayBoundingBox, SkipsUnsetPointsOnly) {
  // (-5, 3) is a real point: only the pair (-5, -5) means unset.
  const vec2<float> points[5] = {{}, {1.0f, 2.0f}, {}, {3.0f, -1.0f}, {-5.0f, 3.0f}};
  vec2<float> min, max;
  EXPECT_EQ(GetPointArrayBoundingBox(points, 5, min, max), 3);
  EXPECT_EQ(min, vec2<float>(-5.0f, -1.0f));
  EXPECT_EQ(max, vec2<float>(3.0f, 3.0f));
  EXPECT_EQ(GetPointArrayBoundingBox(points, 1, min, max), 0);
  EXPECT_TRUE(min.IsUnset() && max.IsUnset());
}

}  // namespace
}  // namespace vek
