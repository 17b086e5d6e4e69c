// "Fitlog.dat": a file that grows by a head line a run and a row an accepted iteration.
#pragma once

#include <span>
#include <string_view>

#include "core/files.h"
#include "fit/fit_state.h"

namespace kalvex {

class FitLog {
 public:
  // Opens the file, writes the head line and the row of the start. False if the file cannot be opened: there is no log.
  [[nodiscard]] bool Begin(const FitState& fit, std::span<ModelParam* const> cells);
  // One row, flushed; nothing happens unless Begin has opened the file.
  void WriteRow(const FitState& fit, std::span<ModelParam* const> cells);

 private:
  void WriteLine(std::string_view line);
  FileHandle file_;
};

}  // namespace kalvex
