// Graphene that covers part of a substrate: a random mixture in a magnetic field, and a grating of ribbons.
#include <algorithm>
#include <numbers>
#include <vector>

#include "types/landau/dirac_levels.h"
#include "types/magneto/circular.h"
#include "types/types.h"

namespace kalvex {
namespace {

// ---- a mixture of two sheets

struct GrapheneMixture {
  static constexpr Hooks kHooks = hook::kPrepare;
  enum Input {
    kCoverage,
    kOtherSheet,
    kSubstrate,
    kTemperature,
    kField,
    kBroadening,
    kHighest,
    kVelocity,
    kPotential,
    kSpread,
    kNodes,
    kGap
  };
  static constexpr RowCell kHead[] = {Own(0, Wo, "share f that graphene covers", 0.7),
                                      Own(0, Wp, "conductivity of the rest, as a layer of 3.35 A, Ohm^-1 cm^-1", 0),
                                      OptionalPartner(0, G, "substrate"),
                                      Own(1, Wo, "temperature, K", 50),
                                      Own(1, Wp, "magnetic field, T, signed", 7),
                                      Own(1, G, "broadening, eV", 0.01),
                                      Setting(2, Wo, "highest level, 0 for 60", 30),
                                      Own(2, Wp, "velocity, m/s", 1.0e6),
                                      Own(2, G, "chemical potential, eV", 0.12),
                                      Own(3, Wo, "spread of the chemical potential, eV", 0.02),
                                      Setting(3, Wp, "number of parts of the spread, 0 for none", 4),
                                      Own(3, G, "gap D, eV", 0)};
  static constexpr auto kAll = SheetFills(kAllInputs, kAllInputs, kAllInputs);
  static constexpr std::span<const SlotUse> kFills = kAll;

  template <class T>
  struct Table {
    LadderTable<T> inField, withoutField;
  };

  static void Prepare(const TypeInputs<double>& in, Table<double>& table) {
    constexpr double kLargest = 5;  // eV
    const int parts = std::clamp(in.setting(kNodes), 0, 1000);
    const int highest = in.setting(kHighest) > 0 ? std::min(in.setting(kHighest), 100000) : 60;
    const double kT = kElectronvoltPerKelvin * in[kTemperature];
    const double eps2 = kLadderScale * in[kVelocity] * in[kVelocity] * std::fabs(in[kField]);
    table.inField.Clear();
    table.withoutField.Clear();
    for (int i = 0; i <= parts; ++i) {
      const double weight = 1.0 / (parts + 1), place = parts == 0 ? 0 : static_cast<double>(i) / parts - 0.5;
      const double mu = in[kPotential] + in[kSpread] * place;
      AddDiracContinuum(table.withoutField, weight, in[kGap], mu, kT, kLargest, in[kBroadening]);
      if (eps2 > 0) AddDiracTransitions(table.inField, weight * eps2, eps2, in[kGap], mu, kT, highest);
    }
  }

  static void Fill(const TypeInputs<double>& in, const Table<double>& table, Slots<double>& q) {
    const Cplx z{kElectronvoltPerWavenumber * in.x, in[kBroadening]};
    const Cplx zero = Effective(in, LadderTensor(table.withoutField, z, false, in.ahead()).xx);
    Circular<double> sigma{zero, zero};
    if (in[kField] != 0 && in[kVelocity] != 0) {
      const SheetTensor<double> tensor = LadderTensor(table.inField, z, in[kField] < 0, in.ahead());
      const Circular<double> pure = CircularOf(tensor.xx, tensor.xy);
      sigma = {Effective(in, pure.plus), Effective(in, pure.minus)};
    }
    FillSheetOnSubstrate(sigma, zero, 1.0, Sqrt(in.eps(kSubstrate)), q);
  }

