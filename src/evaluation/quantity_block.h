// Quantities of a bulk sample at a block of frequencies.
#pragma once

#include <array>

#include "evaluation/quantity_formulas.h"
#include "evaluation/spectrum_block.h"

namespace kalvex {

struct alignas(64) BlockNumbers : std::array<double, kSpectrumBlock> {};

// The dielectric function at the frequencies of a block: the input for a Quantity.
struct EpsBlock {
  BlockNumbers w;  // cm-1
  BlockNumbers re;
  BlockNumbers im;
};

struct QuantityBlock {
  BlockNumbers value;
  BlockNumbers dRe;  // with derivatives
  BlockNumbers dIm;
  std::array<BlockNumbers, kExpParamCount> dExp;  // 0 for parameters that the Quantity does not read
  bool anyLimit = false;                          // |eps| is out of range at some frequency; dExp is then meaningless
};

// The result of QuantityOfEps at each frequency. The frequency in `in` is ignored.
void QuantityOfEpsBlock(const QuantityInput& in, const EpsBlock& eps, Quantity quantity, QuantityBlock& out);

}  // namespace kalvex
