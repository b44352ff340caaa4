#pragma once
#include <ostream>
#include <vector>

#include "vekCommonExport.h"
#include "vekSpatialConnectivity.h"
#include "vekTriangleMesh.h"

namespace vek {

/// What the calibration path asks of a SpatialConnectivity: building the M x N kind, listing
/// neighbours, the order in which a calibration spreads from projector to projector, the checks
/// that the cameras can carry it, and inferring the model from where the projectors landed.
///
/// Failures that concern particular projectors or cameras attach them to the last-error record
/// (ErrorHelper::GetErrorMetadata), in ascending order, beside a custom message naming them.
/// Every operation on a model without projectors returns VEK_CONNECTIVITY_GRAPH_NOT_SET.
class VEK_EXPORT ConnectivityUtility {
 public:
  /// Overlap, as a fraction of the smaller footprint, above which two projectors are neighbours.
  /// Blend regions of adjacent projectors are rarely under 10% of a footprint, while diagonal
  /// projectors of a wall with 20% blends share only their corners, about 4%.
  static constexpr double kDefaultMinOverlapFraction = 0.05;
  /// Overlap above which two projectors are stacked (different layers) rather than neighbours:
  /// blends never cover most of a footprint, stacks nearly all of it.
  static constexpr double kStackedOverlapFraction = 0.6;
  /// Centroids fall into one row (column) when they lie within this fraction of the median
  /// footprint height (width) of each other.
  static constexpr double kGridTolerance = 0.25;

  /// A full rows x columns grid in each of `layers` layers; projector (layer * rows + row) *
  /// columns + column sits in row `row`, column `column` of layer `layer`. The cameras see
  /// nothing yet. VEK_INVALID_PARAMETERS for counts below 1 (cameras below 0) or a null result;
  /// the result changes only on success.
  static int BuildGlobalMxN(int rows, int columns, int layers, int cameras, SpatialConnectivity* result);

  /// The neighbours of `projector` in ascending order; VEK_INVALID_PARAMETERS out of range.
  static int GetNeighbors(const SpatialConnectivity& model, int projector, std::vector<int>& neighbors);
  /// One line per projector, for a summary:
  ///   "Projector 4 (layer 0, row 1, column 1): left 3, right 5, upper 1, lower -\n" (kinds with
  ///   sides; row and column with M x N only), "Projector 4 (layer 0): 1 3 5\n" (generic; "none"
  ///   for no neighbour).
  static void WriteNeighborSummary(const SpatialConnectivity& model, std::ostream& os);

  /// Breadth-first from `root` over the neighbours of its layer, each projector's neighbours in
  /// ascending order: `order` lists the projectors of the root's layer as visited, `previous`
  /// (one entry per projector) the neighbour each was reached from (kNone for the root and for
  /// projectors of other layers). A stacked layout is ordered one layer at a time. When the layer
  /// is not connected, VEK_UNABLE_TO_FORM_ADJACENCY_ARRAY with the unreached projectors
  /// attached; VEK_INVALID_PARAMETERS for a root out of range.
  static int ComputeVisitingOrder(const SpatialConnectivity& model, int root, std::vector<int>& order,
                                  std::vector<int>& previous);

  /// Every neighbour pair must be seen by a camera that sees both. When some pair has a
  /// projector no camera sees, VEK_ADJACENT_PROJECTORS_NOT_SEEN_BY_ANY_CAMERA with those pairs;
  /// otherwise, when the two of some pair are seen only by different cameras,
  /// VEK_PROJECTORS_NOT_SEEN_BY_SINGLE_CAMERA with those pairs (two projectors attached per pair).
  static int CheckNeighborsSeenTogether(const SpatialConnectivity& model);
  /// Two cameras are linked when both see one projector; all cameras must be linked, directly or
  /// through others. Else VEK_NO_ABILITY_TO_TRANSFER_INFO_TO_CAMERA with the cameras not linked
  /// to camera 0 attached. VEK_CONNECTIVITY_GRAPH_NOT_SET also when there is no camera.
  static int CheckCamerasLinked(const SpatialConnectivity& model);

  /// The model of a wall that one camera sees: footprints[p] is where projector p landed (its
  /// usable triangles; see TriangleMeshIntersectTriangleMesh::IsTriangleUsable). With a, b the
  /// two footprints' overlap as a fraction of the smaller one:
  /// - a > kStackedOverlapFraction: stacked. Projectors stacked over one another, directly or
  ///   through others, take layers 0, 1, ... in ascending projector order.
  /// - minOverlapFraction < a <= kStackedOverlapFraction, same layer: neighbours.
  /// When in every layer the area centroids fall into rows and columns (see kGridTolerance),
  /// each cell holding one projector and each row and column a run of cells without gaps, the
  /// kind has sides: kGlobalMxN when all layers are full grids of one size with every adjacent
  /// cell a neighbour pair, else kLocalRectilinear. Pairs in diagonal cells share only corners
  /// there and are not neighbours; any other neighbour pair in non-adjacent cells makes the
  /// result VEK_INCONSISTENT_CONNECTIVITY_INFERRED (the pair attached). Otherwise the kind is
  /// kGeneric with every neighbour pair.
  /// The result has one camera, which sees every projector.
  /// VEK_INVALID_PARAMETERS for no footprints, a null one, a null result or a fraction outside
  /// [0, kStackedOverlapFraction); VEK_UNABLE_TO_CREATE_CONNECTIVITY (projector attached) for
  /// a footprint without area. The result changes only on success.
  static int InferFromFootprints(const std::vector<const TriangleMesh*>& footprints, double minOverlapFraction,
                                 SpatialConnectivity* result);

 private:
  ConnectivityUtility() = delete;
};

}  // namespace vek
