#include "vekRecordFile.h"

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekObjectStream.h"
#include "vekPlatform.h"

namespace vek {

int RecordFile::Replace(const std::string& file, const std::string& content) {
  platform::FileLock otherProcesses(file + ".lock");
  return IOBase::ReplaceTextFile(file, content);
}

int RecordFile::ReadFrame(std::istream& in, const std::string& type, const std::string& version) {
  bool empty = false;
  int status = ObjectStream::ReadObjectHeader(
      in, "Failed to read " + type + " from stream, found incorrect object header.", empty);
  if (status != VEK_SUCCESS) return status;
  if (empty)
    return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_READ_FROM_STREAM,
                                               "Failed to read " + type + " from stream, the object is empty.");
  return ObjectStream::ReadObjectTypeAndVersion(in, type, version);
}

int RecordFile::Damaged(std::istream& in, int code, const std::string& message) {
  in.clear(in.rdstate() & ~std::ios::failbit);
  ObjectStream::ReadToEndOfObject(in);
  return ErrorHelper::ErrorWithCustomMessage(code, message);
}

int RecordFile::ReadEndOfObject(std::istream& in, const std::string& type) {
  if (!ObjectStream::IsAtEndOfObject(in))
    return Damaged(in, VEK_FILE_NOT_FORMATTED_PROPERLY,
                   "Failed to read " + type + " from stream, unexpected content before the end of the object.");
  return ObjectStream::ReadToEndOfObject(in);
}

}  // namespace vek
