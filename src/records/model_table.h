// Finding, creating and closing models. A model is known by its number, never by its place in the table.
#pragma once

#include <cstdint>
#include <vector>

#include "records/model.h"

namespace kalvex {

// The model of that number, or null; 0 is no number.
Model* GetModelByNumber(ParamTables& tables, std::uint32_t number);
const Model* GetModelByNumber(const ParamTables& tables, std::uint32_t number);
// The model whose number a parameter holds: null unless the value is a whole number other than 0.
const Model* GetModelByReal(const ParamTables& tables, double number);

int CountModels(const ParamTables& tables);
std::vector<std::uint32_t> ListModelNumbers(const ParamTables& tables);
// Place of a model in its table, from 0.
int SlotOf(const ParamTables& tables, const Model& model);

// A model with the default leading parameter and one default row, in the first free entry; null if all are taken.
Model* CreateModel(ParamTables& tables);
// Frees the entry. The number is not given out again.
void CloseModelRecord(Model& model);

}  // namespace kalvex
