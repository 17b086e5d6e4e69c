// What every special model has in common: the test of its number of rows and the models that its rows name.
#pragma once

#include "models/eval_context.h"

namespace kalvex {

// How many rows a type takes, and the status that another number gives.
struct RowRule {
  int least = 0;
  int most = 0;
  int failure = -1;
  constexpr bool Admits(int rows) const { return rows >= least && rows <= most; }
};
constexpr RowRule Exactly(int rows, int failure = -1) { return {rows, rows, failure}; }
constexpr RowRule AtLeast(int rows, int failure = -1) { return {rows, 2147483647, failure}; }

// The model named by an element of the rows, null if there is none of that number.
Model* PartnerAt(EvalContext& ctx, const Model& model, int row, int column);

}  // namespace kalvex
