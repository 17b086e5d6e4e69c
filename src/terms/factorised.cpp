// The factorised dielectric function: its zeros are longitudinal modes, its poles transverse modes. Each mode has its
// own width.
#include "core/limits.h"
#include "records/row_code.h"
#include "terms/formula.h"
#include "terms/term_table.h"

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

struct Factorised {
  static constexpr const char* kName = "factorised dielectric function";
  static constexpr TermCell kCells[] = {Number(0, Wp, "base value A, the permittivity at high frequency", "", 11)};
  static constexpr FactorRow kFactors[] = {
      {kNumeratorRow,
       {Number(0, Wp, "frequency W of a numerator, a longitudinal mode", "cm-1", 292),
        Number(0, G, "its width G", "cm-1", 4)}},
      {kDenominatorRow,
       {Number(0, Wp, "frequency W' of a denominator, a transverse mode", "cm-1", 268),
        Number(0, G, "its width G'", "cm-1", 3)}}};
  static constexpr TermPage kPage = {
      .formula =
          "A times the product of D(W, G) over all numerators, divided by that of D(W', G') over all denominators",
      .source = "D. W. Berreman and F. C. Unterwald, Phys. Rev. 174, 791 (1968)",
      .limits =
          "Without factors the constant A. It is the whole dielectric function: Einf is then 0. As many "
          "numerators as denominators are needed; otherwise the previous contribution to the sum is added "
          "once more. 1e30 in both parts where a denominator is 0.",
      .causality =
          "The widths of the denominators must be above 0. Those of the numerators decide whether it absorbs "
          "everywhere."};

  static int Calc(const TermCall& call, Cplx& result) {
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
};

}  // namespace

constinit const TermRecord kFactorised = MakeTerm<Factorised, kBaseRow>();

}  // namespace kalvex
