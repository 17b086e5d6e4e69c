// Calls a composite term directly.
#pragma once

#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include "datasets/dataset.h"
#include "terms/describe.h"
#include "terms/term_environment.h"

namespace kalvex {

using Values = std::vector<double>;

// Input values in; value, and derivatives by every input, out. A derivative that is not written stays -7. A term is
// identified by one of its codes: the first one if two terms share a code.
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
  Cplx Value(int code, double w, bool derivatives = true) {
    const auto inputs = Inputs();
    Cplx result;
    TermOfCode(code)->calc({w, derivatives, inputs, &environment}, result);
    return result;
  }
  double Scalar(int code, double w) {
    const auto inputs = Inputs();
    double result = 0;
    TermOfCode(code)->scalarCalc({w, true, inputs, &environment}, result);
    return result;
  }
};

// The dataset for a term that reads one: a positive bump between 20 and 400 cm-1.
inline std::vector<DataRow> SampleSpectrum() {
  std::vector<DataRow> rows;
  for (double x = 20; x <= 400; x += 20) rows.push_back({x, 0.4 * std::exp(-std::pow((x - 180) / 80, 2)), 0.01});
  return rows;
}

// A term at its typical values, with one row for each kind of factors and the sample spectrum as dataset 1.
struct TypicalTerm : Called {
  explicit TypicalTerm(const TermRecord& record) : Called(TypicalValues(record)) {
    Dataset& dataset = datasets->slots[0];
    dataset.id = datasets->nextId++;
    dataset.points = SampleSpectrum();
    dataset.lastActive = static_cast<int>(dataset.points.size()) - 1;
    dataset.nActive = dataset.lastActive + 1;
    environment.datasets = datasets.get();
  }

  static Values TypicalValues(const TermRecord& record) {
    Values values;
    for (const TermCell& cell : record.inputs) values.push_back(cell.typical);
    for (std::size_t i = 0; i < record.factors.size(); ++i) values.push_back(1);  // how many rows
    for (const FactorRow& factor : record.factors) {
      for (const TermCell& cell : factor.cells) values.push_back(cell.typical);
    }
    return values;
  }

  std::unique_ptr<DatasetTable> datasets = std::make_unique<DatasetTable>();
};

}  // namespace kalvex
