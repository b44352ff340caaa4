#pragma once
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "vekCalibrationFolder.h"
#include "vekCalibrationSettings.h"
#include "vekCommonExport.h"
#include "vekFlatScreenModel.h"
#include "vekObject.h"
#include "vekProjectorFootprint.h"
#include "vekSmartPointer.h"
#include "vekSpatialConnectivity.h"
#include "vekTextureMesh.h"

namespace vek {

/// Settings a caller gives that win over the calibration folder's (the command line's, say).
struct CalibrationSettingOverrides {
  std::optional<int> WarpStep;
  std::optional<double> BlendGamma;
};

/// The calibration path, from a calibration folder to every projector's warp and blend, for a
/// flat screen seen by one camera. Stages, each taking only what the one before made:
///   1. footprints: each spot grid undistorted by the lens and triangulated (ProjectorFootprint);
///   2. connectivity: SpatialConnectivity inferred from the footprints' overlaps;
///   3. screen model: the fill region, undistorted, fixes the camera -> content homography;
///   4. warps: one WarpBuilder per projector, blending with the projectors of its layer.
/// Compute does all of it in memory; Write puts the results in a folder:
///   projector_<k>.warp   the warp mesh file of projector k (TextureMesh::Serialize)
///   connectivity.txt     the SpatialConnectivity in its stream form
///   summary.txt          a DataFile: NumberOfProjectors, then per projector k the variables
///                        Projector<k>Coverage (the part of the fill region it lights, 0..1),
///                        Projector<k>Neighbors (a String of indices, blank-separated, empty when
///                        none), Projector<k>Layer, Projector<k>SpotsFound, Projector<k>SpotsFilled,
///                        Projector<k>ResidualMax and Projector<k>ResidualRMS (found spots against
///                        the best-fitting homography from projector pixels, in undistorted camera
///                        pixels), and the settings used.
/// Every file is replaced in one step, and only after all were made, so a failed run leaves the
/// outputs of an earlier one in place. All three are text with the platform's line end (CR LF on
/// Windows, LF elsewhere), as TextureMesh::WriteToFile gives a single warp.
class VEK_EXPORT WarpCalibration : public Object {
 public:
  static WarpCalibration* New();
  const char* GetClassName() const override { return "WarpCalibration"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// Called with a stage's name and how far it got (done of total) while Compute runs.
  using ProgressFunction = std::function<void(const std::string& stage, int done, int total)>;
  void SetProgress(ProgressFunction progress) { Progress = std::move(progress); }
  /// Threads for the warps, one projector each; 0 (the default) leaves the choice to OpenMP.
  void SetNumberOfThreads(int n) { NumberOfThreads = n < 0 ? 0 : n; }
  int GetNumberOfThreads() const { return NumberOfThreads; }

  /// Runs every stage. Failures name the file they come from where there is one:
  /// VEK_TOO_FEW_SPOTS_FOUND (a projector with fewer than 2 x 2 spots found), the topology codes
  /// when neighbours cannot be established, VEK_UNABLE_TO_SET_CAMERA_SPACE_CORNERS_FROM_INPUT_SPACE_CORNERS
  /// when the fill region is degenerate or lies outside every projector.
  /// `folderPath`, when given, goes before the file names in messages.
  int Compute(const CalibrationFolder& folder, const CalibrationSettings& settings,
              const std::string& folderPath = std::string());
  int Write(const std::string& outDir) const;
  /// Pictures of the result (CalibrationPictures): the camera's view as SVG, and each
  /// projector's alpha map as projector_<k>_alpha.png in `dir`, at its resolution.
  int WriteCameraView(const std::string& svgPath) const;
  int WriteAlphaMaps(const std::string& dir) const;
  static std::string AlphaMapFileName(int projector);

  /// The one call of `vek warp`: reads the folder, settles the settings (built-in defaults, then
  /// `defaults` as given, then the folder's, then `overrides`), computes and writes.
  static int Run(const std::string& calibrationDir, const std::string& outDir, const CalibrationSettings& defaults,
                 const CalibrationSettingOverrides& overrides, SmartPointer<WarpCalibration>* result = nullptr,
                 ProgressFunction progress = {});

  int GetNumberOfProjectors() const { return static_cast<int>(Footprints.size()); }
  const CalibrationSettings& GetSettings() const { return Settings; }
  const ProjectorFootprint* GetFootprint(int projector) const { return Footprints[projector].GetPointer(); }
  TextureMesh* GetWarp(int projector) const { return Warps[projector].GetPointer(); }
  int GetProjectorWidth(int projector) const { return Sizes[projector].first; }
  int GetProjectorHeight(int projector) const { return Sizes[projector].second; }
  double GetCoverage(int projector) const { return Coverage[projector]; }
  const std::vector<int>& GetNeighbors(int projector) const { return Neighbors[projector]; }
  const SpatialConnectivity* GetConnectivity() const { return Connectivity.GetPointer(); }
  const FlatScreenModel* GetScreen() const { return Screen.GetPointer(); }
  /// The file names Write uses inside its folder.
  static std::string WarpFileName(int projector);
  static constexpr const char* kConnectivityFileName = "connectivity.txt";
  static constexpr const char* kSummaryFileName = "summary.txt";

 protected:
  WarpCalibration() = default;
  ~WarpCalibration() override = default;

 private:
  WarpCalibration(const WarpCalibration&) = delete;
  WarpCalibration& operator=(const WarpCalibration&) = delete;

  void Report(const std::string& stage, int done, int total) const {
    if (Progress) Progress(stage, done, total);
  }

  ProgressFunction Progress;
  int NumberOfThreads = 0;
  CalibrationSettings Settings;
  std::vector<SmartPointer<ProjectorFootprint>> Footprints;
  std::vector<std::pair<int, int>> Sizes;
  std::vector<SmartPointer<TextureMesh>> Warps;
  std::vector<double> Coverage;
  std::vector<std::vector<int>> Neighbors;
  SmartPointer<SpatialConnectivity> Connectivity;
  SmartPointer<FlatScreenModel> Screen;
};

}  // namespace vek
