#include "files/param_file.h"
#include "fit/derivative_test.h"
#include "macro/handlers.h"
#include "program/program.h"
#include "terms/term_tables.h"

namespace kalvex {

MacroResult SaveParamsCommand(MacroCall& call) {
  const std::string file = call.Text("File").value_or("");
  if (SaveParams(call.program.params, file) != 0) return call.Nothing("'" + file + "' cannot be written");
  return call.Done("the rows of all models written to '" + file + "'");
}

MacroResult LoadParamsCommand(MacroCall& call) {
  const std::string file = call.Text("File").value_or("");
  if (LoadParams(call.program.params, call.program.notices, file) != 0) {
    return call.Nothing("'" + file + "' cannot be opened");
  }
  return call.Done("values taken from '" + file + "' as far as models and rows agree");
}

MacroResult SaveParamsSpecialCommand(MacroCall& call) {
  if (SaveParamsSpecial(call.program.params) != 0) {
    return call.Nothing("'ParsSpecial.cfg' is missing or wrong, or a file that it names cannot be written");
  }
  return call.Done("the files of 'ParsSpecial.cfg' written");
}

MacroResult TestDerivativesCommand(MacroCall& call) {
  if (TestDerivatives(call.program.fit, call.program.params, call.program.eval) != 0)
    return call.Nothing("'TestDeriv1.txt' cannot be written");
  return call.Done("written to 'TestDeriv1.txt'");
}

MacroResult TestQuantityDerivativesCommand(MacroCall& call) {
  if (TestQuantityDerivatives(call.program.fit, call.program.params, call.program.eval) != 0) {
    return call.Nothing("'TestDeriv.txt' cannot be written");
  }
  return call.Done("written to 'TestDeriv.txt'");
}

MacroResult WriteGapTableCommand(MacroCall& call) {
  if (!WriteGapTable(GapTableOf(call.program.eval.termEnvironment))) {
    return call.Nothing("'Tab.dat' cannot be written");
  }
  return call.Done("written to 'Tab.dat'");
}

}  // namespace kalvex
