// Terms of free and scattered carriers. A term given as a conductivity sigma in ohm-1 cm-1 adds i 60 sigma/w.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "terms/formula.h"
#include "terms/term_table.h"

namespace kalvex {
namespace {

template <class T>
Complex<T> Rate(const T& g, double w) {  // g - i w
  return {g, T(-w)};
}

bool IsZero(double x) { return std::fabs(x) < kTinyNorm; }

// i 60 sigma/w
template <class T>
Complex<T> OfConductivity(const Complex<T>& sigma, double w) {
  return TimesI(sigma) * T(60 / w);
}

// The marker of a term that contributes to only one part.
int GivePart(const TermCall& call, const Cplx& marker, Cplx& result) {
  GiveMarker(call, result);
  result = marker;
  return 0;
}

Cplx Power(const Cplx& z, double exponent) { return Exp(exponent * Log(z)); }

struct PowerLawDrude {
  static constexpr const char* kName = "Drude term whose width follows a power law";
  static constexpr TermCell kCells[] = {Number(0, Wp, "plasma frequency Wp", "cm-1", 2000),
                                        Number(1, Wp, "exponent a, limited to 0 to 0.5", "", 0.3),
                                        Number(0, G, "width G1", "cm-1", 20), Number(1, G, "width G2", "cm-1", 200)};
  static constexpr TermPage kPage = {
      .formula = "-Wp^2/(w (w + i G1)^(2a) (w + i G2)^(1 - 2a))",
      .source = "a Drude term between two widths; formula adopted as given",
      .limits =
          "a = 0.5 is the Drude term with G1, a = 0 that with G2. An exponent outside 0 to 0.5 is replaced "
          "by the nearest limit, and its derivative is the one there. 1e30 in both parts at w = 0."};

  static int Calc(const TermCall& call, Cplx& result) {
    const double Wp = call.inputs[0].value, a = std::clamp(call.inputs[1].value, 0.0, 0.5), w = call.w;
    const Cplx z1{w, call.inputs[2].value}, z2{w, call.inputs[3].value};
    const Cplx c = w * (Power(z1, 2 * a) * Power(z2, 1 - 2 * a));
    if (!(Norm(c) >= kTinyNorm)) {
      GiveMarker(call, result);
      return 0;
    }
    result = Cplx{-Wp * Wp, 0} / c;
    if (call.derivatives) {
      PutSlope(call.inputs[0], Cplx{-2 * Wp, 0} / c);
      PutSlope(call.inputs[1], -2.0 * (result * Log(z1 / z2)));
      PutSlope(call.inputs[2], (-2 * a) * (TimesI(result) / z1));
      PutSlope(call.inputs[3], -(1 - 2 * a) * (TimesI(result) / z2));
    }
    return 0;
  }
};

// The term is the Stieltjes transform of the density of rates: with u = 1 + 2 (G - i w)/W the bracket below is (2/pi)
// times the integral of (1 - x^2)^(3/2)/(u - x) over x from -1 to 1.
struct SpreadRates {
  static constexpr const char* kName = "carriers whose rates spread over a range, few at its ends";
  static constexpr TermCell kCells[] = {Number(0, Wp, "half the static conductivity for G = 0, S", "ohm-1 cm-1", 50),
                                        Number(0, G, "least rate G", "cm-1", 30),
                                        Number(1, G, "range W of the rates", "cm-1", 300)};
  static constexpr TermPage kPage = {
      .formula =
          "(2 i 60/w) S ((1 + 2 z^2)(1 - 8 z^4 - 8 z^2) + 16 (z^3 + z^5) q),\n"
          "z = sqrt((G - i w)/W), q = sqrt(1 + z^2)\n"
          "This is a sum of Drude terms with rates G + W (1 - x)/2, x from -1 to 1, with weights proportional to\n"
          "(1 - x^2)^(3/2).",
      .source = "formula adopted as given; the sum of Drude terms follows from the Stieltjes transform of the weights",
      .limits =
          "Far above the rates it is a Drude term with sigma = 3 S W/(4 (G + W/2 - i w)). Where w, G or W is 0: "
          "0 in the real part, 1e30 in the imaginary part.",
      .causality = "This holds for G and W above 0."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const Complex<T> z2 = Rate(in[1], call.w) / in[2], z4 = z2 * z2;
    const Complex<T> z = Sqrt(z2), q = Sqrt(z2 + T(1));
    const Complex<T> bracket = (T(2) * z2 + T(1)) * (T(1) - T(8) * z4 - T(8) * z2) + T(16) * (z * z2 + z * z4) * q;
    eps = OfConductivity(T(2) * (in[0] * bracket), call.w);
    return true;
  }

