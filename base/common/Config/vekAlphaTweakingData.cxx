#include "vekAlphaTweakingData.h"

#include <new>

namespace vek {

AlphaTweakingData* AlphaTweakingData::New() { return new (std::nothrow) AlphaTweakingData; }

}  // namespace vek
