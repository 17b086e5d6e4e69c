// "Fitlog.dat": a head line for each run and a row for each accepted iteration, appended to the file.
#pragma once

#include <span>
#include <string_view>

#include "core/files.h"
#include "core/status.h"
#include "fit/fit_state.h"

namespace kalvex {

class FitLog {
 public:
  // Opens the file, writes the head line and the row of the start values. On failure no log is written.
  Status Begin(const FitState& fit, std::span<ModelParam* const> cells);
  // Writes one row and flushes the file. Does nothing unless Begin has opened the file.
  Status WriteRow(const FitState& fit, std::span<ModelParam* const> cells);

 private:
  Status WriteLine(std::string_view line);
  FileHandle file_;
};

// Adds a file that could not be written to the report, once even if it fails several times.
void NoteIfNotWritten(const Status& written, FitReport& report);

}  // namespace kalvex
