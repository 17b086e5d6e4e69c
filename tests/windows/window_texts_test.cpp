#include "windows/window_texts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "windows/open_windows.h"

namespace kalvex {
namespace {

template <class Table>
Texts ListOf(const Table& table) {
  return Texts(table.begin(), table.end());
}

TEST(WindowTexts, OfTheToolbar) {
  Texts buttons;
  for (const texts::ToolButtonText& button : texts::kToolButtons) {
    buttons.push_back(std::string(button.tip) + ' ' + std::to_string(button.bitmap) + ' ' +
                      std::to_string(button.command));
  }
  EXPECT_EQ(buttons, (Texts{"New model 1 1", "New graph 2 2", "Dataset manager 5 6", "Experimental parameters 6 5",
                            "Fit window 3 3", "Parameter control 4 4", "Auto Screen Update 8 7",
                            "Update Screen Now 7 8", "Graph reader 9 9"}));
}

TEST(WindowTexts, OfTheMenu) {
  Texts items;
  for (const texts::MenuItemText& item : texts::kMenuItems) {
    items.push_back(std::string(item.menu) + '|' + item.item + '|' + std::to_string(item.command));
  }
  EXPECT_EQ(items, (Texts{"File|&New|100", "File|&Open|101", "File|&Save|102", "File|Save &As|103", "File|&Close|104",
                          "File|&Exit|105", "Window|&Fit|200", "Window|&Model|201", "Window|&Graph|202",
                          "Window|&Dateset Manager|203", "Window|&Experimental parameters|204", "Macro|&Run Macro|304",
                          "Test|Save parameters|401", "Test|Load parameters|402", "Test|Save parameters special|403",
                          "Test|Test derivatives|404", "&Help|&Kalvex manual|500", "&Help|&About|501"}));
}

TEST(WindowTexts, OfTheMainWindowAndItsBoxes) {
  EXPECT_STREQ(texts::kMainTitle, "Kalvex");
  EXPECT_STREQ(texts::kAboutTitle, "About Kalvex");
  EXPECT_STREQ(texts::kAboutLine, "Kalvex - software to fit optical spectra");
  EXPECT_STREQ(texts::kAboutVersion, "Version: ");
  EXPECT_STREQ(texts::kAboutUpdated, "Updated: ");
  EXPECT_STREQ(texts::kManualFile, "Manual.pdf");
  EXPECT_STREQ(texts::kErrorTitle, "Error");
  EXPECT_STREQ(texts::kOkKey, "&OK");
  EXPECT_STREQ(texts::kCancelKey, "&Cancel");
  EXPECT_STREQ(texts::kOk, "OK");
  EXPECT_STREQ(texts::kCancel, "Cancel");
  EXPECT_STREQ(texts::kSuspendTitle, "Suspend");
  EXPECT_STREQ(texts::kSuspendQuestion, "What to do?");
  EXPECT_STREQ(texts::kSuspendContinue, "Continue");
  EXPECT_STREQ(texts::kSuspendExit, "Exit macro");
  EXPECT_STREQ(texts::kSuspendNever, "do not suspend anymore");
}

TEST(WindowTexts, OfTheDatasetManager) {
  EXPECT_STREQ(texts::kManagerTitle, "Dataset Manager");
  EXPECT_EQ(ListOf(texts::kManagerColumns), (Texts{"Dataset", "Name", "Quantity", "Cutting range", "# points"}));
  EXPECT_STREQ(texts::kLoadButton, "Load");
  EXPECT_STREQ(texts::kUnloadButton, "Unload");
  EXPECT_STREQ(texts::kManagerClose, "&Close Window");
  EXPECT_STREQ(texts::kUnloadAll, "&Unload ALL");
}

TEST(WindowTexts, OfTheLoadDialog) {
  EXPECT_STREQ(texts::kLoadDialogTitle, "Load Dataset # ");
  EXPECT_STREQ(texts::kMasterGroup, "Master data file:");
  EXPECT_STREQ(texts::kBrowse, "Browse");
  EXPECT_STREQ(texts::kXGroup, "X:");
  EXPECT_EQ(ListOf(texts::kXChoices), (Texts{"from master file (1st column)", "from file", "generate:"}));
  EXPECT_EQ(ListOf(texts::kGridFields), (Texts{"Xmin", "Xmax", "# pts"}));
  EXPECT_STREQ(texts::kGridLabel, "Grid:");
  EXPECT_EQ(ListOf(texts::kGridChoices), (Texts{"linear", "logarithmic"}));
  EXPECT_STREQ(texts::kMatchGroup, "Match by:");
  EXPECT_EQ(ListOf(texts::kMatchChoices), (Texts{"Interpolation", "Averaging"}));
  EXPECT_STREQ(texts::kYGroup, "Y:");
  EXPECT_EQ(ListOf(texts::kYChoices), (Texts{"from master file (2nd column)", "fixed value"}));
  EXPECT_STREQ(texts::kYErrGroup, "Yerr:");
  EXPECT_EQ(ListOf(texts::kYErrChoices), (Texts{"from master file (3rd column)", "from file", "fixed value"}));
}

TEST(WindowTexts, OfTheModelWindow) {
  EXPECT_EQ(ListOf(texts::kModelColumns), (Texts{"#", "Wo", "Wp", "G", "S", "G/Wo"}));
  EXPECT_STREQ(texts::kFixAll, "Fix all");
  EXPECT_STREQ(texts::kVdfButtonAtStart, "VDF >>");
  EXPECT_STREQ(texts::kVdfOpens, "VDF>>");
  EXPECT_STREQ(texts::kVdfCloses, "<<VDF");
  EXPECT_STREQ(texts::kSave, "Save");
  EXPECT_STREQ(texts::kLoad, "Load");
  EXPECT_STREQ(texts::kEinfGroup, "Einf");
  EXPECT_STREQ(texts::kCodeGroup, "Code");
  EXPECT_STREQ(texts::kAddRow, "Add");
  EXPECT_STREQ(texts::kRemoveRow, "Remove");
  EXPECT_STREQ(texts::kRowUp, "Up");
  EXPECT_STREQ(texts::kRowDown, "Down");
  EXPECT_STREQ(texts::kPlainRowsGroup, "Lorentzians");
  EXPECT_STREQ(texts::kSpecialRowsGroup, "Special model parameters");
  EXPECT_STREQ(texts::kUndefinedCell, "---   ");
}

TEST(WindowTexts, OfTheVariationalFunction) {
  EXPECT_STREQ(texts::kVdfGroupAtStart, "Variational Diel. Function");
  EXPECT_STREQ(texts::kVdfGroupStart, "Var. Diel. Func. (");
  EXPECT_STREQ(texts::kVdfGroupPoints, " pts)");
  EXPECT_STREQ(texts::kVdfGroupWithout, "not defined)");
  EXPECT_STREQ(texts::kVdfRangeAtStart, "mesh not defined");
  EXPECT_STREQ(texts::kVdfInit, "Init");
  EXPECT_EQ(ListOf(texts::kVdfChecks), (Texts{"KK", "On", "Fit"}));
  EXPECT_STREQ(texts::kVdfDialogTitle, "Initialize VDF");
  EXPECT_STREQ(texts::kVdfDialogGroup, "Generate anchor mesh from dataset(s):");
  EXPECT_STREQ(texts::kEvery2nd, "every 2nd point");
  EXPECT_EQ(ListOf(texts::kVdfDialogChecks), (Texts{"KK constrained", "On (activated)", "Active in fit"}));
}

TEST(WindowTexts, OfTheParameterControlAndTheExperiment) {
  EXPECT_STREQ(texts::kParamControlTitle, "Parameter control");
  EXPECT_STREQ(texts::kSliderTop, "max");
  EXPECT_STREQ(texts::kSliderBottom, "min");
  EXPECT_STREQ(texts::kLowerMark, "-20%");
  EXPECT_STREQ(texts::kUpperMark, "+20%");
  EXPECT_STREQ(texts::kNoParam, "No parameter selected");
  EXPECT_STREQ(texts::kSpecialParam, "Special model parameter");
  EXPECT_EQ(ListOf(texts::kParamLabels), (Texts{"Value", "Min", "Max", "Adjustable", "Coupled to "}));
  EXPECT_STREQ(texts::kGroupLetter, "A");
  EXPECT_STREQ(texts::kExpParamsTitle, "Experimental Parameters");
  EXPECT_STREQ(texts::kExpParamsClose, "Close Window");
}

TEST(WindowTexts, OfTheFitWindow) {
  EXPECT_STREQ(texts::kFitTitle, "Fit");
  EXPECT_EQ(ListOf(texts::kFitLabels),
            (Texts{"Fit points", "Parameters ", "ChiSq", "Change of ChiSq", "Iteration #", "Time (sec)"}));
  EXPECT_EQ(ListOf(texts::kTermHeads), (Texts{"ChiSq term", "Weight", "Value", "Weight"}));
  EXPECT_STREQ(texts::kFitStart, "START");
  EXPECT_STREQ(texts::kFitStop, "STOP");
  EXPECT_STREQ(texts::kFitUndo, "Undo");
  EXPECT_STREQ(texts::kFitOptionsButton, "Options");
  EXPECT_STREQ(texts::kFoldAtStart, "<< ChiSq details");
  EXPECT_STREQ(texts::kFoldGrown, "<< ChiSw details");
  EXPECT_STREQ(texts::kFoldFolded, "ChiSq details >>");
  EXPECT_STREQ(texts::kAddTerm, "Add ");
  EXPECT_STREQ(texts::kRemoveTerm, "Remove");
  EXPECT_STREQ(texts::kAddTermsTitle, "Add ChiSq term(s)");
  EXPECT_STREQ(texts::kAddTermsModel, "Model");
  EXPECT_STREQ(texts::kAddTermsDataset, "Dataset");
  EXPECT_STREQ(texts::kAddTermsAll, "All");
  EXPECT_STREQ(texts::kAddTermsList, "Available ChiSq terms:");
}

TEST(WindowTexts, OfTheOptionsOfTheFit) {
  EXPECT_STREQ(texts::kFitOptionsTitle, "Fitting options");
  EXPECT_STREQ(texts::kStopGroup, "Stop fitting after : ");
  EXPECT_STREQ(texts::kStopIterations, "# iterations >");
  EXPECT_STREQ(texts::kStopTime, "fitting time   >");
  EXPECT_STREQ(texts::kStopTimeUnit, "second(s)");
  EXPECT_STREQ(texts::kStopReduction, "the reduction of ChiSq during the last");
  EXPECT_STREQ(texts::kStopReductionUnit, "iteration(s) < ");
  EXPECT_STREQ(texts::kStopOutOfRange, "one of parameters is out of range");
  EXPECT_STREQ(texts::kStopLambda, "linearity parameter (Lambda) > ");
  EXPECT_STREQ(texts::kConfidenceGroup, "Confidence Limits");
  EXPECT_STREQ(texts::kConfidence, "calculate after each fitting");
  EXPECT_STREQ(texts::kDeltaChiSq, "DeltaChiSq");
  EXPECT_STREQ(texts::kLogFit, "log fitting information");
  EXPECT_STREQ(texts::kSingularDet, "Consider alpha-matrix as a singular, if Det < ");
  EXPECT_STREQ(texts::kScreenUpdate, "Update screen every");
  EXPECT_STREQ(texts::kScreenUpdateUnit, "iteration(s)");
  EXPECT_STREQ(texts::kInitialLambda, "Inital value of Lambda");
}

// "title: filter *.pattern; ... | extension"; contains "saves" for a file to be written.
std::string DialogText(const FileQuestion& question) {
  std::string text = std::string(question.title) + ':';
  for (const FileFilter& filter : question.filters) text += std::string(" ") + filter.text + ' ' + filter.pattern + ';';
  return text + ' ' + question.defaultExtension + (question.forSaving ? " saves" : "");
}

TEST(WindowTexts, OfTheFileDialogs) {
  EXPECT_EQ(DialogText(texts::kRunMacroFile), "Run Macro: Kalvex macro files (*.KVS) *.kvs; All files (*.*) *.*; kvs");
  EXPECT_EQ(DialogText(texts::kBrowseFile),
            "Browse: Data files (*.DAT) *.dat; Text files (*.TXT) *.txt; All files (*.*) *.*; dat");
  EXPECT_EQ(DialogText(texts::kSaveModelFile), "Save Model As: Kalvex model files (*.KVM) *.kvm; kvm saves");
  EXPECT_EQ(DialogText(texts::kLoadModelFile), "Load Model: Kalvex model files (*.KVM) *.kvm; kvm");
  EXPECT_EQ(DialogText(texts::kSaveVdfFile), "Save VDF As: Kalvex VDF files (*.KVV) *.kvv; kvv saves");
  EXPECT_EQ(DialogText(texts::kLoadVdfFile), "Load VDF: Kalvex VDF files (*.KVV) *.kvv; kvv");
  EXPECT_EQ(
      DialogText(texts::kExportGraphFile),
      "Export Graph to ASCII: Data files (*.DAT) *.dat; Text files (*.TXT) *.txt; All files (*.*) *.*; kvm saves");
  EXPECT_EQ(DialogText(texts::kSaveParamsFile), "Save Parameters: Parameter files (*.KVP) *.kvp; kvp saves");
  EXPECT_EQ(DialogText(texts::kLoadParamsFile), "Load Parameters: Parameter files (*.KVP) *.kvp; kvp");
}

}  // namespace
}  // namespace kalvex
