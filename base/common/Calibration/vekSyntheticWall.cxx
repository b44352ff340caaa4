#include "vekSyntheticWall.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <new>
#include <random>
#include <set>
#include <sstream>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"

namespace vek {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kMaxKeystone = 0.1;
constexpr double kMaxOverlap = 0.5;
constexpr double kMaxInset = 0.25;
// Spot grids smaller than this lose no spots: every spot of them is on the border.
constexpr int kMinGridForMissingSpots = 5;
// Keeps the three generators' sequences apart (the golden-ratio increment).
constexpr std::uint32_t kSeedStep = 0x9E3779B9u;

const vec2<double> kNotANumber{std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::quiet_NaN()};

// In (0, 1), from one raw output: the same numbers from every standard library.
double Uniform(std::mt19937& generator) { return (static_cast<double>(generator()) + 0.5) / 4294967296.0; }

void NormalPair(std::mt19937& generator, double& z0, double& z1) {
  const double radius = std::sqrt(-2.0 * std::log(Uniform(generator)));
  const double angle = 2.0 * kPi * Uniform(generator);
  z0 = radius * std::cos(angle);
  z1 = radius * std::sin(angle);
}

vec2<double> Map(const Homography& h, const vec2<double>& in) {
  vec2<double> out;
  return h.Apply(in, out) ? out : kNotANumber;
}

std::string CheckParameters(const SyntheticWall::Parameters& p) {
  std::ostringstream problem;
  if (p.Columns < 1 || p.Rows < 1)
    problem << "a wall of " << p.Columns << " x " << p.Rows << " projectors";
  else if (p.ProjectorWidth < 2 || p.ProjectorHeight < 2)
    problem << "projectors of " << p.ProjectorWidth << " x " << p.ProjectorHeight << " pixels";
  else if (p.SpotColumns < 2 || p.SpotRows < 2)
    problem << "spot grids of " << p.SpotColumns << " x " << p.SpotRows;
  else if (!(p.Overlap >= 0 && p.Overlap < kMaxOverlap))
    problem << "overlap " << p.Overlap << " outside [0, " << kMaxOverlap << ")";
  else if (!(p.Keystone >= 0 && p.Keystone <= kMaxKeystone))
    problem << "keystone " << p.Keystone << " outside [0, " << kMaxKeystone << "]";
  else if (p.Columns * p.Rows > 1 && !(2 * p.Keystone < p.Overlap))
    problem << "keystone " << p.Keystone << " not below half the overlap " << p.Overlap << ": projectors may leave gaps";
  else if (!(p.Inset >= 0 && p.Inset < kMaxInset))
    problem << "inset " << p.Inset << " outside [0, " << kMaxInset << ")";
  else if (!(p.NoiseSigma >= 0 && std::isfinite(p.NoiseSigma)))
    problem << "noise " << p.NoiseSigma;
  return problem.str();
}

// The spots a projector loses: a few on the border of its grid, one or two inside.
std::set<int> ChooseMissingSpots(std::mt19937& generator, int projector, int columns, int rows) {
  std::vector<int> border;
  for (int j = 0; j < rows; ++j)
    for (int i = 0; i < columns; ++i)
      if (i == 0 || j == 0 || i == columns - 1 || j == rows - 1) border.push_back(j * columns + i);
  std::set<int> missing;
  const int onBorder = 2 + static_cast<int>(generator() % 3);
  while (static_cast<int>(missing.size()) < onBorder) missing.insert(border[generator() % border.size()]);
  const int inside = 1 + projector % 2;
  std::set<int> chosenInside;
  while (static_cast<int>(chosenInside.size()) < inside) {
    const int i = 1 + static_cast<int>(generator() % static_cast<std::uint32_t>(columns - 2));
    const int j = 1 + static_cast<int>(generator() % static_cast<std::uint32_t>(rows - 2));
    chosenInside.insert(j * columns + i);
  }
  missing.insert(chosenInside.begin(), chosenInside.end());
  return missing;
}

}  // namespace

