// The values of all rows of all models in one binary file (KVP), and selected values as text.
#pragma once

#include <string>
#include <vector>

#include "core/status.h"
#include "records/model.h"

namespace kalvex {

// Writes the value of each element of each row.
Status SaveParams(const ParamTables& tables, const std::string& path);

// Reads values into the existing models and rows, without regard to limits and coupling. Stops at the first record
// whose model, row or column is not the next existing one. Returns the numbers of the models that were read completely.
Result<std::vector<std::uint32_t>> LoadParams(ParamTables& tables, const std::string& path);

// Writes lines "label value error" into files. "ParsSpecial.cfg" of the current directory lists what to write:
//     count, then for each entry: file (at most 19 characters), label (at most 19), model number, row from 1, column
//     from 1
// Fails, and writes nothing, if "ParsSpecial.cfg" is missing or any entry is wrong.
Status SaveParamsSpecial(const ParamTables& tables);

}  // namespace kalvex
