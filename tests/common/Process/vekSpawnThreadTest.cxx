#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "vekErrorCodes.h"
#include "vekSpawnThread.h"

namespace vek {
namespace {

using Clock = std::chrono::steady_clock;

long long MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

int ReturnPointee(void* value) { return *static_cast<int*>(value); }

int SquareOfNumber(void*, const int& number) { return number * number; }

// Blocks until the gate opens, then returns 0.
int WaitForGate(void* gate) {
  while (!static_cast<std::atomic<bool>*>(gate)->load()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  return 0;
}

TEST(SpawnThread, ResultsInStartOrderAndTheFirstNonZeroOne) {
  SpawnThread* threads = SpawnThread::New();
  int values[] = {0, 5, 7};
  for (int& value : values) ASSERT_EQ(threads->StartThread(ReturnPointee, &value), VEK_SUCCESS);
  ASSERT_EQ(threads->StartNumberedThread(SquareOfNumber, nullptr, 12), VEK_SUCCESS);
  EXPECT_EQ(threads->WaitUntilCompletion(2000), VEK_SUCCESS);
  ASSERT_EQ(threads->GetNumberThreadsResults(), 4);
  EXPECT_EQ(threads->GetThreadResults(0), 0);
  EXPECT_EQ(threads->GetThreadResults(1), 5);
  EXPECT_EQ(threads->GetThreadResults(2), 7);
  EXPECT_EQ(threads->GetThreadResults(3), 144);
  EXPECT_EQ(threads->GetThreadResults(4), VEK_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(threads->DidAllThreadsSucceed(), 5);
  threads->Release();

  int eight = 8;
  EXPECT_EQ(SpawnThread::DoFunctionInThread(ReturnPointee, &eight), 8);
}

TEST(SpawnThread, WaitingWithoutThreadsSleepsOnePollOnlyInTheFirstForm) {
  SpawnThread* threads = SpawnThread::New();
  auto start = Clock::now();
  EXPECT_EQ(threads->WaitUntilCompletion(0), VEK_SUCCESS);
  EXPECT_GE(MillisecondsSince(start), 100);
  EXPECT_EQ(threads->DidAllThreadsSucceed(), 0);
  start = Clock::now();
  EXPECT_EQ(threads->WaitUntilCompletionB(5000), VEK_SUCCESS);
  EXPECT_LT(MillisecondsSince(start), 100);
  threads->Release();
}

TEST(SpawnThread, TimeOutsCountWholePollsAndLeaveTheThreadRunning) {
  std::atomic<bool> gate{false};
  SpawnThread* threads = SpawnThread::New();
  ASSERT_EQ(threads->StartThread(WaitForGate, &gate), VEK_SUCCESS);
  auto start = Clock::now();
  EXPECT_EQ(threads->WaitUntilCompletion(250), VEK_WAITED_TOO_LONG_FOR_THREAD);
  long long waited = MillisecondsSince(start);
  EXPECT_GE(waited, 200);  // two polls of 100 ms
  EXPECT_LT(waited, 300);  // not a third
  EXPECT_EQ(threads->WaitUntilCompletion(50), VEK_WAITED_TOO_LONG_FOR_THREAD);
  EXPECT_EQ(threads->GetThreadResults(0), VEK_THREAD_NOT_FINISHED);
  EXPECT_EQ(threads->DidAllThreadsSucceed(), VEK_THREAD_NOT_FINISHED);
  start = Clock::now();
  EXPECT_EQ(threads->WaitUntilCompletionB(60), VEK_WAITED_TOO_LONG_FOR_THREAD);
  EXPECT_GE(MillisecondsSince(start), 60);

  gate = true;
  EXPECT_EQ(threads->WaitUntilCompletionB(kSpawnThreadWaitForever), VEK_SUCCESS);
  EXPECT_EQ(threads->GetThreadResults(0), 0);
  threads->Release();
}

TEST(SpawnThread, ZeroWaitIsOnePollThatSeesOnlyThreadsAlreadyFinished) {
  std::atomic<bool> gate{false};
  SpawnThread* threads = SpawnThread::New();
  ASSERT_EQ(threads->StartThread(WaitForGate, &gate), VEK_SUCCESS);
  auto start = Clock::now();
  EXPECT_EQ(threads->WaitUntilCompletion(0), VEK_WAITED_TOO_LONG_FOR_THREAD);
  long long waited = MillisecondsSince(start);
  EXPECT_GE(waited, 100);
  EXPECT_LT(waited, 200);
  // 199 ms is still one whole poll.
  start = Clock::now();
  EXPECT_EQ(threads->WaitUntilCompletion(199), VEK_WAITED_TOO_LONG_FOR_THREAD);
  EXPECT_LT(MillisecondsSince(start), 200);

  gate = true;
  while (threads->GetThreadResults(0) != 0) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  start = Clock::now();
  EXPECT_EQ(threads->WaitUntilCompletion(0), VEK_SUCCESS);
  EXPECT_GE(MillisecondsSince(start), 100);
  threads->Release();
}

// 13 is the mark of a running thread, so a function that returns it never looks finished.
TEST(SpawnThread, AFunctionReturningTheRunningMarkIsNeverSeenAsFinished) {
  int thirteen = VEK_THREAD_NOT_FINISHED, zero = 0;
  SpawnThread* threads = SpawnThread::New();
  ASSERT_EQ(threads->StartThread(ReturnPointee, &zero), VEK_SUCCESS);
  ASSERT_EQ(threads->StartThread(ReturnPointee, &thirteen), VEK_SUCCESS);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_EQ(threads->WaitUntilCompletion(300), VEK_WAITED_TOO_LONG_FOR_THREAD);
  EXPECT_EQ(threads->DidAllThreadsSucceed(), 13);
  threads->Release();
}

std::atomic<bool> g_lateGate{false};
std::atomic<bool> g_lateDone{false};

int FinishLate(void*) {
  WaitForGate(&g_lateGate);
  g_lateDone = true;
  return 3;  // stored into the record after the SpawnThread is gone
}

TEST(SpawnThread, ReleasedWhileItsThreadRuns) {
  SpawnThread* threads = SpawnThread::New();
  ASSERT_EQ(threads->StartThread(FinishLate, nullptr), VEK_SUCCESS);
  threads->Release();
  g_lateGate = true;
  while (!g_lateDone) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));  // room for the record write
}

std::atomic<int> g_running{0};
std::atomic<int> g_mostRunning{0};

int CountConcurrency(void*, const int& number) {
  int now = ++g_running;
  int most = g_mostRunning.load();
  while (now > most && !g_mostRunning.compare_exchange_weak(most, now)) {
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  --g_running;
  return number == 5 ? 9 : number == 6 ? 4 : 0;
}

TEST(SpawnThread, BatchesOfNumberedThreads) {
  SpawnThread* threads = SpawnThread::New();
  std::vector<int> squares = threads->SpawnThreadsOptimizedForCPU(SquareOfNumber, nullptr, 3, 5, false);
  EXPECT_EQ(squares, (std::vector<int>{9, 16, 25, 36, 49}));
  EXPECT_EQ(threads->SpawnThreadsOptimizedForCPU(SquareOfNumber, nullptr, 3, 0, false), std::vector<int>{});

  int processors = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  threads->SpawnThreadsOptimizedForCPU(CountConcurrency, nullptr, 0, 3 * processors, true);
  EXPECT_LE(g_mostRunning.load(), std::max(1, processors - 1));

  std::vector<int> results;
  EXPECT_EQ(threads->SpawnAndWaitForArrayOfThreads(CountConcurrency, nullptr, 4, 3, 1000, results), 9);
  EXPECT_EQ(results, (std::vector<int>{0, 9, 4}));
  EXPECT_EQ(threads->SpawnAndWaitForArrayOfThreads(CountConcurrency, nullptr, 7, 2, 1000), VEK_SUCCESS);
  threads->Release();
}

}  // namespace
}  // namespace vek
