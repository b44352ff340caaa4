#pragma once
#include <istream>
#include <ostream>

#include "vekCommonExport.h"
#include "vekLensWarp.h"
#include "vekSmartPointer.h"

namespace vek {

/// Writes any lens model as its type tag, one blank and the model's own body, and reads it back
/// into a new object of the right class. Tags: 7 radial, 1 fish-eye, 2 equal-area fish-eye,
/// 3 Brown. Bodies use the stream's default number formatting (six significant digits).
///
/// Readers first empty the pointer. An unknown tag leaves it empty (VEK_BAD_PARSE); a body that
/// fails to read leaves the new object in the pointer with whatever it had read.
class VEK_EXPORT LensWarpIO {
 public:
  static constexpr int kRadialTag = 7;
  static constexpr int kFishEyeTag = 1;
  static constexpr int kEqualAreaFishEyeTag = 2;
  static constexpr int kBrownTag = 3;

  static int ReadFromStream(std::istream* in, SmartPointer<LensWarp>& warp);
  static int ReadFromFile(char const* fileName, SmartPointer<LensWarp>& warp);
  /// VEK_INVALID_PARAMETERS for an object of no known model (or none).
  static int WriteToStream(std::ostream* out, LensWarp* warp);
  /// Replaces the file in one step, with the platform's line end (IOBase::ReplaceTextFile): a
  /// failure leaves an earlier file whole. The stream form writes "\n", which a text-mode stream
  /// turns into the platform's line end; readers take LF and CR LF alike.
  static int WriteToFile(char const* fileName, LensWarp* warp);

 private:
  LensWarpIO() = delete;
};

}  // namespace vek