 private:
  // The root with absorption of s^2 - (2f - 1)(s1 - s2) s - s1 s2 = 0.
  static Cplx Effective(const TypeInputs<double>& in, const Cplx& graphene) {
    const Cplx rest{in[kOtherSheet], 0}, linear = (graphene - rest) * (2 * in[kCoverage] - 1);
    const Cplx root = Sqrt(linear * linear + 4.0 * graphene * rest);
    const Cplx first = 0.5 * (linear + root), second = 0.5 * (linear - root);
    return first.re >= second.re ? first : second;
  }
};

// ---- ribbons

// The response of a grating to a field across its ribbons. The current in a ribbon is a sum of modes sin(m pi y/w), m
// odd, which are coupled by the field of their charges:
//     J_m w/(2s) + sum over n of (i/(2 e k0)) K_mn J_n = E 2w/(m pi),  K_mn = (1/L) sum over G of |G| Re b_m* b_n,
// with the Fourier transform b_m of a mode and G = 2 pi j/L.
class RibbonModes {
 public:
  RibbonModes(double width, double period, int modes, int momenta) : width_(width), period_(period) {
    const auto count = static_cast<std::size_t>(modes);
    coupling_.assign(count * count, 0);
    drive_.resize(count);
    for (std::size_t m = 0; m < count; ++m) drive_[m] = 2 * width / (OrderOf(m) * std::numbers::pi);
    std::vector<Cplx> b(count);
    for (int j = 1; j <= momenta; ++j) {
      const double G = 2 * std::numbers::pi * j / period;
      for (std::size_t m = 0; m < count; ++m) b[m] = TransformOf(OrderOf(m), G);
      for (std::size_t m = 0; m < count; ++m) {
        for (std::size_t n = 0; n < count; ++n) coupling_[m * count + n] += 2 * G / period * (Conj(b[m]) * b[n]).re;
      }
    }
  }

  // The mean sheet conductivity of the grating, for ribbons of conductivity s (in units of 1/Z0) between media of mean
  // permittivity e.
  Cplx Effective(const Cplx& s, const Cplx& e, double k0) const {
    const std::size_t count = drive_.size();
    std::vector<Cplx> a(count * count), x(count);
    const Cplx perCoupling = Quotient(Cplx{0, 1}, e * (2 * k0));
    for (std::size_t m = 0; m < count; ++m) {
      x[m] = {drive_[m], 0};
      for (std::size_t n = 0; n < count; ++n) a[m * count + n] = perCoupling * coupling_[m * count + n];
      a[m * count + m] += Quotient(Cplx{0.5 * width_, 0}, s);
    }
    Solve(a, x);
    Cplx mean;
    for (std::size_t m = 0; m < count; ++m) mean += x[m] * (drive_[m] / period_);
    return mean;
  }

 private:
  static double OrderOf(std::size_t m) { return 2.0 * static_cast<double>(m) + 1; }
  // Integral over the ribbon of sin(m pi y/w) exp(-iGy).
  Cplx TransformOf(double order, double G) const {
    const double p = order * std::numbers::pi / width_, D = p * p - G * G;
    if (std::fabs(D) < 1e-9 * p * p) return {0, -0.5 * width_};
    const Cplx end{std::cos(G * width_), -std::sin(G * width_)};
    return (1.0 + end) * (p / D);
  }
  // Gauss elimination without pivots: the diagonal dominates.
  static void Solve(std::vector<Cplx>& a, std::vector<Cplx>& x) {
    const std::size_t count = x.size();
    for (std::size_t k = 0; k < count; ++k) {
      for (std::size_t r = k + 1; r < count; ++r) {
        const Cplx factor = Quotient(a[r * count + k], a[k * count + k]);
        for (std::size_t c = k; c < count; ++c) a[r * count + c] -= factor * a[k * count + c];
        x[r] -= factor * x[k];
      }
    }
    for (std::size_t k = count; k-- > 0;) {
      for (std::size_t c = k + 1; c < count; ++c) x[k] -= a[k * count + c] * x[c];
      x[k] = Quotient(x[k], a[k * count + k]);
    }
  }

