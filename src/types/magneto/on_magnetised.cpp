// Types whose partner is a magnetised sample of type 49: other geometries and results for the same oscillators.
#include "types/magneto/circular.h"
#include "types/stacks/film_optics.h"
#include "types/types.h"

namespace kalvex {
namespace {

constexpr RowCell Magnetised() { return EvaluatedType(0, Wo, "magnetised sample, of type 49", 49); }
// The Quantities that they read from this partner.
constexpr Quantity kTensorOfEps[] = {kE1, kE2, kN1, kN2};
constexpr Quantity kTensorOfSigma[] = {kS1, kS2, kDepth, kLoss};

template <class T>
Circular<T> EpsOf(const TypeInputs<T>& in, std::size_t partner) {
  return CircularOf(Complex<T>{in.quantity(partner, kE1), in.quantity(partner, kE2)},
                    Complex<T>{in.quantity(partner, kN1), in.quantity(partner, kN2)});
}
template <class T>
struct SigmaOfPartner {
  SigmaOfPartner(const TypeInputs<T>& in, std::size_t partner)
      : xx{in.quantity(partner, kS1), in.quantity(partner, kS2)},
        xy{in.quantity(partner, kDepth), in.quantity(partner, kLoss)} {}
  Complex<T> xx, xy;
};

// Vacuum, magnetised layer, film, and a substrate that is a half-space or a slab without fringes.
struct LayersInField {
  static constexpr Hooks kHooks = hook::kAsked;
  enum Input { kMagnetised, kFilm, kSubstrate, kThickness, kFilmThickness, kSlab };
  static constexpr RowCell kHead[] = {Magnetised(),
                                      Partner(0, Wp, "film"),
                                      Partner(0, G, "substrate"),
                                      Own(1, Wo, "thickness of the magnetised layer, cm", 0.0005),
                                      Own(1, Wp, "thickness of the film, cm, 0 for none", 0.0004),
                                      Own(2, Wo, "thickness of the substrate, cm, 0 for a half-space", 0.01)};
  static constexpr auto& kAsked = kTensorOfEps;
  static constexpr std::uint64_t kNoSlab = ~InputBits({kSlab});
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity, mean of both circular ones", kNoSlab},
                                       {kTrans, "transmission, mean of both circular ones"},
                                       {kRp, "Kerr rotation, radians", kNoSlab},
                                       {kRs, "Kerr ellipticity", kNoSlab},
                                       {kRps, "reflectivity of +", kNoSlab},
                                       {kE1, "Faraday rotation, radians", kNoSlab},
                                       {kE2, "Faraday ellipticity", kNoSlab},
                                       Angle(180, {kS1, "Faraday rotation, degrees", kNoSlab}),
                                       {kS2, "absorption 1 - R - T"},
                                       {kDefringed, "reflectivity of -", kNoSlab}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Complex<T> ns = Sqrt(in.eps(kSubstrate));
    const Circular<T> eps = EpsOf(in, kMagnetised);
    Circular<T> r, t;
    AddAmplitudes(in, eps.plus, ns, r.plus, t.plus);
    AddAmplitudes(in, eps.minus, ns, r.minus, t.minus);
    const Polarisation<T> kerr = PolarisationOf(r), faraday = PolarisationOf(t);
    q[kRps] = Norm(r.plus);
    q[kDefringed] = Norm(r.minus);
    q[kRefl] = T(0.5) * (q[kRps] + q[kDefringed]);
    q[kTrans] = T(0.5) * (Norm(t.plus) + Norm(t.minus)) * ThroughSubstrate(in, ns);
    q[kRp] = kerr.rotation;
    q[kRs] = kerr.ellipticity;
    q[kE1] = faraday.rotation;
    q[kE2] = faraday.ellipticity;
    q[kS1] = T(kDegreesPerRadian) * faraday.rotation;
    q[kS2] = T(1) - q[kRefl] - q[kTrans];
  }

