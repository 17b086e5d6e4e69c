#include "numeric/fft.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace kalvex {

Fft::Fft(std::size_t size) : order_(size), turns_(size / 2) {
  for (std::size_t j = 1; j < size; ++j) order_[j] = order_[j / 2] / 2 + (j % 2 == 1 ? size / 2 : 0);
  for (std::size_t m = 0; m < turns_.size(); ++m) {
    const double angle = -2 * std::numbers::pi * static_cast<double>(m) / static_cast<double>(size);
    turns_[m] = {std::cos(angle), std::sin(angle)};
  }
}

void Fft::Transform(std::span<Cplx> z, bool back) const {
  for (std::size_t j = 0; j < z.size(); ++j) {
    if (j < order_[j]) std::swap(z[j], z[order_[j]]);
  }
  for (std::size_t half = 1; half < z.size(); half *= 2) {
    const std::size_t step = z.size() / (2 * half);
    for (std::size_t start = 0; start < z.size(); start += 2 * half) {
      for (std::size_t k = 0; k < half; ++k) {
        const Cplx& turn = turns_[k * step];
        const Cplx odd = z[start + half + k] * (back ? Conj(turn) : turn), even = z[start + k];
        z[start + k] = even + odd;
        z[start + half + k] = even - odd;
      }
    }
  }
}

}  // namespace kalvex
