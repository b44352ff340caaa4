#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "vekBrownLensWarp.h"
#include "vekCalibrationFolder.h"
#include "vekCommonExport.h"
#include "vekHomography.h"
#include "vekObject.h"
#include "vekOrderedQuadrilateral.h"
#include "vekSmartPointer.h"
#include "vekSpotGrid.h"
#include "vekVec2.h"

namespace vek {

/// A made-up display whose every answer is known: Columns x Rows projectors on a flat screen,
/// watched by one camera with a Brown lens, with spot grids measured as a camera would measure
/// them (detection noise, a few spots not found). It lets the calibration path run, and be
/// judged, with no hardware and no recorded data.
///
/// Spaces and maps, all exact:
/// - screen: a plane in its own units, y down. Projector p (row p / Columns, column p % Columns,
///   so 0 is top-left) lands on it through a homography: its image corners (0, 0), (W, 0),
///   (0, H), (W, H) go to the corners of a W x H rectangle (one unit per pixel) placed in the
///   layout with the overlap asked for, each corner then moved by up to Keystone x W across and
///   Keystone x H down or up, drawn from the seed (a small keystone of its own).
/// - camera: the screen goes to undistorted camera pixels through a pinhole homography that puts
///   the wall in the middle of the 4000 x 3000 frame, filling 90% of it one way and looking at it
///   slightly from below (its top edge 3% narrower); the Brown lens then distorts (Forward).
/// - content: the fill region is the screen rectangle inside the union of the projectors whose
///   sides lie Inset x W (or H) inside the outer projectors' innermost corners; uv = (screen -
///   fill minimum) / fill size. Every point of it is lit by at least one projector's spot area.
///
/// Spots: projector pixel (i (W - 1) / (SpotColumns - 1), j (H - 1) / (SpotRows - 1)) for spot
/// (i, j), stored as float, mapped to the distorted camera pixel, plus Gaussian noise of
/// NoiseSigma camera pixels in each coordinate. The normals are made by Box-Muller from the raw
/// outputs of std::mt19937, since the library's normal distributions differ between standard
/// libraries and the wall must be the same everywhere. With MissingSpots, and at least 5 x 5
/// spots, each projector loses two to four spots on the border of its grid and one (even p) or
/// two (odd p) inside, marked (-5, -5). The keystones, the noise and the missing spots come from
/// three generators seeded apart, so a noise-free wall has the same geometry and the same
/// missing spots as a noisy one.
///
/// Ground-truth functions take a projector number and give (NaN, NaN) for a number out of range
/// or before Generate.
class VEK_EXPORT SyntheticWall : public Object {
 public:
  struct Parameters {
    int Columns = 3;
    int Rows = 2;
    int ProjectorWidth = 1920;
    int ProjectorHeight = 1080;
    /// Fraction of a projector's width (height) shared with its neighbour, nominally.
    double Overlap = 0.15;
    /// Largest corner displacement, as a fraction of the projector's size.
    double Keystone = 0.03;
    /// How far the fill region keeps inside the outer projectors, as a fraction of their size.
    double Inset = 0.02;
    int SpotColumns = 33;
    int SpotRows = 19;
    /// Standard deviation of the detection noise, camera pixels; 0 gives exact spots.
    double NoiseSigma = 0.1;
    bool MissingSpots = true;
    std::uint32_t Seed = 20240607;
  };

  static constexpr int kCameraWidth = 4000;
  static constexpr int kCameraHeight = 3000;
  static constexpr float kFocalLength = 3000.0f;
  static constexpr float kCenterX = 1999.5f;
  static constexpr float kCenterY = 1499.5f;
  static constexpr float kK1 = -0.28f;
  static constexpr float kK2 = 0.09f;
  static constexpr float kP1 = 0.001f;
  static constexpr float kP2 = -0.0005f;
  static constexpr float kK3 = -0.01f;
  /// Share of the camera frame the wall fills (undistorted), the other way less.
  static constexpr double kFrameFill = 0.9;
  /// How much narrower the wall's top edge looks than its bottom edge in the camera.
  static constexpr double kCameraTilt = 0.03;

  static SyntheticWall* New();
  const char* GetClassName() const override { return "SyntheticWall"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// VEK_INVALID_PARAMETERS, with a message, for parameters out of range (fewer than 1 projector
  /// per side, 2 pixels or 2 spots per side; overlap outside [0, 0.5); keystone outside [0, 0.1],
  /// or not below overlap / 2 with more than one projector, which could open a gap between two;
  /// inset outside [0, 0.25); negative noise); the wall is then left as it was.
  int Generate(const Parameters& parameters);
  /// The lens, spot grids and fill region of the wall as a folder of files (CalibrationFolder).
  int WriteCalibrationFolder(const std::string& dir) const;
  /// The same, in memory: the folder gets the wall's own lens and spot grid objects.
  int FillCalibrationFolder(CalibrationFolder& folder) const;

  const Parameters& GetParameters() const { return Params; }
  int GetNumberOfProjectors() const { return static_cast<int>(ProjectorToScreenMaps.size()); }
  BrownLensWarp* GetLens() const { return Lens.GetPointer(); }
  /// Null for a number out of range.
  SpotGrid* GetSpotGrid(int projector) const;
  /// The fill region on the screen.
  const vec2<double>& GetFillMin() const { return FillMin; }
  const vec2<double>& GetFillMax() const { return FillMax; }
  /// The fill region as the folder holds it: distorted camera pixels, OrderedQuadrilateral order.
  OrderedQuadrilateral GetCameraFillRegion() const;

  vec2<double> ProjectorToScreen(int projector, const vec2<double>& xy) const;
  vec2<double> ScreenToProjector(int projector, const vec2<double>& screen) const;
  vec2<double> ScreenToContent(const vec2<double>& screen) const;
  vec2<double> ContentToScreen(const vec2<double>& uv) const;
  vec2<double> ProjectorToContent(int projector, const vec2<double>& xy) const;
  vec2<double> ContentToProjector(int projector, const vec2<double>& uv) const;
  /// Undistorted camera pixels; the lens's Forward gives what the camera delivers.
  vec2<double> ScreenToCamera(const vec2<double>& screen) const;
  vec2<double> ProjectorToCamera(int projector, const vec2<double>& xy) const;
  /// Whether the screen point lies in the area the projector's spots span, pixels 0 .. W - 1
  /// and 0 .. H - 1 (borders included).
  bool IsInsideProjector(int projector, const vec2<double>& screen) const;

 protected:
  SyntheticWall() = default;
  ~SyntheticWall() override = default;

 private:
  SyntheticWall(const SyntheticWall&) = delete;
  SyntheticWall& operator=(const SyntheticWall&) = delete;

  Parameters Params;
  std::vector<Homography> ProjectorToScreenMaps;
  std::vector<Homography> ScreenToProjectorMaps;
  Homography ScreenToCameraMap;
  vec2<double> FillMin{0, 0};
  vec2<double> FillMax{1, 1};
  SmartPointer<BrownLensWarp> Lens;
  std::vector<SmartPointer<SpotGrid>> SpotGrids;
};

}  // namespace vek
