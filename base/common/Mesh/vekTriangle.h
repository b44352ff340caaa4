#pragma once
#include <ostream>

#include "vekCommonExport.h"
#include "vekVec2.h"

namespace vek {

/// One triangle of a TriangleMesh: three corner pointers into the mesh's point array (not owned).
/// A corner's identity is its address, so vertex indices are pointer differences from the start
/// of the array. Geometry is in float; degenerate triangles are not guarded (GetAB divides by
/// zero and gives infinities or NaN).
///
/// Orientation: SignedArea(a, b, c) = ((b.y - a.y)(c.x - a.x) - (c.y - a.y)(b.x - a.x)) / 2, which
/// is negative for counter-clockwise corners with y up and positive for corners counter-clockwise
/// on screen with y down. Other code tests orientation against exactly this sign.
class VEK_EXPORT Triangle {
 public:
  Triangle() = default;
  Triangle(vec2<float>* a, vec2<float>* b, vec2<float>* c) : Corners{a, b, c} {}

  void SetCorners(vec2<float>* a, vec2<float>* b, vec2<float>* c) {
    Corners[0] = a;
    Corners[1] = b;
    Corners[2] = c;
  }
  void GetCorners(vec2<float>** a, vec2<float>** b, vec2<float>** c) const {
    *a = Corners[0];
    *b = Corners[1];
    *c = Corners[2];
  }
  /// Copies each corner's x and y into a[0..1], b[0..1], c[0..1].
  void GetCorners(float* a, float* b, float* c) const;
  vec2<float>* GetCorner(int k) const { return Corners[k]; }

  /// 1 when all three corner pointers are set.
  int IsInitialized() const;
  /// 0 when any corner's point is unset (-5, -5), else 1.
  int IsCornersInitialized() const;
  /// Address comparison, not coordinates.
  bool DoesContainVertex(const vec2<float>* p) const { return p == Corners[0] || p == Corners[1] || p == Corners[2]; }
  void GetVertexNumInArray(const vec2<float>* base, int out[3]) const;

  float SignedArea() const { return SignedArea(*Corners[0], *Corners[1], *Corners[2]); }
  static float SignedArea(const vec2<float>& a, const vec2<float>& b, const vec2<float>& c) {
    return ((b.y - a.y) * (c.x - a.x) - (c.y - a.y) * (b.x - a.x)) * 0.5f;
  }

  /// Box of the set corners; both (-5, -5) when no corner is set.
  void GetBoundingBox(vec2<float>& min, vec2<float>& max) const;
  /// Weights of corners 0, 1, 2.
  void GetBaryCoord(const vec2<float>& p, float bary[3]) const;
  /// True when p lies in the triangle widened by `tolerance` in barycentric terms (inclusive);
  /// only then are the weights written to `bary`.
  bool TestInsidedness(const vec2<float>& p, float tolerance, float bary[3]) const {
    return TestInsidedness(*Corners[0], *Corners[1], *Corners[2], p, tolerance, bary);
  }
  /// The same test for corners given by value (for callers that keep their own copy of them).
  static bool TestInsidedness(const vec2<float>& c0, const vec2<float>& c1, const vec2<float>& c2, const vec2<float>& p,
                              float tolerance, float bary[3]) {
    float a, b;
    SolveAB(c0, c1, c2, p, a, b);
    if (a >= -tolerance && a <= 1.0f + tolerance && b >= -tolerance && b <= 1.0f + tolerance && b <= a + tolerance) {
      bary[0] = 1.0f - a;
      bary[1] = a - b;
      bary[2] = b;
      return true;
    }
    return false;
  }
  /// "x0 y0 x1 y1 x2 y2" in the stream's formatting, no line end.
  void PrintTriangle(std::ostream& os) const;

 protected:
  /// p = c0 + a (c1 - c0) + b (c2 - c1), solved by the normal equations in float.
  void GetAB(const vec2<float>& p, float& a, float& b) const {
    SolveAB(*Corners[0], *Corners[1], *Corners[2], p, a, b);
  }
  static void SolveAB(const vec2<float>& c0, const vec2<float>& c1, const vec2<float>& c2, const vec2<float>& p,
                      float& a, float& b) {
    float e1x = c1.x - c0.x, e1y = c1.y - c0.y;
    float e2x = c2.x - c1.x, e2y = c2.y - c1.y;
    float dx = p.x - c0.x, dy = p.y - c0.y;
    float e1e1 = e1x * e1x + e1y * e1y;
    float e1e2 = e1x * e2x + e1y * e2y;
    float e2e2 = e2x * e2x + e2y * e2y;
    float de1 = dx * e1x + dy * e1y;
    float de2 = dx * e2x + dy * e2y;
    b = (de2 - de1 * e1e2 / e1e1) / (e2e2 - e1e2 * e1e2 / e1e1);
    a = de1 / e1e1 - (e1e2 / e1e1) * b;
  }

 private:
  // Copies would silently keep pointing into another mesh's array; meshes re-point explicitly.
  Triangle(const Triangle&) = delete;
  Triangle& operator=(const Triangle&) = delete;

  vec2<float>* Corners[3] = {nullptr, nullptr, nullptr};
};

}  // namespace vek
