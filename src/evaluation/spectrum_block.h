// The request and the results of EvalSpectrum.
#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "datasets/quantity.h"
#include "records/param_place.h"

namespace kalvex {

inline constexpr std::size_t kSpectrumBlock = 64;

struct SpectrumRequest {
  std::span<const double> x;            // cm-1
  std::span<const QuantitySet> wanted;  // one per frequency
  bool derivatives = false;
  std::span<const ParamPlace>
      slopesOf;  // with derivatives: the parameters whose slopes the caller will read, each once
};

// The Quantities that are wanted at any frequency of the request.
inline QuantitySet WantedAnywhere(const SpectrumRequest& request) {
  QuantitySet anywhere;
  for (const QuantitySet wanted : request.wanted) anywhere |= wanted;
  return anywhere;
}

// The results at the frequencies first to first + count - 1. Values and slopes that were not requested are undefined.
class SpectrumBlock {
 public:
  SpectrumBlock() = default;
  explicit SpectrumBlock(const SpectrumRequest& request) { MakeRoomFor(request, WantedAnywhere(request)); }

  // Resizes the block; its content becomes undefined. anywhere: WantedAnywhere of the request, passed in because
  // computing it takes one pass over the spectrum.
  void MakeRoomFor(const SpectrumRequest& request, QuantitySet anywhere) {
    std::size_t columns = 0;
    for (const Quantity q : anywhere) column_[q] = columns++;
    values_.resize(columns * kSpectrumBlock);
    slopes_.resize(request.derivatives ? request.slopesOf.size() * values_.size() : 0);
  }

  std::size_t first = 0;
  std::size_t count = 0;
  bool hasFormer = false;  // a result depends on an earlier evaluation; set if EvalContext::notesFormer

  double Value(Quantity quantity, std::size_t i) const { return values_[Index(quantity, i)]; }
  // Derivative of the Quantity by parameter k of the request.
  double Slope(std::size_t k, Quantity quantity, std::size_t i) const {
    return slopes_[k * values_.size() + Index(quantity, i)];
  }

  // For the code that fills the block: the values, or the slopes by one parameter, at all frequencies of the block.
  const double* Values(Quantity quantity) const { return values_.data() + Index(quantity, 0); }
  double* Values(Quantity quantity) { return values_.data() + Index(quantity, 0); }
  const double* Slopes(std::size_t k, Quantity quantity) const {
    return slopes_.data() + k * values_.size() + Index(quantity, 0);
  }
  double* Slopes(std::size_t k, Quantity quantity) { return slopes_.data() + k * values_.size() + Index(quantity, 0); }

 private:
  std::size_t Index(Quantity quantity, std::size_t i) const { return column_[quantity] * kSpectrumBlock + i; }
  PerQuantity<std::size_t> column_{};  // one per Quantity that is wanted anywhere in the request
  std::vector<double> values_;
  std::vector<double> slopes_;
};

}  // namespace kalvex
