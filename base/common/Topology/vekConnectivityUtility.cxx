#include "vekConnectivityUtility.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <new>
#include <numeric>
#include <string>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekTriangleMeshIntersectTriangleMesh.h"

namespace vek {

namespace {

using Adjacency = std::vector<std::vector<int>>;

std::string List(const std::vector<int>& values) {
  std::string text;
  for (size_t i = 0; i < values.size(); ++i) text += (i ? ", " : "") + std::to_string(values[i]);
  return text;
}

int Fail(int code, const std::string& message, const std::vector<int>& projectors,
         const std::vector<int>& cameras = {}) {
  const int flagged = ErrorHelper::ErrorWithCustomMessage(code, message);
  ErrorMetadata* record = ErrorHelper::GetErrorMetadata(flagged);
  for (int p : projectors) record->AttachProjector(p);
  for (int c : cameras) record->AttachCamera(c);
  return flagged;
}

int NotSet() {
  return ErrorHelper::ErrorWithCustomMessage(VEK_CONNECTIVITY_GRAPH_NOT_SET,
                                             "The connectivity model holds no projectors.");
}

// Pairs come sorted by their first projector, so every list ends up ascending.
Adjacency MakeAdjacency(const SpatialConnectivity& model) {
  Adjacency adjacency(static_cast<size_t>(model.GetNumberOfProjectors()));
  for (const auto& [a, b] : model.GetNeighborPairs()) {
    adjacency[static_cast<size_t>(a)].push_back(b);
    adjacency[static_cast<size_t>(b)].push_back(a);
  }
  return adjacency;
}

bool SeenByAnyCamera(const SpatialConnectivity& model, int projector) {
  for (int c = 0; c < model.GetNumberOfCameras(); ++c)
    if (model.DoesCameraSeeProjector(c, projector)) return true;
  return false;
}

// What inference needs of one footprint, over its usable triangles.
struct FootprintShape {
  double Area = 0;
  double CentroidX = 0, CentroidY = 0;
  double MinX = 0, MinY = 0, MaxX = 0, MaxY = 0;
  struct Piece {
    int Id;
    vec2<float> Low, High;
  };
  std::vector<Piece> Usable;  // the usable triangles with their boxes
};

FootprintShape Measure(const TriangleMesh& mesh) {
  FootprintShape shape;
  bool first = true;
  double sx = 0, sy = 0;
  for (int t = 0; t < mesh.GetNumTriangles(); ++t) {
    const Triangle& triangle = mesh.GetTriangle(t);
    if (!TriangleMeshIntersectTriangleMesh::IsTriangleUsable(triangle)) continue;
    const double area = std::fabs(static_cast<double>(triangle.SignedArea()));
    FootprintShape::Piece piece{t, {}, {}};
    triangle.GetBoundingBox(piece.Low, piece.High);
    shape.Usable.push_back(piece);
    double cx = 0, cy = 0;
    for (int k = 0; k < 3; ++k) {
      const vec2<float>& corner = *triangle.GetCorner(k);
      cx += corner.x;
      cy += corner.y;
      if (first) {
        shape.MinX = shape.MaxX = corner.x;
        shape.MinY = shape.MaxY = corner.y;
        first = false;
      }
      shape.MinX = std::min<double>(shape.MinX, corner.x);
      shape.MaxX = std::max<double>(shape.MaxX, corner.x);
      shape.MinY = std::min<double>(shape.MinY, corner.y);
      shape.MaxY = std::max<double>(shape.MaxY, corner.y);
    }
    shape.Area += area;
    sx += area * cx / 3;
    sy += area * cy / 3;
  }
  if (shape.Area > 0) {
    shape.CentroidX = sx / shape.Area;
    shape.CentroidY = sy / shape.Area;
  }
  return shape;
}

// The usable triangles of `mesh` whose boxes meet the box, each with corners of its own: all that
// can share area with another footprint inside that box, so the overlap is measured on far fewer.
int CutToBox(const TriangleMesh& mesh, const FootprintShape& shape, double minX, double minY, double maxX, double maxY,
             SmartPointer<TriangleMesh>& cut) {
  std::vector<int> kept;
  for (const FootprintShape::Piece& piece : shape.Usable)
    if (piece.High.x >= minX && piece.Low.x <= maxX && piece.High.y >= minY && piece.Low.y <= maxY)
      kept.push_back(piece.Id);
  cut = SmartPointer<TriangleMesh>::New();
  if (!cut) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  const int count = static_cast<int>(kept.size());
  cut->SetNumPoints(3 * count);
  cut->SetNumTriangles(count);
  if (cut->Allocate() != VEK_SUCCESS) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  for (int k = 0; k < count; ++k) {
    for (int c = 0; c < 3; ++c) cut->SetPoint(3 * k + c) = *mesh.GetTriangle(kept[static_cast<size_t>(k)]).GetCorner(c);
    cut->AddTriangle(k, 3 * k, 3 * k + 1, 3 * k + 2);
  }
  return VEK_SUCCESS;
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

// Gives each value the number of its cluster (ascending values, a new cluster wherever the gap
// exceeds `tolerance`); false when a cluster spreads over more than a footprint, which a row or
// column of a wall does not.
bool Cluster(const std::vector<double>& values, double tolerance, std::vector<int>& cluster) {
  std::vector<int> order(values.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](int a, int b) { return values[static_cast<size_t>(a)] < values[static_cast<size_t>(b)]; });
  cluster.assign(values.size(), 0);
  int current = 0;
  double start = values.empty() ? 0 : values[static_cast<size_t>(order[0])];
  for (size_t k = 0; k < order.size(); ++k) {
    const double v = values[static_cast<size_t>(order[k])];
    if (k > 0 && v - values[static_cast<size_t>(order[k - 1])] > tolerance) {
      ++current;
      start = v;
    }
    if (v - start > 4 * tolerance) return false;
    cluster[static_cast<size_t>(order[k])] = current;
  }
  return true;
}

// Rows and columns of the projectors of one layer; false when they do not form a grid.
struct LayerGrid {
  std::vector<int> Members;
  int Rows = 0, Columns = 0;
};

bool PlaceOnGrid(const std::vector<FootprintShape>& shapes, double toleranceX, double toleranceY, LayerGrid& layer,
                 std::vector<int>& rowOf, std::vector<int>& columnOf) {
  std::vector<double> xs, ys;
  for (int p : layer.Members) {
    xs.push_back(shapes[static_cast<size_t>(p)].CentroidX);
    ys.push_back(shapes[static_cast<size_t>(p)].CentroidY);
  }
  std::vector<int> rows, columns;
  if (!Cluster(xs, toleranceX, columns) || !Cluster(ys, toleranceY, rows)) return false;
  layer.Rows = 1 + *std::max_element(rows.begin(), rows.end());
  layer.Columns = 1 + *std::max_element(columns.begin(), columns.end());
  std::vector<int> cells(static_cast<size_t>(layer.Rows) * static_cast<size_t>(layer.Columns),
                         SpatialConnectivity::kNone);
  for (size_t k = 0; k < layer.Members.size(); ++k) {
    int& cell =
        cells[static_cast<size_t>(rows[k]) * static_cast<size_t>(layer.Columns) + static_cast<size_t>(columns[k])];
    if (cell != SpatialConnectivity::kNone) return false;
    cell = layer.Members[k];
    rowOf[static_cast<size_t>(layer.Members[k])] = rows[k];
    columnOf[static_cast<size_t>(layer.Members[k])] = columns[k];
  }
  // Each row and each column must be one run of occupied cells.
  auto occupied = [&](int r, int c) {
    return cells[static_cast<size_t>(r) * static_cast<size_t>(layer.Columns) + static_cast<size_t>(c)] !=
           SpatialConnectivity::kNone;
  };
  for (int r = 0; r < layer.Rows; ++r) {
    int runs = 0;
    for (int c = 0; c < layer.Columns; ++c) runs += occupied(r, c) && (c == 0 || !occupied(r, c - 1));
    if (runs != 1) return false;
  }
  for (int c = 0; c < layer.Columns; ++c) {
    int runs = 0;
    for (int r = 0; r < layer.Rows; ++r) runs += occupied(r, c) && (r == 0 || !occupied(r - 1, c));
    if (runs != 1) return false;
  }
  return true;
}

int Find(std::vector<int>& parent, int p) {
  while (parent[static_cast<size_t>(p)] != p)
    p = parent[static_cast<size_t>(p)] = parent[static_cast<size_t>(parent[static_cast<size_t>(p)])];
  return p;
}

}  // namespace

int ConnectivityUtility::BuildGlobalMxN(int rows, int columns, int layers, int cameras, SpatialConnectivity* result) {
  if (!result || rows < 1 || columns < 1 || layers < 1 || cameras < 0 ||
      static_cast<long long>(rows) * columns * layers > 0x7FFFFFFF)
    return VEK_INVALID_PARAMETERS;
  auto model = SmartPointer<SpatialConnectivity>::New();
  if (!model) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  const int p = rows * columns * layers;
  int status = model->Initialize(p, cameras);
  std::vector<int> rowOf, columnOf;
  try {
    rowOf.reserve(static_cast<size_t>(p));
    columnOf.reserve(static_cast<size_t>(p));
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  for (int i = 0; i < p && status == VEK_SUCCESS; ++i) {
    rowOf.push_back(i / columns % rows);
    columnOf.push_back(i % columns);
    status = model->SetProjectorLayer(i, i / (rows * columns));
  }
  if (status == VEK_SUCCESS) status = model->ForceGlobalGrid(rows, columns, rowOf, columnOf);
  if (status == VEK_SUCCESS) status = result->DeepCopy(model.GetPointer());
  return status;
}

int ConnectivityUtility::GetNeighbors(const SpatialConnectivity& model, int projector, std::vector<int>& neighbors) {
  neighbors.clear();
  if (projector < 0 || projector >= model.GetNumberOfProjectors()) return VEK_INVALID_PARAMETERS;
  try {
    for (const auto& [a, b] : model.GetNeighborPairs()) {
      if (a == projector) neighbors.push_back(b);
      if (b == projector) neighbors.push_back(a);
    }
  } catch (const std::bad_alloc&) {
    neighbors.clear();
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  std::sort(neighbors.begin(), neighbors.end());
  return VEK_SUCCESS;
}

void ConnectivityUtility::WriteNeighborSummary(const SpatialConnectivity& model, std::ostream& os) {
  static const char* const sides[] = {"left", "right", "upper", "lower"};
  const Adjacency adjacency = MakeAdjacency(model);
  const bool withSides = model.GetType() != SpatialConnectivity::kGeneric;
  for (int p = 0; p < model.GetNumberOfProjectors(); ++p) {
    os << "Projector " << p << " (layer " << model.GetProjectorLayer(p);
    if (model.GetType() == SpatialConnectivity::kGlobalMxN)
      os << ", row " << model.GetGridRow(p) << ", column " << model.GetGridColumn(p);
    os << "):";
    if (withSides) {
      for (int side = SpatialConnectivity::kLeft; side <= SpatialConnectivity::kLower; ++side) {
        const int other = model.GetNeighbor(p, side);
        os << (side ? ", " : " ") << sides[side] << " ";
        if (other == SpatialConnectivity::kNone)
          os << "-";
        else
          os << other;
      }
    } else if (adjacency[static_cast<size_t>(p)].empty()) {
      os << " none";
    } else {
      for (int other : adjacency[static_cast<size_t>(p)]) os << " " << other;
    }
    os << "\n";
  }
}

int ConnectivityUtility::ComputeVisitingOrder(const SpatialConnectivity& model, int root, std::vector<int>& order,
                                              std::vector<int>& previous) {
  order.clear();
  previous.clear();
  const int p = model.GetNumberOfProjectors();
  if (p == 0) return NotSet();
  if (root < 0 || root >= p) return VEK_INVALID_PARAMETERS;
  try {
    const Adjacency adjacency = MakeAdjacency(model);
    std::vector<char> visited(static_cast<size_t>(p), 0);
    previous.assign(static_cast<size_t>(p), SpatialConnectivity::kNone);
    order.push_back(root);
    visited[static_cast<size_t>(root)] = 1;
    for (size_t next = 0; next < order.size(); ++next)
      for (int other : adjacency[static_cast<size_t>(order[next])])
        if (!visited[static_cast<size_t>(other)]) {
          visited[static_cast<size_t>(other)] = 1;
          previous[static_cast<size_t>(other)] = order[next];
          order.push_back(other);
        }
    std::vector<int> unreached;
    for (int i = 0; i < p; ++i)
      if (!visited[static_cast<size_t>(i)] && model.GetProjectorLayer(i) == model.GetProjectorLayer(root))
        unreached.push_back(i);
    if (!unreached.empty()) {
      order.clear();
      previous.clear();
      return Fail(VEK_UNABLE_TO_FORM_ADJACENCY_ARRAY,
                  "Projectors " + List(unreached) + " cannot be reached from projector " + std::to_string(root) +
                      " through neighbours.",
                  unreached);
    }
  } catch (const std::bad_alloc&) {
    order.clear();
    previous.clear();
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int ConnectivityUtility::CheckNeighborsSeenTogether(const SpatialConnectivity& model) {
  if (model.GetNumberOfProjectors() == 0) return NotSet();
  std::vector<int> unseen, apart;  // two projectors per pair
  for (const auto& [a, b] : model.GetNeighborPairs()) {
    bool together = false;
    for (int c = 0; c < model.GetNumberOfCameras() && !together; ++c)
      together = model.DoesCameraSeeProjector(c, a) && model.DoesCameraSeeProjector(c, b);
    if (together) continue;
    std::vector<int>& list = SeenByAnyCamera(model, a) && SeenByAnyCamera(model, b) ? apart : unseen;
    list.push_back(a);
    list.push_back(b);
  }
  auto pairs = [](const std::vector<int>& list) {
    std::string text;
    for (size_t k = 0; k < list.size(); k += 2)
      text += (k ? ", " : "") + std::to_string(list[k]) + " and " + std::to_string(list[k + 1]);
    return text;
  };
  if (!unseen.empty())
    return Fail(VEK_ADJACENT_PROJECTORS_NOT_SEEN_BY_ANY_CAMERA,
                "No camera sees one of the neighbouring projectors " + pairs(unseen) + ".", unseen);
  if (!apart.empty())
    return Fail(VEK_PROJECTORS_NOT_SEEN_BY_SINGLE_CAMERA,
                "No single camera sees both of the neighbouring projectors " + pairs(apart) + ".", apart);
  return VEK_SUCCESS;
}

int ConnectivityUtility::CheckCamerasLinked(const SpatialConnectivity& model) {
  const int p = model.GetNumberOfProjectors(), cameras = model.GetNumberOfCameras();
  if (p == 0 || cameras == 0) return NotSet();
  std::vector<char> linked(static_cast<size_t>(cameras), 0);
  std::vector<int> queue{0};
  linked[0] = 1;
  for (size_t next = 0; next < queue.size(); ++next)
    for (int i = 0; i < p; ++i) {
      if (!model.DoesCameraSeeProjector(queue[next], i)) continue;
      for (int c = 0; c < cameras; ++c)
        if (!linked[static_cast<size_t>(c)] && model.DoesCameraSeeProjector(c, i)) {
          linked[static_cast<size_t>(c)] = 1;
          queue.push_back(c);
        }
    }
  std::vector<int> apart;
  for (int c = 0; c < cameras; ++c)
    if (!linked[static_cast<size_t>(c)]) apart.push_back(c);
  if (apart.empty()) return VEK_SUCCESS;
  return Fail(VEK_NO_ABILITY_TO_TRANSFER_INFO_TO_CAMERA,
              "Cameras " + List(apart) + " share no projector with camera 0, directly or through other cameras.", {},
              apart);
}

int ConnectivityUtility::InferFromFootprints(const std::vector<const TriangleMesh*>& footprints,
                                             double minOverlapFraction, SpatialConnectivity* result) {
  const int n = static_cast<int>(footprints.size());
  if (!result || n == 0 || !(minOverlapFraction >= 0 && minOverlapFraction < kStackedOverlapFraction))
    return VEK_INVALID_PARAMETERS;
  for (int p = 0; p < n; ++p)
    if (!footprints[static_cast<size_t>(p)])
      return Fail(VEK_INVALID_PARAMETERS, "The footprint of projector " + std::to_string(p) + " is missing.", {p});
  try {
    std::vector<FootprintShape> shapes;
    for (int p = 0; p < n; ++p) {
      shapes.push_back(Measure(*footprints[static_cast<size_t>(p)]));
      if (!(shapes.back().Area > 0))
        return Fail(VEK_UNABLE_TO_CREATE_CONNECTIVITY,
                    "The footprint of projector " + std::to_string(p) + " covers no area.", {p});
    }

    // Overlap fractions of every pair whose boxes could overlap by more than the threshold.
    struct Overlap {
      int A, B;
      double Fraction;
    };
    std::vector<Overlap> overlaps;
    auto intersect = SmartPointer<TriangleMeshIntersectTriangleMesh>::New();
    if (!intersect) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    // A few hundred triangles a pair: a thread team would cost more than it saves, and a busy
    // machine makes it wait for its slowest thread on every pair.
    intersect->SetNumberOfThreads(1);
    for (int a = 0; a < n; ++a)
      for (int b = a + 1; b < n; ++b) {
        const FootprintShape &sa = shapes[static_cast<size_t>(a)], &sb = shapes[static_cast<size_t>(b)];
        const double w = std::min(sa.MaxX, sb.MaxX) - std::max(sa.MinX, sb.MinX);
        const double h = std::min(sa.MaxY, sb.MaxY) - std::max(sa.MinY, sb.MinY);
        const double smaller = std::min(sa.Area, sb.Area);
        if (!(w > 0 && h > 0) || w * h <= minOverlapFraction * smaller) continue;
        // Only the overlap of the two boxes can hold shared area.
        const double x0 = std::max(sa.MinX, sb.MinX), y0 = std::max(sa.MinY, sb.MinY);
        const double x1 = std::min(sa.MaxX, sb.MaxX), y1 = std::min(sa.MaxY, sb.MaxY);
        SmartPointer<TriangleMesh> first, second;
        int status = CutToBox(*footprints[static_cast<size_t>(a)], sa, x0, y0, x1, y1, first);
        if (status == VEK_SUCCESS) status = CutToBox(*footprints[static_cast<size_t>(b)], sb, x0, y0, x1, y1, second);
        if (status != VEK_SUCCESS) return status;
        intersect->SetFirstMesh(first.GetPointer());
        intersect->SetSecondMesh(second.GetPointer());
        status = intersect->Update();
        if (status != VEK_SUCCESS) return status;
        const double fraction = intersect->GetTotalOverlapArea() / smaller;
        if (fraction > minOverlapFraction) overlaps.push_back({a, b, fraction});
      }

    // Layers: rank within each group of projectors stacked over one another.
    std::vector<int> parent(static_cast<size_t>(n));
    std::iota(parent.begin(), parent.end(), 0);
    for (const Overlap& o : overlaps)
      if (o.Fraction > kStackedOverlapFraction) parent[static_cast<size_t>(Find(parent, o.B))] = Find(parent, o.A);
    std::vector<int> layerOf(static_cast<size_t>(n)), groupSize(static_cast<size_t>(n), 0);
    for (int p = 0; p < n; ++p) layerOf[static_cast<size_t>(p)] = groupSize[static_cast<size_t>(Find(parent, p))]++;
    int layers = 0;
    for (int layer : layerOf) layers = std::max(layers, layer + 1);

    std::vector<std::pair<int, int>> neighbors;
    for (const Overlap& o : overlaps)
      if (o.Fraction <= kStackedOverlapFraction &&
          layerOf[static_cast<size_t>(o.A)] == layerOf[static_cast<size_t>(o.B)])
        neighbors.emplace_back(o.A, o.B);

    // Grid positions, layer by layer.
    std::vector<double> widths, heights;
    for (const FootprintShape& s : shapes) {
      widths.push_back(s.MaxX - s.MinX);
      heights.push_back(s.MaxY - s.MinY);
    }
    const double toleranceX = kGridTolerance * Median(widths), toleranceY = kGridTolerance * Median(heights);
    std::vector<LayerGrid> grids(static_cast<size_t>(layers));
    for (int p = 0; p < n; ++p) grids[static_cast<size_t>(layerOf[static_cast<size_t>(p)])].Members.push_back(p);
    std::vector<int> rowOf(static_cast<size_t>(n), 0), columnOf(static_cast<size_t>(n), 0);
    bool gridLike = true;
    for (LayerGrid& grid : grids)
      gridLike = gridLike && PlaceOnGrid(shapes, toleranceX, toleranceY, grid, rowOf, columnOf);

    auto model = SmartPointer<SpatialConnectivity>::New();
    if (!model) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    int status =
        model->Initialize(n, 1, gridLike ? SpatialConnectivity::kLocalRectilinear : SpatialConnectivity::kGeneric);
    for (int p = 0; p < n && status == VEK_SUCCESS; ++p) {
      status = model->SetProjectorLayer(p, layerOf[static_cast<size_t>(p)]);
      if (status == VEK_SUCCESS) status = model->SetCameraSeesProjector(0, p, true);
    }
    if (status != VEK_SUCCESS) return status;

    if (!gridLike) {
      for (const auto& [a, b] : neighbors)
        if ((status = model->AddNeighbor(a, b)) != VEK_SUCCESS) return status;
      return result->DeepCopy(model.GetPointer());
    }

    int sidePairs = 0;
    for (const auto& [a, b] : neighbors) {
      const int dr = rowOf[static_cast<size_t>(b)] - rowOf[static_cast<size_t>(a)],
                dc = columnOf[static_cast<size_t>(b)] - columnOf[static_cast<size_t>(a)];
      if (std::abs(dr) == 1 && std::abs(dc) == 1) continue;
      int side = SpatialConnectivity::kNone;
      if (dr == 0 && std::abs(dc) == 1) side = dc > 0 ? SpatialConnectivity::kRight : SpatialConnectivity::kLeft;
      if (dc == 0 && std::abs(dr) == 1) side = dr > 0 ? SpatialConnectivity::kLower : SpatialConnectivity::kUpper;
      if (side == SpatialConnectivity::kNone)
        return Fail(VEK_INCONSISTENT_CONNECTIVITY_INFERRED,
                    "Projectors " + std::to_string(a) + " and " + std::to_string(b) +
                        " overlap, but their centroids place them at row " +
                        std::to_string(rowOf[static_cast<size_t>(a)]) + ", column " +
                        std::to_string(columnOf[static_cast<size_t>(a)]) + " and row " +
                        std::to_string(rowOf[static_cast<size_t>(b)]) + ", column " +
                        std::to_string(columnOf[static_cast<size_t>(b)]) + " of the wall, which are not adjacent.",
                    {a, b});
      if ((status = model->AddNeighbor(a, side, b)) != VEK_SUCCESS) return status;
      ++sidePairs;
    }

    // A full grid of one size in every layer, with all adjacent cells linked, is the M x N kind.
    bool full = true;
    long long adjacentCells = 0;
    for (const LayerGrid& grid : grids) {
      full = full && grid.Rows == grids[0].Rows && grid.Columns == grids[0].Columns &&
             static_cast<long long>(grid.Members.size()) == static_cast<long long>(grid.Rows) * grid.Columns;
      adjacentCells +=
          static_cast<long long>(grid.Rows) * (grid.Columns - 1) + static_cast<long long>(grid.Rows - 1) * grid.Columns;
    }
    if (full && adjacentCells == sidePairs) {
      status = model->ForceGlobalGrid(grids[0].Rows, grids[0].Columns, rowOf, columnOf);
      if (status != VEK_SUCCESS) return status;
    }
    return result->DeepCopy(model.GetPointer());
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

}  // namespace vek
