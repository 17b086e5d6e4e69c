// Results computed from the response of another model: scattering rate and mass, integrated spectral weight.
#include <cmath>

#include "evaluation/chains.h"
#include "evaluation/eps_sum.h"
#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

// Rate and mass enhancement of the free carriers of a partner.
struct ExtendedDrude {
  enum Input { kPartner, kPlasma, kHighFrequency };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "sample"), Own(0, Wp, "plasma frequency, cm-1", 2000),
                                      Own(0, G, "high-frequency dielectric constant", 1.5)};
  static constexpr SlotUse kFills[] = {
      {kRefl, "scattering rate, cm-1"},
      {kTrans, "rate over mass enhancement, cm-1", InputBits({kPartner, kHighFrequency})},
      {kRp, "mass enhancement"},
      {kS1, "90 - arg(e - e_inf), degrees", InputBits({kPartner, kHighFrequency})}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    constexpr double kLeast = 9.999999999999999e-31;
    const Complex<T> u = in.eps(kPartner) - in[kHighFrequency];
    if (std::fabs(ValueOf(u.re)) < kLeast || std::fabs(in.x) < kLeast) return;
    const Complex<T> v = Complex<T>{T(1), T(0)} / u;
    const T t = -(in[kPlasma] * in[kPlasma]);
    q[kRefl] = v.im * t / T(in.x);
    q[kRp] = v.re * t / T(in.x * in.x);
    q[kTrans] = v.im / v.re * T(in.x);
    q[kS1] = T(90) - Log(u).im * T(kDegreesPerRadian);
  }
};

// ---- spectral weight

constexpr RowRule kRows = Exactly(1);
constexpr RowCell kWeightHead[] = {Partner(0, Wo, "sample"),
                                   Own(0, Wp, "volume per formula unit, of the unit of Quantity 2, cm3", 1e-22)};
constexpr SlotUse kWeightFills[] = {{kRefl, "spectral weight up to x, Ohm^-1 cm^-2", InputBits({0})},
                                    {kTrans, "plasma frequency of that weight, cm-1", InputBits({0})},
                                    {kRp, "electrons of that weight in the volume"}};
constexpr double kPerWeight = 0.20943951023931953;  // pi/15
constexpr double kElectrons = 425893000000000.0 * kPerWeight;

// A Quantity as a function of the sum S, and its derivatives by S and by the volume.
struct WeightReading {
  double value = 0;
  double slope = 0;
  double byVolume = 0;
};
WeightReading ReadWeight(Quantity quantity, double S, double volume) {
  switch (quantity) {
    case kRefl:
      return {S * kPerWeight, kPerWeight, 0};
    case kTrans:
      if (!(S > 0)) return {};
      return {std::sqrt(8 * S), 4 / std::sqrt(8 * S), 0};
    case kRp:
      return {kElectrons * volume * S, kElectrons * volume, kElectrons * S};
    default:
      return {};
  }
}

// Stores each wanted reading. Its slope by the sum is chained to the partner, that by the volume to the row.
int FillWeights(EvalContext& ctx, const Model& model, const Model& partner, double S, bool derivatives,
                bool dependencies) {
  const ModelParam& volume = Cell(model, 0, Wp);
  for (const Quantity q : kEveryQuantity) {
    QuantityResult& quantity = ctx.quantities[q];
    if (!quantity.wanted) continue;
    WeightReading reading = ReadWeight(q, S, volume.value);
    if (dependencies) {
      reading.slope = q <= kRp ? 1 : 0;
      reading.byVolume = q == kRp ? 1 : 0;
    } else {
      quantity.Put(reading.value);
    }
    if (!derivatives) continue;
    quantity.ClearExp();
    quantity.dScalar = reading.slope;
    ClearDerivativeColumn(ctx, partner, q);
    SetChainForScalar(ctx, partner, q);
    if (volume.adjustable) Cell(SlopesOf(ctx, model), 0, Wp).Put(q, reading.byVolume);
  }
  return 0;
}

int EvaluateWeight(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  if (!kRows.Admits(RowCount(model))) return -1;
  const Model* const partner = PartnerAt(ctx, model, 0, Wo);
  if (!partner) return -1;
  return FillWeights(ctx, model, *partner, ScalarSum(ctx, *partner, x, derivatives), derivatives, false);
}

int AfterWeight(EvalContext& ctx, const Model& model) {
  if (!kRows.Admits(RowCount(model))) return -1;
  const Model* const partner = PartnerAt(ctx, model, 0, Wo);
  if (!partner) return -1;
  SeedScalarDependencies(ctx, *partner);
  return FillWeights(ctx, model, *partner, 0, true, true);
}

}  // namespace

constinit const ModelType kExtendedDrude = FittedType<ExtendedDrude, Exactly(1)>(
    6, "Extended Drude",
    {.sample = "a metal described as free carriers with a rate and a mass that depend on the frequency",
     .formula = "u = e - e_inf; rate = -Wp^2 Im(1/u)/x, mass enhancement = -Wp^2 Re(1/u)/x^2",
     .source = "J. W. Allen, J. C. Mikkelsen, Phys. Rev. B 15, 2952 (1977)"});

constinit const ModelType kSpectralWeight = {
    .code = 10,
    .name = "Spectral Weight",
    .evaluate = EvaluateWeight,
    .after = AfterWeight,
    .fitted = true,
    .material = false,
    .map = {.rows = kRows, .head = kWeightHead, .group = {}, .groupStart = 0, .groupRows = 1},
    .fills = kWeightFills,
    .page = {.sample = "the weight under the conductivity of a model from 0 up to the frequency x",
             .formula = "S = sum over the rows of their partial weights; Q0 = S pi/15, Q1 = sqrt(8 S), 0 for S < 0,\n"
                        "Q2 = 425893000000000 V S pi/15",
             .source = "partial sum rule, F. Wooten, Optical Properties of Solids, chapter 3.4",
             .from = 50,
             .to = 500,
             .axis = "upper end of the integral, cm-1"}};

}  // namespace kalvex
