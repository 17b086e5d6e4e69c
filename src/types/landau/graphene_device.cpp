// Graphene with an inhomogeneous charge in a magnetic field, and types that use its conductivity: a device on a gate,
// its polarimetry, its magnetoplasmons.
#include <algorithm>
#include <numbers>

#include "types/landau/dirac_levels.h"
#include "types/magneto/circular.h"
#include "types/magneto/device_stack.h"
#include "types/types.h"

namespace kalvex {
namespace {

// Conductivity tensor of a layer of 3.35 A, and carrier densities. The chemical potential has a Gaussian spread.
struct GrapheneConductivity {
  static constexpr Hooks kHooks = hook::kIdle | hook::kPrepare;
  enum Input {
    kTemperature,
    kField,
    kPotential,
    kVelocity,
    kSpread,
    kBroadening,
    kGap,
    kHighest,
    kNodes,
    kWeight,
    kBackground,
    kHallBackground
  };
  static constexpr RowCell kHead[] = {Own(0, Wo, "temperature, K", 50),
                                      Own(0, Wp, "magnetic field, T, signed", 7),
                                      Own(0, G, "chemical potential, eV", 0.12),
                                      Own(1, Wo, "velocity, m/s", 1.0e6, 1.0e6),
                                      Own(1, Wp, "spread of the chemical potential, eV", 0.02),
                                      Own(1, G, "broadening, eV", 0.03, 0.01),
                                      Own(2, Wo, "gap D, eV", 0.02),
                                      Setting(2, Wp, "highest level, 0 for 60", 30),
                                      Setting(2, G, "number of parts of the spread, 0 for none", 6),
                                      Own(3, Wo, "weight", 1, 1),
                                      Own(3, Wp, "background of Re sigma_xx, Ohm^-1 cm^-1", 50),
                                      Own(3, G, "background of Re sigma_xy, Ohm^-1 cm^-1", 20)};
  static constexpr std::uint64_t kOccupation = InputBits({kTemperature, kField, kPotential, kVelocity, kSpread, kGap}),
                                 kSum = kOccupation | InputBits({kBroadening, kWeight}),
                                 kDiagonal = kSum | InputBits({kBackground}),
                                 kHall = kSum | InputBits({kHallBackground});
  static constexpr SlotUse kFills[] = {{kRefl, "|B| 4.839e10 over twice the filling, cm-2", kOccupation},
                                       {kRp, "density of electrons, cm-2", kOccupation},
                                       {kRs, "density of holes, cm-2", kOccupation},
                                       {kRps, "filling: electrons minus holes over 4.839e10 |B|", kOccupation},
                                       {kE1, "Re eps_xx", kSum},
                                       {kE2, "Im eps_xx", kDiagonal},
                                       {kS1, "Re sigma_xx, Ohm^-1 cm^-1 of a layer of 3.35 A", kDiagonal},
                                       {kS2, "Im sigma_xx", kSum},
                                       {kN1, "Re eps_xy", kSum},
                                       {kN2, "Im eps_xy", kHall},
                                       {kDepth, "Re sigma_xy", kHall},
                                       {kLoss, "Im sigma_xy", kSum}};

  template <class T>
  struct Table {
    LadderTable<T> ladder;
    T electrons{}, holes{};  // sums of occupations
  };

  static std::uint64_t Idle(const TypeInputs<double>& in) {
    std::uint64_t idle = 0;
    if (in.setting(kNodes) <= 0) idle |= InputBits({kSpread});
    if (in.value(kField) == 0) idle |= InputBits({kField, kVelocity});
    return idle;
  }

