// The file formats of models, parameters, meshes and computed curves. This folder stands on floor 6: it reads and
// writes the records of the floors below and knows no session.
//
//   model_file.h   the model file (KVM), its readable summary, and the table that collects the results of a series
//   vdf_file.h     the mesh of a variational dielectric function (KVV)
//   param_file.h   the values of all models in one file (KVP), and selected values as text
//   curve_file.h   a model's computed curve as text
//
// Each header can be read alone. The layout of a binary file stands at the top of its .cpp file; the numbers are
// little-endian and packed. A file is written as a whole, except for the table of a series, which grows by a line. A
// count in a file is checked against the length of the file.
#pragma once

#include <string>
#include <string_view>

#include "core/status.h"
#include "evaluation/eval_context.h"
#include "records/model.h"

namespace kalvex {

// Writes three files: the model; a summary with the ChiSq of the fit, under the same name with the extension "asc"; and
// one more line of "Par.dat" in the same directory. Only a failure of the model file is returned. The Quantity E1 stays
// requested in ctx.
Status SaveModel(EvalContext& ctx, const Model& model, double totalChiSq, const std::string& path);

// Replaces epsInf and the rows by those of a file. The limits and the coupling of epsInf stay. Fails, and leaves the
// model unchanged, if the file cannot be opened or is too short to be a model. Rows that are missing at the end of the
// file repeat the last one.
Status LoadModel(Model& model, const std::string& path);

// The names of the summary and of the table that belong to a model file.
std::string SummaryNameOf(std::string_view path);
std::string TableNameOf(std::string_view path);

}  // namespace kalvex
