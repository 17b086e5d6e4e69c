// Superconductors of arbitrary purity: eps = i Wp^2/(w G) S, with the reduced conductivity S of Zimmermann et al.,
// Physica C 183, 99 (1991), see superconductor_integral.h.
//
// All of them become the Drude term -Wp^2/(w^2 + i w G) without a gap, and for w above 1e10 gaps. The signs of G and of
// the gap have no influence; eps(-w) = conj eps(w). The result is the marker if (w G)^2 is below 1e-30.
#include <cmath>

#include "terms/formula.h"
#include "terms/gap_table.h"
#include "terms/superconductor_integral.h"
#include "terms/term_table.h"
#include "terms/term_tables.h"
#include "terms/units.h"

namespace kalvex {
namespace {

constexpr double kGapOfTc = 3.52;
constexpr double kQuarterTurn = 1.5707963267948966;
constexpr double kLeastGap = 1e-10;  // relative to the frequency

template <class T>
T Magnitude(const T& x) {
  return ValueOf(x) < 0 ? -x : x;
}
// A temperature below zero is treated as zero.
template <class T>
T ZeroOrAbove(const T& x) {
  return ValueOf(x) > 0 ? x : T(0);
}

Cplx PairIntegralOf(double X, double Y, double t) { return PairIntegral(X, Y, t); }

// The quadrature has derivatives by its three arguments only. The chain rule is applied afterwards.
template <std::size_t N>
Complex<Dual<N>> PairIntegralOf(const Dual<N>& X, const Dual<N>& Y, const Dual<N>& t) {
  const Complex<Dual<3>> J = PairIntegral(Dual<3>(X.a, 0), Dual<3>(Y.a, 1), Dual<3>(t.a, 2));
  const auto chain = [&](const Dual<3>& f) {
    return Dual<N>::Along(f.a, f.v[0], X, f.v[1], Y) + Dual<N>::Along(0, f.v[2], t);
  };
  return {chain(J.re), chain(J.im)};
}

template <class T>
Complex<T> NormalTerm(double w, const T& Wp, const T& G) {
  return Complex<T>{-(Wp * Wp), T(0)} / Complex<T>{T(w * w), w * Magnitude(G)};
}

// kT in cm-1. False if a denominator vanishes or an argument is NaN.
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

constexpr const char* kPoleAtZero =
    "The weight Ws^2 that the gap removes from the absorption appears in the real part as -Ws^2/w^2.";

struct UnpairedShare {
  static constexpr const char* kName = "superconductor with a share of unpaired carriers";
  static constexpr TermCell kCells[] = {Number(0, Wp, "plasma frequency Wp", "cm-1", 3000),
                                        Number(0, G, "rate G", "cm-1", 150),
                                        Number(1, Wp, "gap 2 Delta at T = 0", "cm-1", 120),
                                        Number(1, G, "Tc", "K", 50),
                                        Number(2, Wp, "temperature T", "K", 20),
                                        Number(2, G, "fraction u of unpaired weight", "", 0.2)};
  static constexpr TermPage kPage = {
      .formula =
          "(1 - u) i Wp^2/(w G) S(w, G, 2 Delta d(T/Tc), T) + u times the Drude term -Wp^2/(w^2 + i w G)\n"
          "S the reduced conductivity, d the solution of the weak-coupling gap equation",
      .source =
          "W. Zimmermann et al., Physica C 183, 99 (1991); gap: B. Muehlschlegel, Z. Physik 155, 313 (1959); the "
          "two fluids are our choice",
      .limits =
          "From Tc on, and for u = 1, a Drude term. T below 0 is treated as 0. Where w or G is 0: 1e30 in both "
          "parts.",
      .causality = kPoleAtZero};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const auto& [Wp, G, gapAtZero, Tc, temperature, u] = in;
    const T t = ZeroOrAbove(temperature);
    const bool normal = !(ValueOf(t) < ValueOf(Tc));
    const T gap = normal ? T(0) : Magnitude(gapAtZero) * ReducedGap(GapTableOf(*call.environment), t / Tc);
    Complex<T> paired;
    if (!PairedTerm(call.w, Wp, G, gap, kWavenumberPerKelvin * t, paired)) return false;
    eps = normal ? paired : paired * (1.0 - u) + NormalTerm(call.w, Wp, G) * u;
    return true;
  }
};

struct GapOfTc {
  static constexpr const char* kName = "superconductor whose gap follows from Tc";
  static constexpr TermCell kCells[] = {Number(0, Wp, "plasma frequency Wp", "cm-1", 3000),
                                        Number(0, G, "rate G", "cm-1", 150), Number(1, Wp, "temperature T", "K", 20),
                                        Number(1, G, "Tc", "K", 50)};
  static constexpr TermPage kPage = {
      .formula =
          "i Wp^2/(w G) S(w, G, 2 Delta, T), 2 Delta = 3.52 kTc sqrt(cos(pi/2 (T/Tc)^2)), S the reduced conductivity",
      .source = "W. Zimmermann et al., Physica C 183, 99 (1991); gap: T. P. Sheahen, Phys. Rev. 149, 368 (1966)",
      .limits = "A Drude term from Tc on. T below 0 is treated as 0. Where w or G is 0: 1e30 in both parts.",
      .causality = kPoleAtZero};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const auto& [Wp, G, temperature, Tc] = in;
    const T t = ZeroOrAbove(temperature);
    T gap = 0;
    if (ValueOf(t) < ValueOf(Tc)) {
      const T ratio = t / Tc;
      gap = kGapOfTc * kWavenumberPerKelvin * Tc * Sqrt(Cos(kQuarterTurn * ratio * ratio));
    }
    return PairedTerm(call.w, Wp, G, gap, kWavenumberPerKelvin * t, eps);
  }
};

struct GivenGap {
  static constexpr const char* kName = "superconductor with a given gap";
  static constexpr TermCell kCells[] = {Number(0, Wp, "plasma frequency Wp", "cm-1", 3000),
                                        Number(0, G, "rate G", "cm-1", 150), Number(1, Wp, "gap 2 Delta", "cm-1", 120),
                                        Number(1, G, "temperature T", "K", 20)};
  static constexpr TermPage kPage = {
      .formula = "i Wp^2/(w G) S(w, G, 2 Delta, T), S the reduced conductivity",
      .source = "W. Zimmermann et al., Physica C 183, 99 (1991)",
      .limits =
          "Without a gap a Drude term. At low T it does not absorb below 2 Delta. With G far above the gap it "
          "is the term of D. C. Mattis and J. Bardeen, Phys. Rev. 111, 412 (1958). T below 0 is treated as 0. "
          "Where w or G is 0: 1e30 in both parts.",
      .causality = kPoleAtZero};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const auto& [Wp, G, gap, temperature] = in;
    return PairedTerm(call.w, Wp, G, Magnitude(gap), kWavenumberPerKelvin * temperature, eps);
  }
};

}  // namespace

constinit const TermRecord kSuperconductorWithUnpairedShare = MakeTerm<UnpairedShare, 20, 22>();
constinit const TermRecord kSuperconductorOfTc = MakeTerm<GapOfTc, 7, 8>();
constinit const TermRecord kSuperconductorOfGap = MakeTerm<GivenGap, 23, 24>();

}  // namespace kalvex
