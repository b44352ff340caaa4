// Reading a warp mesh file of a projector-sized grid: 1001 x 1001 vertices, two triangles per cell.
#include <benchmark/benchmark.h>

#include <sstream>
#include <string>

#include "vekSmartPointer.h"
#include "vekTextureMesh.h"
#include "vekTextureMeshReader.h"

namespace {

constexpr int kSide = 1001;

const std::string& WarpFileText() {
  static const std::string text = [] {
    auto mesh = vek::SmartPointer<vek::TextureMesh>::New();
    mesh->SetNumPoints(kSide * kSide);
    mesh->SetNumTriangles(2 * (kSide - 1) * (kSide - 1));
    mesh->Allocate();
    for (int j = 0, i = 0; j < kSide; ++j)
      for (int k = 0; k < kSide; ++k, ++i)
        mesh->AddPoint(i, 1.92f * k + 0.37f * j, 1.08f * j - 0.011f * k, k / (kSide - 1.0f), j / (kSide - 1.0f),
                       k < 100 ? k / 100.0f : 1.0f);
    for (int j = 0, t = 0; j + 1 < kSide; ++j)
      for (int k = 0; k + 1 < kSide; ++k) {
        const int a = j * kSide + k;
        mesh->AddTriangle(t++, a, a + 1, a + kSide);
        mesh->AddTriangle(t++, a + 1, a + kSide + 1, a + kSide);
      }
    std::ostringstream out;
    mesh->Serialize(out);
    return out.str();
  }();
  return text;
}

void BM_TextureMeshRead(benchmark::State& state) {
  const std::string& text = WarpFileText();
  for (auto _ : state) {
    std::istringstream in(text);
    vek::SmartPointer<vek::TextureMesh> mesh;
    if (vek::TextureMeshReader::Read(in, mesh) != 0 || mesh->GetNumPoints() != kSide * kSide)
      return state.SkipWithError("the mesh did not read back");
  }
  state.SetBytesProcessed(static_cast<int64_t>(text.size()) * state.iterations());
  state.counters["file_MB"] = static_cast<double>(text.size()) / 1e6;
}

}  // namespace

BENCHMARK(BM_TextureMeshRead)->Unit(benchmark::kMillisecond)->Iterations(3);
