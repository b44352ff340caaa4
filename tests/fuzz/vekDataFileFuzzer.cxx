// DataFile, the input being the file. The entries read are written to a second file and read from
// there again; they must come back equal, except the cases the format documents as not surviving
// a write (a name ending in '#', text holding "###" or a line end, a string element holding "@@@"
// or beginning or ending with '@').
#include <cstdint>
#include <string>

#include "vekDataFile.h"
#include "vekDataFileEntry.h"
#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekSmartPointer.h"

using namespace vek;

namespace {

bool HoldsFieldBreak(const std::string& text) {
  return text.find("###") != std::string::npos || text.find_first_of("\r\n") != std::string::npos;
}

bool Survives(const DataFileEntry& entry) {
  const std::string& name = entry.GetName();
  if (HoldsFieldBreak(name) || (!name.empty() && name.back() == '#')) return false;
  if (HoldsFieldBreak(entry.GetDataInString())) return false;
  if (entry.GetDataType() != DataFileEntry::StringArray) return true;
  for (int k = 0; k < entry.GetNumberOfElements(); ++k) {
    const std::string& element = entry.GetStringArray()[k];
    if (element.find("@@@") != std::string::npos) return false;
    if (!element.empty() && (element.front() == '@' || element.back() == '@')) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  const std::string path = fuzz::WriteInput(input, "data-file.txt");
  fuzz::AllocationWatch watch(size);
  auto file = SmartPointer<DataFile>::New();
  file->SetFileName(path);
  if (file->Read() != VEK_SUCCESS) return 0;
  file->PruneDuplicates(true);
  for (int n = 0; n < file->GetNumVariables(); ++n)
    if (!Survives(*file->GetNthVariable(n))) return 0;

  const std::string copy = fuzz::WorkDirectory() + "data-file-copy.txt";
  file->SetFileName(copy);
  VEK_FUZZ_CHECK(file->Write() == VEK_SUCCESS, "entries read cannot be written");
  auto again = SmartPointer<DataFile>::New();
  again->SetFileName(copy);
  VEK_FUZZ_CHECK(again->Read() == VEK_SUCCESS, "a file written does not read back:\n" + fuzz::ReadFile(copy));
  VEK_FUZZ_CHECK(again->GetNumVariables() == file->GetNumVariables(), "a file written reads back another count");
  for (int n = 0; n < file->GetNumVariables(); ++n)
    VEK_FUZZ_CHECK(*again->GetNthVariable(n) == *file->GetNthVariable(n),
                   "entry " + std::to_string(n) + " reads back different:\n" + fuzz::ReadFile(copy));
  return 0;
}
