// Program: all state of a running program in one record, made once and handed on by reference. Two of them can live
// side by side.
#pragma once

#include <string>

#include "core/noise.h"
#include "core/notices.h"
#include "core/platform.h"
#include "datasets/dataset.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"
#include "fit/run_fit.h"
#include "graphs/graph.h"
#include "macro/macro_state.h"
#include "numeric/thread_pool.h"
#include "records/model.h"
#include "windows/desk.h"
#include "windows/fit_window.h"
#include "windows/suspend_dialog.h"
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

struct Program {
  HeadlessPlatform headless;
  Platform* platform = &headless;
  Notices notices;
  NoiseGenerator noise;

  bool AutoScreenUpdate = true;  // graphs and ChiSq follow each change of a parameter
  bool GraphReader = false;      // graphs show the crosshair
  bool showProgress = false;     // a line on standard error for each iteration of a fit

  ThreadPool pool;
  ParamTables params;
  DatasetTable datasets;
  EvalContext eval;
  FitState fit;
  GraphTable graphs;
  MacroState macro;

  MainWindow mainWindow;
  DatasetManager datasetManager;
  LoadDialog loadDialog;
  ParamControl paramControl;
  ExpParamsWindow expParamsWindow;
  VdfDialog vdfDialog;
  GraphDialogs graphDialogs;
  FitWindow fitWindow;
  SuspendDialog suspendDialog;
  std::string fileFolder;  // where the last file dialog of this run ended

  // Seeds the noise with the clock, sets the defaults and connects the notices. threads: how many may compute at once.
  explicit Program(int threads = 1);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
};

FitDesk DeskOf(Program& program);
// Around a run of the fit: the list of the fit window and the model windows follow each accepted iteration, and
// progress is told if wanted.
class RunFollower : public FitObserver {
 public:
  explicit RunFollower(Program& program) : program_(program) {}
  void RunStarts() override { program_.platform->PumpEvents(); }
  void IterationEnds() override;
  void Poll() override { program_.platform->PumpEvents(); }

 private:
  Program& program_;
};

WindowDesk WindowDeskOf(Program& program);

// The model windows, and that of the experimental parameters if it is open, show their values anew; the fit, which has
// set them, is not told.
void ShowValues(Program& program);

// Closes a model: its curves leave the graphs and its terms the fit. False if there is no such model.
bool CloseModel(Program& program, std::uint32_t number);

}  // namespace kalvex