 private:
  template <class T>
  static void AddAmplitudes(const TypeInputs<T>& in, const Complex<T>& eps, const Complex<T>& ns, Complex<T>& r,
                            Complex<T>& t) {
    const Complex<T> one{T(1), T(0)}, n1 = Sqrt(eps), n2 = Sqrt(in.eps(kFilm));
    const Complex<T> r01 = InterfaceReflection(n1, one), r12 = InterfaceReflection(n2, n1),
                     r23 = InterfaceReflection(ns, n2);
    const Complex<T> e1 = PassageFactor(n1, in[kThickness], in.x), e2 = PassageFactor(n2, in[kFilmThickness], in.x);
    const Complex<T> film = T(1) + r12 * r23 * e2 * e2;
    const Complex<T> behind = Quotient(r12 + r23 * e2 * e2, film);
    const Complex<T> layer = T(1) + r01 * behind * e1 * e1;
    r = Quotient(r01 + behind * e1 * e1, layer);
    t = Quotient((T(1) + r01) * (T(1) + r12) * (T(1) + r23) * e1 * e2, film * layer);
  }
  // The factor of |t|^2: for the flux in a half-space, or for one passage through a slab and out of its back face.
  template <class T>
  static T ThroughSubstrate(const TypeInputs<T>& in, const Complex<T>& ns) {
    if (!(ValueOf(in[kSlab]) > 0)) return ns.re;
    return Norm(PassageFactor(ns, in[kSlab], in.x) * Quotient(T(2) * ns, ns + T(1)));
  }
};

// The field lies in the surface; the light is polarised across it.
struct VoigtGeometry {
  static constexpr Hooks kHooks = hook::kAsked;
  enum Input { kMagnetised };
  static constexpr RowCell kHead[] = {Magnetised()};
  static constexpr auto& kAsked = kTensorOfEps;
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity"},
                                       {kE1, "Re eps_v"},
                                       {kE2, "Im eps_v"},
                                       {kS1, "Re sigma_v, Ohm^-1 cm^-1"},
                                       {kS2, "Im sigma_v, Ohm^-1 cm^-1"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Circular<T> eps = EpsOf(in, kMagnetised);
    const Complex<T> voigt = Guarded(T(2) * eps.plus * eps.minus, eps.plus + eps.minus);
    const Complex<T> n = Sqrt(voigt);
    q[kRefl] = Norm(Guarded(T(1) - n, T(1) + n));
    q[kE1] = voigt.re;
    q[kE2] = voigt.im;
    q[kS1] = T(in.x / 60) * voigt.im;
    q[kS2] = T(in.x / 60) * (T(1) - voigt.re);
  }

