#pragma once
#include <array>
#include <istream>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

/// Which projectors of a display are neighbours, in which layer each sits, and which camera sees
/// which projector. Projectors are numbered 0 .. P - 1, cameras 0 .. C - 1.
///
/// Three kinds of neighbourhood:
/// - kGeneric: any undirected pairs of projectors.
/// - kLocalRectilinear: each projector has its own left, right, upper and lower neighbour, or
///   none (kNone). Sides pair up: q is p's right neighbour exactly when p is q's left one.
/// - kGlobalMxN: every layer is a full grid of GetRows() x GetColumns() projectors; each
///   projector has a grid row and column, and its neighbours are the projectors of its layer in
///   the four adjacent cells. The sides are derived from the grid and cannot be edited.
/// "Left" is the smaller column or x, "upper" the smaller row or y: camera images count rows
/// downwards, so the upper projector has the smaller y.
///
/// Layers: projectors stacked over the same area sit in different layers (0, 1, ...); neighbour
/// relations hold within a layer only.
///
/// Failures of the editing operations, each with a custom message that says what was wrong:
/// - AddNeighbor: VEK_UNABLE_TO_ADD_NEIGHBOR for an index or side out of range, a projector
///   named as its own neighbour, a pair in different layers, or an operation that does not suit
///   the kind (a pair without a side outside kGeneric, a side outside kLocalRectilinear, any
///   edit of kGlobalMxN); VEK_UNABLE_TO_RE_ADD_NEIGHBOR when a side of either projector is
///   already taken by another projector. Adding a relation that already holds changes nothing
///   and succeeds.
/// - ForceConnectivityType and ForceGlobalGrid: VEK_UNABLE_TO_FORCE_CONNECTIVITY when the
///   present neighbours do not fit the kind, or the grid given is not a full grid per layer.
/// - SetProjectorLayer, SetCameraSeesProjector, Initialize: VEK_INVALID_PARAMETERS.
/// A failed operation leaves the object as it was.
///
/// Stream form (every line begins with the caller's indent; the arrays are indented two more):
///
///   { SpatialConnectivity 1.0 \n
///   sizes: DataArray of 5 ints: type, P, C, rows, columns (rows and columns 0 unless M x N)
///   layers: DataArray of P ints
///   neighbours: DataArray; kGeneric: the pairs a < b in ascending order, flattened (2 per pair);
///     kLocalRectilinear: left, right, upper, lower of each projector (-1 for none);
///     kGlobalMxN: grid row and column of each projector
///   visibility: DataArray of C x P values 0 or 1, camera by camera
///   } \n
///
/// Write fails with VEK_UNABLE_TO_WRITE_CONNECTIVITY when the stream fails. Read fails with
/// VEK_UNABLE_TO_READ_CONNECTIVITY on any damage (the message names the part); it reads into a
/// temporary, so this object changes only on success. Read consumes the inner arrays completely
/// before looking for the closing brace, because reading to the end of an object stops at the
/// first "}" it meets.
class VEK_EXPORT SpatialConnectivity : public Object {
 public:
  // Enumerators rather than static data, so that callers across the DLL boundary may bind them
  // to references (as test macros do) without importing a symbol.
  enum ConnectivityType : int { kGeneric = 0, kLocalRectilinear = 1, kGlobalMxN = 2 };
  enum NeighborSide : int { kLeft = 0, kRight = 1, kUpper = 2, kLower = 3 };
  enum : int { kNone = -1 };

  static constexpr const char* kStreamType = "SpatialConnectivity";
  static constexpr const char* kStreamVersion = "1.0";

  static SpatialConnectivity* New();
  const char* GetClassName() const override { return "SpatialConnectivity"; }
  /// Object's lines, then "Type: ", "NumberOfProjectors: ", "NumberOfCameras: ",
  /// "NumberOfLayers: ", "Rows: " and "Columns: " (M x N only) and "NumberOfNeighborPairs: ".
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// "Generic", "LocalRectilinear", "GlobalMxN", or "Unknown".
  static const char* GetTypeName(int type);
  /// kLeft <-> kRight, kUpper <-> kLower.
  static int GetOppositeSide(int side) { return side ^ 1; }

