#pragma once
#include <cmath>
#include <istream>
#include <sstream>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"

namespace vek::lens_detail {

/// The pieces every lens body reader shares. All models report with the radial model's wording.
inline constexpr double kVersionTolerance = 0.001;

/// Reads the version as a float; VEK_BAD_PARSE unless it is within 0.001 of `expected`.
inline int ReadVersion(std::istream* in, double expected) {
  float version = 0;
  if (in) *in >> version;
  if (std::fabs(version - expected) <= kVersionTolerance) return VEK_SUCCESS;
  std::ostringstream message;
  message << "Unknown File Version " << version << " while reading the radial lens distortion.";
  return ErrorHelper::ErrorWithCustomMessage(VEK_BAD_PARSE, message.str());
}

/// Reads `count` numbers, stopping before a read when the stream has failed or ended; a read
/// that fails still counts (its value is what the stream left, 0).
template <class T>
int ReadNumbers(std::istream* in, T* values, int count) {
  int read = 0;
  while (read < count && in && !in->fail() && !in->eof()) {
    T value = 0;
    *in >> value;
    values[read++] = value;
  }
  if (read == count) return VEK_SUCCESS;
  return ErrorHelper::ErrorWithCustomMessage(VEK_BAD_PARSE,
                                             "Not enough data in file while reading the radial lens distortion.");
}

}  // namespace vek::lens_detail
