// A spectrum shared out over threads. They read the same parameters, and each has a context of its own to compute in.
// What comes out, and what stays in the caller's context, is what one thread alone would give, to the last bit.
//
// At one frequency an evaluation is a function of parameters and frequency, unless it keeps a result of the frequency
// before (SpectrumBlock::hasFormer), which may have been another thread's. From the first such block on, and from one
// with a status other than 0, the caller's thread does the spectrum alone.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "evaluation/eval_context.h"
#include "evaluation/spectrum_block.h"

namespace kalvex {

// What becomes of blocks of results. So many consecutive blocks are a portion; the last one of a spectrum may have
// fewer. The blocks of a portion go through `work` one after the other, those of several consecutive portions at the
// same time on any threads, with the portion's place in the batch. A portion that is begun once more counts from its
// first block on. `take` tells the caller's thread how many portions, from place 0 on, are whole.
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

// A model is closed: what was kept for it goes, here and in the team.
void ForgetModel(EvalContext& ctx, std::uint32_t number);

// How long the spectrum takes one thread, more or less.
double NanosecondsOf(const EvalContext& ctx, const Model& model, const SpectrumRequest& request);

// Blocks that are a task worth giving to a thread, however many threads there are.
std::size_t BlocksOfPortion(const EvalContext& ctx, const Model& model, const SpectrumRequest& request);

// Whether the threads of ctx can gain by sharing out this spectrum.
bool PaysToShare(const EvalContext& ctx, const Model& model, const SpectrumRequest& request);

// No batch of a spectrum in this context has more portions.
std::size_t MostPortionsOfBatch(const EvalContext& ctx);

// Evaluates the spectrum in the team of ctx and hands over portions until one has a block with a former result or a
// status other than 0. Gives the number of frequencies that were handed over.
std::size_t FillByTeam(EvalContext& ctx, const Model& model, const SpectrumRequest& request, const BatchSink& sink);

}  // namespace kalvex
