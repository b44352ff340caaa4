#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "vekBlendWeight.h"
#include "vekErrorHelper.h"
#include "vekErrorCodes.h"
#include "vekFlatScreenModel.h"
#include "vekHomography.h"
#include "vekProjectorFootprint.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

// A keystoned map with a visible perspective term, worked out by hand:
// x' = (2x + 0.1y + 30) / w, y' = (0.05x + 1.5y + 40) / w, w = 1e-4 x + 2e-4 y + 1.
vec2<double> Keystone(const vec2<double>& p) {
  const double w = 1e-4 * p.x + 2e-4 * p.y + 1;
  return {(2 * p.x + 0.1 * p.y + 30) / w, (0.05 * p.x + 1.5 * p.y + 40) / w};
}

std::vector<vec2<double>> GridPoints(int columns, int rows, double step) {
  std::vector<vec2<double>> points;
  for (int j = 0; j < rows; ++j)
    for (int i = 0; i < columns; ++i) points.push_back({i * step, j * step});
  return points;
}

TEST(Homography, FitRecoversAKnownMapAndItsInverse) {
  std::vector<vec2<double>> from = GridPoints(5, 4, 100), to;
  for (const auto& p : from) to.push_back(Keystone(p));
  Homography h;
  ASSERT_EQ(Homography::Fit(from, to, h), VEK_SUCCESS);
  const double expected[9] = {2, 0.1, 30, 0.05, 1.5, 40, 1e-4, 2e-4, 1};
  for (int k = 0; k < 9; ++k) EXPECT_NEAR(h.GetMatrix()[k], expected[k], 1e-9 * (1 + std::abs(expected[k])));

  Homography inverse;
  ASSERT_EQ(h.Invert(inverse), VEK_SUCCESS);
  vec2<double> there, back;
  ASSERT_TRUE(h.Apply({123.5, 321.25}, there));
  ASSERT_TRUE(inverse.Apply(there, back));
  EXPECT_NEAR(back.x, 123.5, 1e-9);
  EXPECT_NEAR(back.y, 321.25, 1e-9);
}

TEST(Homography, RefusesTooFewOrCollinearPairsAndSkipsUnsetOnes) {
  Homography h;
  const std::vector<vec2<double>> line = {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}};
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(Homography::Fit(line, line, h)), VEK_INVALID_PARAMETERS);
  std::vector<vec2<double>> square = {{0, 0}, {1, 0}, {0, 1}, {1, 1}, {}};
  std::vector<vec2<double>> moved = {{5, 5}, {6, 5}, {5, 6}, {6, 6}, {9, 9}};
  moved[4] = vec2<double>();  // unset on one side: the pair is left out
  ASSERT_EQ(Homography::Fit(square, moved, h), VEK_SUCCESS);
  vec2<double> out;
  ASSERT_TRUE(h.Apply({0.5, 0.5}, out));
  EXPECT_NEAR(out.x, 5.5, 1e-12);
  EXPECT_NEAR(out.y, 5.5, 1e-12);
  square.pop_back();
  square.pop_back();
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(Homography::Fit(square, moved, h)), VEK_INVALID_PARAMETERS);
}

TEST(FlatScreenModel, CornersGoToTheContentCornersAndBadOrdersAreRefused) {
  auto screen = SmartPointer<FlatScreenModel>::New();
  const vec2<double> corners[4] = {{100, 200}, {900, 180}, {120, 700}, {880, 720}};
  ASSERT_EQ(screen->SetFillRegion(corners), VEK_SUCCESS);
  const vec2<double> content[4] = {{0, 0}, {1, 0}, {0, 1}, {1, 1}};
  for (int k = 0; k < 4; ++k) {
    vec2<double> uv;
    ASSERT_TRUE(screen->CameraToContent(corners[k], uv));
    EXPECT_NEAR(uv.x, content[k].x, 1e-12);
    EXPECT_NEAR(uv.y, content[k].y, 1e-12);
  }
  // The boundary order is 0, 1, 3, 2: swapping 2 and 3 crosses it.
  const vec2<double> crossed[4] = {corners[0], corners[1], corners[3], corners[2]};
  const vec2<double> repeated[4] = {corners[0], corners[0], corners[2], corners[3]};
  for (const auto* bad : {crossed, repeated})
    EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(screen->SetFillRegion(bad)), VEK_INVALID_PARAMETERS);
}

TEST(BlendWeight, ZeroAtTheEdgeAndSharesThatAddUpToOne) {
  const BlendWeight weight({0, 0}, {100, 50}, 2.0);
  EXPECT_EQ(weight.Weight({0, 25}), 0);
  EXPECT_EQ(weight.Weight({100, 25}), 0);
  EXPECT_EQ(weight.Weight({-1, 25}), 0);
  EXPECT_DOUBLE_EQ(weight.Weight({50, 25}), 1);  // (4 * 0.25 * 4 * 0.25)^2
  EXPECT_DOUBLE_EQ(weight.Weight({25, 25}), 0.75 * 0.75);
  // Alone, a projector keeps alpha 1 even on its edge; two shares' light (alpha^gamma) adds to 1.
  EXPECT_EQ(BlendWeight::Alpha(0, 0, 1, 2.2), 1);
  EXPECT_DOUBLE_EQ(std::pow(BlendWeight::Alpha(0, 0, 2, 2.2), 2.2), 0.5);
  const double a = BlendWeight::Alpha(0.3, 0.4, 2, 2.2), b = BlendWeight::Alpha(0.1, 0.4, 2, 2.2);
  EXPECT_NEAR(std::pow(a, 2.2) + std::pow(b, 2.2), 1, 1e-12);
}

