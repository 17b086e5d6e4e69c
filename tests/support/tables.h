// The tables of the lower floors in one record, without a session.
#pragma once

#include "datasets/dataset.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"
#include "graphs/graph.h"
#include "numeric/thread_pool.h"
#include "records/model.h"
#include "support/quantities.h"
#include "support/test_platform.h"
#include "types/types.h"

namespace kalvex {

struct Tables {
  TestPlatform platform;
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

}  // namespace kalvex
