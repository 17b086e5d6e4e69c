// Terms with one denominator or none. They differ in the parameters that describe weight, width and resonance.
#include "terms/formula.h"
#include "terms/term_table.h"

namespace kalvex {
namespace {

struct DrudeByWeight {
  static constexpr const char* kName = "Drude term by its weight";
  static constexpr TermCell kCells[] = {Number(0, Wp, "weight A, the squared plasma frequency", "cm-2", 4e6),
                                        Number(0, G, "width G", "cm-1", 50)};
  static constexpr TermPage kPage = {.formula = "A/(-w^2 - i w G)",
                                     .source = "M. Dressel and G. Gruener, Electrodynamics of Solids (2002), chapter 5",
                                     .limits = "1e30 in both parts at w = 0."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    return Divide(Complex<T>{in[0], T(0)}, DenominatorOf(call.w, T(0), in[1]), eps);
  }

  static int Scalar(const TermCall& call, double& result) {
    const double in0 = call.inputs[0].value;
    const PartialWeight weight = PartialWeightOf(call.w, 0, call.inputs[1].value);
    result = kWeightUnit * in0 * weight.F;
    PutScalarSlope(call, 0, kWeightUnit * weight.F);
    PutScalarSlope(call, 1, kWeightUnit * in0 * weight.dG);
    return 0;
  }
};

struct Constant {
  static constexpr const char* kName = "constant";
  static constexpr TermCell kCells[] = {Number(0, Wp, "real part a", "", 2), Number(0, G, "imaginary part b", "", 0.5)};
  static constexpr TermPage kPage = {
      .formula = "a + i b",
      .source = "a background whose dispersion is outside the measured range",
      .limits = "Defined everywhere.",
      .causal = false,
      .causality =
          "An absorption b that is the same at every frequency has no finite Kramers-Kronig "
          "transform. With b = 0 the term is causal."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall&, const std::array<T, kInputs>& in, Complex<T>& eps) {
    eps = {in[0], in[1]};
    return true;
  }
};

struct FixedConductivity {
  static constexpr const char* kName = "conductivity that is not fitted";
  static constexpr TermCell kCells[] = {
      {0, Wp, "real part a of the subtracted conductivity", "ohm-1 cm-1", 10, TermUse::kSetting},
      {0, G, "its imaginary part b", "ohm-1 cm-1", 5, TermUse::kSetting}};
  static constexpr TermPage kPage = {
      .formula = "60 b/w - i 60 a/w, the contribution of sigma = -(a + i b)",
      .source = "formula adopted as given",
      .limits = "0 at w = 0. There are no derivatives: a fit cannot change a or b. With a negative a it absorbs.",
      .causal = false,
      .causality =
          "The imaginary part b of the conductivity is the same at every frequency and has no matching real "
          "part. With b = 0 the term is causal."};

  static int Calc(const TermCall& call, Cplx& result) {
    result = call.w == 0 ? Cplx{} : Cplx{60 * call.inputs[1].value / call.w, -60 * call.inputs[0].value / call.w};
    return 0;
  }
};

struct LorentzianByWeight {
  static constexpr const char* kName = "Lorentzian by its weight";
  static constexpr TermCell kCells[] = {Number(0, Wp, "weight A, the squared plasma frequency", "cm-2", 4e4),
                                        Number(0, G, "width G", "cm-1", 12), Number(1, Wp, "resonance W", "cm-1", 300)};
  static constexpr TermPage kPage = {
      .formula = "A/D(W, G)",
      .source = "M. Dressel and G. Gruener, Electrodynamics of Solids (2002), chapter 6",
      .limits = "W = 0 is a Drude term. A negative A reduces the absorption. 1e30 in both parts where D is 0."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    return Divide(Complex<T>{in[0], T(0)}, DenominatorOf(call.w, in[2], in[1]), eps);
  }

