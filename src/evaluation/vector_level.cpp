#include "evaluation/vector_kernels.h"

namespace kalvex {

namespace baseline {
extern const VectorKernels kKernels;
}

#ifdef KALVEX_WIDE_VECTORS

namespace avx2 {
extern const VectorKernels kKernels;
}
namespace avx512 {
extern const VectorKernels kKernels;
}

std::span<const VectorKernels* const> VectorKernelsOfThisMachine() {
  static constexpr const VectorKernels* kWidestFirst[] = {&avx512::kKernels, &avx2::kKernels, &baseline::kKernels};
  const std::span all(kWidestFirst);
  static const std::size_t tooWide = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                                             __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512bw")
                                         ? 0
                                     : __builtin_cpu_supports("avx2") ? 1
                                                                      : 2;
  return all.subspan(tooWide);
}

#else

std::span<const VectorKernels* const> VectorKernelsOfThisMachine() {
  static constexpr const VectorKernels* kOnly[] = {&baseline::kKernels};
  return kOnly;
}

#endif

}  // namespace kalvex
