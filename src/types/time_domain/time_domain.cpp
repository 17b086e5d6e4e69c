// Pulses in the time domain: a measured reference trace, transmitted by a model.
#include <cmath>
#include <numbers>

#include "evaluation/chains.h"
#include "evaluation/eps_sum.h"
#include "evaluation/eval_model.h"
#include "types/frame.h"
#include "types/stacks/film_optics.h"
#include "types/time_domain/pulse.h"
#include "types/types.h"

namespace kalvex {
namespace {

enum class PulseKind { kPlain, kTwoModels, kDelayed, kSlab };
enum Mode { kRealConductivity = 0, kRootOfTransmission = 1, kUnchanged = 2, kComplex = 3 };

constexpr std::array<SlotUse, 6> kFills = {{{kRefl, "reference trace, at the time x"},
                                            {kTrans, "its power spectrum, at the frequency x"},
                                            {kRp, "transmitted trace, at the time x"},
                                            {kRs, "its power spectrum, at the frequency x"},
                                            {kE1, "Re of the transfer function, at the frequency x"},
                                            {kE2, "Im of the transfer function, at the frequency x"}}};

// The inputs before kOwn0 are common to all types.
enum Input { kModel, kReference, kFrom, kTo, kPoints, kMode, kLow, kHigh, kOwn0, kOwn1, kOwn2 };
constexpr RowCell kReferenceCell = DatasetSlot(0, Wp, "dataset with the reference trace");
constexpr RowCell kFromCell = Setting(1, Wo, "start of the time mesh", 0);
constexpr RowCell kToCell = Setting(1, Wp, "end of the time mesh", 10);
constexpr RowCell kPointsCell = Setting(1, G, "number of points, raised to a power of two", 64);
constexpr RowCell kModeCell =
    Setting(3, Wo, "transfer function: 0 S1, 1 root of T, 2 is 1, 3 E1 + i E2 of the model", kComplex);
constexpr RowCell kLowCell = Setting(3, Wp, "low end of the frequency window", 1);
constexpr RowCell kHighCell = Setting(3, G, "high end of the frequency window", 12);

constexpr RowCell kPlainHead[] = {
    Evaluated(0, Wo, "sample"), kReferenceCell, kFromCell, kToCell, kPointsCell, kModeCell, kLowCell, kHighCell};
constexpr RowCell kTwoModelsHead[] = {
    Evaluated(0, Wo, "sample"),
    kReferenceCell,
    kFromCell,
    kToCell,
    kPointsCell,
    kModeCell,
    kLowCell,
    kHighCell,
    EvaluatedIf(2, Wo, "second model, whose transfer function multiplies that of the first, 0 for none", 0),
    Setting(2, Wp, "other than 0: the times are half a step later", 0)};
constexpr RowCell kDelayedHead[] = {Evaluated(0, Wo, "sample"),
                                    kReferenceCell,
                                    kFromCell,
                                    kToCell,
                                    kPointsCell,
                                    kModeCell,
                                    kLowCell,
                                    kHighCell,
                                    Own(2, Wo, "delay of the transmitted trace, in the unit of the time", 0.3)};
constexpr RowCell kSlabHead[] = {Partner(0, Wo, "dielectric function"),
                                 kReferenceCell,
                                 kFromCell,
                                 kToCell,
                                 kPointsCell,
                                 Setting(3, Wo, "transfer function: 2 is 1, any other that of the slab", kComplex),
                                 kLowCell,
                                 kHighCell,
                                 OptionalPartner(2, Wo, "permeability, 0 for 1"),
                                 Own(2, Wp, "thickness, cm", 0.02),
                                 Setting(2, G, "number of passes that are summed, 0 for all", 0)};

constexpr RowMap MapOfHead(std::span<const RowCell> head) {
  return {.rows = Exactly(4), .head = head, .group = {}, .groupStart = 0, .groupRows = 1};
}
template <PulseKind kKind>
constexpr RowMap kMap = MapOfHead(kKind == PulseKind::kPlain       ? std::span<const RowCell>(kPlainHead)
                                  : kKind == PulseKind::kTwoModels ? std::span<const RowCell>(kTwoModelsHead)
                                  : kKind == PulseKind::kDelayed   ? std::span<const RowCell>(kDelayedHead)
                                                                   : std::span<const RowCell>(kSlabHead));

// ---- the transfer function

// The Quantities of a model that the mode needs.
QuantitySet AskedInMode(int mode) {
  switch (mode) {
    case kRealConductivity:
      return QuantitySet{kS1};
    case kRootOfTransmission:
      return QuantitySet{kTrans};
    case kComplex:
      return QuantitySet{kE1, kE2};
    default:
      return {};
  }
}

// The transfer function of a model at f, computed from its Quantities according to the mode, and its slopes by params.
void TransferByQuantities(EvalContext& ctx, const Model& model, double f, int mode, bool derivatives,
                          std::span<ParamSlopes* const> params, Transfer& transfer) {
  transfer = {mode == kUnchanged ? Cplx{1, 0} : Cplx{}, std::vector<Cplx>(derivatives ? params.size() : 0)};
  const QuantitySet asked = AskedInMode(mode);
  if (asked.IsEmpty()) return;
  const WantedForPartner wanted(ctx.quantities, asked);
  for (ParamSlopes* const slopes : params) slopes->PutZeros();  // the evaluation sets only some of them
  if (EvalPartner(ctx, model, f, derivatives) != 0) return;
  const auto value = [&](Quantity q) { return ctx.quantities[q].value; };
  const double root = std::sqrt(std::fmax(value(kTrans), 0));
  transfer.value = mode == kComplex            ? Cplx{value(kE1), value(kE2)}
                   : mode == kRealConductivity ? Cplx{value(kS1), 0}
                                               : Cplx{root, 0};
  for (std::size_t p = 0; p < transfer.slopes.size(); ++p) {
    const auto& slope = params[p]->dQuantity;
    transfer.slopes[p] = mode == kComplex            ? Cplx{slope[kE1], slope[kE2]}
                         : mode == kRealConductivity ? Cplx{slope[kS1], 0}
                         : root > 0                  ? Cplx{0.5 * slope[kTrans] / root, 0}
                                                     : Cplx{};
  }
}

void MultiplyBy(const Transfer& factor, Transfer& transfer) {
  for (std::size_t p = 0; p < transfer.slopes.size(); ++p) {
    transfer.slopes[p] = transfer.slopes[p] * factor.value + transfer.value * factor.slopes[p];
  }
  transfer.value *= factor.value;
}

// Transmitted amplitude of a slab relative to the empty path, with `passes` passes of the echo series, 0 for all.
template <class T>
Complex<T> SlabTransfer(const Complex<T>& eps, const Complex<T>& mu, const T& thickness, double f, int passes) {
  const Complex<T> N = Sqrt(eps) * Sqrt(mu), Z = Sqrt(Quotient(mu, eps)), once = PassageFactor(N, thickness, f);
  const T empty = thickness * T(2 * std::numbers::pi * f);
  const Complex<T> sum = T(1) + Z, rho = Quotient(T(1) - Z, sum), echo = rho * rho * once * once;
  const Complex<T> first = Quotient(T(4) * Z * once, sum * sum) * Complex<T>{Cos(empty), -Sin(empty)};
  if (passes <= 0) return Quotient(first, T(1) - echo);
  Complex<T> series{T(1), T(0)}, power{T(1), T(0)};
  for (int k = 1; k < passes; ++k) {
    power = power * echo;
    series += power;
  }
  return first * series;
}

void TransferBySlab(TypeRun& run, const TypeInputs<double>& in, double f, bool derivatives,
                    std::span<ParamSlopes* const> params, Transfer& transfer) {
  constexpr std::size_t kEps = kModel, kMu = kOwn0, kThickness = kOwn1, kPasses = kOwn2;
  transfer = {{}, std::vector<Cplx>(derivatives ? params.size() : 0)};
  if (in.setting(kMode) == kUnchanged) {
    transfer.value = {1, 0};
    return;
  }
  const int passes = std::min(in.setting(kPasses), 1000);
  const auto lane = [](double value, std::size_t direction) { return TypeDual(value, direction); };
  const ParamSlopes* const own = derivatives ? run.SlopesOfOwn(kThickness) : nullptr;
  // eps and mu are evaluated one after the other, since both can be the same model with one set of slopes.
  std::vector<Cplx> epsSlopes, muSlopes;
  const auto ask = [&](std::size_t input, std::vector<Cplx>& slopes) {
    for (ParamSlopes* const param : params) param->PutEps(0, 0);
    run.Ask(input, f, derivatives);
    for (std::size_t p = 0; p < transfer.slopes.size(); ++p) slopes.push_back({params[p]->dEpsRe, params[p]->dEpsIm});
    return in.eps(input);
  };
  const Cplx eps = ask(kEps, epsSlopes), mu = ask(kMu, muSlopes);
  const Complex<TypeDual> H =
      SlabTransfer(Complex<TypeDual>{lane(eps.re, 0), lane(eps.im, 1)},
                   Complex<TypeDual>{lane(mu.re, 2), lane(mu.im, 3)}, lane(in[kThickness], 4), f, passes);
  transfer.value = ValueOf(H);
  const auto slope = [&](std::size_t l) { return Cplx{H.re.v[l], H.im.v[l]}; };
  for (std::size_t p = 0; p < transfer.slopes.size(); ++p) {
    transfer.slopes[p] =
        slope(0) * epsSlopes[p].re + slope(1) * epsSlopes[p].im + slope(2) * muSlopes[p].re + slope(3) * muSlopes[p].im;
    if (params[p] == own) transfer.slopes[p] += slope(4);
  }
}

// A delay by a time t multiplies harmonic k by exp(-2 pi i k t/(N dt)).
void Delay(double delay, const PulseGrid& grid, std::size_t k, std::span<ParamSlopes* const> params,
           const ParamSlopes* own, Transfer& transfer) {
  const double perTime = -2 * std::numbers::pi * static_cast<double>(k) / (static_cast<double>(grid.size) * grid.step);
  const Cplx turn{std::cos(perTime * delay), std::sin(perTime * delay)};
  transfer.value *= turn;
  for (std::size_t p = 0; p < transfer.slopes.size(); ++p) {
    transfer.slopes[p] *= turn;
    if (params[p] == own) transfer.slopes[p] += transfer.value * Cplx{0, perTime};
  }
}

bool IsFinite(const Cplx& z) { return std::isfinite(z.re) && std::isfinite(z.im); }

template <PulseKind kKind>
void FillTransfer(TypeRun& run, const TypeInputs<double>& in, std::size_t k, bool derivatives, Pulse& pulse) {
  EvalContext& ctx = run.context();
  const double f = static_cast<double>(k) * pulse.grid.FrequencyStep();
  Transfer& transfer = pulse.transfer[k];
  if (!(f >= in.value(kLow) && f <= in.value(kHigh))) {
    transfer = {{}, std::vector<Cplx>(derivatives ? pulse.params.size() : 0)};
    return;
  }
  if constexpr (kKind == PulseKind::kSlab) {
    TransferBySlab(run, in, f, derivatives, pulse.params, transfer);
  } else {
    TransferByQuantities(ctx, *run.scratch().partner[kModel], f, in.setting(kMode), derivatives, pulse.params,
                         transfer);
  }
  if constexpr (kKind == PulseKind::kTwoModels) {
    if (const Model* const second = run.scratch().partner[kOwn0]) {
      Transfer factor;
      TransferByQuantities(ctx, *second, f, in.setting(kMode), derivatives, pulse.params, factor);
      MultiplyBy(factor, transfer);
    }
  }
  if constexpr (kKind == PulseKind::kDelayed) {
    const ParamSlopes* const own = derivatives ? run.SlopesOfOwn(kOwn0) : nullptr;
    Delay(in[kOwn0], pulse.grid, k, pulse.params, own, transfer);
  }
  // A transfer function that is not finite counts as 0.
  if (!IsFinite(transfer.value)) transfer = {{}, std::vector<Cplx>(transfer.slopes.size())};
}

// ---- what the transfer depends on

// The Quantities of the models on which a Quantity depends. Real and imaginary parts of the transfer function are
// independent unless a second model or a delay mixes them.
template <PulseKind kKind>
QuantitySet AskedFor(Quantity quantity, const TypeInputs<double>& in) {
  const int mode = in.setting(kMode);
  const QuantitySet asked = AskedInMode(mode);
  const bool mixed =
      kKind == PulseKind::kDelayed || (kKind == PulseKind::kTwoModels && mode == kComplex && in.has(kOwn0));
  if (mixed || quantity == kRp || quantity == kRs) return asked;
  constexpr QuantitySet kImaginary = {kE2};
  return quantity == kE1 ? asked - kImaginary : quantity == kE2 ? asked & kImaginary : QuantitySet();
}

// Sets params to the parameters on which the transfer function depends; of the models only through `asked`.
template <PulseKind kKind>
int AddDependencies(TypeRun& run, const TypeInputs<double>& in, QuantitySet asked, std::vector<ParamSlopes*>& params) {
  EvalContext& ctx = run.context();
  const auto add = [&](ParamSlopes& param) {
    if (std::find(params.begin(), params.end(), &param) == params.end()) params.push_back(&param);
  };
  params.clear();
  for (const std::size_t input : {kModel, kOwn0}) {
    if (input >= run.InputCount()) continue;
    const Model* const partner = run.scratch().partner[input];
    if (!partner) continue;
    if constexpr (kKind == PulseKind::kSlab) {
      if (in.setting(kMode) == kUnchanged) continue;
      SeedDependencies(ctx, *partner);
      ForEachParam(*partner, SlopesOf(ctx, *partner), [&](const ModelParam& param, ParamSlopes& slopes) {
        if (param.adjustable && (slopes.dEpsRe != 0 || slopes.dEpsIm != 0)) add(slopes);
      });
    } else {
      const WantedForPartner wanted(ctx.quantities, asked);
      ForEachFreeParam(*ctx.params, ctx.slopes, [](ParamSlopes& slopes) { slopes.PutZeros(); });
      if (EvalPartnerAfter(ctx, *partner) != 0) return -1;
      ForEachFreeParam(*ctx.params, ctx.slopes, [&](ParamSlopes& slopes) {
        for (const Quantity q : asked) {
          if (slopes.dQuantity[q] != 0) add(slopes);
        }
      });
    }
  }
  const bool ownCount = kKind != PulseKind::kSlab || in.setting(kMode) != kUnchanged;
  for (std::size_t i = 0; ownCount && i < run.InputCount(); ++i) {
    const ModelParam* const own = run.scratch().param[i];
    if (own && own->adjustable) add(*run.SlopesOfOwn(i));
  }
  return 0;
}

// ---- evaluation

template <PulseKind kKind>
int MakePulse(TypeRun& run, const TypeInputs<double>& in, bool derivatives, Pulse& pulse) {
  const Dataset* const reference = DatasetInSlot(*run.context().datasets, in.setting(kReference));
  if (!reference || reference->id == 0) return -1;
  const std::uint64_t number = run.context().spectrum;
  if (number != 0 && pulse.spectrumNumber == number && (pulse.derivatives || !derivatives)) return 0;
  pulse.spectrumNumber = 0;
  pulse.grid = MakePulseGrid(in.value(kFrom), in.value(kTo), in.value(kPoints));
  if (pulse.grid.size == 0) return -1;
  if (kKind == PulseKind::kTwoModels && in.setting(kOwn1) != 0) pulse.grid.from += 0.5 * pulse.grid.step;
  ReadReference(*reference, pulse);
  pulse.params.clear();
  if (derivatives && AddDependencies<kKind>(run, in, AskedInMode(in.setting(kMode)), pulse.params) != 0) return -1;
  pulse.transfer.resize(pulse.spectrum.size());
  for (std::size_t k = 0; k < pulse.transfer.size(); ++k) FillTransfer<kKind>(run, in, k, derivatives, pulse);
  // The harmonics of the trace are exp(+i w t), the dielectric function is that for exp(-i w t).
  if (kKind == PulseKind::kSlab) {
    for (Transfer& transfer : pulse.transfer) {
      transfer.value = Conj(transfer.value);
      for (Cplx& slope : transfer.slopes) slope = Conj(slope);
    }
  }
  SendThrough(pulse, derivatives);
  pulse.derivatives = derivatives;
  pulse.spectrumNumber = number;
  return 0;
}

// Value of a Quantity at x, and its slope by parameter p. imaginarySign: sign of the displayed imaginary part of the
// transfer function.
struct Reading {
  const Pulse& pulse;
  bool inTime, inFrequency;
  GridPlace time, frequency;
  double imaginarySign;

