// The signal of a scattering near-field microscope: light scattered by an oscillating tip above a sample, demodulated
// at a harmonic of the oscillation and divided by that of a reference.
//
// The tip is a point dipole: a sphere of radius a whose centre oscillates between z0 a and (1 + 2A) z0 a above the
// surface. At height h its scattered field is proportional to 1/(1 - a^3 b). b is the field of the image dipole:
// beta/(4 h^3) for a surface without dispersion, else the sum over momenta of q^2 exp(-2qh) r_p(q). The result is the
// Fourier component of order n, as measured by a lock-in amplifier.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "evaluation/eps_sum.h"
#include "evaluation/eval_model.h"
#include "records/row_code.h"
#include "types/near_field/sheet_on_surface.h"
#include "types/near_field/tip_kernels.h"
#include "types/types.h"

namespace kalvex {
namespace {

struct Tip {
  int harmonic = 2;
  double radius = 0;     // a, cm
  double height = 0;     // z0, in units of a
  double amplitude = 0;  // A, in units of z0
  int cycle = 0;         // number of points in a cycle
};

// A point of the tip's cycle: its height divided by the lowest height, and the factor of the harmonic.
struct CyclePoint {
  double height;
  double factor;
};

// The half cycle from the lowest to the highest point. The way back has the same heights; both together have the factor
// 2 cos(n phi).
std::vector<CyclePoint> CycleOf(const Tip& tip, int count, int harmonic) {
  std::vector<CyclePoint> cycle;
  for (int i = 0; 2 * i <= count; ++i) {
    const double phi = 2 * std::numbers::pi * i / count;
    const bool alone = i == 0 || 2 * i == count;
    cycle.push_back({1 + tip.amplitude * (1 - std::cos(phi)), (alone ? 1 : 2) * std::cos(harmonic * phi)});
  }
  return cycle;
}

// Far-field factor (1 - r_p)^2 of the surface at an angle of incidence in degrees.
Cplx FarFieldFactor(const Cplx& eps, double degrees) {
  const double c = std::cos(degrees * kRadiansPerDegree), s2 = 1 - c * c;
  const Cplx root = Sqrt(eps - s2), r = Quotient(root - eps * c, root + eps * c);
  return (1.0 - r) * (1.0 - r);
}

Cplx ImageOf(const Cplx& eps) { return Quotient(eps - 1.0, eps + 1.0); }

// The harmonic of the signal of a dipole over a surface without dispersion.
Cplx DipoleSignal(const Tip& tip, const Cplx& beta, const std::vector<CyclePoint>& cycle) {
  const Cplx f0 = beta * (0.25 / (tip.height * tip.height * tip.height));
  Cplx sum;
  for (const CyclePoint& point : cycle) {
    sum += Quotient({point.factor, 0}, 1.0 - f0 / (point.height * point.height * point.height));
  }
  return sum;
}

// The contrast, a ratio of two signals: modulus, logarithm of the modulus, argument.
struct Contrast {
  double modulus = 0;
  double logarithm = 0;
  double phase = 0;
};
Contrast ContrastOf(const Cplx& s) {
  const double modulus = Abs(s);
  return {modulus, modulus > 0 ? std::log(modulus) : 0, modulus > 0 ? Arg(s) : 0};
}

// ---- the sum over momenta

// The mesh of qh, which is the same at all heights, with weights (qh)^2 exp(-2qh) d(qh). Points of weight 0 pad it to
// whole packs.
struct MomentumMesh {
  std::vector<double> places, weights;
  std::size_t count = 0;
  double sum = 0;  // of all weights

  MomentumMesh() = default;
  MomentumMesh(double from, double to, int momenta) : count(static_cast<std::size_t>(momenta)) {
    places.resize((count + kPack - 1) / kPack * kPack);
    weights.resize(places.size());
    const double width = (to - from) / momenta;
    for (std::size_t j = 0; j < count; ++j) {
      const double u = places[j] = from + (static_cast<double>(j) + 0.5) * width;
      sum += weights[j] = u * u * std::exp(-2 * u) * width;
    }
  }
};

// r_p of a surface at one frequency for any momentum. The surface is a plain model in the limit of large momenta, with
// or without a sheet, or a model of type 73 or 77. Such a model is copied, and the momentum is set in the copy's row.
class Surface {
 public:
  Surface(EvalContext& ctx, const Model& model, double x, const Cplx& eps, const Cplx& sheet)
      : ctx_(ctx), x_(x), eps_(eps), sheet_(sheet), row_(MomentumRow(model)) {
    if (row_ >= 0) asked_ = model;
  }

