// One model at many frequencies: what the fit and the exports call. The results are those of EvalModel, handed over in
// blocks, so that whatever does not depend on the frequency can be done once for a spectrum.
#pragma once

#include <array>
#include <functional>
#include <span>
#include <vector>

#include "models/eval_context.h"
#include "models/param_place.h"

namespace kalvex {

inline constexpr std::size_t kSpectrumBlock = 64;

struct SpectrumRequest {
  std::span<const double> x;            // cm-1
  std::span<const QuantitySet> wanted;  // one for each frequency
  bool derivatives = false;
  std::span<const ParamPlace> slopesOf;  // with derivatives: the parameters whose slopes the caller will read
};

// The results at the frequencies first to first + count - 1. A value or slope that was not asked for has no meaning.
class SpectrumBlock {
 public:
  std::size_t first = 0;
  std::size_t count = 0;

  double Value(int quantity, std::size_t i) const { return values_[Index(quantity, i)]; }
  // Derivative of the Quantity by parameter number k of the request.
  double Slope(std::size_t k, int quantity, std::size_t i) const {
    return slopes_[k * values_.size() + Index(quantity, i)];
  }

 private:
  friend int EvalSpectrum(EvalContext&, Model&, const SpectrumRequest&,
                          const std::function<void(const SpectrumBlock&)>&);
  void MakeRoom(const SpectrumRequest& request);
  std::size_t Index(int quantity, std::size_t i) const {
    return column_[static_cast<std::size_t>(quantity)] * kSpectrumBlock + i;
  }
  std::array<std::size_t, kQuantityCount> column_{};  // of each Quantity that is wanted anywhere in the request
  std::vector<double> values_;
  std::vector<double> slopes_;
};

// Evaluates the model at every frequency of the request, in their order, and calls sink for each block. Gives the last
// status other than 0 that an evaluation gave, else 0.
int EvalSpectrum(EvalContext& ctx, Model& model, const SpectrumRequest& request,
                 const std::function<void(const SpectrumBlock&)>& sink);

}  // namespace kalvex
