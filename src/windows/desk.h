// Desk: the state of the windows, with or without a screen. The session holds the data. The desk holds how they are
// shown, under the numbers of models and graphs: open windows and their positions, cursors, selections, texts that are
// being typed. The functions of a window change the desk and call operations of the session; the screen shows both. The
// desk listens to the session: for example, it closes the window of a model that a macro has closed. This folder stands
// on floor 9, above the session; qt/ stands on floor 10.
//
//   desk.h            all of this state, and how it follows changes of the session
//   main_window.h     menu and toolbar, undo and redo
//   model_window.h    the window of a model; model_keys.h: its keys; vdf_dialog.h: the dialog that makes a mesh
//   exp_params_window.h   the window of the experimental parameters
//   param_control.h   the window of the selected parameter; slider_map.h: the scale of its slider
//   cell_editor.h     a parameter that is shown and typed in a cell
//   dataset_manager.h, load_dialog.h   datasets
//   fit_window.h      the fit and its two dialogs
//   graph_window.h    the window of a graph; graph_dialogs.h: the contents of its two dialogs
//   suspend_dialog.h, ask_file.h   questions to a person
//   keys.h, colours.h, window_texts.h   keys, colours and texts
//   qt/               the widgets that show this state on a screen
//
// The functions of a window only translate what a person does. The session decides which changes are allowed, and
// refuses them while a fit runs. A window checks Session::Fit() only before it changes its own state.
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
  bool quit = false;   // the window is closed and the program ends
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
  std::map<std::uint32_t, ModelWindow> models;  // one for each existing model, by the model's number
  std::map<std::uint32_t, GraphWindow> graphs;  // by the graph's number
  std::string fileFolder;                       // the directory of the last file dialog of this run
  MacroState macro;

  // Makes windows for the existing models and graphs. The session must outlive the desk.
  explicit Desk(Session& on);
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  ~Desk() override;

  void Changed(const Change& change) override;
};

// The window of an existing model.
inline ModelWindow& WindowOf(Desk& desk, const Model& model) { return desk.models[model.number]; }

}  // namespace kalvex
