#include "core/noise.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace kalvex {
namespace {

// Area under the normal distribution from 0 to z, for z from 0 to 3.1 in steps of 0.1, to four digits.
constexpr double kStep = 0.1;
constexpr std::array<double, 32> kArea = {0.0,    0.0398, 0.0793, 0.1179, 0.1554, 0.1915, 0.2257, 0.2580,
                                          0.2881, 0.3159, 0.3413, 0.3643, 0.3849, 0.4032, 0.4192, 0.4332,
                                          0.4452, 0.4554, 0.4641, 0.4713, 0.4772, 0.4821, 0.4861, 0.4893,
                                          0.4918, 0.4938, 0.4953, 0.4965, 0.4974, 0.4981, 0.4987, 0.4990};

}  // namespace

void SeedNoise(NoiseGenerator& noise, std::uint32_t seed) { noise.state = seed; }

std::uint32_t NextRandom(NoiseGenerator& noise) {
  noise.state = noise.state * 22695477u + 1u;
  return static_cast<std::uint32_t>(noise.state >> 32) & 0x7fffffffu;
}

double InverseNormalArea(double area) {
  if (area <= 0) return 0;
  for (std::size_t i = 1; i < kArea.size(); ++i) {
    if (area < kArea[i]) {
      const double part = (area - kArea[i - 1]) / (kArea[i] - kArea[i - 1]);
      return (static_cast<double>(i - 1) + part) * kStep;
    }
  }
  return static_cast<double>(kArea.size() - 1) * kStep;
}

double NextNormal(NoiseGenerator& noise) {
  const double u = (static_cast<int>(NextRandom(noise) % 999) - 499) * 0.001;
  return std::copysign(InverseNormalArea(std::fabs(u)), u);
}

}  // namespace kalvex
