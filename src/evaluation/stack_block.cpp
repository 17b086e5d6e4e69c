#include "evaluation/stack_block.h"

#include "evaluation/vector_kernels.h"

namespace kalvex {

void FillStackBlock(const StackBlockInput& in, StackBlockRoom& room, std::span<StackBlockResult> results) {
  WidestKernels().stackBlock(in, room, results);
}

}  // namespace kalvex
