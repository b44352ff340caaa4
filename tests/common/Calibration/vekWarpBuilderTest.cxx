#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "vekErrorCodes.h"
#include "vekFlatScreenModel.h"
#include "vekProjectorFootprint.h"
#include "vekSmartPointer.h"
#include "vekWarpBuilder.h"

namespace vek {
namespace {

// A projector of columns x rows spots spread over its pixels, seen by a camera that shows its
// pixels shifted by `offset` (no lens): camera pixel = projector pixel + offset.
SmartPointer<ProjectorFootprint> ShiftedProjector(int width, int height, int columns, int rows, double offset) {
  std::vector<vec2<float>> projector, camera;
  for (int j = 0; j < rows; ++j)
    for (int i = 0; i < columns; ++i) {
      const float x = static_cast<float>(i * (width - 1.0) / (columns - 1));
      const float y = static_cast<float>(j * (height - 1.0) / (rows - 1));
      projector.emplace_back(x, y);
      camera.emplace_back(static_cast<float>(x + offset), y);
    }
  auto footprint = SmartPointer<ProjectorFootprint>::New();
  EXPECT_EQ(footprint->Build(columns, rows, projector, camera, nullptr), VEK_SUCCESS);
  return footprint;
}

SmartPointer<FlatScreenModel> FillRectangle(double left, double top, double right, double bottom) {
  auto screen = SmartPointer<FlatScreenModel>::New();
  const vec2<double> corners[4] = {{left, top}, {right, top}, {left, bottom}, {right, bottom}};
  EXPECT_EQ(screen->SetFillRegion(corners), VEK_SUCCESS);
  return screen;
}

double XYArea(const TextureMesh& warp) {
  double area = 0;
  for (int t = 0; t < warp.GetNumTriangles(); ++t) {
    int a, b, c;
    warp.GetTriangle(t, a, b, c);
    const vec2<float>&p = warp.GetPointXY(a), &q = warp.GetPointXY(b), &r = warp.GetPointXY(c);
    area += 0.5 * std::abs((q.x - p.x) * (r.y - p.y) - (q.y - p.y) * (r.x - p.x));
  }
  return area;
}

TEST(WarpBuilder, AProjectorAloneIsCutExactlyAtTheFillEdgeWithAlphaOne) {
  auto footprint = ShiftedProjector(401, 201, 5, 3, 0);
  auto screen = FillRectangle(100, 50, 300, 150);
  auto builder = SmartPointer<WarpBuilder>::New();
  builder->SetProjectors({footprint.GetPointer()});
  builder->SetScreen(screen.GetPointer());
  builder->SetStep(60);
  ASSERT_EQ(builder->Build(0, {}), VEK_SUCCESS);
  // 400 pixels in steps of at most 60: 7 intervals; 200 pixels: 4.
  EXPECT_EQ(builder->GetGridColumns(), 8);
  EXPECT_EQ(builder->GetGridRows(), 5);
  const TextureMesh& warp = *builder->GetWarp();
  for (int v = 0; v < warp.GetNumPoints(); ++v) {
    const vec2<float>& xy = warp.GetPointXY(v);
    const vec2<float>& uv = warp.GetPointUV(v);
    EXPECT_EQ(warp.GetAlpha(v), 1);
    EXPECT_GE(uv.x, 0);
    EXPECT_LE(uv.x, 1);
    EXPECT_GE(uv.y, 0);
    EXPECT_LE(uv.y, 1);
    EXPECT_NEAR(xy.x, 100 + 200 * uv.x, 1e-3);  // the content map is linear here, so exact
    EXPECT_NEAR(xy.y, 50 + 100 * uv.y, 1e-3);
  }
  // Cut vertices are shared: the warp covers the fill rectangle once, without gaps or overlaps.
  EXPECT_NEAR(builder->GetCoverage(), 1, 1e-9);
  EXPECT_NEAR(XYArea(warp), 200 * 100, 1e-2);
}

TEST(WarpBuilder, OverlappingProjectorsShareTheLightAndKeepAlphaOneWhereAlone) {
  // Two 301-pixel-wide projectors side by side in the camera, overlapping by 101 pixels.
  auto left = ShiftedProjector(301, 101, 7, 3, 0);
  auto right = ShiftedProjector(301, 101, 7, 3, 200);
  auto screen = FillRectangle(0, 0, 500, 100);
  auto builder = SmartPointer<WarpBuilder>::New();
  builder->SetProjectors({left.GetPointer(), right.GetPointer()});
  builder->SetScreen(screen.GetPointer());
  builder->SetStep(25);
  builder->SetGamma(2);
  ASSERT_EQ(builder->Build(0, {1}), VEK_SUCCESS);
  const TextureMesh& warp = *builder->GetWarp();
  int checked = 0;
  for (int v = 0; v < warp.GetNumPoints(); ++v) {
    const vec2<float>& xy = warp.GetPointXY(v);
    if (xy.x < 200) {
      EXPECT_EQ(warp.GetAlpha(v), 1) << xy.x;  // the right projector does not reach here
    } else if (xy.x < 300) {
      // Worked out by hand from the weights: w = (4 s (1 - s) * 4 t (1 - t))^2, the t factor
      // being the same for both, s = x / 300 here and (x - 200) / 300 there.
      const double s0 = xy.x / 300.0, s1 = (xy.x - 200) / 300.0;
      const double w0 = std::pow(s0 * (1 - s0), 2), w1 = std::pow(s1 * (1 - s1), 2);
      // On the top and bottom rows both weights vanish; the shares are those just inside.
      const bool edge = xy.y < 1e-3 || xy.y > 100 - 1e-3;
      EXPECT_NEAR(warp.GetAlpha(v), std::sqrt(w0 / (w0 + w1)), edge ? 1e-3 : 1e-5) << xy.x << " " << xy.y;
      ++checked;
    }
  }
  EXPECT_GT(checked, 5);
}

TEST(WarpBuilder, ABentScreenRefinesTheGridWhereTheContentMapCurves) {
  // The camera sees row y of the projector at y + y^2 / 400: the content map curves along y only.
  std::vector<vec2<float>> projector, camera;
  for (int j = 0; j < 11; ++j)
    for (int i = 0; i < 11; ++i) {
      const float x = i * 40.0f, y = j * 20.0f;
      projector.emplace_back(x, y);
      camera.emplace_back(x, y + y * y / 400);
    }
  auto footprint = SmartPointer<ProjectorFootprint>::New();
  ASSERT_EQ(footprint->Build(11, 11, projector, camera, nullptr), VEK_SUCCESS);
  auto screen = FillRectangle(0, 0, 400, 300);
  auto builder = SmartPointer<WarpBuilder>::New();
  builder->SetProjectors({footprint.GetPointer()});
  builder->SetScreen(screen.GetPointer());
  builder->SetStep(50);
  builder->SetContentSize(400, 300);
  ASSERT_EQ(builder->Build(0, {}), VEK_SUCCESS);
  EXPECT_EQ(builder->GetGridColumns(), 9);  // 400 / 50 intervals, straight along x
  EXPECT_EQ(builder->GetGridRows(), 4 * 4 + 1);  // every interval of 50 split in four
  // Mid-interval the bend is 50^2 / 8 * 2 / 400 = 1.5625 camera pixels: as many content pixels
  // when a content pixel is a camera pixel (400 x 300), but only 0.078 when it is 20 (20 x 15).
  builder->SetContentSize(20, 15);
  ASSERT_EQ(builder->Build(0, {}), VEK_SUCCESS);
  EXPECT_EQ(builder->GetGridRows(), 5);
}

TEST(WarpBuilder, RefusesMissingInputs) {
  auto builder = SmartPointer<WarpBuilder>::New();
  EXPECT_EQ(builder->Build(0, {}) & 0x7FFF, VEK_INVALID_PARAMETERS);
  auto footprint = ShiftedProjector(101, 101, 3, 3, 0);
  auto screen = FillRectangle(0, 0, 100, 100);
  builder->SetProjectors({footprint.GetPointer()});
  builder->SetScreen(screen.GetPointer());
  EXPECT_EQ(builder->Build(0, {3}) & 0x7FFF, VEK_INVALID_PARAMETERS);
  EXPECT_EQ(builder->GetWarp(), nullptr);
}

}  // namespace
}  // namespace vek
