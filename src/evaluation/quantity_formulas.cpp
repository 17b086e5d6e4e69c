#include "evaluation/quantity_formulas.h"

#include <span>
#include <utility>

#include "evaluation/bulk_formulas.h"

namespace kalvex {
namespace {

using Oblique = bulk::ObliqueAmplitude<double, 2>;

// The limiting values and dependencies of a Quantity, and the experimental parameters that it reads.
struct QuantityTraits {
  Quantity of;
  bool ofMu;
  std::span<const ExpParam> exp;
  double valueBig;
  double valueSmall;
  double wRe, wIm, wMuRe, wMuIm;
};

constexpr std::span<const ExpParam> kNoExp;
constexpr ExpParam kScaleR[] = {kScalingFactorOfR};
constexpr ExpParam kPlate[] = {kSampleThickness, kThicknessSpread, kScalingFactorOfT};
constexpr ExpParam kOblique[] = {kAngleOfIncidence, kAngleSpread, kScalingFactorOfR};

constexpr auto kTraits = std::to_array<QuantityTraits>({
    {kRefl, true, kScaleR, 1, 1, 1, 1, 1, 1},
    {kTrans, true, kPlate, 0, 1, 1, 1, 1, 1},
    {kRp, true, kOblique, 1, 1, 1, 1, 1, 1},
    {kRs, true, kOblique, 1, 1, 1, 1, 1, 1},
    {kRps, true, kOblique, 1, 1, 1, 1, 1, 1},
    {kE1, false, kNoExp, 0, 0, 1, 0, 0, 0},
    {kE2, false, kNoExp, 0, 0, 0, 1, 0, 0},
    {kS1, false, kNoExp, 0, 0, 0, 1, 0, 0},
    {kS2, false, kNoExp, 0, 0, 1, 0, 0, 0},
    {kN1, true, kNoExp, 0, 0, 1, 1, 1, 1},
    {kN2, true, kNoExp, 0, 0, 1, 1, 1, 1},
    {kDepth, true, kNoExp, 0, 0, 1, 1, 1, 1},
    {kLoss, false, kNoExp, 0, 0, 1, 1, 0, 0},
    {kDefringed, true, kPlate, 0, 0, 1, 1, 1, 1},
    {kAlpha, true, kNoExp, 0, 0, 1, 1, 1, 1},
});
static_assert(IsComplete(kTraits, &QuantityTraits::of));

const QuantityTraits& TraitsOf(Quantity quantity) { return kTraits[IndexOf(quantity)]; }

// rp = (a c - m)/(a c + m) with m = sqrt(mu - s^2/eps), a = sqrt(eps).
Lanes PAmplitude(const Cplx& eps, const Cplx& mu, const bulk::Angle& angle, Oblique& out) {
  const Cplx a = Sqrt(eps), inverse = Cplx{1, 0} / eps;
  const bulk::Slope<double, 2> argument{mu - angle.s2 * inverse, {angle.s2 * (inverse * inverse), Cplx{1, 0}}};
  const bulk::Slope<double, 2> root{a, {0.5 * (a * inverse), Cplx{}}};
  return bulk::ContrastOf(bulk::TimesCos(root, angle.c), bulk::RootOf(argument, -inverse), out);
}

// rs is rp with eps and mu exchanged.
Lanes SAmplitude(const Cplx& eps, const Cplx& mu, const bulk::Angle& angle, Oblique& out) {
  const Lanes fails = PAmplitude(mu, eps, angle, out);
  std::swap(out.r.d[0], out.r.d[1]);
  return fails;
}

Lanes ObliqueOfEpsMu(Quantity quantity, const Cplx& eps, const Cplx& mu, const bulk::Angle& angle, Oblique& out) {
  if (quantity == kRp) return PAmplitude(eps, mu, angle, out);
  if (quantity == kRs) return SAmplitude(eps, mu, angle, out);
  Oblique p, s;
  const bool fails = PAmplitude(eps, mu, angle, p) != Lanes::kNone || SAmplitude(eps, mu, angle, s) != Lanes::kNone;
  if (fails || Abs(s.r.z) < kTinyNorm) return Lanes::kAll;
  const Cplx inverse = Cplx{1, 0} / s.r.z, ratio = p.r.z * inverse;
  const auto slope = [&](const Cplx& dp, const Cplx& ds) { return (dp - ratio * ds) * inverse; };
  out = {{ratio, bulk::Slopes<double, 2>([&](std::size_t k) { return slope(p.r.d[k], s.r.d[k]); })},
         slope(p.dSin2, s.dSin2),
         slope(p.dCos, s.dCos)};
  return Lanes::kNone;
}

// dExp stays unchanged. For a Quantity without experimental parameters it is always 0.
void PutLimit(const QuantityInput& in, const QuantityTraits& traits, double value, QuantityResult& out) {
  out.Put(value);
  if (in.derivatives) bulk::ClearSlopes(out);
  if (traits.exp.empty()) out.formerExp = false;
}

}  // namespace

void QuantityOfEps(const QuantityInput& in, const Cplx& eps, Quantity quantity, QuantityResult& out) {
  const QuantityTraits& traits = TraitsOf(quantity);
  const double modulus = Abs(eps);
  if (modulus > kNoValue) return PutLimit(in, traits, traits.valueBig, out);
  if (modulus < kTinyNorm) return PutLimit(in, traits, traits.valueSmall, out);
  out.formerValue = out.formerExp = false;
  bulk::QuantityBetweenLimits<1>(in, eps, quantity, out);
}

void QuantityOfEpsMu(const QuantityInput& in, const Cplx& eps, const Cplx& mu, Quantity quantity, QuantityResult& out) {
  const QuantityTraits& traits = TraitsOf(quantity);
  const double epsModulus = Abs(eps), muModulus = Abs(mu);
  if (epsModulus > kNoValue || muModulus > kNoValue) return PutLimit(in, traits, traits.valueBig, out);
  if (epsModulus < kTinyNorm || muModulus < kTinyNorm) return PutLimit(in, traits, traits.valueSmall, out);
  if (!traits.ofMu) return PutLimit(in, traits, 0, out);
  out.formerValue = out.formerExp = false;
  if (quantity == kRp || quantity == kRs || quantity == kRps) {
    bulk::ObliqueReflectivity<2>(in, out, [&](const bulk::Angle& angle, Oblique& amplitude) {
      return ObliqueOfEpsMu(quantity, eps, mu, angle, amplitude);
    });
    return;
  }
  bulk::SurfaceQuantity(in, bulk::SurfaceOf(eps, mu), quantity, out);
}

void DependencyStub(Quantity quantity, QuantityResult& out) {
  const QuantityTraits& traits = TraitsOf(quantity);
  for (const ExpParam k : traits.exp) out.dExp[k] = 1;
  out.dRe = traits.wRe;
  out.dIm = traits.wIm;
}

void DependencyStubMu(Quantity quantity, QuantityResult& out) {
  DependencyStub(quantity, out);
  out.dMuRe = TraitsOf(quantity).wMuRe;
  out.dMuIm = TraitsOf(quantity).wMuIm;
}

}  // namespace kalvex
