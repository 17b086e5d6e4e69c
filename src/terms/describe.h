// The descriptions of the composite terms for users, made from their records: the list, a page for each, and the
// meaning of an element of a model's rows.
#pragma once

#include <string>

#include "terms/term_record.h"

namespace kalvex {

// The record whose first code this is; otherwise the first record in table order that has the code, also as the code of
// a factor row. Null if there is none.
const TermRecord* TermOfCode(int code);

// Meaning and unit: "weight A of line 3, cm-2".
std::string MeaningOf(const TermCell& cell);
// The meaning of an element of a row with a code: the term for column Wo, the meaning of the column for Wp and G. Empty
// if row or column do not exist, and for a plain row.
std::string TermMeaningAt(const Model& model, int row, int column);

// A line "codes name causal" for each record.
std::string ListOfTerms();
// The list as a page with links, and the page of one record, in Markdown. The page's file is named after the first
// code.
std::string IndexOfTerms();
std::string PageOf(const TermRecord& record);
// The macro on that page. It sets up model 1 with only the term, at its typical values, and exports real and imaginary
// part to E1.dat and E2.dat.
std::string MacroOf(const TermRecord& record);
// Number of points of these curves.
inline constexpr int kPagePoints = 10;

}  // namespace kalvex
