// A composite term called by hand.
#pragma once

#include <utility>
#include <vector>

#include "terms/term_environment.h"
#include "terms/term_table.h"

namespace kalvex {

using Values = std::vector<double>;

// Values in; value, and derivatives by every input, out. Derivatives that are not written stay at -7.
struct Called {
  Values values;
  std::vector<Cplx> slopes;
  std::vector<double> scalars;
  TermEnvironment environment;

  explicit Called(Values in) : values(std::move(in)), slopes(values.size(), {-7, -7}), scalars(values.size(), -7) {}

  std::vector<TermInput> Inputs() {
    std::vector<TermInput> inputs;
    for (std::size_t i = 0; i < values.size(); ++i)
      inputs.push_back({values[i], 1, &slopes[i].re, &slopes[i].im, &scalars[i]});
    return inputs;
  }
  Cplx Value(int record, double w) {
    const auto inputs = Inputs();
    Cplx result;
    TermTable[static_cast<std::size_t>(record)].calc({w, true, inputs, &environment}, result);
    return result;
  }
  double Scalar(int record, double w) {
    const auto inputs = Inputs();
    double result = 0;
    TermTable[static_cast<std::size_t>(record)].scalarCalc({w, true, inputs, &environment}, result);
    return result;
  }
};

}  // namespace kalvex
