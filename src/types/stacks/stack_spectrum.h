// Spectra of stacks, a block of frequencies at a time.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "evaluation/eval_context.h"
#include "evaluation/spectrum_block.h"
#include "evaluation/stack_block.h"

namespace kalvex {

// The Quantities that hold the six results.
inline constexpr std::array<Quantity, kStackResults> kStackSlots = {kRefl, kTrans, kE1, kE2, kS1, kS2};

// The number of a Quantity among the six results of a stack, if it is one of them.
inline std::optional<std::size_t> StackResultOf(Quantity quantity) {
  for (std::size_t i = 0; i < kStackSlots.size(); ++i) {
    if (kStackSlots[i] == quantity) return i;
  }
  return std::nullopt;
}

// The layout of a stack, the same for a whole spectrum.
struct StackLayout {
  StackHead head;
  std::vector<const Model*> layers;
  std::vector<std::vector<ThicknessNode>> nodes;  // of each layer
  int firstRow = 0;                               // of the layers; their thickness is in Wp
  bool spreads = false;                           // the layers have a spread, in G
  std::size_t heads = 0;                          // numbers of row 0 that can be fitted, in columns headColumn[i]
  int headColumn[2] = {};
};

// The filler of the stack's spectrum. Empty if a wanted Quantity is not one of the results, or if a layer's model has
// more than plain rows.
FillBlock StackFillerOf(EvalContext& ctx, const Model& model, const SpectrumRequest& request,
                        const StackLayout& layout);

}  // namespace kalvex
