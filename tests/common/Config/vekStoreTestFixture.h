#pragma once

#include <gtest/gtest.h>

#include <string>

#include "vekClassInitializer.h"
#include "vekConfigurationDatabase.h"
#include "vekErrorCodes.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek::test {

// Every test gets its own configuration directory and a loaded store; the previous base
// directory comes back afterwards.
class StoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ClassInitializer::Initialize(Base.Path().string().c_str());
    Store = SmartPointer<ConfigurationDatabase>::New();
    ASSERT_EQ(Store->LoadOptionsDatabase(), VEK_SUCCESS);
  }
  void TearDown() override {
    Store = nullptr;
    ClassInitializer::Initialize(PreviousBase.c_str());
  }

  std::string PreviousBase = ClassInitializer::GetInstance()->GetBaseDirectoryName();
  TempDirectory Base;
  SmartPointer<ConfigurationDatabase> Store;
};

}  // namespace vek::test
