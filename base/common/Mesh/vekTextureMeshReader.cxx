#include "vekTextureMeshReader.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <new>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "vekCustomLanguageString.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"

namespace vek {

namespace {

// Enough room for a mesh of ordinary size up front; more only as lines actually arrive.
constexpr std::size_t kReserveLimit = 1 << 16;
// Long enough to recognise the line in a message, short enough for one message line.
constexpr std::size_t kQuotedLength = 60;

struct Vertex {
  float x, y, alpha, u, v;
};

// Splits at blanks and tabs into at most `max` tokens; returns how many there were, up to max + 1,
// so that a count of max + 1 means "too many".
int Split(std::string_view line, std::string_view* tokens, int max) {
  int count = 0;
  std::size_t at = 0;
  while (count <= max) {
    at = line.find_first_not_of(" \t", at);
    if (at == std::string_view::npos) break;
    std::size_t end = std::min(line.find_first_of(" \t", at), line.size());
    if (count < max) tokens[count] = line.substr(at, end - at);
    ++count;
    at = end;
  }
  return count;
}

template <class Number>
bool Parse(std::string_view text, Number& value) {
  const char* end = text.data() + text.size();
  auto [ptr, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || ptr != end) return false;
  if constexpr (std::is_floating_point_v<Number>) return std::isfinite(value);
  return true;
}

class Parser {
 public:
  Parser(std::istream& in, std::string source) : In(in), Source(std::move(source)) {}

  int Run(SmartPointer<TextureMesh>& result) {
    int numPoints = 0, numTriangles = 0;
    int status = ReadCount("VERTICES", numPoints);
    if (status == VEK_SUCCESS) status = ReadCount("FACES", numTriangles);
    if (status == VEK_SUCCESS) status = ReadMapping();
    if (status == VEK_SUCCESS) status = ReadSampling();
    if (status == VEK_SUCCESS) status = ReadVertices(numPoints);
    if (status == VEK_SUCCESS) status = ReadTriangles(numTriangles, numPoints);
    if (status == VEK_SUCCESS) status = ReadEnd();
    if (status == VEK_SUCCESS) status = Build(result);
    return status;
  }

 private:
  int Fail(int code, const std::string& what) const {
    return ErrorHelper::ErrorWithCustomMessage(code, Source + ", line " + std::to_string(LineNumber) + ": " + what);
  }
  int Unexpected(const char* expected) const {
    std::string quoted = Line.substr(0, kQuotedLength);
    if (Line.size() > kQuotedLength) quoted += "...";
    return Fail(VEK_BAD_PARSE, std::string("expected ") + expected + ", found \"" + quoted + "\"");
  }

  // The next line without its line end (LF or CR LF). VEK_FILE_NOT_FORMATTED_PROPERLY when the
  // input ends first or the line has no line end.
  int Next(const char* expected) {
    ++LineNumber;
    if (!std::getline(In, Line))
      return Fail(VEK_FILE_NOT_FORMATTED_PROPERLY, std::string("the input ends where ") + expected + " belongs");
    if (In.eof()) return Fail(VEK_FILE_NOT_FORMATTED_PROPERLY, "the last line has no line end: the input is cut short");
    if (!Line.empty() && Line.back() == '\r') Line.pop_back();
    return VEK_SUCCESS;
  }

  int ReadCount(const char* keyword, int& count) {
    const std::string expected = std::string("\"") + keyword + " <count>\"";
    int status = Next(expected.c_str());
    if (status != VEK_SUCCESS) return status;
    std::string_view tokens[2];
    if (Split(Line, tokens, 2) != 2 || tokens[0] != keyword || !Parse(tokens[1], count) || count < 0)
      return Unexpected(expected.c_str());
    return VEK_SUCCESS;
  }

  int ReadMapping() {
    const char* expected = "\"MAPPING NORMALIZED\" or \"MAPPING PIXELS\"";
    int status = Next(expected);
    if (status != VEK_SUCCESS) return status;
    std::string_view tokens[2];
    if (Split(Line, tokens, 2) != 2 || tokens[0] != "MAPPING") return Unexpected(expected);
    if (tokens[1] == "NORMALIZED")
      Mapping = TextureMesh::NORMALIZED;
    else if (tokens[1] == "PIXELS")
      Mapping = TextureMesh::PIXELS;
    else
      return Unexpected(expected);
    return VEK_SUCCESS;
  }

  int ReadSampling() {
    const char* expected = "\"SAMPLING LINEAR\" or \"SAMPLING ANISOTROPIC <level>\"";
    int status = Next(expected);
    if (status != VEK_SUCCESS) return status;
    std::string_view tokens[3];
    const int count = Split(Line, tokens, 3);
    if (count < 2 || tokens[0] != "SAMPLING") return Unexpected(expected);
    if (count == 2 && tokens[1] == "LINEAR") {
      Sampling = TextureMesh::LINEAR;
    } else if (count == 3 && tokens[1] == "ANISOTROPIC" && Parse(tokens[2], Anisotropy)) {
      Sampling = TextureMesh::ANISOTROPIC;
    } else {
      return Unexpected(expected);
    }
    return VEK_SUCCESS;
  }

