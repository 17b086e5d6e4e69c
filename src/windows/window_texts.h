// All fixed texts of the windows: titles, labels, buttons, column heads, menus and file dialogs.
#pragma once

#include <array>

#include "core/platform.h"

namespace kalvex::texts {

// Main window. The numbers of the commands are those of the toolbar, or of the menu.
inline constexpr const char* kMainTitle = "Kalvex";

struct ToolButtonText {
  const char* tip;
  int bitmap;
  int command;
};
inline constexpr std::array<ToolButtonText, 9> kToolButtons = {{{"New model", 1, 1},
                                                                {"New graph", 2, 2},
                                                                {"Dataset manager", 5, 6},
                                                                {"Experimental parameters", 6, 5},
                                                                {"Fit window", 3, 3},
                                                                {"Parameter control", 4, 4},
                                                                {"Auto Screen Update", 8, 7},
                                                                {"Update Screen Now", 7, 8},
                                                                {"Graph reader", 9, 9}}};

struct MenuItemText {
  const char* menu;
  const char* item;
  int command;
};
inline constexpr std::array<MenuItemText, 18> kMenuItems = {{{"File", "&New", 100},
                                                             {"File", "&Open", 101},
                                                             {"File", "&Save", 102},
                                                             {"File", "Save &As", 103},
                                                             {"File", "&Close", 104},
                                                             {"File", "&Exit", 105},
                                                             {"Window", "&Fit", 200},
                                                             {"Window", "&Model", 201},
                                                             {"Window", "&Graph", 202},
                                                             {"Window", "&Dateset Manager", 203},
                                                             {"Window", "&Experimental parameters", 204},
                                                             {"Macro", "&Run Macro", 304},
                                                             {"Test", "Save parameters", 401},
                                                             {"Test", "Load parameters", 402},
                                                             {"Test", "Save parameters special", 403},
                                                             {"Test", "Test derivatives", 404},
                                                             {"&Help", "&Kalvex manual", 500},
                                                             {"&Help", "&About", 501}}};

inline constexpr const char* kAboutTitle = "About Kalvex";
inline constexpr const char* kAboutLine = "Kalvex - software to fit optical spectra";
inline constexpr const char* kAboutVersion = "Version: ";
inline constexpr const char* kAboutUpdated = "Updated: ";
inline constexpr const char* kManualFile = "Manual.pdf";

// Buttons that several dialogs share, and the title of an error message.
inline constexpr const char* kOkKey = "&OK";
inline constexpr const char* kCancelKey = "&Cancel";
inline constexpr const char* kOk = "OK";
inline constexpr const char* kCancel = "Cancel";
inline constexpr const char* kErrorTitle = "Error";

// The dialog of the macro command Suspend.
inline constexpr const char* kSuspendTitle = "Suspend";
inline constexpr const char* kSuspendQuestion = "What to do?";
inline constexpr const char* kSuspendContinue = "Continue";
inline constexpr const char* kSuspendExit = "Exit macro";
inline constexpr const char* kSuspendNever = "do not suspend anymore";

// Dataset manager.
inline constexpr const char* kManagerTitle = "Dataset Manager";
inline constexpr std::array<const char*, 5> kManagerColumns = {"Dataset", "Name", "Quantity", "Cutting range",
                                                               "# points"};
inline constexpr const char* kLoadButton = "Load";
inline constexpr const char* kUnloadButton = "Unload";
inline constexpr const char* kManagerClose = "&Close Window";
inline constexpr const char* kUnloadAll = "&Unload ALL";

// The dialog that loads a dataset.
inline constexpr const char* kLoadDialogTitle = "Load Dataset # ";  // followed by the slot
inline constexpr const char* kMasterGroup = "Master data file:";
inline constexpr const char* kBrowse = "Browse";
inline constexpr const char* kXGroup = "X:";
inline constexpr std::array<const char*, 3> kXChoices = {"from master file (1st column)", "from file", "generate:"};
inline constexpr std::array<const char*, 3> kGridFields = {"Xmin", "Xmax", "# pts"};
inline constexpr const char* kGridLabel = "Grid:";
inline constexpr std::array<const char*, 2> kGridChoices = {"linear", "logarithmic"};
inline constexpr const char* kMatchGroup = "Match by:";
inline constexpr std::array<const char*, 2> kMatchChoices = {"Interpolation", "Averaging"};
inline constexpr const char* kYGroup = "Y:";
inline constexpr std::array<const char*, 2> kYChoices = {"from master file (2nd column)", "fixed value"};
inline constexpr const char* kYErrGroup = "Yerr:";
inline constexpr std::array<const char*, 3> kYErrChoices = {"from master file (3rd column)", "from file",
                                                            "fixed value"};

// Model window.
inline constexpr std::array<const char*, 6> kModelColumns = {"#", "Wo", "Wp", "G", "S", "G/Wo"};
inline constexpr const char* kFixAll = "Fix all";
inline constexpr const char* kVdfButtonAtStart = "VDF >>";
inline constexpr const char* kVdfOpens = "VDF>>";
inline constexpr const char* kVdfCloses = "<<VDF";
inline constexpr const char* kSave = "Save";
inline constexpr const char* kLoad = "Load";
inline constexpr const char* kEinfGroup = "Einf";
inline constexpr const char* kCodeGroup = "Code";
inline constexpr const char* kAddRow = "Add";
inline constexpr const char* kRemoveRow = "Remove";
inline constexpr const char* kRowUp = "Up";
inline constexpr const char* kRowDown = "Down";
inline constexpr const char* kPlainRowsGroup = "Lorentzians";
inline constexpr const char* kSpecialRowsGroup = "Special model parameters";
inline constexpr const char* kUndefinedCell = "---   ";

// The panel of the variational dielectric function in the model window, and the dialog that makes a mesh.
inline constexpr const char* kVdfGroupAtStart = "Variational Diel. Function";
inline constexpr const char* kVdfGroupStart = "Var. Diel. Func. (";
inline constexpr const char* kVdfGroupPoints = " pts)";
inline constexpr const char* kVdfGroupWithout = "not defined)";
inline constexpr const char* kVdfRangeAtStart = "mesh not defined";
inline constexpr const char* kVdfInit = "Init";
inline constexpr std::array<const char*, 3> kVdfChecks = {"KK", "On", "Fit"};
inline constexpr const char* kVdfDialogTitle = "Initialize VDF";
inline constexpr const char* kVdfDialogGroup = "Generate anchor mesh from dataset(s):";
inline constexpr const char* kEvery2nd = "every 2nd point";
inline constexpr std::array<const char*, 3> kVdfDialogChecks = {"KK constrained", "On (activated)", "Active in fit"};

// Parameter control.
inline constexpr const char* kParamControlTitle = "Parameter control";
inline constexpr const char* kSliderTop = "max";
inline constexpr const char* kSliderBottom = "min";
inline constexpr const char* kLowerMark = "-20%";
inline constexpr const char* kUpperMark = "+20%";
inline constexpr const char* kNoParam = "No parameter selected";
inline constexpr const char* kSpecialParam = "Special model parameter";
inline constexpr std::array<const char*, 5> kParamLabels = {"Value", "Min", "Max", "Adjustable", "Coupled to "};
inline constexpr const char* kGroupLetter = "A";  // followed by the number of the coupling group

// Experimental parameters.
inline constexpr const char* kExpParamsTitle = "Experimental Parameters";
inline constexpr const char* kExpParamsClose = "Close Window";

// Fit window.
inline constexpr const char* kFitTitle = "Fit";
inline constexpr std::array<const char*, 6> kFitLabels = {"Fit points",      "Parameters ", "ChiSq",
                                                          "Change of ChiSq", "Iteration #", "Time (sec)"};
inline constexpr std::array<const char*, 4> kTermHeads = {"ChiSq term", "Weight", "Value", "Weight"};
inline constexpr const char* kFitStart = "START";
inline constexpr const char* kFitStop = "STOP";
inline constexpr const char* kFitUndo = "Undo";
inline constexpr const char* kFitOptionsButton = "Options";
inline constexpr const char* kFoldAtStart = "<< ChiSq details";
inline constexpr const char* kFoldGrown = "<< ChiSw details";
inline constexpr const char* kFoldFolded = "ChiSq details >>";
inline constexpr const char* kAddTerm = "Add ";
inline constexpr const char* kRemoveTerm = "Remove";

// The dialog that adds terms.
inline constexpr const char* kAddTermsTitle = "Add ChiSq term(s)";
inline constexpr const char* kAddTermsModel = "Model";
inline constexpr const char* kAddTermsDataset = "Dataset";
inline constexpr const char* kAddTermsAll = "All";
inline constexpr const char* kAddTermsList = "Available ChiSq terms:";

// The dialog of the fit's options.
inline constexpr const char* kFitOptionsTitle = "Fitting options";
inline constexpr const char* kStopGroup = "Stop fitting after : ";
inline constexpr const char* kStopIterations = "# iterations >";
inline constexpr const char* kStopTime = "fitting time   >";
inline constexpr const char* kStopTimeUnit = "second(s)";
inline constexpr const char* kStopReduction = "the reduction of ChiSq during the last";
inline constexpr const char* kStopReductionUnit = "iteration(s) < ";
inline constexpr const char* kStopOutOfRange = "one of parameters is out of range";
inline constexpr const char* kStopLambda = "linearity parameter (Lambda) > ";
inline constexpr const char* kConfidenceGroup = "Confidence Limits";
inline constexpr const char* kConfidence = "calculate after each fitting";
inline constexpr const char* kDeltaChiSq = "DeltaChiSq";
inline constexpr const char* kLogFit = "log fitting information";
inline constexpr const char* kSingularDet = "Consider alpha-matrix as a singular, if Det < ";
inline constexpr const char* kScreenUpdate = "Update screen every";
inline constexpr const char* kScreenUpdateUnit = "iteration(s)";
inline constexpr const char* kInitialLambda = "Inital value of Lambda";

// A graph's two dialogs.
inline constexpr const char* kPropertiesTitle = " - properties";  // after the graph's name
inline constexpr std::array<const char*, 2> kAxisGroups = {"X", "Y"};
inline constexpr const char* kRange = "Range:";
inline constexpr const char* kLogScale = "log scale";
inline constexpr const char* kAxisTitle = "Title:";
inline constexpr const char* kShowTitle = "show title";
inline constexpr const char* kOnlyFitted = "show only fitted datapoints";
inline constexpr const char* kApply = "Apply";
inline constexpr const char* kContentsTitle = " - contents";
inline constexpr const char* kCurveTypeGroup = "Curve type";
inline constexpr const char* kQuantityGroup = "Quantity";
inline constexpr const char* kAll = "All";
inline constexpr const char* kAvailableCurves = "Available curves:";
inline constexpr const char* kGraphCurves = "Graph curves:";
inline constexpr const char* kToGraph = "=>";
inline constexpr const char* kFromGraph = "<=";
inline constexpr const char* kCurveGroup = "Curve properties";
inline constexpr const char* kCurveColor = "Color";
inline constexpr const char* kCurveLine = "line";
inline constexpr const char* kCurveError = "error bar";
inline constexpr const char* kCurveSymbol = "symbol:";
inline constexpr const char* kCurveOpen = "open";
inline constexpr const char* kCurveScale = "scale";
inline constexpr const char* kCurveShift = "shift";

// File dialogs.
inline constexpr FileFilter kMacroFilters[] = {{"Kalvex macro files (*.KVS)", "*.kvs"}, {"All files (*.*)", "*.*"}};
inline constexpr FileFilter kDatasetFilters[] = {
    {"Data files (*.DAT)", "*.dat"}, {"Text files (*.TXT)", "*.txt"}, {"All files (*.*)", "*.*"}};
inline constexpr FileFilter kModelFilters[] = {{"Kalvex model files (*.KVM)", "*.kvm"}};
inline constexpr FileFilter kVdfFilters[] = {{"Kalvex VDF files (*.KVV)", "*.kvv"}};
inline constexpr FileFilter kParamFilters[] = {{"Parameter files (*.KVP)", "*.kvp"}};

inline constexpr FileQuestion kRunMacroFile = {"Run Macro", kMacroFilters, "kvs"};
inline constexpr FileQuestion kBrowseFile = {"Browse", kDatasetFilters, "dat"};
inline constexpr FileQuestion kSaveModelFile = {"Save Model As", kModelFilters, "kvm", true};
inline constexpr FileQuestion kLoadModelFile = {"Load Model", kModelFilters, "kvm"};
inline constexpr FileQuestion kSaveVdfFile = {"Save VDF As", kVdfFilters, "kvv", true};
inline constexpr FileQuestion kLoadVdfFile = {"Load VDF", kVdfFilters, "kvv"};
inline constexpr FileQuestion kExportGraphFile = {"Export Graph to ASCII", kDatasetFilters, "kvm", true};
inline constexpr FileQuestion kSaveParamsFile = {"Save Parameters", kParamFilters, "kvp", true};
inline constexpr FileQuestion kLoadParamsFile = {"Load Parameters", kParamFilters, "kvp"};

}  // namespace kalvex::texts
