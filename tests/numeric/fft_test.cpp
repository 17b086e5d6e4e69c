// The transform against its defining sum, forward and back, and Parseval's sum of squares.
#include "numeric/fft.h"

#include <gtest/gtest.h>

#include <complex>
#include <numbers>
#include <random>

#include "support/tolerances.h"

namespace kalvex {
namespace {

std::vector<Cplx> Random(std::size_t size) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> part(-1, 1);
  std::vector<Cplx> z(size);
  for (Cplx& value : z) value = {part(random), part(random)};
  return z;
}

TEST(FftTest, IsTheSumOverAllPoints) {
  for (const std::size_t size : {1U, 2U, 8U, 64U}) {
    const std::vector<Cplx> z = Random(size);
    std::vector<Cplx> forward = z, back = z;
    const Fft fft(size);
    fft.Forward(forward);
    fft.Back(back);
    for (std::size_t k = 0; k < size; ++k) {
      std::complex<double> minus, plus;
      for (std::size_t j = 0; j < size; ++j) {
        const double angle = 2 * std::numbers::pi * static_cast<double>(j * k) / static_cast<double>(size);
        minus += std::complex<double>(z[j].re, z[j].im) * std::polar(1.0, -angle);
        plus += std::complex<double>(z[j].re, z[j].im) * std::polar(1.0, angle);
      }
      EXPECT_NEAR(std::abs(minus - std::complex<double>(forward[k].re, forward[k].im)), 0,
                  kFormula * static_cast<double>(size));
      EXPECT_NEAR(std::abs(plus - std::complex<double>(back[k].re, back[k].im)), 0,
                  kFormula * static_cast<double>(size));
    }
  }
}

TEST(FftTest, ComesBackAndKeepsThePower) {
  constexpr std::size_t kSize = 4096;
  const std::vector<Cplx> z = Random(kSize);
  std::vector<Cplx> there = z;
  const Fft fft(kSize);
  fft.Forward(there);
  double power = 0, powerThere = 0;
  for (std::size_t k = 0; k < kSize; ++k) {
    power += Norm(z[k]);
    powerThere += Norm(there[k]) / kSize;
  }
  EXPECT_NEAR(power, powerThere, kFormula * power);
  fft.Back(there);
  for (std::size_t k = 0; k < kSize; ++k) EXPECT_NEAR(Abs(there[k] / static_cast<double>(kSize) - z[k]), 0, 2 * kRound);
}

}  // namespace
}  // namespace kalvex
