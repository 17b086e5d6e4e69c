// The progress of a fit, on standard error.
#pragma once

#include "session/session.h"

namespace kalvex {

// Prints a line for each iteration that a run accepts.
class Progress : public SessionListener {
 public:
  explicit Progress(const Session& session) : session_(session) {}
  void Changed(const Change& change) override;

 private:
  const Session& session_;
};

}  // namespace kalvex
