#include "evaluation/stack_block.h"

#include "evaluation/spectrum_kernels.h"

namespace kalvex {

void FillStackBlock(const StackBlockInput& in, StackBlockRoom& room, std::span<StackBlockResult> results) {
  WidestKernels<SpectrumKernels>().stackBlock(in, room, results);
}

}  // namespace kalvex
