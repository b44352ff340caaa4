#include "vekWarpCalibration.h"

#include <omp.h>

#include <algorithm>
#include <filesystem>
#include <new>
#include <ostream>
#include <sstream>

#include "vekCalibrationPictures.h"
#include "vekConnectivityUtility.h"
#include "vekDataFile.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekIOBase.h"
#include "vekWarpBuilder.h"

namespace vek {

namespace {

// The failure `status` again, its message prefixed with the file it concerns.
int InFile(int status, const std::string& file) {
  const int code = ErrorHelper::GetErrorWithoutCustomMessageFlag(status);
  return ErrorHelper::ErrorWithCustomMessage(code, file + ": " + ErrorHelper::GetErrorMessageWithNoExtras(status));
}

std::string PathIn(const std::string& folder, const std::string& name) {
  return folder.empty() ? name : (std::filesystem::path(folder) / name).string();
}

std::string Joined(const std::vector<int>& values) {
  std::string text;
  for (int value : values) text += (text.empty() ? "" : " ") + std::to_string(value);
  return text;
}

}  // namespace

WarpCalibration* WarpCalibration::New() { return new (std::nothrow) WarpCalibration; }

void WarpCalibration::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "NumberOfProjectors: " << GetNumberOfProjectors() << "\n";
  os << indent << "BlendGamma: " << Settings.BlendGamma << "\n";
  os << indent << "WarpStep: " << Settings.WarpStep << "\n";
}

std::string WarpCalibration::WarpFileName(int projector) { return "projector_" + std::to_string(projector) + ".warp"; }

int WarpCalibration::Compute(const CalibrationFolder& folder, const CalibrationSettings& settings,
                             const std::string& folderPath) {
  int status = settings.Validate();
  if (status != VEK_SUCCESS) return status;
  const int count = folder.GetNumberOfSpotGrids();
  const LensWarp* lens = folder.GetLens();

  // 1. Footprints.
  std::vector<SmartPointer<ProjectorFootprint>> footprints;
  std::vector<std::pair<int, int>> sizes;
  for (int p = 0; p < count; ++p) {
    const SpotGrid& spots = *folder.GetSpotGrids()[p];
    SmartPointer<ProjectorFootprint> footprint = SmartPointer<ProjectorFootprint>::New();
    if (!footprint) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    status = footprint->Build(spots.GetColumns(), spots.GetRows(), spots.GetProjectorPoints(), spots.GetCameraPoints(),
                              lens);
    if (status != VEK_SUCCESS) return InFile(status, PathIn(folderPath, folder.GetSpotGridFileNames()[p]));
    footprints.push_back(footprint);
    sizes.emplace_back(spots.GetProjectorWidth(), spots.GetProjectorHeight());
    Report("footprints", p + 1, count);
  }

  // 2. Connectivity, from the footprints' overlaps.
  std::vector<const TriangleMesh*> meshes;
  for (const auto& footprint : footprints) meshes.push_back(footprint->GetCameraMesh());
  SmartPointer<SpatialConnectivity> connectivity = SmartPointer<SpatialConnectivity>::New();
  if (!connectivity) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  status = ConnectivityUtility::InferFromFootprints(meshes, ConnectivityUtility::kDefaultMinOverlapFraction,
                                                    connectivity.GetPointer());
  if (status != VEK_SUCCESS) return status;
  Report("connectivity", 1, 1);

  // 3. The screen: the fill region's corners, undistorted, fix the content map.
  vec2<double> corners[4];
  for (int k = 0; k < 4; ++k) {
    vec2<float> corner = folder.GetFillRegion().GetPoint(k);
    if (lens && lens->Invert(corner, corner) != VEK_SUCCESS) corner = vec2<float>();
    corners[k] = vec2<double>(corner.x, corner.y);
  }
  SmartPointer<FlatScreenModel> screen = SmartPointer<FlatScreenModel>::New();
  if (!screen) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  if (screen->SetFillRegion(corners) != VEK_SUCCESS)
    return ErrorHelper::ErrorWithCustomMessage(
        VEK_UNABLE_TO_SET_CAMERA_SPACE_CORNERS_FROM_INPUT_SPACE_CORNERS,
        PathIn(folderPath, CalibrationFolder::kIndexFileName) + ": the fill region, undistorted, is not a convex quadrilateral with corners "
                                          "in the order top-left, top-right, bottom-left, bottom-right");

  // 4. Warps, each blended with the other projectors of its layer.
  std::vector<const ProjectorFootprint*> all;
  for (const auto& footprint : footprints) all.push_back(footprint.GetPointer());
  std::vector<SmartPointer<TextureMesh>> warps(count);
  std::vector<double> coverage(count, 0);
  std::vector<int> statuses(count, VEK_SUCCESS);
  const int threads = NumberOfThreads > 0 ? NumberOfThreads : omp_get_max_threads();
#pragma omp parallel for schedule(dynamic) num_threads(threads)
  for (int p = 0; p < count; ++p) {
    std::vector<int> partners;
    for (int q = 0; q < count; ++q)
      if (q != p && connectivity->GetProjectorLayer(q) == connectivity->GetProjectorLayer(p)) partners.push_back(q);
    SmartPointer<WarpBuilder> builder = SmartPointer<WarpBuilder>::New();
    if (!builder) {
      statuses[p] = VEK_FAILED_TO_ALLOCATE_MEMORY;
      continue;
    }
    builder->SetProjectors(all);
    builder->SetScreen(screen.GetPointer());
    builder->SetStep(settings.WarpStep);
    builder->SetGamma(settings.BlendGamma);
    builder->SetContentSize(settings.ContentWidth, settings.ContentHeight);
    statuses[p] = builder->Build(p, partners);
    warps[p] = builder->GetWarp();
    coverage[p] = builder->GetCoverage();
  }
  for (int p = 0; p < count; ++p)
    if (statuses[p] != VEK_SUCCESS) return statuses[p];
  Report("warps", count, count);
  double lit = 0;
  for (double part : coverage) lit += part;
  if (!(lit > 0))
    return ErrorHelper::ErrorWithCustomMessage(
        VEK_UNABLE_TO_SET_CAMERA_SPACE_CORNERS_FROM_INPUT_SPACE_CORNERS,
        PathIn(folderPath, CalibrationFolder::kIndexFileName) + ": the fill region lies outside every projector");

  std::vector<std::vector<int>> neighbors(count);
  for (int p = 0; p < count; ++p) ConnectivityUtility::GetNeighbors(*connectivity, p, neighbors[p]);

  Settings = settings;
  Footprints = footprints;
  Sizes = sizes;
  Warps = warps;
  Coverage = coverage;
  Neighbors = neighbors;
  Connectivity = connectivity;
  Screen = screen;
  return VEK_SUCCESS;
}

