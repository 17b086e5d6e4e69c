// Conductivities of oscillators in closed form.
#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

// A Lorentz oscillator, and one with a shifted complex pole for comparison.
struct LorentzTest {
  enum Input { kFrequency, kPlasma, kWidth, kShift };
  static constexpr RowCell kHead[] = {Own(0, Wo, "frequency, cm-1", 200), Own(0, Wp, "plasma frequency, cm-1", 300),
                                      Own(0, G, "width, cm-1", 15), Own(1, Wo, "shift of the pole, cm-1", 10)};
  static constexpr SlotUse kFills[] = {{kS1, "Re sigma of the oscillator, Ohm^-1 cm^-1"},
                                       {kS2, "Im sigma of the oscillator"},
                                       {kN1, "Re sigma with the shifted pole"},
                                       {kN2, "Im sigma with the shifted pole"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    const double x = in.x, W = in[kFrequency], moved = W + in[kShift];
    const Cplx strength{0, -x / 60 * in[kPlasma] * in[kPlasma]};
    const Cplx usual = Quotient(strength, Cplx{W * W - x * x, -in[kWidth] * x});
    const Cplx pole{x, in[kWidth] / 2};
    const Cplx shifted = Quotient(strength, moved * moved - pole * pole);
    q[kS1] = usual.re;
    q[kS2] = usual.im;
    q[kN1] = shifted.re;
    q[kN2] = shifted.im;
  }
};

// Free carriers in a magnetic field: diagonal and Hall conductivity, summed over the rows.
struct MagnetoDrude {
  enum Cell { kCyclotron, kPlasma, kRate };
  static constexpr RowCell kGroup[] = {Own(0, Wo, "cyclotron frequency, cm-1", 80),
                                       Own(0, Wp, "plasma frequency, cm-1", 600), Own(0, G, "rate, cm-1", 30)};
  static constexpr int kGroupStart = 0, kGroupRows = 1;
  static constexpr SlotUse kFills[] = {
      {kS1, "Re sigma_xx, Ohm^-1 cm^-1"}, {kS2, "Im sigma_xx"}, {kN1, "Re sigma_xy"}, {kN2, "Im sigma_xy"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    for (std::size_t k = 0; k < in.groups(); ++k) {
      const T W = in[in.Of(k, kCyclotron)], plasma = in[in.Of(k, kPlasma)], rate = in[in.Of(k, kRate)];
      const Complex<T> damped{T(in.x), rate};
      const Complex<T> D = damped * damped - W * W;
      if (Norm(ValueOf(D)) < 1e-10) continue;
      const Complex<T> u = Complex<T>{plasma * plasma / T(60), T(0)} / D;
      const Complex<T> xx = u * Complex<T>{-rate, T(in.x)}, xy = u * W;
      q[kS1] += xx.re;
      q[kS2] += xx.im;
      q[kN1] += xy.re;
      q[kN2] += xy.im;
    }
  }
};

// Resonant amplitudes, each with its own phase.
struct ResonantScattering {
  enum Cell { kPosition, kAmplitude, kWidth, kPhase };
  static constexpr RowCell kGroup[] = {Own(0, Wo, "position", 200), Own(0, Wp, "amplitude", 30), Own(0, G, "width", 25),
                                       Own(1, Wo, "phase, degrees", 40)};
  static constexpr int kGroupStart = 0, kGroupRows = 2;
  static constexpr SlotUse kFills[] = {{kRefl, "intensity |A|^2"}, {kE1, "Re A"}, {kE2, "Im A"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    Complex<T> sum;
    for (std::size_t k = 0; k < in.groups(); ++k) {
      const T phase = in[in.Of(k, kPhase)] * T(kRadiansPerDegree), amplitude = in[in.Of(k, kAmplitude)];
      const Complex<T> numerator{amplitude * Cos(phase), amplitude * Sin(phase)};
      sum += Quotient(numerator, Complex<T>{T(in.x) - in[in.Of(k, kPosition)], T(0.5) * in[in.Of(k, kWidth)]});
    }
    q[kRefl] = Norm(sum);
    q[kE1] = sum.re;
    q[kE2] = sum.im;
  }
};

}  // namespace

constinit const ModelType kLorentzTest = ShownType<LorentzTest, Exactly(2)>(
    43, "Lorentz-test",
    {.sample = "an oscillator, and one whose pole is a complex frequency, for comparison",
     .formula = "-i (x/60) Wp^2/(W^2 - x^2 - iGx), and -i (x/60) Wp^2/((W + shift)^2 - (x + iG/2)^2)",
     .source = "Lorentz oscillator; both agree to the order (G/W)^2 for a shift of 0"});

constinit const ModelType kMagnetoDrude = FittedType<MagnetoDrude, AtLeast(0)>(
    45, "Magneto-Drude",
    {.sample = "free carriers in a magnetic field: diagonal and Hall conductivity, any number of kinds",
     .formula = "u = (Wp^2/60)/((x + iG)^2 - W^2), sigma_xx = sum u (ix - G), sigma_xy = sum u W",
     .source = "equation of motion of a charge in a field, C. Kittel, Introduction to Solid State Physics"});

constinit const ModelType kRxdSorvald = FittedType<ResonantScattering, InGroups(0, 2)>(
    25, "RXD (Sorvald)",
    {.sample = "resonant scattering: amplitudes with phases that interfere",
     .formula = "A = sum Wp exp(i phase)/(x - W + iG/2), intensity |A|^2",
     .source = "coherent sum of resonances",
     .axis = "energy, in the unit of the positions"});

}  // namespace kalvex
