// The values of all rows of all models in one binary file (KVP), and selected values as text.
#pragma once

#include <string>
#include <vector>

#include "core/status.h"
#include "records/model.h"

namespace kalvex {

// Writes the values of every element of every row.
Status SaveParams(const ParamTables& tables, const std::string& path);

// Reads values back into the models and rows as they stand now, past limits and coupling, up to the first record that
// belongs to another place. Gives the numbers of the models that are complete.
Result<std::vector<std::uint32_t>> LoadParams(ParamTables& tables, const std::string& path);

// Writes the "label value error" lines that "ParsSpecial.cfg" of the current directory asks for, into the files it
// names:
//     count, then for each entry: file (at most 19 characters), label (at most 19), model number, row from 1, column
//     from 1
// A failure if that file is missing or any entry is wrong, and then nothing is written.
Status SaveParamsSpecial(const ParamTables& tables);

}  // namespace kalvex
