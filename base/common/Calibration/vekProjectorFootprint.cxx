#include "vekProjectorFootprint.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <new>
#include <ostream>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekRectilinearConnectivityTriangleMesh.h"
#include "vekRectilinearGrid.h"

namespace vek {

namespace {

// A missing spot is estimated from at least this many found spots around it, when the
// smoothing window has too few for its quadratic.
constexpr int kFillNeighbours = 6;
constexpr int kFillRadiusFirst = 2;
constexpr int kFillRadiusLast = 4;
// The smoothing window, in spots per side, and the found spots its quadratic needs.
constexpr int kSmoothingWindow = 7;
constexpr int kSmoothingMinimum = 12;
// Barycentric and box slack of the camera -> projector look-up, so that points on the mesh's
// outer edge are found despite rounding.
constexpr float kLocateTolerance = 1e-3f;

bool IsFound(const vec2<float>& p) { return !p.IsUnset() && std::isfinite(p.x) && std::isfinite(p.y); }

vec2<double> Widened(const vec2<float>& p) { return {p.x, p.y}; }

// The vertex indices of the grid mesh's triangles, in its own order.
int GridTriangles(int columns, int rows, std::vector<int>& corners) {
  SmartPointer<RectilinearGrid> grid = SmartPointer<RectilinearGrid>::New();
  SmartPointer<RectilinearConnectivityTriangleMesh> mesh = SmartPointer<RectilinearConnectivityTriangleMesh>::New();
  if (!grid || !mesh) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  grid->SetOffsetx(0);
  grid->SetOffsety(0);
  grid->SetSpacex(1);
  grid->SetSpacey(1);
  grid->SetNumx(columns);
  grid->SetNumy(rows);
  int status = mesh->CreateTriangleMesh(grid.GetPointer());
  if (status != VEK_SUCCESS) return status;
  corners.resize(3 * static_cast<size_t>(mesh->GetNumTriangles()));
  for (int t = 0; t < mesh->GetNumTriangles(); ++t) mesh->GetTriangleVerticesInArray(t, &corners[3 * t]);
  return VEK_SUCCESS;
}

// A mesh over `points` of the triangles whose three corners are set.
SmartPointer<TriangleMesh> MeshOfSetTriangles(const std::vector<vec2<float>>& points, const std::vector<int>& corners,
                                              const std::vector<vec2<float>>& judgedBy) {
  std::vector<int> kept;
  for (size_t t = 0; t + 2 < corners.size(); t += 3)
    if (IsFound(judgedBy[corners[t]]) && IsFound(judgedBy[corners[t + 1]]) && IsFound(judgedBy[corners[t + 2]]))
      kept.insert(kept.end(), corners.begin() + t, corners.begin() + t + 3);
  SmartPointer<TriangleMesh> mesh = SmartPointer<TriangleMesh>::New();
  if (!mesh) return mesh;
  mesh->SetNumPoints(static_cast<int>(points.size()));
  mesh->SetNumTriangles(static_cast<int>(kept.size() / 3));
  if (mesh->Allocate() != VEK_SUCCESS) return {};
  mesh->OverWritePoints(points.data());
  for (size_t t = 0; t < kept.size() / 3; ++t)
    mesh->AddTriangle(static_cast<int>(t), kept[3 * t], kept[3 * t + 1], kept[3 * t + 2]);
  return mesh;
}

// Spot (i, j) as the quadratic (in projector pixels) that best fits the found spots of the
// kSmoothingWindow x kSmoothingWindow window around it (shifted to stay inside the grid) gives it;
// false when the window has fewer than kSmoothingMinimum found spots.
bool SmoothSpot(int i, int j, int columns, int rows, const std::vector<vec2<float>>& projector,
                const std::vector<vec2<float>>& camera, vec2<float>& smoothed) {
  const int width = std::min(kSmoothingWindow, columns), height = std::min(kSmoothingWindow, rows);
  const int i0 = std::clamp(i - width / 2, 0, columns - width), j0 = std::clamp(j - height / 2, 0, rows - height);
  const vec2<float>& centre = projector[j * columns + i];
  // Coordinates relative to the spot, in units of the window's size, keep the equations balanced.
  const double scaleX = std::max(1e-9, std::abs(static_cast<double>(projector[j0 * columns + i0 + width - 1].x) -
                                                projector[j0 * columns + i0].x));
  const double scaleY = std::max(1e-9, std::abs(static_cast<double>(projector[(j0 + height - 1) * columns + i0].y) -
                                                projector[j0 * columns + i0].y));
  Eigen::Matrix<double, Eigen::Dynamic, 6> design(width * height, 6);
  Eigen::Matrix<double, Eigen::Dynamic, 2> values(width * height, 2);
  int used = 0;
  for (int jj = j0; jj < j0 + height; ++jj)
    for (int ii = i0; ii < i0 + width; ++ii) {
      const int k = jj * columns + ii;
      if (!IsFound(camera[k])) continue;
      const double u = (projector[k].x - centre.x) / scaleX, v = (projector[k].y - centre.y) / scaleY;
      design.row(used) << 1, u, v, u * u, u * v, v * v;
      values.row(used) << camera[k].x, camera[k].y;
      ++used;
    }
  if (used < kSmoothingMinimum) return false;
  const Eigen::Matrix<double, 6, 2> fit =
      design.topRows(used).colPivHouseholderQr().solve(values.topRows(used));
  // At the spot itself u = v = 0, so the fitted value is the constant term.
  smoothed = vec2<float>(static_cast<float>(fit(0, 0)), static_cast<float>(fit(0, 1)));
  return IsFound(smoothed);
}

// The missing spot (i, j) from the homography of the found spots around it.
bool FillSpot(int i, int j, int columns, int rows, const std::vector<vec2<float>>& projector,
              const std::vector<vec2<float>>& camera, vec2<float>& filled) {
  for (int radius = kFillRadiusFirst; radius <= kFillRadiusLast; ++radius) {
    std::vector<vec2<double>> from, to;
    for (int jj = std::max(0, j - radius); jj <= std::min(rows - 1, j + radius); ++jj)
      for (int ii = std::max(0, i - radius); ii <= std::min(columns - 1, i + radius); ++ii) {
        const int k = jj * columns + ii;
        if (!IsFound(camera[k])) continue;
        from.push_back(Widened(projector[k]));
        to.push_back(Widened(camera[k]));
      }
    if (static_cast<int>(from.size()) < kFillNeighbours) continue;
    Homography local;
    vec2<double> estimate;
    if (Homography::Fit(from, to, local) != VEK_SUCCESS) continue;
    if (!local.Apply(Widened(projector[j * columns + i]), estimate)) continue;
    filled = vec2<float>(static_cast<float>(estimate.x), static_cast<float>(estimate.y));
    return IsFound(filled);
  }
  return false;
}

}  // namespace

ProjectorFootprint* ProjectorFootprint::New() { return new (std::nothrow) ProjectorFootprint; }

void ProjectorFootprint::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Columns: " << Columns << "\n";
  os << indent << "Rows: " << Rows << "\n";
  os << indent << "Found Spots: " << FoundSpots << "\n";
  os << indent << "Filled Spots: " << FilledSpots << "\n";
  os << indent << "Area: " << Area << "\n";
  os << indent << "Residual Max: " << ResidualMax << "\n";
  os << indent << "Residual RMS: " << ResidualRMS << "\n";
}

