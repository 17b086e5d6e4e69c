// What a change of a model or of the experimental parameters sets off: who hears of it, and in which order.
#pragma once

#include "core/notices.h"
#include "records/model.h"

namespace kalvex {

// After a change of parameters: tells the graphs and, unless quiet, the fit; the model is no longer dirty.
void RefreshModelWindow(const Notices& notices, Model& model, bool quiet = false);
// After a change of the number or order of rows: the graphs hear of that first.
void RefreshModelRows(const Notices& notices, Model& model);
// Refreshes every model, and the experimental parameters, that coupling has overwritten.
void RedrawDirty(const Notices& notices, ParamTables& tables);

// The same for the window of experimental parameters.
void RefreshExpParams(const Notices& notices, ParamTables& tables, bool quiet = false);

}  // namespace kalvex
