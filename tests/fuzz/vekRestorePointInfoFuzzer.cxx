// The restore-point description, the input being its XML file. A failed read must leave the record
// as it was; one read is written and read again and must give the same fields.
#include <cstdint>
#include <string>

#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekRegressionInputs.h"
#include "vekRestorePointInfo.h"
#include "vekSmartPointer.h"

using namespace vek;

namespace {

// XML reads every line end inside a value as LF, and the file gets the platform's line ends when
// written: a value's line ends are compared as LF.
std::string Fields(const RestorePointInfo& info) {
  return test::WithLineFeeds(info.GetProductName() + '\0' + info.GetProductVersion() + '\0' + info.GetBuildId() + '\0' +
                       std::to_string(info.GetNumProjectors()) + '\0' + std::to_string(info.GetNumCameras()) +
                       '\0' + info.GetScreenType() + '\0' + info.GetDescription());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  const std::string path = fuzz::WriteInput(input, "RestorePointInfo.xml");
  fuzz::AllocationWatch watch(size);
  auto info = SmartPointer<RestorePointInfo>::New();
  info->SetProductName("before");
  info->SetNumProjectors(3);
  info->SetDescription("kept on failure");
  const std::string before = Fields(*info);
  if (info->ReadFromFile(path) != VEK_SUCCESS) {
    VEK_FUZZ_CHECK(Fields(*info) == before, "a failed read changed the record");
    return 0;
  }
  const std::string copy = fuzz::WorkDirectory() + "RestorePointInfo-copy.xml";
  VEK_FUZZ_CHECK(info->WriteToFile(copy) == VEK_SUCCESS, "a record read cannot be written");
  auto again = SmartPointer<RestorePointInfo>::New();
  VEK_FUZZ_CHECK(again->ReadFromFile(copy) == VEK_SUCCESS,
                 "a record written does not read back:\n" + fuzz::ReadFile(copy));
  VEK_FUZZ_CHECK(Fields(*again) == Fields(*info), "a record written reads back different:\n" + fuzz::ReadFile(copy));
  return 0;
}
