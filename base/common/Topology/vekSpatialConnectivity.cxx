#include "vekSpatialConnectivity.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <new>

#include "vekDataArrayStream.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekObjectStream.h"
#include "vekSmartPointer.h"

namespace vek {

namespace {

std::string Projector(int p) { return "projector " + std::to_string(p); }

const char* SideName(int side) {
  static const char* const names[] = {"left", "right", "upper", "lower"};
  return side >= 0 && side < 4 ? names[side] : "unknown";
}

// Row and column steps of the four sides, in camera image order (rows grow downwards).
constexpr int kRowStep[4] = {0, 0, -1, 1};
constexpr int kColumnStep[4] = {-1, 1, 0, 0};

int Fail(int code, const std::string& what) { return ErrorHelper::ErrorWithCustomMessage(code, what); }

int ReadFailure(const std::string& what) {
  return Fail(VEK_UNABLE_TO_READ_CONNECTIVITY, "Failed to read SpatialConnectivity, " + what);
}

/// The custom message of a failed inner step, for passing on under another code.
std::string MessageOf(int status) { return ErrorHelper::GetErrorMessageWithNoExtras(status); }

SmartPointer<DataArray<int>> MakeArray(const std::vector<int>& values) {
  auto array = SmartPointer<DataArray<int>>::New();
  if (!array) throw std::bad_alloc();
  for (int v : values)
    if (array->InsertNextValue(v) < 0) throw std::bad_alloc();
  return array;
}

}  // namespace

SpatialConnectivity* SpatialConnectivity::New() { return new (std::nothrow) SpatialConnectivity; }

const char* SpatialConnectivity::GetTypeName(int type) {
  switch (type) {
    case kGeneric:
      return "Generic";
    case kLocalRectilinear:
      return "LocalRectilinear";
    case kGlobalMxN:
      return "GlobalMxN";
    default:
      return "Unknown";
  }
}

void SpatialConnectivity::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Type: " << GetTypeName(Data.Type) << "\n";
  os << indent << "NumberOfProjectors: " << GetNumberOfProjectors() << "\n";
  os << indent << "NumberOfCameras: " << Data.NumberOfCameras << "\n";
  os << indent << "NumberOfLayers: " << GetNumberOfLayers() << "\n";
  if (Data.Type == kGlobalMxN) {
    os << indent << "Rows: " << Data.Rows << "\n";
    os << indent << "Columns: " << Data.Columns << "\n";
  }
  os << indent << "NumberOfNeighborPairs: " << Data.Pairs.size() << "\n";
}

