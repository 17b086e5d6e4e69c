// "Fitlog.dat": a file that grows by a head line a run and a row an accepted iteration.
#pragma once

#include <string_view>

#include "core/files.h"
#include "fit/fit_state.h"

namespace kalvex {

class FitLog {
 public:
  // Opens the file, writes the head line and the row of the start. A file that cannot be opened means no log.
  void Begin(const FitState& fit);
  // One row, flushed; nothing happens unless Begin has opened the file.
  void WriteRow(const FitState& fit);

 private:
  void WriteLine(std::string_view line);
  FileHandle file_;
};

}  // namespace kalvex
