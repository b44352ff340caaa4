#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>
#include <vector>

#include "vekBrownLensWarp.h"
#include "vekBrownLensWarpInverter.h"
#include "vekErrorCodes.h"
#include "vekLensWarpIO.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

using BrownPtr = SmartPointer<BrownLensWarp>;

struct Lens {
  double k1, k2, p1, p2, k3;
};
const Lens kStrong{-0.28, 0.09, 0.001, -0.0005, -0.01};

// A 4000 x 3000 camera, focal length 3000, centre (1999.5, 1499.5).
BrownPtr MakeWarp(const Lens& lens) {
  auto warp = BrownPtr::New();
  warp->SetCameraDimensions(4000, 3000);
  warp->SetFocalLengthX(3000);
  warp->SetFocalLengthY(3000);
  warp->SetCenterX(1999.5f);
  warp->SetCenterY(1499.5f);
  const float distortion[8] = {float(lens.k1), float(lens.k2), float(lens.p1), float(lens.p2), float(lens.k3)};
  warp->SetDistortionParams(distortion);
  return warp;
}

// The textbook Brown-Conrady distortion in double.
vec2<double> Textbook(const Lens& l, double x, double y) {
  const double u = (x - 1999.5) / 3000, v = (y - 1499.5) / 3000;
  const double r2 = u * u + v * v;
  const double radial = 1 + l.k1 * r2 + l.k2 * r2 * r2 + l.k3 * r2 * r2 * r2;
  const double du = u * radial + 2 * l.p1 * u * v + l.p2 * (r2 + 2 * u * u);
  const double dv = v * radial + l.p1 * (r2 + 2 * v * v) + 2 * l.p2 * u * v;
  return {1999.5 + 3000 * du, 1499.5 + 3000 * dv};
}

std::vector<vec2<float>> ImageGrid(int nx, int ny) {
  std::vector<vec2<float>> points;
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) points.emplace_back(3999.0f * i / (nx - 1), 2999.0f * j / (ny - 1));
  return points;
}

TEST(BrownLensWarp, BodyRoundTrip) {
  std::ostringstream os;
  ASSERT_EQ(LensWarpIO::WriteToStream(&os, MakeWarp(kStrong).GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(os.str(), "3 1.1 4000 3000 3000 3000 1999.5 1499.5 -0.28 0.09 0.001 -0.0005 -0.01 0 0 0 \n");
  std::istringstream in(os.str());
  SmartPointer<LensWarp> read;
  ASSERT_EQ(LensWarpIO::ReadFromStream(&in, read), VEK_SUCCESS);
  auto* brown = dynamic_cast<BrownLensWarp*>(read.GetPointer());
  ASSERT_NE(brown, nullptr);
  EXPECT_EQ(brown->Getp2(), -0.0005f);
  EXPECT_EQ(brown->GetCenterY(), 1499.5f);
}

TEST(BrownLensWarp, ForwardIsTheTextbookModel) {
  const Lens lenses[] = {kStrong, {0.1, -0.02, -0.003, 0.002, 0.005}};
  for (const Lens& lens : lenses) {
    auto warp = MakeWarp(lens);
    for (const auto& p : ImageGrid(9, 7)) {
      float x, y;
      warp->Forward(p.x, p.y, x, y);
      const vec2<double> expected = Textbook(lens, p.x, p.y);
      EXPECT_NEAR(x, expected.x, 1e-3) << p.x << "," << p.y;
      EXPECT_NEAR(y, expected.y, 1e-3) << p.x << "," << p.y;
    }
  }
  // A hand-worked point: u = 0.5, v = 0 gives r^2 = 0.25, radial 1 - 0.07 + 0.005625 - 0.00015625,
  // du = 0.5 * radial - 0.0005 * (0.25 + 2 * 0.25), dv = 0.001 * 0.25.
  auto warp = MakeWarp(kStrong);
  float x, y;
  warp->Forward(1999.5f + 1500, 1499.5f, x, y);
  EXPECT_NEAR(x, 1999.5 + 3000 * (0.5 * 0.93546875 - 0.000375), 1e-3);
  EXPECT_NEAR(y, 1499.5 + 3000 * 0.00025, 1e-3);
}

TEST(BrownLensWarp, InverseRoundTripsOverTheWholeImage) {
  auto warp = MakeWarp(kStrong);
  double worst = 0;
  for (const auto& p : ImageGrid(201, 151)) {
    vec2<float> undistorted, back;
    EXPECT_EQ(warp->Invert(p, undistorted), VEK_SUCCESS);
    warp->Forward(undistorted, back);
    worst = std::max({worst, std::fabs(double(back.x) - p.x), std::fabs(double(back.y) - p.y)});
  }
  EXPECT_LE(worst, 1e-3);
}

TEST(BrownLensWarp, AgreesWithTheGeneralMinimizer) {
  auto warp = MakeWarp(kStrong);
  for (const auto& p : ImageGrid(21, 16)) {
    float fastX, fastY, generalX, generalY;
    warp->Invert(p.x, p.y, fastX, fastY);
    EXPECT_EQ(warp->InvertWithMinimizer(p.x, p.y, generalX, generalY), VEK_SUCCESS);
    EXPECT_NEAR(fastX, generalX, 1e-3) << p.x << "," << p.y;
    EXPECT_NEAR(fastY, generalY, 1e-3) << p.x << "," << p.y;
  }
}

TEST(BrownLensWarp, ArraysAreTheOnePointResults) {
  auto warp = MakeWarp(kStrong);
  for (bool forward : {true, false}) {
    std::vector<vec2<float>> points = ImageGrid(160, 120);  // enough to be split over threads
    points[5] = points.back() = vec2<float>();
    std::vector<vec2<float>> expected = points;
    for (auto& p : expected) {
      const vec2<float> in = p;
      if (!in.IsUnset()) forward ? warp->Forward(in, p) : void(warp->Invert(in, p));
    }
    const unsigned int n = static_cast<unsigned int>(points.size());
    forward ? warp->InplaceForwardArray(points.data(), n) : warp->InplaceInvertArray(points.data(), n);
    EXPECT_EQ(std::memcmp(points.data(), expected.data(), n * sizeof(vec2<float>)), 0) << forward;
    EXPECT_TRUE(points[5].IsUnset());
  }
}

TEST(BrownLensWarp, BadInputEndsWithoutHanging) {
  auto warp = MakeWarp(kStrong);
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
