#pragma once
#include <new>
#include <vector>

#include "vekErrorCodes.h"
#include "vekObject.h"

namespace vek {

/// A reference-counted growable array of T, shared between objects by Register/UnRegister
/// (a grid's coordinate lists, a connectivity model's index lists).
///
/// The count is the number of values in use; Allocate only reserves room and never changes it.
/// SetNumberOfValues keeps the existing values and value-initialises new ones (0 for numbers).
/// Element access is unchecked: indices below GetNumberOfValues are the caller's business. Growing
/// operations catch allocation failure and report VEK_FAILED_TO_ALLOCATE_MEMORY with the array
/// unchanged. The text form of the array lives with the stream code, not here.
template <class T>
class DataArray : public Object {
 public:
  static DataArray* New() { return new (std::nothrow) DataArray; }
  const char* GetClassName() const override { return "DataArray"; }
  void PrintSelf(std::ostream& os, Indent indent) const override {
    Object::PrintSelf(os, indent);
    os << indent << "NumberOfValues: " << GetNumberOfValues() << "\n";
  }

  int GetNumberOfValues() const { return static_cast<int>(Values.size()); }
  /// Reserves room for n values without changing the count.
  int Allocate(int n) {
    if (n < 0) return VEK_INVALID_PARAMETERS;
    try {
      Values.reserve(static_cast<size_t>(n));
    } catch (...) {
      return VEK_FAILED_TO_ALLOCATE_MEMORY;
    }
    return VEK_SUCCESS;
  }
  int SetNumberOfValues(int n) {
    if (n < 0) return VEK_INVALID_PARAMETERS;
    try {
      Values.resize(static_cast<size_t>(n));
    } catch (...) {
      return VEK_FAILED_TO_ALLOCATE_MEMORY;
    }
    return VEK_SUCCESS;
  }
  /// Appends a value; returns its index, or -1 when the array could not grow.
  int InsertNextValue(const T& value) {
    try {
      Values.push_back(value);
    } catch (...) {
      return -1;
    }
    return GetNumberOfValues() - 1;
  }
  /// Empties the array (count 0); the room stays reserved.
  void Reset() { Values.clear(); }
  /// Gives back room beyond the count.
  void Squeeze() {
    try {
      Values.shrink_to_fit();
    } catch (...) {
    }
  }

  T* GetPointer() { return Values.data(); }
  const T* GetPointer() const { return Values.data(); }
  T& operator[](int i) { return Values[static_cast<size_t>(i)]; }
  const T& operator[](int i) const { return Values[static_cast<size_t>(i)]; }
  const T& GetValue(int i) const { return Values[static_cast<size_t>(i)]; }
  void SetValue(int i, const T& value) { Values[static_cast<size_t>(i)] = value; }

 protected:
  DataArray() = default;
  ~DataArray() override = default;

 private:
  DataArray(const DataArray&) = delete;
  DataArray& operator=(const DataArray&) = delete;

  std::vector<T> Values;
};

}  // namespace vek
