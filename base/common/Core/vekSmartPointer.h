#pragma once
#include <cstddef>
#include <utility>

namespace vek {

/// Holds one reference of an Object: Register on taking a pointer, UnRegister on letting it go.
/// Constructing from a raw pointer takes a new reference; TakeReference adopts the one New() gave.
template <class T>
class SmartPointer {
 public:
  SmartPointer() = default;
  SmartPointer(std::nullptr_t) {}
  SmartPointer(T* object) : Pointer(object) {
    if (Pointer) Pointer->Register();
  }
  SmartPointer(const SmartPointer& other) : SmartPointer(other.Pointer) {}
  SmartPointer(SmartPointer&& other) noexcept : Pointer(std::exchange(other.Pointer, nullptr)) {}
  ~SmartPointer() {
    if (Pointer) Pointer->UnRegister();
  }
  SmartPointer& operator=(SmartPointer other) noexcept {
    std::swap(Pointer, other.Pointer);
    return *this;
  }

  /// A holder of a fresh object from New(), without an extra reference.
  static SmartPointer TakeReference(T* object) {
    SmartPointer held;
    held.Pointer = object;
    return held;
  }
  /// A new object of T, held once.
  static SmartPointer New() { return TakeReference(T::New()); }

  T* GetPointer() const { return Pointer; }
  T* operator->() const { return Pointer; }
  T& operator*() const { return *Pointer; }
  explicit operator bool() const { return Pointer != nullptr; }
  bool operator==(const SmartPointer& other) const { return Pointer == other.Pointer; }

 private:
  T* Pointer = nullptr;
};

}  // namespace vek
