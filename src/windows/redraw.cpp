#include "windows/redraw.h"

namespace kalvex {

void RefreshModelWindow(const Notices& notices, Model& model, bool quiet) {
  NotifyGraphs(notices, GraphEvent::kModelParamChanged, model.number);
  if (!quiet) NotifyFit(notices, FitNotice::kModelParamsChanged);
  model.dirty = false;
}

void RefreshModelRows(const Notices& notices, Model& model) {
  NotifyGraphs(notices, GraphEvent::kModelRowsChanged, model.number);
  RefreshModelWindow(notices, model);
}

void RefreshExpParams(const Notices& notices, ParamTables& tables, bool quiet) {
  NotifyGraphs(notices, GraphEvent::kExpParamChanged, -1);
  if (!quiet) NotifyFit(notices, FitNotice::kExpParamsChanged);
  tables.expParamsDirty = false;
}

void RedrawDirty(const Notices& notices, ParamTables& tables) {
  for (Model& model : tables.models) {
    if (model.number != 0 && model.dirty) RefreshModelWindow(notices, model);
  }
  if (tables.expParamsDirty) RefreshExpParams(notices, tables);
}

}  // namespace kalvex
