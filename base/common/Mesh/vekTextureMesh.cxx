#include "vekTextureMesh.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <locale>
#include <memory>
#include <new>
#include <sstream>

#include "vekErrorCodes.h"
#include "vekFileContents.h"

namespace vek {

namespace {

// Writes straight through the stream's own formatting; used whenever the stream is not in its
// default state, so that every flag, precision, fill and facet the caller set is honoured.
class StreamSink {
 public:
  explicit StreamSink(std::ostream& os) : Os(os) {}
  void Text(const char* s, size_t) { Os << s; }
  void Int(int v) { Os << v; }
  void Float(float v) { Os << v; }
  void Double(double v) { Os << v; }
  void Flush() {}

 private:
  std::ostream& Os;
};

// Formats into a buffer with to_chars: general format at precision 6 prints exactly what a
// default-formatted stream prints ("%g"), without the per-value sentry and facet calls.
// Infinities and NaN go through the stream itself, whose spelling is platform-specific.
class BufferSink {
 public:
  explicit BufferSink(std::ostream& os) : Os(os) {}
  ~BufferSink() { Flush(); }
  void Text(const char* s, size_t n) {
    Reserve(n);
    std::memcpy(Buffer + Used, s, n);
    Used += n;
  }
  void Int(int v) {
    Reserve(kMaxNumber);
    Used = static_cast<size_t>(std::to_chars(Buffer + Used, Buffer + kSize, v).ptr - Buffer);
  }
  void Float(float v) {
    if (!std::isfinite(v)) return NonFinite(v);
    Reserve(kMaxNumber);
    Used = static_cast<size_t>(std::to_chars(Buffer + Used, Buffer + kSize, v, std::chars_format::general, 6).ptr -
                               Buffer);
  }
  void Double(double v) {
    if (!std::isfinite(v)) return NonFinite(v);
    Reserve(kMaxNumber);
    Used = static_cast<size_t>(std::to_chars(Buffer + Used, Buffer + kSize, v, std::chars_format::general, 6).ptr -
                               Buffer);
  }
  void Flush() {
    if (Used) Os.write(Buffer, static_cast<std::streamsize>(Used));
    Used = 0;
  }

 private:
  static constexpr size_t kSize = 1 << 16;
  static constexpr size_t kMaxNumber = 32;  // "-1.23457e-308" and any int fit with room

  void Reserve(size_t n) {
    if (Used + n > kSize) Flush();
  }
  template <class T>
  void NonFinite(T v) {
    Flush();
    Os << v;
  }

