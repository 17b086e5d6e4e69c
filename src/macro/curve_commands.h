// The command that writes a model's computed curve.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

struct ExportModelCurveParams {
  std::optional<int> ModelNo, XMethod, XPts, XGrid, Deriv;
  std::optional<double> XMin, XMax;
  std::optional<std::string> File, Quantity;
  static constexpr auto Describe() {
    using P = ExportModelCurveParams;
    return std::to_array({Row<&P::File>("File", 200), Row<&P::ModelNo>("ModelNo"), Row<&P::XMethod>("XMethod"),
                          Row<&P::Quantity>("Quantity", 10), Row<&P::XMin>("XMin"), Row<&P::XMax>("XMax"),
                          Row<&P::XPts>("XPts"), Row<&P::XGrid>("XGrid"), Row<&P::Deriv>("Deriv")});
  }
};
MacroResult ExportModelCurveCommand(MacroCall& call, const ExportModelCurveParams& p);

}  // namespace kalvex
