#pragma once
#include <string>
#include <vector>

#include "vekCommonExport.h"

namespace vek {

/// The line rules of the option store's text files (options, defaults and option info files).
///
/// Reading: lines end in LF or CR LF alike. They are read with a 512-byte buffer that also holds
/// the line end, so a line holds at most 510 characters (a longer one reads as several), and a
/// last line without a line end is not read: files written by the store always end with one.
/// Tokens are runs of characters other than LF, TAB, CR, FF, BEL and blank; a line whose first
/// token starts with "#" is a comment. Comments and empty lines are skipped when lines are
/// interpreted, and kept when a file is rewritten.
///
/// Writing: every line gets the platform's line end, CR LF on Windows and LF elsewhere, whatever
/// the line end it had before. Rewriting (AddOrModifyOneLine) never loses data: the new content
/// goes to file + ".tmp", is
/// forced to disk, and then replaces the file in one step, so a crash leaves the old file or the
/// new one, never a missing or partial one. Writers in other processes are kept out by an
/// exclusive lock on file + ".lock" held for the whole read-modify-write.
class VEK_EXPORT OptionFile {
 public:
  static constexpr int kLineBufferSize = 512;
  static constexpr char kDelimiters[] = "\n\t\r\f\a ";

  /// Every line of the file without its line end. VEK_FILE_NOT_FOUND when it cannot be opened or
  /// read (a directory).
  static int GetFileLines(const std::string& file, std::vector<std::string>& lines);
  static void Tokenize(const std::string& text, std::vector<std::string>& tokens,
                       const std::string& delimiters = kDelimiters);
  /// Whether the line is a comment (its first character is "#").
  static bool IsComment(const std::string& line);
  /// The last line whose first token is exactly `key`, without a trailing CR; "" when none.
  static int GetLastMatchingLine(const std::string& file, const std::string& key, std::string& line);

  /// The value text of an option line "key = value": "" for two tokens, token 3 for three, and
  /// for more the rest of the line from token 3 on (inner and trailing blanks kept).
  /// VEK_FILE_NOT_FORMATTED_PROPERLY for a line of one token.
  static int ParseOptionLine(const std::string& line, std::string& valueText);
  /// The columns of an info line: name, type, visibility, default, minimum, maximum. For Int,
  /// Float, Double and Bool every column is one token; for other types the default is the rest
  /// of the line and there is no range. VEK_FILE_NOT_FORMATTED_PROPERLY below three tokens,
  /// VEK_INVALID_PARAMETERS when the visibility is no integer.
  static int ParseOptionInfoLine(const std::string& line, std::string& name, std::string& type, int& visibility,
                                 std::string& defaultText, std::string& minimum, std::string& maximum);

  /// Replaces the first line whose first token is `key` by `newLine` (which carries its own line
  /// end, "\n", or is empty to delete), drops later lines with that key, and appends `newLine` when
  /// no line matched. Errors: VEK_FILE_NOT_FOUND for an empty path, and ReplaceContent's.
  static int AddOrModifyOneLine(const std::string& file, const std::string& key, const std::string& newLine);

  /// Puts `content` (lines ended by "\n") in place of `file` through file + ".tmp"
  /// (platform::ReplaceFileContents), with the platform's line end. VEK_UNABLE_TO_COPY_FILE, plain,
  /// when it cannot take the file's place, whatever stood in the way: a directory or a read-only
  /// file there, a folder that does not exist, a failed rename. When the file or its temporary
  /// cannot be written, "Failure writing to <file>!" goes to the error channel first. The file is
  /// untouched in every case.
  static int ReplaceContent(const std::string& file, const std::string& content);

  /// Merges two info files into `result`: every line of `first`, with a name's line replaced by
  /// the last line for that name in `second`, then the names only `second` has, in its order.
  /// Comments and empty lines of `first` are kept. A missing `first` counts as empty; a missing
  /// `second` as well; the result is written as a rewrite (see above).
  static int MergeOptionInfoFiles(const std::string& first, const std::string& second, const std::string& result);

 private:
  OptionFile() = delete;
};

}  // namespace vek
