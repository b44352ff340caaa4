#include "vekPlatform.h"

#include <cstdio>

namespace vek::platform {

FileReplacement ReplaceFileContents(const std::string& path, const std::string& bytes) {
  if (path.empty()) return FileReplacement::NotWritten;
  const std::string temporary = path + ".tmp";
  if (!WriteFileDurably(temporary, bytes)) {
    std::remove(temporary.c_str());
    return FileReplacement::NotWritten;
  }
  if (!ReplaceFileAtomically(temporary, path)) {
    std::remove(temporary.c_str());
    return FileReplacement::NotReplaced;
  }
  return FileReplacement::Done;
}

}  // namespace vek::platform
