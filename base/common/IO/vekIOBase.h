#pragma once
#include <fstream>
#include <istream>
#include <ostream>
#include <string>

#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

class RectilinearGrid;

/// The base of every class that keeps a file of its own: the file name, and the line and record
/// primitives that all text formats of the library are built on.
///
/// Files are read in binary mode, and the line readers drop one carriage return before a line end,
/// so a file reads the same whether its lines end in LF or CR LF, on every platform. The library's
/// text files are written with the platform's line end (CR LF on Windows, LF elsewhere): writers
/// build the text with "\n" and hand it to ReplaceTextFile, or write to a text-mode stream
/// (OpenFileForWriting), which turns each "\n" into the platform's line end. A raw grid record must
/// go to a binary stream instead: a text-mode stream on Windows would add a CR before every 0x0A
/// byte of its floats and ints.
///
/// A "relevant" line is one that is not empty and does not start with "#". The two relevant-line
/// readers differ on purpose: the buffer form also skips lines of blanks, the string form returns
/// them. A last line without a line end counts as a truncated file (VEK_FILE_NOT_FORMATTED_PROPERLY).
///
/// The grid record is a label line, then Offsetx Offsety Spacex Spacey Numx Numy: as text, each
/// value followed by one blank and the line ended; raw, 4 floats and 2 ints as 24 bytes,
/// little-endian whatever the machine, with no line end.
class VEK_EXPORT IOBase : public Object {
 public:
  /// Line buffers handed to ReadLine hold this many bytes: 511 characters and the zero.
  static constexpr int kLineBufferSize = 512;

  static IOBase* New();
  const char* GetClassName() const override { return "IOBase"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// A null name empties the file name.
  void SetFileName(const char* name) { FileName = name ? name : ""; }
  void SetFileName(const std::string& name) { FileName = name; }
  const std::string& GetFileName() const { return FileName; }

  /// A text-mode stream, truncating: each "\n" written becomes the platform's line end. On success
  /// the caller owns the stream and deletes it; on failure `out` is null.
  static int OpenFileForWriting(std::ofstream*& out, const std::string& name);
  /// Puts `content` in place of the file `name` in one step, byte for byte (FileContents::Replace),
  /// so that a failure leaves the old file whole. VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING, with
  /// OpenFileForWriting's message, when it cannot be written (a directory or a read-only file in
  /// its place, a folder that does not exist); VEK_UNABLE_TO_COPY_FILE ("Unable to replace
  /// <name>") when it cannot be put in place.
  static int ReplaceFile(const std::string& name, const std::string& content);
  /// As ReplaceFile for text built with "\n": the file gets the platform's line end
  /// (FileContents::ReplaceText).
  static int ReplaceTextFile(const std::string& name, const std::string& text);
  /// On success the caller owns the stream and deletes it; on failure `in` is null.
  static int OpenFileForReading(std::ifstream*& in, const std::string& name);

  /// Reads one line of at most 511 characters into `buffer` (kLineBufferSize bytes), ended by LF or
  /// CR LF alike. A longer line leaves the stream failed; a failed or finished stream gives
  /// VEK_FILE_NOT_FORMATTED_PROPERLY.
  static int ReadLine(std::istream* in, char* buffer);
  /// Skips comment lines, empty lines and lines of blanks (a tab counts as content).
  static int ReadLineIgnoreIrrelevantLines(std::istream* in, char* buffer);
  /// Skips comment lines and empty lines only; no length limit beyond what the stream holds.
  static int ReadLineIgnoreIrrelevantLines(std::istream* in, std::string& line);
  /// Reads the next relevant line as "key<d>value[<d>...]", where <d> is any run of characters
  /// of `delimiters`; the first token must be `key`, `value` gets the second.
  static int ReadLineWithSingleValue(std::istream& in, const std::string& key, const std::string& delimiters,
                                     std::string& value);

  /// The next relevant line must contain `label`; the six values then follow. A value missing or
  /// unreadable gives VEK_UNABLE_TO_READ_NUM_FROM_FILE and leaves the grid untouched.
  static int ReadRectilinearGrid(std::istream* in, const char* label, const int& raw, RectilinearGrid& grid);
  /// VEK_UNABLE_TO_WRITE_TO_STREAM when the stream is missing or has failed.
  static int WriteRectilinearGrid(std::ostream* out, const char* label, const RectilinearGrid& grid, const int& raw);

 protected:
  IOBase() = default;
  ~IOBase() override = default;

 private:
  IOBase(const IOBase&) = delete;
  IOBase& operator=(const IOBase&) = delete;

  std::string FileName;
};

}  // namespace vek
