// The model that a statement names by its number.
#pragma once

#include <optional>
#include <string>

#include "macro/command.h"
#include "records/model.h"

namespace kalvex {

std::string ModelText(long long number);

// The model with the number ModelNo. If ModelNo is missing or the model does not exist, sets the verbose text and
// returns null.
const Model* NeededModel(MacroCall& call, std::optional<int> modelNo);

}  // namespace kalvex
