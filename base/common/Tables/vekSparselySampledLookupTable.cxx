#include "vekSparselySampledLookupTable.h"

#include <algorithm>
#include <climits>
#include <new>

#include "vekErrorCodes.h"
#include "vekOutputMessages.h"

namespace vek {

SparselySampledLookupTable* SparselySampledLookupTable::New() { return new (std::nothrow) SparselySampledLookupTable; }

SparselySampledLookupTable::~SparselySampledLookupTable() {
  if (OutputValues) OutputValues->UnRegister();
}

int SparselySampledLookupTable::SetInputRange(int minInput, int maxInput, int inputStep) {
  if (inputStep < 1 || maxInput < 0 || minInput > maxInput) {
    VEK_REPORT_ERROR("Invalid input range " << minInput << " to " << maxInput << " in steps of " << inputStep);
    return VEK_INVALID_PARAMETERS;
  }
  if (maxInput / inputStep == INT_MAX) return VEK_TOO_MANY_ELEMENTS;
  const int count = maxInput / inputStep + 1;
  DataArray<float>* values = OutputValues ? OutputValues : DataArray<float>::New();
  if (!values) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  if (values->SetNumberOfValues(count) != VEK_SUCCESS) {
    if (values != OutputValues) values->Release();
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  for (int k = 0; k < count; ++k) (*values)[k] = kNotMeasured;
  OutputValues = values;
  MinInput = minInput;
  MaxInput = maxInput;
  InputStep = inputStep;
  return VEK_SUCCESS;
}

int SparselySampledLookupTable::IndexOf(int input) const {
  if (!OutputValues || input < 0) return -1;
  const int index = input / InputStep;
  return index < OutputValues->GetNumberOfValues() ? index : -1;
}

int SparselySampledLookupTable::AddMeasuredValue(int input, float value) {
  const int index = IndexOf(input);
  if (index < 0) {
    VEK_REPORT_ERROR("Input " << input << " is outside the table (0 to " << MaxInput << ")");
    return VEK_INDEX_OUT_OF_RANGE;
  }
  (*OutputValues)[index] = value;
  return VEK_SUCCESS;
}

float SparselySampledLookupTable::GetOutput(int input) const {
  const int index = IndexOf(input);
  if (index < 0) {
    VEK_REPORT_ERROR("Input " << input << " is outside the table (0 to " << MaxInput << ")");
    return kNotMeasured;
  }
  return (*OutputValues)[index];
}

int SparselySampledLookupTable::WouldInputValueAchieveSaturation(int input, float threshold) const {
  if (!OutputValues || input < 0) return 0;
  const int count = OutputValues->GetNumberOfValues();
  const int i = input / InputStep;
  int upper = -1;
  for (int k = i; k < count; ++k)
    if (IsMeasured(k)) {
      upper = k;
      break;
    }
  int lower = -1;
  for (int k = std::min(i - 1, count - 1); k >= 0; --k) {
    if (!IsMeasured(k)) continue;
    if (upper < 0) {
      upper = k;
    } else {
      lower = k;
      break;
    }
  }
  if (upper < 0 || lower < 0) return 0;
  const float difference = (*OutputValues)[upper] - (*OutputValues)[lower];
  return threshold > difference ? 1 : -1;
}

void SparselySampledLookupTable::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "MinInput: " << MinInput << "\n";
  os << indent << "InputStep: " << InputStep << "\n";
  os << indent << "OutputValues" << (OutputValues ? " Not Null" : " NULL") << "\n";
}

}  // namespace vek
