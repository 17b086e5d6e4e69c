// Texts for users about the special models: their list, and a page for each type, made from its row map.
#pragma once

#include <string>

#include "evaluation/model_type.h"

namespace kalvex {

// The type of a code, null if there is none.
const ModelType* TypeOfCode(int code);

// A line for each type: code, name and sample, separated by tabs.
std::string ListOfTypes();
// In Markdown: the list with links, and the page of one type.
std::string IndexOfTypes();
std::string PageOf(const ModelType& type);
// The macro on that page: it makes the partners and datasets that the type needs, and last a model of the type.
std::string MacroOf(const ModelType& type);

// The description of a cell of the rows, null if the type does not read it. row and column count from 0.
const RowCell* CellAt(const RowMap& map, int row, int column);
// The least number of rows with every cell of the head and, if groups repeat, two groups.
int TypicalRows(const RowMap& map);

}  // namespace kalvex
