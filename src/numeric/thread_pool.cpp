#include "numeric/thread_pool.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace kalvex {
namespace {

constexpr std::uint32_t kOpen = std::uint32_t{1} << 31;

// Waits until the number is another. Work often comes in short pieces one after the other: looking a little while is
// cheaper than to be woken up.
void WaitForOther(const std::atomic<std::uint32_t>& number, std::uint32_t old) {
  constexpr int kLooks = 10000;
  for (int i = 0; i < kLooks; ++i) {
    if (number.load(std::memory_order_acquire) != old) return;
  }
  number.wait(old);
}

}  // namespace

int ProcessorsAtHand() { return std::max(1, static_cast<int>(std::thread::hardware_concurrency())); }

ThreadPool::~ThreadPool() {
  ends_ = true;
  ++round_;
  round_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void ThreadPool::Start() {
  try {
    while (threads_.size() + 1 < wanted_) {
      threads_.emplace_back([this, thread = threads_.size() + 1] { Serve(thread); });
    }
  } catch (const std::system_error&) {
    wanted_ = threads_.size() + 1;
  }
}

void ThreadPool::DoTasks(std::size_t thread) {
  try {
    for (std::size_t task = next_++; task < count_; task = next_++) (*work_)(task, thread);
  } catch (...) {
    if (!failed_.exchange(true)) failure_ = std::current_exception();
    next_ = count_;
  }
}

// A thread that wakes up late finds the gate closed, and nobody waits for it.
void ThreadPool::Serve(std::size_t thread) {
  std::uint32_t seen = 0;
  while (true) {
    WaitForOther(round_, seen);
    seen = round_;
    if (ends_) return;
    std::uint32_t gate = gate_;
    while ((gate & kOpen) && !gate_.compare_exchange_weak(gate, gate + 1)) {
    }
    if (!(gate & kOpen)) continue;
    DoTasks(thread);
    --gate_;
    gate_.notify_one();
  }
}

void ThreadPool::Run(std::size_t count, const Work& work) {
  if (threads_.size() + 1 < wanted_) Start();
  work_ = &work;
  count_ = count;
  next_ = 0;
  gate_ = kOpen;
  ++round_;
  round_.notify_all();
  DoTasks(0);
  gate_ &= ~kOpen;
  for (std::uint32_t inside = gate_; inside != 0; inside = gate_) WaitForOther(gate_, inside);
  if (!failed_.exchange(false)) return;
  std::rethrow_exception(std::exchange(failure_, nullptr));
}

}  // namespace kalvex
