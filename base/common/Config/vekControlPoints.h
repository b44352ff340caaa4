#pragma once
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekVec2.h"

namespace vek {

/// A grid of control points marking the usable region of a space (the input space, or one camera's
/// image): GridWidth x GridHeight points, point (i, j) at number j * GridWidth + i. A new grid's
/// points are unset, (-5, -5).
///
/// Text form (the object stream frame; coordinates with 9 significant digits, so that every float
/// reads back bit for bit):
///
///   { ControlPoints 1.0 \n
///   <width> <height> \n
///     <x> <y> \n            (one line per point, in point order)
///   } \n
///
/// Reading is all or nothing: the grid changes only when the whole object has been read. Anything
/// other than the closing brace after the last point is a damaged object.
class VEK_EXPORT ControlPoints : public Object {
 public:
  static constexpr const char* kType = "ControlPoints";
  static constexpr const char* kVersion = "1.0";

  static ControlPoints* New();
  const char* GetClassName() const override { return "ControlPoints"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// Resizes to width x height unset points. VEK_INVALID_PARAMETERS for a negative size or one of
  /// more than INT_MAX points; VEK_FAILED_TO_ALLOCATE_MEMORY. The grid is unchanged on failure.
  int SetGridSize(int width, int height);
  int GetGridWidth() const { return Width; }
  int GetGridHeight() const { return Height; }
  int GetNumPoints() const { return static_cast<int>(Points.size()); }

  /// VEK_INVALID_PARAMETERS when k is not a point number of the grid.
  int SetPoint(int k, const vec2<float>& point);
  /// The unset point when k is not a point number of the grid.
  vec2<float> GetPoint(int k) const;
  const std::vector<vec2<float>>& GetPoints() const { return Points; }

  /// Every line starts with `indent`. VEK_UNABLE_TO_WRITE_TO_STREAM when the stream fails.
  int Write(std::ostream& os, const std::string& indent = "") const;
  /// Errors: those of the object frame (VEK_UNABLE_TO_READ_FROM_STREAM, VEK_UNABLE_TO_READ_CONNECTIVITY);
  /// VEK_UNABLE_TO_READ_NUM_FROM_FILE for a bad size or a missing or unreadable coordinate;
  /// VEK_FILE_NOT_FORMATTED_PROPERLY for extra content before the closing brace.
  int Read(std::istream& in);
  /// Replaces the file in one step (see RecordFile).
  int WriteToFile(const std::string& fileName) const;
  /// VEK_FILE_NOT_FOUND when there is no such file; otherwise as Read.
  int ReadFromFile(const std::string& fileName);

 protected:
  ControlPoints() = default;
  ~ControlPoints() override = default;

 private:
  ControlPoints(const ControlPoints&) = delete;
  ControlPoints& operator=(const ControlPoints&) = delete;

  int Width = 0;
  int Height = 0;
  std::vector<vec2<float>> Points;
};

}  // namespace vek
