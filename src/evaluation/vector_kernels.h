// The loops over packs of frequencies. They are compiled once for each width of the vector units, and the best that the
// machine has is taken when the program runs. All give the same bits: no product is fused with a sum.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "evaluation/oscillator_block.h"
#include "evaluation/quantity_block.h"
#include "evaluation/stack_block.h"
#include "numeric/pack.h"

namespace kalvex {

// Whether each pack of a block was done; otherwise its lanes need different branches of a formula.
using PacksDone = std::array<bool, kSpectrumBlock / kPack>;

struct VectorKernels {
  // As the functions of oscillator_block.h.
  void (*addOscillators)(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re,
                         double* im);
  void (*addOscillatorsForSlopes)(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re,
                                  double* im, double* inverses);
  void (*oscillatorSlopes)(const PlainRow& row, const double* w, const double* inverses, const double* dRe,
                           const double* dIm, double* byWo, double* byWp, double* byG);
  // As QuantityOfEpsBlock, where |eps| is between the limits; without derivatives and with them.
  PacksDone (*quantityValues)(const QuantityInput& in, const EpsBlock& eps, Quantity quantity, QuantityBlock& out);
  PacksDone (*quantityValuesAndSlopes)(const QuantityInput& in, const EpsBlock& eps, Quantity quantity,
                                       QuantityBlock& out);
  // out[16 p + c] = weights[p] factors[c] columns[c][p] for the 16 columns and p below count; the columns, and out, are
  // read and written up to the next multiple of 8. False if any of these numbers is not finite.
  bool (*weightedRows)(const double* const* columns, const double* factors, const double* weights, std::size_t count,
                       double* out);
  // Sum of ((y - values)/sigma)^2 over count numbers: eight sums of every eighth, and then their sum.
  double (*sumOfSquares)(const double* values, const double* y, const double* sigma, std::size_t count);
  // As FillStackBlock.
  void (*stackBlock)(const StackBlockInput& in, StackBlockRoom& room, std::span<StackBlockResult> results);
};

// Those that this machine can run, the widest first.
std::span<const VectorKernels* const> VectorKernelsOfThisMachine();
inline const VectorKernels& WidestKernels() { return *VectorKernelsOfThisMachine().front(); }

}  // namespace kalvex
