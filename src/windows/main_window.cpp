#include "windows/main_window.h"

#include "macro/run_macro.h"
#include "windows/ask_file.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

void OpenNewModel(Desk& desk) {
  OpenParamControl(desk);
  NewModelWindow(desk);
}

void OpenExpParamsWindow(Desk& desk) {
  OpenParamControl(desk);
  OpenExpParams(desk);
}

void SaveParamsDialog(Desk& desk) {
  if (const auto file = AskFile(desk, texts::kSaveParamsFile)) desk.session.SaveParams(*file).Ignore();
}

void LoadParamsDialog(Desk& desk) {
  if (const auto file = AskFile(desk, texts::kLoadParamsFile)) desk.session.LoadParams(*file).Ignore();
}

void OpenManual(Platform& platform) { platform.OpenDocument(platform.ProgramFolder() + texts::kManualFile); }

}  // namespace

bool CommandAnswers(const Session& session, MainCommand command) {
  switch (command) {
    case MainCommand::kFileNew:
    case MainCommand::kFileOpen:
    case MainCommand::kFileSave:
    case MainCommand::kFileSaveAs:
    case MainCommand::kFileClose:
      return false;
    case MainCommand::kUpdateNow:
      return !session.AutoScreenUpdate() && !session.Fit().FitRunning;
    case MainCommand::kNewModel:
    case MainCommand::kMenuModel:
    case MainCommand::kRunMacro:
    case MainCommand::kLoadParams:
    case MainCommand::kTestDerivatives:
      return !session.Fit().FitRunning;
    default:
      return true;
  }
}

bool CommandIsOn(const Session& session, MainCommand command) {
  return (command == MainCommand::kAutoUpdate && session.AutoScreenUpdate()) ||
         (command == MainCommand::kGraphReader && session.GraphReader());
}

void ChooseCommand(Desk& desk, MainCommand command) {
  Session& session = desk.session;
  if (!CommandAnswers(session, command)) return;
  switch (command) {
    case MainCommand::kNewModel:
    case MainCommand::kMenuModel:
      return OpenNewModel(desk);
    case MainCommand::kNewGraph:
    case MainCommand::kMenuGraph:
      return session.NewGraph().GetStatus().Ignore();
    case MainCommand::kFitWindow:
    case MainCommand::kMenuFit:
      return OpenFitWindow(desk);
    case MainCommand::kParamControl:
      return OpenParamControl(desk);
    case MainCommand::kExpParams:
    case MainCommand::kMenuExpParams:
      return OpenExpParamsWindow(desk);
    case MainCommand::kDatasetManager:
    case MainCommand::kMenuDatasetManager:
      return OpenDatasetManager(desk);
    case MainCommand::kAutoUpdate:
      return session.SetAutoScreenUpdate(!session.AutoScreenUpdate()).Ignore();
    case MainCommand::kUpdateNow:
      return session.Recompute().Ignore();
    case MainCommand::kGraphReader:
      return session.SetGraphReader(!session.GraphReader()).Ignore();
    case MainCommand::kExit:
      return CloseMainWindow(desk);
    case MainCommand::kRunMacro:
      RunMacroDialog(desk);
      return;
    case MainCommand::kSaveParams:
      return SaveParamsDialog(desk);
    case MainCommand::kLoadParams:
      return LoadParamsDialog(desk);
    case MainCommand::kSaveParamsSpecial:
      return session.SaveParamsSpecial().Ignore();
    case MainCommand::kTestDerivatives:
      return session.TestDerivatives().Ignore();
    case MainCommand::kManual:
      return OpenManual(session.GetPlatform());
    case MainCommand::kAbout:
      desk.mainWindow.about = true;
      return;
    case MainCommand::kFileNew:
    case MainCommand::kFileOpen:
    case MainCommand::kFileSave:
    case MainCommand::kFileSaveAs:
    case MainCommand::kFileClose:
      return;
  }
}

void PressStepBack(Desk& desk) { desk.session.StepBack().Ignore(); }

void PressStepForward(Desk& desk) { desk.session.StepForward().Ignore(); }

void CloseMainWindow(Desk& desk) {
  desk.mainWindow.quit = true;
  desk.session.StopFit();
}

std::array<std::string, 3> AboutLines(std::string_view version, std::string_view updated) {
  return {texts::kAboutLine, texts::kAboutVersion + std::string(version), texts::kAboutUpdated + std::string(updated)};
}

void CloseAbout(Desk& desk) { desk.mainWindow.about = false; }

int RunMacroDialog(Desk& desk) {
  const auto file = AskFile(desk, texts::kRunMacroFile);
  return file ? RunMacro(desk, *file) : -1;
}

}  // namespace kalvex