  double width_, period_;
  std::vector<double> coupling_, drive_;
};

struct GrapheneRibbons {
  static constexpr Hooks kHooks = hook::kPrepare;
  enum Input { kSheet, kPlasma, kWidth, kRibbon, kPeriod, kAngle, kSubstrate, kMomenta, kModes };
  static constexpr RowCell kHead[] = {
      OptionalPartner(0, Wo, "conductivity of the sheet as a bulk layer of 3.35 A, 0 for Drude"),
      Own(0, Wp, "Drude: plasma frequency of that layer, cm-1", 20000),
      Own(0, G, "Drude: rate, cm-1", 40),
      Own(1, Wo, "width of the ribbons, cm", 1e-4),
      Own(1, Wp, "period, cm", 2e-4),
      Own(1, G, "angle of the polarisation to the ribbons, degrees", 90),
      OptionalPartner(2, Wo, "substrate"),
      Setting(3, Wo, "momenta of the mode sum, 0 for 400", 0),
      Setting(4, Wo, "modes in a ribbon, 0 for the equivalent circuit", 6)};
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity at the angle of the polarisation"},
                                       {kTrans, "transmission into the substrate at that angle"},
                                       {kRp, "transmission, polarised along the ribbons"},
                                       {kRs, "transmission, polarised across"},
                                       {kRps, "ratio across over along"},
                                       {kE1, "Re of the mean conductivity along, Ohm^-1 cm^-1 of a layer of 3.35 A"},
                                       {kE2, "Im of it"},
                                       {kS1, "Re of the mean conductivity across"},
                                       {kS2, "Im of it"},
                                       {kN1, "transmission relative to the bare substrate, along"},
                                       {kN2, "transmission relative to the bare substrate, across"},
                                       {kLoss, "absorption at the angle of the polarisation"}};

  template <class T>
  struct Table {
    std::vector<RibbonModes> modes;  // one element, or none for the equivalent circuit
  };
  static void Prepare(const TypeInputs<double>& in, Table<double>& table) {
    constexpr int kMostModes = 60, kMostMomenta = 100000, kUsualMomenta = 400;
    table.modes.clear();
    if (in.setting(kModes) <= 0) return;
    const int momenta = in.setting(kMomenta) > 0 ? std::min(in.setting(kMomenta), kMostMomenta) : kUsualMomenta;
    table.modes.emplace_back(HeldFromZero(in[kRibbon]), HeldFromZero(in[kPeriod]),
                             std::min(in.setting(kModes), kMostModes), momenta);
  }

  static void Fill(const TypeInputs<double>& in, const Table<double>& table, Slots<double>& q) {
    if (in.x == 0) return;
    const double k0 = 2 * std::numbers::pi * in.x;
    const Cplx n = Sqrt(in.eps(kSubstrate)), mean = (1.0 + in.eps(kSubstrate)) * 0.5;
    const Cplx s = SheetOf(in) * kSheetOfLayer;
    const Cplx along = s * (in[kRibbon] / HeldFromZero(in[kPeriod]));
    const Cplx across = table.modes.empty() ? Circuit(in, s, mean, k0) : table.modes[0].Effective(s, mean, k0);
    const Cplx one{1, 0};
    const double bare = Norm(SheetTransmission(one, n, {})) * n.re;
    const auto transmission = [&](const Cplx& sheet) { return Norm(SheetTransmission(one, n, sheet)) * n.re; };
    const auto reflection = [&](const Cplx& sheet) { return Norm(SheetReflection(one, n, sheet)); };
    const double c2 = std::pow(std::cos(in[kAngle] * kRadiansPerDegree), 2);
    const auto at = [&](double parallel, double perpendicular) { return c2 * parallel + (1 - c2) * perpendicular; };
    q[kRp] = transmission(along);
    q[kRs] = transmission(across);
    q[kRefl] = at(reflection(along), reflection(across));
    q[kTrans] = at(q[kRp], q[kRs]);
    q[kRps] = q[kRp] == 0 ? 0 : q[kRs] / q[kRp];
    q[kE1] = along.re / kSheetOfLayer;
    q[kE2] = along.im / kSheetOfLayer;
    q[kS1] = across.re / kSheetOfLayer;
    q[kS2] = across.im / kSheetOfLayer;
    q[kN1] = q[kRp] / HeldFromZero(bare);
    q[kN2] = q[kRs] / HeldFromZero(bare);
    q[kLoss] = 1 - q[kRefl] - q[kTrans];
  }

