// Pseudo-random numbers: a linear congruential generator, and normal deviates from a short table.
#pragma once

#include <cstdint>

namespace kalvex {

struct NoiseGenerator {
  std::uint64_t state = 0;

  bool operator==(const NoiseGenerator&) const = default;
};

// The seed is the low half of the state.
void SeedNoise(NoiseGenerator& noise, std::uint32_t seed);
// The next number, 0 to 2147483647.
std::uint32_t NextRandom(NoiseGenerator& noise);
// A normal deviate of unit variance. It takes a finite set of values, and its magnitude is at most 3.1.
double NextNormal(NoiseGenerator& noise);
// The z for which the area under the normal distribution from 0 to z has the given size. Linear interpolation in a
// table of four digits. 0 for an area of 0 or less, 3.1 for an area of 0.499 or more.
double InverseNormalArea(double area);

}  // namespace kalvex
