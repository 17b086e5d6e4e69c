#include "fit/fit_log.h"

#include <algorithm>
#include <string>

#include "core/text.h"

namespace kalvex {
namespace {

constexpr const char* kFitLogName = "Fitlog.dat";

void AppendField(std::string& line, double value) {
  AppendG(line, value);
  line += ' ';
}

std::string HeadLine(const FitState& fit) {
  std::string line = "IterNo Time Lambda ChiSq ";
  for (std::size_t t = 1; t <= fit.list.terms.size(); ++t) line += "ChiSq" + std::to_string(t) + ' ';
  for (int p = 1; p <= fit.NumFreeParams; ++p) {
    line += 'P' + std::to_string(p) + " Perr" + std::to_string(p) + ' ';
  }
  return line + '\n';
}

std::string Row(const FitState& fit, std::span<ModelParam* const> cells) {
  std::string line = std::to_string(fit.IterationCount) + ' ' + std::to_string(fit.ElapsedSeconds) + ' ';
  AppendField(line, fit.Lambda);
  AppendField(line, fit.TotalChiSq);
  for (const ChiSqTerm& term : fit.list.terms) AppendField(line, term.termChiSq);
  for (std::size_t p = 0; p < static_cast<std::size_t>(fit.NumFreeParams); ++p) {
    AppendField(line, cells[p]->value);
    AppendField(line, cells[p]->error);
  }
  return line + '\n';
}

}  // namespace

Status FitLog::Begin(const FitState& fit, std::span<ModelParam* const> cells) {
  file_.reset(std::fopen(kFitLogName, "ab"));
  if (!file_) return CannotWrite(kFitLogName);
  return WriteLine(HeadLine(fit) + Row(fit, cells));
}

Status FitLog::WriteRow(const FitState& fit, std::span<ModelParam* const> cells) {
  return file_ ? WriteLine(Row(fit, cells)) : Status();
}

Status FitLog::WriteLine(std::string_view line) {
  const bool written = std::fwrite(line.data(), 1, line.size(), file_.get()) == line.size();
  return std::fflush(file_.get()) == 0 && written ? Status() : CannotWrite(kFitLogName);
}

void NoteIfNotWritten(const Status& written, FitReport& report) {
  const bool known =
      std::find(report.notWritten.begin(), report.notWritten.end(), written.About()) != report.notWritten.end();
  if (!written.Ok() && !known) report.notWritten.push_back(written.About());
}

}  // namespace kalvex
