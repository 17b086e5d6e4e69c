// The main window: a menu and a toolbar. Their commands open the other windows and start actions without a window.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "windows/desk.h"

namespace kalvex {

// The commands of the toolbar and the menu, with their numbers.
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

// Whether a button or a menu entry is enabled, and whether it is shown as checked.
bool CommandAnswers(const Session& session, MainCommand command);
bool CommandIsOn(const Session& session, MainCommand command);

// Runs the command of a toolbar button or a menu entry. A disabled command does nothing.
void ChooseCommand(Desk& desk, MainCommand command);

// Keys of all windows: undo the last step of the history, or redo it.
void PressStepBack(Desk& desk);
void PressStepForward(Desk& desk);

// Closing the main window ends the program without saving and without a question. A run of the fit ends first, after
// its present iteration.
void CloseMainWindow(Desk& desk);

// The lines of the About box.
std::array<std::string, 3> AboutLines(std::string_view version, std::string_view updated);
void CloseAbout(Desk& desk);

// Asks for a macro file and runs it at once. A macro that would end the program when started from the command line only
// ends itself here. Returns the result of RunMacro, which the caller can ignore, or -1 if the dialog was cancelled.
int RunMacroDialog(Desk& desk);

}  // namespace kalvex
