// The fields of a parameter that a macro statement gives, as SetModelParam and SetExpParam share them.
#pragma once

#include <optional>
#include <string>

#include "macro/command_table.h"
#include "records/model.h"

namespace kalvex {

// Value and FitActive, through the setters that keep limits and coupling.
void SetValueAndFitActive(MacroCall& call, ModelParam& param);
// The four limit fields, and the value once more so that new limits take effect.
void SetLimits(MacroCall& call, ModelParam& param);
void SetCouplingIfGiven(MacroCall& call, ModelParam& param);

// How the parameter stands now, for verbose output.
std::string ParamText(const ModelParam& param);

}  // namespace kalvex