// Defined here as well so that the Windows DLL exports them: callers bind them to references
// (comparisons in tests, std::min), which an inline constant alone would leave unresolved.
constexpr int SyntheticWall::kCameraWidth;
constexpr int SyntheticWall::kCameraHeight;
constexpr float SyntheticWall::kFocalLength;
constexpr float SyntheticWall::kCenterX;
constexpr float SyntheticWall::kCenterY;
constexpr float SyntheticWall::kK1;
constexpr float SyntheticWall::kK2;
constexpr float SyntheticWall::kP1;
constexpr float SyntheticWall::kP2;
constexpr float SyntheticWall::kK3;
constexpr double SyntheticWall::kFrameFill;
constexpr double SyntheticWall::kCameraTilt;

SyntheticWall* SyntheticWall::New() { return new (std::nothrow) SyntheticWall; }

void SyntheticWall::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Projectors: " << Params.Columns << " x " << Params.Rows << " of " << Params.ProjectorWidth << " x "
     << Params.ProjectorHeight << "\n";
  os << indent << "Overlap: " << Params.Overlap << "\n";
  os << indent << "Keystone: " << Params.Keystone << "\n";
  os << indent << "Inset: " << Params.Inset << "\n";
  os << indent << "Spots: " << Params.SpotColumns << " x " << Params.SpotRows << "\n";
  os << indent << "NoiseSigma: " << Params.NoiseSigma << "\n";
  os << indent << "MissingSpots: " << (Params.MissingSpots ? 1 : 0) << "\n";
  os << indent << "Seed: " << Params.Seed << "\n";
  os << indent << "Fill: (" << FillMin.x << ", " << FillMin.y << ") to (" << FillMax.x << ", " << FillMax.y << ")\n";
}

