#include "terms/interband_terms.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "numeric/faddeeva.h"
#include "terms/formula.h"
#include "terms/term_tables.h"

namespace kalvex {
namespace {

constexpr double kNoSpread = 1e-10;

struct Family47 {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const T A = in[0], G = in[1], W = in[2], S = in[3];
    if (ValueOf(S) < kNoSpread) return Divide(Complex<T>{A, T(0)}, DenominatorOf(call.w, W, G), eps);
    const T unit = T(std::numbers::sqrt2) * S;
    const T scale = T(std::sqrt(std::numbers::pi)) * A / unit;
    const Complex<T> centre = Complex<T>{T(call.w), G / T(2)} / unit;
    const T b2 = W * W - G * G / T(4);
    if (std::fabs(ValueOf(b2)) < 1e-10) {
      // (w(z + d) - w(z - d))/(2 d) = w' + w''' d^2/6, d = b/unit; the second part is there for the derivatives.
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
};

// (2/pi) integral from Eg to infinity of N(E)/((E^2 - w^2) Q(E)) dE, N = A E0 C (E - Eg)^2, Q = (E^2 - E0^2)^2 + C^2
// E^2, by partial fractions: each pole p adds -(2/pi) c_p log(Eg - p). The poles are +-w, the first a little above the
// axis, and the four roots of Q. The sum of all c_p is 0, so that the upper end adds nothing.
struct Family200 {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const T E0 = in[2], Eg = in[3];
    T C = in[1];
    if (!(ValueOf(E0) > 0 && ValueOf(C) > 0 && ValueOf(Eg) >= 0)) return false;
    // Two roots meet at C = 2 E0: the broadening then counts a little beside.
    if (std::fabs(ValueOf(C) / (2 * ValueOf(E0)) - 1) < 1e-7) C = C * T(1 + 2e-7);
    // Even in w, so that a frequency of 0 may count as a very small one.
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
    if (w <= ValueOf(Eg)) eps.im = T(0);  // exactly: the roots leave their rounding
    if (call.w < 0) eps.im = -eps.im;
    return true;
  }
};

struct Gauss220 {
  static constexpr int kInputs = 16;

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

}  // namespace

int CalcFamily47(const TermCall& call, Cplx& result) { return CalcFormula<Family47>(call, result); }
int CalcFamily200(const TermCall& call, Cplx& result) { return CalcFormula<Family200>(call, result); }
int CalcGauss220(const TermCall& call, Cplx& result) { return CalcFormula<Gauss220>(call, result); }

int ScalarFamily47(const TermCall& call, double& result) {
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

int CalcBands(const TermCall& call, Cplx& result) {
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

}  // namespace kalvex
