// An open fit window over three models and two datasets: R and E1 of the first model, which all three are.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "fit/sample_fit.h"

namespace kalvex {

using Texts = std::vector<std::string>;

class FitWindows : public testing::Test {
 protected:
  FitWindows() {
    Model& a = s.AddModel(3, 100, 200, 10);
    s.AddModel(3, 100, 200, 10);
    s.AddModel(3, 100, 200, 10);
    s.Measure(1, a, kRefl);
    s.Measure(2, a, kE1);
    s.program.datasets.slots[0].name = "R.dat";
    s.program.datasets.slots[1].name = "E1.dat";
  }
  FitDesk desk() { return DeskOf(s.program); }
  std::vector<ChiSqTerm>& terms() { return s.fit().list.terms; }
  void Select(std::initializer_list<std::size_t> rows) {
    for (ChiSqTerm& term : terms()) term.selected = false;
    for (const std::size_t row : rows) terms()[row].selected = true;
    SelectionChanged(desk());
  }
  SampleFit s;
};

}  // namespace kalvex
