// A spectrum shared by several threads. All read the same parameters; each computes in its own context. The results,
// and the final content of the caller's context, are bit for bit those of a single thread.
//
// At one frequency an evaluation is a function of parameters and frequency, unless it keeps a result of the previous
// frequency (SpectrumBlock::hasFormer). That frequency may belong to another thread. From the first such block on, or
// from the first block with a status other than 0, only the caller's thread computes.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "evaluation/eval_context.h"
#include "evaluation/spectrum_block.h"

namespace kalvex {

// Receives the blocks of results. A portion is a number of consecutive blocks; the last portion of a spectrum may be
// shorter. The blocks of a portion are passed to `work` one after the other. Several consecutive portions run at the
// same time on any threads; `place` is the portion's place in the batch. A portion may be started again: then its first
// block resets the sums. `take` runs on the caller's thread with the number of complete portions, counted from place 0.
struct BatchSink {
  std::function<void(const SpectrumBlock& block, std::size_t place)> work;
  std::function<void(std::size_t portions)> take;
  std::size_t blocksOfPortion = 1;

  bool BeginsPortion(const SpectrumBlock& block) const { return block.first % Frequencies() == 0; }
  std::size_t Frequencies() const { return blocksOfPortion * kSpectrumBlock; }  // of a whole portion
};

struct SpectrumWorker;
struct SpectrumTeam {
  std::vector<std::unique_ptr<SpectrumWorker>> workers;  // one for each thread of the pool

  explicit SpectrumTeam(std::size_t threads);
  ~SpectrumTeam();
  SpectrumTeam(const SpectrumTeam&) = delete;
  SpectrumTeam& operator=(const SpectrumTeam&) = delete;
};

// Drops what is cached for a closed model, here and in the team.
void ForgetModel(EvalContext& ctx, std::uint32_t number);

// Estimated time of the spectrum in one thread.
double NanosecondsOf(const EvalContext& ctx, const Model& model, const SpectrumRequest& request);

// Number of blocks that make up a task of reasonable size. It does not depend on the number of threads.
std::size_t BlocksOfPortion(const EvalContext& ctx, const Model& model, const SpectrumRequest& request);

// Whether sharing this spectrum between the threads of ctx is faster.
bool PaysToShare(const EvalContext& ctx, const Model& model, const SpectrumRequest& request);

// The largest number of portions in a batch in this context.
std::size_t MostPortionsOfBatch(const EvalContext& ctx);

// Evaluates the spectrum in the team of ctx and delivers portions. Stops at the first block with a former result or a
// status other than 0. Returns the number of frequencies delivered.
std::size_t FillByTeam(EvalContext& ctx, const Model& model, const SpectrumRequest& request, const BatchSink& sink);

}  // namespace kalvex
