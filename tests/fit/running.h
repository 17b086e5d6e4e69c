// A fit that is ready to run: the spectrum of one oscillator, and start values near its parameters, in a separate
// folder.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "fit/sample_fit.h"
#include "support/scratch_folder.h"

namespace kalvex {

// Calls functions of a test after the iterations of a run.
class RunWatch : public FitObserver {
 public:
  std::function<void()> iterationDone = [] {};
  std::function<void()> poll = [] {};
  void IterationEnds() override { iterationDone(); }
  void Poll() override { poll(); }
};

inline std::vector<std::string> LinesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

class Running : public testing::Test {
 protected:
  Running() : inside(folder.Name()), model(s.AddModel(4, 120, 250, 8)) {}

  // The spectrum of the true values, and start values near them.
  void Prepare(double bend = 0, Quantity quantity = kRefl) {
    SampleFit::Set(model, 4, 120, 250, 8);
    s.Measure(1, model, quantity, 0.01, bend);
    SampleFit::Set(model, 3.5, 116, 230, 11);
    s.Term(1, 1);
  }
  // Data that a constant of this value fits, with no other parameter.
  void PrepareConstant(double asked) {
    FixAll(model, true);
    model.epsInf.adjustable = 1;
    s.Measure(1, model, kE1);
    for (DataRow& row : s.tables.datasets.slots[0].points) row.y = asked;
    s.Term(1, 1);
  }
  FitState& fit() { return s.fit(); }
  FitOptions& options() { return s.fit().options; }
  std::string Stop() { return s.fit().report.stop; }

  ScratchFolder folder;
  InFolder inside;
  SampleFit s;
  Model& model;
};

}  // namespace kalvex
