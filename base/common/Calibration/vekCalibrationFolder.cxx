#include "vekCalibrationFolder.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <new>
#include <set>

#include "vekCalibrationFileVariables.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekLensWarpIO.h"

namespace vek {

namespace {

constexpr char kLensFile[] = "LensFile";
constexpr char kSpotGridFiles[] = "SpotGridFiles";
constexpr char kFillRegion[] = "FillRegion";
constexpr char kBlendGamma[] = "BlendGamma";
constexpr char kWarpStep[] = "WarpStep";
constexpr char kContentWidth[] = "ContentWidth";
constexpr char kContentHeight[] = "ContentHeight";
constexpr int kFillRegionNumbers = 8;

std::string Join(const std::string& dir, const std::string& name) {
  return (std::filesystem::path(dir) / std::filesystem::path(name)).string();
}

// A control character names no file on Windows, and a zero byte would end the name early: the
// folder would read one file and write another.
bool HasControlCharacter(const std::string& name) {
  return std::any_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; });
}

// The index holds names as DataFile strings and string-array elements: neither survives a line
// end or a separator, and an element loses a leading or trailing '@' to the array separator.
bool IsStorableFileName(const std::string& name) {
  if (name.empty() || HasControlCharacter(name)) return false;
  if (name.find("###") != std::string::npos || name.find("@@@") != std::string::npos) return false;
  return name.front() != '@' && name.back() != '@' && name.front() != '#' && name.back() != '#';
}

bool IsFiniteAndSet(const vec2<float>& p) { return std::isfinite(p.x) && std::isfinite(p.y) && !p.IsUnset(); }

void Override(CalibrationSettings& settings, const std::optional<double>& gamma, const std::optional<int>& step,
              const std::optional<int>& width, const std::optional<int>& height) {
  if (gamma) settings.BlendGamma = *gamma;
  if (step) settings.WarpStep = *step;
  if (width) settings.ContentWidth = *width;
  if (height) settings.ContentHeight = *height;
}

int Fail(int code, const std::string& message) {
  return ErrorHelper::ErrorWithCustomMessage(ErrorHelper::GetErrorWithoutCustomMessageFlag(code), message);
}

}  // namespace

// Defined here as well so that the Windows DLL exports them: callers bind them to references
// (comparisons in tests, std::min), which an inline constant alone would leave unresolved.
constexpr char CalibrationFolder::kIndexFileName[];
constexpr char CalibrationFolder::kDefaultLensFileName[];

CalibrationFolder* CalibrationFolder::New() { return new (std::nothrow) CalibrationFolder; }

void CalibrationFolder::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "LensFileName: " << LensFileName << "\n";
  os << indent << "Lens: " << (Lens ? Lens->GetClassName() : "(none)") << "\n";
  os << indent << "SpotGrids: " << SpotGrids.size() << "\n";
  for (size_t k = 0; k < SpotGrids.size(); ++k)
    os << indent << "  " << SpotGridFileNames[k] << ": "
       << (SpotGrids[k] ? SpotGrids[k]->GetColumns() * SpotGrids[k]->GetRows() : 0) << " spots\n";
  os << indent << "FillRegion:";
  for (int k = 0; k < 4; ++k) os << " (" << FillRegion.GetPoint(k).x << ", " << FillRegion.GetPoint(k).y << ")";
  os << "\n";
  if (BlendGamma) os << indent << "BlendGamma: " << *BlendGamma << "\n";
  if (WarpStep) os << indent << "WarpStep: " << *WarpStep << "\n";
  if (ContentWidth) os << indent << "ContentWidth: " << *ContentWidth << "\n";
  if (ContentHeight) os << indent << "ContentHeight: " << *ContentHeight << "\n";
}

std::string CalibrationFolder::DefaultSpotGridFileName(int k) { return "projector_" + std::to_string(k) + ".txt"; }

void CalibrationFolder::AddSpotGrid(SpotGrid* grid, const std::string& fileName) {
  SpotGridFileNames.push_back(fileName.empty() ? DefaultSpotGridFileName(static_cast<int>(SpotGrids.size()))
                                               : fileName);
  SpotGrids.emplace_back(grid);
}

