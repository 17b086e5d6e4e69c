// Interrupts of the process: Ctrl+C in a terminal (SIGINT), and the end that a system requests (SIGTERM).
#pragma once

#include <csignal>

namespace kalvex {

// While a watch exists, the first interrupt does not end the process but is noted. A second one ends it. A watch inside
// of another one does nothing.
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

  // Whether an interrupt came since the beginning of the last outer watch.
  static bool IsInterrupted();

 private:
  bool isOuter_ = false;
  struct sigaction interrupt_ {};  // what the signals did before
  struct sigaction terminate_ {};
};

}  // namespace kalvex
