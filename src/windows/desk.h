// Desk: what a person has before them. The session holds what is there; the desk holds what is shown of it, keyed by
// the numbers of models and graphs: which windows are open and where, the cursor, the selection, half-typed text. A
// window's functions change the desk, and call the session's operations for everything else; a screen shows what both
// hold. The desk listens to the session, so that a model that is closed by a macro takes its window with it.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "macro/macro_state.h"
#include "session/session.h"
#include "windows/dataset_manager.h"
#include "windows/exp_params_window.h"
#include "windows/fit_window.h"
#include "windows/graph_window.h"
#include "windows/load_dialog.h"
#include "windows/model_window.h"
#include "windows/param_control.h"
#include "windows/suspend_dialog.h"
#include "windows/vdf_dialog.h"
#include "windows/window_texts.h"

namespace kalvex {

struct MainWindow {
  int x = 0;
  int y = 0;
  int width = 640;
  int height = 80;
  std::string title = texts::kMainTitle;
  bool quit = false;   // it is closed: the program ends
  bool about = false;  // the About box is open
};

struct Desk : public SessionListener {
  Session& session;

  MainWindow mainWindow;
  DatasetManager datasetManager;
  LoadDialog loadDialog;
  ParamControl paramControl;
  ExpParamsWindow expParams;
  VdfDialog vdfDialog;
  GraphDialogs graphDialogs;
  FitWindow fitWindow;
  SuspendDialog suspendDialog;
  std::map<std::uint32_t, ModelWindow> models;  // by the model's number: of each model that there is
  std::map<std::uint32_t, GraphWindow> graphs;  // by the graph's number
  std::string fileFolder;                       // where the last file dialog of this run ended
  MacroState macro;

  explicit Desk(Session& on);
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  ~Desk() override;

  void Changed(const Change& change) override;
};

}  // namespace kalvex
