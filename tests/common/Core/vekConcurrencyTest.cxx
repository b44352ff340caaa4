// Several threads at once on the process-wide state that is shared under a lock: the settings of
// the class initializer and the leak registry. Run under ThreadSanitizer by scripts/test.sh.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "vekClassInitializer.h"
#include "vekDebugLeaks.h"
#include "vekObject.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

class Listed : public Object {
 public:
  static Listed* New() { return new Listed; }
  const char* GetClassName() const override { return "Listed"; }
};

// A reader finds the settings whole, never the moment between dropping the old lines and reading
// the new ones.
TEST(Concurrency, SettingsReadWhileAnotherThreadReloadsThem) {
  test::TempDirectory folder;
  const std::string previousBase = ClassInitializer::GetInstance()->GetBaseDirectoryName();
  ClassInitializer::Initialize(folder.Path().string().c_str());
  const std::string first = folder.File("first"), second = folder.File("second");
  test::WriteFile(first, "Step = 1\nList = 1,1,1\n");
  test::WriteFile(second, "Step = 2\nList = 2,2,2\n");
  ClassInitializer::ReInitialize(first.c_str());
  std::atomic<bool> done{false};
  std::thread writer([&] {
    for (int k = 0; k < 200; ++k) {
      ClassInitializer::ReInitialize((k % 2 ? second : first).c_str());
      ClassInitializer::ConcatenatedInitialize(second.c_str());
      std::this_thread::yield();
    }
    done = true;
  });
  int mixed = 0, reads = 0;
  while (!done || reads == 0) {
    int step = 0;
    ClassInitializer::Get("Step", step, 0, 0, 10);
    std::string list;
    ClassInitializer::Get("List", list, "");
    const bool whole = list == "1,1,1" || list == "2,2,2";
    if (step < 1 || step > 2 || !whole) ++mixed;
    ++reads;
  }
  writer.join();
  EXPECT_EQ(mixed, 0) << "of " << reads << " reads";
  ClassInitializer::Initialize(previousBase.c_str());
}

// Threads that list and unlist their own objects leave the registry as it was.
TEST(Concurrency, LeakRegistryListsFromManyThreads) {
  DebugLeaks leaks;
  const int before = leaks.GetNumLeaks();
  constexpr int kThreads = 4, kObjects = 200;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&leaks, t] {
      std::vector<SmartPointer<Listed>> objects;
      for (int k = 0; k < kObjects; ++k) {
        objects.push_back(SmartPointer<Listed>::TakeReference(Listed::New()));
        DebugLeaks::AddNextObjectInfo("thread.cxx", t, "Worker");
        leaks.AddObjectToList(objects.back().GetPointer());
      }
      for (auto& object : objects) leaks.RemoveObjectFromList(object.GetPointer());
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(leaks.GetNumLeaks(), before);
}

}  // namespace
}  // namespace vek