int WarpCalibration::Write(const std::string& outDir) const {
  const int count = GetNumberOfProjectors();
  if (count == 0 || !Connectivity)
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Nothing computed to write to " + outDir);
  // Everything is made in memory first, so that a failure leaves the folder as it was.
  std::vector<std::string> warpTexts(count);
  for (int p = 0; p < count; ++p) {
    std::ostringstream text;
    Warps[p]->Serialize(text);
    warpTexts[p] = text.str();
  }
  std::ostringstream connectivityText;
  int status = Connectivity->Write(connectivityText, "");
  if (status != VEK_SUCCESS) return status;

  SmartPointer<DataFile> summary = SmartPointer<DataFile>::New();
  if (!summary) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  auto add = [&](const std::string& name, auto setValue) {
    DataFileEntry entry;
    entry.SetName(name);
    setValue(entry);
    return summary->AddVariable(entry);
  };
  status = add("NumberOfProjectors", [&](DataFileEntry& e) { e.SetInt(count); });
  if (status == VEK_SUCCESS) status = add("BlendGamma", [&](DataFileEntry& e) { e.SetDouble(Settings.BlendGamma); });
  if (status == VEK_SUCCESS) status = add("WarpStep", [&](DataFileEntry& e) { e.SetInt(Settings.WarpStep); });
  for (int p = 0; p < count && status == VEK_SUCCESS; ++p) {
    const std::string prefix = "Projector" + std::to_string(p);
    const ProjectorFootprint& footprint = *Footprints[p];
    status = add(prefix + "Coverage", [&](DataFileEntry& e) { e.SetDouble(Coverage[p]); });
    if (status == VEK_SUCCESS) status = add(prefix + "Neighbors", [&](DataFileEntry& e) { e.SetString(Joined(Neighbors[p])); });
    if (status == VEK_SUCCESS)
      status = add(prefix + "Layer", [&](DataFileEntry& e) { e.SetInt(Connectivity->GetProjectorLayer(p)); });
    if (status == VEK_SUCCESS)
      status = add(prefix + "SpotsFound", [&](DataFileEntry& e) { e.SetInt(footprint.GetNumberOfFoundSpots()); });
    if (status == VEK_SUCCESS)
      status = add(prefix + "SpotsFilled", [&](DataFileEntry& e) { e.SetInt(footprint.GetNumberOfFilledSpots()); });
    if (status == VEK_SUCCESS)
      status = add(prefix + "ResidualMax", [&](DataFileEntry& e) { e.SetDouble(footprint.GetResidualMax()); });
    if (status == VEK_SUCCESS)
      status = add(prefix + "ResidualRMS", [&](DataFileEntry& e) { e.SetDouble(footprint.GetResidualRMS()); });
  }
  if (status != VEK_SUCCESS) return status;

  std::error_code error;
  std::filesystem::create_directories(outDir, error);
  if (error)
    return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING,
                                               "Cannot create the folder " + outDir + ": " + error.message());
  for (int p = 0; p < count; ++p) {
    status = IOBase::ReplaceTextFile(PathIn(outDir, WarpFileName(p)), warpTexts[p]);
    if (status != VEK_SUCCESS) return status;
  }
  status = IOBase::ReplaceTextFile(PathIn(outDir, kConnectivityFileName), connectivityText.str());
  if (status != VEK_SUCCESS) return status;
  summary->SetFileName(PathIn(outDir, kSummaryFileName));
  return summary->Write();
}

