#include "vekObjectStream.h"

#include <iomanip>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"

namespace vek {

namespace {

int Fail(int code, const std::string& message) { return ErrorHelper::ErrorWithCustomMessage(code, message); }

bool IsBlankOrLineEnd(int c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

void ObjectStream::WriteObjectHeader(std::ostream& os, const std::string& indent, const std::string& type,
                                     const std::string& version) {
  os << indent << "{ " << type << " " << version << " "
     << "\n";
}

void ObjectStream::WriteObjectFooter(std::ostream& os, const std::string& indent) { os << indent << "} \n"; }

int ObjectStream::ReadObjectHeader(std::istream& in, const std::string& incorrectHeaderMessage, bool& empty) {
  empty = false;
  const std::string badStream = "Failed to read object header, parsing error, bad stream.";
  if (!in.good()) return Fail(VEK_UNABLE_TO_READ_FROM_STREAM, badStream);
  const std::istream::pos_type start = in.tellg();
  int skipped = 0;
  int c = in.peek();
  while (IsBlankOrLineEnd(c)) {
    in.get();
    ++skipped;
    c = in.peek();
  }
  if (c == std::char_traits<char>::eof()) return Fail(VEK_UNABLE_TO_READ_FROM_STREAM, badStream);
  if (c != '{') {
    // Leave the stream as it was handed over, so that the caller may try another reading.
    if (start != std::istream::pos_type(-1)) {
      in.seekg(start);
    } else {
      while (skipped-- > 0) in.unget();
    }
    return Fail(VEK_UNABLE_TO_READ_FROM_STREAM,
                std::string("Failed to read object header, first character peek was '") + static_cast<char>(c) + "'");
  }
  in.get();
  c = in.peek();
  if (c == '}') {
    in.get();
    empty = true;
    return VEK_SUCCESS;
  }
  if (c != ' ') {
    ReadToEndOfObject(in);
    return Fail(VEK_UNABLE_TO_READ_CONNECTIVITY, incorrectHeaderMessage);
  }
  in.get();
  if (!in) return Fail(VEK_UNABLE_TO_READ_FROM_STREAM, badStream);
  return VEK_SUCCESS;
}

int ObjectStream::ReadObjectTypeAndVersion(std::istream& in, const std::string& type, const std::string& version) {
  std::string word;
  in >> std::setw(kMaxWordLength) >> word;
  if (word != type) {
    ReadToEndOfObject(in);
    return Fail(VEK_UNABLE_TO_READ_FROM_STREAM,
                "Failed to read " + type + " from stream, incorrect object type '" + word + "' found.");
  }
  word.clear();
  in >> std::setw(kMaxWordLength) >> word;
  if (word != version) {
    ReadToEndOfObject(in);
    return Fail(VEK_UNABLE_TO_READ_FROM_STREAM,
                "Failed to read " + type + " from stream, incorrect object version '" + word + "' found.");
  }
  return VEK_SUCCESS;
}

bool ObjectStream::IsAtEndOfObject(std::istream& in) {
  while (IsBlankOrLineEnd(in.peek())) in.get();
  return in.peek() == '}';
}

int ObjectStream::ReadToEndOfObject(std::istream& in) {
  if (!in.good())
    return Fail(VEK_UNABLE_TO_READ_FROM_STREAM, "Failed to read until end of object, stream handed was bad");
  // Only "}" changes the depth: the first one ends the object, as the format has always done.
  int depth = 1;
  while (depth > 0) {
    const int c = in.get();
    if (c == std::char_traits<char>::eof())
      return Fail(VEK_UNABLE_TO_READ_FROM_STREAM, "Failed to read to end of object.");
    if (c == '}') --depth;
  }
  return VEK_SUCCESS;
}

}  // namespace vek
