#include "vekCalibrationAccuracy.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <random>
#include <string>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekTriangleLocator2D.h"
#include "vekTriangleMesh.h"

namespace vek {

namespace {

// Points on a triangle edge shared by two triangles must land in one of them despite rounding.
constexpr float kBarycentricTolerance = 1e-4f;
// About two triangles per locator cell, and no more cells than a large warp earns.
constexpr int kTrianglesPerCell = 2;
constexpr int kMaxCellsPerSide = 512;
constexpr double kPi = 3.14159265358979323846;

bool IsRealVertex(const vec2<float>& xy) {
  if (xy.IsUnset() || (xy.x == TextureMesh::kDroppedX && xy.y == TextureMesh::kDroppedY)) return false;
  return std::isfinite(xy.x) && std::isfinite(xy.y);
}

int Invalid(const std::string& message) {
  return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Calibration accuracy: " + message);
}

// One warp's alpha as a function of projector pixels: its triangles (those with real vertices)
// behind a locator.
class AlphaLookup {
 public:
  int Build(const TextureMesh& warp) {
    Warp = &warp;
    std::vector<int> kept;
    for (int t = 0; t < warp.GetNumTriangles(); ++t) {
      int a, b, c;
      warp.GetTriangle(t, a, b, c);
      for (int v : {a, b, c})
        if (v < 0 || v >= warp.GetNumPoints())
          return Invalid("triangle " + std::to_string(t) + " has vertex " + std::to_string(v) + " of " +
                         std::to_string(warp.GetNumPoints()));
      if (IsRealVertex(warp.GetPointXY(a)) && IsRealVertex(warp.GetPointXY(b)) && IsRealVertex(warp.GetPointXY(c)))
        kept.push_back(t);
    }
    if (kept.empty()) return VEK_SUCCESS;
    Mesh = SmartPointer<TriangleMesh>::New();
    Locator = SmartPointer<TriangleLocator2D>::New();
    if (!Mesh || !Locator) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    Mesh->SetNumPoints(warp.GetNumPoints());
    Mesh->SetNumTriangles(static_cast<int>(kept.size()));
    if (Mesh->Allocate() != VEK_SUCCESS) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    for (int i = 0; i < warp.GetNumPoints(); ++i) {
      const vec2<float>& xy = warp.GetPointXY(i);
      // Left unset, a vertex no kept triangle uses stays out of the locator's box.
      if (IsRealVertex(xy)) Mesh->AddPoint(i, xy.x, xy.y);
    }
    for (size_t k = 0; k < kept.size(); ++k) {
      int a, b, c;
      warp.GetTriangle(kept[k], a, b, c);
      Mesh->AddTriangle(static_cast<int>(k), a, b, c);
    }
    const int cells = std::clamp(static_cast<int>(std::sqrt(static_cast<double>(kept.size()) / kTrianglesPerCell)), 1,
                                 kMaxCellsPerSide);
    const int status = Locator->Initialize(Mesh->GetPoints(), Mesh->GetNumPoints(), Mesh->GetTriangles(),
                                           Mesh->GetNumTriangles(), cells, cells, 0.001f);
    if (status != VEK_SUCCESS) return status;
    Min = Locator->GetMin();
    Max = Locator->GetMax();
    return VEK_SUCCESS;
  }

  // Whether a triangle of the warp lies within `radius` pixels: probes in eight directions, which
  // find any edge closer than 0.92 radius.
  bool IsNear(const vec2<double>& pixel, double radius) const {
    double ignored;
    for (int k = 0; k < 8; ++k) {
      const double angle = k * kPi / 4;
      if (Alpha({pixel.x + radius * std::cos(angle), pixel.y + radius * std::sin(angle)}, ignored)) return true;
    }
    return false;
  }

  // False where no triangle of the warp holds the pixel.
  bool Alpha(const vec2<double>& pixel, double& alpha) const {
    if (!Locator) return false;
    const vec2<float> p(static_cast<float>(pixel.x), static_cast<float>(pixel.y));
    // Asking the locator about a point outside its cells would log a warning for every sample.
    if (!(p.x >= Min.x && p.x <= Max.x && p.y >= Min.y && p.y <= Max.y)) return false;
    int id = -1;
    float bary[3];
    if (!Locator->FindFirstTriangleContainingPoint(p, kBarycentricTolerance, id, bary)) return false;
    int corner[3];
    Mesh->GetTriangleVerticesInArray(id, corner);
    alpha = 0;
    for (int k = 0; k < 3; ++k) alpha += static_cast<double>(bary[k]) * Warp->GetAlpha(corner[k]);
    return true;
  }

