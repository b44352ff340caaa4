#pragma once
#include <istream>
#include <ostream>
#include <string>

#include "vekCommonExport.h"

namespace vek {

/// The brace-framed text form an object takes inside a larger object's text:
///
///   <indent>{ <Type> <Version> \n
///   <indent>...the object's own lines...
///   <indent>} \n
///
/// Readers take the frame apart in steps: ReadObjectHeader, ReadObjectTypeAndVersion, the body,
/// ReadToEndOfObject. Every failure returns its code with a custom message; type and version
/// failures first skip the rest of the object, so the caller's stream stays in step.
///
/// Reading to the end of an object takes everything up to and including the first "}": opening
/// braces on the way are not counted, so a nested object's "}" ends the read. Objects that nest
/// others read their inner objects completely before they skip to their own end.
class VEK_EXPORT ObjectStream {
 public:
  static void WriteObjectHeader(std::ostream& os, const std::string& indent, const std::string& type,
                                const std::string& version);
  static void WriteObjectFooter(std::ostream& os, const std::string& indent);

  /// Skips blanks, tabs and line ends, then takes "{ ". "{}" is an empty object: both characters
  /// are taken and `empty` is set. "{" followed by anything but a blank skips the object and
  /// returns VEK_UNABLE_TO_READ_CONNECTIVITY with `incorrectHeaderMessage`. Anything else in
  /// place of "{" is put back (blanks included) and gives VEK_UNABLE_TO_READ_FROM_STREAM
  /// ("Failed to read object header, first character peek was 'c'"); a stream that fails or ends
  /// first gives VEK_UNABLE_TO_READ_FROM_STREAM ("Failed to read object header, parsing error, bad
  /// stream.").
  static int ReadObjectHeader(std::istream& in, const std::string& incorrectHeaderMessage, bool& empty);
  /// Reads the type word and the version word; a mismatch skips the object and gives
  /// VEK_UNABLE_TO_READ_FROM_STREAM ("Failed to read <type> from stream, incorrect object type
  /// '<word>' found." or "... incorrect object version '<word>' found."). Words longer than
  /// kMaxWordLength are cut there.
  static int ReadObjectTypeAndVersion(std::istream& in, const std::string& type, const std::string& version);
  /// True when the next character after blanks and line ends is "}" (left in the stream).
  static bool IsAtEndOfObject(std::istream& in);
  /// VEK_UNABLE_TO_READ_FROM_STREAM when the stream is not good at the start ("Failed to read until
  /// end of object, stream handed was bad") or ends before a "}" ("Failed to read to end of object.").
  static int ReadToEndOfObject(std::istream& in);

  static constexpr int kMaxWordLength = 256;

 private:
  ObjectStream() = delete;
};

}  // namespace vek
