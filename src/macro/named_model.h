// The model that a statement names by its number.
#pragma once

#include <optional>
#include <string>

#include "macro/command.h"
#include "records/model.h"

namespace kalvex {

std::string ModelText(long long number);

// The model named by ModelNo, which must be given and exist; null after saying what is missing.
const Model* NeededModel(MacroCall& call, std::optional<int> modelNo);

}  // namespace kalvex
