#include "vekWarpBuilder.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <new>
#include <ostream>
#include <tuple>

#include "vekBlendWeight.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekRectilinearGrid.h"
#include "vekRectilinearGridIntersectTriangleMesh.h"

namespace vek {

namespace {

// Content coordinates this close to the fill region's edge are on it: the homographies leave a
// rounding error of that size, and a cut through it would make needless slivers.
constexpr double kContentSlack = 1e-9;

double SnappedToEdge(double value) {
  if (std::abs(value) <= kContentSlack) return 0;
  if (std::abs(value - 1) <= kContentSlack) return 1;
  return value;
}

// Where the blend needs it, a warp grid interval is split in this many.
constexpr int kRefinement = 4;
// How far the alpha in the middle of an interval may stray from the straight line between its
// ends before the interval is split: the renderer interpolates linearly, and the light of two
// projectors is to add up to 1 within about 1%.
constexpr double kRefineTolerance = 0.002;
// Likewise for the content point, in content pixels: where the screen bends the map from
// projector to content, the renderer's straight lines must still land within a tenth of a pixel.
constexpr double kContentTolerance = 0.1;

struct WarpVertex {
  vec2<double> Pixel;
  vec2<double> Content;
  double Alpha = 1;
};

// The largest spacing not above `step` that divides [low, high] evenly; the number of points.
int EvenPoints(double low, double high, int step, double& spacing) {
  const int intervals = std::max(1, static_cast<int>(std::ceil((high - low) / step - 1e-9)));
  spacing = (high - low) / intervals;
  return intervals + 1;
}

// Clips triangles of the piecewise-linear content map to the unit square. A vertex made on an
// edge is keyed by the edge's two ends and the clipping side, so the two triangles that share an
// edge share the vertex too and the cut leaves no crack.
class ContentClipper {
 public:
  explicit ContentClipper(std::vector<WarpVertex>& vertices) : Vertices(vertices) {}

  std::vector<int> Clip(std::vector<int> polygon) {
    for (int side = 0; side < 4 && polygon.size() >= 3; ++side) {
      std::vector<int> kept;
      for (size_t k = 0; k < polygon.size(); ++k) {
        const int current = polygon[k], next = polygon[(k + 1) % polygon.size()];
        const bool currentIn = Inside(current, side) >= 0, nextIn = Inside(next, side) >= 0;
        if (currentIn) kept.push_back(current);
        if (currentIn != nextIn) kept.push_back(Cut(current, next, side));
      }
      // A vertex on the edge itself may now appear twice in a row.
      kept.erase(std::unique(kept.begin(), kept.end()), kept.end());
      while (kept.size() > 1 && kept.front() == kept.back()) kept.pop_back();
      polygon = kept;
    }
    return polygon.size() >= 3 ? polygon : std::vector<int>();
  }

 private:
  // Side 0: u >= 0, 1: u <= 1, 2: v >= 0, 3: v <= 1; non-negative inside.
  double Inside(int vertex, int side) const {
    const vec2<double>& c = Vertices[vertex].Content;
    switch (side) {
      case 0: return c.x;
      case 1: return 1 - c.x;
      case 2: return c.y;
      default: return 1 - c.y;
    }
  }

  int Cut(int a, int b, int side) {
    const int low = std::min(a, b), high = std::max(a, b);
    const auto key = std::make_tuple(low, high, side);
    const auto found = Cuts.find(key);
    if (found != Cuts.end()) return found->second;
    const double from = Inside(low, side), to = Inside(high, side);
    int vertex = low;
    if (from != 0) {
      vertex = high;
      if (to != 0) {
        const double t = from / (from - to);
        const WarpVertex& p = Vertices[low];
        const WarpVertex& q = Vertices[high];
        WarpVertex made;
        made.Pixel = {p.Pixel.x + t * (q.Pixel.x - p.Pixel.x), p.Pixel.y + t * (q.Pixel.y - p.Pixel.y)};
        made.Content = {p.Content.x + t * (q.Content.x - p.Content.x), p.Content.y + t * (q.Content.y - p.Content.y)};
        made.Alpha = p.Alpha + t * (q.Alpha - p.Alpha);
        // The edge of the fill region is exactly where the cut lies.
        if (side < 2) made.Content.x = side == 0 ? 0 : 1;
        else made.Content.y = side == 2 ? 0 : 1;
        Vertices.push_back(made);
        vertex = static_cast<int>(Vertices.size()) - 1;
      }
    }
    Cuts.emplace(key, vertex);
    return vertex;
  }

