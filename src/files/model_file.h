// The model file (KVM), the readable summary beside it, and the table that collects the results of a series.
#pragma once

#include <string>
#include <string_view>

#include "core/status.h"
#include "evaluation/eval_context.h"
#include "records/model.h"

namespace kalvex {

// Writes three files: the model; a summary under the name with its last extension replaced by "asc", with the ChiSq of
// the fit; and a line at the end of "Par.dat" in the model file's directory. A failure is that of the model's own file;
// the other two are not tested. The E1 Quantity stays wanted.
Status SaveModel(EvalContext& ctx, const Model& model, double totalChiSq, const std::string& path);

// Replaces epsInf and the rows by those of a file; the limits and the coupling of epsInf stay. Fails with the model
// unchanged if the file cannot be opened or is too short to be a model. Rows that are missing at the end of the file
// are what the last one was.
Status LoadModel(Model& model, const std::string& path);

// The names of the summary and of the table that belong to a model file.
std::string SummaryNameOf(std::string_view path);
std::string TableNameOf(std::string_view path);

}  // namespace kalvex
