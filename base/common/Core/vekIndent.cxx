#include "vekIndent.h"

#include <algorithm>

namespace vek {

Indent Indent::GetNextIndent() const { return Indent(std::min(Blanks + kStep, kMaximum)); }

std::ostream& operator<<(std::ostream& os, const Indent& indent) {
  for (int i = 0; i < indent.GetIndentation(); ++i) os << ' ';
  return os;
}

std::wostream& operator<<(std::wostream& os, const Indent& indent) {
  for (int i = 0; i < indent.GetIndentation(); ++i) os << L' ';
  return os;
}

}  // namespace vek
