// Hold a fresh object like this:
//   auto mesh = SmartPointer<TextureMesh>::New();                      // one reference, freed with `mesh`
//   auto warp = SmartPointer<LensWarp>::TakeReference(BrownLensWarp::New());  // the same, for any New()
// Never like this:
//   SmartPointer<TextureMesh> mesh = TextureMesh::New();   // LEAKS: New() gave one reference and the
//                                                          // raw-pointer constructor takes a second
// A raw pointer that someone else owns is the case the raw-pointer constructor is for.
#pragma once
#include <concepts>
#include <cstddef>
#include <utility>

namespace vek {

/// Holds one reference of an Object: Register on taking a pointer, UnRegister on letting it go.
/// Constructing from a raw pointer takes a new reference; TakeReference adopts the one New() gave.
/// A holder of a derived class converts to a holder of its base, as the raw pointers do.
template <class T>
class SmartPointer {
  template <class U>
  friend class SmartPointer;

 public:
  SmartPointer() = default;
  SmartPointer(std::nullptr_t) {}
  SmartPointer(T* object) : Pointer(object) {
    if (Pointer) Pointer->Register();
  }
  SmartPointer(const SmartPointer& other) : SmartPointer(other.Pointer) {}
  SmartPointer(SmartPointer&& other) noexcept : Pointer(std::exchange(other.Pointer, nullptr)) {}
  template <class U>
    requires std::convertible_to<U*, T*>
  SmartPointer(const SmartPointer<U>& other) : SmartPointer(other.Pointer) {}
  template <class U>
    requires std::convertible_to<U*, T*>
  SmartPointer(SmartPointer<U>&& other) noexcept : Pointer(std::exchange(other.Pointer, nullptr)) {}
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
