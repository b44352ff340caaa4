#include "vekSpawnThread.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <ostream>

#include "vekErrorCodes.h"

namespace vek {

struct SpawnThread::Group {
  std::mutex Mutex;
  std::condition_variable Finished;
};

struct SpawnThread::Record {
  ThreadFunction Function = nullptr;
  NumberedThreadFunction NumberedFunction = nullptr;
  void* Argument = nullptr;
  int Number = kUnnumbered;
  std::atomic<int> Result{VEK_FAILED_TO_CREATE_THREAD};
  std::shared_ptr<Group> Signals;

  bool HasFinished() const {
    int result = Result.load();
    return result != VEK_FAILED_TO_CREATE_THREAD && result != VEK_THREAD_NOT_FINISHED;
  }
};

namespace {

// The record is held by value of the shared pointer, so it outlives the SpawnThread if need be.
void RunRecord(std::shared_ptr<SpawnThread::Record> record) {
  record->Result.store(VEK_THREAD_NOT_FINISHED);
  int result = record->NumberedFunction ? record->NumberedFunction(record->Argument, record->Number)
                                        : record->Function(record->Argument);
  {
    // Stored under the lock so that a waiter cannot miss the wake-up between test and wait.
    std::lock_guard<std::mutex> lock(record->Signals->Mutex);
    record->Result.store(result);
  }
  record->Signals->Finished.notify_all();
}

}  // namespace

SpawnThread* SpawnThread::New() { return new (std::nothrow) SpawnThread; }

SpawnThread::SpawnThread() : Signals(std::make_shared<Group>()) {
  Records.reserve(4);
  Handles.reserve(4);
}

SpawnThread::~SpawnThread() {
  for (std::size_t i = 0; i < Handles.size(); ++i) {
    if (!Handles[i].joinable()) continue;
    if (Records[i]->HasFinished())
      Handles[i].join();
    else
      Handles[i].detach();
  }
}

void SpawnThread::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "NumberOfThreads: " << Records.size() << "\n";
  for (std::size_t i = 0; i < Records.size(); ++i)
    os << indent << "Thread " << i << ": Number " << Records[i]->Number << " Result " << Records[i]->Result.load()
       << "\n";
}

int SpawnThread::Start(const std::shared_ptr<Record>& record) {
  try {
    // Room first, so that once the thread runs nothing below can throw.
    if (Records.size() == Records.capacity()) Records.reserve(2 * Records.capacity() + 4);
    if (Handles.size() == Handles.capacity()) Handles.reserve(2 * Handles.capacity() + 4);
    Handles.emplace_back(RunRecord, record);
  } catch (...) {
    return VEK_FAILED_TO_CREATE_THREAD;
  }
  Records.push_back(record);
  return VEK_SUCCESS;
}

int SpawnThread::StartThread(ThreadFunction fn, void* arg) {
  auto record = std::make_shared<Record>();
  record->Function = fn;
  record->Argument = arg;
  record->Signals = Signals;
  return Start(record);
}

int SpawnThread::StartNumberedThread(NumberedThreadFunction fn, void* arg, const int& number) {
  auto record = std::make_shared<Record>();
  record->NumberedFunction = fn;
  record->Argument = arg;
  record->Number = number;
  record->Signals = Signals;
  return Start(record);
}

int SpawnThread::DoFunctionInThread(ThreadFunction fn, void* arg) {
  int result = VEK_FAILED_TO_CREATE_THREAD;
  try {
    std::thread worker([&] { result = fn(arg); });
    worker.join();
  } catch (...) {
    return VEK_FAILED_TO_CREATE_THREAD;
  }
  return result;
}

