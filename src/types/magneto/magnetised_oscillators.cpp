// Samples with oscillators in a magnetic field along the beam.
#include "types/magneto/oscillator_pairs.h"
#include "types/stacks/film_optics.h"
#include "types/types.h"

namespace kalvex {
namespace {

// The thick sample of type 49, the partner of the types in on_magnetised.cpp.
struct MagnetisedSample {
  enum Head { kEpsInf, kNormalising, kMesh };
  static constexpr RowCell kHead[] = {
      Own(0, Wo, "eps_inf", 4), DatasetSlot(0, Wp, "measured reflectivity by which Quantity 1 is divided, 0 for none"),
      OwnMesh(0, G, "other than 0: the model's own variational dielectric function is added to eps+ and eps-")};
  static constexpr std::span<const RowCell> kGroup = OscillatorPair::kCells;
  static constexpr int kGroupStart = 1, kGroupRows = OscillatorPair::kRows;
  static constexpr auto kFillsOf =
      MagnetisedFills("reflectivity divided by the dataset", ~InputBits({kEpsInf}), InputBits({3, 4, 5, 6}));
  static constexpr std::span<const SlotUse> kFills = kFillsOf;

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Complex<T> common = in.eps(kMesh) + in[kEpsInf];
    const Circular<T> sum = SumOfPairs(in);
    FillMagnetised({common + sum.plus, common + sum.minus}, in.x, q);
    const double divisor = in.data(kNormalising);
    q[kTrans] = std::fabs(divisor) < 1e-100 ? q[kRefl] : q[kRefl] / T(divisor);
  }
};

// The same oscillators, described as free carriers with a mass and a rate that depend on the frequency.
struct ExtendedDrudeInField {
  enum Head { kEpsInf, kPlasma };
  static constexpr RowCell kHead[] = {Own(0, Wo, "eps_inf", 4),
                                      Own(0, Wp, "plasma frequency of the carriers, cm-1", 400)};
  static constexpr std::span<const RowCell> kGroup = OscillatorPair::kCells;
  static constexpr int kGroupStart = 1, kGroupRows = OscillatorPair::kRows;
  static constexpr std::uint64_t kOscillators = InputBits({2, 3, 4, 5}), kEps = kOscillators | InputBits({kEpsInf}),
                                 kDrude = kOscillators | InputBits({kPlasma});
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity, mean of both circular ones", kEps},
                                       {kTrans, "the same", kEps},
                                       {kRp, "Kerr rotation, radians", kEps},
                                       {kRs, "Kerr ellipticity", kEps},
                                       {kRps, "reflectivity of +", kEps},
                                       {kE1, "Re eps_xx", kEps},
                                       {kE2, "Im eps_xx", kOscillators},
                                       {kS1, "Re sigma_xx, Ohm^-1 cm^-1", kOscillators},
                                       {kS2, "Im sigma_xx, Ohm^-1 cm^-1", kEps},
                                       {kN1, "mass of +, relative to that of the plasma frequency", kDrude},
                                       {kN2, "rate of +, cm-1", kDrude},
                                       {kDepth, "mass of -", kDrude},
                                       {kLoss, "rate of -, cm-1", kDrude},
                                       {kDefringed, "reflectivity of -", kEps}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Circular<T> sum = SumOfPairs(in);
    FillMagnetised({sum.plus + in[kEpsInf], sum.minus + in[kEpsInf]}, in.x, q);
    q[kTrans] = q[kRefl];
    FillCarriers(in, sum.plus, q[kN1], q[kN2]);
    FillCarriers(in, sum.minus, q[kDepth], q[kLoss]);
  }

 private:
  // i (Wp^2/60)/sigma = x m + i g with sigma = -i x sum/60.
  template <class T>
  static void FillCarriers(const TypeInputs<T>& in, const Complex<T>& sum, T& mass, T& rate) {
    if (Norm(ValueOf(sum)) < 1e-20 || in.x == 0) return;
    const Complex<T> memory = Complex<T>{-(in[kPlasma] * in[kPlasma]) / T(in.x), T(0)} / sum;
    mass = memory.re / T(in.x);
    rate = memory.im;
  }
};

