#include "vekTriangleMeshIntersectTriangleMesh.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <new>
#include <ostream>

#ifdef _OPENMP
#include <omp.h>
#endif

#include "vekAllocationStatus.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekTriangleLocator2D.h"

namespace vek {

namespace {

// First-mesh triangles per unit of parallel work: large enough that scheduling costs nothing,
// small enough that two threads stay balanced where only part of the meshes overlap.
constexpr int kChunkSize = 256;
// Second-mesh triangles per locator cell, on average: fewer cells make the locator quicker to
// build, which outweighs the extra box tests up to about this many.
constexpr double kTrianglesPerCell = 8.0;
constexpr int kMaxCellsPerAxis = 4096;
// A clip of a convex polygon by one line at most doubles its corner count (and adds one when the
// signs are consistent); three clips of a triangle stay below this.
constexpr int kMaxPolygon = 24;

// Relative error bound of the double orientation (Shewchuk's first filter): a result larger
// than this times the magnitudes of its two products has the right sign.
constexpr double kOrientationErrorBound = 3.3306690738754716e-16;

// A usable triangle, corners turned counter-clockwise with y up (positive cross product).
struct Prepared {
  vec2<float> P[3];
  vec2<float> Min;
  vec2<float> Max;
  int Id;
};

struct Point {
  double x;
  double y;
};

// a + b as the rounded sum and its rounding error, exactly.
inline void TwoSum(double a, double b, double& sum, double& error) {
  sum = a + b;
  double bVirtual = sum - a;
  double aVirtual = sum - bVirtual;
  error = (a - aVirtual) + (b - bVirtual);
}

// The sign of (a - c) x (b - c) without rounding: expanded, it is six products of two floats,
// each exact in double, and their sum is kept as a non-overlapping expansion whose largest
// component carries the sign.
int ExactOrientationSign(const vec2<float>& a, const vec2<float>& b, const vec2<float>& c) {
  const double terms[6] = {double(a.x) * b.y,    -(double(a.x) * c.y), -(double(b.y) * c.x),
                           -(double(a.y) * b.x), double(a.y) * c.x,    double(b.x) * c.y};
  double expansion[6];
  int count = 0;
  for (double term : terms) {
    double q = term;
    int kept = 0;
    for (int i = 0; i < count; ++i) {
      double sum, error;
      TwoSum(q, expansion[i], sum, error);
      q = sum;
      if (error != 0) expansion[kept++] = error;
    }
    if (q != 0) expansion[kept++] = q;
    count = kept;
  }
  if (count == 0) return 0;
  return expansion[count - 1] > 0 ? 1 : -1;
}

// (a - c) x (b - c) in double, with its exact sign.
struct Side {
  double Value;
  int Sign;
};

inline Side Orientation(const vec2<float>& a, const vec2<float>& b, const vec2<float>& c) {
  const double left = (double(a.x) - c.x) * (double(b.y) - c.y);
  const double right = (double(a.y) - c.y) * (double(b.x) - c.x);
  const double value = left - right;
  const double bound = kOrientationErrorBound * (std::fabs(left) + std::fabs(right));
  // Branch-free: which way a clear result goes is as good as random here.
  const int sign = (value > bound) - (value < -bound);
  if (sign == 0) [[unlikely]]
    return {value, ExactOrientationSign(a, b, c)};
  return {value, sign};
}

inline bool IsFinite(const vec2<float>& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

// The overlap of `first` and `second`: false when their interiors are disjoint (exactly);
// otherwise true, with the overlap polygon (counter-clockwise, relative to first.P[0]) in
// `polygon`/`count` and its area in `area`.
bool Overlap(const Prepared& first, const Prepared& second, Point polygon[kMaxPolygon], int& count, double& area) {
  // Two convex shapes have disjoint interiors exactly when an edge line of one has the other
  // wholly on its outer side (or on the line).
  Side sides[3][3];  // [edge of second][corner of first], positive inside
  for (int e = 0; e < 3; ++e) {
    const vec2<float>& b0 = second.P[e];
    const vec2<float>& b1 = second.P[(e + 1) % 3];
    for (int k = 0; k < 3; ++k) sides[e][k] = Orientation(b0, b1, first.P[k]);
    if (!((sides[e][0].Sign > 0) | (sides[e][1].Sign > 0) | (sides[e][2].Sign > 0))) return false;
  }
  // A corner of the first strictly inside the second settles it; otherwise the second's corners
  // against the first's edges.
  bool cornerInside = false;
  for (int k = 0; k < 3; ++k) cornerInside |= (sides[0][k].Sign > 0) & (sides[1][k].Sign > 0) & (sides[2][k].Sign > 0);
  if (!cornerInside) {
    for (int e = 0; e < 3; ++e) {
      const vec2<float>& a0 = first.P[e];
      const vec2<float>& a1 = first.P[(e + 1) % 3];
      const int s0 = Orientation(a0, a1, second.P[0]).Sign, s1 = Orientation(a0, a1, second.P[1]).Sign,
                s2 = Orientation(a0, a1, second.P[2]).Sign;
      if (!((s0 > 0) | (s1 > 0) | (s2 > 0))) return false;
    }
  }

  // Clip `first` by the three inner half-planes of `second`, in coordinates relative to first's
  // corner 0 (float differences are exact in double). The first triangle's own corners take
  // the exact sides found above, so the clip agrees with the decision.
  const double ox = first.P[0].x, oy = first.P[0].y;
  Point b[3];
  for (int k = 0; k < 3; ++k) b[k] = {second.P[k].x - ox, second.P[k].y - oy};
  Point buffers[2][kMaxPolygon];
  int corner[2][kMaxPolygon];  // the first triangle's corner a polygon point is, or -1
  Point* in = buffers[0];
  int* inCorner = corner[0];
  int n = 3;
  for (int k = 0; k < 3; ++k) {
    in[k] = {first.P[k].x - ox, first.P[k].y - oy};
    inCorner[k] = k;
  }
  for (int e = 0; e < 3 && n > 0; ++e) {
    // With the whole first triangle inside this half-plane, so is every point of the polygon.
    if (sides[e][0].Sign >= 0 && sides[e][1].Sign >= 0 && sides[e][2].Sign >= 0) continue;
    const Point& e0 = b[e];
    const Point& e1 = b[(e + 1) % 3];
    double value[kMaxPolygon];
    int sign[kMaxPolygon];
    for (int i = 0; i < n; ++i) {
      if (inCorner[i] >= 0) {
        value[i] = sides[e][inCorner[i]].Value;
        sign[i] = sides[e][inCorner[i]].Sign;
      } else {
        value[i] = (e0.x - in[i].x) * (e1.y - in[i].y) - (e0.y - in[i].y) * (e1.x - in[i].x);
        sign[i] = value[i] > 0 ? 1 : (value[i] < 0 ? -1 : 0);
      }
    }
    const int other = in == buffers[0] ? 1 : 0;
    Point* out = buffers[other];
    int* outCorner = corner[other];
    int m = 0;
    for (int i = 0; i < n && m + 2 <= kMaxPolygon; ++i) {
      const int j = i + 1 < n ? i + 1 : 0;
      if (sign[i] >= 0) {
        out[m] = in[i];
        outCorner[m++] = inCorner[i];
      }
      if (sign[i] * sign[j] < 0) {
        double t = value[i] / (value[i] - value[j]);
        t = std::clamp(t, 0.0, 1.0);
        out[m] = {in[i].x + t * (in[j].x - in[i].x), in[i].y + t * (in[j].y - in[i].y)};
        outCorner[m++] = -1;
      }
    }
    in = out;
    inCorner = outCorner;
    n = m;
  }
  double twice = 0;
  for (int i = 0; i < n; ++i) {
    const Point& p = in[i];
    const Point& q = in[(i + 1) % n];
    twice += p.x * q.y - p.y * q.x;
  }
  area = twice > 0 ? 0.5 * twice : 0.0;
  count = n;
  std::copy(in, in + n, polygon);
  return true;
}

struct RegionPiece {
  vec2<double> Corners[3];
  int FirstId;
  int SecondId;
};

// What one chunk of first-mesh triangles found, in first-id then second-id order.
struct ChunkResult {
  std::vector<std::pair<int, int>> Pairs;
  std::vector<double> Areas;
  std::vector<RegionPiece> Region;
};

// Appends the usable triangles of `mesh`, in id order.
void Prepare(const TriangleMesh& mesh, std::vector<Prepared>& out) {
  out.clear();
  out.reserve(static_cast<size_t>(std::max(0, mesh.GetNumTriangles())));
  for (int t = 0; t < mesh.GetNumTriangles(); ++t) {
    const Triangle& triangle = mesh.GetTriangle(t);
    if (!TriangleMeshIntersectTriangleMesh::IsTriangleUsable(triangle)) continue;
    Prepared p;
    for (int k = 0; k < 3; ++k) p.P[k] = *triangle.GetCorner(k);
    if (Orientation(p.P[0], p.P[1], p.P[2]).Sign < 0) std::swap(p.P[1], p.P[2]);
    p.Min = vec2<float>(std::min({p.P[0].x, p.P[1].x, p.P[2].x}), std::min({p.P[0].y, p.P[1].y, p.P[2].y}));
    p.Max = vec2<float>(std::max({p.P[0].x, p.P[1].x, p.P[2].x}), std::max({p.P[0].y, p.P[1].y, p.P[2].y}));
    p.Id = t;
    out.push_back(p);
  }
}

// The locator's cell of a coordinate, computed as it computes it, held to [0, n - 1].
inline int Cell(float v, float min, float size, int n) {
  float q = std::floor((v - min) / size);
  if (!(q >= 0.0f)) return 0;
  if (!(q < static_cast<float>(n))) return n - 1;
  return static_cast<int>(q);
}

// The pairs of one chunk of first triangles. `stamp` (one entry per second triangle, owned by
// the calling thread) remembers which first triangle last saw a candidate, so that a second
// triangle bucketed in several cells is tested once.
void IntersectChunk(const std::vector<Prepared>& first, const std::vector<Prepared>& second,
                    const TriangleLocator2D& locator, int begin, int end, bool buildRegion, std::vector<int>& stamp,
                    std::vector<int>& candidates, ChunkResult& result) {
  const vec2<float> min = locator.GetMin(), size = locator.GetCellSize(), max = locator.GetMax();
  const int nx = locator.GetNx(), ny = locator.GetNy();
  Point polygon[kMaxPolygon];
  for (int f = begin; f < end; ++f) {
    const Prepared& a = first[f];
    if (!(a.Max.x > min.x && a.Max.y > min.y && a.Min.x < max.x && a.Min.y < max.y)) continue;
    const int i0 = Cell(a.Min.x, min.x, size.x, nx), i1 = Cell(a.Max.x, min.x, size.x, nx);
    const int j0 = Cell(a.Min.y, min.y, size.y, ny), j1 = Cell(a.Max.y, min.y, size.y, ny);
    candidates.clear();
    for (int j = j0; j <= j1; ++j) {
      for (int i = i0; i <= i1; ++i) {
        const vec2<float> centre(min.x + (static_cast<float>(i) + 0.5f) * size.x,
                                 min.y + (static_cast<float>(j) + 0.5f) * size.y);
        const int* ids = nullptr;
        unsigned int count = 0;
        if (!locator.FindCandidateTrianglesContainingPoint(centre, ids, count)) continue;
        for (unsigned int k = 0; k < count; ++k) {
          const int s = ids[k];
          if (stamp[s] == f) continue;
          stamp[s] = f;
          const Prepared& b = second[s];
          if (a.Max.x > b.Min.x && b.Max.x > a.Min.x && a.Max.y > b.Min.y && b.Max.y > a.Min.y) candidates.push_back(s);
        }
      }
    }
    std::sort(candidates.begin(), candidates.end());
    for (int s : candidates) {
      const Prepared& b = second[s];
      int count = 0;
      double area = 0;
      if (!Overlap(a, b, polygon, count, area)) continue;
      result.Pairs.emplace_back(a.Id, b.Id);
      result.Areas.push_back(area);
      if (!buildRegion) continue;
      const double ox = a.P[0].x, oy = a.P[0].y;
      const vec2<double> p0(polygon[0].x + ox, polygon[0].y + oy);
      for (int k = 1; k + 1 < count; ++k) {
        // Clockwise with y up is the grid triangulation's orientation. Slivers that rounding
        // leaves without area (in the coordinates kept) are dropped.
        const RegionPiece piece{
            {p0, {polygon[k + 1].x + ox, polygon[k + 1].y + oy}, {polygon[k].x + ox, polygon[k].y + oy}}, a.Id, b.Id};
        if (TriangleCollection::SignedArea(piece.Corners[0], piece.Corners[1], piece.Corners[2]) > 0)
          result.Region.push_back(piece);
      }
    }
  }
}

}  // namespace

TriangleMeshIntersectTriangleMesh* TriangleMeshIntersectTriangleMesh::New() {
  auto* object = new (std::nothrow) TriangleMeshIntersectTriangleMesh;
  if (object && !(object->OverlapRegion = SmartPointer<TriangleCollection>::New())) {
    object->Release();
    return nullptr;
  }
  return object;
}

bool TriangleMeshIntersectTriangleMesh::IsTriangleUsable(const Triangle& triangle) {
  if (!triangle.IsInitialized()) return false;
  for (int k = 0; k < 3; ++k) {
    const vec2<float>& p = *triangle.GetCorner(k);
    if (p.IsUnset() || !IsFinite(p)) return false;
  }
  return Orientation(*triangle.GetCorner(0), *triangle.GetCorner(1), *triangle.GetCorner(2)).Sign != 0;
}

int TriangleMeshIntersectTriangleMesh::InitializeLocator(const TriangleMesh& mesh, TriangleLocator2D& locator,
                                                         std::vector<int>& ids) {
  ids.clear();
  const int status = CatchAllocationFailure([&] {
    for (int t = 0; t < mesh.GetNumTriangles(); ++t)
      if (IsTriangleUsable(mesh.GetTriangle(t))) ids.push_back(t);
    const int n = static_cast<int>(ids.size());
    if (n == 0) return VEK_SUCCESS;
    // Only the usable triangles' corners span the cells: others may be unset or NaN.
    std::vector<vec2<float>> corners(3 * static_cast<size_t>(n));
    std::vector<Triangle> triangles(static_cast<size_t>(n));
    vec2<float> min, max;
    for (int s = 0; s < n; ++s) {
      const Triangle& source = mesh.GetTriangle(ids[s]);
      vec2<float>* c = &corners[3 * static_cast<size_t>(s)];
      for (int k = 0; k < 3; ++k) c[k] = *source.GetCorner(k);
      triangles[s].SetCorners(c, c + 1, c + 2);
      vec2<float> boxMin, boxMax;
      triangles[s].GetBoundingBox(boxMin, boxMax);
      min = s == 0 ? boxMin : vec2<float>(std::min(min.x, boxMin.x), std::min(min.y, boxMin.y));
      max = s == 0 ? boxMax : vec2<float>(std::max(max.x, boxMax.x), std::max(max.y, boxMax.y));
    }
    const double width = double(max.x) - min.x, height = double(max.y) - min.y;
    const double cells = std::max(1.0, n / kTrianglesPerCell);
    const double nx = std::clamp(std::round(std::sqrt(cells * width / height)), 1.0, double(kMaxCellsPerAxis));
    const double ny = std::clamp(std::round(cells / nx), 1.0, double(kMaxCellsPerAxis));
    return locator.Initialize(corners.data(), 3 * n, triangles.data(), n, static_cast<int>(nx), static_cast<int>(ny),
                              0.0f);
  });
  if (status == VEK_FAILED_TO_ALLOCATE_MEMORY) ids.clear();
  return status;
}

void TriangleMeshIntersectTriangleMesh::ClearResults() {
  Pairs.clear();
  PairAreas.clear();
  FirstOverlapAreas.clear();
  SecondOverlapAreas.clear();
  TotalOverlapArea = 0;
  OverlapRegion->Reset();
}

int TriangleMeshIntersectTriangleMesh::Update() {
  ClearResults();
  if (!FirstMesh || !SecondMesh)
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Both meshes must be set before Update");
  const int status = CatchAllocationFailure([this] { return Compute(); });
  if (status == VEK_SUCCESS) return status;
  ClearResults();
  return status == VEK_FAILED_TO_ALLOCATE_MEMORY
             ? ErrorHelper::ErrorWithCustomMessage(status, "Out of memory intersecting triangle meshes")
             : status;
}

int TriangleMeshIntersectTriangleMesh::Compute() {
  FirstOverlapAreas.assign(static_cast<size_t>(std::max(0, FirstMesh->GetNumTriangles())), 0.0);
  SecondOverlapAreas.assign(static_cast<size_t>(std::max(0, SecondMesh->GetNumTriangles())), 0.0);
  std::vector<Prepared> first, second;
  Prepare(*FirstMesh, first);
  Prepare(*SecondMesh, second);
  if (first.empty() || second.empty()) return VEK_SUCCESS;
  SmartPointer<TriangleLocator2D> locator = SmartPointer<TriangleLocator2D>::New();
  if (!locator) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  // Both lists hold the usable triangles in id order, so a locator id indexes `second` directly.
  std::vector<int> ids;
  int status = InitializeLocator(*SecondMesh, *locator, ids);
  if (status != VEK_SUCCESS) return status;
  if (ids.size() != second.size()) return VEK_INVALID_PARAMETERS;

  const int numFirst = static_cast<int>(first.size());
  const int numChunks = (numFirst + kChunkSize - 1) / kChunkSize;
  std::vector<ChunkResult> chunks(static_cast<size_t>(numChunks));
  const bool buildRegion = BuildOverlapRegion;
  int failures = 0;
  int pairCount = 0;
#ifdef _OPENMP
  const int threads = NumberOfThreads > 0 ? NumberOfThreads : omp_get_max_threads();
#pragma omp parallel num_threads(threads) reduction(+ : failures, pairCount)
#endif
  {
    std::vector<int> stamp, candidates;
    const bool ready = CatchAllocationFailure([&] {
                         stamp.assign(second.size(), -1);
                         candidates.reserve(64);
                         return VEK_SUCCESS;
                       }) == VEK_SUCCESS;
    failures += !ready;
#ifdef _OPENMP
#pragma omp for schedule(dynamic, 1)
#endif
    for (int c = 0; c < numChunks; ++c) {
      if (!ready) continue;
      const int status = CatchAllocationFailure([&] {
        IntersectChunk(first, second, *locator, c * kChunkSize, std::min(numFirst, (c + 1) * kChunkSize), buildRegion,
                       stamp, candidates, chunks[c]);
        return VEK_SUCCESS;
      });
      failures += status != VEK_SUCCESS;
      pairCount += static_cast<int>(chunks[c].Pairs.size());
    }
  }
  if (failures > 0) return VEK_FAILED_TO_ALLOCATE_MEMORY;

  // Merged in chunk order, and every sum taken in pair order, so nothing depends on threads.
  Pairs.reserve(static_cast<size_t>(pairCount));
  PairAreas.reserve(static_cast<size_t>(pairCount));
  size_t pieces = 0;
  for (const ChunkResult& chunk : chunks) pieces += chunk.Region.size();
  if (pieces > static_cast<size_t>(INT_MAX)) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  if ((status = OverlapRegion->Reserve(static_cast<int>(pieces))) != VEK_SUCCESS) return status;
  for (ChunkResult& chunk : chunks) {
    for (size_t k = 0; k < chunk.Pairs.size(); ++k) {
      const auto [f, s] = chunk.Pairs[k];
      const double area = chunk.Areas[k];
      Pairs.push_back(chunk.Pairs[k]);
      PairAreas.push_back(area);
      FirstOverlapAreas[f] += area;
      SecondOverlapAreas[s] += area;
      TotalOverlapArea += area;
    }
    for (const RegionPiece& piece : chunk.Region)
      OverlapRegion->AddTriangle(piece.Corners[0], piece.Corners[1], piece.Corners[2], piece.FirstId, piece.SecondId);
    chunk = ChunkResult();
  }
  return VEK_SUCCESS;
}

void TriangleMeshIntersectTriangleMesh::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "BuildOverlapRegion: " << (BuildOverlapRegion ? "On" : "Off") << "\n";
  os << indent << "NumberOfThreads: " << NumberOfThreads << "\n";
  os << indent << "NumberOfOverlappingPairs: " << Pairs.size() << "\n";
  os << indent << "TotalOverlapArea: " << TotalOverlapArea << "\n";
}

}  // namespace vek
