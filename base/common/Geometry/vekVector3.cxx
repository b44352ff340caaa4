#include "vekVector3.h"

namespace vek {

std::ostream& operator<<(std::ostream& os, const Vector3& v) { return os << v.x << " " << v.y << " " << v.z; }

std::istream& operator>>(std::istream& is, Vector3& v) { return is >> v.x >> v.y >> v.z; }

}  // namespace vek