int ProjectorFootprint::Build(int columns, int rows, const std::vector<vec2<float>>& projectorPoints,
                              const std::vector<vec2<float>>& cameraPoints, const LensWarp* lens) {
  if (columns < 2 || rows < 2 || static_cast<long long>(columns) * rows != static_cast<long long>(projectorPoints.size()) ||
      projectorPoints.size() != cameraPoints.size())
    return ErrorHelper::ErrorWithCustomMessage(
        VEK_INVALID_PARAMETERS, "A spot grid of " + std::to_string(columns) + " x " + std::to_string(rows) +
                                    " needs that many projector and camera points");
  for (const vec2<float>& p : projectorPoints)
    if (!IsFound(p))
      return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Every spot needs its projector pixel");

  std::vector<vec2<float>> camera = cameraPoints;
  if (lens) lens->InplaceInvertArray(camera.data(), static_cast<unsigned int>(camera.size()));
  int found = 0;
  for (vec2<float>& p : camera) {
    if (!IsFound(p)) p = vec2<float>();
    found += IsFound(p) ? 1 : 0;
  }
  auto tooFew = [&]() {
    return ErrorHelper::ErrorWithCustomMessage(
        VEK_TOO_FEW_SPOTS_FOUND, std::to_string(found) + " spots of " + std::to_string(columns) + " x " +
                                     std::to_string(rows) + " found, at least 2 x 2 not on one line are needed");
  };
  if (found < 4) return tooFew();

  std::vector<vec2<double>> from, to;
  for (size_t k = 0; k < camera.size(); ++k)
    if (IsFound(camera[k])) {
      from.push_back(Widened(projectorPoints[k]));
      to.push_back(Widened(camera[k]));
    }
  Homography bestFit;
  if (Homography::Fit(from, to, bestFit) != VEK_SUCCESS) return tooFew();
  double maxResidual = 0, sumSquares = 0;
  for (size_t k = 0; k < from.size(); ++k) {
    vec2<double> predicted;
    if (!bestFit.Apply(from[k], predicted)) continue;
    const double d = std::hypot(predicted.x - to[k].x, predicted.y - to[k].y);
    maxResidual = std::max(maxResidual, d);
    sumSquares += d * d;
  }

  // The mapping's spots: smoothed where the window allows, missing ones filled in.
  std::vector<vec2<float>> mapping = camera;
  int filled = 0;
  for (int j = 0; j < rows; ++j)
    for (int i = 0; i < columns; ++i) {
      const int k = j * columns + i;
      const bool found = IsFound(camera[k]);
      if (SmoothSpot(i, j, columns, rows, projectorPoints, camera, mapping[k]) ||
          (!found && FillSpot(i, j, columns, rows, projectorPoints, camera, mapping[k])))
        filled += found ? 0 : 1;
    }

  std::vector<int> corners;
  int status = GridTriangles(columns, rows, corners);
  if (status != VEK_SUCCESS) return status;
  SmartPointer<TriangleMesh> cameraMesh = MeshOfSetTriangles(camera, corners, camera);
  SmartPointer<TriangleMesh> projectorMesh = MeshOfSetTriangles(projectorPoints, corners, camera);
  SmartPointer<TriangleMesh> mappingCamera = MeshOfSetTriangles(mapping, corners, mapping);
  SmartPointer<TriangleMesh> mappingProjector = MeshOfSetTriangles(projectorPoints, corners, mapping);
  SmartPointer<TriangleLocator2D> locator = SmartPointer<TriangleLocator2D>::New();
  if (!cameraMesh || !projectorMesh || !mappingCamera || !mappingProjector || !locator)
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  if (cameraMesh->GetNumTriangles() == 0) return tooFew();
  status = locator->Initialize(mappingCamera->GetPoints(), mappingCamera->GetNumPoints(),
                               mappingCamera->GetTriangles(), mappingCamera->GetNumTriangles(), columns - 1, rows - 1,
                               0.01f);
  if (status != VEK_SUCCESS) return status;

  double area = 0;
  for (int t = 0; t < cameraMesh->GetNumTriangles(); ++t) area += std::abs(cameraMesh->GetTriangle(t).SignedArea());
  vec2<float> low(mapping[0]), high(mapping[0]);
  bool first = true;
  for (const vec2<float>& p : mapping) {
    if (!IsFound(p)) continue;
    if (first) low = high = p;
    first = false;
    low = vec2<float>(std::min(low.x, p.x), std::min(low.y, p.y));
    high = vec2<float>(std::max(high.x, p.x), std::max(high.y, p.y));
  }

  vec2<double> projectorLow = Widened(projectorPoints[0]), projectorHigh = projectorLow;
  for (const vec2<float>& p : projectorPoints) {
    projectorLow = vec2<double>(std::min<double>(projectorLow.x, p.x), std::min<double>(projectorLow.y, p.y));
    projectorHigh = vec2<double>(std::max<double>(projectorHigh.x, p.x), std::max<double>(projectorHigh.y, p.y));
  }

  Columns = columns;
  Rows = rows;
  ProjectorMin = projectorLow;
  ProjectorMax = projectorHigh;
  FoundSpots = found;
  FilledSpots = filled;
  CameraMesh = cameraMesh;
  ProjectorMesh = projectorMesh;
  MappingCameraMesh = mappingCamera;
  MappingProjectorMesh = mappingProjector;
  MappingLocator = locator;
  Area = area;
  CameraMin = low;
  CameraMax = high;
  BestFit = bestFit;
  ResidualMax = maxResidual;
  ResidualRMS = from.empty() ? 0 : std::sqrt(sumSquares / static_cast<double>(from.size()));
  return VEK_SUCCESS;
}

bool ProjectorFootprint::CameraToProjector(const vec2<float>& camera, vec2<double>& projector) const {
  // Points outside the box never reach the locator, which would log each as out of range.
  if (!MappingLocator || !(camera.x >= CameraMin.x - kLocateTolerance && camera.x <= CameraMax.x + kLocateTolerance &&
                           camera.y >= CameraMin.y - kLocateTolerance && camera.y <= CameraMax.y + kLocateTolerance))
    return false;
  int id = -1;
  float bary[3];
  if (!MappingLocator->FindFirstTriangleContainingPoint(camera, kLocateTolerance, id, bary)) return false;
  int corners[3];
  MappingProjectorMesh->GetTriangleVerticesInArray(id, corners);
  projector = vec2<double>(0, 0);
  for (int k = 0; k < 3; ++k) {
    const vec2<float>& p = MappingProjectorMesh->GetPoint(corners[k]);
    projector.x += bary[k] * static_cast<double>(p.x);
    projector.y += bary[k] * static_cast<double>(p.y);
  }
  return true;
}

}  // namespace vek
