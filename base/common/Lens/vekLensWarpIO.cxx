#include "vekLensWarpIO.h"

#include <fstream>
#include <memory>
#include <sstream>

#include "vekBrownLensWarp.h"
#include "vekEqualAreaFishEyeLensWarp.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekFishEyeLensWarp.h"
#include "vekIOBase.h"
#include "vekRadialLensWarp.h"

namespace vek {

int LensWarpIO::ReadFromStream(std::istream* in, SmartPointer<LensWarp>& warp) {
  warp = nullptr;
  int tag = -1;
  if (in) *in >> tag;
  LensWarp* created = nullptr;
  if (in && !in->fail()) {
    switch (tag) {
      case kRadialTag:
        created = RadialLensWarp::New();
        break;
      case kFishEyeTag:
        created = FishEyeLensWarp::New();
        break;
      case kEqualAreaFishEyeTag:
        created = EqualAreaFishEyeLensWarp::New();
        break;
      case kBrownTag:
        created = BrownLensWarp::New();
        break;
      default:
        break;
    }
  }
  if (!created)
    return ErrorHelper::ErrorWithCustomMessage(VEK_BAD_PARSE, "Invalid File for reading lens warp information");
  warp = SmartPointer<LensWarp>::TakeReference(created);
  return created->Read(in);
}

int LensWarpIO::WriteToStream(std::ostream* out, LensWarp* warp) {
  int tag = -1;
  if (dynamic_cast<RadialLensWarp*>(warp))
    tag = kRadialTag;
  else if (dynamic_cast<FishEyeLensWarp*>(warp))
    tag = kFishEyeTag;
  else if (dynamic_cast<EqualAreaFishEyeLensWarp*>(warp))
    tag = kEqualAreaFishEyeTag;
  else if (dynamic_cast<BrownLensWarp*>(warp))
    tag = kBrownTag;
  if (tag < 0)
    return ErrorHelper::ErrorWithCustomMessage(
        VEK_INVALID_PARAMETERS,
        "Unable to write lens distortion warp to file.  Unknown lens distortion correction type.");
  if (!out) return VEK_UNABLE_TO_WRITE_TO_STREAM;
  *out << tag << " ";
  return warp->Write(out);
}

int LensWarpIO::ReadFromFile(char const* fileName, SmartPointer<LensWarp>& warp) {
  warp = nullptr;
  std::ifstream* in = nullptr;
  const int code = IOBase::OpenFileForReading(in, fileName ? fileName : "");
  if (code != VEK_SUCCESS) return code;
  const std::unique_ptr<std::ifstream> owned(in);
  return ReadFromStream(in, warp);
}

int LensWarpIO::WriteToFile(char const* fileName, LensWarp* warp) {
  std::ostringstream out;
  const int result = WriteToStream(&out, warp);
  if (result != VEK_SUCCESS) return result;
  return IOBase::ReplaceTextFile(fileName ? fileName : "", out.str());
}

}  // namespace vek
