#include "macro/command_table.h"

#include <utility>

#include "macro/handlers.h"

namespace kalvex {
namespace {

constexpr MacroParam I(const char* name) { return {name, ParamType::kInteger, 0}; }
constexpr MacroParam R(const char* name) { return {name, ParamType::kReal, 0}; }
constexpr MacroParam S(const char* name, int length) { return {name, ParamType::kString, length}; }

constexpr MacroParam kBeginLoop[] = {S("LoopFile", 200)};
constexpr MacroParam kMainWindow[] = {I("XPos"), I("YPos"), I("Width"), I("Height"), S("Title", 200)};
constexpr MacroParam kWait[] = {I("Time")};
constexpr MacroParam kExit[] = {I("QuitApp")};
constexpr MacroParam kPosition[] = {I("XPos"), I("YPos")};
constexpr MacroParam kLoadDataset[] = {I("DatasetNo"),     S("Quantity", 10), S("MasterFile", 200),
                                       I("XMethod"),       S("XFile", 200),   R("XMin"),
                                       R("XMax"),          I("XPts"),         I("XGrid"),
                                       I("YMethod"),       R("YVal"),         I("YErrMethod"),
                                       S("YErrFile", 200), R("YErrVal"),      I("Match")};
constexpr MacroParam kDatasetNo[] = {I("DatasetNo")};
constexpr MacroParam kTransformDataset[] = {I("DatasetNo"), R("Scale"), R("Shift")};
constexpr MacroParam kExportDataset[] = {I("DatasetNo"), S("File", 200), I("ExportFitted"), I("ExportErrorBars")};
constexpr MacroParam kAddNoise[] = {I("DatasetNo"), R("Sigma")};
constexpr MacroParam kCutDataset[] = {I("DatasetNo"), R("XMin"), R("XMax")};
constexpr MacroParam kNewModel[] = {I("XPos"), I("YPos"), I("Width"), I("Height"), I("VarDielFuncSeen")};
constexpr MacroParam kModelFile[] = {I("ModelNo"), S("File", 200)};
constexpr MacroParam kSetModelParam[] = {I("ModelNo"),   S("ParamName", 100), I("LorNo"),    R("Value"),
                                         I("FitActive"), R("MinLimit"),       R("MaxLimit"), I("MinOn"),
                                         I("MaxOn"),     I("CoupledTo"),      I("Update")};
constexpr MacroParam kCopyModelParam[] = {I("DestModelNo"),   S("DestParamName", 100),   I("DestLorNo"),
                                          I("SourceModelNo"), S("SourceParamName", 100), I("SourceLorNo")};
constexpr MacroParam kModelNo[] = {I("ModelNo")};
constexpr MacroParam kFreeShape[] = {I("ModelNo"), S("Key", 100)};
constexpr MacroParam kVarDielFunc[] = {I("ModelNo"),
                                       I("Source1DatasetNo"),
                                       I("Source1Every2nd"),
                                       I("Source2DatasetNo"),
                                       I("Source2Every2nd"),
                                       I("Source3DatasetNo"),
                                       I("Source3Every2nd"),
                                       I("KK"),
                                       I("On"),
                                       I("FitActive")};
constexpr MacroParam kNewGraph[] = {I("XPos"), I("YPos"), I("Width"), I("Height")};
constexpr MacroParam kGraphProperties[] = {I("GraphNo"), R("Xmin"), R("Xmax"), I("Xlog"),        S("XTitle", 100),
                                           R("Ymin"),    R("Ymax"), I("Ylog"), S("YTitle", 100), I("ShowFitted")};
constexpr MacroParam kAddDataCurve[] = {I("GraphNo"),    I("DatasetNo"), I("nColor"),      I("ShowLine"),
                                        I("ShowSymbol"), I("ShowError"), I("nSymbolSize"), I("nSymbolShape"),
                                        I("SymbolOpen"), R("Scale"),     R("Shift")};
constexpr MacroParam kAddModelCurve[] = {I("GraphNo"), I("ModelNo"), S("Quantity", 10),
                                         I("nColor"),  R("Scale"),   R("Shift")};
constexpr MacroParam kDeleteDataCurve[] = {I("GraphNo"), I("DatasetNo")};
constexpr MacroParam kDeleteModelCurve[] = {I("GraphNo"), I("ModelNo"), S("Quantity", 10)};
constexpr MacroParam kExportModelCurve[] = {S("File", 200), I("ModelNo"), I("XMethod"), S("Quantity", 10), R("XMin"),
                                            R("XMax"),      I("XPts"),    I("XGrid"),   I("Deriv")};
constexpr MacroParam kSetExpParam[] = {S("ParamName", 100), R("Value"), I("FitActive"), R("MinLimit"),
                                       R("MaxLimit"),       I("MinOn"), I("MaxOn"),     I("CoupledTo")};
constexpr MacroParam kAddChiSqTerm[] = {I("DatasetNo"), I("ModelNo"), R("Weight")};
constexpr MacroParam kDeleteChiSqTerm[] = {I("DatasetNo"), I("ModelNo")};
constexpr MacroParam kFit[] = {I("NumIters")};

constexpr MacroCommand kCommands[] = {
    {"BeginLoop", BeginLoopCommand, kBeginLoop},
    {"EndLoop", EndLoopCommand, {}},
    {"MainWindow", MainWindowCommand, kMainWindow},
    {"Wait", WaitCommand, kWait},
    {"Suspend", SuspendCommand, {}},
    {"Exit", ExitCommand, kExit},
    {"DatasetManager", DatasetManagerCommand, kPosition},
    {"LoadDataset", LoadDatasetCommand, kLoadDataset},
    {"UnloadDataset", UnloadDatasetCommand, kDatasetNo},
    {"TransformDataset", TransformDatasetCommand, kTransformDataset},
    {"ExportDataset", ExportDatasetCommand, kExportDataset},
    {"AddNoise", AddNoiseCommand, kAddNoise},
    {"CutDataset", CutDatasetCommand, kCutDataset},
    {"NewModel", NewModelCommand, kNewModel},
    {"SaveModel", SaveModelCommand, kModelFile},
    {"LoadModel", LoadModelCommand, kModelFile},
    {"SaveVarDielFunc", SaveVarDielFuncCommand, kModelFile},
    {"LoadVarDielFunc", LoadVarDielFuncCommand, kModelFile},
    {"SetModelParam", SetModelParamCommand, kSetModelParam},
    {"CopyModelParam", CopyModelParamCommand, kCopyModelParam},
    {"FixAllModelParams", FixAllModelParamsCommand, kModelNo},
    {"FreeShape", FreeShapeCommand, kFreeShape},
    {"VarDielFunc", VarDielFuncCommand, kVarDielFunc},
    {"NewGraph", NewGraphCommand, kNewGraph},
    {"GraphProperties", GraphPropertiesCommand, kGraphProperties},
    {"AddDataCurve", AddDataCurveCommand, kAddDataCurve},
    {"AddModelCurve", AddModelCurveCommand, kAddModelCurve},
    {"DeleteDataCurve", DeleteDataCurveCommand, kDeleteDataCurve},
    {"DeleteModelCurve", DeleteModelCurveCommand, kDeleteModelCurve},
    {"ExportModelCurve", ExportModelCurveCommand, kExportModelCurve},
    {"ExpParams", ExpParamsCommand, kPosition},
    {"SetExpParam", SetExpParamCommand, kSetExpParam},
    {"WindowFit", WindowFitCommand, kPosition},
    {"AddChiSqTerm", AddChiSqTermCommand, kAddChiSqTerm},
    {"DeleteChiSqTerm", DeleteChiSqTermCommand, kDeleteChiSqTerm},
    {"Fit", FitCommand, kFit},
};

constexpr MacroParam kModelRow[] = {I("ModelNo"), I("LorNo")};
constexpr MacroParam kMoveModelRow[] = {I("ModelNo"), I("LorNo"), I("Up")};
constexpr MacroParam kSortModelRows[] = {I("ModelNo"), I("Key")};
constexpr MacroParam kSetDatasetQuantity[] = {I("DatasetNo"), S("Quantity", 10)};
constexpr MacroParam kFitOptions[] = {
    I("StopOnIterations"),    I("MaxIterations"),   I("StopOnTime"),   I("MaxSeconds"), I("StopOnReduction"),
    I("ReductionIterations"), R("ReductionAmount"), I("StopOnLambda"), R("MaxLambda"),  R("InitialLambda"),
    I("CalcConfidence"),      R("DeltaChiSq"),      I("LogFit")};
constexpr MacroParam kParamFile[] = {S("File", 200)};
constexpr MacroParam kGraphNo[] = {I("GraphNo")};
constexpr MacroParam kAddChiSqCurve[] = {I("GraphNo"), I("DatasetNo"), I("ModelNo"),
                                         I("nColor"),  R("Scale"),     R("Shift")};
constexpr MacroParam kAddFreqCurve[] = {I("GraphNo"), I("ModelNo"), I("nColor")};
constexpr MacroParam kExportGraph[] = {I("GraphNo"), S("File", 200)};
constexpr MacroParam kDrawGraph[] = {I("GraphNo"), S("File", 200), I("Width"), I("Height")};
constexpr MacroParam kEcho[] = {S("Text", 200)};

constexpr MacroCommand kExtraCommands[] = {
    {"InsertModelRow", InsertModelRowCommand, kModelRow},
    {"RemoveModelRow", RemoveModelRowCommand, kModelRow},
    {"MoveModelRow", MoveModelRowCommand, kMoveModelRow},
    {"SortModelRows", SortModelRowsCommand, kSortModelRows},
    {"CloseModel", CloseModelCommand, kModelNo},
    {"SetDatasetQuantity", SetDatasetQuantityCommand, kSetDatasetQuantity},
    {"FitOptions", FitOptionsCommand, kFitOptions},
    {"UndoFit", UndoFitCommand, {}},
    {"QuantityErrorBars", QuantityErrorBarsCommand, {}},
    {"DumpDerivatives", DumpDerivativesCommand, {}},
    {"DumpSensitivity", DumpSensitivityCommand, {}},
    {"Echo", EchoCommand, kEcho},
    {"MakeVarDielFuncPositive", MakeVarDielFuncPositiveCommand, kModelNo},
    {"SaveParams", SaveParamsCommand, kParamFile},
    {"LoadParams", LoadParamsCommand, kParamFile},
    {"SaveParamsSpecial", SaveParamsSpecialCommand, {}},
    {"TestDerivatives", TestDerivativesCommand, {}},
    {"TestQuantityDerivatives", TestQuantityDerivativesCommand, {}},
    {"WriteGapTable", WriteGapTableCommand, {}},
    {"AddChiSqCurve", AddChiSqCurveCommand, kAddChiSqCurve},
    {"AddMultiCurve", AddMultiCurveCommand, kAddModelCurve},
    {"AddFreqCurve", AddFreqCurveCommand, kAddFreqCurve},
    {"ExportGraph", ExportGraphCommand, kExportGraph},
    {"DrawGraph", DrawGraphCommand, kDrawGraph},
    {"CloseGraph", CloseGraphCommand, kGraphNo},
};

}  // namespace

std::span<const MacroCommand> MacroCommandTable() { return kCommands; }
std::span<const MacroCommand> MacroExtraTable() { return kExtraCommands; }

const MacroSlot* MacroCall::Given(std::string_view name) const {
  for (std::size_t i = 0; i < command.params.size(); ++i) {
    if (command.params[i].name == name) return block[i].given ? &block[i] : nullptr;
  }
  return nullptr;
}

std::optional<int> MacroCall::Int(std::string_view name) const {
  const MacroSlot* const slot = Given(name);
  return slot ? std::optional(slot->intValue) : std::nullopt;
}

std::optional<double> MacroCall::Real(std::string_view name) const {
  const MacroSlot* const slot = Given(name);
  return slot ? std::optional(slot->realValue) : std::nullopt;
}

std::optional<std::string> MacroCall::Text(std::string_view name) const {
  const MacroSlot* const slot = Given(name);
  return slot ? std::optional(slot->text) : std::nullopt;
}

MacroResult MacroCall::Done(std::string what) {
  said = std::move(what);
  return MacroResult::kNext;
}

MacroResult MacroCall::Nothing(std::string why) { return Done("nothing done: " + why); }

}  // namespace kalvex
