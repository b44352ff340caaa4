#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "vekCalibrationAccuracy.h"
#include "vekCalibrationFolder.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekSyntheticWall.h"
#include "vekTestSupport.h"
#include "vekTextureMesh.h"

namespace vek {
namespace {

int Code(int status) { return ErrorHelper::GetErrorWithoutCustomMessageFlag(status); }

SmartPointer<SyntheticWall> Wall(SyntheticWall::Parameters parameters = {}) {
  auto wall = SmartPointer<SyntheticWall>::New();
  EXPECT_EQ(wall->Generate(parameters), VEK_SUCCESS);
  return wall;
}

SyntheticWall::Parameters Exact() {
  SyntheticWall::Parameters p;
  p.NoiseSigma = 0;
  return p;
}

SyntheticWall::Parameters TwoByOne() {
  SyntheticWall::Parameters p;
  p.Columns = 2;
  p.Rows = 1;
  return p;
}

TEST(SyntheticWall, ProjectorAndContentMapsInvertEachOther) {
  auto wall = Wall();
  ASSERT_EQ(wall->GetNumberOfProjectors(), 6);
  for (int p = 0; p < 6; ++p) {
    for (const vec2<double> xy : {vec2<double>(0, 0), vec2<double>(1919, 1079), vec2<double>(700.25, 333.5)}) {
      const vec2<double> back = wall->ContentToProjector(p, wall->ProjectorToContent(p, xy));
      EXPECT_NEAR(back.x, xy.x, 1e-8);
      EXPECT_NEAR(back.y, xy.y, 1e-8);
    }
  }
  const vec2<double> origin = wall->ScreenToContent(wall->GetFillMin());
  const vec2<double> far = wall->ScreenToContent(wall->GetFillMax());
  EXPECT_EQ(origin, vec2<double>(0, 0));
  EXPECT_EQ(far, vec2<double>(1, 1));
  EXPECT_TRUE(std::isnan(wall->ProjectorToContent(6, {0, 0}).x));
  EXPECT_TRUE(std::isnan(wall->ContentToProjector(-1, {0, 0}).x));
}

TEST(SyntheticWall, ExactSpotsAreTheTrueCameraPixelsThroughTheLens) {
  auto wall = Wall(Exact());
  const BrownLensWarp* lens = wall->GetLens();
  vec2<double> min{1e9, 1e9}, max{-1e9, -1e9};
  for (int p = 0; p < wall->GetNumberOfProjectors(); ++p) {
    const SpotGrid* grid = wall->GetSpotGrid(p);
    ASSERT_EQ(grid->GetColumns() * grid->GetRows(), 33 * 19);
    EXPECT_EQ(grid->GetProjectorPoints()[32], vec2<float>(1919, 0));
    EXPECT_EQ(grid->GetProjectorPoints()[33 * 19 - 1], vec2<float>(1919, 1079));
    for (size_t n = 0; n < grid->GetCameraPoints().size(); ++n) {
      const vec2<float>& seen = grid->GetCameraPoints()[n];
      if (seen.IsUnset()) continue;
      EXPECT_TRUE(seen.x > 0 && seen.x < 4000 && seen.y > 0 && seen.y < 3000);
      const vec2<float>& pixel = grid->GetProjectorPoints()[n];
      const vec2<double> truth = wall->ProjectorToCamera(p, {pixel.x, pixel.y});
      vec2<float> undistorted;
      lens->Invert(seen, undistorted);
      EXPECT_NEAR(undistorted.x, truth.x, 2e-3);
      EXPECT_NEAR(undistorted.y, truth.y, 2e-3);
      min = vec2<double>(std::min(min.x, truth.x), std::min(min.y, truth.y));
      max = vec2<double>(std::max(max.x, truth.x), std::max(max.y, truth.y));
    }
  }
  // The wall fills most of the frame's width (its wide side) with a margin left.
  EXPECT_GT(max.x - min.x, 0.85 * 4000);
  EXPECT_GT(min.x, 100);
  EXPECT_LT(max.x, 3900);
}

TEST(SyntheticWall, NoiseAndLostSpotsLeaveTheGeometryAlone) {
  auto exact = Wall(Exact());
  auto noisy = Wall();
  EXPECT_EQ(noisy->GetFillMin(), exact->GetFillMin());
  EXPECT_EQ(noisy->GetFillMax(), exact->GetFillMax());
  double sum = 0;
  int coordinates = 0;
  for (int p = 0; p < 6; ++p) {
    const auto& a = exact->GetSpotGrid(p)->GetCameraPoints();
    const auto& b = noisy->GetSpotGrid(p)->GetCameraPoints();
    int lostOnBorder = 0, lostInside = 0;
    for (size_t n = 0; n < a.size(); ++n) {
      ASSERT_EQ(a[n].IsUnset(), b[n].IsUnset());
      if (a[n].IsUnset()) {
        const int i = static_cast<int>(n % 33), j = static_cast<int>(n / 33);
        ++((i == 0 || j == 0 || i == 32 || j == 18) ? lostOnBorder : lostInside);
        continue;
      }
      sum += std::pow(b[n].x - a[n].x, 2) + std::pow(b[n].y - a[n].y, 2);
      coordinates += 2;
    }
    EXPECT_GE(lostOnBorder, 2);
    EXPECT_LE(lostOnBorder, 4);
    EXPECT_EQ(lostInside, 1 + p % 2);
  }
  // About 7500 normal deviates: their RMS is 0.1 to within a few thousandths.
  EXPECT_NEAR(std::sqrt(sum / coordinates), 0.1, 0.005);

  SyntheticWall::Parameters reseeded;
  reseeded.Seed = 99;
  auto other = Wall(reseeded);
  auto again = Wall();
  EXPECT_EQ(again->GetSpotGrid(3)->GetCameraPoints(), noisy->GetSpotGrid(3)->GetCameraPoints());
  EXPECT_NE(other->GetSpotGrid(3)->GetCameraPoints(), noisy->GetSpotGrid(3)->GetCameraPoints());
}

TEST(SyntheticWall, EveryFillPointIsLitAndTheFillKeepsInsideTheOuterEdges) {
  for (const auto& parameters : {SyntheticWall::Parameters(), TwoByOne()}) {
    auto wall = Wall(parameters);
    const vec2<double> min = wall->GetFillMin(), max = wall->GetFillMax();
    for (int j = 0; j <= 100; ++j) {
      for (int i = 0; i <= 200; ++i) {
        const vec2<double> s(min.x + (max.x - min.x) * i / 200, min.y + (max.y - min.y) * j / 100);
        int lit = 0;
        for (int p = 0; p < wall->GetNumberOfProjectors(); ++p) lit += wall->IsInsideProjector(p, s) ? 1 : 0;
        ASSERT_GE(lit, 1) << i << " " << j;
      }
    }
    // The inset: a point 1% of a projector inside the fill's corner is still inside the wall.
    const vec2<double> outside(min.x - 0.01 * 1920, min.y - 0.01 * 1080);
    EXPECT_TRUE(wall->IsInsideProjector(0, outside));
  }
}

TEST(SyntheticWall, RefusesParametersThatCouldOpenGapsAndKeepsItsWall) {
  auto wall = Wall(TwoByOne());
  const vec2<double> fill = wall->GetFillMax();
  std::vector<SyntheticWall::Parameters> bad(6, TwoByOne());
  bad[0].Columns = 0;
  bad[1].Keystone = 0.08;  // 2 x 0.08 is not below the overlap 0.15
  bad[2].Overlap = 0.5;
  bad[3].SpotRows = 1;
  bad[4].NoiseSigma = -0.1;
  bad[5].Inset = 0.25;
  for (const auto& p : bad) EXPECT_EQ(Code(wall->Generate(p)), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(wall->GetNumberOfProjectors(), 2);
  EXPECT_EQ(wall->GetFillMax(), fill);
  // One projector has no neighbour to leave a gap to.
  SyntheticWall::Parameters single;
  single.Columns = single.Rows = 1;
  single.Overlap = 0;
  EXPECT_EQ(wall->Generate(single), VEK_SUCCESS);
}

TEST(SyntheticWall, WritesAFolderThatReadsBackToTheSameMeasurements) {
  test::TempDirectory dir;
  auto wall = Wall(TwoByOne());
  ASSERT_EQ(wall->WriteCalibrationFolder(dir.Path().string()), VEK_SUCCESS);
  auto folder = SmartPointer<CalibrationFolder>::New();
  ASSERT_EQ(folder->Read(dir.Path().string()), VEK_SUCCESS);
  ASSERT_EQ(folder->GetNumberOfSpotGrids(), 2);
  for (int p = 0; p < 2; ++p) {
    EXPECT_EQ(folder->GetSpotGrid(p)->GetCameraPoints(), wall->GetSpotGrid(p)->GetCameraPoints());
    EXPECT_EQ(folder->GetSpotGrid(p)->GetProjectorPoints(), wall->GetSpotGrid(p)->GetProjectorPoints());
  }
  const OrderedQuadrilateral fill = wall->GetCameraFillRegion();
  for (int k = 0; k < 4; ++k) EXPECT_EQ(folder->GetFillRegion().GetPoint(k), fill.GetPoint(k));
  // Corner 0 shows content (0, 0), the top-left of the image: left of and above corner 3.
  EXPECT_LT(fill.GetPoint(0).x, fill.GetPoint(3).x);
  EXPECT_LT(fill.GetPoint(0).y, fill.GetPoint(3).y);
  auto* lens = dynamic_cast<BrownLensWarp*>(folder->GetLens());
  ASSERT_NE(lens, nullptr);
  EXPECT_EQ(lens->Getk1(), SyntheticWall::kK1);
  EXPECT_EQ(lens->Getp2(), SyntheticWall::kP2);
  EXPECT_EQ(lens->Getk3(), SyntheticWall::kK3);
  EXPECT_EQ(lens->GetFocalLengthY(), SyntheticWall::kFocalLength);
  EXPECT_EQ(lens->GetCenterX(), SyntheticWall::kCenterX);
}

// A warp made from the ground truth: vertices every `step` projector pixels over the spot area
// (squeezed to start at x = `left` instead of 0), XY exact, UV the true content point, alpha from
// `alpha` at the vertex's screen point.
SmartPointer<TextureMesh> PerfectWarp(const SyntheticWall& wall, int p, int step,
                                      const std::function<double(int, const vec2<double>&)>& alpha,
                                      double left = 0) {
  const int w = wall.GetParameters().ProjectorWidth, h = wall.GetParameters().ProjectorHeight;
  const int nx = (w - 1 + step - 1) / step + 1, ny = (h - 1 + step - 1) / step + 1;
  auto mesh = SmartPointer<TextureMesh>::New();
  mesh->SetNumPoints(nx * ny);
  mesh->SetNumTriangles(2 * (nx - 1) * (ny - 1));
  EXPECT_EQ(mesh->Allocate(), VEK_SUCCESS);
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) {
      const double x = std::min(i * step, w - 1);
      const vec2<double> xy(left + x * (w - 1 - left) / (w - 1), std::min(j * step, h - 1));
      const vec2<double> uv = wall.ProjectorToContent(p, xy);
      mesh->AddPoint(j * nx + i, static_cast<float>(xy.x), static_cast<float>(xy.y), static_cast<float>(uv.x),
                     static_cast<float>(uv.y), static_cast<float>(alpha(p, wall.ProjectorToScreen(p, xy))));
    }
  int t = 0;
  for (int j = 0; j + 1 < ny; ++j)
    for (int i = 0; i + 1 < nx; ++i) {
      const int a = j * nx + i;
      mesh->AddTriangle(t++, a, a + 1, a + nx);
      mesh->AddTriangle(t++, a + 1, a + nx + 1, a + nx);
    }
  return mesh;
}

std::vector<const TextureMesh*> Pointers(const std::vector<SmartPointer<TextureMesh>>& meshes) {
  std::vector<const TextureMesh*> pointers;
  for (const auto& m : meshes) pointers.push_back(m.GetPointer());
  return pointers;
}

// The share of the fill region lit by exactly `count` projectors (counting only `among`), on a
// fine regular grid: the brute-force reference for what the random samples estimate.
double ShareLitBy(const SyntheticWall& wall, int count, const std::vector<int>& among) {
  const vec2<double> min = wall.GetFillMin(), max = wall.GetFillMax();
  int hits = 0, total = 0;
  for (int j = 0; j < 400; ++j)
    for (int i = 0; i < 800; ++i) {
      const vec2<double> s(min.x + (max.x - min.x) * (i + 0.5) / 800, min.y + (max.y - min.y) * (j + 0.5) / 400);
      int lit = 0;
      for (int p : among) lit += wall.IsInsideProjector(p, s) ? 1 : 0;
      hits += lit == count ? 1 : 0;
      ++total;
    }
  return static_cast<double>(hits) / total;
}

TEST(CalibrationAccuracy, AWarpFromTheGroundTruthHasNoContentErrorAndOneMovedVertexShows) {
  auto wall = Wall(TwoByOne());
  std::vector<SmartPointer<TextureMesh>> warps;
  for (int p = 0; p < 2; ++p) warps.push_back(PerfectWarp(*wall, p, 64, [](int, const vec2<double>&) { return 1.0; }));
  CalibrationAccuracy::Result result;
  ASSERT_EQ(CalibrationAccuracy::Evaluate(*wall, Pointers(warps), 2.2, result, 1000), VEK_SUCCESS);
  const int vertices = warps[0]->GetNumPoints() + warps[1]->GetNumPoints();
  EXPECT_EQ(result.ContentVertices, vertices);
  EXPECT_LT(result.ContentErrorMax, 2e-3);
  EXPECT_EQ(result.ContentTarget, CalibrationAccuracy::kContentTargetNoisy);

  const vec2<float> xy = warps[1]->GetPointXY(40), uv = warps[1]->GetPointUV(40);
  warps[1]->AddPoint(40, xy.x + 3, xy.y + 4, uv.x, uv.y, 1);
  // Markers of the clipped writer and unset points are not vertices that show anything.
  warps[0]->AddPoint(0, TextureMesh::kDroppedX, TextureMesh::kDroppedY, 0.5f, 0.5f, 1);
  warps[0]->AddPoint(1, -5, -5, 0.5f, 0.5f, 1);
  ASSERT_EQ(CalibrationAccuracy::Evaluate(*wall, Pointers(warps), 2.2, result, 1000), VEK_SUCCESS);
  EXPECT_EQ(result.ContentVertices, vertices - 2);
  EXPECT_NEAR(result.ContentErrorMax, 5, 2e-3);
  EXPECT_NEAR(result.ContentErrorRMS, 5 / std::sqrt(vertices - 2.0), 2e-3);
}

TEST(CalibrationAccuracy, BlendErrorIsTheLightSummedOverTheProjectorsAtThePoint) {
  SyntheticWall::Parameters single;
  single.Columns = single.Rows = 1;
  auto one = Wall(single);
  std::vector<SmartPointer<TextureMesh>> warps{
      PerfectWarp(*one, 0, 128, [](int, const vec2<double>&) { return 0.9; })};
  CalibrationAccuracy::Result result;
  ASSERT_EQ(CalibrationAccuracy::Evaluate(*one, Pointers(warps), 2.0, result), VEK_SUCCESS);
  EXPECT_NEAR(result.BlendErrorMax, 0.19, 1e-6);
  EXPECT_NEAR(result.BlendErrorRMS, 0.19, 1e-6);
  EXPECT_EQ(result.Samples, CalibrationAccuracy::kDefaultSamples);
  EXPECT_EQ(result.UncoveredSamples, 0);
  ASSERT_EQ(CalibrationAccuracy::Evaluate(*one, Pointers(warps), 1.0, result), VEK_SUCCESS);
  EXPECT_NEAR(result.BlendErrorMax, 0.1, 1e-6);

  // Two projectors at full light: the overlap gets twice the light (error 1), the rest is right.
  auto two = Wall(TwoByOne());
  warps.clear();
  for (int p = 0; p < 2; ++p) warps.push_back(PerfectWarp(*two, p, 64, [](int, const vec2<double>&) { return 1.0; }));
  ASSERT_EQ(CalibrationAccuracy::Evaluate(*two, Pointers(warps), 2.2, result), VEK_SUCCESS);
  EXPECT_NEAR(result.BlendErrorMax, 1, 1e-6);
  EXPECT_NEAR(result.BlendErrorRMS, std::sqrt(ShareLitBy(*two, 2, {0, 1})), 0.005);
  EXPECT_FALSE(result.BlendPassed());

  // A projector with no warp leaves a hole where it alone was seen.
  warps[1] = SmartPointer<TextureMesh>::New();
  ASSERT_EQ(CalibrationAccuracy::Evaluate(*two, Pointers(warps), 2.2, result), VEK_SUCCESS);
  EXPECT_NEAR(static_cast<double>(result.UncoveredSamples) / result.Samples, ShareLitBy(*two, 1, {1}) -
                                                                                  ShareLitBy(*two, 2, {0, 1}), 0.005);
  EXPECT_GT(result.UncoveredSamples, 0);
  EXPECT_NEAR(result.BlendErrorMax, 0, 1e-6);
  EXPECT_FALSE(result.CoveragePassed());
}

TEST(CalibrationAccuracy, ASliverAlongTheBorderNarrowerThanTheContentTargetIsNoHole) {
  // Without keystone a lone projector's pixels are screen units: the fill starts at pixel
  // GetFillMin().x, and a warp starting `miss` pixels further right leaves a strip that wide.
  SyntheticWall::Parameters single;
  single.Columns = single.Rows = 1;
  single.Keystone = 0;
  auto wall = Wall(single);
  const double fillWidth = wall->GetFillMax().x - wall->GetFillMin().x;
  for (const double miss : {0.3, 3.0}) {
    std::vector<SmartPointer<TextureMesh>> warps{
        PerfectWarp(*wall, 0, 64, [](int, const vec2<double>&) { return 1.0; }, wall->GetFillMin().x + miss)};
    CalibrationAccuracy::Result result;
    ASSERT_EQ(CalibrationAccuracy::Evaluate(*wall, Pointers(warps), 2.2, result), VEK_SUCCESS);
    ASSERT_EQ(result.ContentTarget, 0.5);
    const double expected = miss / fillWidth * result.Samples;
    const int strip = miss < result.ContentTarget ? result.BorderSamples : result.UncoveredSamples;
    const int other = miss < result.ContentTarget ? result.UncoveredSamples : result.BorderSamples;
    EXPECT_NEAR(strip, expected, 0.25 * expected + 5) << miss;
    EXPECT_EQ(other, 0) << miss;
    EXPECT_EQ(result.CoveragePassed(), miss < result.ContentTarget);
    EXPECT_NEAR(result.BlendErrorMax, 0, 1e-6);
  }
}

TEST(CalibrationAccuracy, BlendErrorMatchesABruteForceInterpolationOfAGroundTruthBlend) {
  auto wall = Wall(TwoByOne());
  const double gamma = 2.2;
  const int step = 16;
  // Each projector's share rises smoothly over 300 pixels from its left or right edge; the alphas
  // split the light so that alpha^gamma sums to 1 at every vertex, and near an edge alpha grows
  // without the infinite slope a root would give, so linear interpolation stays close.
  auto share = [&](int p, const vec2<double>& s) {
    const vec2<double> xy = wall->ScreenToProjector(p, s);
    const double t = std::clamp(std::min(xy.x, 1919 - xy.x) / 300, 0.0, 1.0);
    return t * t * (3 - 2 * t);
  };
  auto alpha = [&](int p, const vec2<double>& s) {
    const double total = std::pow(std::pow(share(0, s), gamma) + std::pow(share(1, s), gamma), 1 / gamma);
    return total > 0 ? share(p, s) / total : 1.0;
  };
  std::vector<SmartPointer<TextureMesh>> warps;
  for (int p = 0; p < 2; ++p) warps.push_back(PerfectWarp(*wall, p, step, alpha));

  // The reference: each warp's alpha interpolated by hand in its grid cell, on a regular grid of
  // points instead of random ones.
  auto interpolated = [&](int p, const vec2<double>& s, double& out) {
    const vec2<double> xy = wall->ScreenToProjector(p, s);
    if (xy.x < 0 || xy.x > 1919 || xy.y < 0 || xy.y > 1079) return false;
    auto x = [&](int i) { return std::min(i * step, 1919); };
    auto y = [&](int j) { return std::min(j * step, 1079); };
    auto a = [&](int i, int j) { return static_cast<double>(warps[p]->GetAlpha(j * 121 + i)); };
    const int i = std::min(static_cast<int>(xy.x) / step, 119), j = std::min(static_cast<int>(xy.y) / step, 67);
    const double fx = (xy.x - x(i)) / (x(i + 1) - x(i)), fy = (xy.y - y(j)) / (y(j + 1) - y(j));
    out = fx + fy <= 1 ? a(i, j) + fx * (a(i + 1, j) - a(i, j)) + fy * (a(i, j + 1) - a(i, j))
                       : a(i + 1, j + 1) + (1 - fx) * (a(i, j + 1) - a(i + 1, j + 1)) +
                             (1 - fy) * (a(i + 1, j) - a(i + 1, j + 1));
    return true;
  };
  ASSERT_EQ(warps[0]->GetNumPoints(), 121 * 69);
  const vec2<double> min = wall->GetFillMin(), max = wall->GetFillMax();
  double worst = 0, squares = 0;
  const int nx = 1200, ny = 300;
  for (int j = 0; j <= ny; ++j)
    for (int i = 0; i <= nx; ++i) {
      const vec2<double> s(min.x + (max.x - min.x) * i / nx, min.y + (max.y - min.y) * j / ny);
      double light = 0, a;
      for (int p = 0; p < 2; ++p)
        if (interpolated(p, s, a)) light += std::pow(a, gamma);
      worst = std::max(worst, std::fabs(light - 1));
      squares += (light - 1) * (light - 1);
    }
  const double rms = std::sqrt(squares / ((nx + 1) * (ny + 1)));

  CalibrationAccuracy::Result result;
  ASSERT_EQ(CalibrationAccuracy::Evaluate(*wall, Pointers(warps), gamma, result), VEK_SUCCESS);
  EXPECT_NEAR(result.BlendErrorMax, worst, 0.05 * worst);
  EXPECT_NEAR(result.BlendErrorRMS, rms, 0.05 * rms);
  EXPECT_GT(worst, 0.005);
  EXPECT_EQ(result.UncoveredSamples, 0);
  EXPECT_TRUE(result.Passed());
}

TEST(CalibrationAccuracy, RefusesWarpsThatDoNotFitTheWall) {
  auto wall = Wall(TwoByOne());
  auto flat = [](int, const vec2<double>&) { return 1.0; };
  std::vector<SmartPointer<TextureMesh>> warps{PerfectWarp(*wall, 0, 256, flat), PerfectWarp(*wall, 1, 256, flat)};
  CalibrationAccuracy::Result result;
  auto status = [&](const std::vector<const TextureMesh*>& w, double gamma, int samples) {
    return Code(CalibrationAccuracy::Evaluate(*wall, w, gamma, result, samples));
  };
  EXPECT_EQ(status({warps[0].GetPointer()}, 2.2, 10), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(status({warps[0].GetPointer(), nullptr}, 2.2, 10), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(status(Pointers(warps), 0, 10), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(status(Pointers(warps), 2.2, 0), VEK_INVALID_PARAMETERS);
  warps[1]->SetMapping(TextureMesh::PIXELS);
  EXPECT_EQ(status(Pointers(warps), 2.2, 10), VEK_INVALID_PARAMETERS);
  warps[1]->SetMapping(TextureMesh::NORMALIZED);
  warps[1]->AddTriangle(0, 0, 1, warps[1]->GetNumPoints());
  EXPECT_EQ(status(Pointers(warps), 2.2, 10), VEK_INVALID_PARAMETERS);
  auto empty = SmartPointer<SyntheticWall>::New();
  EXPECT_EQ(Code(CalibrationAccuracy::Evaluate(*empty, {}, 2.2, result)), VEK_INVALID_PARAMETERS);
}

TEST(CalibrationAccuracy, ReportSaysEachMeasureItsTargetAndVerdict) {
  CalibrationAccuracy::Result result;
  result.ContentErrorMax = 0.125;
  result.ContentErrorRMS = 0.03;
  result.ContentVertices = 400;
  result.ContentTarget = 0.1;
  result.BlendErrorMax = 0.0125;
  result.BlendErrorRMS = 0.002;
  result.Samples = 1000;
  result.UncoveredSamples = 0;
  std::ostringstream text;
  CalibrationAccuracy::PrintReport(text, result);
  EXPECT_EQ(text.str(),
            "Content error: max 0.125 px, RMS 0.03 px over 400 warp vertices (target: max <= 0.1 px): FAIL\n"
            "Blend error: max 0.0125, RMS 0.002 at 1000 covered points of the fill region (targets: max <= 0.02, "
            "RMS <= 0.003): PASS\n"
            "Uncovered points: 0 of 1000 lit by no projector (target: 0): PASS\n");
  EXPECT_FALSE(result.Passed());

  result.ContentErrorMax = 0.05;
  result.UncoveredSamples = 3;
  result.BorderSamples = 2;
  text.str("");
  CalibrationAccuracy::PrintReport(text, result);
  EXPECT_NE(text.str().find("at 995 covered points"), std::string::npos) << text.str();
  EXPECT_NE(text.str().find("Uncovered points: 3 of 1000 lit by no projector (target: 0): FAIL\n"
                            "Border points: 2 of 1000 within 0.1 px of the image's border and of a warp's edge "
                            "that falls short there, left to the content error\n"),
            std::string::npos)
      << text.str();
  EXPECT_TRUE(result.ContentPassed());
  EXPECT_FALSE(result.Passed());
}

}  // namespace
}  // namespace vek
