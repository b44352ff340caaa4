#pragma once
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekProjectorFootprint.h"
#include "vekScreenModel.h"
#include "vekSmartPointer.h"
#include "vekTextureMesh.h"

namespace vek {

/// Builds one projector's warp: a TextureMesh whose vertices carry a projector pixel (XY), the
/// content point shown there (UV, 0..1 over the fill region) and the blend alpha.
///
/// - The warp grid is uniform over the projector's calibrated area (the box of its spots'
///   projector pixels, normally 0..width-1 by 0..height-1, pixel centres), its spacing the largest
///   not above the step that puts the last column and row on the area's edge.
/// - Each grid point is located in the spot grid's mapping mesh (RectilinearGridIntersectTriangleMesh)
///   and takes the camera point interpolated there; the screen model gives its content point.
///   Cells with a corner the spots do not reach are left out.
/// - Blend: at the grid point's camera point every projector of `blendPartners` that reaches it
///   (ProjectorFootprint::CameraToProjector) adds its BlendWeight, falling to zero at those of
///   its edges that reach into the fill region; the alpha is this projector's share to the
///   power 1/gamma (BlendWeight::Alpha), so the light of all of them adds up to 1.
/// - Refinement: the grid is first mapped four times finer (every point through the spots to the
///   content); an interval of the grid takes the finer columns (or rows) where, in its middle,
///   the alpha strays from the straight line between its ends by more than 0.002 (the light of
///   overlapping projectors then adds up to 1 within about 1%) or the content point by more than
///   a tenth of a content pixel (SetContentSize). A flat screen's overlaps are refined; its
///   content map is straight enough not to need it.
/// - The mesh is cut along the fill region's edge (u or v = 0 or 1): triangles are clipped in
///   content space, the new vertices interpolated linearly (as the renderer does) and shared by the
///   triangles on both sides of the cut, so the image ends exactly at the edge and no triangle
///   reaches outside it.
class VEK_EXPORT WarpBuilder : public Object {
 public:
  static WarpBuilder* New();
  const char* GetClassName() const override { return "WarpBuilder"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// projectors[k] is projector k's footprint; `projector` is the one to build; blendPartners are
  /// the other projectors whose light adds to its own (its layer). Not owned.
  void SetProjectors(const std::vector<const ProjectorFootprint*>& projectors) { Projectors = projectors; }
  void SetScreen(const ScreenModel* screen) { Screen = screen; }
  void SetStep(int step) { Step = step; }
  void SetGamma(double gamma) { Gamma = gamma; }
  /// The content's size in pixels, for judging how straight the content map runs.
  void SetContentSize(int width, int height) {
    ContentWidth = width;
    ContentHeight = height;
  }

  /// VEK_INVALID_PARAMETERS for missing inputs or settings out of range.
  int Build(int projector, const std::vector<int>& blendPartners);

  /// The warp of the last Build; null before.
  TextureMesh* GetWarp() const { return Warp.GetPointer(); }
  /// The part of the fill region this warp covers (its area in content space, 0..1).
  double GetCoverage() const { return Coverage; }
  int GetGridColumns() const { return GridColumns; }
  int GetGridRows() const { return GridRows; }

 protected:
  WarpBuilder() = default;
  ~WarpBuilder() override = default;

 private:
  WarpBuilder(const WarpBuilder&) = delete;
  WarpBuilder& operator=(const WarpBuilder&) = delete;

  double AlphaAt(int projector, const vec2<double>& pixel, const vec2<double>& camera,
                 const std::vector<int>& blendPartners) const;

  std::vector<const ProjectorFootprint*> Projectors;
  std::vector<int> Edges;  // BlendWeight::Edge sums, by projector, for the Build under way
  const ScreenModel* Screen = nullptr;
  int Step = 32;
  double Gamma = 2.2;
  int ContentWidth = 1920;
  int ContentHeight = 1080;
  SmartPointer<TextureMesh> Warp;
  double Coverage = 0;
  int GridColumns = 0;
  int GridRows = 0;
};

}  // namespace vek
