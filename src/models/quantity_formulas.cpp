#include "models/quantity_formulas.h"

#include <cmath>
#include <numbers>
#include <utility>

#include "models/model.h"

namespace kalvex {
namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

// How the limiting values and the dependencies of a Quantity stand; and which experimental parameters it reads.
struct QuantityTraits {
  bool ofMu;
  int nExp;
  std::array<int, 3> expIndex;
  double valueBig;
  double valueSmall;
  double wRe, wIm, wMuRe, wMuIm;
};

constexpr std::array<int, 3> kNoExp = {};
constexpr std::array<int, 3> kScaleR = {kScalingFactorOfR};
constexpr std::array<int, 3> kPlate = {kSampleThickness, kThicknessSpread, kScalingFactorOfT};
constexpr std::array<int, 3> kOblique = {kAngleOfIncidence, kAngleSpread, kScalingFactorOfR};

constexpr std::array<QuantityTraits, kQuantityCount> kTraits = {{
    {true, 1, kScaleR, 1, 1, 1, 1, 1, 1},
    {true, 3, kPlate, 0, 1, 1, 1, 1, 1},
    {true, 3, kOblique, 1, 1, 1, 1, 1, 1},
    {true, 3, kOblique, 1, 1, 1, 1, 1, 1},
    {true, 3, kOblique, 1, 1, 1, 1, 1, 1},
    {false, 0, kNoExp, 0, 0, 1, 0, 0, 0},
    {false, 0, kNoExp, 0, 0, 0, 1, 0, 0},
    {false, 0, kNoExp, 0, 0, 0, 1, 0, 0},
    {false, 0, kNoExp, 0, 0, 1, 0, 0, 0},
    {true, 0, kNoExp, 0, 0, 1, 1, 1, 1},
    {true, 0, kNoExp, 0, 0, 1, 1, 1, 1},
    {true, 0, kNoExp, 0, 0, 1, 1, 1, 1},
    {false, 0, kNoExp, 0, 0, 1, 1, 0, 0},
    {true, 3, kPlate, 0, 0, 1, 1, 1, 1},
    {true, 0, kNoExp, 0, 0, 1, 1, 1, 1},
}};

const QuantityTraits& TraitsOf(int quantity) { return kTraits[static_cast<std::size_t>(quantity)]; }

// One complex number with its derivatives by eps and mu. Without a permeability dMu is 0 and stays so.
struct Slope {
  Cplx z;
  Cplx dEps;
  Cplx dMu;
};

Slope ScaledBy(const Slope& s, double factor) { return {s.z * factor, s.dEps * factor, s.dMu * factor}; }

// n = sqrt(eps mu) and the reflection amplitude r = (sqrt(mu) - sqrt(eps))/(sqrt(mu) + sqrt(eps)) of the surface at
// normal incidence, with sqrt(mu) = 1 where there is none.
struct Surface {
  Slope n;
  Slope r;
};

Surface SurfaceOf(const Cplx& eps) {
  const Cplx n = Sqrt(eps);
  const Cplx r = (1.0 - n) / (1.0 + n);
  const Cplx dn = Cplx{0.5, 0} / n;
  return {{n, dn, {}}, {r, -0.5 * ((1.0 + r) * (1.0 + r)) * dn, {}}};
}

Surface SurfaceOf(const Cplx& eps, const Cplx& mu) {
  const Cplx a = Sqrt(eps), b = Sqrt(mu);
  const Cplx n = a * b, sum = a + b;
  const Cplx square = sum * sum;
  return {{n, 0.5 * (n / eps), 0.5 * (n / mu)}, {(b - a) / sum, -(b / square) * (a / eps), (a / square) * (b / mu)}};
}

// Adds factor |t|^2 and its derivatives.
void AddSquaredModulus(const Slope& t, double factor, Quantity& out) {
  const Cplx twice = (2 * factor) * Conj(t.z);
  out.value += factor * Norm(t.z);
  const Cplx byEps = twice * t.dEps, byMu = twice * t.dMu;
  out.dRe += byEps.re;
  out.dIm -= byEps.im;
  out.dMuRe += byMu.re;
  out.dMuIm -= byMu.im;
}

void ClearSlopes(Quantity& out) { out.dRe = out.dIm = out.dMuRe = out.dMuIm = 0; }

// The experimental parameters that one calculator reads, and where their derivatives go.
struct ExpInputs {
  const QuantityInput& in;
  Quantity& out;
  double Value(ExpParam k) const { return (*in.exp)[static_cast<std::size_t>(k)].value; }
  bool Wanted(ExpParam k) const { return in.derivatives && (*in.exp)[static_cast<std::size_t>(k)].adjustable; }
  void Clear(ExpParam k) const {
    if (Wanted(k)) out.dExp[static_cast<std::size_t>(k)] = 0;
  }
  void Add(ExpParam k, double slope) const {
    if (Wanted(k)) out.dExp[static_cast<std::size_t>(k)] += slope;
  }
};

void NormalReflectivity(const QuantityInput& in, const Surface& surface, Quantity& out) {
  const ExpInputs exp{in, out};
  out.value = 0;
  ClearSlopes(out);
  AddSquaredModulus(surface.r, exp.Value(kScalingFactorOfR), out);
  exp.Clear(kScalingFactorOfR);
  exp.Add(kScalingFactorOfR, Norm(surface.r.z));
}

// Transmission amplitude of a plate of the thickness at one node, and its derivative by the thickness.
struct PlateAmplitude {
  Slope t;
  Cplx dThickness;
};

// E = exp(2 pi i n w d). An exponent whose real part exceeds kGrowthLimit is the sign of an unphysical medium; E then
// counts as exactly 1 with no derivative.
struct PlatePhase {
  Slope E;
  Cplx dThickness;
};

constexpr double kGrowthLimit = 50;
constexpr double kGrowthEnd = 700;

PlatePhase PhaseOf(const Slope& n, double w, double d, const Cplx& u) {
  if (u.re > kGrowthLimit) return {{{1, 0}, {}, {}}, {}};
  const Cplx E = Exp(u);
  const Cplx iE = TimesI(E) * (kTwoPi * w);
  return {{E, (iE * n.dEps) * d, (iE * n.dMu) * d}, iE * n.z};
}

// Coherent plate: t = (1 - r^2) E/(1 - r^2 E^2). False where the denominator fails.
bool CoherentAmplitude(const Slope& r, const PlatePhase& phase, PlateAmplitude& out) {
  const Cplx E = phase.E.z, r2 = r.z * r.z, E2 = E * E;
  const Cplx den = 1.0 - r2 * E2;
  if (Abs(den) < kTinyNorm) return false;
  const Cplx inverse = Cplx{1, 0} / den;
  const Cplx t = (1.0 - r2) * E * inverse;
  // dt/dr = -2 r E (1 - E^2)/den^2,  dt/dE = (1 - r^2)(1 + r^2 E^2)/den^2
  const Cplx inverse2 = inverse * inverse;
  const Cplx byR = (-2.0 * r.z) * E * (1.0 - E2) * inverse2;
  const Cplx byE = (1.0 - r2) * (1.0 + r2 * E2) * inverse2;
  out = {{t, byR * r.dEps + byE * phase.E.dEps, byR * r.dMu + byE * phase.E.dMu}, byE * phase.dThickness};
  return true;
}

// A single pass without the multiple reflections, and so without fringes: t = (1 - r^2) E.
bool SinglePassAmplitude(const Slope& r, const PlatePhase& phase, PlateAmplitude& out) {
  const Cplx E = phase.E.z, byR = (-2.0 * r.z) * E, byE = 1.0 - r.z * r.z;
  out = {{byE * E, byR * r.dEps + byE * phase.E.dEps, byR * r.dMu + byE * phase.E.dMu}, byE * phase.dThickness};
  return true;
}

// Average over the thickness distribution.
template <class AmplitudeOf>
void PlateTransmission(const QuantityInput& in, const Surface& surface, Quantity& out, AmplitudeOf amplitudeOf) {
  const ExpInputs exp{in, out};
  const double thickness = exp.Value(kSampleThickness), spread = exp.Value(kThicknessSpread);
  const double scale = exp.Value(kScalingFactorOfT);
  out.value = 0;
  ClearSlopes(out);
  for (const ExpParam k : {kSampleThickness, kThicknessSpread, kScalingFactorOfT}) exp.Clear(k);
  for (const AveragingNode& node : kAveragingNodes) {
    const double offset = 2 * node.x - 1;
    const double d = (offset * spread + 1) * thickness;
    const Cplx u = TimesI(surface.n.z) * (kTwoPi * in.w * d);
    if (u.re >= kGrowthEnd) continue;
    PlateAmplitude amplitude;
    if (!amplitudeOf(surface.r, PhaseOf(surface.n, in.w, d, u), amplitude)) {
      out.value = kNoValue;
      continue;
    }
    const double factor = node.g * scale;
    AddSquaredModulus(amplitude.t, factor, out);
    const Cplx& t = amplitude.t.z;
    const double byThickness = 2 * factor * (Conj(t) * amplitude.dThickness).re;
    exp.Add(kSampleThickness, byThickness * (offset * spread + 1));
    exp.Add(kThicknessSpread, byThickness * thickness * offset);
    exp.Add(kScalingFactorOfT, Norm(t) * node.g);
  }
}

// Reflection amplitude at one angle of incidence, and its derivatives by the sine squared and the cosine of that angle.
struct ObliqueAmplitude {
  Slope r;
  Cplx dSin2;
  Cplx dCos;
};

// q = (a - b)/(a + b), from a and b with all their derivatives. False where the denominator fails.
bool ContrastOf(const ObliqueAmplitude& a, const ObliqueAmplitude& b, ObliqueAmplitude& out) {
  const Cplx sum = a.r.z + b.r.z;
  if (Abs(sum) < kTinyNorm) return false;
  const Cplx inverse = Cplx{1, 0} / sum;
  const Cplx factor = (2.0 * inverse) * inverse;  // dq = 2 (b da - a db)/(a + b)^2
  const auto slope = [&](const Cplx& da, const Cplx& db) { return factor * (b.r.z * da - a.r.z * db); };
  out = {{(a.r.z - b.r.z) * inverse, slope(a.r.dEps, b.r.dEps), slope(a.r.dMu, b.r.dMu)},
         slope(a.dSin2, b.dSin2),
         slope(a.dCos, b.dCos)};
  return true;
}

// c z, with c the cosine.
ObliqueAmplitude TimesCos(const Slope& z, double c) { return {ScaledBy(z, c), {}, z.z}; }

// sqrt of an argument given with its derivatives. The derivative of the root has no limit at 0 and is left out there.
ObliqueAmplitude RootOf(const Slope& z, const Cplx& dSin2) {
  const Cplx m = Sqrt(z.z);
  const Cplx slope = m == Cplx{} ? Cplx{} : Cplx{0.5, 0} / m;
  return {{m, slope * z.dEps, slope * z.dMu}, slope * dSin2, {}};
}

struct Angle {
  double c;
  double s2;
};

// Without a permeability: rp = (eps c - m)/(eps c + m), rs = (c - m)/(c + m), and the ratio rps = (s^2 - m c)/(s^2 + m
// c), which avoids the quotient of the two; m = sqrt(eps - s^2).
bool ObliqueOfEps(int quantity, const Cplx& eps, const Angle& angle, ObliqueAmplitude& out) {
  const ObliqueAmplitude m = RootOf({eps - angle.s2, {1, 0}, {}}, {-1, 0});
  if (quantity == kRp) return ContrastOf(TimesCos({eps, {1, 0}, {}}, angle.c), m, out);
  if (quantity == kRs) return ContrastOf(TimesCos({{1, 0}, {}, {}}, angle.c), m, out);
  const ObliqueAmplitude s2{{{angle.s2, 0}, {}, {}}, {1, 0}, {}};
  const ObliqueAmplitude mc{ScaledBy(m.r, angle.c), m.dSin2 * angle.c, m.r.z};
  return ContrastOf(s2, mc, out);
}

// rp = (a c - m)/(a c + m) with m = sqrt(mu - s^2/eps), a = sqrt(eps).
bool PAmplitude(const Cplx& eps, const Cplx& mu, const Angle& angle, ObliqueAmplitude& out) {
  const Cplx a = Sqrt(eps), inverse = Cplx{1, 0} / eps;
  const ObliqueAmplitude m = RootOf({mu - angle.s2 * inverse, angle.s2 * (inverse * inverse), {1, 0}}, -inverse);
  return ContrastOf(TimesCos({a, 0.5 * (a * inverse), {}}, angle.c), m, out);
}

// rs is rp with eps and mu exchanged.
bool SAmplitude(const Cplx& eps, const Cplx& mu, const Angle& angle, ObliqueAmplitude& out) {
  if (!PAmplitude(mu, eps, angle, out)) return false;
  std::swap(out.r.dEps, out.r.dMu);
  return true;
}

bool ObliqueOfEpsMu(int quantity, const Cplx& eps, const Cplx& mu, const Angle& angle, ObliqueAmplitude& out) {
  if (quantity == kRp) return PAmplitude(eps, mu, angle, out);
  if (quantity == kRs) return SAmplitude(eps, mu, angle, out);
  ObliqueAmplitude p, s;
  if (!PAmplitude(eps, mu, angle, p) || !SAmplitude(eps, mu, angle, s) || Abs(s.r.z) < kTinyNorm) return false;
  const Cplx inverse = Cplx{1, 0} / s.r.z, ratio = p.r.z * inverse;
  const auto slope = [&](const Cplx& dp, const Cplx& ds) { return (dp - ratio * ds) * inverse; };
  out = {{ratio, slope(p.r.dEps, s.r.dEps), slope(p.r.dMu, s.r.dMu)}, slope(p.dSin2, s.dSin2), slope(p.dCos, s.dCos)};
  return true;
}

// Average over the distribution of angles. A node whose denominator fails sets the sum so far to 1.
template <class AmplitudeAt>
void ObliqueReflectivity(const QuantityInput& in, Quantity& out, AmplitudeAt amplitudeAt) {
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
    ObliqueAmplitude amplitude;
    if (!amplitudeAt(Angle{c, s * s}, amplitude)) {
      out.value = 1;
      clear();
      continue;
    }
    const double factor = node.g * scale;
    AddSquaredModulus(amplitude.r, factor, out);
    const Cplx dAngle = (amplitude.dSin2 * (2 * s * c) - amplitude.dCos * s) * kRadiansPerDegree;
    const double byAngle = 2 * factor * (Conj(amplitude.r.z) * dAngle).re;
    exp.Add(kAngleOfIncidence, byAngle * (offset * spread + 1));
    exp.Add(kAngleSpread, byAngle * mean * offset);
    exp.Add(kScalingFactorOfR, Norm(amplitude.r.z) * node.g);
  }
}

