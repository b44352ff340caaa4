#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "vekRectilinearConnectivityTriangleMesh.h"
#include "vekRectilinearGrid.h"
#include "vekRectilinearGridIntersectTriangleMesh.h"
#include "vekSmartPointer.h"
#include "vekTriangleMeshIntersectTriangleMesh.h"

// Two jittered 256 x 256-point grid meshes (spacing 1, inner points moved by up to 0.2 along each
// axis, border points left in place), the second shifted right by 102 (40% of the width), so
// that 60% of each overlaps: exactly 153 x 255 = 39015 square units.
//
// OMP_NUM_THREADS=1 build/linux/bin/vekIntersectionBenchmark
// Arguments: the thread count given to the intersection (0: OpenMP's choice).

namespace {

using vek::vec2;

constexpr int kPoints = 256;
constexpr float kShift = 102.0f;
constexpr double kExactArea = 153.0 * 255.0;

vek::SmartPointer<vek::RectilinearConnectivityTriangleMesh> JitteredGridMesh(unsigned int seed, float shift) {
  auto grid = vek::SmartPointer<vek::RectilinearGrid>::New();
  grid->SetOffsetx(shift);
  grid->SetOffsety(0);
  grid->SetSpacex(1);
  grid->SetSpacey(1);
  grid->SetNumx(kPoints);
  grid->SetNumy(kPoints);
  auto mesh = vek::SmartPointer<vek::RectilinearConnectivityTriangleMesh>::New();
  mesh->CreateTriangleMesh(grid.GetPointer());
  std::mt19937 rng(seed);
  std::uniform_real_distribution<float> jitter(-0.2f, 0.2f);
  for (int j = 1; j < kPoints - 1; ++j)
    for (int i = 1; i < kPoints - 1; ++i) {
      vec2<float>& p = mesh->SetPoint(j * kPoints + i);
      const float dx = jitter(rng), dy = jitter(rng);
      p = vec2<float>(p.x + dx, p.y + dy);
    }
  return mesh;
}

struct Meshes {
  vek::SmartPointer<vek::RectilinearConnectivityTriangleMesh> First = JitteredGridMesh(11, 0.0f);
  vek::SmartPointer<vek::RectilinearConnectivityTriangleMesh> Second = JitteredGridMesh(29, kShift);
};

const Meshes& SharedMeshes() {
  static Meshes meshes;
  return meshes;
}

// The reference pair count, by a second method: every coordinate here is a multiple of 2^-24
// below 512, so scaled to integers the orientation tests are exact in 128-bit integers; and
// because both meshes are grids, a first triangle can only meet second triangles of nearby cells.
using Int = __int128;
struct IntPoint {
  Int x, y;
};

IntPoint Scaled(const vec2<float>& p) {
  return {static_cast<Int>(std::ldexp(static_cast<double>(p.x), 24)),
          static_cast<Int>(std::ldexp(static_cast<double>(p.y), 24))};
}

Int Cross(const IntPoint& a, const IntPoint& b, const IntPoint& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// Interiors overlap unless an edge line of one triangle has the other wholly on its far side.
bool Separated(const IntPoint a[3], const IntPoint b[3]) {
  const Int orientation = Cross(a[0], a[1], a[2]) > 0 ? 1 : -1;
  for (int e = 0; e < 3; ++e) {
    bool allOutside = true;
    for (int k = 0; k < 3 && allOutside; ++k) allOutside = Cross(a[e], a[(e + 1) % 3], b[k]) * orientation <= 0;
    if (allOutside) return true;
  }
  return false;
}

long long ReferencePairCount(const vek::TriangleMesh& first, const vek::TriangleMesh& second) {
  auto corners = [](const vek::TriangleMesh& mesh, int t, IntPoint out[3]) {
    for (int k = 0; k < 3; ++k) out[k] = Scaled(*mesh.GetTriangle(t).GetCorner(k));
  };
  const int cells = kPoints - 1;
  const int offset = static_cast<int>(kShift);
  long long pairs = 0;
  for (int t = 0; t < first.GetNumTriangles(); ++t) {
    const int r = t / 2, i = r % cells, j = r / cells;
    IntPoint a[3];
    corners(first, t, a);
    for (int jj = std::max(0, j - 1); jj <= std::min(cells - 1, j + 1); ++jj)
      for (int ii = std::max(0, i - offset - 1); ii <= std::min(cells - 1, i - offset + 1); ++ii)
        for (int s = 2 * (jj * cells + ii); s < 2 * (jj * cells + ii) + 2; ++s) {
          IntPoint b[3];
          corners(second, s, b);
          if (!Separated(a, b) && !Separated(b, a)) ++pairs;
        }
  }
  return pairs;
}

void MeshIntersection(benchmark::State& state, bool region) {
  const Meshes& meshes = SharedMeshes();
  auto intersect = vek::SmartPointer<vek::TriangleMeshIntersectTriangleMesh>::New();
  intersect->SetFirstMesh(meshes.First.GetPointer());
  intersect->SetSecondMesh(meshes.Second.GetPointer());
  intersect->SetNumberOfThreads(static_cast<int>(state.range(0)));
  intersect->SetBuildOverlapRegion(region);
  for (auto _ : state) {
    if (intersect->Update() != 0) state.SkipWithError("Update failed");
    benchmark::ClobberMemory();
  }
  static const long long reference = ReferencePairCount(*meshes.First, *meshes.Second);
  state.counters["pairs"] = intersect->GetNumberOfOverlappingPairs();
  state.counters["referencePairs"] = static_cast<double>(reference);
  state.counters["areaError"] = intersect->GetTotalOverlapArea() - kExactArea;
  if (intersect->GetNumberOfOverlappingPairs() != reference ||
      std::fabs(intersect->GetTotalOverlapArea() - kExactArea) > 1e-4)
    state.SkipWithError("result differs from the reference");
}

void BM_MeshIntersectMesh(benchmark::State& state) { MeshIntersection(state, false); }
void BM_MeshIntersectMeshWithRegion(benchmark::State& state) { MeshIntersection(state, true); }
BENCHMARK(BM_MeshIntersectMesh)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_MeshIntersectMeshWithRegion)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

// A 1024 x 1024 warp grid over the first mesh, reaching a little past it on every side.
void BM_GridIntersectMesh(benchmark::State& state) {
  const Meshes& meshes = SharedMeshes();
  auto grid = vek::SmartPointer<vek::RectilinearGrid>::New();
  grid->SetOffsetx(-2.5f);
  grid->SetOffsety(-2.5f);
  grid->SetSpacex(260.0f / 1023);
  grid->SetSpacey(260.0f / 1023);
  grid->SetNumx(1024);
  grid->SetNumy(1024);
  auto intersect = vek::SmartPointer<vek::RectilinearGridIntersectTriangleMesh>::New();
  intersect->SetGrid(grid.GetPointer());
  intersect->SetMesh(meshes.First.GetPointer());
  intersect->SetNumberOfThreads(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    if (intersect->Update() != 0) state.SkipWithError("Update failed");
    benchmark::ClobberMemory();
  }
  state.counters["foundPoints"] = intersect->GetNumberOfFoundPoints();
  state.counters["partlyCovered"] =
      intersect->GetNumberOfCells(vek::RectilinearGridIntersectTriangleMesh::PartlyCovered);
}
BENCHMARK(BM_GridIntersectMesh)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
