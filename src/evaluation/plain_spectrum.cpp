#include "evaluation/plain_spectrum.h"

#include <algorithm>

#include "evaluation/eps_sum.h"
#include "evaluation/eval_model.h"
#include "evaluation/spectrum_kernels.h"
#include "records/model_table.h"

namespace kalvex {
namespace {

static_assert(kSpectrumBlock == kKernelBlock);

constexpr std::size_t kNobody = ~std::size_t{0};

const SpectrumKernels& Kernels() { return WidestKernels<SpectrumKernels>(); }

}  // namespace

bool PlainSpectrum::AppliesTo(const EvalContext& ctx, const Model& model) {
  return !TypeOf(ctx, model) && !ctx.FrequencyOverrideFlag;
}

PlainSpectrum::PlainSpectrum(EvalContext& ctx, const Model& model, const SpectrumRequest& request,
                             VdfKernelCache& kernels)
    : ctx_(ctx),
      model_(model),
      request_(request),
      kernelCache_(kernels),
      anyCode_(!PlainRows::Are(model)),
      rows_(model) {
  if (request.derivatives) Classify();
  if (HasVdf(model)) weights_.resize(kSpectrumBlock);
}

PlainSpectrum::Slope PlainSpectrum::SourceOf(const ParamPlace& place, std::size_t k) {
  const ModelParam& param = ParamAt(*ctx_.params, place);
  const Slope kept{Source::kKept, &param, nullptr, 0};
  if (!param.adjustable) return kept;
  if (place.Where == ParamKind::kExp) {
    anyExpSlope_ = true;
    return {Source::kExp, &param, nullptr, static_cast<std::size_t>(place.nep)};
  }
  if (place.nm != SlotOf(*ctx_.params, model_)) return kept;
  if (place.Where == ParamKind::kMesh) {
    if (!HasVdf(model_)) return kept;
    const auto index = 2 * static_cast<std::size_t>(place.nen) + (place.isIm ? 1 : 0);
    meshSlopes_[index] = k;
    return {Source::kMesh, &param, nullptr, index};
  }
  if (anyCode_) return {Source::kTable, &param, &SlopesAt(ctx_.slopes, place), tableParams_++};
  rows_.Claim(place, k);
  return {Source::kRow, &param, nullptr, 0};
}

void PlainSpectrum::Classify() {
  meshSlopes_.assign(2 * model_.vdf.mesh.size(), kNobody);
  for (const ParamPlace& place : request_.slopesOf) slopes_.push_back(SourceOf(place, slopes_.size()));
  tableSlopes_.resize(2 * kSpectrumBlock * tableParams_);
}

void PlainSpectrum::TakeFrequencies(const SpectrumBlock& block) {
  const auto x = request_.x.subspan(block.first, block.count);
  std::fill(std::copy(x.begin(), x.end(), x_.begin()), x_.end(), x.back());
  if (ctx_.DcFlag) {
    eps_.w.fill(kDcFrequency);
  } else {
    eps_.w = x_;
  }
}

void PlainSpectrum::SumRows(SpectrumBlock& block) {
  if (!anyCode_) return rows_.Sum(x_.data(), request_.derivatives, eps_.re.data(), eps_.im.data());
  const std::size_t count = block.count;
  for (std::size_t i = 0; i < count; ++i) {
    for (const Slope& slope : slopes_) {
      if (slope.of && ctx_.notesFormer) slope.of->Forget();
    }
    const Cplx sum = RowSum(ctx_, model_, x_[i], request_.derivatives);
    eps_.re[i] = sum.re;
    eps_.im[i] = sum.im;
    for (const Slope& slope : slopes_) {
      if (!slope.of) continue;
      double* const out = tableSlopes_.data() + slope.index * 2 * kSpectrumBlock;
      out[i] = slope.of->dEpsRe;
      out[kSpectrumBlock + i] = slope.of->dEpsIm;
      block.hasFormer = block.hasFormer || slope.of->formerEps;
    }
  }
  std::fill(eps_.re.begin() + count, eps_.re.end(), eps_.re[count - 1]);
  std::fill(eps_.im.begin() + count, eps_.im.end(), eps_.im[count - 1]);
}

void PlainSpectrum::AddMesh(const SpectrumBlock& block) {
  const auto& mesh = model_.vdf.mesh;
  const bool constrained = model_.vdf.KK != 0;
  for (std::size_t i = 0; i < kSpectrumBlock; ++i) {
    const VdfWeights at = weights_[i] = VdfWeightsAt(model_.vdf, x_[i]);
    for (const auto& [point, weight] : {std::pair(at.first, at.firstWeight), std::pair(at.second, at.secondWeight)}) {
      if (point == VdfWeights::kNoPoint) continue;
      eps_.im[i] += weight * mesh[point].e2.value;
      if (!constrained) eps_.re[i] += weight * mesh[point].e1.value;
    }
  }
  if (!constrained) return;
  kernels_ = kernelCache_.Block(model_.vdf, block.first, spareKernels_);
  meshValues_.clear();
  for (const VdfMeshPoint& point : mesh) meshValues_.push_back(point.e2.value);
  Kernels().addMultiples(meshValues_.data(), kernels_, meshValues_.size(), eps_.re.data());
}

// The contributions of the piecewise linear curves: one or two mesh points at each frequency.
void PlainSpectrum::AddMeshWeights(SpectrumBlock& block, Quantity quantity, const QuantityBlock& result) {
  for (std::size_t i = 0; i < block.count; ++i) {
    const VdfWeights& at = weights_[i];
    for (const auto& [point, weight] : {std::pair(at.first, at.firstWeight), std::pair(at.second, at.secondWeight)}) {
      if (point == VdfWeights::kNoPoint || weight == 0) continue;
      for (const std::size_t imaginary : {0u, 1u}) {
        const std::size_t k = meshSlopes_[2 * point + imaginary];
        if (k != kNobody) block.Slopes(k, quantity)[i] += weight * (imaginary ? result.dIm : result.dRe)[i];
      }
    }
  }
}

void PlainSpectrum::FillSlopes(SpectrumBlock& block, Quantity quantity, const QuantityBlock& result) {
  for (std::size_t k = 0; k < slopes_.size(); ++k) {
    const Slope& slope = slopes_[k];
    double* const out = block.Slopes(k, quantity);
    switch (slope.source) {
      case Source::kRow:
        break;
      case Source::kTable: {
        const double* const by = tableSlopes_.data() + slope.index * 2 * kSpectrumBlock;
        Kernels().multiplyPairs(result.dRe.data(), by, result.dIm.data(), by + kSpectrumBlock, out);
        break;
      }
      case Source::kMesh:
        if (model_.vdf.KK && slope.index % 2 == 1) {
          Kernels().multiply(result.dRe.data(), kernels_ + slope.index / 2 * kSpectrumBlock, out);
        } else {
          std::fill_n(out, kSpectrumBlock, 0.0);
        }
        break;
      case Source::kExp:
        std::copy(result.dExp[slope.index].begin(), result.dExp[slope.index].end(), out);
        break;
      case Source::kKept:
        std::fill_n(out, kSpectrumBlock, slope.param->savedSlopes.dQuantity[quantity]);
        break;
    }
  }
  if (!anyCode_) rows_.FillSlopes(block, quantity, x_.data(), result.dRe.data(), result.dIm.data());
  if (HasVdf(model_)) AddMeshWeights(block, quantity, result);
}

bool PlainSpectrum::FillBlock(SpectrumBlock& block) {
  block.hasFormer = false;
  TakeFrequencies(block);
  SumRows(block);
  if (HasVdf(model_)) AddMesh(block);
  QuantitySet anywhere;
  for (std::size_t i = 0; i < block.count; ++i) anywhere |= request_.wanted[block.first + i];
  const QuantityInput input = QuantityInputAt(ctx_, 0, request_.derivatives);
  bool whole = true;
  for (const Quantity q : anywhere) {
    QuantityOfEpsBlock(input, eps_, q, result_);
    std::copy(result_.value.begin(), result_.value.end(), block.Values(q));
    if (!request_.derivatives) continue;
    FillSlopes(block, q, result_);
    whole = whole && !(result_.anyLimit && anyExpSlope_);
  }
  return whole;
}

}  // namespace kalvex
