// Warp meshes: built from numpy arrays, written as the mesh warp file the renderers read, and
// read back into arrays.
#include <pybind11/stl/filesystem.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "vekErrorCodes.h"
#include "vekPython.h"
#include "vekSmartPointer.h"
#include "vekTextureMesh.h"
#include "vekTextureMeshReader.h"

namespace vek::python {

namespace {

class PyTextureMesh {
 public:
  explicit PyTextureMesh(TextureMesh* fresh) : Mesh(fresh) {}
  TextureMesh* Get() const { return Mesh.Get(); }

 private:
  Held<TextureMesh> Mesh;
};

std::unique_ptr<PyTextureMesh> Wrap(const SmartPointer<TextureMesh>& mesh) {
  mesh->Register();
  return std::make_unique<PyTextureMesh>(mesh.GetPointer());
}

void CheckFinite(const float* values, py::ssize_t count, const char* what) {
  for (py::ssize_t i = 0; i < count; ++i)
    if (!std::isfinite(values[i]))
      Fail(VEK_INVALID_PARAMETERS, std::string(what) + ": value " + std::to_string(i) +
                                       " is not a finite number (a warp mesh file cannot hold it)");
}

std::unique_ptr<PyTextureMesh> FromArrays(const py::object& xyValues, const py::object& uvValues,
                                          const py::object& alphaValues, const py::object& triangleValues) {
  HeldObject::CheckRunning();
  const py::array_t<float> xy = PointArray(xyValues, "xy");
  const py::array_t<float> uv = PointArray(uvValues, "uv");
  const py::array_t<float> alpha = NumberArray(alphaValues, "float32", 0, "alpha").cast<py::array_t<float>>();
  const py::array_t<std::int64_t> triangles =
      NumberArray(triangleValues, "int64", 3, "triangles").cast<py::array_t<std::int64_t>>();
  const py::ssize_t n = xy.shape(0);
  if (uv.shape(0) != n || alpha.shape(0) != n)
    Fail(VEK_INVALID_PARAMETERS, "xy, uv and alpha must have one row per vertex: found " + std::to_string(n) + ", " +
                                     std::to_string(uv.shape(0)) + " and " + std::to_string(alpha.shape(0)));
  CheckFinite(xy.data(), 2 * n, "xy");
  CheckFinite(uv.data(), 2 * n, "uv");
  CheckFinite(alpha.data(), n, "alpha");
  const py::ssize_t m = triangles.shape(0);
  const std::int64_t* corners = triangles.data();
  for (py::ssize_t i = 0; i < 3 * m; ++i)
    if (corners[i] < 0 || corners[i] >= n)
      Fail(VEK_INVALID_PARAMETERS, "triangles: triangle " + std::to_string(i / 3) + " names vertex " +
                                       std::to_string(corners[i]) + ", outside 0 .. " + std::to_string(n - 1));

  auto mesh = std::make_unique<PyTextureMesh>(TextureMesh::New());
  TextureMesh* object = mesh->Get();
  object->SetNumPoints(static_cast<int>(n));
  object->SetNumTriangles(static_cast<int>(m));
  Check(object->Allocate());
  const float* xyData = xy.data();
  const float* uvData = uv.data();
  const float* alphaData = alpha.data();
  for (int i = 0; i < static_cast<int>(n); ++i)
    object->AddPoint(i, xyData[2 * i], xyData[2 * i + 1], uvData[2 * i], uvData[2 * i + 1], alphaData[i]);
  for (int t = 0; t < static_cast<int>(m); ++t)
    object->AddTriangle(t, static_cast<int>(corners[3 * t]), static_cast<int>(corners[3 * t + 1]),
                        static_cast<int>(corners[3 * t + 2]));
  return mesh;
}

py::array_t<float> PointsOf(const vec2<float>* points, int count) {
  py::array_t<float> result({py::ssize_t(count), py::ssize_t(2)});
  if (count > 0) std::memcpy(result.mutable_data(), points, sizeof(vec2<float>) * count);
  return result;
}

py::array_t<float> AlphasOf(const PyTextureMesh& mesh) {
  TextureMesh* object = mesh.Get();
  py::array_t<float> result(py::ssize_t(object->GetNumPoints()));
  if (object->GetNumPoints() > 0)
    std::memcpy(result.mutable_data(), object->GetAlphas(), sizeof(float) * object->GetNumPoints());
  return result;
}

py::array_t<int> TrianglesOf(const PyTextureMesh& mesh) {
  TextureMesh* object = mesh.Get();
  const int m = object->GetNumTriangles();
  py::array_t<int> result({py::ssize_t(m), py::ssize_t(3)});
  int* corners = result.mutable_data();
  for (int t = 0; t < m; ++t) object->GetTriangle(t, corners[3 * t], corners[3 * t + 1], corners[3 * t + 2]);
  return result;
}

std::string ToString(const PyTextureMesh& mesh) {
  std::ostringstream text;
  mesh.Get()->Serialize(text);
  return text.str();
}

std::unique_ptr<PyTextureMesh> Read(const std::filesystem::path& path) {
  HeldObject::CheckRunning();
  SmartPointer<TextureMesh> mesh;
  Check(TextureMeshReader::ReadFile(path.string(), mesh));
  return Wrap(mesh);
}

}  // namespace

void AddMeshBindings(py::module_& m) {
  py::class_<PyTextureMesh>(m, "TextureMesh", R"(A warp handed to a renderer: vertices with an output position (xy, projector pixels), a texture
coordinate (uv) and a blend weight (alpha), and triangles as vertex-index triples.

Make one with TextureMesh.from_arrays or TextureMesh.read. The arrays are copies: changing
them changes nothing in the mesh.)")
      .def_static("from_arrays", &FromArrays, py::arg("xy"), py::arg("uv"), py::arg("alpha"), py::arg("triangles"),
                  R"(A new mesh from arrays of N vertices and M triangles.

Args:
    xy: (N, 2) real numbers, the output positions.
    uv: (N, 2) real numbers, the texture coordinates (0..1 of the image while mapping is
        "NORMALIZED").
    alpha: (N,) real numbers, the blend weights.
    triangles: (M, 3) integers, vertex numbers 0 .. N - 1.

Values are stored as float32. Raises vek.Error (VEK_INVALID_PARAMETERS) for other shapes,
counts that disagree, a value that is not finite or a vertex number out of range.)")
      .def_static("read", &Read, py::arg("path"),
                  R"(Reads a mesh warp file (as write() makes them).

Raises vek.Error: VEK_FILE_NOT_FOUND for a missing file; VEK_FILE_NOT_FORMATTED_PROPERLY for
a file cut short; VEK_BAD_PARSE for a line that is not what its place requires. The message
names the file and the line.)")
      .def_property_readonly(
          "num_points", [](const PyTextureMesh& mesh) { return mesh.Get()->GetNumPoints(); }, "N, the vertex count.")
      .def_property_readonly(
          "num_triangles", [](const PyTextureMesh& mesh) { return mesh.Get()->GetNumTriangles(); },
          "M, the triangle count.")
      .def_property_readonly(
          "xy",
          [](const PyTextureMesh& mesh) { return PointsOf(mesh.Get()->GetXYPoints(), mesh.Get()->GetNumPoints()); },
          "A new (N, 2) float32 array of the output positions.")
      .def_property_readonly(
          "uv",
          [](const PyTextureMesh& mesh) { return PointsOf(mesh.Get()->GetUVPoints(), mesh.Get()->GetNumPoints()); },
          "A new (N, 2) float32 array of the texture coordinates.")
      .def_property_readonly("alpha", &AlphasOf, "A new (N,) float32 array of the blend weights.")
      .def_property_readonly("triangles", &TrianglesOf, "A new (M, 3) int32 array of vertex numbers.")
      .def_property(
          "mapping",
          [](const PyTextureMesh& mesh) {
            return mesh.Get()->GetMapping() == TextureMesh::NORMALIZED ? "NORMALIZED" : "PIXELS";
          },
          [](PyTextureMesh& mesh, const std::string& mapping) {
            if (mapping != "NORMALIZED" && mapping != "PIXELS")
              Fail(VEK_INVALID_PARAMETERS, "mapping: \"" + mapping + "\" is neither NORMALIZED nor PIXELS");
            mesh.Get()->SetMapping(mapping == "NORMALIZED" ? TextureMesh::NORMALIZED : TextureMesh::PIXELS);
          },
          "\"NORMALIZED\" (uv in 0..1 of the image, the default) or \"PIXELS\" (uv in image pixels).")
      .def_property(
          "sampling",
          [](const PyTextureMesh& mesh) {
            return mesh.Get()->GetTextureType() == TextureMesh::LINEAR ? "LINEAR" : "ANISOTROPIC";
          },
          [](PyTextureMesh& mesh, const std::string& sampling) {
            if (sampling != "LINEAR" && sampling != "ANISOTROPIC")
              Fail(VEK_INVALID_PARAMETERS, "sampling: \"" + sampling + "\" is neither LINEAR nor ANISOTROPIC");
            mesh.Get()->SetTextureType(sampling == "LINEAR" ? TextureMesh::LINEAR : TextureMesh::ANISOTROPIC);
          },
          "\"LINEAR\" (the default) or \"ANISOTROPIC\" (with `anisotropy`).")
      .def_property(
          "anisotropy", [](const PyTextureMesh& mesh) { return mesh.Get()->GetAnisotropy(); },
          [](PyTextureMesh& mesh, float value) { mesh.Get()->SetAnisotropy(value); },
          "The anisotropy written with ANISOTROPIC sampling.")
      .def(
          "write",
          [](const PyTextureMesh& mesh, const std::filesystem::path& path) {
            Check(mesh.Get()->WriteToFile(path.string()));
          },
          py::arg("path"),
          R"(Writes the mesh warp file with the platform's line end, replacing the file in one step: a
failure leaves an earlier file whole. The file's y is the vertex's y less 46.996, as the format
has it; numbers have six significant digits.)")
      .def("to_string", &ToString, "The mesh warp file's text.")
      .def("__repr__", [](const PyTextureMesh& mesh) {
        return "<vek.TextureMesh " + std::to_string(mesh.Get()->GetNumPoints()) + " vertices, " +
               std::to_string(mesh.Get()->GetNumTriangles()) + " triangles>";
      });

  py::object arrays = py::module_::import("collections")
                          .attr("namedtuple")("WarpMeshArrays", py::make_tuple("xy", "uv", "alpha", "triangles"),
                                              py::arg("module") = "vek");
  arrays.attr("__doc__") = "The arrays of a warp mesh: xy, uv (N, 2) float32, alpha (N,) float32, triangles (M, 3) int32.";
  m.add_object("WarpMeshArrays", arrays);
  m.def(
      "read_warp_mesh",
      [arrays](const std::filesystem::path& path) {
        std::unique_ptr<PyTextureMesh> mesh = Read(path);
        TextureMesh* object = mesh->Get();
        return arrays(PointsOf(object->GetXYPoints(), object->GetNumPoints()),
                      PointsOf(object->GetUVPoints(), object->GetNumPoints()), AlphasOf(*mesh), TrianglesOf(*mesh));
      },
      py::arg("path"),
      R"(Reads a mesh warp file into its arrays: a WarpMeshArrays (xy, uv, alpha, triangles), as
TextureMesh.from_arrays takes them. Raises vek.Error as TextureMesh.read does.)");
}

}  // namespace vek::python
