// vek mesh info FILE: what a warp mesh file holds, in a few lines.
#include <algorithm>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "vekPointArrayBoundingBox.h"
#include "vekSmartPointer.h"
#include "vekTextureMesh.h"
#include "vekTextureMeshReader.h"
#include "vekTool.h"

namespace vek::tool {

namespace {

std::string Bounds(const vec2<float>* points, int count) {
  vec2<float> min, max;
  if (GetPointArrayBoundingBox(points, count, min, max) == 0) return "none";
  return FloatText(min.x) + " " + FloatText(min.y) + " .. " + FloatText(max.x) + " " + FloatText(max.y);
}

int Info(const std::string& file) {
  SmartPointer<TextureMesh> mesh;
  int status = TextureMeshReader::ReadFile(file, mesh);
  if (status != 0) return Report(status);
  const int n = mesh->GetNumPoints();
  std::ostringstream out;
  out << "vertices: " << n << "\nfaces: " << mesh->GetNumTriangles()
      << "\nmapping: " << (mesh->GetMapping() == TextureMesh::NORMALIZED ? "NORMALIZED" : "PIXELS") << "\nsampling: "
      << (mesh->GetTextureType() == TextureMesh::LINEAR ? "LINEAR"
                                                        : "ANISOTROPIC " + FloatText(mesh->GetAnisotropy()))
      << "\nxy bounds: " << Bounds(mesh->GetXYPoints(), n) << "\nuv bounds: " << Bounds(mesh->GetUVPoints(), n)
      << "\nalpha range: ";
  if (n == 0) {
    out << "none\n";
  } else {
    auto [low, high] = std::minmax_element(mesh->GetAlphas(), mesh->GetAlphas() + n);
    out << FloatText(*low) << " .. " << FloatText(*high) << "\n";
  }
  std::cout << out.str();
  return kSuccess;
}

}  // namespace

void AddMeshCommands(Commands& commands) {
  auto file = std::make_shared<std::string>();
  CLI::App* mesh = commands.AddGroup(commands.GetRoot(), "mesh", "Look into warp mesh files.");
  CLI::App* info = commands.Add(*mesh, "info", "Print the counts, bounds and alpha range of a warp mesh file.",
                                [file] { return Info(*file); });
  info->add_option("FILE", *file, "A warp mesh file, as TextureMesh::Serialize writes them.")->required();
  info->footer(
      "Bounds are \"min x min y .. max x max y\" over the points that are set (-5 -5 marks an unset\n"
      "point), or \"none\"; y is the stored value, with the file's shift of 46.996 undone.\n"
      "A damaged file is an error (exit status 1) naming its line.");
}

}  // namespace vek::tool
