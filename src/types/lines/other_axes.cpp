// Curves over other axes than frequency, and results other than a response: scattered light, photocurrents,
// temperatures, level energies.
#include <cmath>

#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

// Raman scattering by modes at a temperature, with a smooth background.
struct Raman {
  enum Head { kTemperature, kOrigin, kLinear, kQuadratic, kBackground };
  enum Group { kFrequency, kStrength, kWidth };
  static constexpr RowCell kHead[] = {Own(0, Wp, "temperature, K", 300),
                                      Own(0, G, "position of the exciting line, cm-1", 20),
                                      Own(1, Wp, "polynomial: coefficient of t", 1e-3),
                                      Own(1, G, "polynomial: coefficient of t^2", 1e-6), Own(2, Wo, "background", 0.1)};
  static constexpr RowCell kGroup[] = {Own(0, Wo, "frequency of a mode, cm-1", 200),
                                       Own(0, Wp, "strength of the mode, cm-1", 60),
                                       Own(0, G, "width of the mode, cm-1", 60)};
  static constexpr int kGroupStart = 3, kGroupRows = 1;
  static constexpr SlotUse kFills[] = {{kE1, "scattered light"},
                                       {kS1, "polynomial", InputBits({kOrigin, kLinear, kQuadratic})},
                                       {kN1, "Bose factor n", InputBits({kTemperature, kOrigin})}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const T t = T(in.x) - in[kOrigin];
    const T polynomial = T(1) + in[kLinear] * t + in[kQuadratic] * t * t;
    // n + 1/2 = 1/(2 tanh y), y = c t/(2 T). The product with t is finite at t = 0.
    const T perKelvin = T(1.43988) / (T(2) * AtLeast(in[kTemperature]));
    const T y = t * perKelvin, halfBose = T(0.5) * OverTanh(y) / perKelvin;
    T perT(0);
    for (std::size_t k = 0; k < in.groups(); ++k) {
      const T W = in[in.Of(k, kFrequency)], G = in[in.Of(k, kWidth)], S = in[in.Of(k, kStrength)];
      const T difference = W * W - t * t, D = difference * difference + G * G * t * t;
      if (ValueOf(D) > kTinyNorm) perT += S * S * G / D;
    }
    q[kE1] = perT * polynomial * (halfBose + T(0.5) * t) + in[kBackground];
    q[kS1] = polynomial;
    q[kN1] = ValueOf(t) == 0 ? T(kNoValue) : halfBose / t - T(0.5);
  }

 private:
  template <class T>
  static T AtLeast(const T& temperature) {
    constexpr double kCold = 1e-10;
    return ValueOf(temperature) < kCold ? T(kCold) : temperature;
  }
  // y/tanh(y)
  template <class T>
  static T OverTanh(const T& y) {
    return std::fabs(ValueOf(y)) < 1e-4 ? T(1) + y * y / T(3) : y / Tanh(y);
  }
};

