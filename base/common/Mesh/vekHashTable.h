#pragma once
#include <climits>
#include <cstring>
#include <new>

#include "vekErrorCodes.h"
#include "vekOutputMessages.h"

namespace vek {

/// The bucket table of the locators: keys 0 ... MaxKey, each bucket a flat array of T in
/// insertion order. A bucket grows by exactly one element per insert, which the locators' cell
/// grids keep cheap. Counts are 16 bits wide, so a bucket holds at most 65535 elements: an insert
/// into a bucket that already holds more than 65534 is dropped and reported.
///
/// Internal to the library. Keys are not range-checked. A table whose arrays could not be made
/// (IsValid false) holds no buckets and its Insert fails.
template <class T>
class HashTable {
 public:
  static constexpr unsigned int kMaxBucketSize = USHRT_MAX;

  explicit HashTable(unsigned int maxKey) : MaxKey(maxKey) {
    size_t n = static_cast<size_t>(maxKey) + 1;
    Buckets = new (std::nothrow) T*[n]();
    Counts = new (std::nothrow) unsigned short[n]();
    if (!Buckets || !Counts) {
      delete[] Buckets;
      delete[] Counts;
      Buckets = nullptr;
      Counts = nullptr;
    }
  }
  ~HashTable() {
    if (Buckets)
      for (size_t k = 0; k <= MaxKey; ++k) delete[] Buckets[k];
    delete[] Buckets;
    delete[] Counts;
  }
  HashTable(const HashTable&) = delete;
  HashTable& operator=(const HashTable&) = delete;

  bool IsValid() const { return Buckets != nullptr; }
  unsigned int GetMaxKey() const { return MaxKey; }

  int Insert(unsigned int key, const T& value) {
    if (!Buckets) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    unsigned int count = Counts[key];
    if (count > kMaxBucketSize - 1) {
      VEK_REPORT_ERROR("About to pass USHRT_MAX num elements with same hash");
      return VEK_TOO_MANY_ELEMENTS;
    }
    T* grown = new (std::nothrow) T[count + 1];
    if (!grown) return VEK_FAILED_TO_ALLOCATE_MEMORY;
    if (count) std::memcpy(static_cast<void*>(grown), Buckets[key], sizeof(T) * count);
    grown[count] = value;
    delete[] Buckets[key];
    Buckets[key] = grown;
    Counts[key] = static_cast<unsigned short>(count + 1);
    return VEK_SUCCESS;
  }

  const T* GetBucket(unsigned int key) const { return Buckets[key]; }
  unsigned int GetCount(unsigned int key) const { return Counts[key]; }

 private:
  unsigned int MaxKey;
  T** Buckets = nullptr;
  unsigned short* Counts = nullptr;
};

}  // namespace vek