  template <class At>
  static double Between(const GridPlace& place, At at) {
    return (1 - place.fraction) * at(place.index) + place.fraction * at(place.index + 1);
  }
  double Value(Quantity q) const {
    const bool ofTime = q == kRefl || q == kRp;
    if (ofTime ? !inTime : !inFrequency) return 0;
    switch (q) {
      case kRefl:
        return Between(time, [&](std::size_t i) { return pulse.input[i]; });
      case kTrans:
        return Between(frequency, [&](std::size_t k) { return Norm(pulse.spectrum[k]); });
      case kRp:
        return Between(time, [&](std::size_t i) { return pulse.output[i]; });
      case kRs:
        return Between(frequency, [&](std::size_t k) { return Norm(pulse.spectrum[k] * pulse.transfer[k].value); });
      case kE1:
        return Between(frequency, [&](std::size_t k) { return pulse.transfer[k].value.re; });
      case kE2:
        return imaginarySign * Between(frequency, [&](std::size_t k) { return pulse.transfer[k].value.im; });
      default:
        return 0;
    }
  }
  double Slope(Quantity q, std::size_t p) const {
    if (q == kRp ? !inTime : !inFrequency) return 0;
    switch (q) {
      case kRp:
        return Between(time, [&](std::size_t i) { return pulse.outputSlopes[p][i]; });
      case kRs:
        return Between(frequency, [&](std::size_t k) {
          const Transfer& transfer = pulse.transfer[k];
          const Cplx change = Conj(transfer.value) * transfer.slopes[p];
          return 2 * Norm(pulse.spectrum[k]) * change.re;
        });
      case kE1:
        return Between(frequency, [&](std::size_t k) { return pulse.transfer[k].slopes[p].re; });
      case kE2:
        return imaginarySign * Between(frequency, [&](std::size_t k) { return pulse.transfer[k].slopes[p].im; });
      default:
        return 0;
    }
  }
};

template <PulseKind kKind>
int Evaluate(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  TypeRun run(ctx, model, kMap<kKind>, kFills);
  if (const int status = run.ReadRows()) return status;
  const TypeInputs<double> in(run.scratch(), kMap<kKind>, x);
  for (std::size_t i = 0; i < run.InputCount(); ++i) run.scratch().at[i] = {run.scratch().raw[i], 0};
  auto& pulse = CacheOf<Pulse>(ctx, model);
  if (MakePulse<kKind>(run, in, derivatives, pulse) != 0) return -1;
  Reading reading{pulse, false, false, {}, {}, kKind == PulseKind::kSlab ? -1.0 : 1.0};
  const PulseGrid& grid = pulse.grid;
  reading.inTime = FindPlace(x, grid.from, grid.step, grid.size, reading.time);
  reading.inFrequency = FindPlace(x, 0, grid.FrequencyStep(), grid.size / 2 + 1, reading.frequency);
  for (const Quantity q : kEveryQuantity) {
    QuantityResult& quantity = ctx.quantities[q];
    if (!quantity.wanted) continue;
    quantity.Put(reading.Value(q));
    for (std::size_t p = 0; derivatives && p < pulse.params.size(); ++p) {
      pulse.params[p]->Put(q, reading.Slope(q, p));
    }
  }
  return 0;
}

template <PulseKind kKind>
int After(EvalContext& ctx, const Model& model) {
  TypeRun run(ctx, model, kMap<kKind>, kFills);
  if (const int status = run.ReadRows()) return status;
  const TypeInputs<double> in(run.scratch(), kMap<kKind>, 0);
  std::vector<ParamSlopes*> params;
  for (const Quantity q : kEveryQuantity) {
    if (!ctx.quantities[q].wanted) continue;
    const bool depends = q == kRp || q == kRs || q == kE1 || q == kE2;
    if (AddDependencies<kKind>(run, in, AskedFor<kKind>(q, in), params) != 0) return -1;
    ForEachFreeParam(*ctx.params, ctx.slopes, [&](ParamSlopes& slopes) { slopes.Put(q, 0); });
    const ParamSlopes* const delay = kKind == PulseKind::kDelayed ? run.SlopesOfOwn(kOwn0) : nullptr;
    for (ParamSlopes* const param : params) {
      // A delay changes the phase of the harmonics, not their power.
      const bool turned = q == kRs && param == delay;
      param->Put(q, depends && !turned ? 1 : 0);
    }
  }
  return 0;
}

template <PulseKind kKind>
constexpr ModelType Make(int code, const char* name, const TypePage& page) {
  return {code, name, Evaluate<kKind>, After<kKind>, true, false, kMap<kKind>, kFills, page, true};
}

}  // namespace

constinit const ModelType kTimeDomain = Make<PulseKind::kPlain>(
    20, "Time-domain",
    {.sample = "a measured pulse transmitted by a model, to compare with the measured transmitted trace",
     .formula =
         "N times from the start on, dt = (end - start)/(N - 1); S_k = transform of the reference over N,\n"
         "f_k = 5k/(dt N): cm-1 if the axis is the position in mm of a delay stage that is passed twice\n"
         "S'_k = S_k H_k within the window, else 0; the trace is the sum of S'_k exp(2 pi i k j/N), its real part\n"
         "H by mode: 0 S1, 1 sqrt(T), 2 1, 3 E1 + i E2 of the model; between the mesh points the results are\n"
         "interpolated linearly, of a power spectrum the power itself; 0 outside",
     .source = "discrete Fourier transform; mode 1 is a choice of this program. A model of E1, E2 is a transfer to the "
               "harmonics exp(+2 pi i f t)",
     .from = 0,
     .to = 10,
     .axis = "time in the unit of the mesh (Quantities 0, 2), or frequency (1, 3, 5, 6)"});

constinit const ModelType kTimeDomain2 = Make<PulseKind::kTwoModels>(
    22, "Time-domain - 2",
    {.sample = "a measured pulse transmitted by two models, one after the other",
     .formula = "as type 20; the transfer of the second model multiplies that of the first; with the switch in row 3,\n"
                "column Wp, times are start + (j + 1/2) dt",
     .source = "discrete Fourier transform; the roles of row 3 are a choice of this program",
     .from = 0,
     .to = 10,
     .axis = "time in the unit of the mesh (Quantities 0, 2), or frequency (1, 3, 5, 6)"});

constinit const ModelType kTimeDomain3 =
    Make<PulseKind::kDelayed>(91, "Time-domain - 3",
                              {.sample = "a measured pulse transmitted by a model, with an additional delay",
                               .formula = "as type 20; H_k times exp(-2 pi i k t/(N dt)), t the delay",
                               .source = "discrete Fourier transform; the delay is a choice of this program",
                               .from = 0,
                               .to = 10,
                               .axis = "time in the unit of the mesh (Quantities 0, 2), or frequency (1, 3, 5, 6)"});

constinit const ModelType kTimeDomainEpsMu = Make<PulseKind::kSlab>(
    51, "Time-domain - eps/mu",
    {.sample = "a measured pulse transmitted by a slab with a dielectric function and a permeability",
     .formula =
         "as type 20, with N = sqrt(e) sqrt(m), Z = sqrt(m/e),\n"
         "H = 4 Z exp(2 pi i f (N - 1) d)/[(1 + Z)^2 - (1 - Z)^2 exp(4 pi i f N d)], relative to the empty path,\n"
         "or the given number of passes of its series; the spectrum is multiplied by the conjugate: the slab delays\n"
         "the pulse",
     .source = "L. Duvillaret, F. Garet, J.-L. Coutaz, IEEE J. Sel. Top. Quantum Electron. 2, 739 (1996)",
     .from = 0,
     .to = 10,
     .axis = "time in the unit of the mesh (Quantities 0, 2), or frequency (1, 3, 5, 6)"});

}  // namespace kalvex
