// A few threads that share work with the one that asks for it. Work is a number of tasks cut in a way that does not
// depend on the number of threads; who does which is left to chance, so that a task must not depend on it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <thread>
#include <vector>

namespace kalvex {

// How many processors this process may use, at least 1.
int ProcessorsAtHand();

class ThreadPool {
 public:
  using Work = std::function<void(std::size_t task, std::size_t thread)>;

  // So many threads, that of the caller among them. They are started when there is work for the first time; if the
  // machine does not give as many, the work is done by fewer.
  explicit ThreadPool(int threads = 1) : wanted_(threads < 1 ? 1 : static_cast<std::size_t>(threads)) {}
  ThreadPool(const ThreadPool&) = delete;
  ThreadPool& operator=(const ThreadPool&) = delete;
  ~ThreadPool();

  std::size_t Threads() const { return wanted_; }

  // Whether work that takes one thread so many nanoseconds is done sooner by several: each must have several times as
  // much to do as it takes to call it, which is little for a thread that is looking out for work.
  bool Pays(double nanoseconds) const;
  // Work from which a sleeping thread is called for its share; 0: any work is shared.
  void SetLeastShare(double nanoseconds) { leastShare_ = nanoseconds; }
  // Lets the threads look out for work that is about to come.
  void Rouse();

  // Calls work(task, thread) for each task from 0 to count - 1 and comes back when all are done; thread is below
  // Threads(), 0 that of the caller. To be called by one thread at a time, and not by a task. What a task throws ends
  // the others early and is thrown on to the caller.
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
  std::atomic<std::uint32_t> round_{0};   // goes on when there is something new to do
  std::atomic<std::uint32_t> gate_{0};    // threads at work, and whether more may join
  std::atomic<std::size_t> watching_{0};  // threads that look out for work
  std::atomic<bool> awake_{false};        // called, and not all asleep since
  std::atomic<bool> ends_{false};
  std::atomic<bool> failed_{false};
  std::exception_ptr failure_;
};

// The pool, if the work is worth it.
inline ThreadPool* IfItPays(ThreadPool* pool, double nanoseconds) {
  return pool && pool->Pays(nanoseconds) ? pool : nullptr;
}

// work(task, thread) for each task, by the threads of the pool, or one task after the other without one.
template <class Work>
void ParallelFor(ThreadPool* pool, std::size_t count, const Work& work) {
  if (pool && pool->Threads() > 1 && count > 1) return pool->Run(count, work);
  for (std::size_t task = 0; task < count; ++task) work(task, 0);
}

}  // namespace kalvex