 private:
  static Cplx SheetOf(const TypeInputs<double>& in) {
    if (in.has(kSheet)) return -TimesI(in.eps(kSheet) - 1.0) * (in.x / 60);
    return Quotient(Cplx{in[kPlasma] * in[kPlasma] / 60, 0}, Cplx{in[kWidth], -in.x});
  }
  // The ribbon as a resistor in series with the capacitor of the gaps.
  static Cplx Circuit(const TypeInputs<double>& in, const Cplx& s, const Cplx& mean, double k0) {
    const double w = HeldFromZero(in[kRibbon]), L = HeldFromZero(in[kPeriod]);
    const double gap = std::sin(std::numbers::pi * (L - w) / (2 * L));
    const Cplx resistor = Quotient(Cplx{L / w, 0}, s);
    if (!(gap > 0)) return Quotient(Cplx{1, 0}, resistor);
    const Cplx capacitor = mean * (2 * L / std::numbers::pi * std::log(1 / gap));
    return Quotient(Cplx{1, 0}, resistor + Quotient(Cplx{0, 1}, capacitor * k0));
  }
};

}  // namespace

constinit const ModelType kGrapheneEma = ShownType<GrapheneMixture, Exactly(4)>(
    84, "Graphene-EMA",
    {.sample = "graphene with holes, or flakes of it, on a substrate in a magnetic field",
     .formula = "2 s = (2f - 1)(s1 - s2) + sqrt[((2f - 1)(s1 - s2))^2 + 4 s1 s2], the root with absorption, for each\n"
                "circular polarisation; s1 by the sum over Landau levels, averaged over equal steps of the chemical\n"
                "potential; transmission and rotation as in type 52. s2 = 0 percolates at f = 1/2.",
     .source =
         "D. A. G. Bruggeman, Ann. Phys. 24, 636 (1935), in two dimensions; the order of the rows is a choice of this "
         "program",
     .from = 100,
     .to = 3000});

constinit const ModelType kGrapheneRibbons = ShownType<GrapheneRibbons, AtLeast(5)>(
    76, "Graphene-ribbons",
    {.sample = "a grating of conducting ribbons on a substrate: plasmons across them",
     .formula =
         "along: s w/L. across, circuit: 1/s_eff = L/(w s) + i/(k0 C), C = (2 e L/pi) ln(1/sin(pi (L - w)/(2L))),\n"
         "e the mean permittivity of both sides; modes: the current as a sum of sin(m pi y/w), m odd, with\n"
         "J_m w/(2s) + sum (i/(2 e k0)) K_mn J_n = 2 w/(m pi), K_mn = (1/L) sum |G| Re b_m* b_n\n"
         "t = 2/(1 + n + s_eff). Further rows are free. Drude: s = 2 pi d Wp^2 i/(x + iG), d = 3.35e-8 cm; of\n"
         "graphene 2 pi d Wp^2 = 4 alpha mu, mu in cm-1: Wp = 14957 cm-1 for 0.2 eV.",
     .source = "L. B. Whitbourn, R. C. Compton, Appl. Opt. 24, 217 (1985), circuit; mode sum: Galerkin form of the "
               "quasi-static integral equation of a strip",
     .from = 50,
     .to = 800});

}  // namespace kalvex
