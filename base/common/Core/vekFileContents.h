#pragma once
#include <string>

#include "vekCommonExport.h"

namespace vek {

/// Puts new content in place of a file in one step (platform::ReplaceFileContents): readers find
/// the old file or the new one, never a short one, and a failure leaves the old file whole.
///
/// Text files get the line end of the system they are written on, CR LF on Windows and LF
/// elsewhere, as a file written through a text-mode stream would: every "\n" (or "\r\n") of the
/// text handed to ReplaceText becomes the platform's line end. Writers build their text with "\n"
/// and leave the rest to ReplaceText. Content that is not text (images, raw records) goes through
/// Replace byte for byte.
///
/// Both return VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING, with the custom message that names the file,
/// when the file cannot be written: a directory or a read-only file in its place, or a folder
/// that does not exist. VEK_UNABLE_TO_COPY_FILE ("Unable to replace <name>") when the written
/// temporary cannot take the file's place. ReplaceText: VEK_FAILED_TO_ALLOCATE_MEMORY when there is
/// no room for the converted text.
class VEK_EXPORT FileContents {
 public:
  static int Replace(const std::string& name, const std::string& bytes);
  static int ReplaceText(const std::string& name, const std::string& text);
  /// The bytes of a text file holding `text` (platform::WithPlatformLineEnds), for writers with
  /// codes of their own. VEK_FAILED_TO_ALLOCATE_MEMORY when there is no room for them.
  static int TextBytes(const std::string& text, std::string& bytes);

 private:
  FileContents() = delete;
};

}  // namespace vek
