#pragma once
#include <algorithm>
#include <istream>
#include <ostream>
#include <string>

#include "vekDataArray.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekObjectStream.h"

namespace vek {

/// The brace-framed text form of a DataArray<T> inside a larger object's text (numbers in the
/// stream's own formatting, every line starting with the caller's indent):
///
///   { DataArray 1.0 \n
///   3 \n
///     1.5 \n  (one line per element)
///   } \n
///
/// A null array is written as the header and "} " alone, and still reported as a failure.
/// Reading empties the array first and fills it as values arrive: a damaged count can never
/// reserve more than kReserveLimit elements ahead of the values actually present, and on failure
/// the array is left empty. "{}" and a frame with no count read as an empty array.
struct DataArrayStream {
  static constexpr const char* kType = "DataArray";
  static constexpr const char* kVersion = "1.0";
  static constexpr int kReserveLimit = 4096;

  template <class T>
  static int Write(std::ostream& os, const DataArray<T>* array, const std::string& indent) {
    ObjectStream::WriteObjectHeader(os, indent, kType, kVersion);
    if (!array) {
      ObjectStream::WriteObjectFooter(os, indent);
      os.flush();
      return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_WRITE_CONNECTIVITY, "Failed to write NULL DataArray");
    }
    os << indent << array->GetNumberOfValues() << " "
       << "\n";
    for (int i = 0; i < array->GetNumberOfValues(); ++i)
      os << indent << "  " << array->GetValue(i) << " "
         << "\n";
    ObjectStream::WriteObjectFooter(os, indent);
    os.flush();
    if (os.fail())
      return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_WRITE_CONNECTIVITY,
                                                 "Failed to write connectivity object, stream has failed.");
    return VEK_SUCCESS;
  }

  template <class T>
  static int Read(std::istream& in, DataArray<T>& array) {
    array.Reset();
    bool empty = false;
    int status = ObjectStream::ReadObjectHeader(
        in, "Failed to read DataArray from stream, found incorrect object header.", empty);
    if (status != VEK_SUCCESS || empty) return status;
    status = ObjectStream::ReadObjectTypeAndVersion(in, kType, kVersion);
    if (status != VEK_SUCCESS) return status;
    if (ObjectStream::IsAtEndOfObject(in)) return ObjectStream::ReadToEndOfObject(in);

    long long count = -1;
    in >> count;
    if (!in || count < 0 || count > 0x7FFFFFFF) {
      in.clear(in.rdstate() & ~std::ios::failbit);
      ObjectStream::ReadToEndOfObject(in);
      return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_READ_FROM_STREAM,
                                                 "Failed to read DataArray from stream, bad element count.");
    }
    if (count > 0 && array.Allocate(static_cast<int>(std::min<long long>(count, kReserveLimit))) != VEK_SUCCESS)
      return VEK_FAILED_TO_ALLOCATE_MEMORY;
    for (long long i = 0; i < count; ++i) {
      T value{};
      if (!(in >> value)) {
        array.Reset();
        in.clear(in.rdstate() & ~std::ios::failbit);
        ObjectStream::ReadToEndOfObject(in);
        return ErrorHelper::ErrorWithCustomMessage(
            VEK_UNABLE_TO_READ_FROM_STREAM, "Failed to read DataArray from stream, element " + std::to_string(i) +
                                                " of " + std::to_string(count) + " missing.");
      }
      if (array.InsertNextValue(value) < 0) {
        array.Reset();
        return VEK_FAILED_TO_ALLOCATE_MEMORY;
      }
    }
    status = ObjectStream::ReadToEndOfObject(in);
    if (status != VEK_SUCCESS) array.Reset();
    return status;
  }
};

}  // namespace vek
