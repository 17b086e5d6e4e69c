// Terms of modes that interfere or mix. D(W, G) = W^2 - w^2 - i w G.
#include <numbers>

#include "terms/formula.h"
#include "terms/term_table.h"

namespace kalvex {
namespace {

template <class T>
Complex<T> Phase(const T& p) {
  return {Cos(p), Sin(p)};
}

struct ImpurityAndResonance {
  static constexpr const char* kName = "resonance with an impurity";
  static constexpr TermCell kCells[] = {Number(0, Wp, "plasma frequency Wp", "cm-1", 300),
                                        Number(0, G, "width G0 of the impurity", "cm-1", 40),
                                        Number(1, Wp, "resonance W", "cm-1", 200), Number(1, G, "width G", "cm-1", 20)};
  static constexpr TermPage kPage = {
      .formula = "(Wp^2/w^2)(G0^2/W^2 - (w + i G0)^2/(w^2 - W^2 + i w G))",
      .source = "formula adopted as given; the Fano mode of the codes 55, 56 with G0 instead of Q is the same function",
      .limits =
          "G0 = 0 is the Lorentzian Wp^2/D(W, G). For large W the term vanishes. 1e30 in both parts for w = 0 "
          "and for W = 0."};
  static constexpr std::size_t kInputs = std::size(kCells);

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

struct MixedModes {
  static constexpr const char* kName = "two modes that mix";
  static constexpr TermCell kCells[] = {Number(0, Wp, "resonance W1 of the first mode", "cm-1", 150),
                                        Number(0, G, "strength S1 of the first mode, a plasma frequency", "cm-1", 300),
                                        Number(1, Wp, "width G1 of the first mode", "cm-1", 10),
                                        Number(1, G, "resonance W2 of the second mode", "cm-1", 250),
                                        Number(2, Wp, "strength S2 of the second mode", "cm-1", 200),
                                        Number(2, G, "width G2 of the second mode", "cm-1", 20),
                                        Number(3, Wp, "frequency V, whose square couples the modes", "cm-1", 80),
                                        Number(3, G, "width g, which couples their losses", "cm-1", 3)};
  static constexpr TermPage kPage = {
      .formula =
          "(S1^2 D2 - 2 S1 S2 C + S2^2 D1)/(D1 D2 - C^2)\n"
          "D1 = D(W1, G1), D2 = D(W2, G2), C = V^2 - i w g",
      .source = "A. S. Barker and J. J. Hopfield, Phys. Rev. 135, A1732 (1964)",
      .limits =
          "V = g = 0: two Lorentzians. S2 = 0: the first line with a window at the second. 1e30 in both "
          "parts where the denominator is 0.",
      .causality = "This holds if V^2 is below W1 W2, and g^2 is not above G1 G2."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const Complex<T> D1 = DenominatorOf(call.w, in[0], in[2]), D2 = DenominatorOf(call.w, in[3], in[5]);
    const Complex<T> C{in[6] * in[6], -call.w * in[7]};
    const T S1 = in[1], S2 = in[4];
    return Divide(S1 * S1 * D2 - T(2) * S1 * S2 * C + S2 * S2 * D1, D1 * D2 - C * C, eps);
  }
};

struct FanoMode {
  static constexpr const char* kName = "Fano mode";
  static constexpr TermCell kCells[] = {Number(0, Wp, "plasma frequency Wp", "cm-1", 300),
                                        Number(0, G, "width G", "cm-1", 20), Number(1, Wp, "resonance W", "cm-1", 200),
                                        Number(1, G, "bend Q, of either sign", "cm-1", 40)};
  static constexpr TermPage kPage = {
      .formula = "Wp^2/D(W, G) (1 + i Q/w)^2 + (Wp Q/(w W))^2",
      .source = "J. Humlicek, R. Henn and M. Cardona, Phys. Rev. B 61, 14554 (2000)",
      .limits =
          "Q = 0 is a Lorentzian. The integral of the conductivity is that of the Lorentzian for any Q. "
          "1e30 in both parts for w = 0 and for W = 0."};
  static constexpr std::size_t kInputs = std::size(kCells);

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

struct Interference {
  static constexpr const char* kName = "interference of a resonance with a phase";
  static constexpr TermCell kCells[] = {Number(0, Wp, "amplitude A", "cm-3", 1e6), Number(0, G, "phase p", "rad", 0.5),
                                        Number(1, Wp, "resonance W", "cm-1", 200), Number(1, G, "width G", "cm-1", 20)};
  static constexpr TermPage kPage = {
      .formula = "-(A exp(i p)/w^2)/(w - W + i G)",
      .source = "taken as it stands",
      .limits = "1e30 in both parts for w = 0, for W = 0, and where w = W and G = 0.",
      .causal = false,
      .causality = "The resonance at W has no counterpart at -W: the response to a real field is not real."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const double w = call.w;
    if (IsTiny(w) || IsTiny(ValueOf(in[2]))) return false;
    return Divide((-in[0] / T(w * w)) * Phase(in[1]), Complex<T>{T(w) - in[2], in[3]}, eps);
  }
};

struct FanoLine {
  static constexpr const char* kName = "Fano line in the conductivity";
  static constexpr TermCell kCells[] = {Number(0, Wp, "area A of the line for large q", "ohm-1 cm-2", 1e4),
                                        Number(0, G, "asymmetry q", "", 2), Number(1, Wp, "resonance W", "cm-1", 200),
                                        Number(1, G, "width G", "cm-1", 20)};
  static constexpr TermPage kPage = {
      .formula = "i 60 sigma/w, sigma = (2 A/(pi G)) (1 + i q)^2/((i u - 1) q^2), u = 2 (w - W)/G",
      .source = "U. Fano, Phys. Rev. 124, 1866 (1961), as a complex line; formula adopted as given",
      .limits =
          "Large q is a Lorentzian line of the area A. 1e30 in both parts for w = 0, W = 0, G = 0 or q = "
          "0.",
      .causal = false,
      .causality =
          "The resonance at W has no counterpart at -W. The Fano mode of the codes 55, 56 is the causal form."};
  static constexpr std::size_t kInputs = std::size(kCells);

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

struct CoupledOscillators {
  static constexpr const char* kName = "coupled oscillators";
  static constexpr TermCell kCells[] = {Number(0, Wp, "resonance W1", "cm-1", 150),
                                        Number(0, G, "resonance W2", "cm-1", 250),
                                        Number(1, Wp, "plasma frequency P1", "cm-1", 200),
                                        Number(1, G, "plasma frequency P2", "cm-1", 300),
                                        Number(2, Wp, "width G1", "cm-1", 10),
                                        Number(2, G, "width G2", "cm-1", 20),
                                        Number(3, Wp, "coupling C", "cm-1", 60),
                                        Number(3, G, "plasma frequency V of the coupling", "cm-1", 60),
                                        Number(4, Wp, "factor K of the mixed term", "", 2),
                                        Number(4, G, "factor L of the repulsion", "", 1)};
  static constexpr TermPage kPage = {
      .formula = "(D2 P1^2 + D1 P2^2 + K V^2 C^2)/(D1 D2 - L C^4), D1 = D(W1, G1), D2 = D(W2, G2)",
      .source = "taken as it stands",
      .limits = "C = 0: two Lorentzians. 1e30 in both parts where the denominator is 0.",
      .causality = "This holds if L C^4 lies between 0 and W1^2 W2^2."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const Complex<T> D1 = DenominatorOf(call.w, in[0], in[4]), D2 = DenominatorOf(call.w, in[1], in[5]);
    const T C2 = in[6] * in[6];
    return Divide(in[2] * in[2] * D2 + in[3] * in[3] * D1 + in[8] * in[7] * in[7] * C2, D1 * D2 - in[9] * C2 * C2, eps);
  }
};

struct PhasedPair {
  static constexpr const char* kName = "resonant and antiresonant line with a phase";
  static constexpr TermCell kCells[] = {Number(0, Wp, "resonance W", "cm-1", 200), Number(0, G, "width G", "cm-1", 30),
                                        Number(1, Wp, "phase p", "rad", 0.5), Number(1, G, "amplitude A", "cm-1", 150)};
  static constexpr TermPage kPage = {
      .formula = "A (exp(i p)/(W - w - i G/2) + exp(-i p)/(W + w + i G/2))",
      .source = "P. G. Etchegoin, E. C. Le Ru and M. Meyer, J. Chem. Phys. 125, 164705 (2006)",
      .limits = "p = 0: 2 W A/(W^2 - (w + i G/2)^2). 1e30 in both parts where w = W and G = 0."};
  static constexpr std::size_t kInputs = std::size(kCells);

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

constinit const TermRecord kImpurityAndResonance31 = MakeTerm<ImpurityAndResonance, 31, 32>();
constinit const TermRecord kImpurityAndResonance65 = MakeTerm<ImpurityAndResonance, 65, 66>();
constinit const TermRecord kImpurityAndResonance67 = MakeTerm<ImpurityAndResonance, 67, 68>();
constinit const TermRecord kImpurityAndResonance69 = MakeTerm<ImpurityAndResonance, 69, 70>();
constinit const TermRecord kImpurityAndResonance71 = MakeTerm<ImpurityAndResonance, 71, 72>();
constinit const TermRecord kMixedModes = MakeTerm<MixedModes, 51, 54>();
constinit const TermRecord kFanoMode55 = MakeTerm<FanoMode, 55, 56>();
constinit const TermRecord kFanoMode57 = MakeTerm<FanoMode, 57, 58>();
constinit const TermRecord kFanoMode59 = SharingCodes(MakeTerm<FanoMode, 59, 60>());
constinit const TermRecord kInterference = SharingCodes(MakeTerm<Interference, 61, 62>());
constinit const TermRecord kFanoLine = MakeTerm<FanoLine, 63, 64>();
constinit const TermRecord kCoupledOscillators = MakeTerm<CoupledOscillators, 80, 84>();
constinit const TermRecord kPhasedPair = MakeTerm<PhasedPair, 90, 91>();

}  // namespace kalvex
