#include "vekRecursiveLock.h"

namespace vek {

void RecursiveLock::Lock() {
  std::unique_lock<std::mutex> guard(Mutex);
  auto self = std::this_thread::get_id();
  if (Count > 0 && Owner == self) {
    ++Count;
    return;
  }
  Released.wait(guard, [this] { return Count == 0; });
  Owner = self;
  Count = 1;
}

void RecursiveLock::Unlock() {
  std::unique_lock<std::mutex> guard(Mutex);
  if (Count == 0 || Owner != std::this_thread::get_id()) return;
  if (--Count == 0) {
    Owner = std::thread::id();
    guard.unlock();
    Released.notify_one();
  }
}

std::thread::id RecursiveLock::GetOwner() const {
  std::lock_guard<std::mutex> guard(Mutex);
  return Owner;
}

int RecursiveLock::GetRecursionCount() const {
  std::lock_guard<std::mutex> guard(Mutex);
  return Count;
}

// Never destroyed: static objects of clients may still take these locks while the process ends.
RecursiveLock& RecursiveLock::ClassInitializerLock() {
  static RecursiveLock* lock = new RecursiveLock;
  return *lock;
}

RecursiveLock& RecursiveLock::ConfigurationLock() {
  static RecursiveLock* lock = new RecursiveLock;
  return *lock;
}

}  // namespace vek