  /// Starts over: P projectors all in layer 0, C cameras that see nothing, no neighbours, the
  /// kind given (kGlobalMxN only for at most one projector: a 1 x 1 grid, or 0 x 0 with none).
  int Initialize(int numberOfProjectors, int numberOfCameras, int type = kGeneric);
  /// Copies another model in one step: on failure this object is unchanged.
  int DeepCopy(const SpatialConnectivity* other);

  int GetType() const { return Data.Type; }
  int GetNumberOfProjectors() const { return static_cast<int>(Data.Layers.size()); }
  int GetNumberOfCameras() const { return Data.NumberOfCameras; }
  /// The highest layer + 1 (0 with no projectors).
  int GetNumberOfLayers() const;
  int GetRows() const { return Data.Rows; }
  int GetColumns() const { return Data.Columns; }

  /// Layers run from 0 to INT_MAX - 1, so that their number is an int. Fails when the projector
  /// has neighbours: they would end up in another layer.
  int SetProjectorLayer(int projector, int layer);
  /// kNone for an index out of range.
  int GetProjectorLayer(int projector) const;

  /// Keeps what the remaining cameras see; new cameras see nothing.
  int SetNumberOfCameras(int numberOfCameras);
  int SetCameraSeesProjector(int camera, int projector, bool sees);
  /// False for indices out of range.
  bool DoesCameraSeeProjector(int camera, int projector) const;

  /// kGeneric: a and b become neighbours.
  int AddNeighbor(int a, int b);
  /// kLocalRectilinear: `neighbor` becomes the neighbour of `projector` on `side`, and
  /// `projector` that of `neighbor` on the opposite side.
  int AddNeighbor(int projector, int side, int neighbor);

  /// Changes the kind, keeping the neighbours: to kGeneric always; to kLocalRectilinear from
  /// kGlobalMxN, or from kGeneric when there are no pairs; to kGlobalMxN when the sides chain
  /// every layer into a full grid, all layers of one size, with every adjacent cell linked.
  int ForceConnectivityType(int type);
  /// kGlobalMxN from grid positions (one row and column per projector, taken with the present
  /// layers): every layer must fill the rows x columns cells once each. Replaces all neighbours.
  int ForceGlobalGrid(int rows, int columns, const std::vector<int>& projectorRows,
                      const std::vector<int>& projectorColumns);

  /// kNone unless the kind has sides, the indices are in range and the side is taken.
  int GetNeighbor(int projector, int side) const;
  /// kNone for an index out of range or kinds other than kGlobalMxN.
  int GetGridRow(int projector) const;
  int GetGridColumn(int projector) const;
  bool AreNeighbors(int a, int b) const;
  /// Every neighbour pair once, as (a, b) with a < b, in ascending order.
  const std::vector<std::pair<int, int>>& GetNeighborPairs() const { return Data.Pairs; }

  int Write(std::ostream& os, const std::string& indent) const;
  int Read(std::istream& in);

 protected:
  SpatialConnectivity() = default;
  ~SpatialConnectivity() override = default;

 private:
  SpatialConnectivity(const SpatialConnectivity&) = delete;
  SpatialConnectivity& operator=(const SpatialConnectivity&) = delete;

  struct Contents {
    int Type = kGeneric;
    int NumberOfCameras = 0;
    int Rows = 0;
    int Columns = 0;
    std::vector<int> Layers;                 // per projector
    std::vector<std::array<int, 4>> Sides;   // per projector, kinds with sides only
    std::vector<int> GridRows, GridColumns;  // per projector, kGlobalMxN only
    std::vector<std::pair<int, int>> Pairs;  // every kind, a < b, ascending
    std::vector<unsigned char> Seen;         // camera-major, C x P
  };

  /// Makes `contents` the kGlobalMxN model of the grid given, with its present layers: sides and
  /// pairs follow from the positions. Returns what is wrong, or "" when every layer is full.
  static std::string LinkGrid(Contents& contents, int rows, int columns, const std::vector<int>& gridRows,
                              const std::vector<int>& gridColumns);
  /// Grid positions of a model with sides, found by walking the sides; "" or what is wrong.
  static std::string DeriveGrid(Contents& contents);
  static void InsertPair(Contents& contents, int a, int b);
  /// Checks an edit against indices, self-neighbours and layers; "" or what is wrong.
  std::string CheckPair(int a, int b) const;

  Contents Data;
};

}  // namespace vek
