#include "types/stacks/stack_spectrum.h"

#include <algorithm>
#include <memory>

#include "evaluation/eps_sum.h"
#include "evaluation/plain_rows.h"
#include "records/model_table.h"

namespace kalvex {
namespace {

constexpr std::size_t kResults = kStackSlots.size();

class StackSpectrum {
 public:
  StackSpectrum(EvalContext& ctx, const Model& model, const SpectrumRequest& request, const StackLayout& layout);
  bool FillBlock(SpectrumBlock& block);

 private:
  // The model of one or more layers.
  struct Partner {
    const Model* model;
    PlainRows rows;
    EpsBlock eps;
    bool wanted = false;  // a slope by one of its parameters
    BlockNumbers dRe, dIm;
  };
  // The meaning of a requested parameter.
  enum class Source { kPartner, kThickness, kSpread, kHead, kNothing, kKept };
  struct Slope {
    Source source;
    std::size_t index = 0;  // layer, or number of the head
    const ModelParam* param = nullptr;
  };

  Partner& PartnerOf(const Model& model);
  Slope SourceOf(EvalContext& ctx, const Model& model, const ParamPlace& place, std::size_t k);
  Slope SourceOfRow(const ParamPlace& place, const ModelParam& param) const;
  void FillSlopes(SpectrumBlock& block, std::size_t result);

