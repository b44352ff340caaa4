#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"
#include "vekTextureMesh.h"
#include "vekTextureMeshReader.h"

namespace vek {
namespace {

std::string Written(const TextureMesh& mesh) {
  std::ostringstream os;
  mesh.Serialize(os);
  return os.str();
}

int ReadText(const std::string& text, SmartPointer<TextureMesh>& mesh) {
  std::istringstream in(text);
  return TextureMeshReader::Read(in, mesh);
}

// A mesh of n vertices with values drawn from every float range the writer meets: random bit
// patterns (subnormals and the extremes included), decimals of every magnitude, and y near the
// 46.996 shift, where the written value is tiny and its digits are all the shift left of y.
SmartPointer<TextureMesh> RandomMesh(int n, int faces, unsigned seed) {
  std::mt19937 rng(seed);
  std::uniform_int_distribution<unsigned> bits(0, 0x7f7fffffu);
  std::uniform_real_distribution<float> unit(-1.0f, 1.0f);
  std::uniform_int_distribution<int> exponent(-40, 38);
  auto value = [&](int kind) {
    float f = 0;
    if (kind == 0) {
      unsigned b = bits(rng) | (rng() & 0x80000000u);
      std::memcpy(&f, &b, sizeof f);
    } else if (kind == 1) {
      f = unit(rng) * std::pow(10.0f, static_cast<float>(exponent(rng)));
    } else {
      f = 46.996f + unit(rng) * std::pow(10.0f, static_cast<float>(exponent(rng) % 4 - 3));
    }
    return f;
  };
  auto mesh = SmartPointer<TextureMesh>::New();
  mesh->SetNumPoints(n);
  mesh->SetNumTriangles(faces);
  EXPECT_EQ(mesh->Allocate(), 0);
  for (int i = 0; i < n; ++i)
    mesh->AddPoint(i, value(i % 2), value(i % 3), value((i + 1) % 2), value(i % 2), value((i + 1) % 3));
  std::uniform_int_distribution<int> index(0, n - 1);
  for (int t = 0; t < faces; ++t) mesh->AddTriangle(t, index(rng), index(rng), index(rng));
  return mesh;
}

TEST(TextureMeshReader, ReadsTheWriterLinesBackToTheStoredValues) {
  // y' = 53.004 and -46.996 are the stored 100 and 0; -1.61743e-06 is the float 46.996 itself.
  const std::string text =
      "VERTICES 4\nFACES 2\nMAPPING PIXELS\nSAMPLING ANISOTROPIC 16\n"
      "0 -46.996 1 0 0 \n100 53.004 0.5 1 1 \n100 -46.996 1 1 0 \n1 -1.61743e-06 0.25 0.1 0.2 \n"
      "[ 0 1 2 ]\n[ 3 2 1 ]\n";
  SmartPointer<TextureMesh> mesh;
  ASSERT_EQ(ReadText(text, mesh), 0);
  ASSERT_EQ(mesh->GetNumPoints(), 4);
  ASSERT_EQ(mesh->GetNumTriangles(), 2);
  EXPECT_EQ(mesh->GetMapping(), TextureMesh::PIXELS);
  EXPECT_EQ(mesh->GetTextureType(), TextureMesh::ANISOTROPIC);
  EXPECT_EQ(mesh->GetAnisotropy(), 16.0f);
  EXPECT_EQ(mesh->GetPointXY(1).x, 100.0f);
  EXPECT_EQ(mesh->GetPointXY(1).y, 100.0f);
  EXPECT_EQ(mesh->GetPointXY(2).y, 0.0f);
  EXPECT_EQ(mesh->GetPointXY(3).y, 46.996f);
  EXPECT_EQ(mesh->GetPointUV(3).x, 0.1f);
  EXPECT_EQ(mesh->GetPointUV(3).y, 0.2f);
  EXPECT_EQ(mesh->GetAlpha(1), 0.5f);
  int a = 0, b = 0, c = 0;
  mesh->GetTriangle(1, a, b, c);
  EXPECT_EQ(std::vector<int>({a, b, c}), std::vector<int>({3, 2, 1}));
  EXPECT_EQ(Written(*mesh), text);

  // Windows line ends and a missing trailing blank read the same; empty lines may follow.
  std::string crlf;
  for (char ch : text) crlf += ch == '\n' ? std::string("\r\n") : std::string(1, ch);
  ASSERT_EQ(ReadText(crlf + "\r\n\n", mesh), 0);
  EXPECT_EQ(Written(*mesh), text);
  ASSERT_EQ(ReadText("VERTICES 1\nFACES 0\nMAPPING NORMALIZED\nSAMPLING LINEAR\n1\t2  3 4 5\n", mesh), 0);
  EXPECT_EQ(Written(*mesh), "VERTICES 1\nFACES 0\nMAPPING NORMALIZED\nSAMPLING LINEAR\n1 2 3 4 5 \n");
}

TEST(TextureMeshReader, RoundTripsTheWriterByteForByte) {
  struct Case {
    int points, faces;
    TextureMesh::Mapping mapping;
    TextureMesh::TextureType sampling;
    float anisotropy;
  };
  for (const Case& c : {Case{0, 0, TextureMesh::NORMALIZED, TextureMesh::LINEAR, 0},
                        Case{3000, 5000, TextureMesh::NORMALIZED, TextureMesh::LINEAR, 0},
                        Case{3000, 1, TextureMesh::PIXELS, TextureMesh::ANISOTROPIC, 0.1f},
                        Case{1, 0, TextureMesh::PIXELS, TextureMesh::ANISOTROPIC, 1e-40f}}) {
    SCOPED_TRACE(c.points);
    auto mesh =
        c.points ? RandomMesh(c.points, c.faces, static_cast<unsigned>(c.faces)) : SmartPointer<TextureMesh>::New();
    mesh->SetMapping(c.mapping);
    mesh->SetTextureType(c.sampling);
    mesh->SetAnisotropy(c.anisotropy);
    const std::string first = Written(*mesh);
    SmartPointer<TextureMesh> read;
    ASSERT_EQ(ReadText(first, read), 0);
    EXPECT_EQ(Written(*read), first);
  }
}

TEST(TextureMeshReader, DamagedInputsFailWithTheLineAndLeaveNoMesh) {
  const std::string head = "VERTICES 3\nFACES 1\nMAPPING NORMALIZED\nSAMPLING LINEAR\n";
  const std::string vertices = "0 -46.996 1 0 0 \n100 53.004 0.5 1 1 \n100 -46.996 1 1 0 \n";
  struct Case {
    std::string text;
    int code;
    std::string message;
  };
  const int bad = VEK_BAD_PARSE, cut = VEK_FILE_NOT_FORMATTED_PROPERLY;
  const std::vector<Case> cases = {
      {"", cut, "line 1: the input ends where \"VERTICES <count>\" belongs"},
      {head + vertices, cut, "line 8: the input ends where a face"},
      {head + vertices + "[ 0 1 2 ]", cut, "line 8: the last line has no line end"},
      {head + "0 -46.996 1 0 0 \n100 53.0", cut, "line 6: the last line has no line end"},
      {head + vertices + "[ 0 1 2 ]\n[ 0 1 2 ]\n", cut, "line 9: text follows the last face"},
      // One vertex more than declared: it stands where the face belongs.
      {"VERTICES 2\nFACES 1\nMAPPING NORMALIZED\nSAMPLING LINEAR\n" + vertices + "[ 0 1 2 ]\n", bad,
       "line 7: expected a face \"[ a b c ]\", found \"100 -46.996 1 1 0 \""},
      {head + vertices + "[ 0 1 3 ]\n", bad, "line 8: vertex index 3 is outside 0 .. 2"},
      {head + vertices + "[ -1 1 2 ]\n", bad, "line 8: vertex index -1 is outside 0 .. 2"},
      {head + vertices + "[ 0 1 2 3 ]\n", bad, "line 8: expected a face"},
      {head + "nan -46.996 1 0 0 \n", bad, "line 5: expected a vertex \"x y alpha u v\", found \"nan -46.996"},
      {head + "0 -46.996 inf 0 0 \n", bad, "line 5: expected a vertex"},
      {head + "0 -46.996 1 0 \n", bad, "line 5: expected a vertex"},
      {head + "0 -46.996 1 0 0 0 \n", bad, "line 5: expected a vertex"},
      {head + "0 -46.996 1 0 0x1 \n", bad, "line 5: expected a vertex"},
      {head + "0 3.5e38 1 0 0 \n", bad, "line 5: y is beyond the float range"},
      {"VERTICES -1\n", bad, "line 1: expected \"VERTICES <count>\", found \"VERTICES -1\""},
      {"VERTICES 3000000000\n", bad, "line 1: expected \"VERTICES <count>\""},
      {"VERTICES 3\nFACE 1\n", bad, "line 2: expected \"FACES <count>\""},
      {"VERTICES 0\nFACES 0\nMAPPING STRETCHED\n", bad, "line 3: expected \"MAPPING NORMALIZED\" or"},
      {"VERTICES 0\nFACES 0\nMAPPING PIXELS\nSAMPLING ANISOTROPIC\n", bad, "line 4: expected \"SAMPLING LINEAR\""},
      {"VERTICES 0\nFACES 0\nMAPPING PIXELS\nSAMPLING LINEAR 4\n", bad, "line 4: expected \"SAMPLING LINEAR\""},
      // Counts far beyond the input end it; nothing is allocated for them up front.
      {"VERTICES 2147483647\nFACES 2147483647\nMAPPING PIXELS\nSAMPLING LINEAR\n0 0 0 0 0 \n", cut,
       "line 6: the input ends where a vertex"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    auto mesh = SmartPointer<TextureMesh>::New();
    const int status = ReadText(c.text, mesh);
    EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(status), c.code);
    EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status).rfind("warp mesh, " + c.message, 0), 0u)
        << ErrorHelper::GetErrorMessageWithNoExtras(status);
    EXPECT_FALSE(mesh);
  }
}