  static int Calc(const TermCall& call, Cplx& result) {
    if (IsZero(call.w) || IsZero(call.inputs[1].value) || IsZero(call.inputs[2].value)) {
      return GivePart(call, {0, kNoValue}, result);
    }
    return CalcFormula<SpreadRates>(call, result);
  }
};

struct RateAroundTheSurface {
  static constexpr const char* kName = "carriers whose rate varies around the Fermi surface";
  static constexpr TermCell kCells[] = {
      Number(0, Wp, "conductivity sigma, the static one for H = 0", "ohm-1 cm-1", 2000),
      Number(0, G, "least rate G", "cm-1", 40), Number(1, G, "range H of the rates", "cm-1", 300)};
  static constexpr TermPage kPage = {
      .formula =
          "(i 60/w) sigma G/(sqrt(G - i w) sqrt(G + H - i w))\n"
          "This is the mean over the angle t of i 60 sigma_t/w, sigma_t = sigma G/(G + H sin^2(t/2) - i w).",
      .source = "formula adopted as given; compare L. B. Ioffe and A. J. Millis, Phys. Rev. B 58, 11631 (1998)",
      .limits =
          "H -> 0 is a Drude term. The static conductivity is sigma sqrt(G/(G + H)). Where w, G or H is 0: "
          "1e30 in the real part, 0 in the imaginary part."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const Complex<T> roots = Sqrt(Rate(in[1], call.w)) * Sqrt(Rate(in[1] + in[2], call.w));
    Complex<T> sigma;
    if (!Divide(Complex<T>{in[0] * in[1], T(0)}, roots, sigma)) return false;
    eps = OfConductivity(sigma, call.w);
    return true;
  }

