#include "macro/named_model.h"

#include "program/program.h"
#include "records/model_table.h"

namespace kalvex {

std::string ModelText(int number) { return "model " + std::to_string(number); }

Model* ModelOf(const MacroCall& call, int number) {
  return number > 0 ? GetModelByNumber(call.program.params, static_cast<std::uint32_t>(number)) : nullptr;
}

MacroResult NoModel(MacroCall& call, int number) { return call.Nothing(ModelText(number) + " does not exist"); }

Model* NeededModel(MacroCall& call) {
  const auto number = call.Int("ModelNo");
  if (!number) {
    call.Nothing("ModelNo is missing");
    return nullptr;
  }
  Model* const model = ModelOf(call, *number);
  if (!model) NoModel(call, *number);
  return model;
}

}  // namespace kalvex
