#pragma once
#include <condition_variable>
#include <mutex>
#include <thread>

#include "vekCommonExport.h"

namespace vek {

/// A process-wide recursive lock that records its owning thread and recursion count: the owner
/// may take it again (members calling members), any other thread waits without time limit.
class VEK_EXPORT RecursiveLock {
 public:
  RecursiveLock() = default;
  void Lock();
  void Unlock();
  std::thread::id GetOwner() const;
  int GetRecursionCount() const;

  /// The lock of the initialisation settings (ClassInitializer).
  static RecursiveLock& ClassInitializerLock();
  /// The lock of the configuration store and its language tables.
  static RecursiveLock& ConfigurationLock();

 private:
  RecursiveLock(const RecursiveLock&) = delete;
  RecursiveLock& operator=(const RecursiveLock&) = delete;

  mutable std::mutex Mutex;
  std::condition_variable Released;
  std::thread::id Owner;
  int Count = 0;
};

/// Holds a RecursiveLock for one scope.
class RecursiveLockGuard {
 public:
  explicit RecursiveLockGuard(RecursiveLock& lock) : Held(lock) { Held.Lock(); }
  ~RecursiveLockGuard() { Held.Unlock(); }
  RecursiveLockGuard(const RecursiveLockGuard&) = delete;
  RecursiveLockGuard& operator=(const RecursiveLockGuard&) = delete;

 private:
  RecursiveLock& Held;
};

}  // namespace vek
