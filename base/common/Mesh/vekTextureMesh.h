#pragma once
#include <ostream>
#include <string>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekVec2.h"

namespace vek {

/// The warp handed to a renderer: vertices with an output position (XY), a texture coordinate
/// (UV) and a blend weight (alpha), and triangles as vertex-index triples. Serialize writes the
/// mesh warp file the rendering clients read:
///
///   VERTICES <n>\n FACES <m>\n MAPPING NORMALIZED|PIXELS\n SAMPLING LINEAR|ANISOTROPIC <a>\n
///   per vertex "x y' alpha u v \n" (each value followed by a blank), y' = double(y) - 46.996
///   per triangle "[ a b c ]\n"
///
/// The y shift of 46.996 is what the clients undo; x is never shifted. Numbers follow the
/// stream's own formatting. A default-formatted stream (classic locale, flags, precision 6, no
/// width) is written through a buffered fast path that prints exactly what the stream would.
///
/// Line ends: Serialize writes "\n", which a text-mode file stream turns into the platform's line
/// end (CR LF on Windows, LF elsewhere) and a binary or string stream keeps. WriteToFile, the way
/// the library writes a warp mesh file itself, gives the file the platform's line end in any case,
/// as every text file the library writes: the rendering clients on Windows read CR LF files.
/// TextureMeshReader takes either line end.
///
/// Choices made here: Allocate zeroes alphas and triangle slots, and frees arrays held before;
/// when it cannot allocate it returns VEK_FAILED_TO_ALLOCATE_MEMORY and keeps the old arrays.
/// The clipped writer's never-filled slots therefore print as zeros (alpha 0, "[ 0 0 0 ]").
class VEK_EXPORT TextureMesh : public Object {
 public:
  enum TextureType : int { ANISOTROPIC = 0, LINEAR = 1 };
  enum Mapping : int { NORMALIZED = 0, PIXELS = 1 };
  struct Triple {
    int a, b, c;
  };
  static constexpr float kDroppedX = -5.5f;   // a vertex marked for dropping by the clipped writer
  static constexpr float kDroppedY = -55.5f;  // the same mark on y
  static constexpr double kFileYShift = 46.996;

  static TextureMesh* New();
  const char* GetClassName() const override { return "TextureMesh"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  void SetNumPoints(int n) { NumPoints = n; }
  void SetNumTriangles(int n) { NumTriangles = n; }
  int GetNumPoints() const { return NumPoints; }
  int GetNumTriangles() const { return NumTriangles; }
  int Allocate();

  void AddPoint(int i, float x, float y, float u, float v, float alpha) {
    XYPoints[i] = vec2<float>(x, y);
    UVPoints[i] = vec2<float>(u, v);
    Alphas[i] = alpha;
  }
  void AddTriangle(int t, int a, int b, int c) { Triangles[t] = Triple{a, b, c}; }
  void GetTriangle(int t, int& a, int& b, int& c) const {
    a = Triangles[t].a;
    b = Triangles[t].b;
    c = Triangles[t].c;
  }

  const vec2<float>& GetPointXY(int i) const { return XYPoints[i]; }
  const vec2<float>& GetPointUV(int i) const { return UVPoints[i]; }
  float const& GetAlpha(int i) const { return Alphas[i]; }
  // Read-only despite their names; values are set through AddPoint or the whole arrays.
  const vec2<float>& SetPointXY(int i) const { return XYPoints[i]; }
  const vec2<float>& SetPointUV(int i) const { return UVPoints[i]; }
  float const& SetAlpha(int i) const { return Alphas[i]; }
  vec2<float>* GetXYPoints() { return XYPoints; }
  vec2<float>* GetUVPoints() { return UVPoints; }
  float* GetAlphas() { return Alphas; }

  void SetAnisotropy(float a) { Anisotropy = a; }
  float GetAnisotropy() const { return Anisotropy; }
  /// 1 (LINEAR) samples linearly; any other value is anisotropic.
  void SetTextureType(TextureType t) { Sampling = t; }
  TextureType GetTextureType() const { return Sampling; }
  /// 0 (NORMALIZED): UV in 0..1 of the source image; any other value: source pixels.
  void SetMapping(Mapping m) { CoordinateMapping = m; }
  Mapping GetMapping() const { return CoordinateMapping; }

  void Serialize(std::ostream& os) const;
  /// Serialize into the file `fileName`, replaced in one step with the platform's line end
  /// (FileContents::ReplaceText): a failure leaves an earlier file whole.
  /// VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING, with the custom message naming the file, when it cannot
  /// be written (a directory in its place, a folder that does not exist); VEK_UNABLE_TO_COPY_FILE
  /// when the new file cannot take its place.
  int WriteToFile(const std::string& fileName) const;
  /// Writes the part of the mesh in the strip offset <= x < offset + width, shifted to x = 0,
  /// always as NORMALIZED/LINEAR. Its loops run to the kept counts over this mesh's own arrays,
  /// and every kept triangle lands in slot 0: with one triangle and no dropped vertex below the
  /// kept count the file is right; the declared counts are always the kept counts.
  void Serialize(std::ostream& os, float offset, float width) const;

 protected:
  TextureMesh() = default;
  ~TextureMesh() override;

  /// Inside the strip is valid even when marked; outside, only the markers make it invalid.
  bool TestPointValid(const vec2<float>& p, float offset, float width) const;
  bool TestTriangleValid(const Triple& t, const bool* pointValid) const {
    return pointValid[t.a] && pointValid[t.b] && pointValid[t.c];
  }

 private:
  TextureMesh(const TextureMesh&) = delete;
  TextureMesh& operator=(const TextureMesh&) = delete;

  int NumPoints = 0;
  int NumTriangles = 0;
  vec2<float>* XYPoints = nullptr;
  vec2<float>* UVPoints = nullptr;
  float* Alphas = nullptr;
  Triple* Triangles = nullptr;
  float Anisotropy = 0.0f;
  TextureType Sampling = LINEAR;
  Mapping CoordinateMapping = NORMALIZED;
};

}  // namespace vek