  template <class T>
  static void Prepare(const TypeInputs<T>& in, Table<T>& table) {
    constexpr int kMostNodes = 1000;
    table.ladder.Clear();
    table.electrons = table.holes = T(0);
    const int parts = std::clamp(in.setting(kNodes), 0, kMostNodes);
    double sum = 0;
    const auto place = [&](int i) { return parts == 0 ? 0.0 : static_cast<double>(i) / parts - 0.5; };
    const auto weight = [&](int i) { return std::exp(-25 * place(i) * place(i)); };
    for (int i = 0; i <= parts; ++i) sum += weight(i);
    for (int i = 0; i <= parts; ++i) {
      AddNode(in, T(weight(i) / sum), in[kPotential] + T(3 * place(i)) * in[kSpread], table);
    }
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, const Table<T>& table, Slots<T>& q) {
    constexpr double kPerField = 48390000000.0;
    const T density = T(kPerField) * Magnitude(in[kField]), filling = table.electrons - table.holes;
    q[kRp] = density * table.electrons;
    q[kRs] = density * table.holes;
    q[kRps] = filling;
    if (std::fabs(ValueOf(filling)) > kTinyNorm) q[kRefl] = density / (T(2) * filling);
    const Complex<T> z{T(kElectronvoltPerWavenumber * in.x), in[kBroadening]};
    const SheetTensor<T> tensor = LadderTensor(table.ladder, z, ValueOf(in[kField]) < 0, in.ahead());
    const Complex<T> xx = tensor.xx * in[kWeight] + in[kBackground], xy = tensor.xy * in[kWeight] + in[kHallBackground];
    q[kS1] = xx.re;
    q[kS2] = xx.im;
    q[kDepth] = xy.re;
    q[kLoss] = xy.im;
    if (in.x == 0) return;
    const T perSigma(60 / in.x);
    q[kE1] = T(1) - perSigma * xx.im;
    q[kE2] = perSigma * xx.re;
    q[kN1] = -(perSigma * xy.im);
    q[kN2] = perSigma * xy.re;
  }

 private:
  template <class T>
  static void AddNode(const TypeInputs<T>& in, const T& weight, const T& mu, Table<T>& table) {
    constexpr int kUsualLevels = 60, kMostLevels = 100000;
    constexpr double kLargest = 5;  // eV, upper end of the integral at zero field
    const T kT = T(kElectronvoltPerKelvin) * in[kTemperature], gap = in[kGap];
    const T eps2 = T(1.3154e-15) * Magnitude(in[kField]) * in[kVelocity] * in[kVelocity];
    if (ValueOf(eps2) == 0) {
      AddDiracContinuum(table.ladder, weight, gap, mu, kT, kLargest, in.value(kBroadening));
      return;
    }
    const int highest = in.setting(kHighest) > 0 ? std::min(in.setting(kHighest), kMostLevels) : kUsualLevels;
    AddDiracTransitions(table.ladder, weight * eps2, eps2, gap, mu, kT, highest);
    // The lowest level has half the flavours of the others.
    for (int n = 0; n <= highest; ++n) {
      const T E = n == 0 ? Magnitude(gap) : Sqrt(gap * gap + T(n) * eps2), flavours = weight * T(n == 0 ? 1 : 2);
      table.electrons += flavours * Fermi(E - mu, kT);
      table.holes += flavours * Fermi(E + mu, kT);
    }
  }
};

constexpr Quantity kTensorOfSigma[] = {kS1, kS2, kDepth, kLoss};

template <class T>
Circular<T> SheetOf(const TypeInputs<T>& in, std::size_t partner, const T& layers) {
  const T perSigma = T(kSheetOfLayer) * layers;
  const Circular<T> sigma = CircularOf(Complex<T>{in.quantity(partner, kS1), in.quantity(partner, kS2)},
                                       Complex<T>{in.quantity(partner, kDepth), in.quantity(partner, kLoss)});
  return {sigma.plus * perSigma, sigma.minus * perSigma};
}

// Vacuum, sheet, substrate, gate film, vacuum.
struct GrapheneDevice {
  static constexpr Hooks kHooks = hook::kAsked;
  enum Input { kSheet, kSubstrate, kGate, kThickness, kGateThickness, kCoherence, kLayers };
  static constexpr RowCell kHead[] = {EvaluatedType(0, Wo, "sheet, of type 97", 97),
                                      OptionalPartner(0, Wp, "substrate"),
                                      OptionalPartner(0, G, "gate film on its back"),
                                      Own(1, Wo, "thickness of the substrate, cm", 0.002),
                                      Own(1, Wp, "thickness of the gate film, cm", 0.0002),
                                      Own(1, G, "coherence of the echoes in the substrate, 0 to 1", 0.5),
                                      Own(2, Wo, "number of layers of the sheet", 1)};
  static constexpr auto& kAsked = kTensorOfSigma;
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity, mean of both circular ones"},
                                       {kTrans, "transmission, mean of both circular ones"},
                                       {kE1, "Faraday rotation, radians"},
                                       {kE2, "Faraday ellipticity"},
                                       {kN1, "Re t_+"},
                                       {kN2, "Im t_+"},
                                       {kDepth, "Re t_-"},
                                       {kLoss, "Im t_-"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Circular<T> s = SheetOf(in, kSheet, in[kLayers]);
    const Passed<T> plus = Through(in, s.plus), minus = Through(in, s.minus);
    const Polarisation<T> faraday = PolarisationOf(Circular<T>{plus.t, minus.t});
    q[kRefl] = T(0.5) * (plus.R + minus.R);
    q[kTrans] = T(0.5) * (plus.T + minus.T);
    q[kE1] = faraday.rotation;
    q[kE2] = faraday.ellipticity;
    q[kN1] = plus.t.re;
    q[kN2] = plus.t.im;
    q[kDepth] = minus.t.re;
    q[kLoss] = minus.t.im;
  }

