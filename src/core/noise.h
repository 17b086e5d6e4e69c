// The program's pseudo-random numbers: a linear congruential generator, and a normal deviate read off a short table.
#pragma once

#include <cstdint>

namespace kalvex {

struct NoiseGenerator {
  std::uint64_t state = 0;
};

// The seed is the low half of the state.
void SeedNoise(NoiseGenerator& noise, std::uint32_t seed);
// The next number, 0 to 2147483647.
std::uint32_t NextRandom(NoiseGenerator& noise);
// A normal deviate of unit variance, cut off at 3.1, out of a finite set of values.
double NextNormal(NoiseGenerator& noise);
// The distance from the mean inside which half of |u| of a normal distribution lies on either side: the inverse of
// the area from 0 to z, by linear interpolation of a table of four digits. 0 at or below 0, 3.1 at or above 0.499.
double InverseNormalArea(double area);

}  // namespace kalvex
