// Broadened lines, gaps and bands. D(W, G) = W^2 - w^2 - i w G.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "numeric/faddeeva.h"
#include "terms/formula.h"
#include "terms/term_table.h"
#include "terms/term_tables.h"

namespace kalvex {
namespace {

constexpr double kNoSpread = 1e-10;

struct SpreadLorentzian {
  static constexpr const char* kName = "Lorentzian spread by a Gaussian";
  static constexpr TermCell kCells[] = {Number(0, Wp, "weight A, the squared plasma frequency", "cm-2", 4e4),
                                        Number(0, G, "width G", "cm-1", 12), Number(1, Wp, "resonance W", "cm-1", 300),
                                        Number(1, G, "Gaussian width S", "cm-1", 15)};
  static constexpr TermPage kPage = {
      .formula =
          "mean of A/D over a Gaussian distribution of width S of both poles of 1/D:\n"
          "-i (sqrt(pi) A/(sqrt(2) S))/(2 b) (F(z + b/(sqrt(2) S)) - F(z - b/(sqrt(2) S)))\n"
          "z = (w + i G/2)/(sqrt(2) S), b = sqrt(W^2 - G^2/4), F the Faddeeva function",
      .source = "R. Brendel and D. Bormann, J. Appl. Phys. 71, 1 (1992)",
      .limits = "S below 1e-10 is the Lorentzian A/D(W, G). S should be small compared with W."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const T A = in[0], G = in[1], W = in[2], S = in[3];
    if (ValueOf(S) < kNoSpread) return Divide(Complex<T>{A, T(0)}, DenominatorOf(call.w, W, G), eps);
    const T unit = T(std::numbers::sqrt2) * S;
    const T scale = T(std::sqrt(std::numbers::pi)) * A / unit;
    const Complex<T> centre = Complex<T>{T(call.w), G / T(2)} / unit;
    const T b2 = W * W - G * G / T(4);
    if (std::fabs(ValueOf(b2)) < 1e-10) {
      // (w(z + d) - w(z - d))/(2 d) = w' + w''' d^2/6, d = b/unit; the derivatives need the second part.
      const Complex<T> slope = FaddeevaSlopeOf(centre);
      const Complex<T> third = T(-4) * slope + T(4) * centre * (FaddeevaOf(centre) + centre * slope);
      eps = -TimesI((scale / unit) * (slope + (b2 / (unit * unit) / T(6)) * third));
      return true;
    }
    const Complex<T> b = Sqrt(Complex<T>{b2, T(0)});
    const Complex<T> shift = b / unit;
    eps = -TimesI(scale * (FaddeevaOf(centre + shift) - FaddeevaOf(centre - shift)) / (T(2) * b));
    return true;
  }