// Two exponential tails.
struct Photocurrent {
  enum Input { kFirst, kFirstDecay, kFirstOrigin, kSecond, kSecondDecay, kSecondOrigin };
  static constexpr RowCell kHead[] = {
      Own(0, Wo, "height of the first tail", 1),   Own(0, Wp, "decay of the first tail", 80),
      Own(0, G, "origin of the first tail", 60),   Own(1, Wo, "height of the second tail", 0.5),
      Own(1, Wp, "decay of the second tail", 200), Own(1, G, "origin of the second tail", 100)};
  static constexpr SlotUse kFills[] = {{kRefl, "current"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    for (const std::size_t tail : {kFirst, kSecond}) {
      const T decay = in[tail + 1];
      if (ValueOf(decay) != 0) q[kRefl] += in[tail] * Exp(-(T(in.x) - in[tail + 2]) / decay);
    }
  }
};

// The temperature of a sample with two relaxation rates, whose heater is switched on and off.
struct ThermalRelaxation {
  enum Input { kFirst, kSecond, kOffset, kCapacity, kSecondConductance, kFirstConductance, kOn, kOff };
  static constexpr RowCell kHead[] = {Own(0, Wo, "amplitude of the first step", 1),
                                      Own(0, Wp, "amplitude of the second step", 0.5),
                                      Own(0, G, "offset", 4),
                                      Own(1, Wo, "heat capacity, common divisor of the rates", 2),
                                      Own(1, Wp, "conductance of the second step", 0.02),
                                      Own(1, G, "conductance of the first step", 0.08),
                                      Own(2, Wo, "time at which the heater goes on", 50),
                                      Own(2, Wp, "time at which the heater goes off", 150)};
  static constexpr std::uint64_t kTimes = InputBits({kCapacity, kOn, kOff});
  static constexpr SlotUse kFills[] = {{kRefl, "temperature"},
                                       {kTrans, "first step, 0 to 1", kTimes | InputBits({kFirstConductance})},
                                       {kRp, "second step, 0 to 1", kTimes | InputBits({kSecondConductance})},
                                       {kRs, "rate of change of the temperature", ~InputBits({kOffset})},
                                       {kRps, "1 while the heater is on, else 0", 0}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    if (ValueOf(in[kCapacity]) == 0) return;
    const Step<T> first = StepOf(in, in[kFirstConductance] / in[kCapacity]),
                  second = StepOf(in, in[kSecondConductance] / in[kCapacity]);
    q[kRefl] = in[kOffset] + in[kFirst] * first.height + in[kSecond] * second.height;
    q[kTrans] = first.height;
    q[kRp] = second.height;
    q[kRs] = in[kFirst] * first.slope + in[kSecond] * second.slope;
    q[kRps] = T(in.x >= in.value(kOn) && in.x <= in.value(kOff) ? 1 : 0);
  }

 private:
  template <class T>
  struct Step {
    T height{};
    T slope{};
  };
  template <class T>
  static Step<T> StepOf(const TypeInputs<T>& in, const T& rate) {
    const T x(in.x);
    if (in.x < in.value(kOn)) return {};
    if (in.x <= in.value(kOff)) {
      const T rest = Exp(-(rate * (x - in[kOn])));
      return {T(1) - rest, rate * rest};
    }
    const T left = (T(1) - Exp(-(rate * (in[kOff] - in[kOn])))) * Exp(-(rate * (x - in[kOff])));
    return {left, -(rate * left)};
  }
};

// A mode of fixed frequency, coupled to a magnetic excitation that crosses it.
struct ModeCrossing {
  enum Input { kMode, kFactor, kCoupling };
  static constexpr RowCell kHead[] = {Own(0, Wo, "frequency of the mode, cm-1", 15),
                                      Own(0, Wp, "g factor over 2 of the excitation", 1),
                                      Own(1, Wo, "root of the coupling, cm-1", 5)};
  static constexpr SlotUse kFills[] = {{kE1, "upper branch, cm-1"}, {kE2, "lower branch, cm-1"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const T excitation = T(0.9324 * in.x) * in[kFactor];
    const T B = in[kMode] * in[kMode], D = excitation * excitation, C = in[kCoupling] * in[kCoupling];
    const T split = Root((B - D) * (B - D) + T(4) * C * C);
    q[kE1] = Root(T(0.5) * (B + D + split));
    q[kE2] = Root(T(0.5) * (B + D - split));
  }

 private:
  template <class T>
  static T Root(const T& value) {
    return ValueOf(value) > 0 ? Sqrt(value) : T(0);
  }
};

// Three transitions that shift with a strain.
struct StrainedBand {
  enum Input { kEnergy, kShift, kWidth, kSecond, kSecondShift, kSecondWidth, kThird, kThirdShift, kThirdWidth };
  static constexpr RowCell kHead[] = {Own(0, Wo, "first energy W_1, at which the lines are measured", 100),
                                      Own(0, Wp, "its shift with x", 0.1),
                                      Own(0, G, "its width", 30),
                                      Own(1, Wo, "second energy", 120),
                                      Own(1, Wp, "its shift with x", -0.05),
                                      Own(1, G, "its width", 40),
                                      Own(2, Wo, "third energy", 90),
                                      Own(2, Wp, "its shift with x", 0.02),
                                      Own(2, G, "its width", 50)};
  static constexpr SlotUse kFills[] = {
      {kRefl, "first line", InputBits({kShift, kWidth})},
      {kTrans, "second line", InputBits({kEnergy, kSecond, kSecondShift, kSecondWidth})},
      {kRp, "third line", InputBits({kEnergy, kThird, kThirdShift, kThirdWidth})},
      {kRs, "sum of the lines"},
      {kRps, "first energy minus the second", InputBits({kEnergy, kShift, kSecond, kSecondShift})},
      {kDepth, "third energy", InputBits({kThird, kThirdShift})}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const T x(in.x);
    const T first = in[kEnergy] + in[kShift] * x, second = in[kSecond] + in[kSecondShift] * x,
            third = in[kThird] + in[kThirdShift] * x;
    q[kRefl] = Line(in[kShift] * x, in[kWidth]);
    q[kTrans] = Line(in[kEnergy] - second, in[kSecondWidth]);
    q[kRp] = Line(in[kEnergy] - third, in[kThirdWidth]);
    q[kRs] = q[kRefl] + q[kTrans] + q[kRp];
    q[kRps] = first - second;
    q[kDepth] = third;
  }

