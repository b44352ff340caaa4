// Two clients of the option store in two threads of one process, each with its own instance:
// every value either of them wrote is there at the end. Run under ThreadSanitizer by
// scripts/test.sh, beside the two-process test of the same.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "vekConfigurationDatabase.h"
#include "vekErrorCodes.h"
#include "vekSmartPointer.h"
#include "vekStoreTestFixture.h"

namespace vek {
namespace {

using ConcurrentStoreTest = test::StoreTest;

TEST_F(ConcurrentStoreTest, TwoThreadsKeepEveryValue) {
  constexpr int kValues = 25;
  auto client = [](const std::string& prefix, std::vector<int>* failures) {
    auto store = SmartPointer<ConfigurationDatabase>::New();
    if (store->LoadOptionsDatabase() != VEK_SUCCESS) failures->push_back(-1);
    for (int k = 0; k < kValues; ++k)
      if (store->SetOption(prefix + std::to_string(k), k) != VEK_SUCCESS) failures->push_back(k);
  };
  std::vector<int> failuresA, failuresB;
  std::thread a(client, "A", &failuresA), b(client, "B", &failuresB);
  a.join();
  b.join();
  EXPECT_TRUE(failuresA.empty());
  EXPECT_TRUE(failuresB.empty());
  for (const char* prefix : {"A", "B"})
    for (int k = 0; k < kValues; ++k) {
      int value = -1;
      EXPECT_EQ(Store->GetOption(prefix + std::to_string(k), value), VEK_SUCCESS);
      EXPECT_EQ(value, k) << prefix << k;
    }
  std::vector<std::string> names;
  ASSERT_EQ(Store->GetOptionList(names, false), VEK_SUCCESS);
  EXPECT_EQ(names.size(), 2u * kValues);
}

}  // namespace
}  // namespace vek