  static int Scalar(const TermCall& call, double& result) {
    const double A = call.inputs[0].value, G = call.inputs[1].value, W = call.inputs[2].value, S = call.inputs[3].value;
    PartialWeight mean;
    double dS = 0;
    if (S < kNoSpread) {
      mean = PartialWeightOf(call.w, W, G);
    } else {
      for (const auto& [x, weight] : GaussianNodesOf(*call.environment)) {
        const PartialWeight at = PartialWeightOf(call.w, W + std::numbers::sqrt2 * S * x, G);
        mean.F += weight * at.F;
        mean.dW += weight * at.dW;
        mean.dG += weight * at.dG;
        dS += weight * at.dW * std::numbers::sqrt2 * x;
      }
    }
    result = kWeightUnit * A * mean.F;
    const double slopes[] = {mean.F, A * mean.dG, A * mean.dW, A * dS};
    for (std::size_t i = 0; i < std::size(slopes); ++i) PutScalarSlope(call, i, kWeightUnit * slopes[i]);
    return 0;
  }
};

// (2/pi) integral from Eg to infinity of N(E)/((E^2 - w^2) Q(E)) dE, N = A E0 C (E - Eg)^2, Q = (E^2 - E0^2)^2 + C^2
// E^2, by partial fractions: each pole p adds -(2/pi) c_p log(Eg - p). The poles are +-w, the first slightly above the
// real axis, and the four roots of Q. The sum of all c_p is 0: the upper limit contributes nothing.
struct AmorphousGap {
  static constexpr const char* kName = "absorption of an amorphous semiconductor above its gap";
  static constexpr TermCell kCells[] = {Number(0, Wp, "strength A", "cm-1", 1000),
                                        Number(0, G, "broadening C", "cm-1", 150),
                                        Number(1, Wp, "peak E0", "cm-1", 250), Number(1, G, "gap Eg", "cm-1", 100)};
  static constexpr TermPage kPage = {
      .formula =
          "imaginary part A E0 C (w - Eg)^2/(w ((w^2 - E0^2)^2 + C^2 w^2)) above Eg, 0 below;\n"
          "real part: its Kramers-Kronig transform in closed form",
      .source = "G. E. Jellison and F. A. Modine, Appl. Phys. Lett. 69, 371 and 2137 (1996)",
      .limits =
          "The real part tends to 0 at high frequency. 1e30 in both parts unless E0 and C are above 0 and "
          "Eg is not negative."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const T E0 = in[2], Eg = in[3];
    T C = in[1];
    if (!(ValueOf(E0) > 0 && ValueOf(C) > 0 && ValueOf(Eg) >= 0)) return false;
    // Two roots coincide at C = 2 E0. The broadening is then shifted slightly.
    if (std::fabs(ValueOf(C) / (2 * ValueOf(E0)) - 1) < 1e-7) C = C * T(1 + 2e-7);
    // The function is even in w. A frequency of 0 is replaced by a very small one.
    const double w = std::max(std::fabs(call.w), 1e-6 * ValueOf(E0));
    const T scale = in[0] * E0 * C;
    const auto numerator = [&](const Complex<T>& p) { return scale * ((p - Eg) * (p - Eg)); };

    Complex<T> sum;
    const T w2 = T(w * w) - E0 * E0;
    const T Q = w2 * w2 + C * C * T(w * w);
    for (const double p : {w, -w}) {
      const T gap = Eg - T(p);
      if (ValueOf(gap) == 0) continue;  // the numerator vanishes faster than the logarithm grows
      const Complex<T> logarithm{Log(ValueOf(gap) < 0 ? -gap : gap), T(ValueOf(gap) < 0 ? -std::numbers::pi : 0)};
      sum += numerator({T(p), T(0)}) / (T(2 * p) * Q) * logarithm;
    }
    const T middle = E0 * E0 - C * C / T(2);
    const Complex<T> half = Sqrt(Complex<T>{C * C * (C * C / T(4) - E0 * E0), T(0)});
    for (const double sign : {1.0, -1.0}) {
      const Complex<T> p2 = T(sign) * half + middle, root = Sqrt(p2);
      const Complex<T> rest = (T(4 * sign) * half) * (p2 - T(w * w));  // 2 (p^2 - the other p^2)(p^2 - w^2)
      for (const Complex<T>& p : {root, -root}) sum += numerator(p) / (p * rest) * Log(Eg - p);
    }
    eps = T(-2 / std::numbers::pi) * sum;
    if (w <= ValueOf(Eg)) eps.im = T(0);  // exactly 0: the roots have rounding errors
    if (call.w < 0) eps.im = -eps.im;
    return true;
  }
};

// Cell number `place` in the order of the rows.
constexpr TermCell InOrder(std::size_t place, const char* meaning, const char* unit, double typical, int line) {
  return {static_cast<int>(place / 2), place % 2 == 0 ? Wp : G, meaning, unit, typical, TermUse::kNumber, line};
}

constexpr std::array<TermCell, 16> GaussianCells() {
  std::array<TermCell, 16> cells{};
  cells[0] = InOrder(0, "gap g", "cm-1", 60, 0);
  for (std::size_t i = 1; i < cells.size(); i += 3) {
    const auto line = static_cast<int>(i / 3 + 1);
    cells[i] = InOrder(i, "area A", "cm-1", 800, line);
    cells[i + 1] = InOrder(i + 1, "centre c", "cm-1", 20 + 60 * line, line);
    cells[i + 2] = InOrder(i + 2, "width s", "cm-1", 40, line);
  }
  return cells;
}

struct GaussiansAndEdge {
  static constexpr const char* kName = "Gaussian lines and the edge of a gap";
  static constexpr auto kCells = GaussianCells();
  static constexpr bool kReplacesRealPart = true;
  static constexpr TermPage kPage = {
      .formula =
          "real part: sum of A N(w - c, s), N the normalised Gaussian; it replaces the real part of all earlier terms\n"
          "imaginary part: 60 X/w, X = E(w, g) times the sum of A N(g - c, s) above 2 g, 0 below\n"
          "E = (g^2 log((w - g + r)/g) + (w + g) r)/(w sqrt(w^2 - g^2)), r^2 = w (w - 2 g)",
      .source = "formula adopted as given; the order of the inputs is our choice",
      .limits =
          "E is 1 without a gap. All codes need a row, even if its columns are not used. An "
          "unused line has A = 0. A line with s = 0 is ignored.",
      .causal = false,
      .causality = "Real and imaginary part are independent of each other."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static T Lines(const std::array<T, kInputs>& in, const T& at) {
    T sum(0);
    for (std::size_t k = 1; k < kInputs; k += 3) {
      if (std::fabs(ValueOf(in[k + 2])) < 1e-15) continue;
      const T x = (at - in[k + 1]) / in[k + 2];
      sum += in[k] * Exp(T(-0.5) * x * x) / (T(std::sqrt(2 * std::numbers::pi)) * in[k + 2]);
    }
    return sum;
  }

  // 1 for a vanishing gap.
  template <class T>
  static T Edge(double w, const T& g) {
    if (ValueOf(g) < 1e-15) return T(1);
    const T r = Sqrt(T(w) * (T(w) - T(2) * g));
    return (g * g * Log((T(w) - g + r) / g) + (T(w) + g) * r) / (T(w) * Sqrt(T(w * w) - g * g));
  }

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const double w = call.w;
    const T g = in[0];
    const bool absorbs = w > 0 && w > 2 * ValueOf(g);
    eps = {Lines(in, T(w)), absorbs ? T(60 / w) * Edge(w, g) * Lines(in, g) : T(0)};
    return true;
  }
};

// The lines have triples of inputs A, W, G. If the number of inputs is not a multiple of three, the remaining inputs
// come first: one input is a factor of the whole sum; two are weight and width of a Drude term.
template <std::size_t kInputs>
constexpr std::array<TermCell, kInputs> BandCells() {
  constexpr std::size_t kFront = kInputs % 3, kSpacing = 400 / (kInputs / 3);
  std::array<TermCell, kInputs> cells{};
  if (kFront == 1) cells[0] = InOrder(0, "factor of the whole sum", "", 1.5, 0);
  if (kFront == 2) {
    cells[0] = InOrder(0, "weight A0 of the Drude term", "cm-2", 1e6, 0);
    cells[1] = InOrder(1, "width G0 of the Drude term", "cm-1", 30, 0);
  }
  for (std::size_t i = kFront; i < kInputs; i += 3) {
    const std::size_t k = i / 3;
    const auto line = static_cast<int>(k + 1);
    cells[i] = InOrder(i, "weight A", "cm-2", 1e4, line);
    cells[i + 1] = InOrder(i + 1, "resonance W", "cm-1", static_cast<double>(90 + kSpacing * k), line);
    cells[i + 2] = InOrder(i + 2, "width G", "cm-1", 12, line);
  }
  return cells;
}

template <std::size_t kInputs>
struct Bands {
  static constexpr const char* kName = kInputs % 3 == 0   ? "sum of Lorentzians"
                                       : kInputs % 3 == 1 ? "sum of Lorentzians with a common factor"
                                                          : "sum of Lorentzians and a Drude term";
  static constexpr auto kCells = BandCells<kInputs>();
  static constexpr TermPage kPage = {
      .formula = kInputs % 3 == 0   ? "sum of A/D(W, G) over the lines"
                 : kInputs % 3 == 1 ? "the factor times the sum of A/D(W, G) over the lines"
                                    : "A0/D(0, G0) + sum of A/D(W, G) over the lines",
      .source = "formula adopted as given; the order of the inputs is our choice",
      .limits =
          "All codes need a row. An unused line has A = 0 and a width above 0. 1e30 in both parts "
          "where one D is 0."};