 private:
  const TextureMesh* Warp = nullptr;
  SmartPointer<TriangleMesh> Mesh;
  SmartPointer<TriangleLocator2D> Locator;
  vec2<float> Min;
  vec2<float> Max;
};

double DistanceToSegment(const vec2<double>& p, const vec2<double>& a, const vec2<double>& b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double length2 = dx * dx + dy * dy;
  const double t = length2 > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length2, 0.0, 1.0) : 0.0;
  return std::hypot(p.x - (a.x + t * dx), p.y - (a.y + t * dy));
}

// Corners in boundary order.
double DistanceToQuadrilateral(const vec2<double>& p, const std::array<vec2<double>, 4>& corners) {
  double nearest = HUGE_VAL;
  for (int k = 0; k < 4; ++k) nearest = std::min(nearest, DistanceToSegment(p, corners[k], corners[(k + 1) % 4]));
  return nearest;
}

const char* Verdict(bool passed) { return passed ? "PASS" : "FAIL"; }

}  // namespace

// Defined here as well so that the Windows DLL exports them: callers bind them to references
// (comparisons in tests, std::min), which an inline constant alone would leave unresolved.
constexpr double CalibrationAccuracy::kContentTargetNoiseFree;
constexpr double CalibrationAccuracy::kContentTargetNoisy;
constexpr double CalibrationAccuracy::kBlendMaxTarget;
constexpr double CalibrationAccuracy::kBlendRMSTarget;
constexpr int CalibrationAccuracy::kDefaultSamples;
constexpr std::uint32_t CalibrationAccuracy::kSampleSeed;

