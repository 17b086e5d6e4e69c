// Builds models of special types for tests that compare them with their own calculations.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "evaluation/eval_model.h"
#include "evaluation/sample_models.h"
#include "support/tolerances.h"
#include "types/types.h"

namespace kalvex {

using C = std::complex<double>;
constexpr C kI{0, 1};

class TypeFixture : public testing::Test {
 protected:
  // A model of a type with these rows.
  Model& Make(int code, std::initializer_list<std::array<double, 3>> rows) {
    Model& model = NewModel(program, rows, -code);
    model.epsInf.adjustable = 0;
    return model;
  }
  // The number of a plain model: constant, or with oscillators.
  double Medium(double epsInf, std::initializer_list<std::array<double, 3>> rows = {}) {
    return NewModel(program, rows, epsInf).number;
  }
  Model& ModelOf(double number) { return *GetModelByNumber(program.params, static_cast<std::uint32_t>(number)); }
  C Eps(double number, double x) { return Pair(ModelOf(number), kE1, x); }
  C Index(double number, double x) { return std::sqrt(Eps(number, x)); }

  double At(Model& model, Quantity quantity, double x) { return QuantityAt(program, model, quantity, x); }
  C Pair(Model& model, Quantity quantity, double x) {
    return {At(model, quantity, x), At(model, NextAfter(quantity), x)};
  }
  // Evaluates all Quantities and returns the status. All values are set to 77 before.
  int Status(Model& model, double x) {
    for (QuantityResult& quantity : program.eval.quantities) quantity.wanted = 1, quantity.value = 77;
    return EvalModel(program.eval, model, x, false);
  }
  double Left(Quantity quantity) const { return program.eval.quantities[quantity].value; }

  // Fills a dataset slot with the given function at 200 points.
  template <class Function>
  void Load(int slot, double from, double to, Function f) {
    Dataset& dataset = program.datasets.slots[static_cast<std::size_t>(slot - 1)];
    dataset = {};
    dataset.id = static_cast<std::uint32_t>(100 + slot);
    constexpr int kPoints = 200;
    for (int i = 0; i <= kPoints; ++i) {
      const double x = from + (to - from) * i / kPoints;
      dataset.points.push_back({x, f(x), 0.01});
    }
  }

  Tables program;
};

// A layer for characteristic matrices: admittance y and phase 2 pi x k d. Layers are listed from the front.
struct SlowLayer {
  C y, k;
  double d;
};
inline std::pair<C, C> SlowStack(const std::vector<SlowLayer>& layers, C front, C back, double x) {
  C E = 1, H = back;
  for (std::size_t j = layers.size(); j-- > 0;) {
    const auto& [y, k, d] = layers[j];
    const C p = 2 * std::numbers::pi * x * k * d;
    const C e = std::cos(p) * E - kI * std::sin(p) / y * H, h = -kI * y * std::sin(p) * E + std::cos(p) * H;
    E = e;
    H = h;
  }
  return {(front * E - H) / (front * E + H), 2.0 * front / (front * E + H)};
}

}  // namespace kalvex
