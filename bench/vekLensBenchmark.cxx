#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "vekBrownLensWarp.h"
#include "vekEqualAreaFishEyeLensWarp.h"
#include "vekRadialLensWarp.h"
#include "vekSmartPointer.h"

namespace {

using vek::vec2;

constexpr int kPoints = 1000000;
constexpr float kK1 = -0.28f, kK2 = 0.09f, kP1 = 0.001f, kP2 = -0.0005f, kK3 = -0.01f;
constexpr float kFocal = 3000, kCx = 1999.5f, kCy = 1499.5f;

// Distorted pixels spread uniformly over a 4000 x 3000 camera.
const std::vector<vec2<float>>& CameraPoints() {
  static const std::vector<vec2<float>> points = [] {
    std::mt19937 rng(11);
    std::uniform_real_distribution<float> x(0, 3999), y(0, 2999);
    std::vector<vec2<float>> p(kPoints);
    for (auto& q : p) q = vec2<float>(x(rng), y(rng));
    return p;
  }();
  return points;
}

vek::SmartPointer<vek::BrownLensWarp> StrongLens() {
  auto warp = vek::SmartPointer<vek::BrownLensWarp>::New();
  warp->SetCameraDimensions(4000, 3000);
  warp->SetFocalLengthX(kFocal);
  warp->SetFocalLengthY(kFocal);
  warp->SetCenterX(kCx);
  warp->SetCenterY(kCy);
  warp->Setk1(kK1);
  warp->Setk2(kK2);
  warp->Setp1(kP1);
  warp->Setp2(kP2);
  warp->Setk3(kK3);
  return warp;
}

// Largest distance in pixels between each source point and Forward of its inverse.
double WorstRoundTrip(const vek::LensWarp& warp, const std::vector<vec2<float>>& source,
                      const std::vector<vec2<float>>& inverted, double* median = nullptr) {
  std::vector<double> errors(source.size());
  for (size_t i = 0; i < source.size(); ++i) {
    vec2<float> back;
    warp.Forward(inverted[i], back);
    errors[i] = std::hypot(double(back.x) - source[i].x, double(back.y) - source[i].y);
  }
  if (median) {
    std::vector<double> sorted = errors;
    std::nth_element(sorted.begin(), sorted.begin() + sorted.size() / 2, sorted.end());
    *median = sorted[sorted.size() / 2];
  }
  return *std::max_element(errors.begin(), errors.end());
}

void BM_BrownInvertArray(benchmark::State& state) {
  auto warp = StrongLens();
  const auto& source = CameraPoints();
  std::vector<vec2<float>> points;
  for (auto _ : state) {
    state.PauseTiming();
    points = source;
    state.ResumeTiming();
    warp->InplaceInvertArray(points.data(), kPoints);
    benchmark::ClobberMemory();
  }
  double median = 0;
  state.counters["worst_px"] = WorstRoundTrip(*warp, source, points, &median);
  state.counters["median_px"] = median;
  state.SetItemsProcessed(state.iterations() * kPoints);
}
BENCHMARK(BM_BrownInvertArray)->Unit(benchmark::kMillisecond)->UseRealTime();

// The common alternative for comparison: x <- (target - tangential(x)) / radial(x), a fixed
// number of times, in float, from the target itself.
template <int Steps>
void BM_FixedPointInvertReference(benchmark::State& state) {
  auto warp = StrongLens();
  const auto& source = CameraPoints();
  std::vector<vec2<float>> points(kPoints);
  for (auto _ : state) {
    for (int i = 0; i < kPoints; ++i) {
      const float tu = (source[i].x - kCx) / kFocal, tv = (source[i].y - kCy) / kFocal;
      float u = tu, v = tv;
      for (int s = 0; s < Steps; ++s) {
        const float r2 = u * u + v * v;
        const float radial = ((kK3 * r2 + kK2) * r2 + kK1) * r2 + 1;
        const float du = 2 * kP1 * u * v + kP2 * (r2 + 2 * u * u);
        const float dv = kP1 * (r2 + 2 * v * v) + 2 * kP2 * u * v;
        u = (tu - du) / radial;
        v = (tv - dv) / radial;
      }
      points[i] = vec2<float>(u * kFocal + kCx, v * kFocal + kCy);
    }
    benchmark::DoNotOptimize(points.data());
    benchmark::ClobberMemory();
  }
  double median = 0;
  state.counters["worst_px"] = WorstRoundTrip(*warp, source, points, &median);
  state.counters["median_px"] = median;
  state.SetItemsProcessed(state.iterations() * kPoints);
}
BENCHMARK(BM_FixedPointInvertReference<5>)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FixedPointInvertReference<20>)->Unit(benchmark::kMillisecond);

template <class Warp>
void ForwardArray(benchmark::State& state, Warp& warp) {
  const auto& source = CameraPoints();
  std::vector<vec2<float>> points;
  for (auto _ : state) {
    state.PauseTiming();
    points = source;
    state.ResumeTiming();
    warp.InplaceForwardArray(points.data(), kPoints);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * kPoints);
}

void BM_BrownForwardArray(benchmark::State& state) {
  auto warp = StrongLens();
  ForwardArray(state, *warp);
}
BENCHMARK(BM_BrownForwardArray)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_RadialForwardArray(benchmark::State& state) {
  auto warp = vek::SmartPointer<vek::RadialLensWarp>::New();
  const double parameters[6] = {4000, 3000, 0, 0, -0.2, 0.05};
  warp->SetParameters(parameters);
  ForwardArray(state, *warp);
}
BENCHMARK(BM_RadialForwardArray)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_EqualAreaForwardArray(benchmark::State& state) {
  auto warp = vek::SmartPointer<vek::EqualAreaFishEyeLensWarp>::New();
  warp->SetCameraDimensions(4000, 3000);
  warp->SetFocalLengthX(1500);
  warp->SetFocalLengthY(1500);
  warp->SetCenterX(kCx);
  warp->SetCenterY(kCy);
  ForwardArray(state, *warp);
}
BENCHMARK(BM_EqualAreaForwardArray)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
