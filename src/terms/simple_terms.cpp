#include "terms/simple_terms.h"

#include "terms/formula.h"

namespace kalvex {
namespace {

struct Single9 {
  static constexpr int kInputs = 2;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    return Divide(Complex<T>{in[0], T(0)}, DenominatorOf(call.w, T(0), in[1]), eps);
  }
};

struct Single10 {
  static constexpr int kInputs = 2;
  template <class T>
  static bool Value(const TermCall&, const std::array<T, kInputs>& in, Complex<T>& eps) {
    eps = {in[0], in[1]};
    return true;
  }
};

struct Family25 {
  static constexpr int kInputs = 3;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    return Divide(Complex<T>{in[0], T(0)}, DenominatorOf(call.w, in[2], in[1]), eps);
  }
};

struct Pair27 {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const Complex<T> weight{in[2], T(0)};
    Complex<T> to, from;
    if (!Divide(weight, DenominatorOf(call.w, in[0], in[3]), to)) return false;
    if (!Divide(weight, DenominatorOf(call.w, in[1], in[3]), from)) return false;
    eps = to - from;
    return true;
  }
};

struct Family100 {
  static constexpr int kInputs = 3;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    return Divide(Complex<T>{in[0], T(0)}, DenominatorOf(call.w, in[2], in[1] * in[1]), eps);
  }
};

}  // namespace

int CalcSingle9(const TermCall& call, Cplx& result) { return CalcFormula<Single9>(call, result); }
int CalcSingle10(const TermCall& call, Cplx& result) { return CalcFormula<Single10>(call, result); }
int CalcFamily25(const TermCall& call, Cplx& result) { return CalcFormula<Family25>(call, result); }
int CalcPair27(const TermCall& call, Cplx& result) { return CalcFormula<Pair27>(call, result); }
int CalcFamily100(const TermCall& call, Cplx& result) { return CalcFormula<Family100>(call, result); }

int CalcSingle15(const TermCall& call, Cplx& result) {
  result = call.w == 0 ? Cplx{} : Cplx{60 * call.inputs[1].value / call.w, -60 * call.inputs[0].value / call.w};
  return 0;
}

int ScalarSingle9(const TermCall& call, double& result) {
  const double in0 = call.inputs[0].value;
  const PartialWeight weight = PartialWeightOf(call.w, 0, call.inputs[1].value);
  result = kWeightUnit * in0 * weight.F;
  PutScalarSlope(call, 0, kWeightUnit * weight.F);
  PutScalarSlope(call, 1, kWeightUnit * in0 * weight.dG);
  return 0;
}

int ScalarFamily25(const TermCall& call, double& result) {
  const double in0 = call.inputs[0].value;
  const PartialWeight weight = PartialWeightOf(call.w, call.inputs[2].value, call.inputs[1].value);
  result = kWeightUnit * in0 * weight.F;
  PutScalarSlope(call, 0, kWeightUnit * weight.F);
  PutScalarSlope(call, 1, kWeightUnit * in0 * weight.dG);
  PutScalarSlope(call, 2, kWeightUnit * in0 * weight.dW);
  return 0;
}

int ScalarPair27(const TermCall& call, double& result) {
  const double in2 = call.inputs[2].value, in3 = call.inputs[3].value;
  const PartialWeight to = PartialWeightOf(call.w, call.inputs[0].value, in3);
  const PartialWeight from = PartialWeightOf(call.w, call.inputs[1].value, in3);
  result = kWeightUnit * in2 * (to.F - from.F);
  PutScalarSlope(call, 0, kWeightUnit * in2 * to.dW);
  PutScalarSlope(call, 1, -kWeightUnit * in2 * from.dW);
  PutScalarSlope(call, 2, kWeightUnit * (to.F - from.F));
  PutScalarSlope(call, 3, kWeightUnit * in2 * (to.dG - from.dG));
  return 0;
}

int ScalarFamily100(const TermCall& call, double& result) {
  const double in0 = call.inputs[0].value, in1 = call.inputs[1].value;
  const PartialWeight weight = PartialWeightOf(call.w, call.inputs[2].value, in1 * in1);
  result = kWeightUnit * in0 * weight.F;
  PutScalarSlope(call, 0, kWeightUnit * weight.F);
  PutScalarSlope(call, 1, kWeightUnit * in0 * weight.dG * 2 * in1);
  PutScalarSlope(call, 2, kWeightUnit * in0 * weight.dW);
  return 0;
}

}  // namespace kalvex
