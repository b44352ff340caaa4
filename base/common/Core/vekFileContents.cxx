#include "vekFileContents.h"

#include <new>

#include "vekCustomLanguageString.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekPlatform.h"

namespace vek {

int FileContents::Replace(const std::string& name, const std::string& bytes) {
  switch (platform::ReplaceFileContents(name, bytes)) {
    case platform::FileReplacement::Done:
      return VEK_SUCCESS;
    case platform::FileReplacement::NotWritten:
      return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING,
                                                 CustomLanguageString("VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING_CUSTOM")
                                                     << name);
    case platform::FileReplacement::NotReplaced:
      break;
  }
  return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_COPY_FILE, "Unable to replace " + name);
}

int FileContents::ReplaceText(const std::string& name, const std::string& text) {
  std::string bytes;
  const int status = TextBytes(text, bytes);
  return status == VEK_SUCCESS ? Replace(name, bytes) : status;
}

int FileContents::TextBytes(const std::string& text, std::string& bytes) {
  try {
    bytes = platform::WithPlatformLineEnds(text);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

}  // namespace vek
