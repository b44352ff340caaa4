#pragma once
#include <istream>
#include <string>

#include "vekCommonExport.h"

namespace vek {

/// What the calibration records share on disk and in their object stream form.
///
/// Writing never loses a record in a crash: the whole new content is written durably to
/// file + ".tmp" and then replaces the file in one step, so readers find the old record or the
/// new one, never a short one. A writer in another process is kept out for that time by the lock
/// on file + ".lock", the same one the option files use.
///
/// Records write floats with 9 significant digits, enough for every float to read back bit for bit.
class VEK_EXPORT RecordFile {
 public:
  static constexpr int kFloatDigits = 9;
  /// Reservations made from a count read in a file stop here, so a damaged count cannot claim
  /// memory ahead of the values actually present.
  static constexpr int kReserveLimit = 4096;

  /// VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING (with the file name as custom message) when the new
  /// content cannot be written, VEK_UNABLE_TO_COPY_FILE when it cannot replace the file; the old
  /// file is untouched in both cases.
  static int Replace(const std::string& file, const std::string& content);

  /// Reads "{ <type> <version> ". An empty object "{}" is not a record of the type:
  /// VEK_UNABLE_TO_READ_FROM_STREAM; other failures as ObjectStream gives them.
  static int ReadFrame(std::istream& in, const std::string& type, const std::string& version);
  /// Skips the rest of a damaged object, so the stream stays in step, and returns `code` with
  /// `message` as custom message.
  static int Damaged(std::istream& in, int code, const std::string& message);
  /// Takes the closing brace; anything else first is VEK_FILE_NOT_FORMATTED_PROPERLY.
  static int ReadEndOfObject(std::istream& in, const std::string& type);

 private:
  RecordFile() = delete;
};

}  // namespace vek
