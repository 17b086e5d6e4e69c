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
    return std::tuple(Param("File", &P::File, 200), Param("ModelNo", &P::ModelNo), Param("XMethod", &P::XMethod),
                      Param("Quantity", &P::Quantity, 10), Param("XMin", &P::XMin), Param("XMax", &P::XMax),
                      Param("XPts", &P::XPts), Param("XGrid", &P::XGrid), Param("Deriv", &P::Deriv));
  }
};
MacroResult ExportModelCurveCommand(MacroCall& call, const ExportModelCurveParams& p);

}  // namespace kalvex
