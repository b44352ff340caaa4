#include "vekQuadCollection.h"

#include <new>
#include <ostream>

#include "vekErrorCodes.h"

namespace vek {

QuadCollection* QuadCollection::New() { return new (std::nothrow) QuadCollection; }

int QuadCollection::AddQuad(const OrderedQuadrilateral& quad, int id) {
  try {
    Items.push_back(Item{quad, id});
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int QuadCollection::Reserve(int n) {
  if (n < 0) return VEK_INVALID_PARAMETERS;
  try {
    Items.reserve(static_cast<size_t>(n));
  } catch (const std::exception&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

void QuadCollection::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "NumberOfQuads: " << Items.size() << "\n";
}

}  // namespace vek
