#include "models/mesh_spectrum.h"

#include <algorithm>

#include "models/eps_sum.h"
#include "models/eval_model.h"
#include "models/model_table.h"

namespace kalvex {
namespace {

static_assert(kSpectrumBlock == kKernelBlock);

const Quantity& ResultAt(const std::vector<Quantity>& results, int quantity, std::size_t i) {
  return results[static_cast<std::size_t>(quantity) * kSpectrumBlock + i];
}

}  // namespace

bool MeshSpectrum::AppliesTo(const EvalContext& ctx, const Model& model) {
  return HasVdf(model) && !TypeOf(ctx, model) && !ctx.FrequencyOverrideFlag;
}

MeshSpectrum::MeshSpectrum(EvalContext& ctx, Model& model, const SpectrumRequest& request, VdfKernelCache& kernels)
    : ctx_(ctx), model_(model), request_(request), kernelCache_(kernels), applies_(AppliesTo(ctx, model)) {
  if (!applies_) return;
  eps_.resize(kSpectrumBlock);
  weights_.resize(kSpectrumBlock);
  results_.resize(kQuantityCount * kSpectrumBlock);
  if (request.derivatives) Classify();
  rowSlopes_.resize(rowParams_ * kSpectrumBlock);
}

void MeshSpectrum::Classify() {
  const int slot = SlotOf(*ctx_.params, model_);
  for (const ParamPlace& place : request_.slopesOf) {
    const ModelParam& param = ParamAt(*ctx_.params, place);
    Slope slope{Source::kStale, &param, 0, place.isIm != 0};
    if (param.adjustable && place.Where == ParamKind::kExp) {
      slope.source = Source::kExp;
      slope.index = static_cast<std::size_t>(place.nep);
    } else if (param.adjustable && place.nm == slot && place.Where == ParamKind::kMesh) {
      slope.source = Source::kMesh;
      slope.index = static_cast<std::size_t>(place.nen);
    } else if (param.adjustable && place.nm == slot) {
      slope.source = Source::kRow;
      slope.index = rowParams_++;
    }
    slopes_.push_back(slope);
  }
}

void MeshSpectrum::SumRows(const SpectrumBlock& block) {
  for (std::size_t i = 0; i < block.count; ++i) {
    eps_[i] = RowSum(ctx_, model_, request_.x[block.first + i], request_.derivatives);
    for (const Slope& slope : slopes_) {
      if (slope.source != Source::kRow) continue;
      rowSlopes_[slope.index * kSpectrumBlock + i] = {slope.param->dEpsRe, slope.param->dEpsIm};
    }
  }
}

void MeshSpectrum::AddMesh(const SpectrumBlock& block) {
  const auto& mesh = model_.vdf.mesh;
  const bool constrained = model_.vdf.KK != 0;
  for (std::size_t i = 0; i < block.count; ++i) {
    const VdfWeights at = weights_[i] = VdfWeightsAt(model_.vdf, request_.x[block.first + i]);
    for (const auto& [point, weight] : {std::pair(at.first, at.firstWeight), std::pair(at.second, at.secondWeight)}) {
      if (point < 0) continue;
      eps_[i].im += weight * mesh[static_cast<std::size_t>(point)].e2.value;
      if (!constrained) eps_[i].re += weight * mesh[static_cast<std::size_t>(point)].e1.value;
    }
  }
  if (!constrained) return;
  kernels_ = kernelCache_.Block(model_.vdf, block.first, spareKernels_);
  double real[kSpectrumBlock] = {};
  for (std::size_t j = 0; j < mesh.size(); ++j) {
    const double value = mesh[j].e2.value;
    for (std::size_t i = 0; i < kSpectrumBlock; ++i) real[i] += kernels_[j * kSpectrumBlock + i] * value;
  }
  for (std::size_t i = 0; i < block.count; ++i) eps_[i].re += real[i];
}

void MeshSpectrum::ComputeQuantities(SpectrumBlock& block) {
  for (std::size_t i = 0; i < block.count; ++i) {
    const QuantitySet wanted = request_.wanted[block.first + i];
    WantOnly(ctx_.quantities, wanted);
    const double x = ctx_.DcFlag ? kDcFrequency : request_.x[block.first + i];
    const QuantityInput input = QuantityInputAt(ctx_, x, request_.derivatives);
    for (int q = 0; q < kQuantityCount; ++q) {
      if (!Contains(wanted, q)) continue;
      Quantity& quantity = ctx_.quantities[static_cast<std::size_t>(q)];
      QuantityOfEps(input, eps_[i], q, quantity);
      block.Values(q)[i] = quantity.value;
      results_[static_cast<std::size_t>(q) * kSpectrumBlock + i] = quantity;
    }
  }
}

void MeshSpectrum::FillMeshSlopes(SpectrumBlock& block, int quantity, std::size_t k, const Slope& slope) const {
  double* const out = block.Slopes(k, quantity);
  const auto point = static_cast<int>(slope.index);
  const bool transformed = model_.vdf.KK && slope.imaginary;
  const double* const kernel = transformed ? kernels_ + slope.index * kSpectrumBlock : nullptr;
  for (std::size_t i = 0; i < block.count; ++i) {
    const Quantity& result = ResultAt(results_, quantity, i);
    out[i] = transformed ? result.dRe * kernel[i] : 0;
    const VdfWeights& at = weights_[i];
    const double weight = at.first == point ? at.firstWeight : at.second == point ? at.secondWeight : 0;
    if (weight != 0) out[i] += weight * (slope.imaginary ? result.dIm : result.dRe);
  }
}

void MeshSpectrum::FillSlopes(SpectrumBlock& block, int quantity) {
  const auto q = static_cast<std::size_t>(quantity);
  for (std::size_t k = 0; k < slopes_.size(); ++k) {
    const Slope& slope = slopes_[k];
    if (slope.source == Source::kMesh) {
      FillMeshSlopes(block, quantity, k, slope);
      continue;
    }
    double* const out = block.Slopes(k, quantity);
    for (std::size_t i = 0; i < block.count; ++i) {
      const Quantity& result = ResultAt(results_, quantity, i);
      if (slope.source == Source::kRow) {
        const Cplx& by = rowSlopes_[slope.index * kSpectrumBlock + i];
        out[i] = result.dRe * by.re + result.dIm * by.im;
      } else {
        out[i] = slope.source == Source::kExp ? result.dExp[slope.index] : slope.param->dQuantity[q];
      }
    }
  }
}

void MeshSpectrum::FillBlock(SpectrumBlock& block) {
  SumRows(block);
  AddMesh(block);
  ComputeQuantities(block);
  if (!request_.derivatives) return;
  QuantitySet anywhere = 0;
  for (std::size_t i = 0; i < block.count; ++i) anywhere |= request_.wanted[block.first + i];
  for (int q = 0; q < kQuantityCount; ++q) {
    if (Contains(anywhere, q)) FillSlopes(block, q);
  }
}

}  // namespace kalvex
