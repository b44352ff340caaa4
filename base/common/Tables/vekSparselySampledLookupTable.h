#pragma once
#include "vekCommonExport.h"
#include "vekDataArray.h"
#include "vekObject.h"

namespace vek {

/// An integer-indexed table filled with measurements one at a time, for finding the input at which
/// the output stops rising. The value of input x lives at index x / InputStep (integer division);
/// MinInput is not subtracted, so the table spans the inputs 0 to MaxInput, and MinInput is only
/// remembered. A value of kNotMeasured (any negative value, in fact) marks an input not measured yet.
///
/// Choices made here: SetInputRange refuses a step below 1, a negative maximum and a minimum above
/// the maximum (VEK_INVALID_PARAMETERS). Negative inputs and inputs past the table are refused by
/// AddMeasuredValue (VEK_INDEX_OUT_OF_RANGE) and read as kNotMeasured by GetOutput, with an error
/// message either way. WouldInputValueAchieveSaturation treats indices outside the table as not
/// measured, so an input past the end compares the last two measurements.
class VEK_EXPORT SparselySampledLookupTable : public Object {
 public:
  static constexpr float kNotMeasured = -1.0f;
  static constexpr int kUnsetInput = 0;

  static SparselySampledLookupTable* New();
  const char* GetClassName() const override { return "SparselySampledLookupTable"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// Stores the range and makes max / step + 1 values, all kNotMeasured.
  int SetInputRange(int minInput, int maxInput, int inputStep);
  int GetMinInput() const { return MinInput; }
  int GetMaxInput() const { return MaxInput; }
  int GetInputStep() const { return InputStep; }
  /// Null until SetInputRange.
  const DataArray<float>* GetOutputValues() const { return OutputValues; }

  int AddMeasuredValue(int input, float value);
  float GetOutput(int input) const;

  /// 1 when raising the input to `input` would raise the output by less than `threshold`
  /// (saturation), -1 when it would still rise enough, 0 when fewer than two measurements bracket
  /// the question. The upper measurement is the first at index input / step or above (or, if there
  /// is none, the first below); the lower one is the next measurement below it.
  int WouldInputValueAchieveSaturation(int input, float threshold) const;

 protected:
  SparselySampledLookupTable() = default;
  ~SparselySampledLookupTable() override;

 private:
  SparselySampledLookupTable(const SparselySampledLookupTable&) = delete;
  SparselySampledLookupTable& operator=(const SparselySampledLookupTable&) = delete;

  /// The index of `input`, or -1 when it has none in the table.
  int IndexOf(int input) const;
  bool IsMeasured(int index) const { return (*OutputValues)[index] >= 0.0f; }

  int MinInput = kUnsetInput;
  int MaxInput = kUnsetInput;
  int InputStep = kUnsetInput;
  DataArray<float>* OutputValues = nullptr;
};

}  // namespace vek
