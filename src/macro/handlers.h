// The handlers of the command tables, by the file that holds them. A handler unpacks its parameters and calls one
// operation; it never fails, and says what it did.
#pragma once

#include "macro/command_table.h"

namespace kalvex {

// flow_commands.cpp
MacroResult BeginLoopCommand(MacroCall& call);
MacroResult EndLoopCommand(MacroCall& call);
MacroResult MainWindowCommand(MacroCall& call);
MacroResult WaitCommand(MacroCall& call);
MacroResult SuspendCommand(MacroCall& call);
MacroResult ExitCommand(MacroCall& call);
MacroResult EchoCommand(MacroCall& call);

// dataset_commands.cpp
MacroResult DatasetManagerCommand(MacroCall& call);
MacroResult LoadDatasetCommand(MacroCall& call);
MacroResult UnloadDatasetCommand(MacroCall& call);
MacroResult TransformDatasetCommand(MacroCall& call);
MacroResult ExportDatasetCommand(MacroCall& call);
MacroResult AddNoiseCommand(MacroCall& call);
MacroResult CutDatasetCommand(MacroCall& call);
MacroResult SetDatasetQuantityCommand(MacroCall& call);

// model_commands.cpp
MacroResult NewModelCommand(MacroCall& call);
MacroResult SaveModelCommand(MacroCall& call);
MacroResult LoadModelCommand(MacroCall& call);
MacroResult SetModelParamCommand(MacroCall& call);
MacroResult CopyModelParamCommand(MacroCall& call);
MacroResult FixAllModelParamsCommand(MacroCall& call);
MacroResult InsertModelRowCommand(MacroCall& call);
MacroResult RemoveModelRowCommand(MacroCall& call);
MacroResult MoveModelRowCommand(MacroCall& call);
MacroResult SortModelRowsCommand(MacroCall& call);
MacroResult CloseModelCommand(MacroCall& call);

// curve_commands.cpp
MacroResult ExportModelCurveCommand(MacroCall& call);

// fit_commands.cpp
MacroResult ExpParamsCommand(MacroCall& call);
MacroResult SetExpParamCommand(MacroCall& call);
MacroResult WindowFitCommand(MacroCall& call);
MacroResult AddChiSqTermCommand(MacroCall& call);
MacroResult DeleteChiSqTermCommand(MacroCall& call);
MacroResult FitCommand(MacroCall& call);
MacroResult FitOptionsCommand(MacroCall& call);
MacroResult UndoFitCommand(MacroCall& call);
MacroResult QuantityErrorBarsCommand(MacroCall& call);
MacroResult DumpDerivativesCommand(MacroCall& call);
MacroResult DumpSensitivityCommand(MacroCall& call);

// vdf_commands.cpp
MacroResult SaveVarDielFuncCommand(MacroCall& call);
MacroResult LoadVarDielFuncCommand(MacroCall& call);
MacroResult FreeShapeCommand(MacroCall& call);
MacroResult VarDielFuncCommand(MacroCall& call);
MacroResult MakeVarDielFuncPositiveCommand(MacroCall& call);

// tool_commands.cpp
MacroResult SaveParamsCommand(MacroCall& call);
MacroResult LoadParamsCommand(MacroCall& call);
MacroResult SaveParamsSpecialCommand(MacroCall& call);
MacroResult TestDerivativesCommand(MacroCall& call);
MacroResult TestQuantityDerivativesCommand(MacroCall& call);
MacroResult WriteGapTableCommand(MacroCall& call);

// graph_commands.cpp
MacroResult NewGraphCommand(MacroCall& call);
MacroResult GraphPropertiesCommand(MacroCall& call);
MacroResult AddDataCurveCommand(MacroCall& call);
MacroResult AddModelCurveCommand(MacroCall& call);
MacroResult AddChiSqCurveCommand(MacroCall& call);
MacroResult AddMultiCurveCommand(MacroCall& call);
MacroResult AddFreqCurveCommand(MacroCall& call);
MacroResult DeleteDataCurveCommand(MacroCall& call);
MacroResult DeleteModelCurveCommand(MacroCall& call);
MacroResult ExportGraphCommand(MacroCall& call);
MacroResult DrawGraphCommand(MacroCall& call);
MacroResult CloseGraphCommand(MacroCall& call);

}  // namespace kalvex
