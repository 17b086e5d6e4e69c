// One binary for every machine: each file *_kernels.cpp is compiled once for every width of the vector units, and the
// widest that the machine has is taken when the program runs. Such a file defines one record of functions,
//     template <> const SomeKernels& KernelsOfWidth<SomeKernels, VectorWidth::KALVEX_VECTOR_WIDTH>() { ... }
// Whatever these functions call must be inlined: a function that several files share would be one for all widths.
#pragma once

#include <vector>

// Takes in everything that the function calls.
#define KALVEX_FLATTEN __attribute__((flatten))

namespace kalvex {

enum class VectorWidth { kBaseline, kAvx2, kAvx512 };

bool ThisMachineHas(VectorWidth width);

template <class Kernels, VectorWidth>
const Kernels& KernelsOfWidth();

// Those that this machine can run, the widest first.
template <class Kernels>
std::vector<const Kernels*> KernelsOfThisMachine() {
  std::vector<const Kernels*> all;
#ifdef KALVEX_WIDE_VECTORS
  if (ThisMachineHas(VectorWidth::kAvx512)) all.push_back(&KernelsOfWidth<Kernels, VectorWidth::kAvx512>());
  if (ThisMachineHas(VectorWidth::kAvx2)) all.push_back(&KernelsOfWidth<Kernels, VectorWidth::kAvx2>());
#endif
  all.push_back(&KernelsOfWidth<Kernels, VectorWidth::kBaseline>());
  return all;
}

template <class Kernels>
const Kernels& WidestKernels() {
  static const Kernels& widest = *KernelsOfThisMachine<Kernels>().front();
  return widest;
}

}  // namespace kalvex
