#include "terms/coupled_terms.h"

#include <numbers>

#include "terms/formula.h"

namespace kalvex {
namespace {

template <class T>
Complex<T> Phase(const T& p) {
  return {Cos(p), Sin(p)};
}

struct Family31 {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const double w = call.w;
    if (IsTiny(w) || IsTiny(ValueOf(in[2]))) return false;
    const Complex<T> rate{T(w), in[1]};
    Complex<T> mode;
    if (!Divide(rate * rate, -DenominatorOf(w, in[2], in[3]), mode)) return false;
    eps = (in[0] * in[0] / T(w * w)) * (in[1] * in[1] / (in[2] * in[2]) - mode);
    return true;
  }
};

struct Quad51 {
  static constexpr int kInputs = 8;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const Complex<T> D1 = DenominatorOf(call.w, in[0], in[2]), D2 = DenominatorOf(call.w, in[3], in[5]);
    const Complex<T> C{in[6] * in[6], -call.w * in[7]};
    const T S1 = in[1], S2 = in[4];
    return Divide(S1 * S1 * D2 - T(2) * S1 * S2 * C + S2 * S2 * D1, D1 * D2 - C * C, eps);
  }
};

struct Family55 {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const double w = call.w;
    if (IsTiny(w) || IsTiny(ValueOf(in[2]))) return false;
    const Complex<T> bend{T(1), in[3] / T(w)};
    const T tail = in[0] * in[3] / (T(w) * in[2]);
    Complex<T> line;
    if (!Divide(in[0] * in[0] * (bend * bend), DenominatorOf(w, in[2], in[1]), line)) return false;
    eps = line + tail * tail;
    return true;
  }
};

struct Pair61 {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const double w = call.w;
    if (IsTiny(w) || IsTiny(ValueOf(in[2]))) return false;
    return Divide((-in[0] / T(w * w)) * Phase(in[1]), Complex<T>{T(w) - in[2], in[3]}, eps);
  }
};

struct Pair63 {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const double w = call.w;
    if (IsTiny(w) || IsTiny(ValueOf(in[2])) || ValueOf(in[3]) == 0) return false;
    const T u = T(2) * (T(w) - in[2]) / in[3];
    const Complex<T> bend{T(1), in[1]};
    Complex<T> sigma;
    if (!Divide(T(2 / std::numbers::pi) * in[0] / in[3] * (bend * bend), in[1] * in[1] * Complex<T>{T(-1), u}, sigma)) {
      return false;
    }
    eps = TimesI(sigma) * T(60 / w);
    return true;
  }
};

struct Penta80 {
  static constexpr int kInputs = 10;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const Complex<T> D1 = DenominatorOf(call.w, in[0], in[4]), D2 = DenominatorOf(call.w, in[1], in[5]);
    const T C2 = in[6] * in[6];
    return Divide(in[2] * in[2] * D2 + in[3] * in[3] * D1 + in[8] * in[7] * in[7] * C2, D1 * D2 - in[9] * C2 * C2, eps);
  }
};

struct Pair90 {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const T half = in[1] / T(2);
    Complex<T> resonant, antiresonant;
    if (!Divide(Phase(in[2]), Complex<T>{in[0] - T(call.w), -half}, resonant)) return false;
    if (!Divide(Phase(-in[2]), Complex<T>{in[0] + T(call.w), half}, antiresonant)) return false;
    eps = in[3] * (resonant + antiresonant);
    return true;
  }
};

}  // namespace

int CalcFamily31(const TermCall& call, Cplx& result) { return CalcFormula<Family31>(call, result); }
int CalcQuad51(const TermCall& call, Cplx& result) { return CalcFormula<Quad51>(call, result); }
int CalcFamily55(const TermCall& call, Cplx& result) { return CalcFormula<Family55>(call, result); }
int CalcPair61(const TermCall& call, Cplx& result) { return CalcFormula<Pair61>(call, result); }
int CalcPair63(const TermCall& call, Cplx& result) { return CalcFormula<Pair63>(call, result); }
int CalcPenta80(const TermCall& call, Cplx& result) { return CalcFormula<Penta80>(call, result); }
int CalcPair90(const TermCall& call, Cplx& result) { return CalcFormula<Pair90>(call, result); }

}  // namespace kalvex
