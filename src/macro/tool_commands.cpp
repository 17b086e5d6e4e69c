#include "macro/tool_commands.h"

#include "session/session.h"

namespace kalvex {
namespace {

std::string LastOf(const std::vector<std::string>& labels) { return labels.empty() ? std::string() : labels.back(); }

}  // namespace

MacroResult SaveParamsCommand(MacroCall& call, const FileParams& p) {
  const std::string file = p.File.value_or("");
  return call.Told(call.session.SaveParams(file), "the rows of all models written to '" + file + "'");
}

MacroResult LoadParamsCommand(MacroCall& call, const FileParams& p) {
  const std::string file = p.File.value_or("");
  return call.Told(call.session.LoadParams(file),
                   "values read from '" + file + "' as far as its models and rows match the present ones");
}

MacroResult SaveParamsSpecialCommand(MacroCall& call, const NoParams&) {
  return call.Told(call.session.SaveParamsSpecial(), "the files of 'ParsSpecial.cfg' written");
}

MacroResult TestDerivativesCommand(MacroCall& call, const NoParams&) {
  return call.Told(call.session.TestDerivatives(), "written to 'TestDeriv1.txt'");
}

MacroResult TestQuantityDerivativesCommand(MacroCall& call, const NoParams&) {
  return call.Told(call.session.TestQuantityDerivatives(), "written to 'TestDeriv.txt'");
}

MacroResult WriteGapTableCommand(MacroCall& call, const NoParams&) {
  return call.Told(call.session.WriteGapTable(), "written to 'Tab.dat'");
}

MacroResult StepBackCommand(MacroCall& call, const NoParams&) {
  const std::string step = LastOf(call.session.GetHistory().LabelsBack());
  return call.Told(call.session.StepBack(), "undone: " + step);
}

MacroResult StepForwardCommand(MacroCall& call, const NoParams&) {
  const std::string step = LastOf(call.session.GetHistory().LabelsForward());
  return call.Told(call.session.StepForward(), "redone: " + step);
}

}  // namespace kalvex