 private:
  template <class Number>
  struct Passed {
    Number R, T;
    Complex<Number> t;
  };
  // Intensities: the echoes in the substrate summed as amplitudes and as intensities, weighted by the coherence.
  // Amplitude t: with all echoes and with a single pass, weighted by the coherence.
  template <class T>
  static Passed<T> Through(const TypeInputs<T>& in, const Complex<T>& s) {
    const Complex<T> one{T(1), T(0)}, n = Sqrt(in.eps(kSubstrate));
    const Complex<T> once = PassageFactor(n, in[kThickness], in.x), round = once * once;
    const Complex<T> rFront = SheetReflection(one, n, s), rInside = SheetReflection(n, one, s);
    const Complex<T> in1 = SheetTransmission(one, n, s), out1 = SheetTransmission(n, one, s);
    FieldMatrix<T> gate;
    gate.AddLayer(Sqrt(in.eps(kGate)), in[kGateThickness], in.x);
    const Amplitudes<T> back = AmplitudesOf(gate, n, one);
    const Complex<T> echo = rInside * back.r * round, direct = in1 * once * back.t, sum = T(1) - echo;
    const Complex<T> r = rFront + Quotient(in1 * out1 * back.r * round, sum), t = Quotient(direct, sum);
    const T rest = T(1) - Norm(echo), losses = ValueOf(rest) < kTinyNorm ? T(kTinyNorm) : rest;
    const T R = Norm(rFront) + Norm(in1 * out1 * back.r * round) / losses, through = Norm(direct) / losses;
    const T c = Clipped01(in[kCoherence]);
    return {R + (Norm(r) - R) * c, through + (Norm(t) - through) * c, direct + (t - direct) * c};
  }
};

// Readings of a device between a polariser and an analyser.
struct DevicePolarimetry {
  static constexpr Hooks kHooks = hook::kAsked;
  enum Input { kDevice, kFirstPolariser, kFirstAnalyser, kSecondPolariser, kSecondAnalyser };
  static constexpr RowCell kHead[] = {EvaluatedType(0, Wo, "device, of type 98", 98),
                                      Own(1, Wo, "polariser of the first reading, degrees", 3),
                                      Own(2, Wo, "analyser of the first reading, degrees", -40),
                                      Own(3, Wo, "polariser of the second reading, degrees", 5),
                                      Own(4, Wo, "analyser of the second reading, degrees", 50)};
  static constexpr Quantity kAsked[] = {kRefl, kTrans, kRp, kRs,    kRps,  kE1,        kE2,   kS1,
                                        kS2,   kN1,    kN2, kDepth, kLoss, kDefringed, kAlpha};
  static constexpr std::uint64_t kOfDevice = InputBits({kDevice});
  static constexpr SlotUse kFills[] = {
      {kRefl, "rotation by the two readings, atan((root e2 - root e1)/(root e1 + root e2))"},
      {kTrans, "Quantity 1 of the device", kOfDevice},
      {kRp, "Faraday rotation, radians", kOfDevice},
      {kRs, "(e2 + e1)/(e2 - e1)"},
      {kRps, "Quantity 4 of the device, 0", 0},
      {kE1, "first reading e1", InputBits({kDevice, kFirstPolariser, kFirstAnalyser})},
      {kE2, "second reading e2", InputBits({kDevice, kSecondPolariser, kSecondAnalyser})},
      {kS1, "Quantity 7 of the device, 0", 0},
      {kS2, "Quantity 8 of the device, 0", 0},
      {kN1, "Re t_+", kOfDevice},
      {kN2, "Im t_+", kOfDevice},
      {kDepth, "Re t_-", kOfDevice},
      {kLoss, "Im t_-", kOfDevice},
      {kDefringed, "Quantity 13 of the device, 0", 0},
      {kAlpha, "Quantity 14 of the device, 0", 0}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    for (const Quantity pass : kAsked) q[pass] = in.quantity(kDevice, pass);
    const Circular<T> t{{q[kN1], q[kN2]}, {q[kDepth], q[kLoss]}};
    const T e1 = Reading(t, in[kFirstAnalyser] - in[kFirstPolariser]),
            e2 = Reading(t, in[kSecondAnalyser] - in[kSecondPolariser]);
    const T root1 = Root(e1), root2 = Root(e2);
    q[kRefl] = ValueOf(root1 + root2) > 0 ? Atan((root2 - root1) / (root1 + root2)) : T(0);
    q[kRp] = PolarisationOf(t).rotation;
    q[kRs] = std::fabs(ValueOf(e2 - e1)) < kTinyNorm ? T(0) : (e2 + e1) / (e2 - e1);
    q[kE1] = e1;
    q[kE2] = e2;
  }