  bool HasDispersion() const { return row_ >= 0 || Norm(sheet_) > 0; }
  Cplx Reflection(double q) {
    if (row_ >= 0) return ReflectionOfModel(q);
    const Cplx S = SheetPerMomentum() * q;
    return Quotient(eps_ - 1.0 + S, eps_ + 1.0 + S);
  }
  // The sum of weight*r_p(place/h) over a mesh.
  Cplx Sum(const MomentumMesh& mesh, double h) {
    if (!HasDispersion()) return Reflection(0) * mesh.sum;
    if (row_ < 0) {
      return WidestKernels<TipKernels>().sumOverMesh(mesh.places, mesh.weights.data(), eps_ - 1.0, eps_ + 1.0,
                                                     SheetPerMomentum() / h);
    }
    Cplx sum;
    for (std::size_t j = 0; j < mesh.count; ++j) sum += Reflection(mesh.places[j] / h) * mesh.weights[j];
    return sum;
  }

 private:
  static int MomentumRow(const Model& model) {
    const int code = NegatedCode(model.epsInf), row = code == 73 ? 1 : code == 77 ? 2 : -1;
    return row >= 0 && RowCount(model) > row ? row : -1;
  }
  Cplx SheetPerMomentum() const {
    const double k = 2 * std::numbers::pi * x_;
    return k == 0 ? Cplx{} : TimesI(sheet_) * (kUniversalSheet / k);
  }
  Cplx ReflectionOfModel(double q) {
    Cell(asked_, row_, Wo).value = q / (2 * std::numbers::pi);
    Cell(asked_, row_, Wp).value = 0;
    const WantedForPartner wanted(ctx_.quantities, QuantitySet{kE1, kE2});
    const int status = EvalPartner(ctx_, asked_, x_, false);
    return status == 0 ? Cplx{ctx_.quantities[kE1].value, ctx_.quantities[kE2].value} : Cplx{};
  }

