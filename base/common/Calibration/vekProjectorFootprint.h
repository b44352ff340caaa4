#pragma once
#include <vector>

#include "vekCommonExport.h"
#include "vekHomography.h"
#include "vekLensWarp.h"
#include "vekObject.h"
#include "vekSmartPointer.h"
#include "vekTriangleLocator2D.h"
#include "vekTriangleMesh.h"
#include "vekVec2.h"

namespace vek {

/// Where one projector lands in the camera: its spot grid (columns x rows spots, row-major, the
/// projector pixel of each and the camera pixel where it was found) with the camera pixels
/// undistorted by the lens, triangulated as the grid's RectilinearConnectivityTriangleMesh.
///
/// Two triangulations share one numbering of points (spot j * columns + i):
/// - the footprint (GetCameraMesh/GetProjectorMesh): only the triangles whose three spots were
///   found, in the grid mesh's triangle order. It is what the projector was seen to cover, and what
///   connectivity and coverage are judged on.
/// - the mapping (GetMappingCameraMesh/GetMappingProjectorMesh): the same grid with every spot
///   replaced by the quadratic (in projector pixels) that best fits the found spots of the 7 x 7
///   spots around it (the window shifted to stay inside the grid, at least 12 found). That
///   averages detection noise (about halving it) while following a curved screen, and fills in
///   the spots the camera missed, so that they leave no hole in the warp. Where the window has
///   too few spots (small grids) a found spot is kept as measured and a missing one is estimated
///   by the homography of the found spots around it (5 x 5, widened up to 9 x 9 until six are
///   found); one with too few found neighbours stays missing.
///
/// The residuals are those of the found spots against the one homography that best fits all of
/// them (projector pixels -> undistorted camera pixels): on a flat screen, measurement noise plus
/// lens-model error.
class VEK_EXPORT ProjectorFootprint : public Object {
 public:
  static ProjectorFootprint* New();
  const char* GetClassName() const override { return "ProjectorFootprint"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// cameraPoints are as the camera delivered them (distorted); (-5, -5) marks a spot not found.
  /// VEK_INVALID_PARAMETERS for sizes that disagree; VEK_TOO_FEW_SPOTS_FOUND when fewer than
  /// 2 x 2 spots were found or they do not span the plane. On failure the object is unchanged.
  int Build(int columns, int rows, const std::vector<vec2<float>>& projectorPoints,
            const std::vector<vec2<float>>& cameraPoints, const LensWarp* lens);

  int GetColumns() const { return Columns; }
  int GetRows() const { return Rows; }
  int GetNumberOfFoundSpots() const { return FoundSpots; }
  int GetNumberOfFilledSpots() const { return FilledSpots; }

  const TriangleMesh* GetCameraMesh() const { return CameraMesh.GetPointer(); }
  const TriangleMesh* GetProjectorMesh() const { return ProjectorMesh.GetPointer(); }
  const TriangleMesh* GetMappingCameraMesh() const { return MappingCameraMesh.GetPointer(); }
  const TriangleMesh* GetMappingProjectorMesh() const { return MappingProjectorMesh.GetPointer(); }
  /// Area of the footprint in undistorted camera pixels.
  double GetArea() const { return Area; }
  /// The calibrated area: the box of the spots' projector pixels.
  const vec2<double>& GetProjectorMin() const { return ProjectorMin; }
  const vec2<double>& GetProjectorMax() const { return ProjectorMax; }
  /// Bounding box of the mapping mesh in camera pixels.
  const vec2<float>& GetCameraMin() const { return CameraMin; }
  const vec2<float>& GetCameraMax() const { return CameraMax; }

  const Homography& GetBestFitHomography() const { return BestFit; }
  double GetResidualMax() const { return ResidualMax; }
  double GetResidualRMS() const { return ResidualRMS; }

  /// The projector pixel that lights undistorted camera pixel `camera`, through the mapping mesh;
  /// false where the projector does not reach.
  bool CameraToProjector(const vec2<float>& camera, vec2<double>& projector) const;

 protected:
  ProjectorFootprint() = default;
  ~ProjectorFootprint() override = default;

 private:
  ProjectorFootprint(const ProjectorFootprint&) = delete;
  ProjectorFootprint& operator=(const ProjectorFootprint&) = delete;

  int Columns = 0;
  int Rows = 0;
  int FoundSpots = 0;
  int FilledSpots = 0;
  SmartPointer<TriangleMesh> CameraMesh;
  SmartPointer<TriangleMesh> ProjectorMesh;
  SmartPointer<TriangleMesh> MappingCameraMesh;
  SmartPointer<TriangleMesh> MappingProjectorMesh;
  SmartPointer<TriangleLocator2D> MappingLocator;
  double Area = 0;
  vec2<float> CameraMin;
  vec2<float> CameraMax;
  vec2<double> ProjectorMin;
  vec2<double> ProjectorMax;
  Homography BestFit;
  double ResidualMax = 0;
  double ResidualRMS = 0;
};

}  // namespace vek
