// One binary for every x86-64: a function marked so is compiled for each width of the vector units, and the best one
// for the machine is taken when the program starts. Where only one width is built, and where the compiler does not know
// this, the function is plain.
#pragma once

#if defined(KALVEX_WIDE_VECTORS) && !defined(__clang__)
#define KALVEX_VECTOR_CLONES __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default")))
#else
#define KALVEX_VECTOR_CLONES
#endif

namespace kalvex {

// Whether the machine has the registers of the widest clones.
inline bool HasWideVectors() {
#ifdef KALVEX_WIDE_VECTORS
  return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512vl") != 0;
#else
  return false;
#endif
}

}  // namespace kalvex
