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
    return std::to_array<ParamRow<P>>({{"File", &P::File, 200},
                                       {"ModelNo", &P::ModelNo},
                                       {"XMethod", &P::XMethod},
                                       {"Quantity", &P::Quantity, 10},
                                       {"XMin", &P::XMin},
                                       {"XMax", &P::XMax},
                                       {"XPts", &P::XPts},
                                       {"XGrid", &P::XGrid},
                                       {"Deriv", &P::Deriv}});
  }
};
MacroResult ExportModelCurveCommand(MacroCall& call, const ExportModelCurveParams& p);

}  // namespace kalvex
