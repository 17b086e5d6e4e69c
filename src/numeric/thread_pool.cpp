#include "numeric/thread_pool.h"

namespace kalvex {

ThreadPool::ThreadPool(int threads) {
  for (int k = 1; k < threads; ++k) others_.emplace_back([this, k] { Serve(static_cast<std::size_t>(k)); });
}

ThreadPool::~ThreadPool() {
  {
    const std::lock_guard lock(mutex_);
    closing_ = true;
  }
  starts_.notify_all();
  for (std::thread& other : others_) other.join();
}

void ThreadPool::TakeParts(std::size_t thread) {
  for (std::size_t part = next_++; part < parts_; part = next_++) (*work_)(part, thread);
}

void ThreadPool::Serve(std::size_t thread) {
  std::uint64_t done = 0;
  std::unique_lock lock(mutex_);
  for (;;) {
    starts_.wait(lock, [&] { return closing_ || round_ != done; });
    if (closing_) return;
    done = round_;
    lock.unlock();
    TakeParts(thread);
    lock.lock();
    if (--busy_ == 0) ends_.notify_one();
  }
}

void ThreadPool::ForEach(std::size_t parts, const Work& work) {
  {
    const std::lock_guard lock(mutex_);
    work_ = &work;
    parts_ = parts;
    next_ = 0;
    busy_ = others_.size();
    ++round_;
  }
  starts_.notify_all();
  TakeParts(0);
  std::unique_lock lock(mutex_);
  ends_.wait(lock, [&] { return busy_ == 0; });
}

}  // namespace kalvex
