// What a user reads of the composite terms: the list of them, a page for each, made from its record, and what an
// element of a model's rows means.
#pragma once

#include <string>

#include "terms/term_record.h"

namespace kalvex {

// The record that begins with a code, or else the first one in the order of the table that has it, if only as that of a
// factor row; null if there is none.
const TermRecord* TermOfCode(int code);

// Meaning and unit: "weight A of line 3, cm-2".
std::string MeaningOf(const TermCell& cell);
// What an element of a row means where the row has a code: the term for column Wo, what its column stands for for Wp
// and G. Empty where row or column do not exist and where the row is a plain one.
std::string TermMeaningAt(const Model& model, int row, int column);

// A line "codes name causal" for each record.
std::string ListOfTerms();
// The same as a page with links, and the page of one record, in Markdown. The page's file is named by the first code.
std::string IndexOfTerms();
std::string PageOf(const TermRecord& record);
// The macro on that page: it sets up model 1 with the term alone, at its typical values, and exports real and imaginary
// part to E1.dat and E2.dat.
std::string MacroOf(const TermRecord& record);
// Points of these curves.
inline constexpr int kPagePoints = 10;

}  // namespace kalvex
