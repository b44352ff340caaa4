#include "vekRectilinearGridIntersectTriangleMesh.h"

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
#include "vekRectilinearConnectivityTriangleMesh.h"
#include "vekTriangleLocator2D.h"
#include "vekTriangleMeshIntersectTriangleMesh.h"

namespace vek {

namespace {

// Weights of a point found only within the tolerance, clamped to [0, 1] and rescaled to sum 1.
void ClampWeights(float weights[3]) {
  float sum = 0;
  for (int k = 0; k < 3; ++k) sum += weights[k] = std::max(0.0f, weights[k]);
  for (int k = 0; k < 3; ++k) weights[k] = sum > 0 ? weights[k] / sum : 1.0f / 3.0f;
}

}  // namespace

// Defined here as well so that the Windows DLL exports them: callers bind them to references
// (comparisons in tests, std::min), which an inline constant alone would leave unresolved.
constexpr int RectilinearGridIntersectTriangleMesh::kNoTriangle;
constexpr float RectilinearGridIntersectTriangleMesh::kTolerance;

RectilinearGridIntersectTriangleMesh* RectilinearGridIntersectTriangleMesh::New() {
  auto* object = new (std::nothrow) RectilinearGridIntersectTriangleMesh;
  if (object && !(object->PartlyCoveredCells = SmartPointer<QuadCollection>::New())) {
    object->Release();
    return nullptr;
  }
  return object;
}

void RectilinearGridIntersectTriangleMesh::ClearResults() {
  PointTriangles.clear();
  PointWeights.clear();
  FoundPoints = 0;
  Coverage.clear();
  CoveredAreas.clear();
  std::fill(CoverageCounts, CoverageCounts + 3, 0);
  PartlyCoveredCells->Reset();
}

int RectilinearGridIntersectTriangleMesh::Update() {
  ClearResults();
  if (!Grid || !Mesh)
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Both the grid and the mesh must be set");
  const int numx = Grid->GetNumx(), numy = Grid->GetNumy();
  const bool spacingOk = std::isfinite(Grid->GetSpacex()) && std::isfinite(Grid->GetSpacey()) &&
                         Grid->GetSpacex() > 0 && Grid->GetSpacey() > 0 && std::isfinite(Grid->GetOffsetx()) &&
                         std::isfinite(Grid->GetOffsety());
  if (numx < 2 || numy < 2 || !spacingOk || 2LL * (numx - 1) * (numy - 1) > INT_MAX ||
      static_cast<long long>(numx) * numy > INT_MAX)
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS,
                                               "The grid needs at least 2 x 2 points and a positive spacing");
  const int status = CatchAllocationFailure([this] { return Compute(); });
  if (status != VEK_SUCCESS) ClearResults();
  // A code from the mesh intersection comes flagged, with its own message.
  return status == VEK_FAILED_TO_ALLOCATE_MEMORY
             ? ErrorHelper::ErrorWithCustomMessage(status, "Out of memory laying a grid over a triangle mesh")
             : status;
}

int RectilinearGridIntersectTriangleMesh::Compute() {
  // The grid's own triangulation gives both the points (as FillInPoints places them) and the
  // cells split the way the mesh intersection measures them.
  SmartPointer<RectilinearConnectivityTriangleMesh> gridMesh = SmartPointer<RectilinearConnectivityTriangleMesh>::New();
  if (!gridMesh) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  int status = gridMesh->CreateTriangleMesh(Grid);
  if (status != VEK_SUCCESS) return status;
  if ((status = LocatePoints(gridMesh->GetPoints(), gridMesh->GetNumPoints())) != VEK_SUCCESS) return status;
  return CoverCells(*gridMesh);
}

