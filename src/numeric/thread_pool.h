// Threads that share work whose parts are known beforehand. What a part computes does not depend on how many threads
// there are, nor on which of them takes it.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace kalvex {

class ThreadPool {
 public:
  // The caller's thread counts: with one thread there are no others. At least 1.
  explicit ThreadPool(int threads);
  ThreadPool(const ThreadPool&) = delete;
  ThreadPool& operator=(const ThreadPool&) = delete;
  ~ThreadPool();

  std::size_t Threads() const { return others_.size() + 1; }

  // Calls work(part, thread) once for each part below `parts`, in any order, thread being the number of the thread that
  // does it, 0 for the caller's; returns when all are done. To be called by one thread at a time.
  using Work = std::function<void(std::size_t part, std::size_t thread)>;
  void ForEach(std::size_t parts, const Work& work);

 private:
  void Serve(std::size_t thread);
  void TakeParts(std::size_t thread);

  std::mutex mutex_;
  std::condition_variable starts_, ends_;
  const Work* work_ = nullptr;
  std::size_t parts_ = 0;
  std::atomic<std::size_t> next_ = 0;
  std::uint64_t round_ = 0;
  std::size_t busy_ = 0;
  bool closing_ = false;
  std::vector<std::thread> others_;
};

// The same without a pool, or with one thread, in order.
template <class Part>
void ForEachPart(ThreadPool* pool, std::size_t parts, Part part) {
  if (pool && pool->Threads() > 1 && parts > 1) {
    pool->ForEach(parts, [&](std::size_t k, std::size_t) { part(k); });
    return;
  }
  for (std::size_t k = 0; k < parts; ++k) part(k);
}

}  // namespace kalvex