TEST(TextureMeshReader, FilesAreNamedInMessages) {
  test::TempDirectory dir;
  SmartPointer<TextureMesh> mesh;
  const std::string missing = dir.File("missing.txt");
  int status = TextureMeshReader::ReadFile(missing, mesh);
  EXPECT_EQ(status, VEK_FILE_NOT_FOUND | VEK_CUSTOM_MESSAGE_FLAG);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status), "File Not Found: " + missing);
  status = TextureMeshReader::ReadFile(dir.Path().string(), mesh);
  EXPECT_EQ(status, VEK_UNABLE_TO_OPEN_FILE_FOR_READING | VEK_CUSTOM_MESSAGE_FLAG);

  const std::string file = dir.File("warp.txt");
  const std::string text = "VERTICES 1\nFACES 0\nMAPPING NORMALIZED\nSAMPLING LINEAR\n1 2 3 4 5 \n";
  test::WriteFile(file, text);
  ASSERT_EQ(TextureMeshReader::ReadFile(file, mesh), 0);
  EXPECT_EQ(Written(*mesh), text);
  test::WriteFile(file, "VERTICES 1\n");
  status = TextureMeshReader::ReadFile(file, mesh);
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status),
            file + ", line 2: the input ends where \"FACES <count>\" belongs");
  EXPECT_FALSE(mesh);
}

