// The calibration folder: the input holds the index, the lens file and one spot grid file, in that
// order, separated by marker lines, written as calibration.txt, camera.lens and projector_0.txt.
// Inputs holding a path separator are passed over, so that the names in the index stay inside
// the folder. A failed read must leave the object as it was; a folder read is written elsewhere
// and must read back the same.
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "vekCalibrationFolder.h"
#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekLensWarpIO.h"
#include "vekSmartPointer.h"

using namespace vek;

namespace {

std::string LensText(LensWarp* lens) {
  std::ostringstream out;
  if (lens) LensWarpIO::WriteToStream(&out, lens);
  return out.str();
}

// Everything a read sets, as text.
std::string Summary(const CalibrationFolder& folder) {
  std::ostringstream out;
  out << folder.GetLensFileName() << "|" << LensText(folder.GetLens()) << "|";
  for (const std::string& name : folder.GetSpotGridFileNames()) out << name << ",";
  for (int k = 0; k < folder.GetNumberOfSpotGrids(); ++k) {
    const SpotGrid* grid = folder.GetSpotGrid(k);
    out << grid->GetColumns() << "x" << grid->GetRows() << ":" << grid->GetProjectorWidth() << "x"
        << grid->GetProjectorHeight();
    for (const auto& p : grid->GetCameraPoints()) out << " " << p.x << " " << p.y;
  }
  out.precision(9);
  for (int k = 0; k < 4; ++k)
    out << "|" << folder.GetFillRegion().GetPoint(k).x << " " << folder.GetFillRegion().GetPoint(k).y;
  out << "|" << folder.GetBlendGamma().value_or(-1) << " " << folder.GetWarpStep().value_or(-1) << " "
      << folder.GetContentWidth().value_or(-1) << " " << folder.GetContentHeight().value_or(-1);
  return out.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  if (input.find_first_of("/\\") != std::string::npos) return 0;
  std::vector<std::string> parts = fuzz::SplitParts(data, size, 3);
  parts.resize(3);
  const std::string dir = fuzz::WorkDirectory() + "folder";
  const std::string copy = fuzz::WorkDirectory() + "folder-copy";
  std::error_code ignored;
  std::filesystem::remove_all(dir, ignored);
  std::filesystem::remove_all(copy, ignored);
  std::filesystem::create_directories(dir, ignored);
  fuzz::WriteFile(dir + "/calibration.txt", parts[0]);
  fuzz::WriteFile(dir + "/camera.lens", parts[1]);
  fuzz::WriteFile(dir + "/projector_0.txt", parts[2]);

  fuzz::AllocationWatch watch(size);
  auto folder = SmartPointer<CalibrationFolder>::New();
  const std::string before = Summary(*folder);
  if (folder->Read(dir) != VEK_SUCCESS) {
    VEK_FUZZ_CHECK(Summary(*folder) == before, "a failed read changed the folder");
    return 0;
  }
  VEK_FUZZ_CHECK(folder->Write(copy) == VEK_SUCCESS, "a folder read cannot be written");
  auto again = SmartPointer<CalibrationFolder>::New();
  VEK_FUZZ_CHECK(again->Read(copy) == VEK_SUCCESS, "a folder written does not read back");
  // The lens is printed with six digits: compare it from the second round on.
  auto third = SmartPointer<CalibrationFolder>::New();
  std::filesystem::remove_all(dir, ignored);
  VEK_FUZZ_CHECK(again->Write(dir) == VEK_SUCCESS && third->Read(dir) == VEK_SUCCESS,
                 "a folder written twice does not read back");
  VEK_FUZZ_CHECK(Summary(*third) == Summary(*again),
                 "a folder written reads back different:\n" + Summary(*again) + "\n" + Summary(*third));
  return 0;
}
