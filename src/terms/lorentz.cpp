#include "terms/lorentz.h"

#include <cmath>
#include <numbers>

#include "core/limits.h"

namespace kalvex {
namespace {

// 1/D(x) = -1/((x - a)(x - b)) with the roots a, b = (-i G +- s)/2, s = sqrt(4 W^2 - G^2). The integral of x/D is -(a
// log(1 - w/a) - b log(1 - w/b))/s, and F is its imaginary part. Both roots lie below the real axis: 1 - w/a is not on
// the branch cut of the logarithm.
PartialWeight ClosedForm(double w, double W, double G) {
  if (std::fabs(4 * W * W - G * G) < 1e-10) G = 2 * std::fabs(W) + 1e-10;
  const Cplx s = Sqrt(Cplx{4 * W * W - G * G, 0});
  const Cplx a = (Cplx{0, -G} + s) * 0.5;
  const Cplx b = (Cplx{0, -G} - s) * 0.5;
  const Cplx one{1, 0};
  const Cplx logA = Log(one - w * (one / a));
  const Cplx logB = Log(one - w * (one / b));
  const Cplx sum = a * logA - b * logB;

  // d(a log(1 - w/a))/da = log(1 - w/a) + w/(a - w)
  const Cplx slopeA = logA + w * (one / (a - w));
  const Cplx slopeB = logB + w * (one / (b - w));
  const auto along = [&](const Cplx& da, const Cplx& db, const Cplx& ds) {
    return (sum * ds / (s * s) - (slopeA * da - slopeB * db) / s).im;
  };
  const Cplx dsdW = (4 * W) * (one / s);
  const Cplx dsdG = -G * (one / s);
  const Cplx minusI{0, -1};
  return {(-(sum / s)).im, along(0.5 * dsdW, -0.5 * dsdW, dsdW),
          along(0.5 * (minusI + dsdG), 0.5 * (minusI - dsdG), dsdG)};
}

}  // namespace

void GiveMarker(const TermCall& call, Cplx& result) {
  result = {kNoValue, kNoValue};
  if (!call.derivatives) return;
  for (const TermInput& input : call.inputs) PutSlope(input, {0, 0});
}

int CalcLorentz(const TermCall& call, Cplx& result) {
  const double Wo = call.inputs[0].value, Wp = call.inputs[1].value;
  const Oscillator<double> at = OscillatorAt(call.w, Wo, Wp, call.inputs[2].value);
  result = at.eps;
  if (!call.derivatives) return 0;
  const std::array<Cplx, 3> slopes = OscillatorSlopes(call.w, Wo, Wp, at.inverse);
  for (std::size_t i = 0; i < slopes.size(); ++i) PutSlope(call.inputs[i], slopes[i]);
  return 0;
}

PartialWeight PartialWeightOf(double w, double W, double G) {
  if (G == 0) return {std::fabs(W) > w ? 0 : std::numbers::pi / 2, 0, 0};
  if (W == 0) return {std::atan2(w, G), 0, -w / (w * w + G * G)};
  return ClosedForm(w, W, G);
}

int ScalarLorentz(const TermCall& call, double& result) {
  const TermInput& inWo = call.inputs[0];
  const TermInput& inWp = call.inputs[1];
  const TermInput& inG = call.inputs[2];
  const bool defined = inG.value >= 0 && call.w >= 0;
  const PartialWeight weight = defined ? PartialWeightOf(call.w, inWo.value, inG.value) : PartialWeight{};
  const double scale = kWeightUnit * inWp.value * inWp.value;
  result = scale * weight.F;
  PutScalarSlope(call, 0, scale * weight.dW);
  PutScalarSlope(call, 1, 2 * kWeightUnit * inWp.value * weight.F);
  PutScalarSlope(call, 2, scale * weight.dG);
  return 0;
}

}  // namespace kalvex
