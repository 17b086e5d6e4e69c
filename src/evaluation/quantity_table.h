// The results of an evaluation for each Quantity.
#pragma once

#include <array>
#include <cstdint>

#include "datasets/quantity.h"
#include "records/model.h"

namespace kalvex {

// The result of an evaluation for one Quantity.
struct QuantityResult {
  std::uint32_t wanted = 0;  // the next evaluation must compute it
  double value = 0;
  double dRe = 0;  // derivative by the real part of eps
  double dIm = 0;
  double dScalar = 0;  // derivative by the real row sum
  double dMuRe = 0;
  double dMuIm = 0;
  std::array<double, kExpParamCount> dExp{};  // derivative by each experimental parameter
  // Whether value and dExp are left from an earlier evaluation. Valid only if Forget was called before this one.
  bool formerValue = false;
  bool formerExp = false;

  void Put(double result) {
    value = result;
    formerValue = false;
  }
  void ClearExp() {
    dExp.fill(0);
    formerExp = false;
  }
  void Forget() { formerValue = formerExp = true; }
};

using QuantityTable = PerQuantity<QuantityResult>;

// Marks the Quantities of the set as wanted, and no others.
inline void WantOnly(QuantityTable& table, QuantitySet set) {
  for (const Quantity q : kEveryQuantity) table[q].wanted = set.Contains(q) ? 1 : 0;
}

}  // namespace kalvex
