// Ratios and differences of Quantities of other models, and Quantities weighted with measured spectra.
#include <cmath>
#include <numbers>

#include "evaluation/eval_model.h"
#include "records/row_code.h"
#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

// Ratio or difference of up to four models, for two Quantities.
template <int kCode, Quantity kFirst, Quantity kSecond, int kTypicalMode>
struct RatioOfFour {
  static constexpr Hooks kHooks = hook::kIdle | hook::kAdmits;
  enum Input { kMode, kA, kB, kC, kD };
  enum Mode { kRatio = 1, kRatioDifference, kDifference, kDoubleRatio };
  static constexpr RowCell kHead[] = {Setting(0, Wo, "mode: 1 A/B, 2 A/B - C/D, 3 A - B, 4 (A/B)/(C/D)", kTypicalMode),
                                      EvaluatedLike(0, Wp, "model A", kCode), EvaluatedLike(0, G, "model B", kCode),
                                      EvaluatedIf(1, Wo, "model C, of modes 2 and 4", kCode),
                                      EvaluatedIf(1, Wp, "model D, of modes 2 and 4", kCode)};
  static constexpr SlotUse kFills[] = {{kFirst, "the combination of this Quantity of the models"},
                                       {kSecond, "the combination of this Quantity of the models"}};

  static bool TakesAll(const TypeInputs<double>& in) {
    return in.setting(kMode) == kRatioDifference || in.setting(kMode) == kDoubleRatio;
  }
  static bool Admits(const TypeInputs<double>& in) { return !TakesAll(in) || (in.has(kC) && in.has(kD)); }
  static std::uint64_t Idle(const TypeInputs<double>& in) {
    const int mode = in.setting(kMode);
    if (mode < kRatio || mode > kDoubleRatio) return kAllInputs;
    return TakesAll(in) ? 0 : InputBits({kC, kD});
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    for (const SlotUse& slot : kFills) {
      const auto of = [&](std::size_t input) { return in.quantity(input, slot.quantity); };
      T& result = q[slot.quantity];
      switch (in.setting(kMode)) {
        case kRatio:
          result = Over(of(kA), of(kB));
          break;
        case kRatioDifference:
          result = Over(of(kA), of(kB)) - Over(of(kC), of(kD));
          break;
        case kDifference:
          result = of(kA) - of(kB);
          break;
        case kDoubleRatio:
          result = Over(Over(of(kA), of(kB)), Over(of(kC), of(kD)));
          break;
        default:
          break;
      }
    }
  }

 private:
  template <class T>
  static T Over(const T& a, const T& b) {
    return std::fabs(ValueOf(b)) < 1e-30 ? T(0) : a / b;
  }
};

// Ratios and differences of two graphene devices, with the absorption of a path and a background.
struct RatioOfDevices {
  static constexpr Hooks kHooks = hook::kIdle;
  enum Input { kA, kB, kPath, kFactor0, kFactor1, kFactor2, kOffset0, kOffset1, kOffset2 };
  static constexpr RowCell kHead[] = {EvaluatedLike(0, Wo, "first model", 98),
                                      EvaluatedLike(0, Wp, "second model", 98),
                                      Own(0, G, "path d, cm, where the first model is not of type 98", 1e-4),
                                      Own(1, Wo, "factor: constant", 1),
                                      Own(1, Wp, "factor: coefficient of x", 1e-3),
                                      Own(1, G, "factor: coefficient of x^2", 1e-6),
                                      Own(2, Wo, "offset: constant", 0.1),
                                      Own(2, Wp, "offset: coefficient of x", 1e-4),
                                      Own(2, G, "offset: coefficient of x^2", 1e-7)};
  static constexpr std::uint64_t kOfRatio = InputBits({kA, kB, kPath, kFactor0, kFactor1, kFactor2}),
                                 kOfDifference = InputBits({kA, kB, kOffset0, kOffset1, kOffset2});
  static constexpr SlotUse kFills[] = {{kRefl, "ratio of this Quantity of both models", kOfRatio},
                                       {kTrans, "ratio of this Quantity of both models", kOfRatio},
                                       {kRp, "difference of this Quantity of both models", kOfDifference},
                                       {kRs, "difference of this Quantity of both models", kOfDifference},
                                       {kE1, "difference of this Quantity of both models", kOfDifference},
                                       {kE2, "ratio of this Quantity of both models", kOfRatio}};
  static constexpr RowRule kRows = AtLeast(3);
  static constexpr int kDevice = 98;
  static constexpr double kPerPath = -4 * std::numbers::pi;

