// The option store's files: the input holds the options file, the defaults file and the option
// info file, in that order, separated by marker lines. Every option the info file names is looked
// up in every way the store offers. A typed value read must print and convert back to itself (a
// float or double, printed with six digits, from the second round on), and an int option written
// back through the store must read back the same.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "vekConfigurationDatabase.h"
#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekOptionValue.h"
#include "vekSmartPointer.h"

using namespace vek;

namespace {

constexpr std::size_t kMaxNames = 32;

template <class T>
void CheckConverts(const std::string& name, const T& value, bool exact) {
  T back{};
  VEK_FUZZ_CHECK(OptionValue::FromText(OptionValue::ToText(value), back), name + ": a value printed does not convert");
  if (!exact) {
    T third{};
    VEK_FUZZ_CHECK(OptionValue::FromText(OptionValue::ToText(back), third),
                   name + ": a value printed twice does not convert");
    VEK_FUZZ_CHECK(std::memcmp(&back, &third, sizeof back) == 0 || (std::isnan(back) && std::isnan(third)),
                   name + ": a value changes on a second round");
    return;
  }
  VEK_FUZZ_CHECK(back == value, name + ": a value printed converts to another");
}

void LookUp(ConfigurationDatabase& store, const std::string& name) {
  int i = 0;
  float f = 0;
  double d = 0;
  bool b = false;
  std::string s;
  if (store.GetOption(name, i) == VEK_SUCCESS) CheckConverts(name, i, true);
  if (store.GetOption(name, f) == VEK_SUCCESS) CheckConverts(name, f, false);
  if (store.GetOption(name, d) == VEK_SUCCESS) CheckConverts(name, d, false);
  if (store.GetOption(name, b) == VEK_SUCCESS) CheckConverts(name, b, true);
  store.GetOption(name, s);
  std::vector<int> ints;
  std::vector<float> floats;
  std::vector<bool> bools;
  std::vector<std::string> strings;
  store.GetOption(name, ints);
  store.GetOption(name, floats);
  store.GetOption(name, bools);
  store.GetOption(name, strings);
  store.GetOptionDefault(name, i);
  store.GetOptionDefault(name, f);
  store.GetOptionDefault(name, d);
  store.GetOptionDefault(name, b);
  store.GetOptionDefault(name, s);
  int imin = 0, imax = 0;
  float fmin = 0, fmax = 0;
  double dmin = 0, dmax = 0;
  store.GetOptionRange(name, imin, imax);
  store.GetOptionRange(name, fmin, fmax);
  store.GetOptionRange(name, dmin, dmax);
  std::string text;
  store.GetOptionAsString(name, text);
  store.GetOptionDefaultAsString(name, text);
  store.GetOptionType(name, text);
  OptionVisibility visibility = OptionVisibilityHidden;
  store.GetOptionVisibility(name, visibility);
  store.GetOptionItemIndex(name, 3);
  store.GetOptionItemIndex(name, std::string("x"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  std::vector<std::string> parts = fuzz::SplitParts(data, size, 3);
  parts.resize(3);
  const std::string& config = fuzz::ConfigDirectory();
  fuzz::WriteFile(config + "KOROptions.txt", parts[0]);
  fuzz::WriteFile(config + "KOROptionDefaults.txt", parts[1]);
  fuzz::WriteFile(config + "KOROptionInfo.txt", parts[2]);
  fuzz::AllocationWatch watch(size);
  auto store = SmartPointer<ConfigurationDatabase>::New();
  store->LoadOptionsDatabase();
  std::vector<std::string> names, values;
  store->GetOptionListWithValue(names, values, true);
  VEK_FUZZ_CHECK(names.size() == values.size(), "names and values of different lengths");
  store->GetOptionList(names, false);
  if (names.size() > kMaxNames) names.resize(kMaxNames);
  for (const std::string& name : names) LookUp(*store, name);

  // One write through the store of an option described as an int: the rewrite must keep the
  // value, whatever else the files hold. (The store writes a value of any type it is given, which
  // reads back only as the type the info file describes.)
  for (const std::string& name : names) {
    int value = 0;
    std::string type;
    if (store->GetOptionType(name, type) != VEK_SUCCESS || type != "Int") continue;
    if (store->GetOption(name, value) != VEK_SUCCESS) continue;
    if (store->SetOption(name, value + (value < 1000 ? 1 : -1)) != VEK_SUCCESS) break;
    int back = 0;
    VEK_FUZZ_CHECK(store->GetOption(name, back) == VEK_SUCCESS && back == value + (value < 1000 ? 1 : -1),
                   name + ": an int written through the store reads back different");
    break;
  }
  return 0;
}