  static int Scalar(const TermCall& call, double& result) {
    const double in0 = call.inputs[0].value;
    const PartialWeight weight = PartialWeightOf(call.w, call.inputs[2].value, call.inputs[1].value);
    result = kWeightUnit * in0 * weight.F;
    PutScalarSlope(call, 0, kWeightUnit * weight.F);
    PutScalarSlope(call, 1, kWeightUnit * in0 * weight.dG);
    PutScalarSlope(call, 2, kWeightUnit * in0 * weight.dW);
    return 0;
  }
};

struct TransferOfWeight {
  static constexpr const char* kName = "transfer of weight between two resonances";
  static constexpr TermCell kCells[] = {
      Number(0, Wp, "resonance W1 that gains", "cm-1", 150), Number(0, G, "resonance W2 that loses", "cm-1", 300),
      Number(1, Wp, "weight A", "cm-2", 2e4), Number(1, G, "width G of both", "cm-1", 20)};
  static constexpr TermPage kPage = {
      .formula = "A/D(W1, G) - A/D(W2, G)",
      .source = "difference of two Lorentzians (our choice)",
      .limits = "0 for W1 = W2. The weights of the two lines add up to 0. 1e30 in both parts where one D is 0."};
  static constexpr std::size_t kInputs = std::size(kCells);

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    const Complex<T> weight{in[2], T(0)};
    Complex<T> to, from;
    if (!Divide(weight, DenominatorOf(call.w, in[0], in[3]), to)) return false;
    if (!Divide(weight, DenominatorOf(call.w, in[1], in[3]), from)) return false;
    eps = to - from;
    return true;
  }

  static int Scalar(const TermCall& call, double& result) {
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
};

struct SquaredWidthLorentzian {
  static constexpr const char* kName = "Lorentzian whose width cannot turn negative";
  static constexpr TermCell kCells[] = {Number(0, Wp, "weight A, the squared plasma frequency", "cm-2", 4e4),
                                        Number(0, G, "root g of the width", "cm-1/2", 3.5),
                                        Number(1, Wp, "resonance W", "cm-1", 300),
                                        {1, G, "without influence", "", 0, TermUse::kIdle}};
  static constexpr TermPage kPage = {
      .formula = "A/D(W, g^2)",
      .source = "the Lorentzian of the codes 25, 26 with another parameter for its width (our choice)",
      .limits =
          "g and -g are equivalent: a fit that passes 0 stays causal. 1e30 in both parts where D is "
          "0."};
  static constexpr std::size_t kInputs = 3;

  template <class T>
  static bool Value(const TermCall& call, const std::array<T, kInputs>& in, Complex<T>& eps) {
    return Divide(Complex<T>{in[0], T(0)}, DenominatorOf(call.w, in[2], in[1] * in[1]), eps);
  }

  static int Scalar(const TermCall& call, double& result) {
    const double in0 = call.inputs[0].value, in1 = call.inputs[1].value;
    const PartialWeight weight = PartialWeightOf(call.w, call.inputs[2].value, in1 * in1);
    result = kWeightUnit * in0 * weight.F;
    PutScalarSlope(call, 0, kWeightUnit * weight.F);
    PutScalarSlope(call, 1, kWeightUnit * in0 * weight.dG * 2 * in1);
    PutScalarSlope(call, 2, kWeightUnit * in0 * weight.dW);
    return 0;
  }
};

}  // namespace

constinit const TermRecord kDrudeByWeight = MakeTerm<DrudeByWeight, 9>();
constinit const TermRecord kConstant = MakeTerm<Constant, 10>();
constinit const TermRecord kFixedConductivity = MakeTerm<FixedConductivity, 15>();
constinit const TermRecord kLorentzianByWeight25 = MakeTerm<LorentzianByWeight, 25, 26>();
constinit const TermRecord kLorentzianByWeight29 = MakeTerm<LorentzianByWeight, 29, 30>();
constinit const TermRecord kLorentzianByWeight35 = MakeTerm<LorentzianByWeight, 35, 36>();
constinit const TermRecord kLorentzianByWeight37 = MakeTerm<LorentzianByWeight, 37, 38>();
constinit const TermRecord kLorentzianByWeight39 = MakeTerm<LorentzianByWeight, 39, 40>();
constinit const TermRecord kTransferOfWeight = MakeTerm<TransferOfWeight, 27, 28>();
constinit const std::array<TermRecord, 20> kSquaredWidthLorentzians =
    MakePairs<SquaredWidthLorentzian, 100>(std::make_integer_sequence<int, 20>());

}  // namespace kalvex
