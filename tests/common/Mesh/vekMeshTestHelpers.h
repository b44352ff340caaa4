#pragma once

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "vekErrorCodes.h"
#include "vekRectilinearConnectivityTriangleMesh.h"
#include "vekRectilinearGrid.h"
#include "vekSmartPointer.h"
#include "vekTriangleMesh.h"

namespace vek::test {

inline SmartPointer<RectilinearGrid> MakeGrid(float x0, float y0, float sx, float sy, int nx, int ny) {
  auto g = SmartPointer<RectilinearGrid>::New();
  g->SetOffsetx(x0);
  g->SetOffsety(y0);
  g->SetSpacex(sx);
  g->SetSpacey(sy);
  g->SetNumx(nx);
  g->SetNumy(ny);
  return g;
}

// The triangulated nx x ny grid with spacing `space` from the origin.
inline SmartPointer<RectilinearConnectivityTriangleMesh> GridMesh(int nx, int ny, float space = 1) {
  auto mesh = SmartPointer<RectilinearConnectivityTriangleMesh>::New();
  EXPECT_EQ(mesh->CreateTriangleMesh(MakeGrid(0, 0, space, space, nx, ny).GetPointer()), VEK_SUCCESS);
  return mesh;
}

inline SmartPointer<TriangleMesh> MakeMesh(std::initializer_list<vec2<float>> points,
                                           std::initializer_list<std::array<int, 3>> tris) {
  auto mesh = SmartPointer<TriangleMesh>::New();
  mesh->SetNumPoints(static_cast<int>(points.size()));
  mesh->SetNumTriangles(static_cast<int>(tris.size()));
  EXPECT_EQ(mesh->Allocate(), VEK_SUCCESS);
  int i = 0;
  for (const vec2<float>& p : points) mesh->AddPoint(i++, p.x, p.y);
  int t = 0;
  for (const auto& v : tris) mesh->AddTriangle(t++, v[0], v[1], v[2]);
  return mesh;
}

template <class T>
std::string Printed(const T& object, int indent = 0) {
  std::ostringstream os;
  object.PrintSelf(os, Indent(indent));
  return os.str();
}

// The corner indices of every triangle, in id order.
inline std::vector<std::array<int, 3>> TrianglesOf(const TriangleMesh& mesh) {
  std::vector<std::array<int, 3>> out(mesh.GetNumTriangles());
  for (int t = 0; t < mesh.GetNumTriangles(); ++t) mesh.GetTriangleVerticesInArray(t, out[t].data());
  return out;
}

}  // namespace vek::test
