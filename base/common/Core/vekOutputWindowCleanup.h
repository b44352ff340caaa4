#pragma once
#include "vekCommonExport.h"

namespace vek {

/// A counted guard of the output channels: when the last guard goes, the debug log is closed.
class VEK_EXPORT OutputWindowCleanup {
 public:
  OutputWindowCleanup();
  ~OutputWindowCleanup();
  static unsigned int GetCount() { return m_Num; }

 private:
  OutputWindowCleanup(const OutputWindowCleanup&) = delete;
  OutputWindowCleanup& operator=(const OutputWindowCleanup&) = delete;

  static unsigned int m_Num;
};

}  // namespace vek
