#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

#include "vekRectilinearConnectivityTriangleMesh.h"
#include "vekRectilinearGrid.h"
#include "vekSmartPointer.h"
#include "vekTextureMesh.h"
#include "vekTriangleEdgeStructure.h"
#include "vekTriangleLocator2D.h"

namespace {

using vek::vec2;

constexpr int kGridPoints = 1024;  // per axis: about 2 million triangles
constexpr int kCells = 512;        // per axis: a handful of triangles per bucket

vek::RectilinearConnectivityTriangleMesh* SharedMesh() {
  static vek::SmartPointer<vek::RectilinearConnectivityTriangleMesh> mesh = [] {
    auto grid = vek::SmartPointer<vek::RectilinearGrid>::New();
    grid->SetOffsetx(0);
    grid->SetOffsety(0);
    grid->SetSpacex(1.5f);
    grid->SetSpacey(1.0f);
    grid->SetNumx(kGridPoints);
    grid->SetNumy(kGridPoints);
    auto m = vek::SmartPointer<vek::RectilinearConnectivityTriangleMesh>::New();
    m->CreateTriangleMesh(grid.GetPointer());
    // Jitter the inner points so the triangles are not all alike.
    std::mt19937 rng(3);
    std::uniform_real_distribution<float> jitter(-0.3f, 0.3f);
    for (int j = 1; j < kGridPoints - 1; ++j)
      for (int i = 1; i < kGridPoints - 1; ++i) {
        vec2<float>& p = m->SetPoint(j * kGridPoints + i);
        p = vec2<float>(p.x + jitter(rng), p.y + jitter(rng));
      }
    return m;
  }();
  return mesh.GetPointer();
}

vek::TriangleLocator2D* SharedLocator() {
  static vek::SmartPointer<vek::TriangleLocator2D> locator = [] {
    auto* mesh = SharedMesh();
    auto l = vek::SmartPointer<vek::TriangleLocator2D>::New();
    l->Initialize(mesh->GetPoints(), mesh->GetNumPoints(), mesh->GetTriangles(), mesh->GetNumTriangles(), kCells,
                  kCells, 0.001f);
    return l;
  }();
  return locator.GetPointer();
}

std::vector<vec2<float>> QueryPoints(bool raster) {
  std::vector<vec2<float>> points;
  const float w = 1.5f * (kGridPoints - 1), h = 1.0f * (kGridPoints - 1);
  if (raster) {
    for (int j = 0; j < 1024; ++j)
      for (int i = 0; i < 1024; ++i) points.emplace_back((i + 0.37f) * w / 1024, (j + 0.61f) * h / 1024);
  } else {
    std::mt19937 rng(5);
    std::uniform_real_distribution<float> x(0.5f, w - 0.5f), y(0.5f, h - 0.5f);
    for (int k = 0; k < (1 << 20); ++k) points.emplace_back(x(rng), y(rng));
  }
  return points;
}

void QueryLocator(benchmark::State& state, bool raster) {
  auto* locator = SharedLocator();
  std::vector<vec2<float>> points = QueryPoints(raster);
  size_t k = 0;
  int found = 0;
  for (auto _ : state) {
    int id;
    float w[3];
    found += locator->FindFirstTriangleContainingPoint(points[k], 1e-5f, id, w);
    benchmark::DoNotOptimize(id);
    if (++k == points.size()) k = 0;
  }
  state.SetItemsProcessed(state.iterations());
  state.counters["found"] = static_cast<double>(found) / static_cast<double>(state.iterations());
}

void BM_TriangleLocatorQueryRandom(benchmark::State& state) { QueryLocator(state, false); }
void BM_TriangleLocatorQueryRaster(benchmark::State& state) { QueryLocator(state, true); }

void BM_TriangleLocatorBuild(benchmark::State& state) {
  auto* mesh = SharedMesh();
  for (auto _ : state) {
    auto l = vek::SmartPointer<vek::TriangleLocator2D>::New();
    benchmark::DoNotOptimize(l->Initialize(mesh->GetPoints(), mesh->GetNumPoints(), mesh->GetTriangles(),
                                           mesh->GetNumTriangles(), kCells, kCells, 0.001f));
  }
}

void BM_TriangleEdgeStructureBuild(benchmark::State& state) {
  auto* mesh = SharedMesh();
  for (auto _ : state) {
    auto edges = vek::SmartPointer<vek::TriangleEdgeStructure>::New();
    benchmark::DoNotOptimize(edges->Initialize(*mesh));
  }
}

void BM_TextureMeshSerialize(benchmark::State& state) {
  auto* source = SharedMesh();
  auto mesh = vek::SmartPointer<vek::TextureMesh>::New();
  mesh->SetNumPoints(source->GetNumPoints());
  mesh->SetNumTriangles(source->GetNumTriangles());
  mesh->Allocate();
  const float w = 1.5f * (kGridPoints - 1), h = 1.0f * (kGridPoints - 1);
  for (int i = 0; i < source->GetNumPoints(); ++i) {
    const vec2<float>& p = source->GetPoint(i);
    mesh->AddPoint(i, p.x * 1.25f + 3.1f, p.y * 1.1f, p.x / w, p.y / h, i % 7 ? 1.0f : 0.37f * (i % 3));
  }
  for (int t = 0; t < source->GetNumTriangles(); ++t) {
    int v[3];
    source->GetTriangleVerticesInArray(t, v);
    mesh->AddTriangle(t, v[0], v[1], v[2]);
  }
  std::filesystem::path file = std::filesystem::temp_directory_path() / "vekMeshBenchmark_warp.txt";
  std::uintmax_t bytes = 0;
  for (auto _ : state) {
    std::ofstream out(file, std::ios::binary);
    mesh->Serialize(out);
    out.close();
    state.PauseTiming();
    bytes = std::filesystem::file_size(file);
    state.ResumeTiming();
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
  state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
  std::filesystem::remove(file);
}

}  // namespace

BENCHMARK(BM_TriangleLocatorQueryRandom);
BENCHMARK(BM_TriangleLocatorQueryRaster);
BENCHMARK(BM_TriangleLocatorBuild)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_TriangleEdgeStructureBuild)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_TextureMeshSerialize)->Unit(benchmark::kMillisecond)->Iterations(3);