 private:
  // Through an analyser at an angle to the polariser: |t_+ exp(ia) + t_- exp(-ia)|^2/4.
  template <class T>
  static T Reading(const Circular<T>& t, const T& degrees) {
    const T a = degrees * T(kRadiansPerDegree);
    const Complex<T> turn{Cos(a), Sin(a)};
    return T(0.25) * Norm(t.plus * turn + t.minus * Conj(turn));
  }
  template <class T>
  static T Root(const T& value) {
    return ValueOf(value) > 0 ? Sqrt(value) : T(0);
  }
};

// The conductivity of a sheet at a given wave vector, screened by the charges that the wave induces.
struct Magnetoplasmon97 {
  static constexpr Hooks kHooks = hook::kAsked;
  enum Input { kSheet, kBelow, kAbove, kWaveVector };
  static constexpr RowCell kHead[] = {EvaluatedType(0, Wo, "sheet, of type 97", 97),
                                      OptionalPartner(0, Wp, "medium below"), OptionalPartner(0, G, "medium above"),
                                      Own(1, Wo, "wave vector over 2 pi, cm-1", 3000)};
  static constexpr auto& kAsked = kTensorOfSigma;
  static constexpr SlotUse kFills[] = {{kE1, "Re of the screening d"},
                                       {kE2, "Im of the screening d"},
                                       {kS1, "Re sigma_xx/d, Ohm^-1 cm^-1 of a layer of 3.35 A"},
                                       {kS2, "Im sigma_xx/d"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    if (in.x == 0) return;
    const Cplx sigma{in.quantity(kSheet, kS1), in.quantity(kSheet, kS2)};
    const Cplx mean = (in.eps(kBelow) + in.eps(kAbove)) * 0.5;
    const Cplx d = 1.0 + Quotient(TimesI(sigma) * (1.262e-05 * in[kWaveVector] / in.x), mean * 2.0);
    const Cplx screened = Quotient(sigma, d);
    q[kE1] = d.re;
    q[kE2] = d.im;
    q[kS1] = screened.re;
    q[kS2] = screened.im;
  }
};

}  // namespace

constinit const ModelType kGrapheneMagnetoConductivity = FittedType<GrapheneConductivity, AtLeast(0)>(
    97, "Graphene MO cond.",
    {.sample = "graphene with an inhomogeneous charge in a magnetic field: conductivity tensor, densities, filling",
     .formula = "levels +-sqrt(D^2 + n 1.3154e-15 |B| v^2); the chemical potential takes the values mu + 3 s u,\n"
                "u = i/N - 1/2, i = 0 ... N, with weights exp(-25 u^2), and results are means\n"
                "conductivity by the Kubo sum over transitions n -> n + 1, |A|^2 = (1 +- D^2/(E1 E2))/4\n"
                "densities 4.839e10 |B| sum of occupations, the lowest level counting once and the others twice\n"
                "eps = 1 + 60 i sigma/x; B = 0: the integral over energies up to 5 eV; 1816.5 is e^2/4hbar",
     .source =
         "V. P. Gusynin, S. G. Sharapov, J. P. Carbotte, J. Phys.: Condens. Matter 19, 026222 (2007); the order of "
         "the rows is a choice of this program",
     .from = 100,
     .to = 3000});

constinit const ModelType kGrapheneDevice = FittedType<GrapheneDevice, AtLeast(7)>(
    98, "Graphene MO device",
    {.sample = "a sheet of graphene on a substrate with a gate film on its back, in a magnetic field",
     .formula = "s_+- = 1.2619984e-5 N sigma_+-; front r = (1 - n - s)/(1 + n + s), t = 2/(1 + n + s), inside\n"
                "r' = (n - 1 - s)/(n + 1 + s), t' = 2n/(n + 1 + s); back r_b, t_b of the gate film into vacuum\n"
                "with all echoes of the substrate as amplitudes (coherence 1), as intensities (0), or a mean of both;\n"
                "t_+- with all echoes or with one pass. Rows 4 to 7 are free.",
     .source =
         "field matrices, M. Born, E. Wolf, Principles of Optics, chapter 1.6; the order of the rows is a choice of "
         "this program",
     .from = 100,
     .to = 3000});

constinit const ModelType kMagnetoopticsOfDevice = FittedType<DevicePolarimetry, AtLeast(5)>(
    100, "MO device from -98",
    {.sample = "two polarimeter readings of a graphene device",
     .formula = "e = |t_+ exp(ia) + t_- exp(-ia)|^2/4, a = analyser - polariser, for both readings\n"
                "With a = -45 and 45 degrees Quantity 0 is the rotation, if the light stays linearly polarised.",
     .source = "Jones calculus in circular polarisations; the roles of the angles are a choice of this program",
     .from = 100,
     .to = 3000});

constinit const ModelType kMagnetoplasmon = ShownType<Magnetoplasmon97, AtLeast(7)>(
    104, "Magnetoplasmon-97",
    {.sample = "magnetoplasmons of a sheet of graphene at a given wave vector",
     .formula =
         "d = 1 + i q s_xx/(2 e k0), q = 2 pi Q, k0 = 2 pi x, s_xx = 1.262e-5 sigma_xx, e the mean of both media;\n"
         "d = 0 at a mode; sigma_xx/d is the response to the external field. Further rows are free.",
     .source = "A. L. Fetter, Phys. Rev. B 32, 7676 (1985)",
     .from = 100,
     .to = 3000});

}  // namespace kalvex
