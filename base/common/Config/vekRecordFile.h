#pragma once
#include <algorithm>
#include <fstream>
#include <istream>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "vekCommonExport.h"
#include "vekErrorCodes.h"
#include "vekIOBase.h"
#include "vekVec2.h"

namespace vek {

/// What the calibration records share on disk and in their object stream form.
///
/// Records are text files with the platform's line end (CR LF on Windows, LF elsewhere; their
/// stream forms write "\n" and Replace converts); readers take either.
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

  /// VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING (with the file name as custom message) when the file
  /// cannot be written (a directory in its place, a folder that does not exist),
  /// VEK_UNABLE_TO_COPY_FILE when the new content cannot replace it; the old file is untouched in
  /// both cases.
  static int Replace(const std::string& file, const std::string& content);

  /// Reads "{ <type> <version> ". An empty object "{}" is not a record of the type:
  /// VEK_UNABLE_TO_READ_FROM_STREAM; other failures as ObjectStream gives them.
  static int ReadFrame(std::istream& in, const std::string& type, const std::string& version);
  /// Skips the rest of a damaged object, so the stream stays in step, and returns `code` with
  /// `message` as custom message.
  static int Damaged(std::istream& in, int code, const std::string& message);
  /// Takes the closing brace; anything else first is VEK_FILE_NOT_FORMATTED_PROPERLY.
  static int ReadEndOfObject(std::istream& in, const std::string& type);

  /// Reads `count` blank-separated values (floats, or points as x y) into `values`. A missing one
  /// is reported as "<failed><what> k of count missing." (VEK_UNABLE_TO_READ_NUM_FROM_FILE) and
  /// the damaged object skipped; `values` is then partly filled and must be dropped.
  template <class T>
  static int ReadValues(std::istream& in, long long count, std::vector<T>& values, const std::string& failed,
                        const char* what);

  /// A record's stream form (its Write(std::ostream&)) written to `file` as Replace does.
  template <class Record>
  static int WriteRecord(const Record& record, const std::string& file) {
    std::ostringstream text;
    const int status = record.Write(text);
    return status == VEK_SUCCESS ? Replace(file, text.str()) : status;
  }
  /// One record read from `file` (by its Read(std::istream&)); the opening errors of IOBase.
  template <class Record>
  static int ReadRecord(Record& record, const std::string& file) {
    std::ifstream* opened = nullptr;
    const int status = IOBase::OpenFileForReading(opened, file);
    if (status != VEK_SUCCESS) return status;
    std::unique_ptr<std::ifstream> in(opened);
    return record.Read(*in);
  }

 private:
  RecordFile() = delete;

  static bool ReadOne(std::istream& in, float& value) { return static_cast<bool>(in >> value); }
  static bool ReadOne(std::istream& in, vec2<float>& point) { return static_cast<bool>(in >> point.x >> point.y); }
};

template <class T>
int RecordFile::ReadValues(std::istream& in, long long count, std::vector<T>& values, const std::string& failed,
                           const char* what) {
  try {
    values.reserve(static_cast<size_t>(std::min<long long>(count, kReserveLimit)));
    for (long long k = 0; k < count; ++k) {
      T value;
      if (!ReadOne(in, value))
        return Damaged(in, VEK_UNABLE_TO_READ_NUM_FROM_FILE,
                       failed + what + " " + std::to_string(k) + " of " + std::to_string(count) + " missing.");
      values.push_back(value);
    }
  } catch (const std::bad_alloc&) {
    Damaged(in, VEK_FAILED_TO_ALLOCATE_MEMORY, failed + "out of memory.");
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return VEK_SUCCESS;
}

}  // namespace vek
