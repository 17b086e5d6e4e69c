// Conductivity tensors of carriers and modes in a magnetic field.
#include <numbers>

#include "types/magneto/circular.h"
#include "types/types.h"

namespace kalvex {
namespace {

// Any number of oscillators, each with a Hall part.
struct GeneralTensor {
  enum Head { kFirstData, kSecondData, kDiagonal, kTurnedReal, kHallReal, kPhase };
  enum Group { kHallWeight, kFrequency, kPlasma, kWidth };
  static constexpr RowCell kHead[] = {DatasetSlot(0, Wo, "first dataset, of the mixtures in Quantity 2"),
                                      DatasetSlot(0, Wp, "second dataset"),
                                      Own(1, Wo, "constant of the diagonal", 30),
                                      Own(1, Wp, "constant of the turned real Hall part", 20),
                                      Own(1, G, "constant of the real Hall part", 10),
                                      Own(2, Wo, "phase by which the Hall part is turned, radians", 0.4)};
  static constexpr RowCell kGroup[] = {Own(0, Wo, "weight A of the Hall part", 0.8),
                                       Own(1, Wo, "frequency W, cm-1", 150), Own(1, Wp, "plasma frequency, cm-1", 300),
                                       Own(1, G, "width G, cm-1", 20)};
  static constexpr int kGroupStart = 3, kGroupRows = 2;
  static constexpr std::uint64_t kOscillators = InputBits({7, 8, 9}), kHallBits = kOscillators | InputBits({6}),
                                 kTurnedBits = kHallBits | InputBits({kPhase});
  static constexpr SlotUse kFills[] = {
      {kRp, "(1 - 2 D1 Re sigma_xx)/(1 - 2 D1 D2), D1 and D2 the datasets", kOscillators | InputBits({kDiagonal})},
      {kRs, "Quantity 11 times D2", kTurnedBits | InputBits({kTurnedReal})},
      {kS1, "Re sigma_xx, Ohm^-1 cm^-1", kOscillators | InputBits({kDiagonal})},
      {kS2, "Im sigma_xx", kOscillators},
      {kN1, "Re sigma_xy", kHallBits | InputBits({kHallReal})},
      {kN2, "Im sigma_xy", kHallBits},
      {kDepth, "Re of the turned sigma_xy", kTurnedBits | InputBits({kTurnedReal})},
      {kLoss, "Im of the turned sigma_xy", kTurnedBits}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    Complex<T> xx{in[kDiagonal], T(0)}, xy;
    for (std::size_t k = 0; k < in.groups(); ++k) {
      const T W = in[in.Of(k, kFrequency)], width = in[in.Of(k, kWidth)], S = in[in.Of(k, kPlasma)];
      const Complex<T> shifted{T(in.x), width};
      const Complex<T> D = W * W - shifted * shifted;
      if (Norm(ValueOf(D)) < 1e-20) continue;
      const Complex<T> f = Complex<T>{S * S / T(60), T(0)} / D;
      xx += f * Complex<T>{width, T(-in.x)};
      xy += f * (W * in[in.Of(k, kHallWeight)]);
    }
    const Complex<T> turned = xy * Complex<T>{Cos(in[kPhase]), Sin(in[kPhase])};
    q[kS1] = xx.re;
    q[kS2] = xx.im;
    q[kN1] = in[kHallReal] + xy.re;
    q[kN2] = xy.im;
    q[kDepth] = in[kTurnedReal] + turned.re;
    q[kLoss] = turned.im;
    const double first = in.data(kFirstData), second = in.data(kSecondData), divisor = 1 - 2 * first * second;
    if (std::fabs(divisor) >= 1e-30) q[kRp] = (T(1) - xx.re * T(2 * first)) / T(divisor);
    q[kRs] = q[kDepth] * T(second);
  }
};

// A two-dimensional electron gas, in SI units.
struct ElectronGas {
  enum Input { kMass, kDensityMass, kDensity, kField, kRate, kThickness };
  static constexpr RowCell kHead[] = {Own(0, Wo, "mass of the cyclotron motion, electron masses", 0.067),
                                      Own(0, Wp, "mass of the density term, electron masses", 0.067),
                                      Own(0, G, "density, cm-2", 3e11),
                                      Own(1, Wo, "magnetic field, T", 5),
                                      Own(1, Wp, "scattering rate, cm-1", 10),
                                      Own(2, Wo, "thickness, m", 1e-8)};
  static constexpr SlotUse kFills[] = {{kRefl, "-Z0 Re sigma_xy of the sheet"},
                                       {kTrans, "1 - Z0 Re sigma_xx of the sheet"},
                                       {kE1, "Re (sigma_xx + i sigma_xy), S/m"},
                                       {kE2, "Re (sigma_xx - i sigma_xy), S/m"},
                                       {kS1, "Re sigma_xx, S/m"},
                                       {kS2, "Im sigma_xx, S/m"},
                                       {kN1, "Re sigma_xy, S/m"},
                                       {kN2, "Im sigma_xy, S/m"},
                                       {kDefringed, "Faraday rotation of the layer, radians"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    constexpr double kCharge = 1.60217646e-19, kElectron = 9.10938215e-31, kRadiansPerWavenumber = 188365156730.8853,
                     kImpedance = 376.73031;
    const double wc = kCharge / (kElectron * HeldFromZero(in[kMass])) * in[kField];
    const double A = 10000 * in[kDensity] * kCharge * kCharge / (kElectron * HeldFromZero(in[kDensityMass]));
    const double w = kRadiansPerWavenumber * in.x, g = kRadiansPerWavenumber * in[kRate],
                 d = HeldFromZero(in[kThickness]);
    const Cplx u = Quotient(Cplx{A, 0}, Cplx{w, g} * Cplx{w, g} - wc * wc);
    const Cplx sheet = u * Cplx{-g, w}, sheetHall = u * wc;
    const Cplx xx = sheet / d, xy = sheetHall / d;
    q[kRefl] = -kImpedance * sheetHall.re;
    q[kTrans] = 1 - kImpedance * sheet.re;
    q[kE1] = xx.re + TimesI(xy).re;
    q[kE2] = xx.re - TimesI(xy).re;
    q[kS1] = xx.re;
    q[kS2] = xx.im;
    q[kN1] = xy.re;
    q[kN2] = xy.im;
    const Cplx epsXx = TimesI(xx) / (8.54e-12 * w), epsXy = TimesI(xy) / (8.54e-12 * w);
    q[kDefringed] = d * w * (Sqrt(epsXx + TimesI(epsXy)).re - Sqrt(epsXx - TimesI(epsXy)).re) * 1.6678204759907602e-09;
  }
};

// At x = 0 the status is 0 and no Quantity is filled.
template <RowRule kRows>
int EvaluateElectronGas(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  if (x == 0 && kRows.Admits(RowCount(model))) return 0;
  return EvaluateType<ElectronGas, kRows, false>(ctx, model, x, derivatives);
}
constexpr ModelType ElectronGasType(const TypePage& page) {
  ModelType type = ShownType<ElectronGas, AtLeast(3)>(47, "2DEG - Faraday", page);
  type.evaluate = EvaluateElectronGas<AtLeast(3)>;
  return type;
}

// Two modes of a stripe, coupled by the field.
struct Magnetoplasmon {
  enum Input { kFirst, kPlasma, kWidth, kSecond, kCoupling };
  static constexpr RowCell kHead[] = {Own(0, Wo, "frequency of mode 1, cm-1", 150),
                                      Own(0, Wp, "plasma frequency, cm-1", 300), Own(0, G, "width, cm-1", 20),
                                      Own(1, Wo, "frequency of mode 2, cm-1", 220),
                                      Own(1, Wp, "coupling, for a field the cyclotron frequency, cm-1", 40)};
  static constexpr SlotUse kFills[] = {{kRefl, "mean of Re sigma of both modes"},
                                       {kE1, "Re sigma of mode 2, Ohm^-1 cm^-1"},
                                       {kE2, "Im sigma of mode 2"},
                                       {kS1, "Re sigma of mode 1"},
                                       {kS2, "Im sigma of mode 1"},
                                       {kN1, "Re sigma that couples both"},
                                       {kN2, "Im sigma that couples both"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    const double x = in.x, c = x * in[kCoupling];
    const Cplx first{in[kFirst] * in[kFirst] - x * x, -in[kWidth] * x},
        second{in[kSecond] * in[kSecond] - x * x, -in[kWidth] * x};
    const Cplx denominator = first * second - c * c;
    if (Norm(denominator) < 1e-20) return;
    const Cplx weight = -TimesI(Cplx{in[kPlasma] * in[kPlasma], 0} / denominator) * (x / 60);
    const Cplx ofFirst = weight * second, ofSecond = weight * first, mixed = TimesI(weight) * c;
    q[kE1] = ofSecond.re;
    q[kE2] = ofSecond.im;
    q[kS1] = ofFirst.re;
    q[kS2] = ofFirst.im;
    q[kN1] = mixed.re;
    q[kN2] = mixed.im;
    q[kRefl] = 0.5 * (ofFirst.re + ofSecond.re);
  }
};

}  // namespace

constinit const ModelType kMagnetooptics = FittedType<GeneralTensor, AtLeast(4)>(
    48, "Magnetooptics",
    {.sample = "conductivity tensor of any number of oscillators with a Hall part each",
     .formula = "f = (Wp^2/60)/(W^2 - (x + iG)^2), sigma_xx = c1 + sum f (G - ix), sigma_xy = sum f W A\n"
                "turned: sigma_xy exp(i phase); the constants add to the real parts\n"
                "Quantity 2 is 0 where 1 - 2 D1 D2 vanishes",
     .source = "oscillators in a field, written with the poles of a damped cyclotron motion; the combination in "
               "Quantities 2 and 3 is used as given"});

constinit const ModelType kElectronGasFaraday = ElectronGasType(
    {.sample = "a two-dimensional electron gas in a magnetic field",
     .formula =
         "wc = e B/m, A = e^2 n/m_n, u = 1/((w + ig)^2 - wc^2), sigma_xx = A u (iw - g), sigma_xy = A u wc,\n"
         "both divided by the thickness, except in Quantities 0 and 1\n"
         "rotation = d w (Re sqrt(e_xx + i e_xy) - Re sqrt(e_xx - i e_xy))/(2c), e = i sigma/(8.54e-12 w)\n"
         "The divisor 8.54e-12 stands for the vacuum permittivity, which is 8.854e-12. At x = 0 nothing is filled.",
     .source = "Drude conductivity in a field, C. Kittel, Introduction to Solid State Physics; sheet formulas to first "
               "order in the conductivity",
     .from = 5,
     .to = 200});

constinit const ModelType kMagnetoplasmonStripes = ShownType<Magnetoplasmon, AtLeast(0)>(
    70, "Magnetoplasmon stripes",
    {.sample = "magnetoplasmons of stripes: two modes coupled by the field",
     .formula = "D1, D2 = W^2 - x^2 - iGx, c = x C, q = Wp^2/(D1 D2 - c^2)\n"
                "sigma of mode 1 = q D2 x/(60i), of mode 2 = q D1 x/(60i), mixed q c x/60",
     .source = "two coupled oscillators; the antisymmetric coupling of a field, x C"});

}  // namespace kalvex
