#include "vekTriangleCollection.h"

#include <new>
#include <ostream>

#include "vekAllocationStatus.h"

namespace vek {

TriangleCollection* TriangleCollection::New() { return new (std::nothrow) TriangleCollection; }

int TriangleCollection::AddTriangle(const vec2<double>& a, const vec2<double>& b, const vec2<double>& c, int firstId,
                                    int secondId) {
  return CatchAllocationFailure([&] {
    Items.push_back(Item{{a, b, c}, firstId, secondId});
    return VEK_SUCCESS;
  });
}

int TriangleCollection::Reserve(int n) {
  if (n < 0) return VEK_INVALID_PARAMETERS;
  return CatchAllocationFailure([&] {
    Items.reserve(static_cast<size_t>(n));
    return VEK_SUCCESS;
  });
}

void TriangleCollection::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "NumberOfTriangles: " << Items.size() << "\n";
}

}  // namespace vek