  std::vector<WarpVertex>& Vertices;
  std::map<std::tuple<int, int, int>, int> Cuts;
};

double ContentArea(const WarpVertex& a, const WarpVertex& b, const WarpVertex& c) {
  return 0.5 * std::abs((b.Content.x - a.Content.x) * (c.Content.y - a.Content.y) -
                        (b.Content.y - a.Content.y) * (c.Content.x - a.Content.x));
}

// Whether the segment a-b of content space meets the unit square, widened a little so that an
// edge lying on the fill region's edge counts whichever way it rounds (Liang-Barsky: inside each
// side is p t <= q for the point a + t (b - a)).
bool MeetsContent(const vec2<double>& a, const vec2<double>& b) {
  constexpr double kSlack = 1e-6;
  double enter = 0, leave = 1;
  const double p[4] = {-(b.x - a.x), b.x - a.x, -(b.y - a.y), b.y - a.y};
  const double q[4] = {a.x + kSlack, 1 + kSlack - a.x, a.y + kSlack, 1 + kSlack - a.y};
  for (int side = 0; side < 4; ++side) {
    if (p[side] == 0) {
      if (q[side] < 0) return false;
    } else if (p[side] < 0) {
      enter = std::max(enter, q[side] / p[side]);
    } else {
      leave = std::min(leave, q[side] / p[side]);
    }
  }
  return enter <= leave;
}

// The edges of a projector's spot grid that reach into the fill region (BlendWeight::Edge).
int EdgesInFill(const ProjectorFootprint& footprint, const ScreenModel& screen) {
  const TriangleMesh& camera = *footprint.GetMappingCameraMesh();
  const int columns = footprint.GetColumns(), rows = footprint.GetRows();
  auto reaches = [&](int first, int step, int count) {
    bool previousKnown = false;
    vec2<double> previous;
    for (int k = 0; k < count; ++k) {
      const vec2<float>& point = camera.GetPoint(first + k * step);
      vec2<double> content;
      const bool known = !point.IsUnset() && screen.CameraToContent({point.x, point.y}, content);
      if (known && MeetsContent(previousKnown ? previous : content, content)) return true;
      previousKnown = known;
      if (known) previous = content;
    }
    return false;
  };
  int edges = 0;
  if (reaches(0, columns, rows)) edges |= BlendWeight::kLeftEdge;
  if (reaches(columns - 1, columns, rows)) edges |= BlendWeight::kRightEdge;
  if (reaches(0, 1, columns)) edges |= BlendWeight::kTopEdge;
  if (reaches((rows - 1) * columns, 1, columns)) edges |= BlendWeight::kBottomEdge;
  return edges;
}

BlendWeight WeightOf(const ProjectorFootprint& footprint, double gamma, int edges) {
  return BlendWeight(footprint.GetProjectorMin(), footprint.GetProjectorMax(), gamma, edges);
}

}  // namespace

double WarpBuilder::AlphaAt(int projector, const vec2<double>& pixel, const vec2<double>& camera,
                            const std::vector<int>& blendPartners) const {
  const ProjectorFootprint& footprint = *Projectors[projector];
  auto share = [&](const vec2<double>& ownPixel, const vec2<double>& at, double& own, double& total) {
    own = WeightOf(footprint, Gamma, Edges[projector]).Weight(ownPixel);
    total = own;
    int covering = 1;
    const vec2<float> point(static_cast<float>(at.x), static_cast<float>(at.y));
    for (int partner : blendPartners) {
      vec2<double> partnerPixel;
      if (partner == projector || !Projectors[partner]->CameraToProjector(point, partnerPixel)) continue;
      total += WeightOf(*Projectors[partner], Gamma, Edges[partner]).Weight(partnerPixel);
      ++covering;
    }
    return covering;
  };
  double own = 0, total = 0;
  const int covering = share(pixel, camera, own, total);
  if (covering > 1 && total == 0) {
    // On the edge of every projector here (aligned edges): the shares are those just inside,
    // a hundredth of a camera pixel towards this projector's middle. An equal split instead
    // would differ from the row next to it, and the renderer would smear the step over a cell.
    const vec2<double> middle(0.5 * (footprint.GetCameraMin().x + footprint.GetCameraMax().x),
                              0.5 * (footprint.GetCameraMin().y + footprint.GetCameraMax().y));
    const double length = std::hypot(middle.x - camera.x, middle.y - camera.y);
    vec2<double> inside = camera, insidePixel;
    if (length > 0) {
      inside.x += 0.01 * (middle.x - camera.x) / length;
      inside.y += 0.01 * (middle.y - camera.y) / length;
    }
    const vec2<float> insideFloat(static_cast<float>(inside.x), static_cast<float>(inside.y));
    if (footprint.CameraToProjector(insideFloat, insidePixel)) {
      double insideOwn = 0, insideTotal = 0;
      const int insideCovering = share(insidePixel, inside, insideOwn, insideTotal);
      return BlendWeight::Alpha(insideOwn, insideTotal, insideCovering, Gamma);
    }
  }
  return BlendWeight::Alpha(own, total, covering, Gamma);
}

WarpBuilder* WarpBuilder::New() { return new (std::nothrow) WarpBuilder; }

void WarpBuilder::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Step: " << Step << "\n";
  os << indent << "Gamma: " << Gamma << "\n";
  os << indent << "Grid: " << GridColumns << " x " << GridRows << "\n";
  os << indent << "Coverage: " << Coverage << "\n";
}

