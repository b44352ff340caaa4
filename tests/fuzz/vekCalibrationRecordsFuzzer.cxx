// The calibration records of the configuration folder, each read as the library finds it on disk.
// The first byte of the input chooses the record, the rest is the file: 0 the screen boundary
// curves, 1 the input-space control points (also read straight from a stream), 2 the perspective
// tweaking data, 3 the orthographic and 4 the alpha tweaking data, 5 a spatial subdivision.
// A record read is written and read again and must give the same text; a failed read must leave
// the object as it was.
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "vekAlphaTweakingData.h"
#include "vekConfigurationDatabase.h"
#include "vekControlPoints.h"
#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekMeshTweakingData.h"
#include "vekRectilinearGrid.h"
#include "vekSmartPointer.h"
#include "vekSpatialSubdivisionData.h"
#include "vekUniformAngleRemappingData.h"

using namespace vek;

namespace {

ConfigurationDatabase* Store() {
  static ConfigurationDatabase* store = ConfigurationDatabase::New();
  return store;
}

template <class Record>
std::string Text(const Record& record) {
  std::ostringstream text;
  record.Write(text);
  return text.str();
}

// A record's stream form must survive a second reading unchanged.
template <class Record>
void CheckReadsBack(const Record& record) {
  const std::string written = Text(record);
  auto again = SmartPointer<Record>::New();
  std::istringstream in(written);
  VEK_FUZZ_CHECK(again->Read(in) == VEK_SUCCESS, "a record written does not read back:\n" + written);
  VEK_FUZZ_CHECK(Text(*again) == written, "a record written reads back different:\n" + written);
}

// A record loaded through the store: one read must read back, a failed load must leave it as it was.
template <class Record>
void CheckLoad(int status, const Record& record, const std::string& before) {
  if (status == VEK_SUCCESS)
    CheckReadsBack(record);
  else
    VEK_FUZZ_CHECK(Text(record) == before, "a failed load changed the record");
}

void Boundary(const std::string& file) {
  const std::string path = ConfigurationDatabase::GetConfigurationDirectory() + "ExtrudedCurveScreenBoundary";
  fuzz::WriteFile(path, file);
  std::vector<float> curves[6];
  for (auto& curve : curves) curve = {1.5f, -2.0f};
  const int status =
      Store()->LoadExtrudedCurveScreenBoundaryData(curves[0], curves[1], curves[2], curves[3], curves[4], curves[5]);
  if (status != VEK_SUCCESS) {
    for (const auto& curve : curves)
      VEK_FUZZ_CHECK((curve == std::vector<float>{1.5f, -2.0f}), "a failed read changed a list");
    return;
  }
  // The writer prints 6 digits: after one round the text must stay as it is.
  VEK_FUZZ_CHECK(Store()->SaveExtrudedCurveScreenBoundaryData(curves[0], curves[1], curves[2], curves[3], curves[4],
                                                              curves[5]) == VEK_SUCCESS,
                 "the boundary read cannot be saved");
  const std::string first = fuzz::ReadFile(path);
  std::vector<float> again[6];
  VEK_FUZZ_CHECK(Store()->LoadExtrudedCurveScreenBoundaryData(again[0], again[1], again[2], again[3], again[4],
                                                              again[5]) == VEK_SUCCESS,
                 "a saved boundary does not load");
  Store()->SaveExtrudedCurveScreenBoundaryData(again[0], again[1], again[2], again[3], again[4], again[5]);
  VEK_FUZZ_CHECK(fuzz::ReadFile(path) == first, "the boundary changes on a second round:\n" + first);
}

void ControlPointGrid(const std::string& file) {
  auto grid = SmartPointer<ControlPoints>::New();
  grid->SetGridSize(1, 1);
  grid->SetPoint(0, vec2<float>(7.0f, 8.0f));
  const std::string before = Text(*grid);
  std::istringstream in(file);
  CheckLoad(grid->Read(in), *grid, before);

  const std::string path = ConfigurationDatabase::GetConfigurationDirectory() + "ControlPointLocations";
  fuzz::WriteFile(path, file);
  std::vector<float> xs{1.0f}, ys{2.0f};
  int w = 1, h = 1;
  if (Store()->LoadInputSpaceBoundaryPoints(xs, ys, w, h) != VEK_SUCCESS) {
    VEK_FUZZ_CHECK(xs.empty() && ys.empty() && w == 0 && h == 0, "a failed load left a grid behind");
    return;
  }
  VEK_FUZZ_CHECK(static_cast<long long>(w) * h == static_cast<long long>(xs.size()) && xs.size() == ys.size(),
                 "the grid loaded does not hold w x h points");
  VEK_FUZZ_CHECK(Store()->SaveInputSpaceBoundaryPoints(xs, ys, w, h) == VEK_SUCCESS, "a grid loaded cannot be saved");
  std::vector<float> xs2, ys2;
  int w2 = 0, h2 = 0;
  VEK_FUZZ_CHECK(Store()->LoadInputSpaceBoundaryPoints(xs2, ys2, w2, h2) == VEK_SUCCESS, "a saved grid does not load");
  VEK_FUZZ_CHECK(xs2 == xs && ys2 == ys && w2 == w && h2 == h, "a saved grid loads different");
}

// Tweaking data and subdivisions: one object filled with known values before the read.
template <class Record, class Preset>
void ObjectRecord(const std::string& file, Preset preset) {
  auto record = SmartPointer<Record>::New();
  preset(*record);
  const std::string before = Text(*record);
  std::istringstream in(file);
  CheckLoad(record->Read(in), *record, before);
}

void PresetSubdivision(SpatialSubdivisionData& data) {
  auto grid = SmartPointer<RectilinearGrid>::New();
  grid->SetNumx(2);
  grid->SetNumy(1);
  grid->SetSpacex(1.0f);
  grid->SetSpacey(1.0f);
  grid->SetOffsetx(0.0f);
  grid->SetOffsety(0.0f);
  data.SetSubdivision(*grid, 1);
  data.SetValue(0, 1, 0, 3.25f);
}

void TweakingFiles(int kind, const std::string& file) {
  const std::string config = ConfigurationDatabase::GetConfigurationDirectory();
  if (kind == 2) {
    fuzz::WriteFile(config + "PerspectiveMeshTweakingData.txt", file);
    auto data = SmartPointer<UniformAngleRemappingData>::New();
    data->SetUniformSampling(-10.0f, 10.0f, -5.0f, 5.0f, 2, 2);
    const std::string before = Text(*data);
    CheckLoad(Store()->LoadPerspectiveMeshTweakingData(data.GetPointer()), *data, before);
  } else if (kind == 3) {
    fuzz::WriteFile(config + "OrthographicMeshTweakingData.txt", file);
    auto data = SmartPointer<MeshTweakingData>::New();
    PresetSubdivision(*data);
    const std::string before = Text(*data);
    CheckLoad(Store()->LoadOrthographicMeshTweakingData(data), *data, before);
  } else {
    fuzz::WriteFile(config + "AlphaTweakingData.txt", file);
    auto data = SmartPointer<AlphaTweakingData>::New();
    PresetSubdivision(*data);
    const std::string before = Text(*data);
    CheckLoad(Store()->LoadAlphaTweakingData(data), *data, before);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const std::string input = fuzz::BeginInput(data, size);
  const int kind = data[0] % 6;
  const std::string file = input.substr(1);
  fuzz::AllocationWatch watch(size);
  switch (kind) {
    case 0:
      Boundary(file);
      break;
    case 1:
      ControlPointGrid(file);
      break;
    case 2:
    case 3:
    case 4:
      TweakingFiles(kind, file);
      break;
    default:
      ObjectRecord<SpatialSubdivisionData>(file, PresetSubdivision);
      break;
  }
  return 0;
}
