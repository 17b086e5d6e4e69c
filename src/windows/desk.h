// Desk: what a person has before them. The session holds what is there; the desk holds what is shown of it, keyed by
// the numbers of models and graphs: which windows are open and where, the cursor, the selection, half-typed text. A
// window's functions change the desk, and call the session's operations for everything else; a screen shows what both
// hold. The desk listens to the session, so that a model that is closed by a macro takes its window with it.
//
//   desk.h            everything that is shown, and how it follows the session
//   main_window.h     menu and toolbar, steps back and forward
//   model_window.h    the window of a model; model_keys.h: its keys; vdf_dialog.h: the dialog that makes a mesh
//   exp_params_window.h   the window of the experimental parameters
//   param_control.h   the window of the one selected parameter; slider_map.h: the scale of its slider
//   cell_editor.h     a parameter shown and typed into in its place
//   dataset_manager.h, load_dialog.h   datasets
//   fit_window.h      the fit and its two dialogs
//   graph_window.h    the window of a graph; graph_dialogs.h: what its two dialogs hold
//   suspend_dialog.h, ask_file.h   questions to a person
//   keys.h, colours.h, window_texts.h   keys, colours and texts
//   qt/               the same on a screen
//
// Functions of a window take what a person does and nothing more: they hold no rule about what may change when. While a
// fit runs the session refuses changes; a window asks Session::Fit() only where its own state would change too.
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

  // Shows what there is already. The session must outlive the desk.
  explicit Desk(Session& on);
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;
  ~Desk() override;

  void Changed(const Change& change) override;
};

// The window of a model that there is.
inline ModelWindow& WindowOf(Desk& desk, const Model& model) { return desk.models[model.number]; }

}  // namespace kalvex
