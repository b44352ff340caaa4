#include "vekOutputWindowCleanup.h"

#include "vekOutputFile.h"

namespace vek {

unsigned int OutputWindowCleanup::m_Num = 0;

OutputWindowCleanup::OutputWindowCleanup() { ++m_Num; }

OutputWindowCleanup::~OutputWindowCleanup() {
  if (--m_Num == 0) OutputFile::Destroy();
}

}  // namespace vek
