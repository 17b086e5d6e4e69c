// "Fitlog.dat": a file that grows by a head line a run and a row an accepted iteration.
#pragma once

#include <span>
#include <string_view>

#include "core/files.h"
#include "core/status.h"
#include "fit/fit_state.h"

namespace kalvex {

class FitLog {
 public:
  // Opens the file, writes the head line and the row of the start. On failure there is no log.
  Status Begin(const FitState& fit, std::span<ModelParam* const> cells);
  // One row, flushed; nothing happens unless Begin has opened the file.
  Status WriteRow(const FitState& fit, std::span<ModelParam* const> cells);

 private:
  Status WriteLine(std::string_view line);
  FileHandle file_;
};

// The report names a file of the run that could not be written, once however often it fails.
void NoteIfNotWritten(const Status& written, FitReport& report);

}  // namespace kalvex
