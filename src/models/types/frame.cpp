#include "models/types/frame.h"

#include "models/model_table.h"

namespace kalvex {

Model* PartnerAt(EvalContext& ctx, const Model& model, int row, int column) {
  return GetModelByReal(*ctx.params, Cell(model, row, column).value);
}

}  // namespace kalvex