  int ReadVertices(int count) {
    const char* expected = "a vertex \"x y alpha u v\"";
    Vertices.reserve(std::min<std::size_t>(static_cast<std::size_t>(count), kReserveLimit));
    std::string_view tokens[5];
    for (int i = 0; i < count; ++i) {
      int status = Next(expected);
      if (status != VEK_SUCCESS) return status;
      Vertex p{};
      double shiftedY = 0;
      if (Split(Line, tokens, 5) != 5 || !Parse(tokens[0], p.x) || !Parse(tokens[1], shiftedY) ||
          !Parse(tokens[2], p.alpha) || !Parse(tokens[3], p.u) || !Parse(tokens[4], p.v))
        return Unexpected(expected);
      const double y = shiftedY + TextureMesh::kFileYShift;
      if (!(std::fabs(y) <= FLT_MAX)) return Fail(VEK_BAD_PARSE, "y is beyond the float range");
      p.y = static_cast<float>(y);
      Vertices.push_back(p);
    }
    return VEK_SUCCESS;
  }

  int ReadTriangles(int count, int numPoints) {
    const char* expected = "a face \"[ a b c ]\"";
    Triangles.reserve(std::min<std::size_t>(static_cast<std::size_t>(count), kReserveLimit));
    std::string_view tokens[5];
    for (int j = 0; j < count; ++j) {
      int status = Next(expected);
      if (status != VEK_SUCCESS) return status;
      TextureMesh::Triple t{};
      if (Split(Line, tokens, 5) != 5 || tokens[0] != "[" || tokens[4] != "]" || !Parse(tokens[1], t.a) ||
          !Parse(tokens[2], t.b) || !Parse(tokens[3], t.c))
        return Unexpected(expected);
      for (int index : {t.a, t.b, t.c})
        if (index < 0 || index >= numPoints)
          return Fail(VEK_BAD_PARSE, "vertex index " + std::to_string(index) + " is outside 0 .. " +
                                         std::to_string(numPoints - 1));
      Triangles.push_back(t);
    }
    return VEK_SUCCESS;
  }

  // Only empty lines may follow the last face; a last line without a line end is no text here.
  int ReadEnd() {
    while (std::getline(In, Line)) {
      ++LineNumber;
      if (!Line.empty() && Line != "\r")
        return Fail(VEK_FILE_NOT_FORMATTED_PROPERLY, "text follows the last face");
    }
    return VEK_SUCCESS;
  }

  int Build(SmartPointer<TextureMesh>& result) {
    auto mesh = SmartPointer<TextureMesh>::New();
    if (!mesh) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    mesh->SetNumPoints(static_cast<int>(Vertices.size()));
    mesh->SetNumTriangles(static_cast<int>(Triangles.size()));
    int status = mesh->Allocate();
    if (status != VEK_SUCCESS) return status;
    for (std::size_t i = 0; i < Vertices.size(); ++i) {
      const Vertex& p = Vertices[i];
      mesh->AddPoint(static_cast<int>(i), p.x, p.y, p.u, p.v, p.alpha);
    }
    for (std::size_t j = 0; j < Triangles.size(); ++j)
      mesh->AddTriangle(static_cast<int>(j), Triangles[j].a, Triangles[j].b, Triangles[j].c);
    mesh->SetMapping(Mapping);
    mesh->SetTextureType(Sampling);
    mesh->SetAnisotropy(Anisotropy);
    result = mesh;
    return VEK_SUCCESS;
  }

  std::istream& In;
  const std::string Source;
  std::string Line;
  int LineNumber = 0;
  TextureMesh::Mapping Mapping = TextureMesh::NORMALIZED;
  TextureMesh::TextureType Sampling = TextureMesh::LINEAR;
  float Anisotropy = 0.0f;
  std::vector<Vertex> Vertices;
  std::vector<TextureMesh::Triple> Triangles;
};

int ReadFrom(std::istream& in, const std::string& source, SmartPointer<TextureMesh>& mesh) {
  mesh = nullptr;
  try {
    return Parser(in, source).Run(mesh);
  } catch (const std::bad_alloc&) {
    mesh = nullptr;
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

}  // namespace

int TextureMeshReader::Read(std::istream& in, SmartPointer<TextureMesh>& mesh) {
  return ReadFrom(in, "warp mesh", mesh);
}

int TextureMeshReader::ReadFile(const std::string& fileName, SmartPointer<TextureMesh>& mesh) {
  mesh = nullptr;
  std::error_code ignored;
  if (fileName.empty() || !std::filesystem::exists(fileName, ignored))
    return ErrorHelper::ErrorWithCustomMessage(VEK_FILE_NOT_FOUND, CustomLanguageString("VEK_FILE_NOT_FOUND_CUSTOM")
                                                                       << fileName);
  std::ifstream in;
  // A directory exists but opens as an empty, unreadable stream on some platforms.
  if (!std::filesystem::is_directory(fileName, ignored)) in.open(fileName, std::ios::in | std::ios::binary);
  if (!in.is_open() || !in.good())
    return ErrorHelper::ErrorWithCustomMessage(
        VEK_UNABLE_TO_OPEN_FILE_FOR_READING,
        CustomLanguageString("VEK_UNABLE_TO_OPEN_FILE_FOR_READING_CUSTOM") << fileName);
  return ReadFrom(in, fileName, mesh);
}

}  // namespace vek
