#pragma once
#include <cstring>
#include <new>
#include <type_traits>

namespace vek {

/// A growable array of plain values (data, count, capacity) that keeps insertion order and
/// appends at the end. A full array doubles its capacity. Append returns false, leaving the array
/// as it was, when it cannot grow; element access is unchecked.
template <class T>
class VarArray {
  static_assert(std::is_trivially_copyable_v<T>, "VarArray holds plain values");

 public:
  explicit VarArray(unsigned int initialCapacity = 0) { Reserve(initialCapacity); }
  ~VarArray() { delete[] Data; }
  VarArray(const VarArray&) = delete;
  VarArray& operator=(const VarArray&) = delete;

  bool Append(const T& value) {
    if (Count == Capacity && !Reserve(Capacity ? 2 * Capacity : 4)) return false;
    Data[Count++] = value;
    return true;
  }
  /// Makes room for at least n elements; never shrinks.
  bool Reserve(unsigned int n) {
    if (n <= Capacity) return true;
    return Reallocate(n);
  }
  /// Sets the count, growing the room if needed; new elements are value-initialised.
  bool Resize(unsigned int n) {
    if (!Reserve(n)) return false;
    for (unsigned int i = Count; i < n; ++i) Data[i] = T();
    Count = n;
    return true;
  }
  /// Gives back the room beyond the count.
  void Squeeze() {
    if (Capacity > Count) Reallocate(Count);
  }
  void Clear() { Count = 0; }

  unsigned int GetCount() const { return Count; }
  unsigned int GetCapacity() const { return Capacity; }
  T* GetData() { return Data; }
  const T* GetData() const { return Data; }
  T& operator[](unsigned int i) { return Data[i]; }
  const T& operator[](unsigned int i) const { return Data[i]; }

 private:
  bool Reallocate(unsigned int n) {
    T* block = n ? new (std::nothrow) T[n] : nullptr;
    if (n && !block) return false;
    if (Count) std::memcpy(static_cast<void*>(block), Data, sizeof(T) * Count);
    delete[] Data;
    Data = block;
    Capacity = n;
    return true;
  }

  T* Data = nullptr;
  unsigned int Count = 0;
  unsigned int Capacity = 0;
};

}  // namespace vek