// Oscillators in a slab without echoes between its faces.
struct Faraday {
  enum Head { kEpsInf, kThickness };
  static constexpr RowCell kHead[] = {Own(0, Wo, "eps_inf", 4), Own(0, Wp, "thickness d, cm", 0.01)};
  static constexpr std::span<const RowCell> kGroup = OscillatorPair::kCells;
  static constexpr int kGroupStart = 1, kGroupRows = OscillatorPair::kRows;
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity, mean of both circular ones"},
                                       {kTrans, "transmission, mean of both circular ones"},
                                       {kE1, "Re eps+"},
                                       {kE2, "Im eps+"},
                                       {kS1, "Re eps-"},
                                       {kS2, "Im eps-"},
                                       {kN1, "Re i x (1 - eps0)/(4 pi)"},
                                       {kN2, "Im i x (1 - eps0)/(4 pi)"},
                                       {kDepth, "(|A+| - |A-|)^2/(4 |A0|^2)"},
                                       Angle(360, {kLoss, "arg A- - arg A+ + 90 degrees, degrees"}),
                                       {kDefringed, "transmission relative to that without field"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Complex<T> eps0 = SumOfPairs(in, 0) + in[kEpsInf], plus = SumOfPairs(in, -1) + in[kEpsInf],
                     minus = SumOfPairs(in, 1) + in[kEpsInf];
    const Complex<T> a0 = Amplitude(in, eps0), a = Amplitude(in, plus), b = Amplitude(in, minus);
    q[kRefl] = T(0.5) * (Norm(FaceReflection(plus)) + Norm(FaceReflection(minus)));
    q[kTrans] = T(0.5) * (Norm(a) + Norm(b));
    q[kE1] = plus.re;
    q[kE2] = plus.im;
    q[kS1] = minus.re;
    q[kS2] = minus.im;
    const Complex<T> conductivity = TimesI(T(1) - eps0) * T(in.x * 0.07957747154594767);
    q[kN1] = conductivity.re;
    q[kN2] = conductivity.im;
    q[kLoss] = T(kDegreesPerRadian) * (T(Arg(ValueOf(b))) + T(1.5707963267948966) - T(Arg(ValueOf(a))));
    if (Norm(ValueOf(a0)) < 1e-20) return;
    q[kDepth] = (Norm(a) + Norm(b) - T(2) * Sqrt(Norm(a) * Norm(b))) / (T(4) * Norm(a0));
    q[kDefringed] = q[kTrans] / Norm(a0);
  }

 private:
  template <class T>
  static Complex<T> Amplitude(const TypeInputs<T>& in, const Complex<T>& eps) {
    const Complex<T> r = FaceReflection(eps);
    const Complex<T> e = PassageFactor(Sqrt(eps), in[kThickness], in.x);
    return (T(1) - r * r) * e;
  }
};

// A slab whose permittivity and permeability each have up to three shifted oscillators, with all echoes.
struct MagneticSlab {
  enum Head { kEpsInf, kMuInf, kThickness, kFirst };
  static constexpr int kOscillators = 6, kCells = 4;
  static constexpr auto kHeadCells = [] {
    std::array<RowCell, kFirst + kOscillators * kCells> cells{};
    cells[kEpsInf] = Own(0, Wo, "eps_inf", 4);
    cells[kMuInf] = Own(0, Wp, "mu_inf", 1);
    cells[kThickness] = Own(0, G, "thickness, cm", 0.001);
    std::size_t at = kFirst;
    for (int k = 0; k < kOscillators; ++k, at += kCells) {
      const bool ofMu = k % 2 == 1;
      const int row = 2 * k + 1;
      cells[at] = Own(row, Wo, ofMu ? "frequency W of the permeability, cm-1" : "frequency W of the permittivity, cm-1",
                      100 + 30 * k);
      cells[at + 1] = Own(row, Wp, "strength S, cm-1", ofMu ? 15 : 150);
      cells[at + 2] = Own(row, G, "width G, cm-1", 20);
      cells[at + 3] = Own(row + 1, Wo, "shift B, cm-1", 10);
    }
    return cells;
  }();
  static constexpr std::span<const RowCell> kHead = kHeadCells;
  static constexpr SlotUse kFills[] = {{kE1, "Re t of +"}, {kE2, "Im t of +"}, {kS1, "Re t of -"}, {kS2, "Im t of -"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Complex<T> plus = Transmitted(in, -1), minus = Transmitted(in, 1);
    q[kE1] = plus.re;
    q[kE2] = plus.im;
    q[kS1] = minus.re;
    q[kS2] = minus.im;
  }

 private:
  template <class T>
  static Complex<T> Transmitted(const TypeInputs<T>& in, double side) {
    Complex<T> eps{in[kEpsInf], T(0)}, mu{in[kMuInf], T(0)};
    for (std::size_t k = 0; k < kOscillators; ++k) {
      const std::size_t at = kFirst + k * kCells;
      (k % 2 == 1 ? mu : eps) += ShiftedOscillator(in[at], in[at + 1], in[at + 2], in[at + 3] * T(side * in.x), in.x);
    }
    if (Norm(ValueOf(eps)) < 1e-20 || Norm(ValueOf(mu)) < 1e-20) return {};
    const Complex<T> Z = Sqrt(eps / mu);
    const Complex<T> e = PassageFactor(Sqrt(eps) * Sqrt(mu), in[kThickness], in.x);
    const Complex<T> sum = T(1) + Z, difference = T(1) - Z;
    return Quotient(T(4) * Z * e, sum * sum - difference * difference * e * e);
  }
};

}  // namespace