  EvalContext& ctx_;
  Model asked_;  // the copy
  double x_;
  Cplx eps_, sheet_;
  int row_;
};

// The field of the image of the tip's unit dipole, at the dipole: the sum of q^2 exp(-2qh) r_p(q) dq, in 1/cm^3.
Cplx ImageField(Surface& surface, const MomentumMesh& mesh, double h) { return surface.Sum(mesh, h) / (h * h * h); }

Cplx MomentumSignal(const Tip& tip, Surface& surface, const MomentumMesh& mesh, const std::vector<CyclePoint>& cycle) {
  const double a3 = tip.radius * tip.radius * tip.radius, lowest = tip.height * tip.radius;
  Cplx sum;
  for (const CyclePoint& point : cycle) {
    sum += Quotient({point.factor, 0}, 1.0 - ImageField(surface, mesh, lowest * point.height) * a3);
  }
  return sum;
}

// ---- types with both sums

enum Input {
  kSample,
  kReference,
  kHarmonic,
  kSheetRe,
  kSheetIm,
  kCount,
  kRadius,
  kHeight,
  kAmplitude,
  kFrom,
  kTo,
  kMomenta,
  kAngle,
  kCycle,
  kNodeFrom,
  kNodeTo,
  kNodes
};
constexpr RowCell kTipCells[] = {
    Partner(0, Wo, "sample: a plain model, or a surface of type 73 or 77"),
    Partner(0, Wp, "reference, likewise"),
    Setting(0, G, "harmonic n", 2),
    DatasetSlot(1, Wo, "real part of a sheet's conductivity on a plain sample, 0 for none"),
    DatasetSlot(1, Wp, "imaginary part of it"),
    Setting(1, G, "points of the cycle in the sum over momenta, 0 for those of row 5", 0),
    Own(2, Wo, "radius a of the tip, cm", 3e-6),
    Own(2, Wp, "lowest height z0 of the dipole, of a", 1.2),
    Own(2, G, "amplitude A of the motion, of z0: up to (1 + 2A) z0", 1),
    Setting(3, Wo, "lower end of the momenta, times the height", 0),
    Setting(3, Wp, "upper end of the momenta, times the height", 12),
    Setting(3, G, "number of momenta", 60),
    Own(4, Wp, "angle of incidence, degrees", 60),
    Setting(4, G, "points of the cycle", 24)};

constexpr auto WithNodes(int row) {
  std::array<RowCell, std::size(kTipCells) + 3> cells{};
  std::copy(std::begin(kTipCells), std::end(kTipCells), cells.begin());
  cells[kNodeFrom] = Setting(row, Wo, "lowest frequency at which the models are evaluated, cm-1", 400);
  cells[kNodeTo] = Setting(row, Wp, "highest of these frequencies, cm-1", 2100);
  cells[kNodes] = Setting(row, G, "number of these frequencies", 200);
  return cells;
}
constexpr auto kCells105 = WithNodes(5);
constexpr auto kCells83 = WithNodes(6);

constexpr std::array<SlotUse, 10> kTipFills = {{{kRefl, "contrast |s| of the point dipole"},
                                                {kRp, "its phase, radians"},
                                                {kE1, "contrast |s| of the sum over momenta"},
                                                {kE2, "its phase, radians"},
                                                {kS1, "the same without the far-field factors"},
                                                {kS2, "its phase, radians"},
                                                {kTrans, "logarithm of the contrast of the next harmonic"},
                                                {kRs, "phase of the next harmonic, radians"},
                                                {kN1, "Re of the sample's image field at the lowest height, times a^3"},
                                                {kN2, "Im of it"}}};

// The row map of a type, and the number of the leading entries of kTipFills that it fills.
struct TipKind {
  RowMap map;
  std::size_t fills;
};
constexpr RowMap MapOfCells(RowRule rows, std::span<const RowCell> cells) {
  return {.rows = rows, .head = cells, .group = {}, .groupStart = 0, .groupRows = 1};
}
constexpr TipKind kTip80 = {MapOfCells(AtLeast(5), kTipCells), 6};
constexpr TipKind kTip83 = {MapOfCells(Exactly(7), kCells83), 10};
constexpr TipKind kTip105 = {MapOfCells(AtLeast(6), kCells105), 8};

// The dielectric function of a partner at x; for types with frequency nodes, interpolated between the two nodes.
Cplx ResponseAt(TypeRun& run, const TypeInputs<double>& in, std::size_t input) {
  constexpr double kMostNodes = 1e6;
  const Model& model = *run.scratch().partner[input];
  const auto at = [&](double x) { return EpsSum(run.context(), model, x, false); };
  if (run.InputCount() <= kNodes) return at(in.x);
  const double count = std::min(std::trunc(in.value(kNodes)), kMostNodes), from = in.value(kNodeFrom),
               to = in.value(kNodeTo);
  if (!(count >= 2) || !(to > from)) return at(in.x);
  const double step = (to - from) / (count - 1), place = std::clamp((in.x - from) / step, 0.0, count - 1);
  const double node = std::min(std::floor(place), count - 2), t = place - node;
  return at(from + node * step) * (1 - t) + at(from + (node + 1) * step) * t;
}

Tip TipOf(const TypeInputs<double>& in) {
  constexpr int kMostPoints = 10000;
  return {in.setting(kHarmonic), HeldFromZero(in[kRadius]), in[kHeight], in[kAmplitude],
          std::clamp(in.setting(kCycle), 1, kMostPoints)};
}

// Cache of what depends on the tip's numbers and not on the frequency.
struct KeptTip {
  std::vector<double> numbers;
  std::vector<CyclePoint> dipole, nextHarmonic, momenta;  // cycles
  MomentumMesh mesh;
};
void MakeTip(const Tip& tip, const TypeInputs<double>& in, KeptTip& kept) {
  constexpr int kMostMomenta = 100000;
  const int count = in.setting(kCount) > 0 ? std::min(in.setting(kCount), 10000) : tip.cycle;
  kept.dipole = CycleOf(tip, tip.cycle, tip.harmonic);
  kept.nextHarmonic = CycleOf(tip, tip.cycle, tip.harmonic + 1);
  kept.momenta = CycleOf(tip, count, tip.harmonic);
  kept.mesh = MomentumMesh(in.value(kFrom), in.value(kTo), std::clamp(in.setting(kMomenta), 1, kMostMomenta));
}

void FillContrast(const Cplx& signal, const Cplx& reference, Quantity modulus, Quantity phase, Slots<double>& q) {
  const Contrast contrast = ContrastOf(Quotient(signal, reference));
  q[modulus] = contrast.modulus;
  q[phase] = contrast.phase;
}

int EvaluateTip(EvalContext& ctx, const Model& model, double x, const TipKind& kind) {
  const std::span<const SlotUse> fills(kTipFills.data(), kind.fills);
  TypeRun run(ctx, model, kind.map, fills);
  if (const int status = run.ReadRows()) return status;
  const TypeInputs<double> in(run.scratch(), kind.map, x);
  for (std::size_t i = 0; i < run.InputCount(); ++i) run.Ask(i, x, false);
  const Tip tip = TipOf(in);
  auto& kept = CacheOf<KeptTip>(ctx, model);
  if (kept.numbers != run.scratch().raw) {
    MakeTip(tip, in, kept);
    kept.numbers = run.scratch().raw;
  }
  const Cplx eps[] = {ResponseAt(run, in, kSample), ResponseAt(run, in, kReference)};
  const Cplx far[] = {FarFieldFactor(eps[0], in[kAngle]), FarFieldFactor(eps[1], in[kAngle])};
  const auto dipole = [&](int which, const std::vector<CyclePoint>& cycle) {
    return far[which] * DipoleSignal(tip, ImageOf(eps[which]), cycle);
  };
  Slots<double> q{};
  FillContrast(dipole(0, kept.dipole), dipole(1, kept.dipole), kRefl, kRp, q);
  if (kind.fills > 6) {
    const Contrast next = ContrastOf(Quotient(dipole(0, kept.nextHarmonic), dipole(1, kept.nextHarmonic)));
    q[kTrans] = next.logarithm;
    q[kRs] = next.phase;
  }
  const Cplx sheet = SheetOfData(in.data(kSheetRe), in.data(kSheetIm));
  Surface sample(ctx, *run.scratch().partner[kSample], x, eps[0], sheet);
  Surface reference(ctx, *run.scratch().partner[kReference], x, eps[1], {});
  const Cplx sums[] = {MomentumSignal(tip, sample, kept.mesh, kept.momenta),
                       MomentumSignal(tip, reference, kept.mesh, kept.momenta)};
  FillContrast(far[0] * sums[0], far[1] * sums[1], kE1, kE2, q);
  FillContrast(sums[0], sums[1], kS1, kS2, q);
  if (kind.fills > 8) {
    const double a3 = tip.radius * tip.radius * tip.radius;
    const Cplx field = ImageField(sample, kept.mesh, tip.height * tip.radius) * a3;
    q[kN1] = field.re;
    q[kN2] = field.im;
  }
  run.Store(q);
  return 0;
}

template <const TipKind& kKind>
int Evaluate(EvalContext& ctx, const Model& model, double x, bool) {
  return EvaluateTip(ctx, model, x, kKind);
}
template <const TipKind& kKind>
constexpr ModelType TipType(int code, const char* name, const TypePage& page) {
  return {code, name, Evaluate<kKind>, AfterNothing, false, false, kKind.map, {kTipFills.data(), kKind.fills}, page};
}

// ---- types with r_p at one momentum

struct DipoleOnReflection {
  enum Cells { kSurface, kReferenceModel, kOrder, kTipRadius, kTipHeight, kTipAmplitude, kIncidence, kPoints };
  static constexpr RowCell kHead[] = {EvaluatedLike(0, Wo, "surface, whose Quantities 5 and 6 are its r_p", 73),
                                      OptionalPartner(0, Wp, "reference, 0 for none"),
                                      Setting(0, G, "harmonic n", 2),
                                      Own(2, Wo, "radius a of the tip, cm", 3e-6),
                                      Own(2, Wp, "lowest height z0 of the dipole, of a", 1.2),
                                      Own(2, G, "amplitude A of the motion, of z0: up to (1 + 2A) z0", 1),
                                      Own(4, Wp, "angle of incidence, degrees", 60),
                                      Setting(4, G, "points of the cycle", 24)};
  static constexpr RowMap kMap = {.rows = AtLeast(5), .head = kHead, .group = {}, .groupStart = 0, .groupRows = 1};

