#pragma once
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

class RectilinearGrid;

/// Values attached to the points of a uniform grid over the input space, one set per layer (a
/// layer is one projector): the common form of the user's manual corrections, which are made at
/// grid points and interpolated in between. Each point of each layer holds GetNumberOfComponents()
/// floats; a new or resized subdivision holds the default value everywhere. Point (i, j) has
/// number j * Numx + i, as in RectilinearGrid.
///
/// Text form (the object stream frame; the type word is the class name, so one kind of record
/// never reads as another; floats with 9 significant digits):
///
///   { <ClassName> 1.0 \n
///   Grid <Offsetx> <Offsety> <Spacex> <Spacey> <Numx> <Numy> \n
///   Layers <layers> Components <components> \n
///     <value> [<value> ...] \n     (one line per point: layer 0's points in order, then layer 1's, ...)
///   } \n
///
/// Reading is all or nothing. A label other than "Grid", "Layers", "Components", a component count
/// other than the class's, or extra content before the closing brace is
/// VEK_FILE_NOT_FORMATTED_PROPERLY; a missing or unreadable number, or negative counts, is
/// VEK_UNABLE_TO_READ_NUM_FROM_FILE.
class VEK_EXPORT SpatialSubdivisionData : public Object {
 public:
  static constexpr const char* kVersion = "1.0";

  /// One component per point, default 0.
  static SpatialSubdivisionData* New();
  const char* GetClassName() const override { return "SpatialSubdivisionData"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// Takes the grid's geometry and resets every value of `layers` layers to the default.
  /// VEK_INVALID_PARAMETERS for negative counts or more than INT_MAX values;
  /// VEK_FAILED_TO_ALLOCATE_MEMORY. Unchanged on failure.
  int SetSubdivision(const RectilinearGrid& grid, int layers);
  /// Copies the geometry into `grid`.
  void GetGrid(RectilinearGrid& grid) const;
  int GetNumx() const { return Numx; }
  int GetNumy() const { return Numy; }
  int GetNumberOfPoints() const { return Numx * Numy; }
  int GetNumberOfLayers() const { return Layers; }
  int GetNumberOfComponents() const { return Components; }
  float GetDefaultValue() const { return DefaultValue; }

  /// The default value when an index is out of range.
  float GetValue(int layer, int point, int component) const;
  /// VEK_INVALID_PARAMETERS when an index is out of range.
  int SetValue(int layer, int point, int component, float value);

  int Write(std::ostream& os, const std::string& indent = "") const;
  int Read(std::istream& in);
  /// Replaces the file in one step (see RecordFile).
  int WriteToFile(const std::string& fileName) const;
  /// VEK_FILE_NOT_FOUND when there is no such file; otherwise as Read.
  int ReadFromFile(const std::string& fileName);

 protected:
  SpatialSubdivisionData(int components, float defaultValue) : Components(components), DefaultValue(defaultValue) {}
  ~SpatialSubdivisionData() override = default;

  // The position of a value in Values, or -1.
  long long IndexOf(int layer, int point, int component) const;

 private:
  SpatialSubdivisionData(const SpatialSubdivisionData&) = delete;
  SpatialSubdivisionData& operator=(const SpatialSubdivisionData&) = delete;

  float Offsetx = 0.0f;
  float Offsety = 0.0f;
  float Spacex = 1.0f;
  float Spacey = 1.0f;
  int Numx = 0;
  int Numy = 0;
  int Layers = 0;
  const int Components;
  const float DefaultValue;
  std::vector<float> Values;  // layer-major, then point, then component
};

}  // namespace vek
