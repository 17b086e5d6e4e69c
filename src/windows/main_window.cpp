#include "windows/main_window.h"

#include "files/param_file.h"
#include "fit/derivative_test.h"
#include "graphs/graph_table.h"
#include "macro/run_macro.h"
#include "windows/ask_file.h"
#include "windows/model_window.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

void NewModel(Program& program) {
  OpenParamControl(WindowDeskOf(program));
  NewModelWindow(WindowDeskOf(program));
}

void OpenExpParamsWindow(Program& program) {
  OpenParamControl(WindowDeskOf(program));
  OpenExpParams(WindowDeskOf(program));
}

void SaveParamsDialog(Program& program) {
  if (const auto file = AskFile(*program.platform, program.fileFolder, texts::kSaveParamsFile)) {
    SaveParams(program.params, *file);
  }
}

void LoadParamsDialog(Program& program) {
  if (const auto file = AskFile(*program.platform, program.fileFolder, texts::kLoadParamsFile)) {
    LoadParams(program.params, program.notices, *file);
  }
}

void OpenManual(Program& program) {
  program.platform->OpenDocument(program.platform->ProgramFolder() + texts::kManualFile);
}

}  // namespace

bool CommandAnswers(const Program& program, MainCommand command) {
  switch (command) {
    case MainCommand::kFileNew:
    case MainCommand::kFileOpen:
    case MainCommand::kFileSave:
    case MainCommand::kFileSaveAs:
    case MainCommand::kFileClose:
      return false;
    case MainCommand::kUpdateNow:
      return !program.AutoScreenUpdate && !program.fit.FitRunning;
    case MainCommand::kNewModel:
    case MainCommand::kMenuModel:
    case MainCommand::kRunMacro:
    case MainCommand::kLoadParams:
    case MainCommand::kTestDerivatives:
      return !program.fit.FitRunning;
    default:
      return true;
  }
}

bool CommandIsOn(const Program& program, MainCommand command) {
  return (command == MainCommand::kAutoUpdate && program.AutoScreenUpdate) ||
         (command == MainCommand::kGraphReader && program.GraphReader);
}

void ChooseCommand(Program& program, MainCommand command) {
  if (!CommandAnswers(program, command)) return;
  switch (command) {
    case MainCommand::kNewModel:
    case MainCommand::kMenuModel:
      return NewModel(program);
    case MainCommand::kNewGraph:
    case MainCommand::kMenuGraph:
      CreateGraph(program.graphs);
      return;
    case MainCommand::kFitWindow:
    case MainCommand::kMenuFit:
      return OpenFitWindow(DeskOf(program));
    case MainCommand::kParamControl:
      return OpenParamControl(WindowDeskOf(program));
    case MainCommand::kExpParams:
    case MainCommand::kMenuExpParams:
      return OpenExpParamsWindow(program);
    case MainCommand::kDatasetManager:
    case MainCommand::kMenuDatasetManager:
      return OpenDatasetManager(program.datasetManager, program.datasets);
    case MainCommand::kAutoUpdate:
      program.AutoScreenUpdate = !program.AutoScreenUpdate;
      return;
    case MainCommand::kUpdateNow:
      NotifyGraphs(program.notices, GraphEvent::kForcedUpdate, -1);
      return NotifyFit(program.notices, FitNotice::kRecompute);
    case MainCommand::kGraphReader:
      program.GraphReader = !program.GraphReader;
      return NotifyGraphs(program.notices, GraphEvent::kReaderToggled, -1);
    case MainCommand::kExit:
      return CloseMainWindow(program);
    case MainCommand::kRunMacro:
      RunMacroDialog(program);
      return;
    case MainCommand::kSaveParams:
      return SaveParamsDialog(program);
    case MainCommand::kLoadParams:
      return LoadParamsDialog(program);
    case MainCommand::kSaveParamsSpecial:
      SaveParamsSpecial(program.params);
      return;
    case MainCommand::kTestDerivatives:
      static_cast<void>(TestDerivatives(program.fit, program.params, program.eval));
      return;
    case MainCommand::kManual:
      return OpenManual(program);
    case MainCommand::kAbout:
      program.mainWindow.about = true;
      return;
    case MainCommand::kFileNew:
    case MainCommand::kFileOpen:
    case MainCommand::kFileSave:
    case MainCommand::kFileSaveAs:
    case MainCommand::kFileClose:
      return;
  }
}

void CloseMainWindow(Program& program) {
  program.mainWindow.quit = true;
  if (program.fit.FitRunning) program.fit.StopRequested = true;
}

std::array<std::string, 3> AboutLines(std::string_view version, std::string_view updated) {
  return {texts::kAboutLine, texts::kAboutVersion + std::string(version), texts::kAboutUpdated + std::string(updated)};
}

void CloseAbout(Program& program) { program.mainWindow.about = false; }

int RunMacroDialog(Program& program) {
  const auto file = AskFile(*program.platform, program.fileFolder, texts::kRunMacroFile);
  return file ? RunMacro(program, *file) : -1;
}

void PressFitUndo(Program& program) {
  if (program.fit.FitRunning || !program.fit.UndoAvailable) return;
  PressUndo(DeskOf(program));
  ShowValues(program);
}

int PressFitStart(Program& program) {
  RunFollower follower(program);
  return StartFit(DeskOf(program), *program.platform, follower);
}

}  // namespace kalvex
