#pragma once
#include <optional>
#include <string>
#include <vector>

#include "vekCalibrationSettings.h"
#include "vekCommonExport.h"
#include "vekLensWarp.h"
#include "vekObject.h"
#include "vekOrderedQuadrilateral.h"
#include "vekSmartPointer.h"
#include "vekSpotGrid.h"

namespace vek {

/// Everything measured for one calibration, as a folder of files:
///
///   <dir>/calibration.txt     the index, a DataFile:
///       String###LensFile###camera.lens###
///       StringArray###SpotGridFiles###2@@@projector_0.txt@@@projector_1.txt###
///       FloatArray###FillRegion###8@@@x0@@@y0@@@x1@@@y1@@@x2@@@y2@@@x3@@@y3###
///     and, each only when the folder sets it:
///       Double###BlendGamma###2.2###   Int###WarpStep###32###
///       Int###ContentWidth###1920###   Int###ContentHeight###1080###
///   <dir>/camera.lens         the camera's lens, any model LensWarpIO reads
///   <dir>/projector_<k>.txt   one SpotGrid file per projector, in projector order
///
/// File names in the index are relative to the folder. The fill region is four camera pixels as
/// the camera delivered them (distorted), in OrderedQuadrilateral order: corner k shows content
/// (0, 0), (1, 0), (0, 1), (1, 1) for k = 0 .. 3, which in a camera image (y down) is the
/// top-left, top-right, bottom-left and bottom-right of the wanted image. The four settings, when
/// present, override the option store and the built-in defaults (ApplySettingsTo).
///
/// Read fails with a message that names the file at fault: VEK_FILE_NOT_FOUND for a missing index,
/// lens or spot grid file; VEK_BAD_PARSE for a damaged one, an index without spot grid files or
/// with a file name holding a control character (a zero byte included), a fill region that is not 8 numbers or has a corner at (-5, -5), a setting out of range
/// (CalibrationSettings::Validate), or a lens without focal length or centre. A failed Read
/// leaves the object as it was.
///
/// Write creates the folder when needed and writes the lens, the spot grids and then the index,
/// each file replaced in one step. It refuses (VEK_INVALID_PARAMETERS, nothing written) a folder
/// Read would refuse, and file names that the index cannot hold or that repeat.
class VEK_EXPORT CalibrationFolder : public Object {
 public:
  static constexpr char kIndexFileName[] = "calibration.txt";
  static constexpr char kDefaultLensFileName[] = "camera.lens";

  static CalibrationFolder* New();
  const char* GetClassName() const override { return "CalibrationFolder"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  int Read(const std::string& dir);
  int Write(const std::string& dir) const;

  /// "projector_<k>.txt", the name a spot grid added without one gets.
  static std::string DefaultSpotGridFileName(int k);

  void SetLens(LensWarp* lens) { Lens = lens; }
  LensWarp* GetLens() const { return Lens.GetPointer(); }
  void SetLensFileName(const std::string& name) { LensFileName = name; }
  const std::string& GetLensFileName() const { return LensFileName; }

  /// Appends a projector; an empty file name stands for DefaultSpotGridFileName(its number).
  void AddSpotGrid(SpotGrid* grid, const std::string& fileName = std::string());
  void RemoveAllSpotGrids();
  int GetNumberOfSpotGrids() const { return static_cast<int>(SpotGrids.size()); }
  /// Null for a number out of range.
  SpotGrid* GetSpotGrid(int k) const;
  const std::vector<SmartPointer<SpotGrid>>& GetSpotGrids() const { return SpotGrids; }
  const std::vector<std::string>& GetSpotGridFileNames() const { return SpotGridFileNames; }

  void SetFillRegion(const OrderedQuadrilateral& region) { FillRegion = region; }
  const OrderedQuadrilateral& GetFillRegion() const { return FillRegion; }

  void SetBlendGamma(std::optional<double> value) { BlendGamma = value; }
  std::optional<double> GetBlendGamma() const { return BlendGamma; }
  void SetWarpStep(std::optional<int> value) { WarpStep = value; }
  std::optional<int> GetWarpStep() const { return WarpStep; }
  void SetContentWidth(std::optional<int> value) { ContentWidth = value; }
  std::optional<int> GetContentWidth() const { return ContentWidth; }
  void SetContentHeight(std::optional<int> value) { ContentHeight = value; }
  std::optional<int> GetContentHeight() const { return ContentHeight; }
  /// Overrides, in `settings`, only the values this folder sets.
  void ApplySettingsTo(CalibrationSettings& settings) const;

 protected:
  CalibrationFolder() = default;
  ~CalibrationFolder() override = default;

 private:
  CalibrationFolder(const CalibrationFolder&) = delete;
  CalibrationFolder& operator=(const CalibrationFolder&) = delete;

  /// The reason the folder could not be written or read back, or "" when it can.
  std::string FindInconsistency() const;

  SmartPointer<LensWarp> Lens;
  std::string LensFileName = kDefaultLensFileName;
  std::vector<SmartPointer<SpotGrid>> SpotGrids;
  std::vector<std::string> SpotGridFileNames;  // beside SpotGrids
  OrderedQuadrilateral FillRegion;
  std::optional<double> BlendGamma;
  std::optional<int> WarpStep;
  std::optional<int> ContentWidth;
  std::optional<int> ContentHeight;
};

}  // namespace vek
