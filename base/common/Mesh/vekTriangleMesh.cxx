#include "vekTriangleMesh.h"

#include <new>

#include "vekErrorCodes.h"

namespace vek {

namespace {

// Null for an empty (or negative) count and on exhaustion; callers tell the two apart by the count.
template <class T>
T* NewArray(int n) {
  if (n <= 0) return nullptr;
  return new (std::nothrow) T[static_cast<size_t>(n)];
}

bool Failed(const void* array, int n) { return n > 0 && array == nullptr; }

// Re-points `count` triangles of `from` (corners in `fromPoints`) into `to` (corners in
// `toPoints`), shifting each vertex index by `shift`. Every set corner moves, also in a triangle
// that is only partly set, so that none is left pointing into an array about to be freed.
void RepointTriangles(const Triangle* from, const vec2<float>* fromPoints, int count, Triangle* to,
                      vec2<float>* toPoints, int shift) {
  auto moved = [&](vec2<float>* corner) { return corner ? toPoints + (corner - fromPoints) + shift : nullptr; };
  for (int t = 0; t < count; ++t) {
    vec2<float>*a, *b, *c;
    from[t].GetCorners(&a, &b, &c);
    to[t].SetCorners(moved(a), moved(b), moved(c));
  }
}

}  // namespace

TriangleMesh* TriangleMesh::New() { return new (std::nothrow) TriangleMesh; }

TriangleMesh::~TriangleMesh() {
  delete[] Points;
  delete[] Triangles;
}

int TriangleMesh::Allocate() {
  vec2<float>* points = NewArray<vec2<float>>(NumPoints);
  Triangle* triangles = NewArray<Triangle>(NumTriangles);
  if (Failed(points, NumPoints) || Failed(triangles, NumTriangles)) {
    delete[] points;
    delete[] triangles;
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  delete[] Points;
  delete[] Triangles;
  Points = points;
  Triangles = triangles;
  return VEK_SUCCESS;
}

void TriangleMesh::OverWritePoints(const vec2<float>* source) {
  for (int i = 0; i < NumPoints; ++i) Points[i] = source[i];
}

float TriangleMesh::TotalSignedArea() const {
  double sum = 0.0;
  for (int t = 0; t < NumTriangles; ++t) sum += Triangles[t].SignedArea();
  return static_cast<float>(sum);
}

int TriangleMesh::ExpandPoints(int n) {
  if (n < NumPoints) return VEK_INVALID_PARAMETERS;
  vec2<float>* points = NewArray<vec2<float>>(n);
  if (Failed(points, n)) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  for (int i = 0; i < NumPoints; ++i) points[i] = Points[i];
  RepointTriangles(Triangles, Points, NumTriangles, Triangles, points, 0);
  delete[] Points;
  Points = points;
  NumPoints = n;
  return VEK_SUCCESS;
}

int TriangleMesh::ExpandTriangles(int n) {
  if (n == NumTriangles) return VEK_SUCCESS;
  if (n < NumTriangles) return VEK_INVALID_PARAMETERS;
  Triangle* triangles = NewArray<Triangle>(n);
  if (Failed(triangles, n)) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  for (int t = 0; t < NumTriangles; ++t) {
    vec2<float>*a, *b, *c;
    Triangles[t].GetCorners(&a, &b, &c);
    triangles[t].SetCorners(a, b, c);
  }
  delete[] Triangles;
  Triangles = triangles;
  NumTriangles = n;
  return VEK_SUCCESS;
}

int TriangleMesh::Copy(const TriangleMesh* other) {
  if (other == this) return VEK_SUCCESS;
  int numPoints = other->NumPoints > 0 ? other->NumPoints : 0;
  int numTriangles = other->NumTriangles > 0 ? other->NumTriangles : 0;
  vec2<float>* points = NewArray<vec2<float>>(numPoints);
  Triangle* triangles = NewArray<Triangle>(numTriangles);
  if (Failed(points, numPoints) || Failed(triangles, numTriangles)) {
    delete[] points;
    delete[] triangles;
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  for (int i = 0; i < numPoints; ++i) points[i] = other->Points[i];
  RepointTriangles(other->Triangles, other->Points, numTriangles, triangles, points, 0);
  delete[] Points;
  delete[] Triangles;
  Points = points;
  Triangles = triangles;
  NumPoints = other->NumPoints;
  NumTriangles = other->NumTriangles;
  return VEK_SUCCESS;
}

int TriangleMesh::Concatenate(const TriangleMesh* other) {
  if (NumPoints == 0 && NumTriangles == 0) return Copy(other);
  int numPoints = NumPoints + (other->NumPoints > 0 ? other->NumPoints : 0);
  int numTriangles = NumTriangles + (other->NumTriangles > 0 ? other->NumTriangles : 0);
  vec2<float>* points = NewArray<vec2<float>>(numPoints);
  Triangle* triangles = NewArray<Triangle>(numTriangles);
  if (Failed(points, numPoints) || Failed(triangles, numTriangles)) {
    delete[] points;
    delete[] triangles;
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  for (int i = 0; i < NumPoints; ++i) points[i] = Points[i];
  for (int i = 0; i < other->NumPoints; ++i) points[NumPoints + i] = other->Points[i];
  RepointTriangles(Triangles, Points, NumTriangles, triangles, points, 0);
  RepointTriangles(other->Triangles, other->Points, other->NumTriangles, triangles + NumTriangles, points, NumPoints);
  delete[] Points;
  delete[] Triangles;
  Points = points;
  Triangles = triangles;
  NumPoints = numPoints;
  NumTriangles = numTriangles;
  return VEK_SUCCESS;
}

void TriangleMesh::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << " NumTriangles: " << NumTriangles << "\n";
  os << indent << " NumPoints: " << NumPoints << "\n";
  os << indent << "Points: " << (Points ? " Not Null" : " NULL") << "\n";
  os << indent << "Triangles: " << (Triangles ? " Not Null" : " NULL") << "\n";
}

}  // namespace vek
