// The list of installed display systems, the input being systems.xml. A list read has exactly one
// active system when it is not empty; written again (by making its active system active) it must
// read back the same, and a second writing must not change the file. A damaged file must refuse
// every change and stay as it is.
#include <cstdint>
#include <string>
#include <vector>

#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekKOREnterpriseSystemManager.h"
#include "vekSmartPointer.h"

using namespace vek;

namespace {

using System = KOREnterpriseSystemManager::System;

bool Same(const std::vector<System>& a, const std::vector<System>& b) {
  if (a.size() != b.size()) return false;
  for (size_t k = 0; k < a.size(); ++k)
    if (a[k].Id != b[k].Id || a[k].Name != b[k].Name || a[k].BaseDirectory != b[k].BaseDirectory ||
        a[k].ScreenType != b[k].ScreenType || a[k].NumProjectors != b[k].NumProjectors ||
        a[k].NumCameras != b[k].NumCameras || a[k].LastCalibration != b[k].LastCalibration ||
        a[k].Active != b[k].Active)
      return false;
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  const std::string path = fuzz::WriteInput(input, "systems.xml");
  fuzz::AllocationWatch watch(size);
  auto manager = SmartPointer<KOREnterpriseSystemManager>::New();
  manager->SetFileName(path);
  std::vector<System> systems;
  if (manager->List(systems) != VEK_SUCCESS) {
    System added;
    added.Id = "added";
    VEK_FUZZ_CHECK(manager->Add(added) != VEK_SUCCESS, "a change was written over a damaged file");
    VEK_FUZZ_CHECK(fuzz::ReadFile(path) == input, "a damaged file was changed");
    return 0;
  }
  int active = 0;
  for (const System& system : systems) active += system.Active ? 1 : 0;
  VEK_FUZZ_CHECK(systems.empty() || active == 1, std::to_string(active) + " active systems read");
  for (const System& system : systems) {
    System found;
    VEK_FUZZ_CHECK(manager->FindById(system.Id, found) == VEK_SUCCESS, "a system read is not found by its id");
  }
  if (systems.empty()) return 0;

  std::string activeId;
  for (const System& system : systems)
    if (system.Active) activeId = system.Id;
  VEK_FUZZ_CHECK(manager->SetActive(activeId) == VEK_SUCCESS, "a list read cannot be written");
  const std::string first = fuzz::ReadFile(path);
  std::vector<System> again;
  VEK_FUZZ_CHECK(manager->List(again) == VEK_SUCCESS, "a list written does not read back:\n" + first);
  VEK_FUZZ_CHECK(Same(again, systems), "a list written reads back different:\n" + first);
  VEK_FUZZ_CHECK(manager->SetActive(activeId) == VEK_SUCCESS, "a list written cannot be written again");
  VEK_FUZZ_CHECK(fuzz::ReadFile(path) == first, "a list changes when written a second time:\n" + first);
  return 0;
}
