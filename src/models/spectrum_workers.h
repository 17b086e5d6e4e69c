// Several threads at one spectrum: each with a context and a copy of the parameter tables of its own.
#pragma once

#include <memory>
#include <vector>

#include "models/eval_context.h"
#include "numeric/thread_pool.h"

namespace kalvex {

class SpectrumWorkers {
 public:
  explicit SpectrumWorkers(int threads);

  ThreadPool pool;

  // Contexts in the state of ctx, one for each thread of the pool; they keep their own scratch and kept tables from one
  // spectrum to the next.
  void Follow(const EvalContext& ctx);
  EvalContext& Context(std::size_t thread) { return workers_[thread]->ctx; }

 private:
  struct Worker {
    ParamTables params;
    EvalContext ctx;
  };
  std::vector<std::unique_ptr<Worker>> workers_;
};

// The pool of a context, null if it works alone.
inline ThreadPool* PoolOf(const EvalContext& ctx) { return ctx.workers ? &ctx.workers->pool : nullptr; }

}  // namespace kalvex
