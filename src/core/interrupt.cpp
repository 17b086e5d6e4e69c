#include "core/interrupt.h"

namespace kalvex {
namespace {

// A signal handler can reach nothing but a variable like this.
volatile std::sig_atomic_t interrupted = 0;

void Note(int) { interrupted = 1; }

}  // namespace

InterruptWatch::InterruptWatch() {
  interrupted = 0;
  struct sigaction note {};
  note.sa_handler = Note;
  note.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  sigemptyset(&note.sa_mask);
  sigaction(SIGINT, &note, &interrupt_);
  sigaction(SIGTERM, &note, &terminate_);
}

InterruptWatch::~InterruptWatch() {
  sigaction(SIGINT, &interrupt_, nullptr);
  sigaction(SIGTERM, &terminate_, nullptr);
}

bool InterruptWatch::IsInterrupted() const { return interrupted != 0; }

}  // namespace kalvex
