#include "vekQuadCollection.h"

#include <new>
#include <ostream>

#include "vekAllocationStatus.h"

namespace vek {

QuadCollection* QuadCollection::New() { return new (std::nothrow) QuadCollection; }

int QuadCollection::AddQuad(const OrderedQuadrilateral& quad, int id) {
  return CatchAllocationFailure([&] {
    Items.push_back(Item{quad, id});
    return VEK_SUCCESS;
  });
}

int QuadCollection::Reserve(int n) {
  if (n < 0) return VEK_INVALID_PARAMETERS;
  return CatchAllocationFailure([&] {
    Items.reserve(static_cast<size_t>(n));
    return VEK_SUCCESS;
  });
}

void QuadCollection::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "NumberOfQuads: " << Items.size() << "\n";
}

}  // namespace vek