void CalibrationFolder::RemoveAllSpotGrids() {
  SpotGrids.clear();
  SpotGridFileNames.clear();
}

SpotGrid* CalibrationFolder::GetSpotGrid(int k) const {
  return k >= 0 && k < GetNumberOfSpotGrids() ? SpotGrids[static_cast<size_t>(k)].GetPointer() : nullptr;
}

void CalibrationFolder::ApplySettingsTo(CalibrationSettings& settings) const {
  Override(settings, BlendGamma, WarpStep, ContentWidth, ContentHeight);
}

std::string CalibrationFolder::FindInconsistency() const {
  if (!Lens) return "no lens";
  if (!Lens->IsInitialized()) return "the lens has no focal length or centre";
  if (SpotGrids.empty()) return "no spot grids";
  for (size_t k = 0; k < SpotGrids.size(); ++k) {
    if (!SpotGrids[k]) return "spot grid " + std::to_string(k) + " is missing";
    const int status = SpotGrids[k]->Validate();
    if (status != VEK_SUCCESS) return ErrorHelper::GetErrorMessageWithNoExtras(status);
  }
  for (int k = 0; k < 4; ++k)
    if (!IsFiniteAndSet(FillRegion.GetPoint(k))) return "fill region corner " + std::to_string(k) + " is not set";
  CalibrationSettings settings;
  ApplySettingsTo(settings);
  const int status = settings.Validate();
  if (status != VEK_SUCCESS) return ErrorHelper::GetErrorMessageWithNoExtras(status);
  std::set<std::string> names{kIndexFileName};
  std::vector<const std::string*> all{&LensFileName};
  for (const auto& name : SpotGridFileNames) all.push_back(&name);
  for (const std::string* name : all) {
    if (!IsStorableFileName(*name)) return "the file name '" + *name + "' cannot be kept in the index";
    if (!names.insert(*name).second) return "the file name '" + *name + "' is used twice";
  }
  return {};
}

int CalibrationFolder::Read(const std::string& dir) {
  CalibrationFileVariables index;
  int status = index.Read(Join(dir, kIndexFileName), "calibration index file");
  std::string lensFileName;
  std::vector<std::string> gridFileNames;
  std::vector<float> fill;
  std::optional<double> gamma;
  std::optional<int> step, width, height;
  if (status == VEK_SUCCESS) status = index.GetString(kLensFile, lensFileName);
  if (status == VEK_SUCCESS) status = index.GetStringArray(kSpotGridFiles, gridFileNames);
  if (status == VEK_SUCCESS) status = index.GetFloatArray(kFillRegion, fill);
  if (status == VEK_SUCCESS) status = index.GetOptionalDouble(kBlendGamma, gamma);
  if (status == VEK_SUCCESS) status = index.GetOptionalInt(kWarpStep, step);
  if (status == VEK_SUCCESS) status = index.GetOptionalInt(kContentWidth, width);
  if (status == VEK_SUCCESS) status = index.GetOptionalInt(kContentHeight, height);
  if (status != VEK_SUCCESS) return status;

  if (lensFileName.empty()) return index.Fail(VEK_BAD_PARSE, "LensFile is empty");
  if (gridFileNames.empty()) return index.Fail(VEK_BAD_PARSE, "no spot grid files");
  if (HasControlCharacter(lensFileName)) return index.Fail(VEK_BAD_PARSE, "LensFile holds a control character");
  for (const auto& name : gridFileNames) {
    if (name.empty()) return index.Fail(VEK_BAD_PARSE, "an empty name in SpotGridFiles");
    if (HasControlCharacter(name)) return index.Fail(VEK_BAD_PARSE, "a name in SpotGridFiles holds a control character");
  }
  if (fill.size() != kFillRegionNumbers)
    return index.Fail(VEK_BAD_PARSE, "FillRegion holds " + std::to_string(fill.size()) + " numbers, not 8");
  OrderedQuadrilateral region;
  for (int k = 0; k < 4; ++k) {
    region.SetPoint(k) = vec2<float>(fill[2 * k], fill[2 * k + 1]);
    if (region.GetPoint(k).IsUnset()) return index.Fail(VEK_BAD_PARSE, "FillRegion corner " + std::to_string(k) + " is not set");
  }
  CalibrationSettings settings;
  Override(settings, gamma, step, width, height);
  status = settings.Validate();
  if (status != VEK_SUCCESS) return index.Fail(VEK_BAD_PARSE, ErrorHelper::GetErrorMessageWithNoExtras(status));

  const std::string lensPath = Join(dir, lensFileName);
  SmartPointer<LensWarp> lens;
  status = LensWarpIO::ReadFromFile(lensPath.c_str(), lens);
  if (ErrorHelper::GetErrorWithoutCustomMessageFlag(status) == VEK_FILE_NOT_FOUND)
    return Fail(VEK_FILE_NOT_FOUND, lensPath + ": lens file not found");
  if (ErrorHelper::GetErrorWithoutCustomMessageFlag(status) == VEK_UNABLE_TO_OPEN_FILE_FOR_READING)
    return Fail(status, lensPath + ": cannot read the lens file");
  if (status != VEK_SUCCESS)
    return Fail(VEK_BAD_PARSE, lensPath + ": damaged lens file (" + ErrorHelper::GetErrorMessageWithNoExtras(status) + ")");
  if (!lens->IsInitialized()) return Fail(VEK_BAD_PARSE, lensPath + ": the lens has no focal length or centre");

  std::vector<SmartPointer<SpotGrid>> grids;
  try {
    for (const auto& name : gridFileNames) {
      grids.push_back(SmartPointer<SpotGrid>::New());
      if (!grids.back()) return VEK_FAILED_TO_ALLOCATE_MEMORY;
      status = grids.back()->Read(Join(dir, name));
      if (status != VEK_SUCCESS) return status;
    }
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }

  Lens = lens;
  LensFileName.swap(lensFileName);
  SpotGrids.swap(grids);
  SpotGridFileNames.swap(gridFileNames);
  FillRegion = region;
  BlendGamma = gamma;
  WarpStep = step;
  ContentWidth = width;
  ContentHeight = height;
  return VEK_SUCCESS;
}

