// The loops over packs of frequencies. All widths of the vector units give the same bits.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "core/vector_width.h"
#include "evaluation/oscillator_block.h"
#include "evaluation/quantity_block.h"
#include "evaluation/stack_block.h"
#include "numeric/pack.h"

namespace kalvex {

// Whether each pack of a block was computed. If not, its lanes need different branches of a formula.
using PacksDone = std::array<bool, kSpectrumBlock / kPack>;

struct SpectrumKernels {
  // As the functions of oscillator_block.h.
  void (*addOscillators)(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re,
                         double* im);
  void (*addOscillatorsForSlopes)(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re,
                                  double* im, double* inverses);
  void (*oscillatorSlopes)(const PlainRow& row, const double* w, const double* inverses, const double* dRe,
                           const double* dIm, double* byWo, double* byWp, double* byG);
  // As QuantityOfEpsBlock, for |eps| within the limits; without derivatives, and with them.
  PacksDone (*quantityValues)(const QuantityInput& in, const EpsBlock& eps, Quantity quantity, QuantityBlock& out);
  PacksDone (*quantityValuesAndSlopes)(const QuantityInput& in, const EpsBlock& eps, Quantity quantity,
                                       QuantityBlock& out);
  // out[16 p + c] = weights[p] factors[c] columns[c][p] for the 16 columns and p below count. Columns and out are
  // accessed up to the next multiple of 8. False if a number is not finite.
  bool (*weightedRows)(const double* const* columns, const double* factors, const double* weights, std::size_t count,
                       double* out);
  // Sum of ((y - values)/sigma)^2 over count numbers. Eight partial sums take every eighth number each; they are added
  // at the end.
  double (*sumOfSquares)(const double* values, const double* y, const double* sigma, std::size_t count);
  // As FillStackBlock.
  void (*stackBlock)(const StackBlockInput& in, StackBlockRoom& room, std::span<StackBlockResult> results);
  // out = a b, out += sum over the rows of a_j b_j, and out = a b + c d, at the frequencies of a block.
  void (*multiply)(const double* a, const double* b, double* out);
  void (*addMultiples)(const double* a, const double* rows, std::size_t count, double* out);
  void (*multiplyPairs)(const double* a, const double* b, const double* c, const double* d, double* out);
};

}  // namespace kalvex