  static int Calc(const TermCall& call, Cplx& result) {
    if (IsZero(call.w) || IsZero(call.inputs[1].value) || IsZero(call.inputs[2].value)) {
      return GivePart(call, {kNoValue, 0}, result);
    }
    return CalcFormula<RateAroundTheSurface>(call, result);
  }
};

struct BackScattering {
  static constexpr const char* kName = "Drude term with back-scattering";
  static constexpr TermCell kCells[] = {Number(0, Wp, "plasma frequency Wp", "cm-1", 2000),
                                        Number(1, Wp, "share c of the velocity that a collision keeps", "", -0.7),
                                        Number(0, G, "rate G1", "cm-1", 100),
                                        Number(1, G, "rate G2 of the back-scattering", "cm-1", 100)};
  static constexpr TermPage kPage = {
      .formula = "i 60 sigma/w, sigma = (Wp^2/60)/(G1 - i w) (1 + c G2/(G2 - i w))",
      .source =
          "N. V. Smith, Phys. Rev. B 64, 155106 (2001), with a separate rate for the back-scattering (our choice)",
      .limits = "c = 0 is a Drude term; c = -1 has no static conductivity. 1e30 in both parts at w = 0."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    if (IsZero(call.w)) return false;
    Complex<T> drude, back;
    if (!Divide(Complex<T>{in[0] * in[0] / T(60), T(0)}, Rate(in[2], call.w), drude)) return false;
    if (!Divide(Complex<T>{in[1] * in[3], T(0)}, Rate(in[3], call.w), back)) return false;
    eps = OfConductivity(drude * (back + T(1)), call.w);
    return true;
  }
};

struct TwoFluids {
  static constexpr const char* kName = "two fluids: pinned carriers beside a constant conductivity";
  static constexpr TermCell kCells[] = {
      Number(0, Wp, "plasma frequency Wp", "cm-1", 2000), Number(0, G, "rate G1 at which the mode relaxes", "cm-1", 60),
      Number(1, Wp, "rate G2 at which the carriers scatter", "cm-1", 40),
      Number(1, G, "frequency W of the pinned mode", "cm-1", 150),
      Number(2, Wp, "constant conductivity S, as a rate: 4 pi S/60 ohm-1 cm-1", "cm-1", 100)};
  static constexpr TermPage kPage = {
      .formula = "(i/w)(4 pi S + Wp^2 (G1 - i w)/((G1 - i w)(G2 - i w) + W^2))",
      .source = "formula adopted as given; compare L. V. Delacretaz et al., SciPost Phys. 3, 025 (2017)",
      .limits =
          "W = 0 is the Drude term with the width G2 plus a constant conductivity. G1 = 0 is a "
          "Lorentzian at W. 1e30 in both parts at w = 0."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    if (IsZero(call.w)) return false;
    const Complex<T> first = Rate(in[1], call.w);
    Complex<T> fluid;
    if (!Divide(in[0] * in[0] * first, first * Rate(in[2], call.w) + in[3] * in[3], fluid)) return false;
    eps = TimesI(fluid + T(4 * std::numbers::pi) * in[4]) / T(call.w);
    return true;
  }
};

struct DiracStep {
  static constexpr const char* kName = "interband step of a layer of Dirac electrons";
  static constexpr TermCell kCells[] = {
      Number(0, Wp, "broadening B", "cm-1", 30), Number(0, G, "chemical potential m", "cm-1", 100),
      Number(1, Wp, "temperature T", "K", 50), Number(1, G, "layer spacing d", "angstrom", 3.35)};
  static constexpr TermPage kPage = {
      .formula =
          "real part 0, imaginary part 60 X/w,\n"
          "X = 1816.5 (3.35/d) 1/2 [tanh(h (w/2 - m)/2T) - tanh(h (-w/2 - m)/2T)] w^2/(w^2 + 4 B^2)\n"
          "h = 1.43831 cm K, 1816.5 ohm-1 cm-1 the conductivity e^2/(4 hbar) of a layer 3.35 angstrom thick",
      .source =
          "T. Ando, Y. Zheng and H. Suzuura, J. Phys. Soc. Jpn. 71, 1318 (2002); the factor with B is adopted "
          "as given",
      .limits = "At low T: a step at w = 2 m. T and w are held at 1e-10 or more. 1e30 in both parts for d = 0.",
      .causal = false,
      .causality = "The real part is not the Kramers-Kronig transform of the absorption."};
  static constexpr std::size_t kInputs = std::size(kCells);
  static constexpr double kSecondRadiationConstant = 1.4383137011779292;  // h c/k_B, cm K
  static constexpr double kFloor = 1e-10;

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const double w = std::max(call.w, kFloor);
    if (Norm(Cplx{ValueOf(in[3]), 0}) < kTinyNorm) return false;
    const T T2 = T(2) * (in[2] > T(kFloor) ? in[2] : T(kFloor));
    const T step = Tanh(T(kSecondRadiationConstant) * (T(w / 2) - in[1]) / T2) -
                   Tanh(T(kSecondRadiationConstant) * (T(-w / 2) - in[1]) / T2);
    const T X = T(1816.5 * 3.35 * 0.5) / in[3] * step * T(w * w) / (T(4) * in[0] * in[0] + T(w * w));
    eps = {T(0), T(60 / w) * X};
    return true;
  }
};

}  // namespace

constinit const TermRecord kPowerLawDrude = MakeTerm<PowerLawDrude, 1, 2>();
constinit const TermRecord kSpreadRates = MakeTerm<SpreadRates, 3, 4>();
constinit const TermRecord kRateAroundTheSurface5 = MakeTerm<RateAroundTheSurface, 5, 6>();
constinit const TermRecord kRateAroundTheSurface11 = MakeTerm<RateAroundTheSurface, 11, 12>();
constinit const TermRecord kRateAroundTheSurface13 = MakeTerm<RateAroundTheSurface, 13, 14>();
constinit const TermRecord kBackScattering = MakeTerm<BackScattering, 33, 34>();
constinit const TermRecord kDiracStep = SharingCodes(MakeTerm<DiracStep, 60, 61>());
constinit const TermRecord kTwoFluids = MakeTerm<TwoFluids, 140, 142>();

}  // namespace kalvex
