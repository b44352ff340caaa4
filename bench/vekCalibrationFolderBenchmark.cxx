#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "vekCalibrationAccuracy.h"
#include "vekCalibrationFolder.h"
#include "vekSmartPointer.h"
#include "vekSyntheticWall.h"
#include "vekTextureMesh.h"

namespace {

using vek::SmartPointer;
using vek::vec2;

// The demo's wall (3 x 2 projectors, 33 x 19 spots each).
void BM_GenerateWall(benchmark::State& state) {
  for (auto _ : state) {
    auto wall = SmartPointer<vek::SyntheticWall>::New();
    benchmark::DoNotOptimize(wall->Generate({}));
  }
}
BENCHMARK(BM_GenerateWall)->Unit(benchmark::kMillisecond);

// Writing and reading back the demo's calibration folder: 8 files, 3762 spots.
void BM_FolderWriteRead(benchmark::State& state) {
  auto wall = SmartPointer<vek::SyntheticWall>::New();
  wall->Generate({});
  const std::string dir = (std::filesystem::temp_directory_path() / "vek-bench-calibration-folder").string();
  auto folder = SmartPointer<vek::CalibrationFolder>::New();
  for (auto _ : state) {
    wall->WriteCalibrationFolder(dir);
    benchmark::DoNotOptimize(folder->Read(dir));
  }
  std::error_code ignored;
  std::filesystem::remove_all(dir, ignored);
}
BENCHMARK(BM_FolderWriteRead)->Unit(benchmark::kMillisecond);

// The accuracy report of warps made from the ground truth, one vertex every 32 pixels (the
// default warp step), at the report's 100,000 points.
void BM_AccuracyReport(benchmark::State& state) {
  auto wall = SmartPointer<vek::SyntheticWall>::New();
  wall->Generate({});
  std::vector<SmartPointer<vek::TextureMesh>> meshes;
  std::vector<const vek::TextureMesh*> warps;
  const int step = 32, w = 1920, h = 1080;
  const int nx = (w - 2) / step + 2, ny = (h - 2) / step + 2;
  for (int p = 0; p < wall->GetNumberOfProjectors(); ++p) {
    auto mesh = SmartPointer<vek::TextureMesh>::New();
    mesh->SetNumPoints(nx * ny);
    mesh->SetNumTriangles(2 * (nx - 1) * (ny - 1));
    mesh->Allocate();
    for (int j = 0; j < ny; ++j)
      for (int i = 0; i < nx; ++i) {
        const vec2<double> xy(std::min(i * step, w - 1), std::min(j * step, h - 1));
        const vec2<double> uv = wall->ProjectorToContent(p, xy);
        mesh->AddPoint(j * nx + i, static_cast<float>(xy.x), static_cast<float>(xy.y), static_cast<float>(uv.x),
                       static_cast<float>(uv.y), 0.8f);
      }
    int t = 0;
    for (int j = 0; j + 1 < ny; ++j)
      for (int i = 0; i + 1 < nx; ++i) {
        mesh->AddTriangle(t++, j * nx + i, j * nx + i + 1, (j + 1) * nx + i);
        mesh->AddTriangle(t++, j * nx + i + 1, (j + 1) * nx + i + 1, (j + 1) * nx + i);
      }
    warps.push_back(mesh.GetPointer());
    meshes.push_back(mesh);
  }
  vek::CalibrationAccuracy::Result result;
  for (auto _ : state) benchmark::DoNotOptimize(vek::CalibrationAccuracy::Evaluate(*wall, warps, 2.2, result));
}
BENCHMARK(BM_AccuracyReport)->Unit(benchmark::kMillisecond);

}  // namespace
