#include "terms/factorised.h"

#include "core/limits.h"
#include "terms/lorentz.h"

namespace kalvex {
namespace {

constexpr std::size_t kFirstFactor = 3;

// Derivatives by the two parameters of one factor, from t = +-P/D.
void PutFactorSlopes(const TermCall& call, std::size_t first, const Cplx& t) {
  PutSlope(call.inputs[first], (2 * call.inputs[first].value) * t);
  PutSlope(call.inputs[first + 1], -call.w * TimesI(t));
}

Cplx FactorAt(const TermCall& call, std::size_t first) {
  return OscillatorDenominator(call.w, call.inputs[first].value, call.inputs[first + 1].value);
}

Cplx QuotientOrZero(const Cplx& a, const Cplx& b) { return Norm(b) < kTinyNorm ? Cplx{} : a / b; }

}  // namespace

int CalcFactorised(const TermCall& call, Cplx& result) {
  const auto n = static_cast<std::size_t>(call.inputs[1].value);
  const auto m = static_cast<std::size_t>(call.inputs[2].value);
  if (n != m) return -1;
  const auto numerator = [&](std::size_t k) { return kFirstFactor + 2 * k; };
  const auto denominator = [&](std::size_t k) { return kFirstFactor + 2 * n + 2 * k; };

  const double A = call.inputs[0].value;
  Cplx P{A, 0};
  for (std::size_t k = 0; k < n; ++k) {
    const Cplx D = FactorAt(call, denominator(k));
    if (Norm(D) < kTinyNorm) {
      GiveMarker(call, result);
      return 0;
    }
    P = P * FactorAt(call, numerator(k)) / D;
  }
  result = P;
  if (!call.derivatives) return 0;

  PutSlope(call.inputs[0], A * A > kTinyNorm ? P / A : Cplx{});
  for (std::size_t k = 0; k < n; ++k) {
    PutFactorSlopes(call, numerator(k), QuotientOrZero(P, FactorAt(call, numerator(k))));
    PutFactorSlopes(call, denominator(k), -QuotientOrZero(P, FactorAt(call, denominator(k))));
  }
  return 0;
}

}  // namespace kalvex