void Put(Quantity& out, double value, double dRe, double dIm) {
  out.value = value;
  ClearSlopes(out);
  out.dRe = dRe;
  out.dIm = dIm;
}

// scale Re n for Refraction, scale Im n for Extinction; the derivative of an analytic function by Im eps is i times
// that by Re eps.
void IndexPart(const Slope& n, bool imaginary, double scale, Quantity& out) {
  const auto part = [&](const Cplx& z) { return scale * (imaginary ? z.im : z.re); };
  out.value = part(n.z);
  out.dRe = part(n.dEps);
  out.dIm = part(TimesI(n.dEps));
  out.dMuRe = part(n.dMu);
  out.dMuIm = part(TimesI(n.dMu));
}

// alpha = 4 pi w Im n and the penetration depth 1/(2 pi w Im n), both without a value where w or Im n is 0.
void AbsorptionOrDepth(const QuantityInput& in, const Slope& n, bool depth, Quantity& out) {
  if (std::fabs(in.w) < kTinyNorm || std::fabs(n.z.im) < kTinyNorm) {
    Put(out, kNoValue, 0, 0);
    return;
  }
  IndexPart(n, true, (depth ? 1 : 2) * kTwoPi * in.w, out);
  if (!depth) return;
  out.value = 1 / out.value;
  const double slope = -out.value * out.value;
  for (double* d : {&out.dRe, &out.dIm, &out.dMuRe, &out.dMuIm}) *d *= slope;
}