TEST(TextureMeshFile, WrittenFilesHaveThePlatformLineEndAndReadBack) {
  auto mesh = SmartPointer<TextureMesh>::New();
  mesh->SetNumPoints(3);
  mesh->SetNumTriangles(1);
  ASSERT_EQ(mesh->Allocate(), 0);
  mesh->AddPoint(0, 0, 0, 0, 0, 1);
  mesh->AddPoint(1, 100, 100, 1, 1, 0.5f);
  mesh->AddPoint(2, 100, 0, 1, 0, 1);
  mesh->AddTriangle(0, 0, 1, 2);
  const std::string text =
      "VERTICES 3\nFACES 1\nMAPPING NORMALIZED\nSAMPLING LINEAR\n"
      "0 -46.996 1 0 0 \n100 53.004 0.5 1 1 \n100 -46.996 1 1 0 \n[ 0 1 2 ]\n";
  test::TempDirectory dir;
  const std::string file = dir.File("projector_0.warp");
  ASSERT_EQ(mesh->WriteToFile(file), 0);
  EXPECT_EQ(test::ReadFile(file), test::TextFileBytes(text));
  SmartPointer<TextureMesh> read;
  ASSERT_EQ(TextureMeshReader::ReadFile(file, read), 0);
  EXPECT_EQ(Written(*read), text);

  // A folder where the file belongs, or a folder that does not exist: nothing is written.
  const std::string folder = dir.File("folder"), nowhere = dir.File("no-dir/projector_0.warp");
  std::filesystem::create_directory(folder);
  for (const std::string& target : {folder, nowhere}) {
    const int status = mesh->WriteToFile(target);
    EXPECT_EQ(status, VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING | VEK_CUSTOM_MESSAGE_FLAG) << target;
    EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(status), "Unable to open file for writing: " + target);
    EXPECT_FALSE(std::filesystem::exists(target + ".tmp")) << target;
  }
  EXPECT_TRUE(std::filesystem::is_directory(folder));
}

}  // namespace
}  // namespace vek
