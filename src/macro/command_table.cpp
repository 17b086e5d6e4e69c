#include "macro/command_table.h"

#include "macro/curve_commands.h"
#include "macro/dataset_commands.h"
#include "macro/fit_commands.h"
#include "macro/flow_commands.h"
#include "macro/graph_commands.h"
#include "macro/model_commands.h"
#include "macro/tool_commands.h"
#include "macro/vdf_commands.h"

namespace kalvex {
namespace {

constexpr MacroCommand kCommands[] = {
    Command<BeginLoopCommand>("BeginLoop"),
    Command<EndLoopCommand>("EndLoop"),
    Command<MainWindowCommand>("MainWindow"),
    Command<WaitCommand>("Wait"),
    Command<SuspendCommand>("Suspend"),
    Command<ExitCommand>("Exit"),
    Command<DatasetManagerCommand>("DatasetManager"),
    Command<LoadDatasetCommand>("LoadDataset"),
    Command<UnloadDatasetCommand>("UnloadDataset"),
    Command<TransformDatasetCommand>("TransformDataset"),
    Command<ExportDatasetCommand>("ExportDataset"),
    Command<AddNoiseCommand>("AddNoise"),
    Command<CutDatasetCommand>("CutDataset"),
    Command<NewModelCommand>("NewModel"),
    Command<SaveModelCommand>("SaveModel"),
    Command<LoadModelCommand>("LoadModel"),
    Command<SaveVarDielFuncCommand>("SaveVarDielFunc"),
    Command<LoadVarDielFuncCommand>("LoadVarDielFunc"),
    Command<SetModelParamCommand>("SetModelParam"),
    Command<CopyModelParamCommand>("CopyModelParam"),
    Command<FixAllModelParamsCommand>("FixAllModelParams"),
    Command<FreeShapeCommand>("FreeShape"),
    Command<VarDielFuncCommand>("VarDielFunc"),
    Command<NewGraphCommand>("NewGraph"),
    Command<GraphPropertiesCommand>("GraphProperties"),
    Command<AddDataCurveCommand>("AddDataCurve"),
    Command<AddModelCurveCommand>("AddModelCurve"),
    Command<DeleteDataCurveCommand>("DeleteDataCurve"),
    Command<DeleteModelCurveCommand>("DeleteModelCurve"),
    Command<ExportModelCurveCommand>("ExportModelCurve"),
    Command<ExpParamsCommand>("ExpParams"),
    Command<SetExpParamCommand>("SetExpParam"),
    Command<WindowFitCommand>("WindowFit"),
    Command<AddChiSqTermCommand>("AddChiSqTerm"),
    Command<DeleteChiSqTermCommand>("DeleteChiSqTerm"),
    Command<FitCommand>("Fit"),
};

constexpr MacroCommand kExtraCommands[] = {
    Command<InsertModelRowCommand>("InsertModelRow"),
    Command<RemoveModelRowCommand>("RemoveModelRow"),
    Command<MoveModelRowCommand>("MoveModelRow"),
    Command<SortModelRowsCommand>("SortModelRows"),
    Command<CloseModelCommand>("CloseModel"),
    Command<SetDatasetQuantityCommand>("SetDatasetQuantity"),
    Command<FitOptionsCommand>("FitOptions"),
    Command<UndoFitCommand>("UndoFit"),
    Command<QuantityErrorBarsCommand>("QuantityErrorBars"),
    Command<DumpDerivativesCommand>("DumpDerivatives"),
    Command<DumpSensitivityCommand>("DumpSensitivity"),
    Command<EchoCommand>("Echo"),
    Command<MakeVarDielFuncPositiveCommand>("MakeVarDielFuncPositive"),
    Command<SaveParamsCommand>("SaveParams"),
    Command<LoadParamsCommand>("LoadParams"),
    Command<SaveParamsSpecialCommand>("SaveParamsSpecial"),
    Command<TestDerivativesCommand>("TestDerivatives"),
    Command<TestQuantityDerivativesCommand>("TestQuantityDerivatives"),
    Command<WriteGapTableCommand>("WriteGapTable"),
    Command<AddChiSqCurveCommand>("AddChiSqCurve"),
    Command<AddMultiCurveCommand>("AddMultiCurve"),
    Command<AddFreqCurveCommand>("AddFreqCurve"),
    Command<ExportGraphCommand>("ExportGraph"),
    Command<DrawGraphCommand>("DrawGraph"),
    Command<CloseGraphCommand>("CloseGraph"),
    Command<StepBackCommand>("StepBack"),
    Command<StepForwardCommand>("StepForward"),
    Command<DefaultsCommand>("Defaults"),
    Command<ExportResidualsCommand>("ExportResiduals"),
};

}  // namespace

std::span<const MacroCommand> MacroCommandTable() { return kCommands; }
std::span<const MacroCommand> MacroExtraTable() { return kExtraCommands; }

}  // namespace kalvex
