// The spot-grid files of the calibration folder, the input being one such file. A failed read
// must leave the grid as it was; a grid read is written and read again and must come back bit for
// bit.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekSmartPointer.h"
#include "vekSpotGrid.h"

using namespace vek;

namespace {

bool SamePoints(const std::vector<vec2<float>>& a, const std::vector<vec2<float>>& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0);
}

bool Same(const SpotGrid& a, const SpotGrid& b) {
  return a.GetProjectorWidth() == b.GetProjectorWidth() && a.GetProjectorHeight() == b.GetProjectorHeight() &&
         a.GetColumns() == b.GetColumns() && a.GetRows() == b.GetRows() &&
         SamePoints(a.GetProjectorPoints(), b.GetProjectorPoints()) &&
         SamePoints(a.GetCameraPoints(), b.GetCameraPoints());
}

SmartPointer<SpotGrid> KnownGrid() {
  auto grid = SmartPointer<SpotGrid>::New();
  grid->SetProjectorWidth(64);
  grid->SetProjectorHeight(48);
  grid->SetColumns(2);
  grid->SetRows(2);
  grid->SetProjectorPoints({{0, 0}, {63, 0}, {0, 47}, {63, 47}});
  grid->SetCameraPoints({{10, 10}, {20, 10}, vec2<float>(), {20, 20}});
  return grid;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  const std::string path = fuzz::WriteInput(input, "projector_0.txt");
  fuzz::AllocationWatch watch(size);
  auto grid = KnownGrid();
  if (grid->Read(path) != VEK_SUCCESS) {
    VEK_FUZZ_CHECK(Same(*grid, *KnownGrid()), "a failed read changed the grid");
    return 0;
  }
  const std::string copy = fuzz::WorkDirectory() + "projector_copy.txt";
  VEK_FUZZ_CHECK(grid->Write(copy) == VEK_SUCCESS, "a grid read cannot be written");
  auto again = KnownGrid();
  VEK_FUZZ_CHECK(again->Read(copy) == VEK_SUCCESS, "a grid written does not read back:\n" + fuzz::ReadFile(copy));
  VEK_FUZZ_CHECK(Same(*grid, *again), "a grid written reads back different:\n" + fuzz::ReadFile(copy));
  return 0;
}