int WarpBuilder::Build(int projector, const std::vector<int>& blendPartners) {
  const int count = static_cast<int>(Projectors.size());
  if (!Screen || projector < 0 || projector >= count || !Projectors[projector] || Step < 1 || !(Gamma > 0) ||
      ContentWidth < 1 || ContentHeight < 1)
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "The warp builder lacks an input or a setting");
  for (int partner : blendPartners)
    if (partner < 0 || partner >= count || !Projectors[partner])
      return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS,
                                                 "Blend partner " + std::to_string(partner) + " is no projector");
  const ProjectorFootprint& footprint = *Projectors[projector];
  Edges.assign(Projectors.size(), BlendWeight::kAllEdges);
  for (int p : blendPartners) Edges[p] = EdgesInFill(*Projectors[p], *Screen);
  Edges[projector] = EdgesInFill(footprint, *Screen);
  const vec2<double> low = footprint.GetProjectorMin(), high = footprint.GetProjectorMax();
  if (!(high.x > low.x) || !(high.y > low.y))
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "The projector's spots span no area");

  double spaceX = 0, spaceY = 0;
  const int columns = EvenPoints(low.x, high.x, Step, spaceX);
  const int rows = EvenPoints(low.y, high.y, Step, spaceY);
  // Every grid point is mapped on a grid Refinement times finer; the coarse grid takes the fine
  // columns (rows) of an interval only where the blend needs them.
  const int refinement = std::clamp(static_cast<int>(std::min(spaceX, spaceY)), 1, kRefinement);
  const int fineColumns = (columns - 1) * refinement + 1, fineRows = (rows - 1) * refinement + 1;
  SmartPointer<RectilinearGrid> grid = SmartPointer<RectilinearGrid>::New();
  SmartPointer<RectilinearGridIntersectTriangleMesh> locate = SmartPointer<RectilinearGridIntersectTriangleMesh>::New();
  SmartPointer<TextureMesh> warp = SmartPointer<TextureMesh>::New();
  if (!grid || !locate || !warp) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  grid->SetOffsetx(static_cast<float>(low.x));
  grid->SetOffsety(static_cast<float>(low.y));
  grid->SetSpacex(static_cast<float>(spaceX / refinement));
  grid->SetSpacey(static_cast<float>(spaceY / refinement));
  grid->SetNumx(fineColumns);
  grid->SetNumy(fineRows);
  locate->SetGrid(grid.GetPointer());
  locate->SetMesh(footprint.GetMappingProjectorMesh());
  // Callers build several projectors at once; one thread each keeps the threads from multiplying.
  locate->SetNumberOfThreads(1);
  int status = locate->Update();
  if (status != VEK_SUCCESS) return status;

  // Fine grid points: projector pixel -> camera point -> content point; the blend alpha only
  // where it is asked for.
  const TriangleMesh& camera = *footprint.GetMappingCameraMesh();
  const size_t finePoints = static_cast<size_t>(fineColumns) * fineRows;
  std::vector<WarpVertex> fine(finePoints);
  std::vector<vec2<double>> cameraPoints(finePoints);
  std::vector<char> mappedFine(finePoints, 0), alphaKnown(finePoints, 0);
  for (int j = 0; j < fineRows; ++j)
    for (int i = 0; i < fineColumns; ++i) {
      const int point = j * fineColumns + i;
      const int triangle = locate->GetPointTriangle(point);
      if (triangle == RectilinearGridIntersectTriangleMesh::kNoTriangle) continue;
      const float* weights = locate->GetPointWeights(point);
      int corners[3];
      camera.GetTriangleVerticesInArray(triangle, corners);
      vec2<double>& cameraPoint = cameraPoints[point];
      cameraPoint = vec2<double>(0, 0);
      for (int k = 0; k < 3; ++k) {
        cameraPoint.x += weights[k] * static_cast<double>(camera.GetPoint(corners[k]).x);
        cameraPoint.y += weights[k] * static_cast<double>(camera.GetPoint(corners[k]).y);
      }
      // The last column and row lie exactly on the area's edge.
      fine[point].Pixel = {i == fineColumns - 1 ? high.x : low.x + i * spaceX / refinement,
                           j == fineRows - 1 ? high.y : low.y + j * spaceY / refinement};
      mappedFine[point] = Screen->CameraToContent(cameraPoint, fine[point].Content) ? 1 : 0;
      fine[point].Content = {SnappedToEdge(fine[point].Content.x), SnappedToEdge(fine[point].Content.y)};
    }
  auto alpha = [&](int i, int j) {
    const int point = j * fineColumns + i;
    if (!alphaKnown[point]) {
      fine[point].Alpha = AlphaAt(projector, fine[point].Pixel, cameraPoints[point], blendPartners);
      alphaKnown[point] = 1;
    }
    return fine[point].Alpha;
  };
  // An interval is refined where the alpha at its middle strays from the straight line between
  // its ends by more than the renderer's linear interpolation may.
  auto strays = [&](int i0, int j0, int i1, int j1) {
    const int im = (i0 + i1) / 2, jm = (j0 + j1) / 2;
    for (int point : {j0 * fineColumns + i0, j1 * fineColumns + i1, jm * fineColumns + im})
      if (!mappedFine[point]) return false;
    const vec2<double>& a = fine[j0 * fineColumns + i0].Content;
    const vec2<double>& b = fine[j1 * fineColumns + i1].Content;
    const vec2<double>& m = fine[jm * fineColumns + im].Content;
    if (std::hypot((m.x - 0.5 * (a.x + b.x)) * ContentWidth, (m.y - 0.5 * (a.y + b.y)) * ContentHeight) >
        kContentTolerance)
      return true;
    return std::abs(alpha(im, jm) - 0.5 * (alpha(i0, j0) + alpha(i1, j1))) > kRefineTolerance;
  };
  std::vector<int> keptColumns, keptRows;
  for (int i = 0; i < columns; ++i) {
    keptColumns.push_back(i * refinement);
    bool refine = false;
    for (int j = 0; j < rows && i + 1 < columns && refinement > 1 && !refine; ++j)
      refine = strays(i * refinement, j * refinement, (i + 1) * refinement, j * refinement);
    for (int k = 1; refine && k < refinement; ++k) keptColumns.push_back(i * refinement + k);
  }
  for (int j = 0; j < rows; ++j) {
    keptRows.push_back(j * refinement);
    bool refine = false;
    for (int i = 0; i < columns && j + 1 < rows && refinement > 1 && !refine; ++i)
      refine = strays(i * refinement, j * refinement, i * refinement, (j + 1) * refinement);
    for (int k = 1; refine && k < refinement; ++k) keptRows.push_back(j * refinement + k);
  }

  const int keptColumnCount = static_cast<int>(keptColumns.size()), keptRowCount = static_cast<int>(keptRows.size());
  std::vector<WarpVertex> vertices(static_cast<size_t>(keptColumnCount) * keptRowCount);
  std::vector<char> mapped(vertices.size(), 0);
  for (int r = 0; r < keptRowCount; ++r)
    for (int c = 0; c < keptColumnCount; ++c) {
      const int point = keptRows[r] * fineColumns + keptColumns[c];
      if (!mappedFine[point]) continue;
      alpha(keptColumns[c], keptRows[r]);
      vertices[static_cast<size_t>(r) * keptColumnCount + c] = fine[point];
      mapped[static_cast<size_t>(r) * keptColumnCount + c] = 1;
    }
  const int gridColumns = keptColumnCount, gridRows = keptRowCount;

  // Two triangles per cell whose corners all map (the grid mesh's diagonal), cut at the fill edge.
  ContentClipper clipper(vertices);
  std::vector<int> triangles;
  double coverage = 0;
  for (int j = 0; j + 1 < gridRows; ++j)
    for (int i = 0; i + 1 < gridColumns; ++i) {
      const int p = j * gridColumns + i;
      const int cell[2][3] = {{p, p + gridColumns + 1, p + 1}, {p + gridColumns + 1, p, p + gridColumns}};
      for (const auto& corners : cell) {
        if (!mapped[corners[0]] || !mapped[corners[1]] || !mapped[corners[2]]) continue;
        const std::vector<int> polygon = clipper.Clip({corners[0], corners[1], corners[2]});
        for (size_t k = 1; k + 1 < polygon.size(); ++k) {
          triangles.insert(triangles.end(), {polygon[0], polygon[k], polygon[k + 1]});
          coverage += ContentArea(vertices[polygon[0]], vertices[polygon[k]], vertices[polygon[k + 1]]);
        }
      }
    }

  // Only the vertices some triangle uses are written, in the order they were made.
  std::vector<char> used(vertices.size(), 0);
  for (int vertex : triangles) used[vertex] = 1;
  std::vector<int> newIndex(vertices.size(), -1);
  int kept = 0;
  for (size_t v = 0; v < vertices.size(); ++v)
    if (used[v]) newIndex[v] = kept++;
  warp->SetNumPoints(kept);
  warp->SetNumTriangles(static_cast<int>(triangles.size() / 3));
  if (warp->Allocate() != VEK_SUCCESS) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  for (size_t v = 0; v < vertices.size(); ++v)
    if (newIndex[v] >= 0) {
      const WarpVertex& vertex = vertices[v];
      warp->AddPoint(newIndex[v], static_cast<float>(vertex.Pixel.x), static_cast<float>(vertex.Pixel.y),
                     static_cast<float>(vertex.Content.x), static_cast<float>(vertex.Content.y),
                     static_cast<float>(vertex.Alpha));
    }
  for (size_t t = 0; t < triangles.size() / 3; ++t)
    warp->AddTriangle(static_cast<int>(t), newIndex[triangles[3 * t]], newIndex[triangles[3 * t + 1]],
                      newIndex[triangles[3 * t + 2]]);

  Warp = warp;
  Coverage = coverage;
  GridColumns = gridColumns;
  GridRows = gridRows;
  return VEK_SUCCESS;
}

}  // namespace vek
