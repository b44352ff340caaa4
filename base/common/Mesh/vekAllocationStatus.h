#pragma once
#include <new>
#include <stdexcept>

#include "vekErrorCodes.h"

namespace vek {

/// Runs `work`, which returns a status code, and turns running out of memory inside it (a
/// container that cannot grow) into VEK_FAILED_TO_ALLOCATE_MEMORY, so that no exception leaves
/// the library.
template <class Work>
int CatchAllocationFailure(Work&& work) noexcept {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  } catch (const std::length_error&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

}  // namespace vek