  static bool HasPath(const Model& partner) { return NegatedCode(partner.epsInf) == kDevice && RowCount(partner) > 1; }
  static std::uint64_t Idle(const TypeInputs<double>& in) { return HasPath(in.partner(kA)) ? InputBits({kPath}) : 0; }
  static bool IsRatio(Quantity quantity) { return quantity == kRefl || quantity == kTrans || quantity == kE2; }

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const T x(in.x);
    const Model& first = in.partner(kA);
    const T path = HasPath(first) ? T(kalvex::Cell(first, 1, Wo).value) : in[kPath];
    const T factor = (in[kFactor0] + in[kFactor1] * x + in[kFactor2] * x * x) * Exp(T(kPerPath) * x * path);
    const T offset = in[kOffset0] + in[kOffset1] * x + in[kOffset2] * x * x;
    for (const SlotUse& slot : kFills) {
      const T a = in.quantity(kA, slot.quantity), b = in.quantity(kB, slot.quantity);
      T& result = q[slot.quantity];
      if (!IsRatio(slot.quantity)) {
        result = a - b + offset;
      } else if (std::fabs(ValueOf(b)) >= 1e-30) {
        result = factor * a / b;
      }
    }
  }
};

// The slopes by the path if it is the thickness in the rows of the first device and can be fitted, else null.
ParamSlopes* SlopesOfPath(EvalContext& ctx, const Model& model) {
  const Model* const partner = PartnerAt(ctx, model, 0, Wo);
  if (!RatioOfDevices::HasPath(*partner) || !Cell(*partner, 1, Wo).adjustable) return nullptr;
  return &Cell(SlopesOf(ctx, *partner), 1, Wo);
}

template <class Slope>
void AddPathSlopes(EvalContext& ctx, const Model& model, Slope slope) {
  ParamSlopes* const path = SlopesOfPath(ctx, model);
  if (!path) return;
  for (const Quantity q : kEveryQuantity) {
    const QuantityResult& quantity = ctx.quantities[q];
    if (quantity.wanted && RatioOfDevices::IsRatio(q)) path->Add(q, slope(quantity));
  }
}

int EvaluateRatioOfDevices(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  const int status = EvaluateType<RatioOfDevices, RatioOfDevices::kRows, true>(ctx, model, x, derivatives);
  if (status != 0 || !derivatives) return status;
  AddPathSlopes(ctx, model, [&](const QuantityResult& q) { return RatioOfDevices::kPerPath * x * q.value; });
  return 0;
}
int AfterRatioOfDevices(EvalContext& ctx, const Model& model) {
  const int status = AfterType<RatioOfDevices, RatioOfDevices::kRows>(ctx, model);
  if (status == 0) AddPathSlopes(ctx, model, [](const QuantityResult&) { return 1.0; });
  return status;
}
constexpr ModelType RatioOfDevicesType(const TypePage& page) {
  ModelType type = FittedType<RatioOfDevices, RatioOfDevices::kRows>(99, "Ratio for -98", page);
  type.evaluate = EvaluateRatioOfDevices;
  type.after = AfterRatioOfDevices;
  return type;
}

// ---- every Quantity of one model minus that of another

constexpr RowCell kDifferenceHead[] = {Setting(0, Wo, "mode: 1 for the difference, any other gives 0", 1),
                                       Evaluated(0, Wp, "first model"), Evaluated(0, G, "second model")};
constexpr auto kDifferenceFills = [] {
  PerQuantity<SlotUse> fills{};
  for (const Quantity q : kEveryQuantity) fills[q] = {q, "difference of this Quantity"};
  return fills;
}();
constexpr RowMap kDifferenceMap{
    .rows = Exactly(1), .head = kDifferenceHead, .group = {}, .groupStart = 0, .groupRows = 1};

// Adds factor times the wanted Quantities of a partner to sum. Returns false if the partner's evaluation fails.
bool AddQuantities(EvalContext& ctx, const Model& partner, double x, double factor, Slots<double>& sum) {
  const WantedForPartner wanted(ctx.quantities);
  if (EvalPartner(ctx, partner, x, false) != 0) return false;
  for (const Quantity q : kEveryQuantity) sum[q] += factor * ctx.quantities[q].value;
  return true;
}

int EvaluateDifference(EvalContext& ctx, const Model& model, double x, bool) {
  constexpr int kTakeDifference = 1;
  TypeRun run(ctx, model, kDifferenceMap, kDifferenceFills);
  if (const int status = run.ReadRows()) return status;
  const TypeInputs<double> in(run.scratch(), kDifferenceMap, x);
  Slots<double> difference{};
  if (in.setting(0) == kTakeDifference) {
    if (!AddQuantities(ctx, *run.scratch().partner[1], x, 1, difference)) return -1;
    if (!AddQuantities(ctx, *run.scratch().partner[2], x, -1, difference)) return -1;
  }
  run.Store(difference);
  return 0;
}

// ---- a response weighted with two measured spectra

struct WeightedResponse {
  enum Input { kModel, kRealWeight, kImaginaryWeight, kOffset, kFactor };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "model"), DatasetSlot(0, Wp, "weight of the real part"),
                                      DatasetSlot(0, G, "weight of the imaginary part"), Own(1, Wo, "offset", 0.1, 0),
                                      Own(1, G, "factor", 1, 1)};
  static constexpr SlotUse kFills[] = {{kRefl, "weighted response"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Complex<T>& eps = in.eps(kModel);
    q[kRefl] = (T(in.data(kRealWeight)) * eps.re + T(in.data(kImaginaryWeight)) * eps.im) * in[kFactor] + in[kOffset];
  }
};
constexpr RowRule kWeightedRows = Between(1, 2, 0);

