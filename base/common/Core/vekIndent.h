#pragma once
#include <ostream>

#include "vekCommonExport.h"

namespace vek {

/// The indentation of one printed line: a number of blanks, growing by 2 per nesting level and
/// never beyond 40.
class VEK_EXPORT Indent {
 public:
  static constexpr int kMaximum = 40;
  static constexpr int kStep = 2;

  explicit Indent(int blanks = 0) : Blanks(blanks) {}
  Indent GetNextIndent() const;
  int GetIndentation() const { return Blanks; }

 private:
  int Blanks;
};

VEK_EXPORT std::ostream& operator<<(std::ostream& os, const Indent& indent);
VEK_EXPORT std::wostream& operator<<(std::wostream& os, const Indent& indent);

}  // namespace vek