std::string WarpCalibration::AlphaMapFileName(int projector) {
  return "projector_" + std::to_string(projector) + "_alpha.png";
}

int WarpCalibration::WriteCameraView(const std::string& svgPath) const {
  std::vector<const ProjectorFootprint*> footprints;
  std::vector<const TextureMesh*> warps;
  for (int p = 0; p < GetNumberOfProjectors(); ++p) {
    footprints.push_back(Footprints[p].GetPointer());
    warps.push_back(Warps[p].GetPointer());
  }
  if (!Screen) return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Nothing computed to draw");
  return CalibrationPictures::WriteCameraViewSvg(svgPath, footprints, warps, *Screen);
}

int WarpCalibration::WriteAlphaMaps(const std::string& dir) const {
  std::error_code error;
  std::filesystem::create_directories(dir, error);
  if (error)
    return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING,
                                               "Cannot create the folder " + dir + ": " + error.message());
  for (int p = 0; p < GetNumberOfProjectors(); ++p) {
    const int status =
        CalibrationPictures::WriteAlphaPng(PathIn(dir, AlphaMapFileName(p)), *Warps[p], Sizes[p].first, Sizes[p].second);
    if (status != VEK_SUCCESS) return status;
  }
  return VEK_SUCCESS;
}

int WarpCalibration::Run(const std::string& calibrationDir, const std::string& outDir,
                         const CalibrationSettings& defaults, const CalibrationSettingOverrides& overrides,
                         SmartPointer<WarpCalibration>* result, ProgressFunction progress) {
  SmartPointer<CalibrationFolder> folder = SmartPointer<CalibrationFolder>::New();
  SmartPointer<WarpCalibration> calibration = SmartPointer<WarpCalibration>::New();
  if (!folder || !calibration) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  int status = folder->Read(calibrationDir);
  if (status != VEK_SUCCESS) return status;
  CalibrationSettings settings = defaults;
  folder->ApplySettingsTo(settings);
  if (overrides.WarpStep) settings.WarpStep = *overrides.WarpStep;
  if (overrides.BlendGamma) settings.BlendGamma = *overrides.BlendGamma;
  calibration->SetProgress(std::move(progress));
  status = calibration->Compute(*folder, settings, calibrationDir);
  if (status == VEK_SUCCESS) status = calibration->Write(outDir);
  if (status == VEK_SUCCESS && result) *result = calibration;
  return status;
}

}  // namespace vek
