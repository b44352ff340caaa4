#pragma once
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

/// A uniformly sampled function of one float: value i belongs to the input
/// MinInput + i * InputStep. Forward interpolates linearly between the two neighbouring values;
/// Invert runs the other way on an increasing table by bisection.
///
/// Nothing is clamped: an input whose neighbouring indices fall outside the table is the caller's
/// error. Forward and Invert report it on the error channel and return NaN rather than read past the
/// values; an input only a rounding error beyond the last value is such an input too.
///
/// DoublePoints keeps the old values at the even positions and fills each gap with the four-point
/// rule (9/16 on the two neighbours, -1/16 on the next ones, worked in double). A gap at either end
/// of the table, where the outer neighbour does not exist, gets the plain average of its two values;
/// with two or three values every gap is such an end gap, and one value or none stays as it is.
/// Each doubling halves InputStep (MinInput stays), so every old value keeps its input.
class VEK_EXPORT LookupTable : public Object {
 public:
  static constexpr float kDefaultMinInput = 0.0f;
  static constexpr float kDefaultInputStep = 1.0f;

  static LookupTable* New();
  const char* GetClassName() const override { return "LookupTable"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  void SetMinInput(float v) { MinInput = v; }
  float GetMinInput() const { return MinInput; }
  void SetInputStep(float v) { InputStep = v; }
  float GetInputStep() const { return InputStep; }
  /// (count - 1) * InputStep + MinInput.
  float GetMaxInput() const;

  /// Replaces all values; VEK_FAILED_TO_ALLOCATE_MEMORY leaves the old ones.
  int SetOutputValues(const std::vector<float>& values);
  int SetOutputValues(const float* values, int count);
  const std::vector<float>& GetOutputValues() const { return OutputValues; }
  int GetNumberOfValues() const { return static_cast<int>(OutputValues.size()); }

  float Forward(float input) const;
  float GetOutput(float input) const { return Forward(input); }
  /// The input whose output is `output`; the table must increase. Where the bracketing values are
  /// equal the input halfway between them is returned.
  float Invert(float output) const;

  /// Doubles the sampling `times` times (m values become 2m - 1 each time). Returns
  /// VEK_TOO_MANY_ELEMENTS when the result would not fit an int count, or
  /// VEK_FAILED_TO_ALLOCATE_MEMORY; the table is unchanged then. A count of 0 or less does nothing.
  int DoublePoints(int times);
  int DoublePoints() { return DoublePoints(1); }

  /// Same MinInput, InputStep and values, compared exactly (NaN is never equal).
  bool operator==(const LookupTable& other) const;

 protected:
  LookupTable() = default;
  ~LookupTable() override = default;

 private:
  LookupTable(const LookupTable&) = delete;
  LookupTable& operator=(const LookupTable&) = delete;

  float MinInput = kDefaultMinInput;
  float InputStep = kDefaultInputStep;
  std::vector<float> OutputValues;
};

}  // namespace vek