  std::ostream& Os;
  char Buffer[kSize];
  size_t Used = 0;
};

bool IsDefaultFormatted(const std::ostream& os) {
  return os.flags() == (std::ios_base::skipws | std::ios_base::dec) && os.precision() == 6 && os.width() == 0 &&
         os.getloc() == std::locale::classic();
}

#define VEK_TEXT(sink, literal) sink.Text(literal, sizeof(literal) - 1)

template <class Sink>
void WriteMesh(Sink& sink, int numPoints, int numTriangles, int pointRows, int triangleRows, int mapping,
               int textureType, float anisotropy, const vec2<float>* xy, const vec2<float>* uv, const float* alphas,
               const TextureMesh::Triple* triangles) {
  VEK_TEXT(sink, "VERTICES ");
  sink.Int(numPoints);
  VEK_TEXT(sink, "\nFACES ");
  sink.Int(numTriangles);
  if (mapping == TextureMesh::NORMALIZED)
    VEK_TEXT(sink, "\nMAPPING NORMALIZED\n");
  else
    VEK_TEXT(sink, "\nMAPPING PIXELS\n");
  if (textureType == TextureMesh::LINEAR) {
    VEK_TEXT(sink, "SAMPLING LINEAR\n");
  } else {
    VEK_TEXT(sink, "SAMPLING ANISOTROPIC ");
    sink.Float(anisotropy);
    VEK_TEXT(sink, "\n");
  }
  for (int i = 0; i < pointRows; ++i) {
    sink.Float(xy[i].x);
    VEK_TEXT(sink, " ");
    sink.Double(static_cast<double>(xy[i].y) - TextureMesh::kFileYShift);
    VEK_TEXT(sink, " ");
    sink.Float(alphas[i]);
    VEK_TEXT(sink, " ");
    sink.Float(uv[i].x);
    VEK_TEXT(sink, " ");
    sink.Float(uv[i].y);
    VEK_TEXT(sink, " \n");
  }
  for (int t = 0; t < triangleRows; ++t) {
    VEK_TEXT(sink, "[ ");
    sink.Int(triangles[t].a);
    VEK_TEXT(sink, " ");
    sink.Int(triangles[t].b);
    VEK_TEXT(sink, " ");
    sink.Int(triangles[t].c);
    VEK_TEXT(sink, " ]\n");
  }
  sink.Flush();
}

#undef VEK_TEXT

}  // namespace

TextureMesh* TextureMesh::New() { return new (std::nothrow) TextureMesh; }

TextureMesh::~TextureMesh() {
  delete[] XYPoints;
  delete[] UVPoints;
  delete[] Alphas;
  delete[] Triangles;
}

int TextureMesh::Allocate() {
  size_t points = NumPoints > 0 ? static_cast<size_t>(NumPoints) : 0;
  size_t triangles = NumTriangles > 0 ? static_cast<size_t>(NumTriangles) : 0;
  std::unique_ptr<vec2<float>[]> xy(points ? new (std::nothrow) vec2<float>[points] : nullptr);
  std::unique_ptr<vec2<float>[]> uv(points ? new (std::nothrow) vec2<float>[points] : nullptr);
  std::unique_ptr<float[]> alphas(points ? new (std::nothrow) float[points]() : nullptr);
  std::unique_ptr<Triple[]> tris(triangles ? new (std::nothrow) Triple[triangles]() : nullptr);
  if (points && (!xy || !uv || !alphas)) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  if (triangles && !tris) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  delete[] XYPoints;
  delete[] UVPoints;
  delete[] Alphas;
  delete[] Triangles;
  XYPoints = xy.release();
  UVPoints = uv.release();
  Alphas = alphas.release();
  Triangles = tris.release();
  return VEK_SUCCESS;
}

bool TextureMesh::TestPointValid(const vec2<float>& p, float offset, float width) const {
  float d = p.x - offset;
  if (d >= 0.0f && d < width) return true;
  if (p.x == kDroppedX) return false;
  return !(p.y == kDroppedY);
}

void TextureMesh::Serialize(std::ostream& os) const {
  // The declared counts are the mesh's; rows are only written for arrays that exist, so counts
  // set without Allocate never make the writer read through a null array.
  int pointRows = XYPoints && NumPoints > 0 ? NumPoints : 0;
  int triangleRows = Triangles && NumTriangles > 0 ? NumTriangles : 0;
  if (IsDefaultFormatted(os)) {
    auto sink = std::make_unique<BufferSink>(os);
    WriteMesh(*sink, NumPoints, NumTriangles, pointRows, triangleRows, CoordinateMapping, Sampling, Anisotropy,
              XYPoints, UVPoints, Alphas, Triangles);
  } else {
    StreamSink sink(os);
    WriteMesh(sink, NumPoints, NumTriangles, pointRows, triangleRows, CoordinateMapping, Sampling, Anisotropy, XYPoints,
              UVPoints, Alphas, Triangles);
  }
}

int TextureMesh::WriteToFile(const std::string& fileName) const {
  std::string text;
  try {
    std::ostringstream out;
    Serialize(out);
    text = out.str();
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return FileContents::ReplaceText(fileName, text);
}

void TextureMesh::Serialize(std::ostream& os, float offset, float width) const {
  int numPoints = XYPoints && NumPoints > 0 ? NumPoints : 0;
  int numTriangles = Triangles && NumTriangles > 0 ? NumTriangles : 0;
  std::unique_ptr<bool[]> pointValid(new (std::nothrow) bool[static_cast<size_t>(numPoints) + 1]);
  std::unique_ptr<bool[]> triangleValid(new (std::nothrow) bool[static_cast<size_t>(numTriangles) + 1]);
  std::unique_ptr<int[]> map(new (std::nothrow) int[static_cast<size_t>(numPoints) + 1]);
  if (!pointValid || !triangleValid || !map) return;

  int keptPoints = 0;
  for (int i = 0; i < numPoints; ++i) {
    pointValid[i] = TestPointValid(XYPoints[i], offset, width);
    if (pointValid[i]) ++keptPoints;
  }
  int keptTriangles = 0;
  for (int j = 0; j < numTriangles; ++j) {
    triangleValid[j] = TestTriangleValid(Triangles[j], pointValid.get());
    if (triangleValid[j]) ++keptTriangles;
  }
  for (int i = 0, next = 0; i < numPoints; ++i) map[i] = pointValid[i] ? next++ : -1;

  TextureMesh* clipped = TextureMesh::New();
  if (!clipped) return;
  clipped->SetNumPoints(keptPoints);
  clipped->SetNumTriangles(keptTriangles);
  if (clipped->Allocate() == VEK_SUCCESS) {
    for (int i = 0, next = 0; i < keptPoints; ++i) {
      if (map[i] == -1) continue;
      clipped->AddPoint(next++, XYPoints[i].x - offset, XYPoints[i].y, UVPoints[i].x, UVPoints[i].y, Alphas[i]);
    }
    for (int j = 0; j < keptTriangles; ++j) {
      if (!triangleValid[j]) continue;
      const Triple& t = Triangles[j];
      clipped->AddTriangle(0, map[t.a], map[t.b], map[t.c]);
    }
    clipped->Serialize(os);
  }
  clipped->Release();
}

void TextureMesh::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << " NumTriangles: " << NumTriangles << "\n";
  os << indent << " NumPoints: " << NumPoints << "\n";
  os << indent << "XY Points: " << (XYPoints ? " Not Null" : " NULL") << "\n";
  os << indent << "UV Points: " << (UVPoints ? " Not Null" : " NULL") << "\n";
  os << indent << "Alphas: " << (Alphas ? " Not Null" : " NULL") << "\n";
  os << indent << "Triangles: " << (Triangles ? " Not Null" : " NULL") << "\n";
}

}  // namespace vek
