// One binary for every x86-64: a function marked so is compiled for each width of the vector units, and the best one
// for the machine is taken when the program starts. The sanitizers cannot look into such functions, so there it is
// plain.
#pragma once

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__) && \
    !defined(__SANITIZE_THREAD__)
#define KALVEX_VECTOR_CLONES __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default")))
#else
#define KALVEX_VECTOR_CLONES
#endif

namespace kalvex {

// Whether the machine has the registers of the widest clones.
inline bool HasWideVectors() {
#if defined(__x86_64__) && defined(__GNUC__)
  return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512vl") != 0;
#else
  return false;
#endif
}

}  // namespace kalvex
