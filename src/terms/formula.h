// A term whose value is written once, over any number type: with double it gives the value, with dual numbers the
// derivatives by all its inputs.
//
//     struct Drude {
//       static constexpr int kInputs = 2;
//       // False where a denominator fails.
//       template <class T> static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps);
//     };
//     ... CalcFormula<Drude> ...
#pragma once

#include <array>
#include <cstddef>

#include "core/limits.h"
#include "numeric/dual.h"
#include "terms/lorentz.h"
#include "terms/term_table.h"

namespace kalvex {

template <class Formula>
int CalcFormula(const TermCall& call, Cplx& result) {
  constexpr std::size_t kInputs = Formula::kInputs;
  if (!call.derivatives) {
    std::array<double, kInputs> in;
    for (std::size_t i = 0; i < kInputs; ++i) in[i] = call.inputs[i].value;
    if (!Formula::Value(call, in, result)) GiveMarker(call, result);
    return 0;
  }
  using Number = Dual<static_cast<int>(kInputs)>;
  std::array<Number, kInputs> in;
  for (std::size_t i = 0; i < kInputs; ++i) in[i] = Number(call.inputs[i].value, static_cast<int>(i));
  Complex<Number> eps;
  if (!Formula::Value(call, in, eps)) {
    GiveMarker(call, result);
    return 0;
  }
  result = ValueOf(eps);
  for (std::size_t i = 0; i < kInputs; ++i) PutSlope(call.inputs[i], {eps.re.v[i], eps.im.v[i]});
  return 0;
}

// Whether the square of a frequency is below what counts as zero.
inline bool IsTiny(double x) { return x * x < kTinyNorm; }

// D(W, G) = W^2 - w^2 - i w G over any number type.
template <class T>
Complex<T> DenominatorOf(double w, const T& W, const T& G) {
  return {W * W - w * w, -w * G};
}

// Quotient of a term, false where the norm of the denominator is below 1e-30.
template <class T>
bool Divide(const Complex<T>& a, const Complex<T>& b, Complex<T>& quotient) {
  if (Norm(ValueOf(b)) < kTinyNorm) return false;
  quotient = a / b;
  return true;
}

}  // namespace kalvex
