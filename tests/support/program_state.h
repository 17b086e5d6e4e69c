// All numbers that evaluations and fits write to the tables, for bitwise comparison.
#pragma once

#include <cstring>
#include <vector>

#include "support/tables.h"

namespace kalvex {

inline void AddNumbersOf(const ModelParam& param, std::vector<double>& numbers) {
  const SavedSlopes& slopes = param.savedSlopes;
  for (const double number : {param.value, param.error, slopes.dEpsRe, slopes.dEpsIm}) numbers.push_back(number);
  numbers.insert(numbers.end(), slopes.dQuantity.begin(), slopes.dQuantity.end());
}

inline std::vector<double> NumbersLeftIn(const Tables& tables) {
  std::vector<double> numbers;
  for (const Model& model : tables.params.models) {
    if (model.number != 0) ForEachParam(model, [&](const ModelParam& param) { AddNumbersOf(param, numbers); });
  }
  for (const ModelParam& param : tables.params.ExpParams) AddNumbersOf(param, numbers);
  for (const QuantityResult& of : tables.eval.quantities) {
    for (const double number :
         {static_cast<double>(of.wanted), of.value, of.dRe, of.dIm, of.dScalar, of.dMuRe, of.dMuIm}) {
      numbers.push_back(number);
    }
    numbers.insert(numbers.end(), of.dExp.begin(), of.dExp.end());
  }
  for (const ChiSqTerm& term : tables.fit.list.terms) numbers.push_back(term.termChiSq);
  for (const double number : {tables.fit.TotalChiSq, tables.fit.Lambda, tables.fit.ChiSqChange,
                              static_cast<double>(tables.fit.IterationCount)}) {
    numbers.push_back(number);
  }
  return numbers;
}

// Bitwise: NaN equals NaN, and 0 differs from -0.
inline bool SameBits(const std::vector<double>& a, const std::vector<double>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

}  // namespace kalvex