void LossFunction(const Cplx& eps, Quantity& out) {
  const Cplx inverse = Cplx{1, 0} / eps, z = inverse * inverse;
  Put(out, -inverse.im, z.im, z.re);
}

// Re(sigma) = w Im(eps)/60 in ohm-1 cm-1; a DC plot shows its reciprocal, the resistivity, with slopes unchanged.
void RealConductivity(const QuantityInput& in, const Cplx& eps, Quantity& out) {
  Put(out, in.w * eps.im / 60, 0, in.w / 60);
  if (in.dcFlag && out.value != 0) out.value = 1 / out.value;
}

// The Quantities that are the same function of the surface with and without a permeability.
void SurfaceQuantity(const QuantityInput& in, const Surface& surface, int quantity, Quantity& out) {
  switch (quantity) {
    case kRefl:
      return NormalReflectivity(in, surface, out);
    case kTrans:
      return PlateTransmission(in, surface, out, CoherentAmplitude);
    case kDefringed:
      return PlateTransmission(in, surface, out, SinglePassAmplitude);
    case kN1:
    case kN2:
      return IndexPart(surface.n, quantity == kN2, 1, out);
    default:
      return AbsorptionOrDepth(in, surface.n, quantity == kDepth, out);
  }
}

void PutLimit(const QuantityInput& in, double value, Quantity& out) {
  out.value = value;
  if (in.derivatives) ClearSlopes(out);
}

}  // namespace