constinit const ModelType kMagnetoopticsEpsSigma = FittedType<MagnetisedSample, AtLeast(0)>(
    49, "Magnetooptics-eps/sig",
    {.sample = "a thick sample in a magnetic field along the beam: reflectivity, Kerr angles, tensors of eps and sigma",
     .formula = "eps+- = eps_inf + sum S^2/(W^2 - x^2 - iGx -+ xB); r+- = (1 - n+-)/(1 + n+-)\n"
                "L = ln(r-/r+): rotation Im L/2, ellipticity -tanh(Re L/2)\n"
                "eps_xx = (eps+ + eps-)/2, eps_xy = i (eps- - eps+)/2, sigma_xx = -i (eps_xx - 1) x/60,\n"
                "sigma_xy = -i eps_xy x/60",
     .source = "Lorentz oscillators in a field: L. D. Landau, E. M. Lifshitz, Electrodynamics of Continuous Media, "
               "chapter XI. The switch in row 1, column G, is a choice of this program"});

constinit const ModelType kMagnetoopticsExtendedDrude = FittedType<ExtendedDrudeInField, AtLeast(0)>(
    101, "MO-ext. Drude",
    {.sample = "free carriers in a magnetic field, described by a mass and a rate for each circular polarisation",
     .formula = "sigma+- = -i x (sum S^2/(W^2 - x^2 - iGx -+ xB))/60, i (Wp^2/60)/sigma+- = x m+- + i g+-\n"
                "all else as in type 49 with eps+- = eps_inf + sum",
     .source = "extended Drude analysis applied to each circular conductivity; the inner sum is that of type 49"});

constinit const ModelType kFaraday = ShownType<Faraday, AtLeast(0)>(
    29, "Faraday",
    {.sample = "a slab in a magnetic field along the beam, without echoes between its faces",
     .formula = "eps+-, eps0 as in type 49; A = (1 - r^2) exp(2 pi i x n d) for each",
     .source = "Fresnel amplitudes of both faces; echoes are left out on purpose, for thick or absorbing slabs"});

constinit const ModelType kVeskFaraday = FittedType<MagneticSlab, AtLeast(0)>(
    44, "Vesk-Faraday",
    {.sample = "a slab with dielectric and magnetic resonances in a field: complex transmission of both circular "
               "polarisations",
     .formula =
         "eps+-, mu+- = constant + sum S^2/(W^2 - x^2 - iGx -+ xB), Z = sqrt(eps/mu), k = 2 pi i x sqrt(eps mu) d\n"
         "t = 4 Z exp(k)/((1 + Z)^2 - (1 - Z)^2 exp(2k)); a pair of rows that is missing adds nothing",
     .source = "amplitude of a slab with all echoes, M. Born, E. Wolf, Principles of Optics, chapter 7.6"});

}  // namespace kalvex