std::vector<vec2<float>> ToFloat(const std::vector<vec2<double>>& points) {
  std::vector<vec2<float>> result;
  for (const auto& p : points) result.emplace_back(static_cast<float>(p.x), static_cast<float>(p.y));
  return result;
}

TEST(ProjectorFootprint, FillsAMissingSpotAndReportsZeroResidualsOnAFlatScreen) {
  const std::vector<vec2<double>> projector = GridPoints(6, 5, 40);
  std::vector<vec2<double>> camera;
  for (const auto& p : projector) camera.push_back(Keystone(p));
  std::vector<vec2<float>> seen = ToFloat(camera);
  seen[2 * 6 + 3] = vec2<float>();  // spot (3, 2) not found
  auto footprint = SmartPointer<ProjectorFootprint>::New();
  ASSERT_EQ(footprint->Build(6, 5, ToFloat(projector), seen, nullptr), VEK_SUCCESS);
  EXPECT_EQ(footprint->GetNumberOfFoundSpots(), 29);
  EXPECT_EQ(footprint->GetNumberOfFilledSpots(), 1);
  // The six triangles around the missing spot leave the footprint, not the mapping.
  EXPECT_EQ(footprint->GetCameraMesh()->GetNumTriangles(), 2 * 5 * 4 - 6);
  EXPECT_EQ(footprint->GetMappingCameraMesh()->GetNumTriangles(), 2 * 5 * 4);
  // The local quadratic follows this strong keystone (5% across the grid) to a hundredth of a pixel.
  const vec2<float>& filled = footprint->GetMappingCameraMesh()->GetPoint(2 * 6 + 3);
  EXPECT_NEAR(filled.x, camera[2 * 6 + 3].x, 0.02);
  EXPECT_NEAR(filled.y, camera[2 * 6 + 3].y, 0.02);
  EXPECT_LT(footprint->GetResidualMax(), 1e-3);

  vec2<double> pixel;
  const vec2<double> inside = Keystone({70, 90});
  ASSERT_TRUE(footprint->CameraToProjector(vec2<float>(inside.x, inside.y), pixel));
  EXPECT_NEAR(pixel.x, 70, 0.1);  // linear within a 40-pixel triangle of a keystone
  EXPECT_NEAR(pixel.y, 90, 0.1);
  EXPECT_FALSE(footprint->CameraToProjector(vec2<float>(-100, -100), pixel));
}

TEST(ProjectorFootprint, TheMappingAveragesDetectionNoise) {
  const std::vector<vec2<double>> projector = GridPoints(15, 11, 60);
  std::vector<vec2<double>> truth;
  std::vector<vec2<float>> measured;
  unsigned state = 12345;  // a fixed small generator, the same on every platform
  auto jitter = [&state]() {
    state = state * 1103515245u + 12345u;
    return ((state >> 8) % 2001) / 1000.0 - 1.0;  // uniform in [-1, 1]: 0.58 px RMS
  };
  for (const auto& p : projector) {
    truth.push_back({0.7 * p.x + 100, 0.7 * p.y + 50});
    measured.emplace_back(static_cast<float>(truth.back().x + jitter()), static_cast<float>(truth.back().y + jitter()));
  }
  auto footprint = SmartPointer<ProjectorFootprint>::New();
  ASSERT_EQ(footprint->Build(15, 11, ToFloat(projector), measured, nullptr), VEK_SUCCESS);
  double measuredSquares = 0, mappedSquares = 0;
  for (size_t k = 0; k < truth.size(); ++k) {
    const vec2<float>& mapped = footprint->GetMappingCameraMesh()->GetPoint(static_cast<int>(k));
    measuredSquares += std::pow(measured[k].x - truth[k].x, 2) + std::pow(measured[k].y - truth[k].y, 2);
    mappedSquares += std::pow(mapped.x - truth[k].x, 2) + std::pow(mapped.y - truth[k].y, 2);
  }
  // Six parameters fitted to 49 spots keep about a third of the noise power, more at the edges.
  EXPECT_LT(mappedSquares, 0.5 * measuredSquares);
  // The residuals are those of the measured spots, which the mapping leaves alone.
  EXPECT_NEAR(footprint->GetResidualRMS(), std::sqrt(measuredSquares / truth.size()), 0.05);
}

TEST(ProjectorFootprint, TooFewSpotsAndMismatchedSizesAreRefused) {
  const std::vector<vec2<float>> projector = ToFloat(GridPoints(3, 2, 10));
  std::vector<vec2<float>> camera = projector;
  for (int k = 3; k < 6; ++k) camera[k] = vec2<float>();
  auto footprint = SmartPointer<ProjectorFootprint>::New();
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(footprint->Build(3, 2, projector, camera, nullptr)),
            VEK_TOO_FEW_SPOTS_FOUND);
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(footprint->Build(2, 2, projector, projector, nullptr)),
            VEK_INVALID_PARAMETERS);
  EXPECT_EQ(footprint->GetCameraMesh(), nullptr);  // a failed build leaves the object as it was
}

}  // namespace
}  // namespace vek
