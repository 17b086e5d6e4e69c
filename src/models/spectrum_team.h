// A spectrum shared out over threads, each with a context and parameter tables of its own. What comes out, and what
// stays behind in the caller's tables, is what one thread alone would give, to the last bit.
//
// At one frequency an evaluation is a function of values and frequency; but where it fails or gives up it leaves
// results of the frequency before, which may have been another thread's. A thread therefore forgets, before each block
// of frequencies, everything that evaluations have left in its tables: there stands NaN, and from there it spreads into
// every result that would have been taken from an earlier block. A block with a NaN, or with a status other than 0, is
// not trusted.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "models/eval_context.h"
#include "models/spectrum_block.h"

namespace kalvex {

// What becomes of blocks of results. One block after the other, or several consecutive ones at the same time on any
// threads, go through `work`, with their place in the batch; then the caller's thread gets the batch in `take`.
struct BatchSink {
  std::function<void(const SpectrumBlock& block, std::size_t place)> work;
  std::function<void(std::span<const SpectrumBlock> batch)> take;
};

struct SpectrumWorker;
struct SpectrumTeam {
  std::vector<std::unique_ptr<SpectrumWorker>> workers;  // one for each thread of the pool
  std::vector<SpectrumBlock> blocks;                     // of the batch in the making; no unused number in them is NaN

  explicit SpectrumTeam(std::size_t threads);
  ~SpectrumTeam();
  SpectrumTeam(const SpectrumTeam&) = delete;
  SpectrumTeam& operator=(const SpectrumTeam&) = delete;
};

// How long the spectrum takes one thread, more or less.
double NanosecondsOf(const EvalContext& ctx, const Model& model, const SpectrumRequest& request);

// Whether the threads of ctx can gain by sharing out this spectrum.
bool PaysToShare(const EvalContext& ctx, const Model& model, const SpectrumRequest& request);

// No batch of a spectrum in this context has more blocks.
std::size_t MostBlocksOfBatch(const EvalContext& ctx);

// Evaluates the spectrum in the team of ctx and hands over batches of blocks until one is not trusted; the caller's
// tables and results are only read. Gives the number of frequencies that were handed over.
std::size_t FillByTeam(EvalContext& ctx, const Model& model, const SpectrumRequest& request, const BatchSink& sink);

}  // namespace kalvex
