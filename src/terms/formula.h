// The common part of all terms. A term consists of the cells that it reads, its formula and its page:
//
//     struct DrudeByWeight {
//       static constexpr const char* kName = "Drude term by its weight";
//       static constexpr TermCell kCells[] = {Number(0, Wp, "weight A", "cm-2", 4e6), Number(0, G, "width G", "cm-1",
//       50)}; static constexpr TermPage kPage = {.formula = "A/(-w^2 - i w G)", .source = "...", .limits = "..."};
//       static constexpr std::size_t kInputs = std::size(kCells);
//       // False where a denominator fails.
//       template <class T> static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps);
//     };
//     constinit const TermRecord kDrudeByWeight = MakeTerm<DrudeByWeight, 9>();
//
// The formula is written once for any number type: double gives the value, dual numbers give the derivatives
// by all its inputs. A term that is computed in another way has `static int Calc(const TermCall&, Cplx&)` instead
// of Value. A term with a partial spectral weight also has `static int Scalar(const TermCall&, double&)`.
#pragma once

#include <array>
#include <cstddef>
#include <utility>

#include "core/limits.h"
#include "numeric/dual.h"
#include "terms/lorentz.h"
#include "terms/term_record.h"

namespace kalvex {

template <class Term>
int CalcFormula(const TermCall& call, Cplx& result) {
  constexpr std::size_t kInputs = Term::kInputs;
  if (!call.derivatives) {
    std::array<double, kInputs> in;
    for (std::size_t i = 0; i < kInputs; ++i) in[i] = call.inputs[i].value;
    if (!Term::Value(call, in, result)) GiveMarker(call, result);
    return 0;
  }
  using Slope = Dual<kInputs>;
  std::array<Slope, kInputs> in;
  for (std::size_t i = 0; i < kInputs; ++i) in[i] = Slope(call.inputs[i].value, i);
  Complex<Slope> eps;
  if (!Term::Value(call, in, eps)) {
    GiveMarker(call, result);
    return 0;
  }
  result = ValueOf(eps);
  for (std::size_t i = 0; i < kInputs; ++i) PutSlope(call.inputs[i], {eps.re.v[i], eps.im.v[i]});
  return 0;
}

constexpr bool CellsStandInRows(std::span<const TermCell> cells, int rows) {
  for (const TermCell& cell : cells) {
    if (cell.idIndex < 0 || cell.idIndex >= rows || (cell.column != Wp && cell.column != G)) return false;
  }
  return true;
}

// The record of a term under the codes kFirst to kLast.
template <class Term, int kFirst, int kLast = kFirst>
constexpr TermRecord MakeTerm() {
  constexpr int kIds = kLast - kFirst + 1;
  static_assert(kFirst > 0 && kIds > 0, "a code is above 0: 0 marks a plain row");
  static_assert(kIds <= kMostTermIds, "TermSlots has no room for so many codes");
  static_assert(CellsStandInRows(Term::kCells, kIds), "an input is in no column Wp or G of the term's rows");
  TermRecord record{.name = Term::kName, .firstId = kFirst, .nIds = kIds, .inputs = Term::kCells, .page = Term::kPage};
  if constexpr (requires { Term::Calc; }) {
    record.calc = Term::Calc;
  } else {
    static_assert(Term::kInputs <= std::size(Term::kCells), "the formula reads more inputs than the record has");
    record.calc = CalcFormula<Term>;
  }
  if constexpr (requires { Term::Scalar; }) record.scalarCalc = Term::Scalar;
  if constexpr (requires { Term::kReplacesRealPart; }) record.replacesRealPart = Term::kReplacesRealPart;
  if constexpr (requires { Term::kFactors; }) record.factors = Term::kFactors;
  return record;
}

// The same term under several pairs of codes, from kFirst on.
template <class Term, int kFirst, int... kPairs>
constexpr std::array<TermRecord, sizeof...(kPairs)> MakePairs(std::integer_sequence<int, kPairs...>) {
  return {MakeTerm<Term, kFirst + 2 * kPairs, kFirst + 2 * kPairs + 1>()...};
}

// A record that has a code in common with another one.
constexpr TermRecord SharingCodes(TermRecord record) {
  record.sharesCodes = true;
  return record;
}

// Whether the square of a frequency counts as zero.
inline bool IsTiny(double x) { return x * x < kTinyNorm; }

// D(W, G) = W^2 - w^2 - i w G over any number type.
template <class T>
Complex<T> DenominatorOf(double w, const T& W, const T& G) {
  return {W * W - w * w, -w * G};
}

// Quotient of a term; false if the norm of the denominator is below 1e-30.
template <class T>
bool Divide(const Complex<T>& a, const Complex<T>& b, Complex<T>& quotient) {
  if (Norm(ValueOf(b)) < kTinyNorm) return false;
  quotient = a / b;
  return true;
}

}  // namespace kalvex
