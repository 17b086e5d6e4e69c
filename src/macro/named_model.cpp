#include "macro/named_model.h"

#include "session/session.h"

namespace kalvex {

std::string ModelText(long long number) { return "model " + std::to_string(number); }

const Model* NeededModel(MacroCall& call, std::optional<int> modelNo) {
  if (!modelNo) {
    call.Missing("ModelNo");
    return nullptr;
  }
  const Model* const model = call.session.FindModel(*modelNo);
  if (!model) call.Nothing(NoSuchModel(*modelNo).Text());
  return model;
}

}  // namespace kalvex