int SpawnThread::WaitUntilCompletion(const unsigned long& milliseconds) {
  bool limited = milliseconds != kSpawnThreadWaitForever;
  unsigned long polls = std::max(1ul, milliseconds / kPollMilliseconds);
  for (;;) {
    bool allDone = std::all_of(Records.begin(), Records.end(), [](const auto& r) { return r->HasFinished(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(kPollMilliseconds));
    if (limited) --polls;
    if (allDone) return VEK_SUCCESS;
    if (limited && polls == 0) return VEK_WAITED_TOO_LONG_FOR_THREAD;
  }
}

int SpawnThread::WaitUntilCompletionB(const unsigned long& milliseconds) {
  auto allDone = [this] { return NumberRunning() == 0; };
  std::unique_lock<std::mutex> lock(Signals->Mutex);
  if (milliseconds == kSpawnThreadWaitForever) {
    Signals->Finished.wait(lock, allDone);
    return VEK_SUCCESS;
  }
  return Signals->Finished.wait_for(lock, std::chrono::milliseconds(milliseconds), allDone)
             ? VEK_SUCCESS
             : VEK_WAITED_TOO_LONG_FOR_THREAD;
}

int SpawnThread::NumberRunning() const {
  return static_cast<int>(
      std::count_if(Records.begin(), Records.end(), [](const auto& r) { return !r->HasFinished(); }));
}

int SpawnThread::GetThreadResults(const int& i) const {
  if (i < 0 || i >= GetNumberThreadsResults()) return VEK_INDEX_OUT_OF_RANGE;
  return Records[static_cast<std::size_t>(i)]->Result.load();
}

int SpawnThread::DidAllThreadsSucceed() const {
  for (const auto& record : Records) {
    int result = record->Result.load();
    if (result != VEK_SUCCESS) return result;
  }
  return VEK_SUCCESS;
}

std::vector<int> SpawnThread::SpawnThreadsOptimizedForCPU(NumberedThreadFunction fn, void* arg, int first, int count,
                                                          bool leaveOneProcessorFree) {
  int processors = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  int limit = leaveOneProcessorFree ? std::max(1, processors - 1) : processors;
  std::vector<std::shared_ptr<Record>> batch;
  for (int number = first; number < first + count; ++number) {
    {
      std::unique_lock<std::mutex> lock(Signals->Mutex);
      Signals->Finished.wait(lock, [&] { return NumberRunning() < limit; });
    }
    std::size_t before = Records.size();
    StartNumberedThread(fn, arg, number);
    batch.push_back(Records.size() > before ? Records.back() : nullptr);
  }
  WaitUntilCompletionB(kSpawnThreadWaitForever);
  std::vector<int> results;
  for (const auto& record : batch) results.push_back(record ? record->Result.load() : VEK_FAILED_TO_CREATE_THREAD);
  return results;
}

int SpawnThread::SpawnAndWaitForArrayOfThreads(NumberedThreadFunction fn, void* arg, int first, int count,
                                               const unsigned long& milliseconds) {
  std::vector<int> results;
  return SpawnAndWaitForArrayOfThreads(fn, arg, first, count, milliseconds, results);
}

int SpawnThread::SpawnAndWaitForArrayOfThreads(NumberedThreadFunction fn, void* arg, int first, int count,
                                               const unsigned long& milliseconds, std::vector<int>& results) {
  std::vector<std::shared_ptr<Record>> batch;
  bool allStarted = true;
  for (int number = first; number < first + count; ++number) {
    std::size_t before = Records.size();
    allStarted = StartNumberedThread(fn, arg, number) == VEK_SUCCESS && allStarted;
    batch.push_back(Records.size() > before ? Records.back() : nullptr);
  }
  int waited = WaitUntilCompletion(milliseconds);
  results.clear();
  for (const auto& record : batch) results.push_back(record ? record->Result.load() : VEK_FAILED_TO_CREATE_THREAD);
  if (waited != VEK_SUCCESS) return waited;
  if (!allStarted) return VEK_FAILED_TO_CREATE_THREAD;
  for (int result : results)
    if (result != VEK_SUCCESS) return result;
  return VEK_SUCCESS;
}

}  // namespace vek
