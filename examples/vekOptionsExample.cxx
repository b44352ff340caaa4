// Writes options to the option store with their types and reads them back.
// Usage: vekOptionsExample   The store is the Config folder of the base folder: set VEK_BASE_DIR to
// a folder of your own to try it away from the real one.
#include <cstdio>
#include <string>
#include <vector>

#include "vekConfigurationDatabase.h"
#include "vekErrorHelper.h"
#include "vekSmartPointer.h"

namespace {

bool Failed(int status, const char* what) {
  if (status == VEK_SUCCESS) return false;
  std::fprintf(stderr, "%s: %s\n", what, vek::ErrorHelper::GetErrorMessageWithNoExtras(status).c_str());
  return true;
}

}  // namespace

int main() {
  using namespace vek;
  auto store = SmartPointer<ConfigurationDatabase>::New();
  // Finds the option files (making an empty KOROptions.txt when there is none) and fills the
  // process-wide settings from them. The other members need it first.
  if (Failed(store->LoadOptionsDatabase(), "load")) return 1;
  std::printf("options file: %s\n", store->GetOptionsFileName().c_str());

  // The C++ type of the value is the option's type (here Float, Int, String and FloatArray). A new
  // option is described with that type in KOROptionInfo.txt, and from then on keeps it.
  if (Failed(store->SetOption("ExampleGain", 0.75f), "ExampleGain") ||
      Failed(store->SetOption("ExampleStep", 32), "ExampleStep") ||
      Failed(store->SetOption("ExampleWall", std::string("LeftWall")), "ExampleWall") ||
      Failed(store->SetOption("ExampleWeights", std::vector<float>{1.0f, 0.5f, 0.25f}), "ExampleWeights"))
    return 1;

  float gain = 0;
  int step = 0;
  std::string wall, type;
  std::vector<float> weights;
  if (Failed(store->GetOption("ExampleGain", gain), "ExampleGain") ||
      Failed(store->GetOption("ExampleStep", step), "ExampleStep") ||
      Failed(store->GetOption("ExampleWall", wall), "ExampleWall") ||
      Failed(store->GetOption("ExampleWeights", weights), "ExampleWeights") ||
      Failed(store->GetOptionType("ExampleWeights", type), "ExampleWeights"))
    return 1;
  std::printf("ExampleGain %g, ExampleStep %d, ExampleWall %s, ExampleWeights (%s)", gain, step, wall.c_str(),
              type.c_str());
  for (float w : weights) std::printf(" %g", w);
  std::printf("\n");

  // Asking for another type than the option's is refused, not converted.
  int gainAsInt = -1;
  const int refused = store->GetOption("ExampleGain", gainAsInt);
  std::printf("ExampleGain read as an int: %s\n", ErrorHelper::GetErrorName(refused).c_str());
  return refused == VEK_INVALID_PARAMETERS ? 0 : 1;
}
