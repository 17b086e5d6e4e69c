#include "core/vector_width.h"

namespace kalvex {

bool ThisMachineHas(VectorWidth width) {
  switch (width) {
#if defined(__x86_64__) && defined(__GNUC__)
    case VectorWidth::kAvx2:
      return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    case VectorWidth::kAvx512:
      return ThisMachineHas(VectorWidth::kAvx2) && __builtin_cpu_supports("avx512f") &&
             __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl") &&
             __builtin_cpu_supports("avx512bw");
#endif
    default:
      return width == VectorWidth::kBaseline;
  }
}

}  // namespace kalvex
