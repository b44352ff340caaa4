#pragma once
#include <memory>
#include <thread>
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

/// The wait without limit (the platform's infinite wait); outside the class because static data of
/// an exported class would have to be imported from the library.
inline constexpr unsigned long kSpawnThreadWaitForever = 0xFFFFFFFFul;

/// Starts worker threads that each run one function and keeps every thread's result in start order.
///
/// A result is VEK_FAILED_TO_CREATE_THREAD (11) until the thread begins, VEK_THREAD_NOT_FINISHED
/// (13) while the function runs, and then the function's return value; so a function must not
/// itself return 11 or 13 if a wait is to see it finish. Each thread shares ownership of its record
/// with this object: releasing the object while a thread still runs (a timed-out helper program)
/// leaves the thread writing a record that still exists, and the thread is detached, not killed.
///
/// Waiting:
/// - WaitUntilCompletion polls every 100 ms and always sleeps at least once: 0xFFFFFFFF waits
///   without limit, otherwise milliseconds / 100 polls (at least 1).
/// - WaitUntilCompletionB is woken by the threads themselves: it returns 0 as soon as every thread
///   has finished (at once when none runs) or 12 once `milliseconds` have passed.
/// Batches (numbered threads receive their number as the second argument):
/// - SpawnThreadsOptimizedForCPU runs fn for every number of [first, first + count) with at most
///   as many threads at once as there are processors (one fewer with `leaveOneProcessorFree`, but
///   at least one), waits for all of them, and returns their results in number order (11 for a
///   number whose thread could not be started).
/// - SpawnAndWaitForArrayOfThreads starts one thread per number at once and waits with
///   WaitUntilCompletion(milliseconds). It returns 12 on time-out, else 11 when a thread could not
///   be started, else the first non-zero result of the batch, else 0; the second form also hands
///   back the batch's results in number order (13 for threads still running).
/// One object is driven from one thread.
class VEK_EXPORT SpawnThread : public Object {
 public:
  using ThreadFunction = int (*)(void*);
  using NumberedThreadFunction = int (*)(void*, const int&);
  static constexpr int kUnnumbered = -555;
  static constexpr unsigned long kPollMilliseconds = 100;

  static SpawnThread* New();
  const char* GetClassName() const override { return "SpawnThread"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  int StartThread(ThreadFunction fn, void* arg);
  int StartNumberedThread(NumberedThreadFunction fn, void* arg, const int& number);
  /// Runs fn(arg) on a new thread and returns its result once it has ended; 11 when no thread
  /// could be started.
  static int DoFunctionInThread(ThreadFunction fn, void* arg);

  int WaitUntilCompletion(const unsigned long& milliseconds);
  int WaitUntilCompletionB(const unsigned long& milliseconds);

  /// The result of the i-th started thread; VEK_INDEX_OUT_OF_RANGE for no such thread.
  int GetThreadResults(const int& i) const;
  int GetNumberThreadsResults() const { return static_cast<int>(Records.size()); }
  /// The first non-zero result in start order, or 0 (also when no thread was started).
  int DidAllThreadsSucceed() const;

  std::vector<int> SpawnThreadsOptimizedForCPU(NumberedThreadFunction fn, void* arg, int first, int count,
                                               bool leaveOneProcessorFree);
  int SpawnAndWaitForArrayOfThreads(NumberedThreadFunction fn, void* arg, int first, int count,
                                    const unsigned long& milliseconds);
  int SpawnAndWaitForArrayOfThreads(NumberedThreadFunction fn, void* arg, int first, int count,
                                    const unsigned long& milliseconds, std::vector<int>& results);

  struct Record;  // one per started thread, shared with the thread
  struct Group;   // what the threads signal when they finish

 protected:
  SpawnThread();
  ~SpawnThread() override;

 private:
  SpawnThread(const SpawnThread&) = delete;
  SpawnThread& operator=(const SpawnThread&) = delete;

  int Start(const std::shared_ptr<Record>& record);
  int NumberRunning() const;

  std::shared_ptr<Group> Signals;
  std::vector<std::shared_ptr<Record>> Records;
  std::vector<std::thread> Handles;
};

}  // namespace vek
