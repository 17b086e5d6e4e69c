#include "terms/superconductor.h"

#include <cmath>

#include "terms/formula.h"
#include "terms/gap_table.h"
#include "terms/superconductor_integral.h"
#include "terms/term_tables.h"
#include "terms/units.h"

namespace kalvex {
namespace {

constexpr double kGapOfTc = 3.52;
constexpr double kQuarterTurn = 1.5707963267948966;
constexpr double kLeastGap = 1e-10;  // of the frequency

template <class T>
T Magnitude(const T& x) {
  return ValueOf(x) < 0 ? -x : x;
}
// A temperature below zero counts as zero.
template <class T>
T ZeroOrAbove(const T& x) {
  return ValueOf(x) > 0 ? x : T(0);
}

Cplx PairIntegralOf(double X, double Y, double t) { return PairIntegral(X, Y, t); }

// The quadrature carries derivatives by its three arguments only; the chain rule goes on from there.
template <int N>
Complex<Dual<N>> PairIntegralOf(const Dual<N>& X, const Dual<N>& Y, const Dual<N>& t) {
  const Complex<Dual<3>> J = PairIntegral(Dual<3>(X.a, 0), Dual<3>(Y.a, 1), Dual<3>(t.a, 2));
  const auto chain = [&](const Dual<3>& f) {
    return Dual<N>::Along(f.a, f.v[0], X, f.v[1], Y) + Dual<N>::Along(0, f.v[2], t);
  };
  return {chain(J.re), chain(J.im)};
}

template <class T>
Complex<T> NormalTerm(double w, const T& Wp, const T& G) {
  return Complex<T>(-(Wp * Wp), 0) / Complex<T>(w * w, w * Magnitude(G));
}

// kT in cm-1. False where a denominator fails or an argument is not a number.
template <class T>
bool PairedTerm(double w, const T& Wp, const T& width, const T& gap, const T& kT, Complex<T>& eps) {
  const T G = Magnitude(width);
  if (IsTiny(w * ValueOf(G))) return false;
  const double k = std::fabs(w);
  if (!(ValueOf(gap) > kLeastGap * k)) {
    eps = NormalTerm(w, Wp, G);
    return true;
  }
  const T X = k / gap, Y = G / gap, t = ZeroOrAbove(kT) / gap;
  if (!std::isfinite(ValueOf(X) + ValueOf(Y) + ValueOf(t))) return false;
  eps = PairIntegralOf(X, Y, t) * (-(Wp * Wp) / (2 * k * k));
  if (w < 0) eps = Conj(eps);
  return true;
}

struct TwoFluids {
  static constexpr int kInputs = 6;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const auto& [Wp, G, gapAtZero, Tc, temperature, u] = in;
    const T t = ZeroOrAbove(temperature);
    const bool normal = !(ValueOf(t) < ValueOf(Tc));
    const T gap = normal ? T(0) : Magnitude(gapAtZero) * ReducedGap(GapTableOf(*call.environment), t / Tc);
    Complex<T> paired;
    if (!PairedTerm(call.w, Wp, G, gap, kKelvin * t, paired)) return false;
    eps = normal ? paired : paired * (1.0 - u) + NormalTerm(call.w, Wp, G) * u;
    return true;
  }
};

struct OfTc {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const auto& [Wp, G, temperature, Tc] = in;
    const T t = ZeroOrAbove(temperature);
    T gap = 0;
    if (ValueOf(t) < ValueOf(Tc)) {
      const T ratio = t / Tc;
      gap = kGapOfTc * kKelvin * Tc * Sqrt(Cos(kQuarterTurn * ratio * ratio));
    }
    return PairedTerm(call.w, Wp, G, gap, kKelvin * t, eps);
  }
};

struct OfGap {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const auto& [Wp, G, gap, temperature] = in;
    return PairedTerm(call.w, Wp, G, Magnitude(gap), kKelvin * temperature, eps);
  }
};

}  // namespace

int CalcTwoFluidSuperconductor(const TermCall& call, Cplx& result) { return CalcFormula<TwoFluids>(call, result); }
int CalcSuperconductorOfTc(const TermCall& call, Cplx& result) { return CalcFormula<OfTc>(call, result); }
int CalcSuperconductorOfGap(const TermCall& call, Cplx& result) { return CalcFormula<OfGap>(call, result); }

}  // namespace kalvex
