#include "app/progress.h"

#include <cstdio>

#include "core/text.h"

namespace kalvex {

void Progress::Changed(const Change& change) {
  if (change.kind != ChangeKind::kFitRun || change.id == 0) return;
  const FitState& fit = session_.Fit();
  std::fprintf(stderr, "iteration %d: ChiSq %s, Lambda %s, %d s\n", fit.IterationCount,
               TextG(fit.TotalChiSq, 8).c_str(), TextG(fit.Lambda).c_str(), fit.ElapsedSeconds);
}

}  // namespace kalvex
