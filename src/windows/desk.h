// WindowDesk: everything that the windows work on. A window's functions change its own state and, by the operations of
// the floors below, what the program holds; a screen shows what they leave and calls them for keys and mouse.
#pragma once

#include "core/notices.h"
#include "core/platform.h"
#include "datasets/dataset.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"
#include "graphs/graph.h"
#include "records/model.h"
#include "windows/dataset_manager.h"
#include "windows/exp_params_window.h"
#include "windows/graph_window.h"
#include "windows/load_dialog.h"
#include "windows/param_control.h"
#include "windows/vdf_dialog.h"

namespace kalvex {

struct WindowDesk {
  ParamTables& params;
  DatasetTable& datasets;
  EvalContext& eval;
  FitState& fit;
  GraphTable& graphs;
  const Notices& notices;
  Platform& platform;
  DatasetManager& datasetManager;
  LoadDialog& loadDialog;
  ExpParamsWindow& expParams;
  ParamControl& paramControl;
  VdfDialog& vdfDialog;
  GraphDialogs& graphDialogs;
  const bool& graphReader;
  std::string& fileFolder;  // where the last file dialog of this run ended
};

// While a fit runs, its lists point into the tables: no window but the fit's own may change anything then.
inline bool IsFrozen(const WindowDesk& desk) { return desk.fit.FitRunning; }

}  // namespace kalvex
