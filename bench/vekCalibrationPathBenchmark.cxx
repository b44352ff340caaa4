// The calibration path's warp step (WarpCalibration::Compute: footprints, connectivity, screen
// model, warps) on made-up walls held in memory, on one and on two threads.
#include <benchmark/benchmark.h>

#include "vekCalibrationFolder.h"
#include "vekSmartPointer.h"
#include "vekSyntheticWall.h"
#include "vekWarpCalibration.h"

namespace {

vek::SmartPointer<vek::CalibrationFolder> Folder(const vek::SyntheticWall::Parameters& parameters) {
  auto wall = vek::SmartPointer<vek::SyntheticWall>::New();
  auto folder = vek::SmartPointer<vek::CalibrationFolder>::New();
  if (wall->Generate(parameters) != 0 || wall->FillCalibrationFolder(*folder) != 0) return {};
  return folder;
}

void RunWarps(benchmark::State& state, const vek::SyntheticWall::Parameters& parameters) {
  auto folder = Folder(parameters);
  if (!folder) {
    state.SkipWithError("the wall could not be made");
    return;
  }
  int vertices = 0;
  for (auto _ : state) {
    auto calibration = vek::SmartPointer<vek::WarpCalibration>::New();
    calibration->SetNumberOfThreads(static_cast<int>(state.range(0)));
    if (calibration->Compute(*folder, vek::CalibrationSettings()) != 0) {
      state.SkipWithError("the warp step failed");
      return;
    }
    vertices = 0;
    for (int p = 0; p < calibration->GetNumberOfProjectors(); ++p) vertices += calibration->GetWarp(p)->GetNumPoints();
  }
  state.counters["projectors"] = static_cast<double>(parameters.Columns * parameters.Rows);
  state.counters["warp_vertices"] = vertices;
}

// The default demo: 3 x 2 projectors of 1920 x 1080, 33 x 19 spots each.
void BM_WarpDefaultDemo(benchmark::State& state) { RunWarps(state, vek::SyntheticWall::Parameters()); }
BENCHMARK(BM_WarpDefaultDemo)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

// 24 projectors (6 x 4) of 2560 x 1600 with 65 x 41 spots each.
void BM_Warp24Projectors(benchmark::State& state) {
  vek::SyntheticWall::Parameters parameters;
  parameters.Columns = 6;
  parameters.Rows = 4;
  parameters.ProjectorWidth = 2560;
  parameters.ProjectorHeight = 1600;
  parameters.SpotColumns = 65;
  parameters.SpotRows = 41;
  RunWarps(state, parameters);
}
BENCHMARK(BM_Warp24Projectors)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