int CalibrationFolder::Write(const std::string& dir) const {
  const std::string problem = FindInconsistency();
  if (!problem.empty()) return Fail(VEK_INVALID_PARAMETERS, dir + ": cannot write the calibration folder: " + problem);
  std::error_code error;
  std::filesystem::create_directories(dir, error);
  if (!std::filesystem::is_directory(dir, error))
    return Fail(VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING, dir + ": cannot create the calibration folder");

  const std::string lensPath = Join(dir, LensFileName);
  int status = LensWarpIO::WriteToFile(lensPath.c_str(), Lens.GetPointer());
  if (status != VEK_SUCCESS)
    return Fail(status, lensPath + ": cannot write the lens (" + ErrorHelper::GetErrorMessageWithNoExtras(status) + ")");
  for (size_t k = 0; k < SpotGrids.size(); ++k) {
    status = SpotGrids[k]->Write(Join(dir, SpotGridFileNames[k]));
    if (status != VEK_SUCCESS) return status;
  }

  try {
    CalibrationFileVariables index;
    status = index.AddString(kLensFile, LensFileName);
    if (status == VEK_SUCCESS) status = index.AddStringArray(kSpotGridFiles, SpotGridFileNames);
    std::vector<float> fill;
    for (int k = 0; k < 4; ++k) {
      fill.push_back(FillRegion.GetPoint(k).x);
      fill.push_back(FillRegion.GetPoint(k).y);
    }
    if (status == VEK_SUCCESS) status = index.AddFloatArray(kFillRegion, fill);
    if (status == VEK_SUCCESS && BlendGamma) status = index.AddDouble(kBlendGamma, *BlendGamma);
    if (status == VEK_SUCCESS && WarpStep) status = index.AddInt(kWarpStep, *WarpStep);
    if (status == VEK_SUCCESS && ContentWidth) status = index.AddInt(kContentWidth, *ContentWidth);
    if (status == VEK_SUCCESS && ContentHeight) status = index.AddInt(kContentHeight, *ContentHeight);
    if (status == VEK_SUCCESS) status = index.Write(Join(dir, kIndexFileName));
    return status;
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

}  // namespace vek
