// The main window: a menu and a toolbar, whose commands open the other windows and start what has no window.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "windows/desk.h"

namespace kalvex {

// The commands of the toolbar and of the menu, by their numbers.
enum class MainCommand : int {
  kNewModel = 1,
  kNewGraph = 2,
  kFitWindow = 3,
  kParamControl = 4,
  kExpParams = 5,
  kDatasetManager = 6,
  kAutoUpdate = 7,
  kUpdateNow = 8,
  kGraphReader = 9,
  kFileNew = 100,
  kFileOpen = 101,
  kFileSave = 102,
  kFileSaveAs = 103,
  kFileClose = 104,
  kExit = 105,
  kMenuFit = 200,
  kMenuModel = 201,
  kMenuGraph = 202,
  kMenuDatasetManager = 203,
  kMenuExpParams = 204,
  kRunMacro = 304,
  kSaveParams = 401,
  kLoadParams = 402,
  kSaveParamsSpecial = 403,
  kTestDerivatives = 404,
  kManual = 500,
  kAbout = 501,
};

// Whether a button or a menu entry answers, and whether it is shown as switched on.
bool CommandAnswers(const Session& session, MainCommand command);
bool CommandIsOn(const Session& session, MainCommand command);

// A button of the toolbar or an entry of the menu. One that does not answer does nothing.
void ChooseCommand(Desk& desk, MainCommand command);

// In any window: the last step of the history is taken back, or done again.
void PressStepBack(Desk& desk);
void PressStepForward(Desk& desk);

// Closing the main window ends the program, with nothing saved and nothing asked. A run of the fit ends first, after
// the iteration that is in progress.
void CloseMainWindow(Desk& desk);

// The lines of the About box.
std::array<std::string, 3> AboutLines(std::string_view version, std::string_view updated);
void CloseAbout(Desk& desk);

// A macro file chosen by the user, run at once. A macro that ends the program when it is named on the command line only
// ends itself here. Gives the result of RunMacro, which has no further meaning, or -1 if the dialog was cancelled.
int RunMacroDialog(Desk& desk);

}  // namespace kalvex
