#pragma once
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"
#include "vekVec2.h"

namespace vek {

/// The user's manual correction of the perspective warping: the content is addressed by viewing
/// angles (azimuth x, elevation y, radians) sampled uniformly over an angular extent, and the
/// correction moves each sample node to another angle. Node (i, j), number j * Numx + i, sits
/// nominally at azimuth AzimuthMin + i * (AzimuthMax - AzimuthMin) / (Numx - 1) (AzimuthMin when
/// Numx is 1; worked in double), elevation likewise; its remapped angle is where the content of that nominal angle
/// is shown. The angles belong to the content, not to a projector, so one record serves the whole
/// display. A new record has no nodes and an extent of zero.
///
/// Text form (the object stream frame; floats with 9 significant digits):
///
///   { UniformAngleRemappingData 1.0 \n
///   Azimuth <min> <max> \n
///   Elevation <min> <max> \n
///   Nodes <Numx> <Numy> \n
///     <azimuth> <elevation> \n     (the remapped angle of each node, in node order)
///   } \n
///
/// Reading is all or nothing. A wrong label or extra content before the closing brace is
/// VEK_FILE_NOT_FORMATTED_PROPERLY; a missing or unreadable number, or a negative count, is
/// VEK_UNABLE_TO_READ_NUM_FROM_FILE.
class VEK_EXPORT UniformAngleRemappingData : public Object {
 public:
  static constexpr const char* kType = "UniformAngleRemappingData";
  static constexpr const char* kVersion = "1.0";

  static UniformAngleRemappingData* New();
  const char* GetClassName() const override { return "UniformAngleRemappingData"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// Sets the extent and the node counts and puts every node at its nominal angle (no correction).
  /// VEK_INVALID_PARAMETERS for negative counts or more than INT_MAX nodes;
  /// VEK_FAILED_TO_ALLOCATE_MEMORY. Unchanged on failure.
  int SetUniformSampling(float azimuthMin, float azimuthMax, float elevationMin, float elevationMax, int numx,
                         int numy);
  float GetAzimuthMin() const { return AzimuthMin; }
  float GetAzimuthMax() const { return AzimuthMax; }
  float GetElevationMin() const { return ElevationMin; }
  float GetElevationMax() const { return ElevationMax; }
  int GetNumx() const { return Numx; }
  int GetNumy() const { return Numy; }
  int GetNumberOfNodes() const { return static_cast<int>(Angles.size()); }

  /// The uncorrected angle of node (i, j), whether or not it lies in the grid.
  vec2<float> GetNominalAngle(int i, int j) const;
  /// The unset point when the node is not in the grid.
  vec2<float> GetRemappedAngle(int node) const;
  /// VEK_INVALID_PARAMETERS when the node is not in the grid.
  int SetRemappedAngle(int node, const vec2<float>& angle);

  int Write(std::ostream& os, const std::string& indent = "") const;
  int Read(std::istream& in);
  /// Replaces the file in one step (see RecordFile).
  int Write(const std::string& fileName) const;
  /// VEK_FILE_NOT_FOUND when there is no such file; otherwise as Read(std::istream&).
  int Read(const std::string& fileName);

 protected:
  UniformAngleRemappingData() = default;
  ~UniformAngleRemappingData() override = default;

 private:
  UniformAngleRemappingData(const UniformAngleRemappingData&) = delete;
  UniformAngleRemappingData& operator=(const UniformAngleRemappingData&) = delete;

  float AzimuthMin = 0.0f;
  float AzimuthMax = 0.0f;
  float ElevationMin = 0.0f;
  float ElevationMax = 0.0f;
  int Numx = 0;
  int Numy = 0;
  std::vector<vec2<float>> Angles;
};

}  // namespace vek
