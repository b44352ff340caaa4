#include "vekLookupTable.h"

#include <climits>
#include <cmath>
#include <limits>
#include <new>

#include "vekErrorCodes.h"
#include "vekOutputMessages.h"

namespace vek {

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// One doubling of m >= 2 values into 2m - 1.
void DoubleOnce(const std::vector<float>& in, std::vector<float>& out) {
  const size_t m = in.size();
  out.resize(2 * m - 1);
  for (size_t k = 0; k < m; ++k) out[2 * k] = in[k];
  for (size_t k = 0; k + 1 < m; ++k) {
    double a = in[k], b = in[k + 1];
    double value;
    if (k == 0 || k + 2 == m)
      value = 0.5 * (a + b);
    else
      value = 0.5625 * (a + b) - 0.0625 * (static_cast<double>(in[k - 1]) + in[k + 2]);
    out[2 * k + 1] = static_cast<float>(value);
  }
}

}  // namespace

LookupTable* LookupTable::New() { return new (std::nothrow) LookupTable; }

float LookupTable::GetMaxInput() const { return static_cast<float>(GetNumberOfValues() - 1) * InputStep + MinInput; }

int LookupTable::SetOutputValues(const std::vector<float>& values) {
  try {
    OutputValues = values;
  } catch (...) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int LookupTable::SetOutputValues(const float* values, int count) {
  if (count < 0 || (count > 0 && !values)) return VEK_INVALID_PARAMETERS;
  try {
    OutputValues.assign(values, values + count);
  } catch (...) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

float LookupTable::Forward(float input) const {
  const int count = GetNumberOfValues();
  float t = (input - MinInput) / InputStep;
  // floor(t) >= 0 and ceil(t) <= count - 1; also refuses NaN.
  if (!(t >= 0.0f && static_cast<double>(t) <= static_cast<double>(count - 1))) {
    VEK_REPORT_ERROR("Input " << input << " is outside the lookup table (" << MinInput << " to " << GetMaxInput()
                              << ")");
    return kNaN;
  }
  const int i0 = static_cast<int>(std::floor(t));
  const int i1 = static_cast<int>(std::ceil(t));
  const float v0 = OutputValues[static_cast<size_t>(i0)];
  const float v1 = OutputValues[static_cast<size_t>(i1)];
  return v0 + (t - static_cast<float>(i0)) * (v1 - v0);
}

float LookupTable::Invert(float output) const {
  const int count = GetNumberOfValues();
  if (count == 0) {
    VEK_REPORT_ERROR("Cannot invert an empty lookup table");
    return kNaN;
  }
  int hi = count - 1;
  int lo = 0;
  int mid = hi / 2;
  while (hi > lo + 1) {
    if (OutputValues[static_cast<size_t>(mid)] > output)
      hi = mid;
    else
      lo = mid;
    mid = (hi + lo) / 2;
  }
  const float vlo = OutputValues[static_cast<size_t>(lo)];
  const float d = OutputValues[static_cast<size_t>(hi)] - vlo;
  if (d == 0.0f) return (static_cast<float>(lo) + 0.5f) * InputStep + MinInput;
  return ((output - vlo) / d + static_cast<float>(lo)) * InputStep + MinInput;
}

int LookupTable::DoublePoints(int times) {
  if (times <= 0) return VEK_SUCCESS;
  const size_t m = OutputValues.size();
  if (m >= 2) {
    // (m - 1) * 2^times + 1 values at the end; at most 31 doublings can fit an int.
    if (times > 31) return VEK_TOO_MANY_ELEMENTS;
    const long long last = static_cast<long long>(m - 1) << times;
    if (last + 1 > INT_MAX) return VEK_TOO_MANY_ELEMENTS;
    try {
      std::vector<float> current = OutputValues, next;
      for (int n = 0; n < times; ++n) {
        DoubleOnce(current, next);
        current.swap(next);
      }
      OutputValues.swap(current);
    } catch (...) {
      return VEK_FAILED_TO_ALLOCATE_MEMORY;
    }
  }
  InputStep = std::ldexp(InputStep, -times);
  return VEK_SUCCESS;
}

bool LookupTable::operator==(const LookupTable& other) const {
  return MinInput == other.MinInput && InputStep == other.InputStep && OutputValues == other.OutputValues;
}

void LookupTable::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "MinInput: " << MinInput << "\n";
  os << indent << "InputStep: " << InputStep << "\n";
  os << indent << "OutputValues size()" << OutputValues.size() << "\n";
}

}  // namespace vek