// For a model without rows the status is 0 and the Quantities do not change.
int EvaluateWeighted(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  if (RowCount(model) == 0) return 0;
  return EvaluateType<WeightedResponse, kWeightedRows, true>(ctx, model, x, derivatives);
}
int AfterWeighted(EvalContext& ctx, const Model& model) {
  if (RowCount(model) == 0) return 0;
  return AfterType<WeightedResponse, kWeightedRows>(ctx, model);
}
constexpr ModelType WeightedType(const TypePage& page) {
  ModelType type = FittedType<WeightedResponse, kWeightedRows>(28, "Diff. model (general)", page);
  type.evaluate = EvaluateWeighted;
  type.after = AfterWeighted;
  return type;
}

// ---- a measured transmission corrected for gas lines

struct GasCorrection {
  enum Input { kMeasured, kFirstGas, kFirstAmount, kSecondGas, kSecondAmount };
  static constexpr RowCell kHead[] = {DatasetSlot(0, Wo, "measured spectrum"), DatasetSlot(1, Wo, "first gas"),
                                      Own(1, Wp, "amount of the first gas", 0.4), DatasetSlot(2, Wo, "second gas"),
                                      Own(2, Wp, "amount of the second gas", 0.3)};
  static constexpr SlotUse kFills[] = {{kRp, "corrected spectrum"}};

  // A gas with an empty dataset makes no correction. A measured value of 0 or less gives 0.
  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    const auto log = [&](std::size_t input) { return in.data(input) > 0 ? std::log(in.data(input)) : 0; };
    if (!(in.data(kMeasured) > 0)) return;
    q[kRp] = std::exp(log(kMeasured) - log(kFirstGas) * in[kFirstAmount] - log(kSecondGas) * in[kSecondAmount]);
  }
};

}  // namespace

constinit const ModelType kRatioOfFilmSubstrate = FittedType<RatioOfFour<33, kRefl, kTrans, 2>, Exactly(3)>(
    81, "Ratio for -33",
    {.sample = "reflectivity or transmission of a film on a substrate relative to another sample, and changes of it",
     .formula =
         "mode 1 A/B, mode 2 A/B - C/D, mode 3 A - B, mode 4 (A/B)/(C/D), of Quantities 0 and 1; any other gives 0",
     .source = "definition"});

constinit const ModelType kRatioOfMagnetooptics = FittedType<RatioOfFour<50, kRefl, kS1, 3>, Exactly(3)>(
    95, "Ratio for -50",
    {.sample = "reflectivity or Faraday rotation of magnetised layers relative to another sample, and changes of it",
     .formula =
         "mode 1 A/B, mode 2 A/B - C/D, mode 3 A - B, mode 4 (A/B)/(C/D), of Quantities 0 and 7; any other gives 0",
     .source = "definition"});

constinit const ModelType kRatioOfGrapheneDevice =
    RatioOfDevicesType({.sample = "a graphene device compared with another, with absorption and background of the path",
                        .formula = "Quantities 0, 1, 6: A/B (f0 + f1 x + f2 x^2) exp(-4 pi x d)\n"
                                   "Quantities 2, 3, 5: A - B + o0 + o1 x + o2 x^2\n"
                                   "d is the thickness in row 2 of the first model where that is of type 98",
                        .source = "definition; the path where the first model has none is a choice of this program"});

constinit const ModelType kModelMinusModel = {.code = 87,
                                              .name = "Model1 minus Model2",
                                              .evaluate = EvaluateDifference,
                                              .after = AfterNothing,
                                              .fitted = false,
                                              .material = false,
                                              .map = kDifferenceMap,
                                              .fills = kDifferenceFills,
                                              .page = {.sample = "the difference of two models in every Quantity",
                                                       .formula = "Q = Q(first model) - Q(second model)",
                                                       .source = "definition"}};

constinit const ModelType kDiffModelGeneral = WeightedType(
    {.sample = "a change of a dielectric function, weighted with measured spectra, as in modulation spectra",
     .formula = "Q0 = [w1(x) Re e + w2(x) Im e] factor + offset, w1 and w2 datasets\n"
                "With one row the factor is 1 and the offset 0.",
     .source = "first-order change of a measured signal, B. O. Seraphin, N. Bottka, Phys. Rev. 145, 628 (1966)"});

constinit const ModelType kGasCorrection = ShownType<GasCorrection, AtLeast(3)>(
    103, "Gas Corr.",
    {.sample = "a measured spectrum with lines of two gases in the path",
     .formula =
         "exp[ln D1 - a2 ln D2 - a3 ln D3], D1 measured, D2 and D3 spectra of the gases, a2 and a3 their amounts",
     .source = "law of Lambert and Beer"});

}  // namespace kalvex
