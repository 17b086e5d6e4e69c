// An open fit window with three equal models and two datasets: R and E1 of the first model.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "evaluation/eval_spectrum.h"
#include "fit/fit_lists.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "support/open_session.h"

namespace kalvex {

using Texts = std::vector<std::string>;

class FitWindows : public testing::Test, protected OpenDesk {
 protected:
  FitWindows() {
    for (int number = 1; number <= 3; ++number) AddModel(3, 100, 200, 10);
    Measure(1, model(1), kRefl);
    Measure(2, model(1), kE1);
    datasets.slots[0].name = "R.dat";
    datasets.slots[1].name = "E1.dat";
    OpenFitWindow(desk);
  }
  void AddModel(double epsInf, double wo, double wp, double g) {
    Model& made = *GetModelByNumber(params, *session.NewModel());
    made.epsInf.value = epsInf;
    Cell(made, 0, Wo).value = wo;
    Cell(made, 0, Wp).value = wp;
    Cell(made, 0, G).value = g;
  }
  // Fills a slot with a Quantity of the present model.
  void Measure(int slot, Model& of, Quantity quantity) {
    Dataset& dataset = datasets.slots[static_cast<std::size_t>(slot - 1)];
    dataset = Dataset{};
    dataset.id = datasets.nextId++;
    dataset.Quantity = quantity;
    std::vector<double> x;
    for (int i = 0; i < 60; ++i) x.push_back(30 + 4.0 * i);
    const std::vector<QuantitySet> wanted(x.size(), QuantitySet{quantity});
    EvalSpectrum(eval, of, {x, wanted, false, {}}, [&](const SpectrumBlock& block) {
      for (std::size_t i = 0; i < block.count; ++i) {
        dataset.points.push_back({x[block.first + i], block.Value(quantity, i), 0.01});
      }
    });
    dataset.CutMin = x.front();
    dataset.CutMax = x.back();
    ComputeActiveRange(dataset);
  }
  Model& model(std::uint32_t number) { return *GetModelByNumber(params, number); }
  void Term(int slot, std::uint32_t number, double weight = 1) { session.AddTerm(slot, number, weight).Ignore(); }
  // Rebuilds the fit's lists after a test has changed the tables directly.
  void Rebuild() {
    RebuildFitLists(fit, params, eval);
    RefreshTermLines(desk);
  }
  std::vector<ChiSqTerm>& terms() { return fit.list.terms; }
  bool IsSelected(std::size_t row) { return desk.fitWindow.selected.contains(terms()[row].id); }
  void Select(std::initializer_list<std::size_t> rows) {
    desk.fitWindow.selected.clear();
    for (const std::size_t row : rows) desk.fitWindow.selected.insert(terms()[row].id);
    SelectionChanged(desk);
  }
};

}  // namespace kalvex
