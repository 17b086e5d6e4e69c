// The model file (KVM), the readable summary beside it, and the table that collects the results of a series.
#pragma once

#include <string>
#include <string_view>

#include "evaluation/eval_context.h"
#include "records/model.h"

namespace kalvex {

// Writes three files: the model; a summary under the name with its last extension replaced by "asc", with the ChiSq of
// the fit; and a line at the end of "Par.dat" in the model file's directory. Gives 0, or -1 if the model's own file
// cannot be written; the other two are not tested. The E1 Quantity stays wanted.
int SaveModel(EvalContext& ctx, const Model& model, double totalChiSq, const std::string& path);

// Replaces epsInf and the rows by those of a file; the limits and the coupling of epsInf stay. Gives 0, or -1 with the
// model unchanged if the file cannot be opened or is too short to be a model. Rows that are missing at the end of the
// file are what the last one was.
int LoadModel(Model& model, const std::string& path);

// The names of the summary and of the table that belong to a model file.
std::string SummaryNameOf(std::string_view path);
std::string TableNameOf(std::string_view path);

}  // namespace kalvex