 private:
  template <class T>
  static T Line(const T& detuning, const T& width) {
    const T half2 = T(0.25) * width * width, D = detuning * detuning + half2;
    return ValueOf(D) < kTinyNorm ? T(0) : half2 / D;
  }
};

}  // namespace

constinit const ModelType kRaman = FittedType<Raman, AtLeast(3)>(
    113, "Raman",
    {.sample = "light scattered by modes, Stokes and anti-Stokes, on a background",
     .formula = "t = x - x0, n = 1/(2 tanh(1.43988 t/(2T))) - 1/2, p = 1 + c1 t + c2 t^2\n"
                "A = sum S^2 G t/((W^2 - t^2)^2 + G^2 t^2); Q5 = A p (n + 1) + background",
     .source =
         "W. Hayes, R. Loudon, Scattering of Light by Crystals, chapter 1.4; the sum over Lorentz modes is a choice "
         "of this program"});

constinit const ModelType kPhotocurrent = FittedType<Photocurrent, AtLeast(3)>(
    90, "Photocurrent",
    {.sample = "two exponential tails, as of a photocurrent against the energy",
     .formula = "sum of h exp(-(x - x0)/w) over rows 1 and 2; further rows are free",
     .source = "definition",
     .axis = "energy, in the unit of the rows"});

constinit const ModelType kThermalRelaxation = FittedType<ThermalRelaxation, AtLeast(3)>(
    24, "TP-thermo1",
    {.sample = "the temperature of a sample with two relaxation rates, whose heater is switched on and off",
     .formula = "k1 = K1/C, k2 = K2/C; h(k) = 0 before t0, 1 - exp(-k (x - t0)) until t1,\n"
                "then (1 - exp(-k (t1 - t0))) exp(-k (x - t1)); Q0 = offset + a1 h(k1) + a2 h(k2), Q3 = dQ0/dx",
     .source = "two-time-constant relaxation of a calorimeter, R. Bachmann et al., Rev. Sci. Instrum. 43, 205 (1972); "
               "the roles of the rows are a choice of this program",
     .from = 0,
     .to = 300,
     .axis = "time, in the unit of the rows"});

constinit const ModelType kRenvikDalmor = FittedType<ModeCrossing, Exactly(2)>(
    57, "Renvik-Dalmor model",
    {.sample = "a mode and a magnetic excitation that crosses it as the field grows",
     .formula = "B = W^2, D = (0.9324 g x/2)^2, C = c^2; both branches sqrt([B + D +- sqrt((B - D)^2 + 4 C^2)]/2)\n"
                "0.9324 cm-1/T is the energy of one Bohr magneton with g = 2; a branch below 0 is 0",
     .source = "two coupled oscillators; the roles of the rows are a choice of this program",
     .from = 1,
     .to = 35,
     .axis = "magnetic field, T"});

constinit const ModelType kSpecialStrain = FittedType<StrainedBand, Exactly(3)>(
    102, "Special-Strain",
    {.sample = "three transitions of a strained band, measured at one energy",
     .formula = "E_j = W_j + S_j x; lines (G_j/2)^2/((W_1 - E_j)^2 + (G_j/2)^2)",
     .source = "Lorentzian lines with linear shifts; the roles of the rows are a choice of this program",
     .axis = "strain, or an energy"});

}  // namespace kalvex
