// The discrete Fourier transform of N points, N a power of two.
#pragma once

#include <span>
#include <vector>

#include "numeric/complex.h"

namespace kalvex {

class Fft {
 public:
  Fft() : Fft(1) {}
  // size is a power of two, at least 1.
  explicit Fft(std::size_t size);
  std::size_t Size() const { return order_.size(); }

  // z_k = sum over j of z_j exp(-+ 2 pi i jk/N), in place. Forward has the minus sign, Back the plus sign and no factor
  // 1/N. z has Size() entries.
  void Forward(std::span<Cplx> z) const { Transform(z, false); }
  void Back(std::span<Cplx> z) const { Transform(z, true); }

 private:
  void Transform(std::span<Cplx> z, bool back) const;

  std::vector<std::size_t> order_;  // bit-reversed indices
  std::vector<Cplx> turns_;         // exp(-2 pi i m/N), m < N/2
};

}  // namespace kalvex
