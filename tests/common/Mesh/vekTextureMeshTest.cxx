#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <iomanip>
#include <limits>
#include <random>
#include <sstream>
#include <vector>

#include "vekSmartPointer.h"
#include "vekTextureMesh.h"

namespace vek {
namespace {

struct Vertex {
  float x, y, u, v, alpha;
};

class Probe : public TextureMesh {
 public:
  static SmartPointer<Probe> Make() { return SmartPointer<Probe>::TakeReference(new Probe); }
  using TextureMesh::TestPointValid;
};

SmartPointer<Probe> MakeMesh(const std::vector<Vertex>& vertices, const std::vector<std::array<int, 3>>& tris) {
  auto mesh = Probe::Make();
  mesh->SetNumPoints(static_cast<int>(vertices.size()));
  mesh->SetNumTriangles(static_cast<int>(tris.size()));
  EXPECT_EQ(mesh->Allocate(), 0);
  for (size_t i = 0; i < vertices.size(); ++i) {
    const Vertex& p = vertices[i];
    mesh->AddPoint(static_cast<int>(i), p.x, p.y, p.u, p.v, p.alpha);
  }
  for (size_t t = 0; t < tris.size(); ++t) mesh->AddTriangle(static_cast<int>(t), tris[t][0], tris[t][1], tris[t][2]);
  return mesh;
}

// The writer's bytes; with a width, those of the strip [offset, offset + width) only.
std::string Written(const TextureMesh& mesh, float offset = 0, float width = 0) {
  std::ostringstream os;
  width > 0 ? mesh.Serialize(os, offset, width) : mesh.Serialize(os);
  return os.str();
}

const char* const kHeader = "MAPPING NORMALIZED\nSAMPLING LINEAR\n";

TEST(TextureMeshFile, EmptyMeshAndSettingsLines) {
  auto mesh = Probe::Make();
  EXPECT_EQ(Written(*mesh), std::string("VERTICES 0\nFACES 0\n") + kHeader);
  mesh->SetMapping(TextureMesh::Mapping(7));
  mesh->SetTextureType(TextureMesh::TextureType(2));
  mesh->SetAnisotropy(2.5f);
  EXPECT_EQ(Written(*mesh), "VERTICES 0\nFACES 0\nMAPPING PIXELS\nSAMPLING ANISOTROPIC 2.5\n");
}

TEST(TextureMeshFile, VertexLinesEndWithBlankAndShiftY) {
  auto mesh = MakeMesh({{0, 0, 0, 0, 1}, {100, 100, 1, 1, 0.5f}, {100, 0, 1, 0, 1}}, {{0, 1, 2}});
  const std::string body = "0 -46.996 1 0 0 \n100 53.004 0.5 1 1 \n100 -46.996 1 1 0 \n[ 0 1 2 ]\n";
  EXPECT_EQ(Written(*mesh), std::string("VERTICES 3\nFACES 1\n") + kHeader + body);
  EXPECT_EQ(Written(*mesh), std::string("VERTICES 3\nFACES 1\n") + kHeader + body);  // the mesh is unchanged

  // y = 46.996 as a float widens to 46.99599838256836, so the written value is not quite 0.
  auto near = MakeMesh({{1, 46.996f, 0.1f, 0.2f, 0.25f}}, {});
  EXPECT_EQ(Written(*near), std::string("VERTICES 1\nFACES 0\n") + kHeader + "1 -1.61743e-06 0.25 0.1 0.2 \n");
  std::ostringstream os;
  near->PrintSelf(os, Indent(0));
  EXPECT_EQ(os.str(),
            "Reference Count: 1\n NumTriangles: 0\n NumPoints: 1\nXY Points:  Not Null\nUV Points:  Not Null\n"
            "Alphas:  Not Null\nTriangles:  NULL\n");
}

TEST(TextureMeshFile, CallerFormattingIsHonoured) {
  auto mesh = MakeMesh({{0, 0, 0, 0, 1}, {100, 100, 1, 1, 0.5f}, {100, 0, 1, 0, 1}}, {{0, 1, 2}});
  mesh->SetTextureType(TextureMesh::ANISOTROPIC);
  mesh->SetAnisotropy(4);
  std::ostringstream os;
  os << std::fixed << std::setprecision(2);
  mesh->Serialize(os);
  EXPECT_EQ(os.str(),
            "VERTICES 3\nFACES 1\nMAPPING NORMALIZED\nSAMPLING ANISOTROPIC 4.00\n"
            "0.00 -47.00 1.00 0.00 0.00 \n100.00 53.00 0.50 1.00 1.00 \n100.00 -47.00 1.00 1.00 0.00 \n[ 0 1 2 ]\n");
  std::ostringstream hex;
  hex << std::hex << std::showpos;
  auto one = MakeMesh({{1, 50, 0, 0, 1}}, {{10, 11, 255}});
  one->Serialize(hex);
  // showpos has no effect on hexadecimal integers.
  EXPECT_EQ(hex.str(), "VERTICES 1\nFACES 1\n" + std::string(kHeader) + "+1 +3.004 +1 +0 +0 \n[ a b ff ]\n");
}

// The buffered writer prints every value exactly as a default-formatted stream would.
TEST(TextureMeshFile, FastPathMatchesStreamFormatting) {
  const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
  std::vector<float> values = {0.0f,       -0.0f,           1.0f,    -1.0f,    100.0f,   1e6f,   123456.0f,
                               1234567.0f, 999999.5f,       0.0001f, 0.00001f, 1e-30f,   1e-40f, -1e-45f,
                               3.4e38f,    -3.4e38f,        0.1f,    46.996f,  1.0f / 3, 2.5f,   0.5f,
                               9.999995f,  0.000123456789f, inf,     -inf,     nan};
  std::mt19937 rng(12345);
  std::uniform_real_distribution<float> mantissa(-10.0f, 10.0f);
  std::uniform_int_distribution<int> exponent(-40, 38);
  std::uniform_int_distribution<int> bits(0, 0x7f7fffff);
  for (int k = 0; k < 20000; ++k) {
    values.push_back(mantissa(rng) * std::pow(10.0f, static_cast<float>(exponent(rng))));
    int b = bits(rng);
    float f;
    std::memcpy(&f, &b, sizeof f);
    values.push_back(k % 2 ? f : -f);
    values.push_back(std::round(mantissa(rng) * 1000.0f));
  }
  std::vector<Vertex> vertices;
  for (size_t i = 0; i + 4 < values.size(); i += 5)
    vertices.push_back({values[i], values[i + 1], values[i + 2], values[i + 3], values[i + 4]});
  std::vector<std::array<int, 3>> tris = {{0, -1, 2147483647}, {-2147483647 - 1, 12345, 0}};
  auto mesh = MakeMesh(vertices, tris);

  std::ostringstream expected;
  expected << "VERTICES " << vertices.size() << "\nFACES 2\n" << kHeader;
  for (const Vertex& v : vertices)
    expected << v.x << " " << (static_cast<double>(v.y) - 46.996) << " " << v.alpha << " " << v.u << " " << v.v
             << " \n";
  for (const auto& t : tris) expected << "[ " << t[0] << " " << t[1] << " " << t[2] << " ]\n";
  EXPECT_EQ(Written(*mesh), expected.str());
}

TEST(TextureMeshFile, PointValidity) {
  auto mesh = Probe::Make();
  using P = vec2<float>;
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_TRUE(mesh->TestPointValid(P(150, 0), 0, 100));
  EXPECT_FALSE(mesh->TestPointValid(P(-5.5f, 0), 0, 100));
  EXPECT_FALSE(mesh->TestPointValid(P(150, -55.5f), 0, 100));
  EXPECT_TRUE(mesh->TestPointValid(P(0, -55.5f), 0, 100));     // lower border inside
  EXPECT_FALSE(mesh->TestPointValid(P(100, -55.5f), 0, 100));  // upper border outside
  EXPECT_TRUE(mesh->TestPointValid(P(-5.5f, 0), -10, 100));    // marked but inside the strip
  EXPECT_TRUE(mesh->TestPointValid(P(150, nan), 0, 100));
  EXPECT_FALSE(mesh->TestPointValid(P(-5.5f, nan), 0, 100));
}

// Vertex 0 is dropped, so 3 are kept; the copy loop stops at index 3 (before vertex 3), which
// leaves new slot 2 unfilled. Two triangles are kept; the loop visits triangles 0 and 1 only,
// both write slot 0 (the last wins) and slot 1 stays unfilled.
TEST(TextureMeshFile, ClippedWriterShiftsXForcesSettingsAndKeepsLoopBounds) {
  auto mesh = MakeMesh({{-5.5f, 0, 9, 9, 9}, {20, 0, 0.1f, 0.2f, 1}, {30, 50, 0.3f, 0.4f, 0.25f}, {40, 0, 1, 1, 1}},
                       {{1, 2, 3}, {3, 2, 1}, {0, 1, 2}});
  mesh->SetMapping(TextureMesh::PIXELS);
  mesh->SetTextureType(TextureMesh::ANISOTROPIC);
  mesh->SetAnisotropy(8);
  EXPECT_EQ(Written(*mesh, 10, 100), std::string("VERTICES 3\nFACES 2\n") + kHeader +
                                         "10 -46.996 1 0.1 0.2 \n20 3.004 0.25 0.3 0.4 \n-5 -51.996 0 -5 -5 \n"
                                         "[ 2 1 0 ]\n[ 0 0 0 ]\n");
  auto marked = MakeMesh({{-5.5f, 0, 0, 0, 1}}, {{0, 0, 0}});  // a strip that keeps nothing
  EXPECT_EQ(Written(*marked, 0, 100), std::string("VERTICES 0\nFACES 0\n") + kHeader);
}

}  // namespace
}  // namespace vek