int SyntheticWall::Generate(const Parameters& parameters) {
  const std::string problem = CheckParameters(parameters);
  if (!problem.empty())
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Synthetic wall: " + problem);
  try {
    const Parameters& p = parameters;
    const int count = p.Columns * p.Rows;
    const double width = p.ProjectorWidth;
    const double height = p.ProjectorHeight;
    std::mt19937 keystones(p.Seed);
    std::mt19937 noise(p.Seed + kSeedStep);
    std::mt19937 losses(p.Seed + 2 * kSeedStep);

    // Projectors on the screen, and the screen box they span.
    std::vector<Homography> toScreen(static_cast<size_t>(count)), fromScreen(static_cast<size_t>(count));
    std::vector<std::array<vec2<double>, 4>> corners(static_cast<size_t>(count));
    const vec2<double> image[4] = {{0, 0}, {width, 0}, {0, height}, {width, height}};
    vec2<double> boxMin{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    vec2<double> boxMax{-boxMin.x, -boxMin.y};
    for (int k = 0; k < count; ++k) {
      const double left = (k % p.Columns) * width * (1 - p.Overlap);
      const double top = (k / p.Columns) * height * (1 - p.Overlap);
      auto& c = corners[static_cast<size_t>(k)];
      for (int n = 0; n < 4; ++n) {
        const double dx = (2 * Uniform(keystones) - 1) * p.Keystone * width;
        const double dy = (2 * Uniform(keystones) - 1) * p.Keystone * height;
        c[n] = vec2<double>(left + image[n].x + dx, top + image[n].y + dy);
        boxMin = vec2<double>(std::min(boxMin.x, c[n].x), std::min(boxMin.y, c[n].y));
        boxMax = vec2<double>(std::max(boxMax.x, c[n].x), std::max(boxMax.y, c[n].y));
      }
      int status = Homography::FromCorners(image, c.data(), toScreen[static_cast<size_t>(k)]);
      if (status == VEK_SUCCESS) status = toScreen[static_cast<size_t>(k)].Invert(fromScreen[static_cast<size_t>(k)]);
      if (status != VEK_SUCCESS) return status;
    }

    // The fill region: inside the innermost corner of every outer side, then inset.
    vec2<double> fillMin{-std::numeric_limits<double>::max(), -std::numeric_limits<double>::max()};
    vec2<double> fillMax{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    for (int k = 0; k < count; ++k) {
      const auto& c = corners[static_cast<size_t>(k)];
      if (k % p.Columns == 0) fillMin.x = std::max({fillMin.x, c[0].x, c[2].x});
      if (k % p.Columns == p.Columns - 1) fillMax.x = std::min({fillMax.x, c[1].x, c[3].x});
      if (k / p.Columns == 0) fillMin.y = std::max({fillMin.y, c[0].y, c[1].y});
      if (k / p.Columns == p.Rows - 1) fillMax.y = std::min({fillMax.y, c[2].y, c[3].y});
    }
    // Pixel W - 1 is the last one the spots reach, one pixel short of the image edge W.
    fillMin = vec2<double>(fillMin.x + p.Inset * width + 1, fillMin.y + p.Inset * height + 1);
    fillMax = vec2<double>(fillMax.x - p.Inset * width - 1, fillMax.y - p.Inset * height - 1);
    if (!(fillMin.x < fillMax.x && fillMin.y < fillMax.y))
      return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Synthetic wall: no room for a fill region");

    // The camera: the box in the middle of the frame, seen a little from below.
    const double scale = kFrameFill * std::min(kCameraWidth / (boxMax.x - boxMin.x), kCameraHeight / (boxMax.y - boxMin.y));
    const double halfWidth = scale * (boxMax.x - boxMin.x) / 2;
    const double halfHeight = scale * (boxMax.y - boxMin.y) / 2;
    const double cx = kCameraWidth / 2.0, cy = kCameraHeight / 2.0;
    const vec2<double> box[4] = {{boxMin.x, boxMin.y}, {boxMax.x, boxMin.y}, {boxMin.x, boxMax.y}, {boxMax.x, boxMax.y}};
    const vec2<double> seen[4] = {{cx - halfWidth * (1 - kCameraTilt), cy - halfHeight},
                                  {cx + halfWidth * (1 - kCameraTilt), cy - halfHeight},
                                  {cx - halfWidth, cy + halfHeight},
                                  {cx + halfWidth, cy + halfHeight}};
    Homography toCamera;
    int status = Homography::FromCorners(box, seen, toCamera);
    if (status != VEK_SUCCESS) return status;

    SmartPointer<BrownLensWarp> lens = SmartPointer<BrownLensWarp>::New();
    if (!lens) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    lens->SetCameraDimensions(kCameraWidth, kCameraHeight);
    lens->SetFocalLengthX(kFocalLength);
    lens->SetFocalLengthY(kFocalLength);
    lens->SetCenterX(kCenterX);
    lens->SetCenterY(kCenterY);
    lens->Setk1(kK1);
    lens->Setk2(kK2);
    lens->Setp1(kP1);
    lens->Setp2(kP2);
    lens->Setk3(kK3);

    // The spots, as the camera would report them.
    const bool losesSpots =
        p.MissingSpots && p.SpotColumns >= kMinGridForMissingSpots && p.SpotRows >= kMinGridForMissingSpots;
    std::vector<SmartPointer<SpotGrid>> grids;
    for (int k = 0; k < count; ++k) {
      SmartPointer<SpotGrid> grid = SmartPointer<SpotGrid>::New();
      if (!grid) return VEK_FAILED_TO_ALLOCATE_MEMORY;
      grid->SetProjectorWidth(p.ProjectorWidth);
      grid->SetProjectorHeight(p.ProjectorHeight);
      grid->SetColumns(p.SpotColumns);
      grid->SetRows(p.SpotRows);
      const size_t spots = static_cast<size_t>(p.SpotColumns) * static_cast<size_t>(p.SpotRows);
      grid->GetProjectorPoints().resize(spots);
      grid->GetCameraPoints().resize(spots);
      for (int j = 0; j < p.SpotRows; ++j) {
        for (int i = 0; i < p.SpotColumns; ++i) {
          const size_t n = static_cast<size_t>(j) * static_cast<size_t>(p.SpotColumns) + static_cast<size_t>(i);
          const vec2<float> pixel(static_cast<float>(i * (width - 1) / (p.SpotColumns - 1)),
                                  static_cast<float>(j * (height - 1) / (p.SpotRows - 1)));
          const vec2<double> undistorted = Map(toCamera, Map(toScreen[static_cast<size_t>(k)], {pixel.x, pixel.y}));
          float x, y;
          lens->Forward(static_cast<float>(undistorted.x), static_cast<float>(undistorted.y), x, y);
          double z0, z1;
          NormalPair(noise, z0, z1);
          grid->GetProjectorPoints()[n] = pixel;
          grid->GetCameraPoints()[n] =
              vec2<float>(static_cast<float>(x + p.NoiseSigma * z0), static_cast<float>(y + p.NoiseSigma * z1));
        }
      }
      if (losesSpots)
        for (int n : ChooseMissingSpots(losses, k, p.SpotColumns, p.SpotRows))
          grid->GetCameraPoints()[static_cast<size_t>(n)] = vec2<float>();
      grids.push_back(grid);
    }

    Params = parameters;
    ProjectorToScreenMaps.swap(toScreen);
    ScreenToProjectorMaps.swap(fromScreen);
    ScreenToCameraMap = toCamera;
    FillMin = fillMin;
    FillMax = fillMax;
    Lens = lens;
    SpotGrids.swap(grids);
    return VEK_SUCCESS;
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

SpotGrid* SyntheticWall::GetSpotGrid(int projector) const {
  return projector >= 0 && projector < static_cast<int>(SpotGrids.size())
             ? SpotGrids[static_cast<size_t>(projector)].GetPointer()
             : nullptr;
}

OrderedQuadrilateral SyntheticWall::GetCameraFillRegion() const {
  OrderedQuadrilateral region;
  if (!Lens) return region;
  const vec2<double> corners[4] = {{FillMin.x, FillMin.y}, {FillMax.x, FillMin.y}, {FillMin.x, FillMax.y},
                                   {FillMax.x, FillMax.y}};
  for (int k = 0; k < 4; ++k) {
    const vec2<double> camera = ScreenToCamera(corners[k]);
    vec2<float>& corner = region.SetPoint(k);
    Lens->Forward(static_cast<float>(camera.x), static_cast<float>(camera.y), corner.x, corner.y);
  }
  return region;
}

int SyntheticWall::FillCalibrationFolder(CalibrationFolder& folder) const {
  if (!Lens) return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Synthetic wall: not generated");
  folder.SetLens(Lens.GetPointer());
  folder.SetLensFileName(CalibrationFolder::kDefaultLensFileName);
  folder.RemoveAllSpotGrids();
  for (const auto& grid : SpotGrids) folder.AddSpotGrid(grid.GetPointer());
  folder.SetFillRegion(GetCameraFillRegion());
  return VEK_SUCCESS;
}

int SyntheticWall::WriteCalibrationFolder(const std::string& dir) const {
  SmartPointer<CalibrationFolder> folder = SmartPointer<CalibrationFolder>::New();
  if (!folder) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  const int status = FillCalibrationFolder(*folder);
  return status == VEK_SUCCESS ? folder->Write(dir) : status;
}

vec2<double> SyntheticWall::ProjectorToScreen(int projector, const vec2<double>& xy) const {
  if (projector < 0 || projector >= GetNumberOfProjectors()) return kNotANumber;
  return Map(ProjectorToScreenMaps[static_cast<size_t>(projector)], xy);
}

vec2<double> SyntheticWall::ScreenToProjector(int projector, const vec2<double>& screen) const {
  if (projector < 0 || projector >= GetNumberOfProjectors()) return kNotANumber;
  return Map(ScreenToProjectorMaps[static_cast<size_t>(projector)], screen);
}

vec2<double> SyntheticWall::ScreenToContent(const vec2<double>& screen) const {
  return {(screen.x - FillMin.x) / (FillMax.x - FillMin.x), (screen.y - FillMin.y) / (FillMax.y - FillMin.y)};
}

vec2<double> SyntheticWall::ContentToScreen(const vec2<double>& uv) const {
  return {FillMin.x + uv.x * (FillMax.x - FillMin.x), FillMin.y + uv.y * (FillMax.y - FillMin.y)};
}

vec2<double> SyntheticWall::ProjectorToContent(int projector, const vec2<double>& xy) const {
  return ScreenToContent(ProjectorToScreen(projector, xy));
}

vec2<double> SyntheticWall::ContentToProjector(int projector, const vec2<double>& uv) const {
  return ScreenToProjector(projector, ContentToScreen(uv));
}

vec2<double> SyntheticWall::ScreenToCamera(const vec2<double>& screen) const { return Map(ScreenToCameraMap, screen); }

vec2<double> SyntheticWall::ProjectorToCamera(int projector, const vec2<double>& xy) const {
  return ScreenToCamera(ProjectorToScreen(projector, xy));
}

bool SyntheticWall::IsInsideProjector(int projector, const vec2<double>& screen) const {
  const vec2<double> xy = ScreenToProjector(projector, screen);
  return xy.x >= 0 && xy.x <= Params.ProjectorWidth - 1 && xy.y >= 0 && xy.y <= Params.ProjectorHeight - 1;
}

}  // namespace vek