  const SpectrumRequest& request_;
  StackLayout layout_;
  std::vector<std::unique_ptr<Partner>> partners_;
  std::vector<const EpsBlock*> layers_;
  std::vector<const Partner*> partnerOfLayer_;
  std::vector<Slope> slopes_;
  StackBlockRoom room_;
  StackBlockInput input_;
  BlockNumbers x_;
  std::vector<StackBlockResult> results_;
};

StackSpectrum::StackSpectrum(EvalContext& ctx, const Model& model, const SpectrumRequest& request,
                             const StackLayout& layout)
    : request_(request), layout_(layout), results_(kResults) {
  const std::size_t media = layout.layers.size() + 2;
  MakeRoomForMedia(room_.stack, media);
  room_.media.resize(media);
  std::copy(layout.nodes.begin(), layout.nodes.end(), room_.stack.nodes.begin() + 1);
  MakeRoomForPassages(room_.stack);
  for (StackBlockResult& result : results_) result.layers.resize(layout.layers.size());
  for (const Model* const layer : layout.layers) {
    const Partner& partner = PartnerOf(*layer);
    partnerOfLayer_.push_back(&partner);
    layers_.push_back(&partner.eps);
  }
  constexpr QuantitySet kIntensities = {kRefl, kTrans};
  const bool amplitudes = !(WantedAnywhere(request) - kIntensities).IsEmpty();
  input_ = {layout.head, request.derivatives, amplitudes, x_.data(), layers_};
  if (!request.derivatives) return;
  for (const ParamPlace& place : request.slopesOf) slopes_.push_back(SourceOf(ctx, model, place, slopes_.size()));
}

StackSpectrum::Partner& StackSpectrum::PartnerOf(const Model& model) {
  for (const auto& partner : partners_) {
    if (partner->model == &model) return *partner;
  }
  return *partners_.emplace_back(std::make_unique<Partner>(Partner{&model, PlainRows(model), {}, false, {}, {}}));
}

StackSpectrum::Slope StackSpectrum::SourceOfRow(const ParamPlace& place, const ModelParam& param) const {
  for (std::size_t i = 0; i < layout_.heads; ++i) {
    if (place.nl == 0 && place.nc == layout_.headColumn[i]) return {Source::kHead, i};
  }
  const int layer = place.nl - layout_.firstRow;
  if (layer < 0 || place.nc == Wo || (place.nc == G && !layout_.spreads)) return {Source::kKept, 0, &param};
  return {place.nc == G ? Source::kSpread : Source::kThickness, static_cast<std::size_t>(layer)};
}

StackSpectrum::Slope StackSpectrum::SourceOf(EvalContext& ctx, const Model& model, const ParamPlace& place,
                                             std::size_t k) {
  const ModelParam& param = ParamAt(*ctx.params, place);
  const Slope kept{Source::kKept, 0, &param};
  if (!param.adjustable || place.Where == ParamKind::kMesh) return kept;
  if (place.Where == ParamKind::kExp) return {Source::kNothing};
  const Model& of = ctx.params->models[static_cast<std::size_t>(place.nm)];
  if (&of == &model) return place.Where == ParamKind::kRow ? SourceOfRow(place, param) : kept;
  if (std::find(layout_.layers.begin(), layout_.layers.end(), &of) == layout_.layers.end()) return kept;
  Partner& partner = PartnerOf(of);
  partner.rows.Claim(place, k);
  partner.wanted = true;
  return {Source::kPartner};
}

void StackSpectrum::FillSlopes(SpectrumBlock& block, std::size_t result) {
  const StackBlockResult& by = results_[result];
  const Quantity quantity = kStackSlots[result];
  for (const auto& partner : partners_) {
    if (!partner->wanted) continue;
    partner->dRe.fill(0);
    partner->dIm.fill(0);
    for (std::size_t j = 0; j < layers_.size(); ++j) {
      if (partnerOfLayer_[j] != partner.get()) continue;
      for (std::size_t i = 0; i < kSpectrumBlock; ++i) {
        partner->dRe[i] += by.layers[j].byRe[i];
        partner->dIm[i] += by.layers[j].byIm[i];
      }
    }
    partner->rows.FillSlopes(block, quantity, x_.data(), partner->dRe.data(), partner->dIm.data());
  }
  for (std::size_t k = 0; k < slopes_.size(); ++k) {
    const Slope& slope = slopes_[k];
    double* const out = block.Slopes(k, quantity);
    const auto put = [&](const BlockNumbers& numbers) { std::copy(numbers.begin(), numbers.end(), out); };
    if (slope.source == Source::kThickness) put(by.layers[slope.index].byThickness);
    if (slope.source == Source::kSpread) put(by.layers[slope.index].bySpread);
    if (slope.source == Source::kHead) put(by.byHead[slope.index]);
    if (slope.source == Source::kNothing) std::fill_n(out, kSpectrumBlock, 0.0);
    if (slope.source == Source::kKept) {
      std::fill_n(out, kSpectrumBlock, slope.param->savedSlopes.dQuantity[quantity]);
    }
  }
}

bool StackSpectrum::FillBlock(SpectrumBlock& block) {
  const auto x = request_.x.subspan(block.first, block.count);
  std::fill(std::copy(x.begin(), x.end(), x_.begin()), x_.end(), x.back());
  for (const auto& partner : partners_) {
    partner->rows.Sum(x_.data(), partner->wanted, partner->eps.re.data(), partner->eps.im.data());
  }
  FillStackBlock(input_, room_, results_);
  QuantitySet anywhere;
  for (std::size_t i = 0; i < block.count; ++i) anywhere |= request_.wanted[block.first + i];
  for (std::size_t result = 0; result < kResults; ++result) {
    const Quantity quantity = kStackSlots[result];
    if (!anywhere.Contains(quantity)) continue;
    const BlockNumbers& value = results_[result].value;
    std::copy(value.begin(), value.end(), block.Values(quantity));
    if (request_.derivatives) FillSlopes(block, result);
  }
  return true;
}

}  // namespace

FillBlock StackFillerOf(EvalContext& ctx, const Model& model, const SpectrumRequest& request,
                        const StackLayout& layout) {
  const QuantitySet wanted = WantedAnywhere(request);
  for (const Quantity q : wanted) {
    if (!StackResultOf(q)) return {};
  }
  const bool plain = std::all_of(layout.layers.begin(), layout.layers.end(), [&](const Model* layer) {
    return layer != &model && PlainRows::Are(*layer) && !HasVdf(*layer);
  });
  if (!plain || layout.layers.empty() || ctx.FrequencyOverrideFlag) return {};
  const auto spectrum = std::make_shared<StackSpectrum>(ctx, model, request, layout);
  return [spectrum](SpectrumBlock& block) { return spectrum->FillBlock(block); };
}

}  // namespace kalvex