void QuantityOfEps(const QuantityInput& in, const Cplx& eps, int quantity, Quantity& out) {
  const QuantityTraits& traits = TraitsOf(quantity);
  const double modulus = Abs(eps);
  if (modulus > kNoValue) return PutLimit(in, traits.valueBig, out);
  if (modulus < kTinyNorm) return PutLimit(in, traits.valueSmall, out);
  switch (quantity) {
    case kRp:
    case kRs:
    case kRps:
      return ObliqueReflectivity(in, out, [&](const Angle& angle, ObliqueAmplitude& amplitude) {
        return ObliqueOfEps(quantity, eps, angle, amplitude);
      });
    case kE1:
      return Put(out, eps.re, 1, 0);
    case kE2:
      return Put(out, eps.im, 0, 1);
    case kS1:
      return RealConductivity(in, eps, out);
    case kS2:
      return Put(out, -in.w * (eps.re - 1) / 60, -in.w / 60, 0);
    case kLoss:
      return LossFunction(eps, out);
    default:
      return SurfaceQuantity(in, SurfaceOf(eps), quantity, out);
  }
}

void QuantityOfEpsMu(const QuantityInput& in, const Cplx& eps, const Cplx& mu, int quantity, Quantity& out) {
  const QuantityTraits& traits = TraitsOf(quantity);
  const double epsModulus = Abs(eps), muModulus = Abs(mu);
  if (epsModulus > kNoValue || muModulus > kNoValue) return PutLimit(in, traits.valueBig, out);
  if (epsModulus < kTinyNorm || muModulus < kTinyNorm) return PutLimit(in, traits.valueSmall, out);
  if (!traits.ofMu) return PutLimit(in, 0, out);
  if (quantity == kRp || quantity == kRs || quantity == kRps) {
    return ObliqueReflectivity(in, out, [&](const Angle& angle, ObliqueAmplitude& amplitude) {
      return ObliqueOfEpsMu(quantity, eps, mu, angle, amplitude);
    });
  }
  SurfaceQuantity(in, SurfaceOf(eps, mu), quantity, out);
}

void DependencyStub(int quantity, Quantity& out) {
  const QuantityTraits& traits = TraitsOf(quantity);
  for (int k = 0; k < traits.nExp; ++k) {
    out.dExp[static_cast<std::size_t>(traits.expIndex[static_cast<std::size_t>(k)])] = 1;
  }
  out.dRe = traits.wRe;
  out.dIm = traits.wIm;
}

void DependencyStubMu(int quantity, Quantity& out) {
  DependencyStub(quantity, out);
  out.dMuRe = TraitsOf(quantity).wMuRe;
  out.dMuIm = TraitsOf(quantity).wMuIm;
}

}  // namespace kalvex
