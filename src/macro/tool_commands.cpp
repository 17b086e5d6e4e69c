#include "macro/tool_commands.h"

#include <map>

#include "windows/desk.h"

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

MacroResult DefaultsCommand(MacroCall& call, const DefaultsParams& p) {
  static const std::map<std::string, OnError> kAnswers = {
      {"go on", OnError::kGoOn}, {"stop", OnError::kStop}, {"next", OnError::kNextPass}};
  if (!p.Level && !p.OnError) return call.Missing("Level");
  const auto answer = kAnswers.find(p.OnError.value_or("stop"));
  if (answer == kAnswers.end()) return call.Nothing("OnError should be 'stop', 'next' or 'go on'");
  if (p.Level && *p.Level != 1 && *p.Level != 2) return call.Nothing("Level should be 1 or 2");
  if (p.Level) {
    const Status status = call.session.SetDefaults(Defaults{*p.Level});
    if (!status.Ok()) return call.Told(status, {});
    call.desk.macro.onError = OnErrorOf(Defaults{*p.Level});
  }
  if (p.OnError) call.desk.macro.onError = answer->second;
  return call.Done("set");
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
