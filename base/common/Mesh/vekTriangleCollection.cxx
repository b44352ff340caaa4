#include "vekTriangleCollection.h"

#include <new>
#include <ostream>

#include "vekErrorCodes.h"

namespace vek {

TriangleCollection* TriangleCollection::New() { return new (std::nothrow) TriangleCollection; }

int TriangleCollection::AddTriangle(const vec2<double>& a, const vec2<double>& b, const vec2<double>& c, int firstId,
                                    int secondId) {
  try {
    Items.push_back(Item{{a, b, c}, firstId, secondId});
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

int TriangleCollection::Reserve(int n) {
  if (n < 0) return VEK_INVALID_PARAMETERS;
  try {
    Items.reserve(static_cast<size_t>(n));
  } catch (const std::exception&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

void TriangleCollection::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "NumberOfTriangles: " << Items.size() << "\n";
}

}  // namespace vek
