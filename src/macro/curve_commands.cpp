#include "macro/curve_commands.h"

#include "files/curve_file.h"
#include "session/session.h"

namespace kalvex {
namespace {

const char* MissingOf(const ExportModelCurveParams& p) {
  if (!p.File) return "File";
  if (!p.ModelNo) return "ModelNo";
  if (!p.Quantity) return "Quantity";
  if (!p.XMin) return "XMin";
  if (!p.XMax) return "XMax";
  return p.XPts ? nullptr : "XPts";
}

}  // namespace

MacroResult ExportModelCurveCommand(MacroCall& call, const ExportModelCurveParams& p) {
  if (const char* const missing = MissingOf(p)) return call.Missing(missing);
  CurveExport what;
  what.quantity = QuantityOfShortName(*p.Quantity);
  what.xMin = *p.XMin;
  what.xMax = *p.XMax;
  what.points = *p.XPts;
  what.onMesh = p.XMethod.value_or(kXOfGrid) == kXOfMesh;
  what.grid = p.XGrid.value_or(kLinearGrid);
  what.derivatives = FlagOf(p.Deriv).value_or(false);
  const Model* const model = call.session.FindModel(*p.ModelNo);
  const Status status =
      call.session.ExportModelCurve(model ? std::optional(model->number) : std::nullopt, what, *p.File);
  if (!status.Ok() && status.Code() != StatusCode::kNotComputed) return call.Nothing(status.Text());
  const std::string empty = ", so '" + *p.File + "' is empty";
  if (!model) return call.Done(NoSuchModel(*p.ModelNo).Text() + empty);
  if (!what.quantity) return call.Done("'" + *p.Quantity + "' is not a Quantity" + empty);
  return call.Done("written to '" + *p.File + "'" + (status.Ok() ? "" : "; but " + status.Text()));
}

}  // namespace kalvex
