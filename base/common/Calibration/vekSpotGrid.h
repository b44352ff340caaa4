#pragma once
#include <string>
#include <utility>
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekVec2.h"

namespace vek {

/// What the camera saw of one projector's spot pattern: a grid of Columns x Rows spots, for each
/// spot the projector pixel it was drawn at and the camera pixel (as the camera delivered it,
/// distorted) where it was found, or (-5, -5) when it was not found. Spots are numbered row by
/// row, spot (i, j) being j * Columns + i.
///
/// The file is a DataFile of six variables, written in this order:
///
///   Int###ProjectorWidth###1920###
///   Int###ProjectorHeight###1080###
///   Int###GridColumns###33###
///   Int###GridRows###19###
///   FloatArray###ProjectorPoints###<2n>@@@x@@@y@@@...###
///   FloatArray###CameraPoints###<2n>@@@x@@@y@@@...###
///
/// with n = columns x rows. Read refuses, with VEK_BAD_PARSE and a message naming the file, a
/// missing or mistyped variable, sizes below 1, fewer than 2 columns or rows, arrays whose length
/// is not 2n, and coordinates that are no finite numbers; a missing file is VEK_FILE_NOT_FOUND. A
/// failed read leaves the object as it was. Write refuses (VEK_INVALID_PARAMETERS) a grid that
/// Read would refuse, so that every file written reads back.
class VEK_EXPORT SpotGrid : public Object {
 public:
  static SpotGrid* New();
  const char* GetClassName() const override { return "SpotGrid"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  int Read(const std::string& path);
  int Write(const std::string& path) const;

  /// VEK_INVALID_PARAMETERS, with a message, when the grid could not be written.
  int Validate() const;
  /// Spots whose camera point is not (-5, -5).
  int CountFoundSpots() const;

  void SetProjectorWidth(int width) { ProjectorWidth = width; }
  int GetProjectorWidth() const { return ProjectorWidth; }
  void SetProjectorHeight(int height) { ProjectorHeight = height; }
  int GetProjectorHeight() const { return ProjectorHeight; }
  void SetColumns(int columns) { Columns = columns; }
  int GetColumns() const { return Columns; }
  void SetRows(int rows) { Rows = rows; }
  int GetRows() const { return Rows; }

  void SetProjectorPoints(std::vector<vec2<float>> points) { ProjectorPoints = std::move(points); }
  void SetCameraPoints(std::vector<vec2<float>> points) { CameraPoints = std::move(points); }
  std::vector<vec2<float>>& GetProjectorPoints() { return ProjectorPoints; }
  const std::vector<vec2<float>>& GetProjectorPoints() const { return ProjectorPoints; }
  std::vector<vec2<float>>& GetCameraPoints() { return CameraPoints; }
  const std::vector<vec2<float>>& GetCameraPoints() const { return CameraPoints; }

 protected:
  SpotGrid() = default;
  ~SpotGrid() override = default;

 private:
  SpotGrid(const SpotGrid&) = delete;
  SpotGrid& operator=(const SpotGrid&) = delete;

  /// The reason the grid is not whole, or "" when it is.
  std::string FindInconsistency() const;

  int ProjectorWidth = 0;
  int ProjectorHeight = 0;
  int Columns = 0;
  int Rows = 0;
  std::vector<vec2<float>> ProjectorPoints;
  std::vector<vec2<float>> CameraPoints;
};

}  // namespace vek
