#include "core/interrupt.h"

#include <atomic>

namespace kalvex {
namespace {

// A signal handler can reach nothing but a variable like this.
volatile std::sig_atomic_t interrupted = 0;
// The signals belong to the process, and so does the watch.
std::atomic<bool> isWatched{false};

void Note(int) { interrupted = 1; }

}  // namespace

InterruptWatch::InterruptWatch() : isOuter_(!isWatched.exchange(true)) {
  if (!isOuter_) return;
  interrupted = 0;
  struct sigaction note {};
  note.sa_handler = Note;
  note.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  sigemptyset(&note.sa_mask);
  sigaction(SIGINT, &note, &interrupt_);
  sigaction(SIGTERM, &note, &terminate_);
}

InterruptWatch::~InterruptWatch() {
  if (!isOuter_) return;
  sigaction(SIGINT, &interrupt_, nullptr);
  sigaction(SIGTERM, &terminate_, nullptr);
  isWatched = false;
}

bool InterruptWatch::IsInterrupted() { return interrupted != 0; }

}  // namespace kalvex