int RectilinearGridIntersectTriangleMesh::LocatePoints(const vec2<float>* points, int numPoints) {
  PointTriangles.assign(static_cast<size_t>(numPoints), kNoTriangle);
  PointWeights.assign(3 * static_cast<size_t>(numPoints), 0.0f);
  SmartPointer<TriangleLocator2D> locator = SmartPointer<TriangleLocator2D>::New();
  if (!locator) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  std::vector<int> ids;
  int status = TriangleMeshIntersectTriangleMesh::InitializeLocator(*Mesh, *locator, ids);
  if (status != VEK_SUCCESS || ids.empty()) return status;

  // Points more than a cell outside the triangles' box cannot be accepted; the locator would only
  // warn about them.
  const vec2<float> lo = locator->GetMin(), hi = locator->GetMax(), size = locator->GetCellSize();
  const TriangleMesh& mesh = *Mesh;
  int found = 0;
#ifdef _OPENMP
  const int threads = NumberOfThreads > 0 ? NumberOfThreads : omp_get_max_threads();
#pragma omp parallel for schedule(static) num_threads(threads) reduction(+ : found)
#endif
  for (int p = 0; p < numPoints; ++p) {
    const vec2<float> q = points[p];
    if (!(q.x >= lo.x - size.x && q.x <= hi.x + size.x && q.y >= lo.y - size.y && q.y <= hi.y + size.y)) continue;
    float* weights = &PointWeights[3 * static_cast<size_t>(p)];
    int best = INT_MAX;
    for (int pass = 0; pass < 2 && best == INT_MAX; ++pass) {
      const float tolerance = pass == 0 ? 0.0f : kTolerance;
      const int reach = pass == 0 ? 0 : 1;
      for (int dj = -reach; dj <= reach; ++dj) {
        for (int di = -reach; di <= reach; ++di) {
          const vec2<float> c(std::clamp(q.x + static_cast<float>(di) * size.x, lo.x, hi.x),
                              std::clamp(q.y + static_cast<float>(dj) * size.y, lo.y, hi.y));
          const int* candidates = nullptr;
          unsigned int count = 0;
          locator->FindCandidateTrianglesContainingPoint(c, candidates, count);
          // Candidates come in id order: the first accepted one in a cell is that cell's lowest.
          for (unsigned int k = 0; k < count && candidates[k] < best; ++k) {
            float w[3];
            if (!mesh.GetTriangle(ids[candidates[k]]).TestInsidedness(q, tolerance, w)) continue;
            best = candidates[k];
            std::copy(w, w + 3, weights);
            break;
          }
        }
      }
    }
    if (best == INT_MAX) continue;
    PointTriangles[p] = ids[best];
    if (weights[0] < 0 || weights[1] < 0 || weights[2] < 0) ClampWeights(weights);
    ++found;
  }
  FoundPoints = found;
  return VEK_SUCCESS;
}

int RectilinearGridIntersectTriangleMesh::CoverCells(const TriangleMesh& gridMesh) {
  SmartPointer<TriangleMeshIntersectTriangleMesh> intersect = SmartPointer<TriangleMeshIntersectTriangleMesh>::New();
  if (!intersect) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  intersect->SetFirstMesh(&gridMesh);
  intersect->SetSecondMesh(Mesh);
  intersect->SetNumberOfThreads(NumberOfThreads);
  int status = intersect->Update();
  if (status != VEK_SUCCESS) return status;

  const int numx = Grid->GetNumx();
  const int numCells = Grid->GetNumRectangularRegions();
  std::vector<unsigned char> touched(static_cast<size_t>(numCells), 0);
  for (const auto& pair : intersect->GetOverlappingPairs()) touched[pair.first / 2] = 1;
  const std::vector<double>& areas = intersect->GetFirstOverlapAreas();
  const vec2<float>* points = gridMesh.GetPoints();
  Coverage.assign(static_cast<size_t>(numCells), NotCovered);
  CoveredAreas.assign(static_cast<size_t>(numCells), 0.0);
  for (int r = 0; r < numCells; ++r) {
    CoveredAreas[r] = areas[2 * static_cast<size_t>(r)] + areas[2 * static_cast<size_t>(r) + 1];
    const int p = r / (numx - 1) * numx + r % (numx - 1);
    const int corners[4] = {p, p + 1, p + numx, p + numx + 1};
    const double cellArea =
        (double(points[corners[1]].x) - points[corners[0]].x) * (double(points[corners[2]].y) - points[corners[0]].y);
    bool cornersFound = true;
    for (int c : corners) cornersFound = cornersFound && PointTriangles[c] != kNoTriangle;
    CellCoverage coverage = NotCovered;
    if (touched[r])
      coverage = cornersFound && CoveredAreas[r] >= (1.0 - kTolerance) * cellArea ? FullyCovered : PartlyCovered;
    Coverage[r] = static_cast<unsigned char>(coverage);
    ++CoverageCounts[coverage];
    if (coverage != PartlyCovered) continue;
    status = PartlyCoveredCells->AddQuad(
        OrderedQuadrilateral(points[corners[0]], points[corners[1]], points[corners[2]], points[corners[3]]), r);
    if (status != VEK_SUCCESS) return status;
  }
  return VEK_SUCCESS;
}

void RectilinearGridIntersectTriangleMesh::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "NumberOfThreads: " << NumberOfThreads << "\n";
  os << indent << "NumberOfFoundPoints: " << FoundPoints << "\n";
  os << indent << "NotCoveredCells: " << CoverageCounts[NotCovered] << "\n";
  os << indent << "PartlyCoveredCells: " << CoverageCounts[PartlyCovered] << "\n";
  os << indent << "FullyCoveredCells: " << CoverageCounts[FullyCovered] << "\n";
}

}  // namespace vek
