// The tables of the lower floors in one record, without a session.
#pragma once

#include "core/platform.h"
#include "datasets/dataset.h"
#include "evaluation/eval_context.h"
#include "fit/fit_lists.h"
#include "fit/fit_state.h"
#include "fit/run_fit.h"
#include "graphs/graph.h"
#include "numeric/thread_pool.h"
#include "records/model.h"
#include "types/types.h"

namespace kalvex {

struct Tables {
  HeadlessPlatform platform;
  ThreadPool pool;
  ParamTables params;
  DatasetTable datasets;
  EvalContext eval;
  FitState fit;
  GraphTable graphs;

  // threads: number of threads for an evaluation.
  explicit Tables(int threads = 1) : pool(threads) {
    params.ExpParams = DefaultExpParams();
    eval.params = &params;
    eval.datasets = &datasets;
    eval.pool = &pool;
    eval.termEnvironment.datasets = &datasets;
    eval.types = ModelTypeTable;
    eval.platform = &platform;
  }
  Tables(const Tables&) = delete;
  Tables& operator=(const Tables&) = delete;
};

// Adds a term: the dataset of a slot, counted from 1, compared with a model.
inline void AddTerm(Tables& tables, int slot, const Model& model) {
  ChiSqTerm& term = InsertChiSqTerm(tables.fit, tables.fit.list, static_cast<int>(tables.fit.list.terms.size()));
  term.datasetId = tables.datasets.slots[static_cast<std::size_t>(slot - 1)].id;
  term.modelId = model.number;
  RebuildFitLists(tables.fit, tables.params, tables.eval);
}

// A fit without an observer.
inline Status RunFit(Tables& tables) {
  FitObserver silent;
  return RunFit(tables.fit, tables.params, tables.eval, tables.platform, silent);
}

}  // namespace kalvex
