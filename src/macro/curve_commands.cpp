#include "files/curve_file.h"
#include "macro/handlers.h"
#include "macro/named_model.h"
#include "program/program.h"

namespace kalvex {

MacroResult ExportModelCurveCommand(MacroCall& call) {
  if (!call.Text("File")) return call.Nothing("File is missing");
  if (!call.Int("ModelNo")) return call.Nothing("ModelNo is missing");
  if (!call.Text("Quantity")) return call.Nothing("Quantity is missing");
  for (const char* const name : {"XMin", "XMax"}) {
    if (!call.Real(name)) return call.Nothing(std::string(name) + " is missing");
  }
  if (!call.Int("XPts")) return call.Nothing("XPts is missing");
  CurveExport what;
  what.xMin = *call.Real("XMin");
  what.xMax = *call.Real("XMax");
  what.points = *call.Int("XPts");
  what.onMesh = call.Int("XMethod").value_or(1) == 2;
  what.grid = call.Int("XGrid").value_or(1);
  what.derivatives = call.Int("Deriv").value_or(0) != 0;
  what.quantity = QuantityOfShortName(*call.Text("Quantity"));
  if (what.points < 1) return call.Nothing("XPts should be at least 1");
  if (!(what.xMin < what.xMax)) return call.Nothing("XMin should be below XMax");
  if (what.grid == 2 && !(what.xMin > 0)) return call.Nothing("a logarithmic grid needs XMin above 0");

  const std::string file = *call.Text("File");
  const int number = *call.Int("ModelNo");
  Model* const model = ModelOf(call, number);
  const int status = ExportModelCurve(call.program.params, call.program.eval, model, what, file);
  if (status < 0) return call.Nothing("'" + file + "' cannot be written");
  const std::string empty = ", so '" + file + "' is empty";
  if (!model) return call.Done("model " + std::to_string(number) + " does not exist" + empty);
  if (!what.quantity) return call.Done("'" + *call.Text("Quantity") + "' is no Quantity" + empty);
  const char* const old =
      "; but the model computes nothing: a model or dataset that it names is missing, or its rows do not fit. The "
      "values "
      "are old ones";
  return call.Done("written to '" + file + "'" + (status == kOldValues ? old : ""));
}

}  // namespace kalvex