  static int Calc(const TermCall& call, Cplx& result) {
    const std::size_t front = call.inputs.size() % 3;
    const double factor = front == 1 ? call.inputs[0].value : 1;
    Cplx sum;
    for (std::size_t i = front; i < call.inputs.size(); i += 3) {
      const TermInput &A = call.inputs[i], &W = call.inputs[i + 1], &G = call.inputs[i + 2];
      const Cplx D = OscillatorDenominator(call.w, W.value, G.value);
      if (Norm(D) < kTinyNorm) {
        GiveMarker(call, result);
        return 0;
      }
      const Cplx inverse = Cplx{1, 0} / D, line = A.value * inverse;
      sum += line;
      if (!call.derivatives) continue;
      PutSlope(A, factor * inverse);
      PutSlope(W, (-2 * factor * W.value) * (line * inverse));
      PutSlope(G, (factor * call.w) * TimesI(line * inverse));
    }
    result = factor * sum;
    if (front == 1 && call.derivatives) PutSlope(call.inputs[0], sum);
    if (front != 2) return 0;

    const TermInput &weight = call.inputs[0], &width = call.inputs[1];
    const Cplx D = OscillatorDenominator(call.w, 0.0, width.value);
    if (Norm(D) < kTinyNorm) {
      GiveMarker(call, result);
      return 0;
    }
    const Cplx inverse = Cplx{1, 0} / D, drude = weight.value * inverse;
    result += drude;
    if (call.derivatives) {
      PutSlope(weight, inverse);
      PutSlope(width, call.w * TimesI(drude * inverse));
    }
    return 0;
  }
};

}  // namespace

constinit const TermRecord kSpreadLorentzian47 = MakeTerm<SpreadLorentzian, 47, 48>();
constinit const TermRecord kSpreadLorentzian49 = MakeTerm<SpreadLorentzian, 49, 50>();
constinit const std::array<TermRecord, 6> kAmorphousGaps =
    MakePairs<AmorphousGap, 200>(std::make_integer_sequence<int, 6>());
constinit const TermRecord kGaussiansAndEdge = MakeTerm<GaussiansAndEdge, 220, 230>();
constinit const TermRecord kBands240 = MakeTerm<Bands<18>, 240, 251>();
constinit const TermRecord kBands260 = MakeTerm<Bands<7>, 260, 263>();
constinit const TermRecord kBands270 = MakeTerm<Bands<14>, 270, 276>();
constinit const TermRecord kBands287 = MakeTerm<Bands<31>, 287, 303>();
constinit const TermRecord kBands400 = MakeTerm<Bands<34>, 400, 421>();
constinit const TermRecord kBands500 = MakeTerm<Bands<26>, 500, 512>();
constinit const TermRecord kBands600 = MakeTerm<Bands<82>, 600, 640>();

}  // namespace kalvex
