// The sums over transitions between Landau levels, in packs of frequencies.
//
// Each lane of a pack is one frequency. A pack runs over the transitions in portions that fit in the cache; the
// reciprocals of a portion serve both sums.
#pragma once

#include <array>
#include <cstddef>

#include "core/vector_width.h"
#include "evaluation/type_scratch.h"
#include "numeric/complex.h"
#include "numeric/pack.h"

namespace kalvex {

inline constexpr std::size_t kLadderPortion = 32;

// 1/(D^2 - Z^2) of the transitions of a portion.
using LadderReciprocals = std::array<Complex<Pack>, kLadderPortion>;

// A sum, its derivative by Z^2, and its derivatives by the directions of the dual numbers in weights and D^2.
struct LadderSlopeSum {
  Complex<Pack> value, bySquare;
  std::array<Complex<Pack>, kTypeLanes> byLane;
};

struct LadderKernels {
  // squares: D^2 of the transitions, `stride` numbers apart.
  void (*invert)(const double* squares, std::size_t stride, std::size_t count, const Complex<Pack>& z2,
                 LadderReciprocals& u);
  void (*addValues)(const double* weights, std::size_t count, const LadderReciprocals& u, Complex<Pack>& sum);
  void (*addSlopes)(const TypeDual* squares, const TypeDual* weights, std::size_t count, const LadderReciprocals& u,
                    LadderSlopeSum& sum);
};

}  // namespace kalvex
