#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "vekConnectivityUtility.h"
#include "vekRectilinearConnectivityTriangleMesh.h"
#include "vekRectilinearGrid.h"
#include "vekSmartPointer.h"

// Connectivity of a wall of 8 x 6 = 48 projectors inferred from their footprints, as one camera
// sees them: 33 x 19 spots per projector over 300 x 170 pixels, 15% overlap with each side
// neighbour, inner spots jittered by up to half a pixel, and about 1% of the spots missing.
//
// build/linux/bin/vekConnectivityBenchmark

namespace {

constexpr int kColumns = 8, kRows = 6;
constexpr float kWidth = 300, kHeight = 170, kOverlap = 0.15f;

std::vector<vek::SmartPointer<vek::RectilinearConnectivityTriangleMesh>> MakeWall() {
  std::mt19937 rng(7);
  std::uniform_real_distribution<float> jitter(-0.5f, 0.5f);
  std::uniform_int_distribution<int> spot(0, 33 * 19 - 1);
  std::vector<vek::SmartPointer<vek::RectilinearConnectivityTriangleMesh>> wall;
  for (int r = 0; r < kRows; ++r)
    for (int c = 0; c < kColumns; ++c) {
      auto grid = vek::SmartPointer<vek::RectilinearGrid>::New();
      grid->SetOffsetx(c * kWidth * (1 - kOverlap));
      grid->SetOffsety(r * kHeight * (1 - kOverlap));
      grid->SetSpacex(kWidth / 32);
      grid->SetSpacey(kHeight / 18);
      grid->SetNumx(33);
      grid->SetNumy(19);
      auto mesh = vek::SmartPointer<vek::RectilinearConnectivityTriangleMesh>::New();
      mesh->CreateTriangleMesh(grid.GetPointer());
      for (int j = 1; j < 18; ++j)
        for (int i = 1; i < 32; ++i) {
          vek::vec2<float>& p = mesh->SetPoint(j * 33 + i);
          const float dx = jitter(rng), dy = jitter(rng);
          p = vek::vec2<float>(p.x + dx, p.y + dy);
        }
      for (int k = 0; k < 6; ++k) mesh->SetPoint(spot(rng)) = vek::vec2<float>(-5, -5);
      wall.push_back(mesh);
    }
  return wall;
}

void BM_InferFromFootprints(benchmark::State& state) {
  const auto wall = MakeWall();
  std::vector<const vek::TriangleMesh*> footprints;
  for (const auto& mesh : wall) footprints.push_back(mesh.GetPointer());
  auto result = vek::SmartPointer<vek::SpatialConnectivity>::New();
  for (auto _ : state) {
    const int status = vek::ConnectivityUtility::InferFromFootprints(
        footprints, vek::ConnectivityUtility::kDefaultMinOverlapFraction, result.GetPointer());
    if (status != 0) state.SkipWithError("inference failed");
  }
  if (result->GetType() != vek::SpatialConnectivity::kGlobalMxN || result->GetRows() != kRows ||
      result->GetColumns() != kColumns)
    state.SkipWithError("the wall was not inferred as its grid");
  state.counters["pairs"] = static_cast<double>(result->GetNeighborPairs().size());
}
BENCHMARK(BM_InferFromFootprints)->Unit(benchmark::kMillisecond);

}  // namespace
