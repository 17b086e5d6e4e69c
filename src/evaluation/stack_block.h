// Stacks of layers at a block of frequencies.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "evaluation/quantity_block.h"
#include "evaluation/stack_optics.h"
#include "numeric/pack.h"

namespace kalvex {

struct StackBlockInput {
  StackHead head;
  bool derivatives = false;
  bool amplitudes = false;                  // also the amplitudes, not only R and T
  const double* x = nullptr;                // kSpectrumBlock frequencies, cm-1
  std::span<const EpsBlock* const> layers;  // dielectric function of each layer
};

// One result, with its derivatives by the quantities of each layer and by the numbers of the head row.
struct StackBlockResult {
  struct Layer {
    BlockNumbers byRe, byIm, byThickness, bySpread;
  };
  BlockNumbers value;
  std::vector<Layer> layers;
  std::array<BlockNumbers, 2> byHead;
};

// The stack that the packs of frequencies use. Its nodes are set, and its media have room.
struct StackBlockRoom {
  StackOf<Pack> stack;
  std::vector<StackMedium<Pack>> media;
};

// Fills all results, or only R and T if no amplitudes are requested.
void FillStackBlock(const StackBlockInput& in, StackBlockRoom& room, std::span<StackBlockResult> results);

}  // namespace kalvex
