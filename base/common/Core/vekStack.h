#pragma once
#include <climits>

#include "vekOutputMessages.h"

namespace vek {

/// A growable array: a block of `capacity` default-constructed elements of which the first
/// `count` are in use. A push onto a full stack doubles the capacity.
template <class T>
class Stack {
 public:
  explicit Stack(unsigned int initialCapacity = 4)
      : Capacity(initialCapacity > 0 ? initialCapacity : 1), Elements(new T[Capacity]) {}
  ~Stack() { delete[] Elements; }
  Stack(const Stack&) = delete;
  Stack& operator=(const Stack&) = delete;

  void Push(const T& element) {
    if (Count == Capacity) Grow();
    Elements[Count++] = element;
  }
  /// Removes and returns the last element; the stack must not be empty.
  T Pop() { return Elements[--Count]; }
  /// The index of the first element equal to `element`, or the count when there is none.
  unsigned int Find(const T& element) const {
    for (unsigned int i = 0; i < Count; ++i)
      if (Elements[i] == element) return i;
    return Count;
  }
  unsigned int GetCount() const { return Count; }
  unsigned int GetCapacity() const { return Capacity; }
  T& operator[](unsigned int i) { return Elements[i]; }
  const T& operator[](unsigned int i) const { return Elements[i]; }

 private:
  void Grow() {
    // Doubling past UINT_MAX is reported; the capacity then stops at UINT_MAX instead of wrapping
    // around to a block smaller than the elements it must hold.
    bool overflows = Capacity > UINT_MAX - Capacity;
    if (overflows) VEK_REPORT_ERROR("Currently can have " << Capacity << " points, doubling will pass UINT_MAX");
    unsigned int grown = overflows ? UINT_MAX : 2 * Capacity;
    T* block = new T[grown];
    for (unsigned int i = 0; i < Count; ++i) block[i] = Elements[i];
    delete[] Elements;
    Elements = block;
    Capacity = grown;
  }

  unsigned int Capacity;
  T* Elements;
  unsigned int Count = 0;
};

}  // namespace vek