int CalibrationAccuracy::Evaluate(const SyntheticWall& wall, const std::vector<const TextureMesh*>& warps, double gamma,
                                  Result& result, int samples) {
  const int projectors = wall.GetNumberOfProjectors();
  if (projectors < 1) return Invalid("the wall was not generated");
  if (static_cast<int>(warps.size()) != projectors)
    return Invalid(std::to_string(warps.size()) + " warps for " + std::to_string(projectors) + " projectors");
  for (int p = 0; p < projectors; ++p) {
    if (!warps[static_cast<size_t>(p)]) return Invalid("no warp for projector " + std::to_string(p));
    if (warps[static_cast<size_t>(p)]->GetMapping() != TextureMesh::NORMALIZED)
      return Invalid("the warp of projector " + std::to_string(p) + " maps to content pixels, not 0..1");
  }
  if (!(gamma > 0 && std::isfinite(gamma))) return Invalid("gamma " + std::to_string(gamma));
  if (samples < 1) return Invalid(std::to_string(samples) + " samples");

  try {
    Result measured;
    measured.ContentTarget = wall.GetParameters().NoiseSigma == 0 ? kContentTargetNoiseFree : kContentTargetNoisy;
    double sumSquares = 0;
    for (int p = 0; p < projectors; ++p) {
      const TextureMesh& warp = *warps[static_cast<size_t>(p)];
      for (int i = 0; i < warp.GetNumPoints(); ++i) {
        const vec2<float>& xy = warp.GetPointXY(i);
        const vec2<float>& uv = warp.GetPointUV(i);
        if (!IsRealVertex(xy) || uv.IsUnset()) continue;
        const vec2<double> truth = wall.ContentToProjector(p, {uv.x, uv.y});
        const double error = std::hypot(truth.x - xy.x, truth.y - xy.y);
        // A UV that is no number shows nothing right: the error is then infinite, not skipped.
        const double counted = std::isnan(error) ? HUGE_VAL : error;
        measured.ContentErrorMax = std::max(measured.ContentErrorMax, counted);
        sumSquares += counted * counted;
        ++measured.ContentVertices;
      }
    }
    if (measured.ContentVertices > 0) measured.ContentErrorRMS = std::sqrt(sumSquares / measured.ContentVertices);

    std::vector<AlphaLookup> lookups(static_cast<size_t>(projectors));
    for (int p = 0; p < projectors; ++p) {
      const int status = lookups[static_cast<size_t>(p)].Build(*warps[static_cast<size_t>(p)]);
      if (status != VEK_SUCCESS) return status;
    }
    // The fill region's border in each projector's pixels (a homography keeps it four lines).
    const vec2<double>& fillMin = wall.GetFillMin();
    const vec2<double>& fillMax = wall.GetFillMax();
    std::vector<std::array<vec2<double>, 4>> border(static_cast<size_t>(projectors));
    for (int p = 0; p < projectors; ++p) {
      const vec2<double> corners[4] = {fillMin, {fillMax.x, fillMin.y}, fillMax, {fillMin.x, fillMax.y}};
      for (int k = 0; k < 4; ++k) border[static_cast<size_t>(p)][k] = wall.ScreenToProjector(p, corners[k]);
    }
    const double band = measured.ContentTarget;
    std::mt19937 generator(kSampleSeed);
    std::vector<char> lit(static_cast<size_t>(projectors));
    sumSquares = 0;
    int counted = 0;
    for (int s = 0; s < samples; ++s) {
      // From the raw outputs, so that every standard library draws the same points.
      const double u = (generator() + 0.5) / 4294967296.0;
      const double v = (generator() + 0.5) / 4294967296.0;
      const vec2<double> screen(fillMin.x + u * (fillMax.x - fillMin.x), fillMin.y + v * (fillMax.y - fillMin.y));
      double light = 0;
      int covering = 0;
      for (int p = 0; p < projectors; ++p) {
        double alpha;
        lit[static_cast<size_t>(p)] = lookups[static_cast<size_t>(p)].Alpha(wall.ScreenToProjector(p, screen), alpha);
        if (!lit[static_cast<size_t>(p)]) continue;
        light += std::pow(std::max(alpha, 0.0), gamma);
        ++covering;
      }
      // A warp that misses the point by less than the content error, right at the image's border,
      // is a warp edge drawn that much off: already counted as content error, neither a hole nor
      // a blend fault. Screen units are near projector pixels, so 4 bands is a safe first cut.
      const double toBorder = std::min({screen.x - fillMin.x, fillMax.x - screen.x, screen.y - fillMin.y,
                                        fillMax.y - screen.y});
      bool sliver = false;
      for (int p = 0; p < projectors && !sliver && toBorder <= 4 * band; ++p) {
        if (lit[static_cast<size_t>(p)]) continue;
        const vec2<double> pixel = wall.ScreenToProjector(p, screen);
        sliver = DistanceToQuadrilateral(pixel, border[static_cast<size_t>(p)]) <= band &&
                 lookups[static_cast<size_t>(p)].IsNear(pixel, band);
      }
      if (sliver) {
        ++measured.BorderSamples;
        continue;
      }
      if (covering == 0) {
        ++measured.UncoveredSamples;
        continue;
      }
      const double error = std::fabs(light - 1);
      measured.BlendErrorMax = std::max(measured.BlendErrorMax, error);
      sumSquares += error * error;
      ++counted;
    }
    measured.Samples = samples;
    if (counted > 0) measured.BlendErrorRMS = std::sqrt(sumSquares / counted);
    result = measured;
    return VEK_SUCCESS;
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

void CalibrationAccuracy::PrintReport(std::ostream& os, const Result& result) {
  os << "Content error: max " << result.ContentErrorMax << " px, RMS " << result.ContentErrorRMS << " px over "
     << result.ContentVertices << " warp vertices (target: max <= " << result.ContentTarget
     << " px): " << Verdict(result.ContentPassed()) << "\n";
  os << "Blend error: max " << result.BlendErrorMax << ", RMS " << result.BlendErrorRMS << " at "
     << result.Samples - result.UncoveredSamples - result.BorderSamples
     << " covered points of the fill region (targets: max <= " << kBlendMaxTarget << ", RMS <= " << kBlendRMSTarget
     << "): " << Verdict(result.BlendPassed()) << "\n";
  os << "Uncovered points: " << result.UncoveredSamples << " of " << result.Samples
     << " lit by no projector (target: 0): " << Verdict(result.CoveragePassed()) << "\n";
  if (result.BorderSamples > 0)
    os << "Border points: " << result.BorderSamples << " of " << result.Samples << " within " << result.ContentTarget
       << " px of the image's border and of a warp's edge that falls short there, left to the content error\n";
}

}  // namespace vek
