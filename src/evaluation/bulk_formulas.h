// The closed formulas of the Quantities of a bulk sample, as templates. T is double, or Pack for many frequencies at a
// time. K is the number of complex derivatives: 0, 1 (by eps), or 2 (by eps and by the permeability mu).
//
// A pack takes a branch of a formula only if all of its lanes do. Otherwise the functions return false, and the lanes
// must be computed one by one. With double they always return true.
#pragma once

#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "evaluation/quantity_formulas.h"
#include "numeric/complex.h"
#include "numeric/real.h"
#include "records/model.h"

namespace kalvex::bulk {

inline constexpr double kTwoPi = 2 * std::numbers::pi;
inline constexpr double kTinySquared = kTinyNorm * kTinyNorm;

template <class T>
using Input = QuantityInputOf<T>;

// One complex number with its derivatives.
template <class T, std::size_t K>
struct Slope {
  Complex<T> z;
  std::array<Complex<T>, K> d{};
};

// An array of derivatives; slopeOf(k) returns the k-th.
template <class T, std::size_t K, class SlopeOf>
std::array<Complex<T>, K> Slopes(SlopeOf slopeOf) {
  std::array<Complex<T>, K> d;
  for (std::size_t k = 0; k < K; ++k) d[k] = slopeOf(k);
  return d;
}

template <class T, std::size_t K>
Slope<T, K> ScaledBy(const Slope<T, K>& s, const T& factor) {
  return {s.z * factor, Slopes<T, K>([&](std::size_t k) { return s.d[k] * factor; })};
}

template <class T, std::size_t K>
Slope<T, K> Constant(const Complex<T>& z) {
  return {z, {}};
}

// eps with its derivatives.
template <class T, std::size_t K>
Slope<T, K> OfEps(const Complex<T>& eps) {
  return {eps, Slopes<T, K>([](std::size_t k) { return Complex<T>{T(k == 0 ? 1.0 : 0.0), T(0)}; })};
}

// n = sqrt(eps mu) and the reflection amplitude r = (sqrt(mu) - sqrt(eps))/(sqrt(mu) + sqrt(eps)) of the surface at
// normal incidence; sqrt(mu) = 1 without a permeability.
template <class T, std::size_t K>
struct Surface {
  Slope<T, K> n;
  Slope<T, K> r;
};

template <std::size_t K, class T>
Surface<T, K> SurfaceOf(const Complex<T>& eps) {
  const Complex<T> n = Sqrt(eps), inverse = T(1) / (T(1) + n), r = (T(1) - n) * inverse;
  Surface<T, K> out{{n, {}}, {r, {}}};
  if constexpr (K > 0) {
    out.n.d[0] = T(0.5) / n;
    out.r.d[0] = T(-2) * (inverse * inverse) * out.n.d[0];
  }
  return out;
}

inline Surface<double, 2> SurfaceOf(const Cplx& eps, const Cplx& mu) {
  const Cplx a = Sqrt(eps), b = Sqrt(mu);
  const Cplx n = a * b, sum = a + b;
  const Cplx square = sum * sum;
  return {{n, {0.5 * (n / eps), 0.5 * (n / mu)}},
          {(b - a) / sum, {-(b / square) * (a / eps), (a / square) * (b / mu)}}};
}

template <class Out>
void ClearSlopes(Out& out) {
  out.dRe = out.dIm = 0;
  if constexpr (requires { out.dMuRe; }) out.dMuRe = out.dMuIm = 0;
}

// Adds factor |t|^2 and its derivatives.
template <class T, std::size_t K, class Out>
void AddSquaredModulus(const Slope<T, K>& t, const T& factor, Out& out) {
  out.value += factor * Norm(t.z);
  const Complex<T> twice = (T(2) * factor) * Conj(t.z);
  if constexpr (K > 0) {
    const Complex<T> byEps = twice * t.d[0];
    out.dRe += byEps.re;
    out.dIm -= byEps.im;
  }
  if constexpr (K > 1) {
    const Complex<T> byMu = twice * t.d[1];
    out.dMuRe += byMu.re;
    out.dMuIm -= byMu.im;
  }
}

// The experimental parameters of a calculator, and the targets of their derivatives.
template <class T, class Out>
struct ExpInputs {
  const QuantityInputOf<T>& in;
  Out& out;
  double Value(ExpParam k) const { return (*in.exp)[k].value; }
  bool Wanted(ExpParam k) const { return in.derivatives && (*in.exp)[k].adjustable; }
  void Clear(ExpParam k) const {
    if (Wanted(k)) out.dExp[k] = 0;
  }
  void Add(ExpParam k, const T& slope) const {
    if (Wanted(k)) out.dExp[k] += slope;
  }
};
template <class T, class Out>
ExpInputs(const QuantityInputOf<T>&, Out&) -> ExpInputs<T, Out>;

template <class T, std::size_t K, class Out>
bool NormalReflectivity(const Input<T>& in, const Surface<T, K>& surface, Out& out) {
  const ExpInputs exp{in, out};
  out.value = 0;
  ClearSlopes(out);
  AddSquaredModulus(surface.r, T(exp.Value(kScalingFactorOfR)), out);
  exp.Clear(kScalingFactorOfR);
  exp.Add(kScalingFactorOfR, Norm(surface.r.z));
  return true;
}

// ---- plates

// Transmission amplitude of a plate at one thickness node, and its derivative by the thickness.
template <class T, std::size_t K>
struct PlateAmplitude {
  Slope<T, K> t;
  Complex<T> dThickness;
};

// E = exp(2 pi i n w d). An exponent with a real part above kGrowthLimit indicates an unphysical medium. E is then
// exactly 1, without derivatives. From kGrowthEnd on the thickness node contributes 0.
template <class T, std::size_t K>
struct PlatePhase {
  Slope<T, K> E;
  Complex<T> dThickness;
};

inline constexpr double kGrowthLimit = 50;
inline constexpr double kGrowthEnd = 700;

// u = 2 pi i n w d
template <class T, std::size_t K>
PlatePhase<T, K> PhaseOf(const Slope<T, K>& n, const T& w, double d, const Complex<T>& u) {
  const Complex<T> E = Exp(u), iE = TimesI(E) * (T(kTwoPi) * w);
  return {{E, Slopes<T, K>([&](std::size_t k) { return (iE * n.d[k]) * T(d); })}, iE * n.z};
}

// Coherent plate: t = (1 - r^2) E/(1 - r^2 E^2). Returns the lanes in which the denominator is zero.
template <class T, std::size_t K>
Lanes CoherentAmplitude(const Slope<T, K>& r, const PlatePhase<T, K>& phase, PlateAmplitude<T, K>& out) {
  const Complex<T> E = phase.E.z, r2 = r.z * r.z, E2 = E * E;
  const Complex<T> den = T(1) - r2 * E2;
  const Lanes fails = LanesOf(Norm(den) < T(kTinySquared));
  if (fails != Lanes::kNone) return fails;
  const Complex<T> inverse = T(1) / den;
  // dt/dr = -2 r E (1 - E^2)/den^2,  dt/dE = (1 - r^2)(1 + r^2 E^2)/den^2
  const Complex<T> inverse2 = inverse * inverse;
  const Complex<T> byR = (T(-2) * r.z) * E * (T(1) - E2) * inverse2;
  const Complex<T> byE = (T(1) - r2) * (T(1) + r2 * E2) * inverse2;
  out.t = {(T(1) - r2) * E * inverse, Slopes<T, K>([&](std::size_t k) { return byR * r.d[k] + byE * phase.E.d[k]; })};
  out.dThickness = byE * phase.dThickness;
  return Lanes::kNone;
}

// A single pass without multiple reflections, hence without fringes: t = (1 - r^2) E.
template <class T, std::size_t K>
Lanes SinglePassAmplitude(const Slope<T, K>& r, const PlatePhase<T, K>& phase, PlateAmplitude<T, K>& out) {
  const Complex<T> E = phase.E.z, byR = (T(-2) * r.z) * E, byE = T(1) - r.z * r.z;
  out.t = {byE * E, Slopes<T, K>([&](std::size_t k) { return byR * r.d[k] + byE * phase.E.d[k]; })};
  out.dThickness = byE * phase.dThickness;
  return Lanes::kNone;
}

// Average over the thickness distribution.
template <class T, std::size_t K, class Out, class AmplitudeOf>
bool PlateTransmission(const Input<T>& in, const Surface<T, K>& surface, Out& out, AmplitudeOf amplitudeOf) {
  const ExpInputs exp{in, out};
  const double thickness = exp.Value(kSampleThickness), spread = exp.Value(kThicknessSpread);
  const double scale = exp.Value(kScalingFactorOfT);
  out.value = 0;
  ClearSlopes(out);
  for (const ExpParam k : {kSampleThickness, kThicknessSpread, kScalingFactorOfT}) exp.Clear(k);
  for (const AveragingNode& node : kAveragingNodes) {
    const double offset = 2 * node.x - 1;
    const double d = (offset * spread + 1) * thickness;
    const Complex<T> u = TimesI(surface.n.z) * (T(kTwoPi) * in.w * T(d));
    const Lanes ends = LanesOf(u.re >= T(kGrowthEnd)), grows = LanesOf(u.re > T(kGrowthLimit));
    if (ends == Lanes::kSome || grows == Lanes::kSome) return false;
    if (ends == Lanes::kAll) continue;
    PlatePhase<T, K> phase{Constant<T, K>({T(1), T(0)}), {}};
    if (grows == Lanes::kNone) phase = PhaseOf(surface.n, in.w, d, u);
    PlateAmplitude<T, K> amplitude;
    const Lanes fails = amplitudeOf(surface.r, phase, amplitude);
    if (fails == Lanes::kSome) return false;
    if (fails == Lanes::kAll) {
      out.value = kNoValue;
      continue;
    }
    const T factor = node.g * scale;
    AddSquaredModulus(amplitude.t, factor, out);
    if constexpr (K > 0) {
      const Complex<T>& t = amplitude.t.z;
      const T byThickness = T(2) * factor * (Conj(t) * amplitude.dThickness).re;
      exp.Add(kSampleThickness, byThickness * T(offset * spread + 1));
      exp.Add(kThicknessSpread, byThickness * T(thickness * offset));
      exp.Add(kScalingFactorOfT, Norm(t) * T(node.g));
    }
  }
  return true;
}

// ---- oblique incidence

// Reflection amplitude at one angle of incidence, and its derivatives by the sine squared and the cosine of that angle.
template <class T, std::size_t K>
struct ObliqueAmplitude {
  Slope<T, K> r;
  Complex<T> dSin2;
  Complex<T> dCos;
};

// q = (a - b)/(a + b), from a and b with all their derivatives. Returns the lanes in which the denominator is zero.
template <class T, std::size_t K>
Lanes ContrastOf(const ObliqueAmplitude<T, K>& a, const ObliqueAmplitude<T, K>& b, ObliqueAmplitude<T, K>& out) {
  const Complex<T> sum = a.r.z + b.r.z;
  const Lanes fails = LanesOf(Norm(sum) < T(kTinySquared));
  if (fails != Lanes::kNone) return fails;
  const Complex<T> inverse = T(1) / sum;
  const Complex<T> factor = (T(2) * inverse) * inverse;  // dq = 2 (b da - a db)/(a + b)^2
  const auto slope = [&](const Complex<T>& da, const Complex<T>& db) { return factor * (b.r.z * da - a.r.z * db); };
  out = {{(a.r.z - b.r.z) * inverse, Slopes<T, K>([&](std::size_t k) { return slope(a.r.d[k], b.r.d[k]); })},
         slope(a.dSin2, b.dSin2),
         slope(a.dCos, b.dCos)};
  return Lanes::kNone;
}

// c z, where c is the cosine.
template <class T, std::size_t K>
ObliqueAmplitude<T, K> TimesCos(const Slope<T, K>& z, double c) {
  return {ScaledBy(z, T(c)), {}, z.z};
}

// The square root of an argument with derivatives. Its derivative is infinite at 0 and set to 0 there.
template <class T, std::size_t K>
ObliqueAmplitude<T, K> RootOf(const Slope<T, K>& z, const Complex<T>& dSin2) {
  const Complex<T> m = Sqrt(z.z);
  const auto zero = Norm(m) == T(0);
  const Complex<T> quotient = T(0.5) / m;
  const Complex<T> slope{Select(zero, T(0), quotient.re), Select(zero, T(0), quotient.im)};
  return {{m, Slopes<T, K>([&](std::size_t k) { return slope * z.d[k]; })}, slope * dSin2, {}};
}

struct Angle {
  double c;
  double s2;
};

// Without a permeability, with m = sqrt(eps - s^2): rp = (eps c - m)/(eps c + m), rs = (c - m)/(c + m). The ratio has
// the closed form rps = (s^2 - m c)/(s^2 + m c), which avoids dividing the two.
template <std::size_t K, class T>
Lanes ObliqueOfEps(Quantity quantity, const Complex<T>& eps, const Angle& angle, ObliqueAmplitude<T, K>& out) {
  Slope<T, K> argument = OfEps<T, K>(eps);
  argument.z = argument.z - T(angle.s2);
  const ObliqueAmplitude<T, K> m = RootOf(argument, Complex<T>{T(-1), T(0)});
  if (quantity == kRp) return ContrastOf(TimesCos(OfEps<T, K>(eps), angle.c), m, out);
  if (quantity == kRs) return ContrastOf(TimesCos(Constant<T, K>({T(1), T(0)}), angle.c), m, out);
  const ObliqueAmplitude<T, K> s2{Constant<T, K>({T(angle.s2), T(0)}), {T(1), T(0)}, {}};
  const ObliqueAmplitude<T, K> mc{ScaledBy(m.r, T(angle.c)), m.dSin2 * T(angle.c), m.r.z};
  return ContrastOf(s2, mc, out);
}

// Average over the distribution of angles. A node with a zero denominator sets the sum accumulated so far to 1.
template <std::size_t K, class T, class Out, class AmplitudeAt>
bool ObliqueReflectivity(const Input<T>& in, Out& out, AmplitudeAt amplitudeAt) {
  const ExpInputs exp{in, out};
  const double mean = exp.Value(kAngleOfIncidence), spread = exp.Value(kAngleSpread);
  const double scale = exp.Value(kScalingFactorOfR);
  const auto clear = [&] {
    ClearSlopes(out);
    for (const ExpParam k : {kAngleOfIncidence, kAngleSpread, kScalingFactorOfR}) exp.Clear(k);
  };
  out.value = 0;
  clear();
  for (const AveragingNode& node : kAveragingNodes) {
    const double offset = 2 * node.x - 1;
    const double radians = (offset * spread + 1) * mean * kRadiansPerDegree;
    const double c = std::cos(radians), s = std::sin(radians);
    ObliqueAmplitude<T, K> amplitude;
    const Lanes fails = amplitudeAt(Angle{c, s * s}, amplitude);
    if (fails == Lanes::kSome) return false;
    if (fails == Lanes::kAll) {
      out.value = 1;
      clear();
      continue;
    }
    const T factor = node.g * scale;
    AddSquaredModulus(amplitude.r, factor, out);
    if constexpr (K > 0) {
      const Complex<T> dAngle = (amplitude.dSin2 * T(2 * s * c) - amplitude.dCos * T(s)) * T(kRadiansPerDegree);
      const T byAngle = T(2) * factor * (Conj(amplitude.r.z) * dAngle).re;
      exp.Add(kAngleOfIncidence, byAngle * T(offset * spread + 1));
      exp.Add(kAngleSpread, byAngle * T(mean * offset));
      exp.Add(kScalingFactorOfR, Norm(amplitude.r.z) * T(node.g));
    }
  }
  return true;
}

// ---- closed functions of n and eps

template <class T, class Out>
bool Put(Out& out, const T& value, const T& dRe, const T& dIm) {
  ClearSlopes(out);
  out.value = value;
  out.dRe = dRe;
  out.dIm = dIm;
  return true;
}

// scale Re n for Refraction, scale Im n for Extinction. The derivative of an analytic function by Im eps is i times the
// derivative by Re eps.
template <class T, std::size_t K, class Out>
bool IndexPart(const Slope<T, K>& n, bool imaginary, const T& scale, Out& out) {
  const auto part = [&](const Complex<T>& z) { return scale * (imaginary ? z.im : z.re); };
  out.value = part(n.z);
  ClearSlopes(out);
  if constexpr (K > 0) {
    out.dRe = part(n.d[0]);
    out.dIm = part(TimesI(n.d[0]));
  }
  if constexpr (K > 1) {
    out.dMuRe = part(n.d[1]);
    out.dMuIm = part(TimesI(n.d[1]));
  }
  return true;
}

// alpha = 4 pi w Im n and the penetration depth 1/(2 pi w Im n). Both have no value if w or Im n is 0.
template <class T, std::size_t K, class Out>
bool AbsorptionOrDepth(const Input<T>& in, const Slope<T, K>& n, bool depth, Out& out) {
  const auto still = Fabs(in.w) < T(kTinyNorm), clear = Fabs(n.z.im) < T(kTinyNorm);
  const Lanes none = LanesOf(still | clear);
  if (none == Lanes::kSome) return false;
  if (none == Lanes::kAll) return Put(out, T(kNoValue), T(0), T(0));
  IndexPart(n, true, T((depth ? 1 : 2) * kTwoPi) * in.w, out);
  if (!depth) return true;
  out.value = T(1) / out.value;
  const T slope = -out.value * out.value;
  out.dRe *= slope;
  out.dIm *= slope;
  if constexpr (K > 1) {
    out.dMuRe *= slope;
    out.dMuIm *= slope;
  }
  return true;
}

template <class T, class Out>
bool LossFunction(const Complex<T>& eps, Out& out) {
  const Complex<T> inverse = T(1) / eps, z = inverse * inverse;
  return Put(out, -inverse.im, z.im, z.re);
}

// Re(sigma) = w Im(eps)/60 in ohm-1 cm-1. With dcFlag the value is the reciprocal, the resistivity; the slopes remain
// those of Re(sigma).
template <class T, class Out>
bool RealConductivity(const Input<T>& in, const Complex<T>& eps, Out& out) {
  const T sigma = in.w * eps.im / T(60);
  return Put(out, in.dcFlag ? Select(sigma == T(0), sigma, T(1) / sigma) : sigma, T(0), in.w / T(60));
}

// The Quantities with the same formula, as a function of the surface, with and without a permeability.
template <class T, std::size_t K, class Out>
bool SurfaceQuantity(const Input<T>& in, const Surface<T, K>& surface, Quantity quantity, Out& out) {
  switch (quantity) {
    case kRefl:
      return NormalReflectivity(in, surface, out);
    case kTrans:
      return PlateTransmission(in, surface, out, CoherentAmplitude<T, K>);
    case kDefringed:
      return PlateTransmission(in, surface, out, SinglePassAmplitude<T, K>);
    case kN1:
    case kN2:
      return IndexPart(surface.n, quantity == kN2, T(1), out);
    case kDepth:
    case kAlpha:
      return AbsorptionOrDepth(in, surface.n, quantity == kDepth, out);
    case kRp:
    case kRs:
    case kRps:
    case kE1:
    case kE2:
    case kS1:
    case kS2:
    case kLoss:
      break;
  }
  return false;
}

// Any Quantity, for an |eps| between the limits.
template <std::size_t K, class T, class Out>
bool QuantityBetweenLimits(const Input<T>& in, const Complex<T>& eps, Quantity quantity, Out& out) {
  switch (quantity) {
    case kRp:
    case kRs:
    case kRps:
      return ObliqueReflectivity<K>(in, out, [&](const Angle& angle, ObliqueAmplitude<T, K>& amplitude) {
        return ObliqueOfEps(quantity, eps, angle, amplitude);
      });
    case kE1:
      return Put(out, eps.re, T(1), T(0));
    case kE2:
      return Put(out, eps.im, T(0), T(1));
    case kS1:
      return RealConductivity(in, eps, out);
    case kS2:
      return Put(out, -in.w * (eps.re - T(1)) / T(60), -in.w / T(60), T(0));
    case kLoss:
      return LossFunction(eps, out);
    case kRefl:
    case kTrans:
    case kDefringed:
    case kN1:
    case kN2:
    case kDepth:
    case kAlpha:
      return SurfaceQuantity(in, SurfaceOf<K>(eps), quantity, out);
  }
  return false;
}

}  // namespace kalvex::bulk
