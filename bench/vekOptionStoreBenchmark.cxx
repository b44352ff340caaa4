// Option store look-ups and writes on files of 2,000 options, in a scratch configuration folder.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "vekClassInitializer.h"
#include "vekConfigurationDatabase.h"
#include "vekSmartPointer.h"

namespace {

constexpr int kOptions = 2000;

vek::SmartPointer<vek::ConfigurationDatabase> StoreWithManyOptions() {
  static const std::filesystem::path base = std::filesystem::temp_directory_path() / "vek-option-benchmark";
  std::filesystem::remove_all(base);
  vek::ClassInitializer::Initialize(base.string().c_str());
  auto store = vek::SmartPointer<vek::ConfigurationDatabase>::New();
  store->LoadOptionsDatabase();
  std::ofstream options(store->GetOptionsFileName(), std::ios::binary);
  std::ofstream info(store->GetOptionInfoFileName(), std::ios::binary);
  for (int i = 0; i < kOptions; ++i) {
    options << "Option" << i << " = " << i << "\n";
    info << "Option" << i << "\tInt\t2\t0\t-100\t100000\n";
  }
  return store;
}

void GetOptionFrom2000Lines(benchmark::State& state) {
  auto store = StoreWithManyOptions();
  int value = 0;
  for (auto _ : state) {
    store->GetOption("Option1000", value);
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(GetOptionFrom2000Lines)->Unit(benchmark::kMicrosecond);

void SetOptionIn2000Lines(benchmark::State& state) {
  auto store = StoreWithManyOptions();
  int value = 0;
  for (auto _ : state) store->SetOption("Option1000", ++value);
}
BENCHMARK(SetOptionIn2000Lines)->Unit(benchmark::kMillisecond);

}  // namespace
