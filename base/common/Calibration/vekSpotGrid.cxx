#include "vekSpotGrid.h"

#include <cmath>
#include <new>

#include "vekCalibrationFileVariables.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"

namespace vek {

namespace {

constexpr char kWhat[] = "spot grid file";
constexpr char kProjectorWidth[] = "ProjectorWidth";
constexpr char kProjectorHeight[] = "ProjectorHeight";
constexpr char kColumns[] = "GridColumns";
constexpr char kRows[] = "GridRows";
constexpr char kProjectorPoints[] = "ProjectorPoints";
constexpr char kCameraPoints[] = "CameraPoints";
constexpr int kMinGridSize = 2;

std::vector<float> Flatten(const std::vector<vec2<float>>& points) {
  std::vector<float> values;
  values.reserve(points.size() * 2);
  for (const auto& p : points) {
    values.push_back(p.x);
    values.push_back(p.y);
  }
  return values;
}

std::vector<vec2<float>> Pair(const std::vector<float>& values) {
  std::vector<vec2<float>> points(values.size() / 2);
  for (size_t k = 0; k < points.size(); ++k) points[k] = vec2<float>(values[2 * k], values[2 * k + 1]);
  return points;
}

bool AllFinite(const std::vector<vec2<float>>& points) {
  for (const auto& p : points)
    if (!std::isfinite(p.x) || !std::isfinite(p.y)) return false;
  return true;
}

}  // namespace

SpotGrid* SpotGrid::New() { return new (std::nothrow) SpotGrid; }

void SpotGrid::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "ProjectorWidth: " << ProjectorWidth << "\n";
  os << indent << "ProjectorHeight: " << ProjectorHeight << "\n";
  os << indent << "Columns: " << Columns << "\n";
  os << indent << "Rows: " << Rows << "\n";
  os << indent << "Found Spots: " << CountFoundSpots() << " of " << CameraPoints.size() << "\n";
}

int SpotGrid::CountFoundSpots() const {
  int found = 0;
  for (const auto& p : CameraPoints)
    if (!p.IsUnset()) ++found;
  return found;
}

std::string SpotGrid::FindInconsistency() const {
  if (ProjectorWidth < 1 || ProjectorHeight < 1)
    return "projector size " + std::to_string(ProjectorWidth) + " x " + std::to_string(ProjectorHeight) +
           " is not positive";
  if (Columns < kMinGridSize || Rows < kMinGridSize)
    return "a grid of " + std::to_string(Columns) + " x " + std::to_string(Rows) + " spots has fewer than 2 per side";
  // In 64 bits: a damaged size must not wrap into a count that happens to match.
  const long long spots = static_cast<long long>(Columns) * Rows;
  for (const auto* points : {&ProjectorPoints, &CameraPoints})
    if (static_cast<long long>(points->size()) != spots)
      return std::string(points == &ProjectorPoints ? kProjectorPoints : kCameraPoints) + " holds " +
             std::to_string(points->size() * 2) + " numbers, not " + std::to_string(spots * 2) + " for " +
             std::to_string(Columns) + " x " + std::to_string(Rows) + " spots";
  if (!AllFinite(ProjectorPoints) || !AllFinite(CameraPoints)) return "a spot coordinate is no finite number";
  return {};
}

int SpotGrid::Validate() const {
  const std::string problem = FindInconsistency();
  if (problem.empty()) return VEK_SUCCESS;
  return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Spot grid: " + problem);
}

int SpotGrid::Read(const std::string& path) {
  CalibrationFileVariables file;
  int status = file.Read(path, kWhat);
  if (status != VEK_SUCCESS) return status;
  SmartPointer<SpotGrid> read = SmartPointer<SpotGrid>::New();
  if (!read) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  std::vector<float> projector, camera;
  if (status == VEK_SUCCESS) status = file.GetInt(kProjectorWidth, read->ProjectorWidth);
  if (status == VEK_SUCCESS) status = file.GetInt(kProjectorHeight, read->ProjectorHeight);
  if (status == VEK_SUCCESS) status = file.GetInt(kColumns, read->Columns);
  if (status == VEK_SUCCESS) status = file.GetInt(kRows, read->Rows);
  if (status == VEK_SUCCESS) status = file.GetFloatArray(kProjectorPoints, projector);
  if (status == VEK_SUCCESS) status = file.GetFloatArray(kCameraPoints, camera);
  if (status != VEK_SUCCESS) return status;
  for (const auto* values : {&projector, &camera})
    if (values->size() % 2)
      return file.Fail(VEK_BAD_PARSE, std::string(values == &projector ? kProjectorPoints : kCameraPoints) +
                                          " holds an odd count of numbers");
  try {
    read->ProjectorPoints = Pair(projector);
    read->CameraPoints = Pair(camera);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  const std::string problem = read->FindInconsistency();
  if (!problem.empty()) return file.Fail(VEK_BAD_PARSE, problem);
  ProjectorWidth = read->ProjectorWidth;
  ProjectorHeight = read->ProjectorHeight;
  Columns = read->Columns;
  Rows = read->Rows;
  ProjectorPoints.swap(read->ProjectorPoints);
  CameraPoints.swap(read->CameraPoints);
  return VEK_SUCCESS;
}

int SpotGrid::Write(const std::string& path) const {
  const std::string problem = FindInconsistency();
  if (!problem.empty())
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, path + ": cannot write: " + problem);
  try {
    CalibrationFileVariables file;
    int status = file.AddInt(kProjectorWidth, ProjectorWidth);
    if (status == VEK_SUCCESS) status = file.AddInt(kProjectorHeight, ProjectorHeight);
    if (status == VEK_SUCCESS) status = file.AddInt(kColumns, Columns);
    if (status == VEK_SUCCESS) status = file.AddInt(kRows, Rows);
    if (status == VEK_SUCCESS) status = file.AddFloatArray(kProjectorPoints, Flatten(ProjectorPoints));
    if (status == VEK_SUCCESS) status = file.AddFloatArray(kCameraPoints, Flatten(CameraPoints));
    if (status == VEK_SUCCESS) status = file.Write(path);
    return status;
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

}  // namespace vek
