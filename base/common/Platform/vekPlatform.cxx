#include "vekPlatform.h"

#include <cstdio>
#include <cstring>

namespace vek::platform {

FileReplacement ReplaceFileContents(const std::string& path, const std::string& bytes) {
  if (path.empty() || FileRefusesWriting(path)) return FileReplacement::NotWritten;
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

std::string WithPlatformLineEnds(const std::string& text) {
  const char* lineEnd = LineEnd();
  const std::size_t lineEndLength = std::strlen(lineEnd);
  std::string result;
  result.reserve(text.size() + (lineEndLength > 1 ? text.size() / 16 : 0));
  std::size_t start = 0;
  for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', start)) {
    const std::size_t end = at > start && text[at - 1] == '\r' ? at - 1 : at;
    result.append(text, start, end - start).append(lineEnd, lineEndLength);
    start = at + 1;
  }
  return result.append(text, start, std::string::npos);
}

}  // namespace vek::platform
