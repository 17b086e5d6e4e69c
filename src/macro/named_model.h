// The model that a statement names by its number.
#pragma once

#include <string>

#include "macro/command_table.h"
#include "records/model.h"

namespace kalvex {

std::string ModelText(int number);
// Null if there is none of that number.
Model* ModelOf(const MacroCall& call, int number);
// Ends a handler for want of the model.
MacroResult NoModel(MacroCall& call, int number);
// The model named by ModelNo, which must be given and exist; null after saying what is missing.
Model* NeededModel(MacroCall& call);

}  // namespace kalvex
