// What a user reads of the special models: the list of them, and a page for each, made from its row map.
#pragma once

#include <string>

#include "evaluation/model_type.h"

namespace kalvex {

// The type of a code, null if there is none.
const ModelType* TypeOfCode(int code);

// A line "code name: sample" for each type.
std::string ListOfTypes();
// The same as a page with links, and the page of one type, in Markdown.
std::string IndexOfTypes();
std::string PageOf(const ModelType& type);
// The macro on that page: it sets up a model of the type, the last one it makes, with everything that it names.
std::string MacroOf(const ModelType& type);

// What an element of the rows means in a model of this type, null if the type does not read it.
const RowCell* CellAt(const RowMap& map, int row, int column);
// The least number of rows that shows every cell, with two groups where groups repeat.
int TypicalRows(const RowMap& map);

}  // namespace kalvex