  struct Signals {
    Cplx rp, sample, reference{1, 0}, ratio;
  };

  struct KeptCycle {
    std::vector<double> numbers;
    std::vector<CyclePoint> cycle;
  };

  // Signals of the sample, with the given r_p, and of the reference. Without a reference the ratio is the sample's.
  static Signals SignalsOf(TypeRun& run, const TypeInputs<double>& in, const Cplx& rp) {
    const Tip tip{in.setting(kOrder), HeldFromZero(in[kTipRadius]), in[kTipHeight], in[kTipAmplitude],
                  std::clamp(in.setting(kPoints), 1, 10000)};
    auto& [numbers, cycle] = CacheOf<KeptCycle>(run.context(), run.model());
    if (numbers != run.scratch().raw) {
      cycle = CycleOf(tip, tip.cycle, tip.harmonic);
      numbers = run.scratch().raw;
    }
    Signals signals{.rp = rp, .sample = DipoleSignal(tip, rp, cycle), .ratio = {}};
    signals.ratio = signals.sample;
    if (!in.has(kReferenceModel)) return signals;
    const Cplx eps = in.eps(kReferenceModel);
    signals.reference = DipoleSignal(tip, ImageOf(eps), cycle);
    signals.ratio = Quotient(signals.sample, signals.reference);
    return signals;
  }
};

constexpr std::array<SlotUse, 6> kFills107 = {{{kRefl, "contrast |s|"},
                                               {kTrans, "its logarithm"},
                                               {kRp, "its phase, radians"},
                                               Angle(360, {kRs, "its phase, degrees"}),
                                               {kE1, "Re s"},
                                               {kE2, "Im s"}}};
constexpr std::array<SlotUse, 15> kFills110 = {{{kRefl, "contrast |s|"},
                                                {kTrans, "its logarithm"},
                                                {kRp, "its phase, radians"},
                                                Angle(360, {kRs, "its phase, degrees"}),
                                                {kRps, "|signal of the sample|"},
                                                {kE1, "Re s"},
                                                {kE2, "Im s"},
                                                {kS1, "Re r_p of the surface"},
                                                {kS2, "Im r_p of the surface"},
                                                {kN1, "Re of the sample's signal"},
                                                {kN2, "Im of the sample's signal"},
                                                {kDepth, "Re of the reference's signal"},
                                                {kLoss, "Im of the reference's signal"},
                                                {kDefringed, "|r_p|^2"},
                                                {kAlpha, "|signal of the reference|"}}};

// r_p of the surface at the momentum of its own row, or with atRadius at the momentum 0.1/a.
int EvaluateOnReflection(EvalContext& ctx, const Model& model, double x, bool atRadius,
                         std::span<const SlotUse> fills) {
  using D = DipoleOnReflection;
  TypeRun run(ctx, model, D::kMap, fills);
  if (const int status = run.ReadRows()) return status;
  const TypeInputs<double> in(run.scratch(), D::kMap, x);
  for (std::size_t i = 0; i < run.InputCount(); ++i) run.Ask(i, x, false);
  const Model& partner = *run.scratch().partner[D::kSurface];
  Surface surface(ctx, partner, x, {}, {});
  Cplx rp;
  if (atRadius && surface.HasDispersion()) {
    rp = surface.Reflection(0.1 / HeldFromZero(in[D::kTipRadius]));
  } else {
    const WantedForPartner wanted(ctx.quantities, QuantitySet{kE1, kE2});
    if (EvalPartner(ctx, partner, x, false) != 0) return -1;
    rp = {ctx.quantities[kE1].value, ctx.quantities[kE2].value};
  }
  const D::Signals s = D::SignalsOf(run, in, rp);
  const Contrast contrast = ContrastOf(s.ratio);
  Slots<double> q{};
  q[kRefl] = contrast.modulus;
  q[kTrans] = contrast.logarithm;
  q[kRp] = contrast.phase;
  q[kRs] = contrast.phase * kDegreesPerRadian;
  q[kE1] = s.ratio.re;
  q[kE2] = s.ratio.im;
  if (atRadius) {
    q[kRps] = Abs(s.sample);
    q[kS1] = rp.re;
    q[kS2] = rp.im;
    q[kN1] = s.sample.re;
    q[kN2] = s.sample.im;
    q[kDepth] = s.reference.re;
    q[kLoss] = s.reference.im;
    q[kDefringed] = Norm(rp);
    q[kAlpha] = Abs(s.reference);
  }
  run.Store(q);
  return 0;
}
int Evaluate107(EvalContext& ctx, const Model& model, double x, bool) {
  return EvaluateOnReflection(ctx, model, x, false, kFills107);
}
int Evaluate110(EvalContext& ctx, const Model& model, double x, bool) {
  return EvaluateOnReflection(ctx, model, x, true, kFills110);
}

constexpr const char* kTipFormula =
    "F = (1 - r_p)^2 of the surface at the angle; beta = (e - 1)/(e + 1), phi = 2 pi i/N\n"
    "point dipole: sum of exp(i n phi)/(1 - beta/(4 z0^3 h^3)), h = 1 + A (1 - cos phi)\n"
    "momenta: sum of exp(i n phi)/(1 - a^3 b), b = sum q^2 exp(-2 q h') r_p(q) dq, h' = z0 a h, q the middles of\n"
    "equal parts of from/h' to to/h'; r_p of a surface of type 73 or 77 at q/(2 pi); of a plain model in the limit\n"
    "of large momenta, with S = 0.0229242 i (q/k) sigma of a sheet\n"
    "s = F sum of the sample over F sum of the reference";
constexpr const char* kTipSource =
    "B. Knoll, F. Keilmann, Opt. Commun. 182, 321 (2000), point dipole; J. Aizpurua et al., Opt. Express 16, 1529 "
    "(2008), "
    "sum over momenta; the weight of the sum is the field of a dipole's image";

}  // namespace

constinit const ModelType kNearFieldTip =
    TipType<kTip80>(80, "sSNOM",
                    {.sample = "scattering near-field microscopy: the contrast of a sample against a reference",
                     .formula = kTipFormula,
                     .source = kTipSource,
                     .from = 500,
                     .to = 2000});

constinit const ModelType kNearFieldTip2 =
    TipType<kTip83>(83, "sSNOM-2",
                    {.sample = "as type 80, with the models evaluated at given frequencies, and with the next harmonic",
                     .formula = kTipFormula,
                     .source = kTipSource,
                     .from = 500,
                     .to = 2000});

constinit const ModelType kNearFieldTip3 = TipType<kTip105>(
    105, "sSNOM-3",
    {.sample = "as type 80, with the models evaluated at given frequencies, and with the next harmonic",
     .formula = kTipFormula,
     .source = kTipSource,
     .from = 500,
     .to = 2000});

constinit const ModelType kNearFieldTip4 = {
    .code = 107,
    .name = "sSNOM-4",
    .evaluate = Evaluate107,
    .after = AfterNothing,
    .fitted = false,
    .material = false,
    .map = DipoleOnReflection::kMap,
    .fills = kFills107,
    .page = {.sample = "near-field microscopy of a surface whose near-field reflection is computed by another model",
             .formula = "s = sum of exp(i n phi)/(1 - r_p/(4 z0^3 h^3)), h = 1 + A (1 - cos phi), over the same of a "
                        "reference\nr_p = Quantity 5 + i Quantity 6 of the surface at the momentum in its rows",
             .source = "B. Knoll, F. Keilmann, Opt. Commun. 182, 321 (2000), without the far-field factors",
             .from = 500,
             .to = 2000}};

constinit const ModelType kNearFieldTip5 = {
    .code = 110,
    .name = "sSNOM-5",
    .evaluate = Evaluate110,
    .after = AfterNothing,
    .fitted = false,
    .material = false,
    .map = DipoleOnReflection::kMap,
    .fills = kFills110,
    .page = {.sample = "near-field microscopy of a surface at one momentum, set by the radius of the tip",
             .formula = "as type 107, with r_p of a surface of type 73 or 77 at the momentum q = 0.1/a",
             .source = "B. Knoll, F. Keilmann, Opt. Commun. 182, 321 (2000); the momentum is a choice of this program",
             .from = 500,
             .to = 2000}};

}  // namespace kalvex
