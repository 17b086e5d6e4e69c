// ThreadPool: threads that share the work of the calling thread. Work is a number of tasks. How it is divided into
// tasks does not depend on the number of threads. Any thread may run any task, so the result of a task must not depend
// on the thread.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <thread>
#include <vector>

namespace kalvex {

// The number of processors that this process may use, at least 1.
int ProcessorsAtHand();

class ThreadPool {
 public:
  using Work = std::function<void(std::size_t task, std::size_t thread)>;

  // The number of threads includes the calling one. They are started with the first work. If the system provides fewer,
  // the work is shared by fewer.
  explicit ThreadPool(int threads = 1) : wanted_(threads < 1 ? 1 : static_cast<std::size_t>(threads)) {}
  ThreadPool(const ThreadPool&) = delete;
  ThreadPool& operator=(const ThreadPool&) = delete;
  ~ThreadPool();

  std::size_t Threads() const { return wanted_; }

  // Whether several threads finish work sooner than one, which would need the given time. Each thread's share must be
  // several times as long as waking it takes. A thread that polls for work wakes up quickly.
  bool Pays(double nanoseconds) const;
  // The least share of work for which a sleeping thread is woken; 0: any work is shared.
  void SetLeastShare(double nanoseconds) { leastShare_ = nanoseconds; }
  // Wakes the threads, which then poll for work that is about to come.
  void Rouse();

  // Calls work(task, thread) for each task from 0 to count - 1 and returns when all are done. thread is below
  // Threads(); 0 is the calling thread. Only one thread at a time may call Run, and no task may. If a task throws, the
  // remaining tasks are skipped and the exception is thrown to the caller.
  void Run(std::size_t count, const Work& work);

 private:
  void Start();
  void Serve(std::size_t thread);
  void DoTasks(std::size_t thread);
  void WatchFor(std::uint32_t seen);
  void CallThreads();

  std::size_t wanted_;
  double leastShare_ = 120e3;
  std::vector<std::thread> threads_;
  const Work* work_ = nullptr;
  std::size_t count_ = 0;
  std::atomic<std::size_t> next_{0};
  std::atomic<std::uint32_t> round_{0};   // incremented when there is new work, or the threads are to end
  std::atomic<std::uint32_t> gate_{0};    // number of threads at work, and a bit that lets more join
  std::atomic<std::size_t> watching_{0};  // threads that poll for work
  std::atomic<bool> awake_{false};        // threads were woken, and not all sleep again
  std::atomic<bool> ends_{false};
  std::atomic<bool> failed_{false};
  std::exception_ptr failure_;
};

// The pool if sharing work of that length pays, otherwise null.
inline ThreadPool* IfItPays(ThreadPool* pool, double nanoseconds) {
  return pool && pool->Pays(nanoseconds) ? pool : nullptr;
}

// Calls work(task, thread) for each task, in the threads of the pool. Without a pool the tasks run one after the other.
template <class Work>
void ParallelFor(ThreadPool* pool, std::size_t count, const Work& work) {
  if (pool && pool->Threads() > 1 && count > 1) return pool->Run(count, work);
  for (std::size_t task = 0; task < count; ++task) work(task, 0);
}

}  // namespace kalvex
