#include "numeric/thread_pool.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

namespace kalvex {
namespace {

constexpr std::uint32_t kOpen = std::uint32_t{1} << 31;

using Clock = std::chrono::steady_clock;

// Waits until the number differs from old, at most for `patience`. Returns whether it does. After the first kLooks
// reads the thread yields the processor between further reads.
bool SeesOther(const std::atomic<std::uint32_t>& number, std::uint32_t old, Clock::duration patience) {
  constexpr int kLooks = 1000;
  const auto looks = [&] {
    for (int i = 0; i < kLooks; ++i) {
      if (number.load(std::memory_order_acquire) != old) return true;
    }
    return false;
  };
  for (const auto end = Clock::now() + patience; Clock::now() < end; std::this_thread::yield()) {
    if (looks()) return true;
  }
  return looks();
}

// The time between two pieces of work of one fit is rarely longer.
constexpr auto kPatience = std::chrono::milliseconds(1);

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

// Work often comes in short pieces in quick succession. Polling for it costs less than sleeping and waking up.
void ThreadPool::WatchFor(std::uint32_t seen) {
  ++watching_;
  awake_ = true;
  const bool more = SeesOther(round_, seen, kPatience);
  if (--watching_ == 0 && !more) awake_ = false;
  if (!more) round_.wait(seen);
}

// A thread that wakes up late finds the gate closed. Run does not wait for it.
void ThreadPool::Serve(std::size_t thread) {
  std::uint32_t seen = 0;
  while (true) {
    WatchFor(seen);
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

bool ThreadPool::Pays(double nanoseconds) const {
  // More threads than this are not counted: some may come too late to help, which costs nothing.
  constexpr std::size_t kMostThatCount = 4;
  constexpr double kShareOfWatcher = 15e3;
  const auto threads = static_cast<double>(std::min(wanted_, kMostThatCount));
  return wanted_ > 1 && nanoseconds >= threads * (awake_ ? std::min(leastShare_, kShareOfWatcher) : leastShare_);
}

void ThreadPool::CallThreads() {
  if (threads_.size() + 1 < wanted_) Start();
  awake_ = true;
  ++round_;
  round_.notify_all();
}

// The threads find the gate closed and continue to poll.
void ThreadPool::Rouse() {
  if (wanted_ > 1 && !awake_) CallThreads();
}

void ThreadPool::Run(std::size_t count, const Work& work) {
  work_ = &work;
  count_ = count;
  next_ = 0;
  gate_ = kOpen;
  CallThreads();
  DoTasks(0);
  gate_ &= ~kOpen;
  for (std::uint32_t inside = gate_; inside != 0; inside = gate_) {
    if (!SeesOther(gate_, inside, kPatience)) gate_.wait(inside);
  }
  if (!failed_.exchange(false)) return;
  std::rethrow_exception(std::exchange(failure_, nullptr));
}

}  // namespace kalvex