int SpatialConnectivity::Initialize(int numberOfProjectors, int numberOfCameras, int type) {
  if (numberOfProjectors < 0 || numberOfCameras < 0 || type < kGeneric || type > kGlobalMxN ||
      (type == kGlobalMxN && numberOfProjectors > 1))
    return VEK_INVALID_PARAMETERS;
  try {
    Contents fresh;
    fresh.Type = type;
    fresh.NumberOfCameras = numberOfCameras;
    fresh.Layers.assign(static_cast<size_t>(numberOfProjectors), 0);
    fresh.Seen.assign(static_cast<size_t>(numberOfProjectors) * static_cast<size_t>(numberOfCameras), 0);
    if (type != kGeneric) fresh.Sides.assign(fresh.Layers.size(), {kNone, kNone, kNone, kNone});
    if (type == kGlobalMxN) {
      fresh.Rows = fresh.Columns = numberOfProjectors;
      fresh.GridRows.assign(fresh.Layers.size(), 0);
      fresh.GridColumns.assign(fresh.Layers.size(), 0);
    }
    std::swap(Data, fresh);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int SpatialConnectivity::DeepCopy(const SpatialConnectivity* other) {
  if (!other) return VEK_INVALID_PARAMETERS;
  if (other == this) return VEK_SUCCESS;
  try {
    Contents copy = other->Data;
    std::swap(Data, copy);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int SpatialConnectivity::GetNumberOfLayers() const {
  int highest = -1;
  for (int layer : Data.Layers) highest = std::max(highest, layer);
  return highest + 1;
}

int SpatialConnectivity::SetProjectorLayer(int projector, int layer) {
  // The number of layers, the highest + 1, must be an int as well.
  if (projector < 0 || projector >= GetNumberOfProjectors() || layer < 0 || layer == INT_MAX)
    return Fail(VEK_INVALID_PARAMETERS, "Cannot set the layer of " + Projector(projector) + " to " +
                                            std::to_string(layer) + ": index out of range.");
  if (Data.Type == kGlobalMxN)
    return Fail(VEK_INVALID_PARAMETERS, "Cannot set the layer of " + Projector(projector) +
                                            ": an M x N grid takes its layers with its positions.");
  for (const auto& pair : Data.Pairs)
    if (pair.first == projector || pair.second == projector)
      return Fail(VEK_INVALID_PARAMETERS,
                  "Cannot set the layer of " + Projector(projector) + ": it has neighbours in its present layer.");
  Data.Layers[static_cast<size_t>(projector)] = layer;
  return VEK_SUCCESS;
}

int SpatialConnectivity::GetProjectorLayer(int projector) const {
  if (projector < 0 || projector >= GetNumberOfProjectors()) return kNone;
  return Data.Layers[static_cast<size_t>(projector)];
}

int SpatialConnectivity::SetNumberOfCameras(int numberOfCameras) {
  if (numberOfCameras < 0) return VEK_INVALID_PARAMETERS;
  try {
    const size_t p = Data.Layers.size();
    std::vector<unsigned char> seen(p * static_cast<size_t>(numberOfCameras), 0);
    const size_t kept = p * static_cast<size_t>(std::min(numberOfCameras, Data.NumberOfCameras));
    std::copy(Data.Seen.begin(), Data.Seen.begin() + static_cast<std::ptrdiff_t>(kept), seen.begin());
    Data.Seen.swap(seen);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  Data.NumberOfCameras = numberOfCameras;
  return VEK_SUCCESS;
}

int SpatialConnectivity::SetCameraSeesProjector(int camera, int projector, bool sees) {
  if (camera < 0 || camera >= Data.NumberOfCameras || projector < 0 || projector >= GetNumberOfProjectors())
    return Fail(VEK_INVALID_PARAMETERS,
                "Camera " + std::to_string(camera) + " or " + Projector(projector) + " out of range.");
  Data.Seen[static_cast<size_t>(camera) * Data.Layers.size() + static_cast<size_t>(projector)] = sees ? 1 : 0;
  return VEK_SUCCESS;
}

bool SpatialConnectivity::DoesCameraSeeProjector(int camera, int projector) const {
  if (camera < 0 || camera >= Data.NumberOfCameras || projector < 0 || projector >= GetNumberOfProjectors())
    return false;
  return Data.Seen[static_cast<size_t>(camera) * Data.Layers.size() + static_cast<size_t>(projector)] != 0;
}

std::string SpatialConnectivity::CheckPair(int a, int b) const {
  const int p = GetNumberOfProjectors();
  if (a < 0 || a >= p || b < 0 || b >= p)
    return "projector index out of range (" + std::to_string(a) + ", " + std::to_string(b) + " of " +
           std::to_string(p) + " projectors).";
  if (a == b) return Projector(a) + " cannot be its own neighbour.";
  if (Data.Layers[static_cast<size_t>(a)] != Data.Layers[static_cast<size_t>(b)])
    return Projector(a) + " and " + Projector(b) + " are in different layers (" +
           std::to_string(Data.Layers[static_cast<size_t>(a)]) + " and " +
           std::to_string(Data.Layers[static_cast<size_t>(b)]) + ").";
  return "";
}

void SpatialConnectivity::InsertPair(Contents& contents, int a, int b) {
  const std::pair<int, int> pair(std::min(a, b), std::max(a, b));
  auto at = std::lower_bound(contents.Pairs.begin(), contents.Pairs.end(), pair);
  if (at == contents.Pairs.end() || *at != pair) contents.Pairs.insert(at, pair);
}

int SpatialConnectivity::AddNeighbor(int a, int b) {
  const std::string prefix = "Cannot add neighbours " + std::to_string(a) + " and " + std::to_string(b) + ": ";
  if (Data.Type != kGeneric)
    return Fail(VEK_UNABLE_TO_ADD_NEIGHBOR, prefix + "the " + GetTypeName(Data.Type) + " kind needs a side.");
  const std::string wrong = CheckPair(a, b);
  if (!wrong.empty()) return Fail(VEK_UNABLE_TO_ADD_NEIGHBOR, prefix + wrong);
  try {
    InsertPair(Data, a, b);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int SpatialConnectivity::AddNeighbor(int projector, int side, int neighbor) {
  const std::string prefix =
      "Cannot add " + Projector(neighbor) + " as " + SideName(side) + " neighbour of " + Projector(projector) + ": ";
  if (Data.Type != kLocalRectilinear)
    return Fail(VEK_UNABLE_TO_ADD_NEIGHBOR,
                prefix + (Data.Type == kGlobalMxN ? "the GlobalMxN kind takes its neighbours from its grid."
                                                  : "the Generic kind has no sides."));
  if (side < kLeft || side > kLower) return Fail(VEK_UNABLE_TO_ADD_NEIGHBOR, prefix + "no such side.");
  const std::string wrong = CheckPair(projector, neighbor);
  if (!wrong.empty()) return Fail(VEK_UNABLE_TO_ADD_NEIGHBOR, prefix + wrong);

  int& forward = Data.Sides[static_cast<size_t>(projector)][static_cast<size_t>(side)];
  int& backward = Data.Sides[static_cast<size_t>(neighbor)][static_cast<size_t>(GetOppositeSide(side))];
  if (forward == neighbor && backward == projector) return VEK_SUCCESS;
  if (forward != kNone)
    return Fail(VEK_UNABLE_TO_RE_ADD_NEIGHBOR, prefix + "that side already holds " + Projector(forward) + ".");
  if (backward != kNone)
    return Fail(VEK_UNABLE_TO_RE_ADD_NEIGHBOR,
                prefix + "its " + SideName(GetOppositeSide(side)) + " side already holds " + Projector(backward) + ".");
  if (AreNeighbors(projector, neighbor))
    return Fail(VEK_UNABLE_TO_RE_ADD_NEIGHBOR, prefix + "they are already neighbours on another side.");
  try {
    InsertPair(Data, projector, neighbor);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  forward = neighbor;
  backward = projector;
  return VEK_SUCCESS;
}

std::string SpatialConnectivity::LinkGrid(Contents& c, int rows, int columns, const std::vector<int>& gridRows,
                                          const std::vector<int>& gridColumns) {
  c.Rows = rows;
  c.Columns = columns;
  c.GridRows = gridRows;
  c.GridColumns = gridColumns;
  const size_t p = c.Layers.size();
  int layers = 0;
  for (int layer : c.Layers) layers = std::max(layers, layer + 1);
  if (c.Rows < 1 || c.Columns < 1 || c.GridRows.size() != p || c.GridColumns.size() != p)
    return "the grid needs at least one row and one column, and a position for each projector.";
  const long long cellsPerLayer = static_cast<long long>(c.Rows) * c.Columns;
  if (cellsPerLayer > static_cast<long long>(p) || cellsPerLayer * layers != static_cast<long long>(p))
    return std::to_string(p) + " projectors in " + std::to_string(layers) + " layers cannot fill " +
           std::to_string(c.Rows) + " x " + std::to_string(c.Columns) + " cells per layer.";
  std::vector<int> cells(p, kNone);
  for (size_t i = 0; i < p; ++i) {
    const int row = c.GridRows[i], column = c.GridColumns[i];
    if (row < 0 || row >= c.Rows || column < 0 || column >= c.Columns)
      return Projector(static_cast<int>(i)) + " lies outside the grid.";
    int& cell =
        cells[static_cast<size_t>(c.Layers[i] * cellsPerLayer + static_cast<long long>(row) * c.Columns + column)];
    if (cell != kNone)
      return Projector(static_cast<int>(i)) + " and " + Projector(cell) + " share row " + std::to_string(row) +
             ", column " + std::to_string(column) + " of layer " + std::to_string(c.Layers[i]) + ".";
    cell = static_cast<int>(i);
  }
  c.Sides.assign(p, {kNone, kNone, kNone, kNone});
  c.Pairs.clear();
  for (size_t i = 0; i < p; ++i)
    for (int side = kLeft; side <= kLower; ++side) {
      const int row = c.GridRows[i] + kRowStep[side], column = c.GridColumns[i] + kColumnStep[side];
      if (row < 0 || row >= c.Rows || column < 0 || column >= c.Columns) continue;
      const int other =
          cells[static_cast<size_t>(c.Layers[i] * cellsPerLayer + static_cast<long long>(row) * c.Columns + column)];
      c.Sides[i][static_cast<size_t>(side)] = other;
      if (static_cast<int>(i) < other) c.Pairs.emplace_back(static_cast<int>(i), other);
    }
  std::sort(c.Pairs.begin(), c.Pairs.end());
  c.Type = kGlobalMxN;
  return "";
}

std::string SpatialConnectivity::DeriveGrid(Contents& c) {
  const int p = static_cast<int>(c.Layers.size());
  if (p == 0) {
    c.Type = kGlobalMxN;
    c.Rows = c.Columns = 0;
    return "";
  }
  int layers = 0;
  for (int layer : c.Layers) layers = std::max(layers, layer + 1);
  std::vector<int> row(static_cast<size_t>(p), 0), column(static_cast<size_t>(p), 0);
  std::vector<char> placed(static_cast<size_t>(p), 0);
  int rows = -1, columns = -1;
  for (int layer = 0; layer < layers; ++layer) {
    std::vector<int> queue;
    for (int i = 0; i < p && queue.empty(); ++i)
      if (c.Layers[static_cast<size_t>(i)] == layer) queue.push_back(i);
    if (queue.empty()) return "layer " + std::to_string(layer) + " holds no projector.";
    placed[static_cast<size_t>(queue[0])] = 1;
    for (size_t next = 0; next < queue.size(); ++next) {
      const int at = queue[next];
      for (int side = kLeft; side <= kLower; ++side) {
        const int other = c.Sides[static_cast<size_t>(at)][static_cast<size_t>(side)];
        if (other == kNone) continue;
        const int r = row[static_cast<size_t>(at)] + kRowStep[side];
        const int k = column[static_cast<size_t>(at)] + kColumnStep[side];
        if (placed[static_cast<size_t>(other)]) {
          if (row[static_cast<size_t>(other)] != r || column[static_cast<size_t>(other)] != k)
            return "the sides around " + Projector(other) + " do not form a grid.";
          continue;
        }
        placed[static_cast<size_t>(other)] = 1;
        row[static_cast<size_t>(other)] = r;
        column[static_cast<size_t>(other)] = k;
        queue.push_back(other);
      }
    }
    int minRow = row[static_cast<size_t>(queue[0])], maxRow = minRow;
    int minColumn = column[static_cast<size_t>(queue[0])], maxColumn = minColumn;
    for (int i : queue) {
      minRow = std::min(minRow, row[static_cast<size_t>(i)]);
      maxRow = std::max(maxRow, row[static_cast<size_t>(i)]);
      minColumn = std::min(minColumn, column[static_cast<size_t>(i)]);
      maxColumn = std::max(maxColumn, column[static_cast<size_t>(i)]);
    }
    for (int i : queue) {
      row[static_cast<size_t>(i)] -= minRow;
      column[static_cast<size_t>(i)] -= minColumn;
    }
    for (int i = 0; i < p; ++i)
      if (c.Layers[static_cast<size_t>(i)] == layer && !placed[static_cast<size_t>(i)])
        return "the sides do not link " + Projector(i) + " with the rest of layer " + std::to_string(layer) + ".";
    const int layerRows = maxRow - minRow + 1, layerColumns = maxColumn - minColumn + 1;
    if (rows >= 0 && (layerRows != rows || layerColumns != columns))
      return "layer " + std::to_string(layer) + " spans " + std::to_string(layerRows) + " x " +
             std::to_string(layerColumns) + " cells, another layer " + std::to_string(rows) + " x " +
             std::to_string(columns) + ".";
    rows = layerRows;
    columns = layerColumns;
  }
  Contents grid = c;
  const std::string wrong = LinkGrid(grid, rows, columns, row, column);
  if (!wrong.empty()) return wrong;
  // Every side the grid implies must have been there: M x N neighbours are never implicit.
  if (grid.Pairs != c.Pairs) return "the sides leave adjacent cells of the grid unlinked.";
  std::swap(c, grid);
  return "";
}

int SpatialConnectivity::ForceConnectivityType(int type) {
  const std::string prefix = std::string("Cannot force the ") + GetTypeName(type) + " kind: ";
  if (type < kGeneric || type > kGlobalMxN) return Fail(VEK_UNABLE_TO_FORCE_CONNECTIVITY, prefix + "no such kind.");
  if (type == Data.Type) return VEK_SUCCESS;
  try {
    Contents c = Data;
    c.GridRows.clear();
    c.GridColumns.clear();
    c.Rows = c.Columns = 0;
    if (type == kGeneric) {
      c.Sides.clear();
    } else if (c.Type == kGeneric) {
      if (!c.Pairs.empty())
        return Fail(VEK_UNABLE_TO_FORCE_CONNECTIVITY, prefix + "generic neighbour pairs have no sides.");
      c.Sides.assign(c.Layers.size(), {kNone, kNone, kNone, kNone});
    }
    c.Type = kLocalRectilinear;
    if (type == kGlobalMxN) {
      const std::string wrong = DeriveGrid(c);
      if (!wrong.empty()) return Fail(VEK_UNABLE_TO_FORCE_CONNECTIVITY, prefix + wrong);
    }
    c.Type = type;
    std::swap(Data, c);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int SpatialConnectivity::ForceGlobalGrid(int rows, int columns, const std::vector<int>& projectorRows,
                                         const std::vector<int>& projectorColumns) {
  try {
    Contents c = Data;
    const std::string wrong = LinkGrid(c, rows, columns, projectorRows, projectorColumns);
    if (!wrong.empty())
      return Fail(VEK_UNABLE_TO_FORCE_CONNECTIVITY,
                  "Cannot force a " + std::to_string(rows) + " x " + std::to_string(columns) + " grid: " + wrong);
    std::swap(Data, c);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int SpatialConnectivity::GetNeighbor(int projector, int side) const {
  if (Data.Sides.empty() || projector < 0 || projector >= GetNumberOfProjectors() || side < kLeft || side > kLower)
    return kNone;
  return Data.Sides[static_cast<size_t>(projector)][static_cast<size_t>(side)];
}

int SpatialConnectivity::GetGridRow(int projector) const {
  if (Data.Type != kGlobalMxN || projector < 0 || projector >= GetNumberOfProjectors()) return kNone;
  return Data.GridRows[static_cast<size_t>(projector)];
}

int SpatialConnectivity::GetGridColumn(int projector) const {
  if (Data.Type != kGlobalMxN || projector < 0 || projector >= GetNumberOfProjectors()) return kNone;
  return Data.GridColumns[static_cast<size_t>(projector)];
}

bool SpatialConnectivity::AreNeighbors(int a, int b) const {
  return std::binary_search(Data.Pairs.begin(), Data.Pairs.end(), std::make_pair(std::min(a, b), std::max(a, b)));
}

int SpatialConnectivity::Write(std::ostream& os, const std::string& indent) const {
  try {
    std::vector<int> neighbors;
    if (Data.Type == kGeneric) {
      for (const auto& pair : Data.Pairs) {
        neighbors.push_back(pair.first);
        neighbors.push_back(pair.second);
      }
    } else if (Data.Type == kLocalRectilinear) {
      for (const auto& sides : Data.Sides) neighbors.insert(neighbors.end(), sides.begin(), sides.end());
    } else {
      for (size_t i = 0; i < Data.Layers.size(); ++i) {
        neighbors.push_back(Data.GridRows[i]);
        neighbors.push_back(Data.GridColumns[i]);
      }
    }
    const std::vector<int> seen(Data.Seen.begin(), Data.Seen.end());
    const SmartPointer<DataArray<int>> arrays[] = {
        MakeArray({Data.Type, GetNumberOfProjectors(), Data.NumberOfCameras, Data.Rows, Data.Columns}),
        MakeArray(Data.Layers), MakeArray(neighbors), MakeArray(seen)};
    ObjectStream::WriteObjectHeader(os, indent, kStreamType, kStreamVersion);
    for (const auto& array : arrays) {
      const int status = DataArrayStream::Write(os, array.GetPointer(), indent + "  ");
      if (status != VEK_SUCCESS) return status;
    }
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  ObjectStream::WriteObjectFooter(os, indent);
  os.flush();
  if (os.fail())
    return Fail(VEK_UNABLE_TO_WRITE_CONNECTIVITY, "Failed to write SpatialConnectivity, stream has failed.");
  return VEK_SUCCESS;
}

int SpatialConnectivity::Read(std::istream& in) {
  bool empty = false;
  int status = ObjectStream::ReadObjectHeader(
      in, "Failed to read SpatialConnectivity from stream, found incorrect object header.", empty);
  if (status != VEK_SUCCESS) return ReadFailure("object header: " + MessageOf(status));
  if (empty) return ReadFailure("the object is empty.");
  status = ObjectStream::ReadObjectTypeAndVersion(in, kStreamType, kStreamVersion);
  if (status != VEK_SUCCESS) return ReadFailure("object header: " + MessageOf(status));

  try {
    // Any failure from here on skips the rest of the object, so the caller's stream stays in step.
    auto damaged = [&in](const std::string& what) {
      const int code = ReadFailure(what);
      if (in.good()) ObjectStream::ReadToEndOfObject(in);
      return code;
    };
    static const char* const names[] = {"sizes", "layers", "neighbours", "camera visibility"};
    SmartPointer<DataArray<int>> arrays[4];
    for (int k = 0; k < 4; ++k) {
      arrays[k] = SmartPointer<DataArray<int>>::New();
      if (!arrays[k]) return VEK_FAILED_TO_ALLOCATE_MEMORY;
      status = DataArrayStream::Read(in, *arrays[k]);
      if (status == VEK_FAILED_TO_ALLOCATE_MEMORY) return status;
      if (status != VEK_SUCCESS) return damaged(std::string(names[k]) + " array: " + MessageOf(status));
    }
    const DataArray<int>& sizes = *arrays[0];
    const DataArray<int>& layers = *arrays[1];
    const DataArray<int>& neighbors = *arrays[2];
    const DataArray<int>& seen = *arrays[3];
    if (sizes.GetNumberOfValues() != 5)
      return damaged("sizes array holds " + std::to_string(sizes.GetNumberOfValues()) + " values, not 5.");
    const int type = sizes[0], p = sizes[1], cameras = sizes[2], rows = sizes[3], columns = sizes[4];
    if (type < kGeneric || type > kGlobalMxN) return damaged("unknown kind " + std::to_string(type) + ".");
    if (p < 0 || cameras < 0) return damaged("negative number of projectors or cameras.");
    if (layers.GetNumberOfValues() != p)
      return damaged("layers array holds " + std::to_string(layers.GetNumberOfValues()) + " values for " +
                     std::to_string(p) + " projectors.");
    const long long expectedNeighbors = type == kLocalRectilinear ? 4LL * p
                                        : type == kGlobalMxN      ? 2LL * p
                                                                  : neighbors.GetNumberOfValues();
    if (neighbors.GetNumberOfValues() != expectedNeighbors || neighbors.GetNumberOfValues() % 2 != 0)
      return damaged("neighbours array holds " + std::to_string(neighbors.GetNumberOfValues()) +
                     " values, which does not suit " + std::to_string(p) + " projectors of the " + GetTypeName(type) +
                     " kind.");
    if (seen.GetNumberOfValues() != static_cast<long long>(cameras) * p)
      return damaged("camera visibility array holds " + std::to_string(seen.GetNumberOfValues()) + " values for " +
                     std::to_string(cameras) + " cameras and " + std::to_string(p) + " projectors.");
    if (type != kGlobalMxN && (rows != 0 || columns != 0))
      return damaged("rows and columns are given for the " + std::string(GetTypeName(type)) + " kind.");

    auto read = SmartPointer<SpatialConnectivity>::New();
    if (!read) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    status = read->Initialize(p, cameras, type == kLocalRectilinear ? kLocalRectilinear : kGeneric);
    if (status != VEK_SUCCESS) return status == VEK_FAILED_TO_ALLOCATE_MEMORY ? status : damaged("bad sizes.");
    for (int i = 0; i < p; ++i)
      if (read->SetProjectorLayer(i, layers[i]) != VEK_SUCCESS)
        return damaged("layer " + std::to_string(layers[i]) + " of " + Projector(i) + " out of range.");
    if (type == kGeneric) {
      for (int k = 0; k + 1 < neighbors.GetNumberOfValues(); k += 2) {
        status = read->AddNeighbor(neighbors[k], neighbors[k + 1]);
        if (status != VEK_SUCCESS) return damaged(MessageOf(status));
      }
    } else if (type == kLocalRectilinear) {
      for (int i = 0; i < p; ++i)
        for (int side = kLeft; side <= kLower; ++side) {
          const int other = neighbors[4 * i + side];
          if (other == kNone) continue;
          status = read->AddNeighbor(i, side, other);
          if (status != VEK_SUCCESS) return damaged(MessageOf(status));
        }
      for (int i = 0; i < p; ++i)
        for (int side = kLeft; side <= kLower; ++side)
          if (read->GetNeighbor(i, side) != neighbors[4 * i + side])
            return damaged("the " + std::string(SideName(side)) + " side of " + Projector(i) +
                           " does not match its neighbour's opposite side.");
    } else {
      std::vector<int> gridRows, gridColumns;
      for (int i = 0; i < p; ++i) {
        gridRows.push_back(neighbors[2 * i]);
        gridColumns.push_back(neighbors[2 * i + 1]);
      }
      status = p == 0 ? read->Initialize(0, cameras, kGlobalMxN)
                      : read->ForceGlobalGrid(rows, columns, gridRows, gridColumns);
      if (status != VEK_SUCCESS) return damaged(MessageOf(status));
      if (read->GetRows() != rows || read->GetColumns() != columns)
        return damaged("an empty grid must have 0 rows and 0 columns.");
    }
    for (int c = 0; c < cameras; ++c)
      for (int i = 0; i < p; ++i) {
        const int value = seen[c * p + i];
        if (value != 0 && value != 1)
          return damaged("camera visibility values must be 0 or 1, found " + std::to_string(value) + ".");
        read->SetCameraSeesProjector(c, i, value == 1);
      }
    if (!ObjectStream::IsAtEndOfObject(in)) return damaged("unexpected text before the closing brace.");
    status = ObjectStream::ReadToEndOfObject(in);
    if (status != VEK_SUCCESS) return ReadFailure("closing brace: " + MessageOf(status));
    std::swap(Data, read->Data);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

}  // namespace vek