 private:
  template <class T>
  static Complex<T> Guarded(const Complex<T>& a, const Complex<T>& b) {
    if (Norm(ValueOf(b)) < 1e-50) return {};
    return a / b;
  }
};

// Resistivities of a bar: the inverse of the conductivity tensor.
struct Magnetotransport {
  static constexpr Hooks kHooks = hook::kAsked;
  enum Input { kMagnetised, kFactor, kLength, kDiagonal, kHall };
  static constexpr RowCell kHead[] = {
      Magnetised(), Own(0, G, "factor of both conductivities", 1.2), Own(1, Wo, "divisor of both results", 2),
      Own(1, Wp, "factor of the diagonal result", 3), Own(1, G, "factor of the Hall result", 4)};
  static constexpr auto& kAsked = kTensorOfSigma;
  static constexpr SlotUse kFills[] = {
      {kRefl, "Re rho_xx times factor over divisor", InputBits({kMagnetised, kFactor, kLength, kDiagonal})},
      {kTrans, "Re rho_xy times factor over divisor", InputBits({kMagnetised, kFactor, kLength, kHall})}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const SigmaOfPartner<T> sigma(in, kMagnetised);
    const Complex<T> xx = sigma.xx * in[kFactor], xy = sigma.xy * in[kFactor];
    const Complex<T> square = xx * xx + xy * xy;
    if (Norm(ValueOf(square)) < 1e-20) return;
    q[kRefl] = (xx / square).re * in[kDiagonal] / HeldFromZero(in[kLength]);
    q[kTrans] = (xy / square).re * in[kHall] / HeldFromZero(in[kLength]);
  }
};

// A sheet on a substrate between a polariser and an analyser.
struct Dichroism {
  static constexpr Hooks kHooks = hook::kAsked;
  enum Input { kMagnetised, kSubstrate, kScale, kThickness, kAngle };
  static constexpr RowCell kHead[] = {
      Magnetised(), Partner(0, Wp, "substrate"), Own(1, Wo, "number of layers of 3.35 A in the sheet", 100),
      Own(1, Wp, "thickness of the substrate, cm", 0.002), Own(1, G, "angle of the analyser, degrees", 30)};
  static constexpr auto& kAsked = kTensorOfSigma;
  static constexpr SlotUse kFills[] = {{kRefl, "transmission, mean of both circular ones"},
                                       {kTrans, "circular dichroism (|t+|^2 - |t-|^2)/(|t+|^2 + |t-|^2)"},
                                       {kRp, "transmission through the analyser"},
                                       {kRs, "the same relative to Quantity 0"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const SigmaOfPartner<T> tensor(in, kMagnetised);
    const Circular<T> sigma = CircularOf(tensor.xx, tensor.xy);
    const Complex<T> one{T(1), T(0)}, n = Sqrt(in.eps(kSubstrate));
    const Complex<T> slab = PassageFactor(n, in[kThickness], in.x) * Quotient(T(2) * n, n + T(1));
    const T perSigma = T(kSheetOfLayer) * in[kScale];
    const Complex<T> plus = SheetTransmission(one, n, sigma.plus * perSigma) * slab,
                     minus = SheetTransmission(one, n, sigma.minus * perSigma) * slab;
    const T sum = Norm(plus) + Norm(minus), difference = Norm(plus) - Norm(minus);
    q[kRefl] = T(0.5) * sum;
    if (ValueOf(sum) > 0) q[kTrans] = difference / sum;
    const Complex<T> tx = T(0.5) * (plus + minus), ty = T(0.5) * TimesI(plus - minus);
    const T twice = in[kAngle] * T(2 / kDegreesPerRadian);
    q[kRp] = T(0.5) * (Norm(tx) - Norm(ty)) * Cos(twice) + (tx * Conj(ty)).re * Sin(twice) + T(0.5) * q[kRefl];
    if (ValueOf(sum) > 0) q[kRs] = q[kRp] / q[kRefl];
  }
};

// Kerr and Faraday angles to first order in the Hall conductivity.
struct IntrinsicKerr {
  static constexpr Hooks kHooks = hook::kAsked;
  enum Input { kMagnetised, kThickness, kDiagonal, kHall };
  static constexpr RowCell kHead[] = {Magnetised(), Own(0, Wp, "thickness of the free film, cm", 1e-6),
                                      Own(1, Wo, "scale of sigma_xx, 0 for 1", 1),
                                      Own(1, Wp, "scale of sigma_xy, 0 for 1", 1)};
  static constexpr auto& kAsked = kTensorOfSigma;
  static constexpr SlotUse kFills[] = {{kE1, "Kerr rotation of a thick sample, radians"},
                                       {kE2, "Kerr ellipticity of a thick sample"},
                                       {kN1, "Re Faraday angle of the free film, radians"},
                                       {kN2, "Im Faraday angle of the free film"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const SigmaOfPartner<T> sigma(in, kMagnetised);
    const Complex<T> xx = sigma.xx * ScaleOf(in[kDiagonal]), xy = sigma.xy * ScaleOf(in[kHall]);
    if (in.x == 0) return;
    const Complex<T> eps = T(1) + TimesI(xx) * T(60 / in.x);
    const Complex<T> thick = -Quotient(xy, xx * Sqrt(eps));
    const T perSigma = T(377) * in[kThickness];
    const Complex<T> film = Quotient(perSigma * xy, T(2) + perSigma * xx);
    q[kE1] = thick.re;
    q[kE2] = thick.im;
    q[kN1] = film.re;
    q[kN2] = film.im;
  }

 private:
  template <class T>
  static T ScaleOf(const T& scale) {
    return ValueOf(scale) == 0 ? T(1) : scale;
  }
};

}  // namespace

constinit const ModelType kMagnetoopticsReflTrans = FittedType<LayersInField, Exactly(3)>(
    50, "Magnetooptics-ref/tran",
    {.sample = "a magnetised layer and a film on a substrate in a field along the beam: R, T, Kerr and Faraday angles",
     .formula =
         "order: vacuum, magnetised layer, film, substrate; for either polarisation r_ab = (n_a - n_b)/(n_a + n_b)\n"
         "r_b = (r12 + r23 e2^2)/(1 + r12 r23 e2^2), r = (r01 + r_b e1^2)/(1 + r01 r_b e1^2)\n"
         "t = t01 t12 t23 e1 e2/((1 + r12 r23 e2^2)(1 + r01 r_b e1^2)), e = exp(2 pi i x n d)\n"
         "angles: L = ln(a-/a+), rotation Im L/2, ellipticity -tanh(Re L/2)\n"
         "T = |t|^2 Re n_s into a half-space, or |t exp(2 pi i x n_s d_s) 2 n_s/(n_s + 1)|^2 through a slab",
     .source =
         "Airy sums of both films, M. Born, E. Wolf, Principles of Optics, chapter 1.6; the order of the layers is "
         "a choice of this program"});

constinit const ModelType kVoigtDl = FittedType<VoigtGeometry, Exactly(1)>(
    53, "Voigt-DL",
    {.sample = "a thick magnetised sample with the field in its surface, light polarised across the field",
     .formula = "eps_v = 2 eps+ eps-/(eps+ + eps-), R = |(1 - n)/(1 + n)|^2, sigma_v = i (1 - eps_v) x/60",
     .source = "E. D. Palik, J. K. Furdyna, Rep. Prog. Phys. 33, 1193 (1970)"});

constinit const ModelType kMagnetotransport = FittedType<Magnetotransport, Exactly(2)>(
    96, "Magnetotrans. for -49",
    {.sample = "resistivities of a bar of a magnetised sample",
     .formula = "rho_xx = sigma_xx/(sigma_xx^2 + sigma_xy^2), rho_xy = sigma_xy/(sigma_xx^2 + sigma_xy^2),\n"
                "both conductivities times the factor in row 1",
     .source = "inverse of the conductivity tensor"});

constinit const ModelType kMagnetoopticsDichroism = ShownType<Dichroism, Exactly(2)>(
    89, "Magneto-optics-dichro",
    {.sample = "a magnetised sheet on a substrate, through an analyser",
     .formula = "s+- = 1.2619984e-5 N sigma+-, t+- = 2/(1 + n + s+-) exp(2 pi i x n d) 2n/(n + 1)\n"
                "(tx, ty) = ((t+ + t-)/2, i (t+ - t-)/2)\n"
                "through the analyser: (|tx|^2 - |ty|^2) cos(2a)/2 + Re(tx conj ty) sin(2a) + (|t+|^2 + |t-|^2)/4",
     .source = "sheet at an interface: boundary conditions of the fields; no echoes in the substrate"});

constinit const ModelType kIntrinsicKerr = ShownType<IntrinsicKerr, Exactly(2)>(
    58, "Intrinsic Kerr",
    {.sample =
         "Kerr angle of a thick magnetised sample and Faraday angle of a free film, for small Hall conductivities",
     .formula =
         "thick: -sigma_xy/(sigma_xx sqrt(1 + 60 i sigma_xx/x)), rotation its real part, ellipticity its imaginary "
         "part\nfilm: 377 d sigma_xy/(2 + 377 d sigma_xx)",
     .source = "P. N. Argyres, Phys. Rev. 97, 334 (1955)"});

}  // namespace kalvex
