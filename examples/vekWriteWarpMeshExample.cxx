// Builds the warp mesh of one projector and writes the warp file that rendering clients read.
// Usage: vekWriteWarpMeshExample [OUT_FILE]   (default projector_0.warp)
#include <cmath>
#include <cstdio>
#include <fstream>

#include "vekErrorCodes.h"
#include "vekSmartPointer.h"
#include "vekTextureMesh.h"

int main(int argc, char** argv) {
  using namespace vek;
  const char* outFile = argc > 1 ? argv[1] : "projector_0.warp";
  // The left one of two 1920 x 1080 projectors side by side, overlapping by 15% of a width: the
  // image spans 1.85 projector widths. A vertex every 1/20 of the width and 1/11 of the height, so
  // that the overlap starts on a vertex column.
  constexpr int kWidth = 1920, kHeight = 1080, kColumns = 21, kRows = 12, kOverlapColumn = 17;
  constexpr double kGamma = 2.2;

  auto mesh = SmartPointer<TextureMesh>::New();
  mesh->SetNumPoints(kColumns * kRows);
  mesh->SetNumTriangles(2 * (kColumns - 1) * (kRows - 1));
  if (mesh->Allocate() != VEK_SUCCESS) return 1;
  for (int j = 0; j < kRows; ++j) {
    for (int i = 0; i < kColumns; ++i) {
      // XY in projector pixels; UV the image point shown there, 0..1 over the image (NORMALIZED).
      const float u = float(i) / (kColumns - 1), v = float(j) / (kRows - 1);
      const float x = u * (kWidth - 1), y = v * (kHeight - 1);
      // The blend weight falls linearly to 0 across the overlap. The file holds alpha already
      // gamma-shaped, alpha = weight^(1/gamma), so alpha^gamma is this projector's share of the light.
      const double weight = i <= kOverlapColumn ? 1.0 : double(kColumns - 1 - i) / (kColumns - 1 - kOverlapColumn);
      mesh->AddPoint(j * kColumns + i, x, y, u / 1.85f, v, float(std::pow(weight, 1.0 / kGamma)));
    }
  }
  int triangle = 0;
  for (int j = 0; j + 1 < kRows; ++j) {
    for (int i = 0; i + 1 < kColumns; ++i) {
      const int a = j * kColumns + i;  // the cell's corner with the smallest x and y
      mesh->AddTriangle(triangle++, a, a + 1, a + kColumns);
      mesh->AddTriangle(triangle++, a + 1, a + kColumns + 1, a + kColumns);
    }
  }
  mesh->SetMapping(TextureMesh::NORMALIZED);
  mesh->SetTextureType(TextureMesh::LINEAR);

  // A text-mode stream gives the file the platform's line ends. In the file y is shifted by
  // -46.996 (TextureMesh::kFileYShift), which the clients undo; x is not.
  std::ofstream out(outFile);
  mesh->Serialize(out);
  out.close();
  if (!out) {
    std::fprintf(stderr, "could not write %s\n", outFile);
    return 1;
  }
  std::printf("%s: %d vertices, %d triangles\n", outFile, mesh->GetNumPoints(), mesh->GetNumTriangles());
  return 0;
}
