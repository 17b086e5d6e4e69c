// Finds, creates and closes models. A model is identified by its number and never by its position in the table.
#pragma once

#include <cstdint>
#include <vector>

#include "records/model.h"

namespace kalvex {

// The model with that number, or null. 0 is not a valid number.
Model* GetModelByNumber(ParamTables& tables, std::uint32_t number);
const Model* GetModelByNumber(const ParamTables& tables, std::uint32_t number);
// The model whose number is the value of a parameter. Null unless the value is a whole number other than 0.
const Model* GetModelByReal(const ParamTables& tables, double number);

int CountModels(const ParamTables& tables);
std::vector<std::uint32_t> ListModelNumbers(const ParamTables& tables);
// Index of a model in the table.
int SlotOf(const ParamTables& tables, const Model& model);

// Creates a model with the default leading parameter and one default row, in the first free entry. Null if the table is
// full.
Model* CreateModel(ParamTables& tables);
// Frees the entry. The number is not reused.
void CloseModelRecord(Model& model);

}  // namespace kalvex
