#include "program/program.h"

#include <cstdio>

#include "core/text.h"
#include "graphs/graph_table.h"
#include "records/model_table.h"
#include "types/types.h"
#include "windows/model_window.h"
#include "windows/redraw.h"

namespace kalvex {
namespace {

Program& ProgramOf(void* self) { return *static_cast<Program*>(self); }

void PrintProgress(const FitState& fit) {
  std::fprintf(stderr, "iteration %d: ChiSq %s, Lambda %s, %d s\n", fit.IterationCount,
               TextG(fit.TotalChiSq, 8).c_str(), TextG(fit.Lambda).c_str(), fit.ElapsedSeconds);
}

}  // namespace

Program::Program(int threads) : pool(threads) {
  SeedNoise(noise, static_cast<std::uint32_t>(platform->ClockSeconds()));
  params.ExpParams = DefaultExpParams();
  eval.params = &params;
  eval.datasets = &datasets;
  eval.pool = &pool;
  eval.termEnvironment.datasets = &datasets;
  eval.types = ModelTypeTable;
  eval.platform = platform;
  notices.owner = this;
  notices.graphs = [](void* self, GraphEvent event, std::int64_t id) {
    AnswerGraphEvent(ProgramOf(self).graphs, event, id, ProgramOf(self).AutoScreenUpdate);
  };
  notices.fit = [](void* self, FitNotice notice, std::uint32_t id) {
    AnswerFitNotice(DeskOf(ProgramOf(self)), notice, id);
  };
}

FitDesk DeskOf(Program& program) {
  return {program.fitWindow, program.fit, program.params, program.eval, program.AutoScreenUpdate};
}

WindowDesk WindowDeskOf(Program& program) {
  return {program.params,       program.datasets,  program.eval,           program.fit,         program.graphs,
          program.notices,      *program.platform, program.datasetManager, program.loadDialog,  program.expParamsWindow,
          program.paramControl, program.vdfDialog, program.graphDialogs,   program.GraphReader, program.fileFolder};
}

void RunFollower::IterationEnds() {
  ShowValues(program_);
  RefreshTermLines(DeskOf(program_));
  if (program_.showProgress) PrintProgress(program_.fit);
}

void ShowValues(Program& program) {
  if (program.expParamsWindow.open) RefreshExpParams(program.notices, program.params, true);
  for (Model& model : program.params.models) {
    if (model.number != 0) RefreshModelWindow(program.notices, model, true);
  }
  SettleSlider(WindowDeskOf(program));
}

bool CloseModel(Program& program, std::uint32_t number) {
  Model* const model = GetModelByNumber(program.params, number);
  if (!model) return false;
  CloseModelWindow(WindowDeskOf(program), *model);
  return true;
}

}  // namespace kalvex
