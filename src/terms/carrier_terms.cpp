#include "terms/carrier_terms.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "terms/formula.h"

namespace kalvex {
namespace {

template <class T>
Complex<T> Rate(const T& g, double w) {  // g - i w
  return {g, T(-w)};
}

bool IsZero(double x) { return std::fabs(x) < kTinyNorm; }

// i 60 sigma/w
template <class T>
Complex<T> OfConductivity(const Complex<T>& sigma, double w) {
  return TimesI(sigma) * T(60 / w);
}

struct Pair3 {
  static constexpr int kInputs = 3;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const Complex<T> z2 = Rate(in[1], call.w) / in[2], z4 = z2 * z2;
    const Complex<T> z = Sqrt(z2), q = Sqrt(z2 + T(1));
    const Complex<T> bracket = (T(2) * z2 + T(1)) * (T(1) - T(8) * z4 - T(8) * z2) + T(16) * (z * z2 + z * z4) * q;
    eps = OfConductivity(T(2) * (in[0] * bracket), call.w);
    return true;
  }
};

struct Family5 {
  static constexpr int kInputs = 3;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const Complex<T> roots = Sqrt(Rate(in[1], call.w)) * Sqrt(Rate(in[1] + in[2], call.w));
    Complex<T> sigma;
    if (!Divide(Complex<T>{in[0] * in[1], T(0)}, roots, sigma)) return false;
    eps = OfConductivity(sigma, call.w);
    return true;
  }
};

struct Pair33 {
  static constexpr int kInputs = 4;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    if (IsZero(call.w)) return false;
    Complex<T> drude, back;
    if (!Divide(Complex<T>{in[0] * in[0] / T(60), T(0)}, Rate(in[2], call.w), drude)) return false;
    if (!Divide(Complex<T>{in[1] * in[3], T(0)}, Rate(in[3], call.w), back)) return false;
    eps = OfConductivity(drude * (back + T(1)), call.w);
    return true;
  }
};

struct Triple140 {
  static constexpr int kInputs = 5;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    if (IsZero(call.w)) return false;
    const Complex<T> first = Rate(in[1], call.w);
    Complex<T> fluid;
    if (!Divide(in[0] * in[0] * first, first * Rate(in[2], call.w) + in[3] * in[3], fluid)) return false;
    eps = TimesI(fluid + T(4 * std::numbers::pi) * in[4]) / T(call.w);
    return true;
  }
};

struct Pair60 {
  static constexpr int kInputs = 4;
  static constexpr double kKelvin = 1.4383137011779292;  // cm K
  static constexpr double kFloor = 1e-10;
  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const double w = std::max(call.w, kFloor);
    if (Norm(Cplx{ValueOf(in[3]), 0}) < kTinyNorm) return false;
    const T T2 = T(2) * (in[2] > T(kFloor) ? in[2] : T(kFloor));
    const T step = Tanh(T(kKelvin) * (T(w / 2) - in[1]) / T2) - Tanh(T(kKelvin) * (T(-w / 2) - in[1]) / T2);
    const T X = T(1816.5 * 3.35 * 0.5) / in[3] * step * T(w * w) / (T(4) * in[0] * in[0] + T(w * w));
    eps = {T(0), T(60 / w) * X};
    return true;
  }
};

// The marker of a term that puts it into one part alone.
int GivePart(const TermCall& call, const Cplx& marker, Cplx& result) {
  GiveMarker(call, result);
  result = marker;
  return 0;
}

Cplx Power(const Cplx& z, double exponent) { return Exp(exponent * Log(z)); }

}  // namespace

int CalcPair1(const TermCall& call, Cplx& result) {
  const double Wp = call.inputs[0].value, a = std::clamp(call.inputs[1].value, 0.0, 0.5), w = call.w;
  const Cplx z1{w, call.inputs[2].value}, z2{w, call.inputs[3].value};
  const Cplx c = w * (Power(z1, 2 * a) * Power(z2, 1 - 2 * a));
  if (!(Norm(c) >= kTinyNorm)) {
    GiveMarker(call, result);
    return 0;
  }
  result = Cplx{-Wp * Wp, 0} / c;
  if (call.derivatives) {
    PutSlope(call.inputs[0], Cplx{-2 * Wp, 0} / c);
    PutSlope(call.inputs[1], -2.0 * (result * Log(z1 / z2)));
    PutSlope(call.inputs[2], (-2 * a) * (TimesI(result) / z1));
    PutSlope(call.inputs[3], -(1 - 2 * a) * (TimesI(result) / z2));
  }
  return 0;
}

int CalcPair3(const TermCall& call, Cplx& result) {
  if (IsZero(call.w) || IsZero(call.inputs[1].value) || IsZero(call.inputs[2].value)) {
    return GivePart(call, {0, kNoValue}, result);
  }
  return CalcFormula<Pair3>(call, result);
}

int CalcFamily5(const TermCall& call, Cplx& result) {
  if (IsZero(call.w) || IsZero(call.inputs[1].value) || IsZero(call.inputs[2].value)) {
    return GivePart(call, {kNoValue, 0}, result);
  }
  return CalcFormula<Family5>(call, result);
}

int CalcPair33(const TermCall& call, Cplx& result) { return CalcFormula<Pair33>(call, result); }
int CalcTriple140(const TermCall& call, Cplx& result) { return CalcFormula<Triple140>(call, result); }
int CalcPair60(const TermCall& call, Cplx& result) { return CalcFormula<Pair60>(call, result); }

}  // namespace kalvex
