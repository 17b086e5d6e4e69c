// One binary for every machine: each file *_kernels.cpp is compiled once for every width of the vector units. The
// program selects the widest version that the machine supports. Such a file defines one record of functions,
//     template <> const SomeKernels& KernelsOfWidth<SomeKernels, VectorWidth::KALVEX_VECTOR_WIDTH>() { ... }
// All functions called from there must be inlined. A separate function would exist only once and be shared by all
// widths.
#pragma once

#include <vector>

// Inlines everything that the function calls.
#define KALVEX_FLATTEN __attribute__((flatten))

namespace kalvex {

enum class VectorWidth { kBaseline, kAvx2, kAvx512 };

bool ThisMachineHas(VectorWidth width);

template <class Kernels, VectorWidth>
const Kernels& KernelsOfWidth();

// The versions that this machine can run, the widest first.
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
