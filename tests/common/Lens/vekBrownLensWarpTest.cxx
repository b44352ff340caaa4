#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "vekBrownLensWarp.h"
#include "vekBrownLensWarpInverter.h"
#include "vekErrorCodes.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

using BrownPtr = SmartPointer<BrownLensWarp>;

const float kLens[8] = {-0.28f, 0.09f, 0.001f, -0.0005f, -0.01f};  // k1, k2, p1, p2, k3

// A 4000 x 3000 camera, focal length 3000, centre (1999.5, 1499.5).
BrownPtr MakeWarp() {
  auto warp = BrownPtr::New();
  warp->SetCameraDimensions(4000, 3000);
  warp->SetFocalLengthX(3000);
  warp->SetFocalLengthY(3000);
  warp->SetCenterX(1999.5f);
  warp->SetCenterY(1499.5f);
  warp->SetDistortionParams(kLens);
  return warp;
}

// The textbook Brown-Conrady distortion in double.
vec2<double> Textbook(double x, double y) {
  const double k1 = kLens[0], k2 = kLens[1], p1 = kLens[2], p2 = kLens[3], k3 = kLens[4];
  const double u = (x - 1999.5) / 3000, v = (y - 1499.5) / 3000;
  const double r2 = u * u + v * v;
  const double radial = 1 + k1 * r2 + k2 * r2 * r2 + k3 * r2 * r2 * r2;
  const double du = u * radial + 2 * p1 * u * v + p2 * (r2 + 2 * u * u);
  const double dv = v * radial + p1 * (r2 + 2 * v * v) + 2 * p2 * u * v;
  return {1999.5 + 3000 * du, 1499.5 + 3000 * dv};
}

std::vector<vec2<float>> ImageGrid(int nx, int ny) {
  std::vector<vec2<float>> points;
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) points.emplace_back(3999.0f * i / (nx - 1), 2999.0f * j / (ny - 1));
  return points;
}

TEST(BrownLensWarp, ForwardIsTheTextbookModel) {
  auto warp = MakeWarp();
  float x, y;
  for (const auto& p : ImageGrid(9, 7)) {
    warp->Forward(p.x, p.y, x, y);
    const vec2<double> expected = Textbook(p.x, p.y);
    EXPECT_NEAR(x, expected.x, 1e-3) << p.x << "," << p.y;
    EXPECT_NEAR(y, expected.y, 1e-3) << p.x << "," << p.y;
  }
  // A hand-worked point: u = 0.5, v = 0 gives r^2 = 0.25, radial 1 - 0.07 + 0.005625 - 0.00015625,
  // du = 0.5 * radial - 0.0005 * (0.25 + 2 * 0.25), dv = 0.001 * 0.25.
  warp->Forward(1999.5f + 1500, 1499.5f, x, y);
  EXPECT_NEAR(x, 1999.5 + 3000 * (0.5 * 0.93546875 - 0.000375), 1e-3);
  EXPECT_NEAR(y, 1499.5 + 3000 * 0.00025, 1e-3);
}

// The general minimizer is checked on every tenth row and column.
TEST(BrownLensWarp, InverseRoundTripsOverTheWholeImageAndAgreesWithTheGeneralMinimizer) {
  auto warp = MakeWarp();
  const std::vector<vec2<float>> grid = ImageGrid(201, 151);
  double worst = 0;
  for (size_t k = 0; k < grid.size(); ++k) {
    const vec2<float>& p = grid[k];
    vec2<float> undistorted, back;
    EXPECT_EQ(warp->Invert(p, undistorted), VEK_SUCCESS);
    warp->Forward(undistorted, back);
    worst = std::max({worst, std::fabs(double(back.x) - p.x), std::fabs(double(back.y) - p.y)});
    if (k % 201 % 10 || k / 201 % 10) continue;
    float x, y;
    EXPECT_EQ(warp->InvertWithMinimizer(p.x, p.y, x, y), VEK_SUCCESS);
    EXPECT_NEAR(x, undistorted.x, 1e-3) << p.x << "," << p.y;
    EXPECT_NEAR(y, undistorted.y, 1e-3) << p.x << "," << p.y;
  }
  EXPECT_LE(worst, 1e-3);
}

TEST(BrownLensWarp, BadInputEndsWithoutHanging) {
  auto warp = MakeWarp();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  float x, y;
  EXPECT_EQ(warp->Invert(nan, 10, x, y), VEK_SUCCESS);
  EXPECT_TRUE(std::isnan(x));
  EXPECT_EQ(warp->Invert(inf, -inf, x, y), VEK_SUCCESS);
  EXPECT_FALSE(std::isfinite(x));
  EXPECT_EQ(warp->InvertWithMinimizer(nan, 10, x, y), VEK_SUCCESS);
  warp->SetFocalLengthX(0);
  EXPECT_EQ(warp->Invert(100, 100, x, y), VEK_SUCCESS);
  EXPECT_EQ(warp->InvertWithMinimizer(100, 100, x, y), VEK_SUCCESS);
  std::vector<vec2<float>> points(10000, vec2<float>(100, 100));
  warp->InplaceInvertArray(points.data(), static_cast<unsigned int>(points.size()));
}

}  // namespace
}  // namespace vek
