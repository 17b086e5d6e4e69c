// One binary for every x86-64 machine: a function marked with KALVEX_VECTOR_CLONES is compiled once for each width of
// the vector units. The program selects the best version when it starts. The macro is empty if only one width is built
// (as for the sanitizers) and for compilers without such functions.
#pragma once

#if defined(KALVEX_WIDE_VECTORS) && !defined(__clang__)
#define KALVEX_VECTOR_CLONES __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default")))
#else
#define KALVEX_VECTOR_CLONES
#endif

namespace kalvex {

// Whether the machine has the vector registers of the widest version.
inline bool HasWideVectors() {
#ifdef KALVEX_WIDE_VECTORS
  return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512vl") != 0;
#else
  return false;
#endif
}

}  // namespace kalvex
