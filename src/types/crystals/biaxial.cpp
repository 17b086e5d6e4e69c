// Biaxial crystals at oblique incidence. Axis a lies in the surface and the plane of incidence, b is normal to that
// plane, c is along the surface normal. One thick crystal, a small change of it, or a film on a substrate.
#include <numbers>

#include "types/crystals/ellipsometric_reading.h"
#include "types/types.h"

namespace kalvex {
namespace {

template <class T>
struct Axes {
  T a, b, c;
};

template <class T>
Complex<T> Over(const T& a, const Complex<T>& b) {
  return Quotient(Complex<T>{a, T(0)}, b);
}

// Amplitudes reflected by a thick crystal; Z is Complex<T>, or Varied<T> for a change to first order.
template <class Z, class T>
struct CrystalAmplitudes {
  CrystalAmplitudes(const Axes<Z>& eps, const Incidence<T>& at) {
    const Z na = Sqrt(eps.a), zc = Sqrt(T(1) - Over(at.sine2, eps.c)), kb = Sqrt(eps.b - at.sine2);
    p = (zc - na * at.cosine) / (zc + na * at.cosine);
    s = (at.cosine - kb) / (at.cosine + kb);
  }
  Z p{}, s{};
};
template <class T>
Axes<Complex<T>> AxesOf(const TypeInputs<T>& in, std::size_t a, std::size_t b, std::size_t c) {
  return {in.eps(a), in.eps(b), in.eps(c)};
}

struct OrthorhombicSample {
  enum Input { kA, kB, kC, kAngle, kPolariser };
  static constexpr RowCell kHead[] = {
      Partner(0, Wo, "axis a, in the plane of incidence and the surface"),
      Partner(1, Wo, "axis b, across the plane of incidence"), Partner(2, Wo, "axis c, along the normal"),
      Own(0, Wp, "angle of incidence, degrees", 65), Own(0, G, "angle of the polariser, degrees", 40)};
  static constexpr SlotUse kFills[] = {{kRp, "p-reflectivity"},
                                       {kRs, "s-reflectivity"},
                                       {kE1, "Psi, degrees"},
                                       Angle(360, {kE2, "Delta, degrees"}),
                                       {kS1, "(|rho|^2 - tan^2 P)/(|rho|^2 + tan^2 P)"},
                                       {kS2, "2 Re rho tan P/(|rho|^2 + tan^2 P)"},
                                       {kN1, "pseudo dielectric function, real part"},
                                       {kN2, "pseudo dielectric function, imaginary part"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Incidence<T> at(in[kAngle]);
    const CrystalAmplitudes<Complex<T>, T> r(AxesOf(in, kA, kB, kC), at);
    const Complex<T> rho = Quotient(r.p, r.s);
    q[kRp] = Norm(r.p);
    q[kRs] = Norm(r.s);
    FillPsiDelta(rho, q);
    FillRotatingAnalyser(rho, in[kPolariser], q);
    FillPseudoResponse(at, Quotient(T(1) + rho, T(1) - rho), q);
  }
};

// A complex number with its change to first order.
template <class T>
struct Varied {
  Complex<T> z{};
  Complex<T> d{};

  friend Varied operator+(const Varied& x, const Varied& y) { return {x.z + y.z, x.d + y.d}; }
  friend Varied operator-(const Varied& x, const Varied& y) { return {x.z - y.z, x.d - y.d}; }
  friend Varied operator*(const Varied& x, const Varied& y) { return {x.z * y.z, x.z * y.d + x.d * y.z}; }
  friend Varied operator/(const Varied& x, const Varied& y) {
    const Complex<T> quotient = Quotient(x.z, y.z);
    return {quotient, Quotient(x.d - quotient * y.d, y.z)};
  }
  friend Varied operator*(const Varied& x, const T& y) { return {x.z * y, x.d * y}; }
  friend Varied operator-(const Varied& x, const T& y) { return {x.z - y, x.d}; }
  friend Varied operator+(const T& x, const Varied& y) { return {x + y.z, y.d}; }
  friend Varied operator-(const T& x, const Varied& y) { return {x - y.z, -y.d}; }
  friend Varied Over(const T& x, const Varied& y) { return Varied{{x, T(0)}, {}} / y; }
  friend Varied Sqrt(const Varied& x) {
    const Complex<T> root = Sqrt(x.z);
    return {root, Quotient(x.d, T(2) * root)};
  }
};
// The change of |z|^2.
template <class T>
T ChangeOfNorm(const Varied<T>& x) {
  return T(2) * (x.z.re * x.d.re + x.z.im * x.d.im);
}

struct DiffOrthoSample {
  enum Input { kA, kB, kC, kChangeA, kChangeB, kChangeC, kAngle, kPolariser };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "axis a of the reference, in the plane of incidence"),
                                      Partner(1, Wo, "axis b of the reference, across it"),
                                      Partner(2, Wo, "axis c of the reference, along the normal"),
                                      Partner(0, Wp, "change of axis a"),
                                      Partner(1, Wp, "change of axis b"),
                                      Partner(2, Wp, "change of axis c"),
                                      Own(0, G, "angle of incidence, degrees", 65),
                                      Own(1, G, "angle of the polariser, degrees", 40)};
  static constexpr SlotUse kFills[] = {{kRp, "change of the p-reflectivity"},
                                       {kRs, "change of the s-reflectivity"},
                                       {kE1, "change of Psi, degrees"},
                                       Angle(360, {kE2, "change of Delta, degrees"}),
                                       {kS1, "change of (|rho|^2 - tan^2 P)/(|rho|^2 + tan^2 P)"},
                                       {kS2, "change of 2 Re rho tan P/(|rho|^2 + tan^2 P)"},
                                       {kN1, "change of the pseudo dielectric function, real part"},
                                       {kN2, "change of the pseudo dielectric function, imaginary part"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Incidence<T> at(in[kAngle]);
    const Axes<Varied<T>> eps{
        {in.eps(kA), in.eps(kChangeA)}, {in.eps(kB), in.eps(kChangeB)}, {in.eps(kC), in.eps(kChangeC)}};
    const CrystalAmplitudes<Varied<T>, T> r(eps, at);
    const Varied<T> rho = r.p / r.s;
    q[kRp] = ChangeOfNorm(r.p);
    q[kRs] = ChangeOfNorm(r.s);
    const T square = Norm(rho.z), modulus = Sqrt(square), ofSquare = ChangeOfNorm(rho);
    q[kE1] = T(0.5) * ofSquare / modulus / ((T(1) + square) * T(kRadiansPerDegree));
    q[kE2] = T(kDegreesPerRadian) * (rho.z.re * rho.d.im - rho.z.im * rho.d.re) / square;
    const T angle = in[kPolariser] * T(kRadiansPerDegree), tangent = Sin(angle) / Cos(angle), t2 = tangent * tangent;
    const T sum = square + t2;
    q[kS1] = T(2) * t2 * ofSquare / (sum * sum);
    q[kS2] = T(2) * tangent * (rho.d.re / sum - rho.z.re * ofSquare / (sum * sum));
    const Varied<T> w = (T(1) + rho) / (T(1) - rho);
    const Complex<T> pseudo = (w * w).d * (at.sine2 * at.tangent2);
    q[kN1] = pseudo.re;
    q[kN2] = pseudo.im;
  }
};

// Amplitudes reflected by a film on a substrate, both biaxial. `limit` is that of GuardedExp for the film's phase.
template <class T>
struct FilmAmplitudes {
  FilmAmplitudes(const Axes<Complex<T>>& film, const Axes<Complex<T>>& substrate, const T& thickness,
                 const Incidence<T>& at, double x, double limit) {
    const Complex<T> zc = Sqrt(T(1) - Over(at.sine2, film.c)), na = Sqrt(film.a);
    const Complex<T> Y1 = Quotient(na, zc), Y2 = Quotient(Sqrt(substrate.a), Sqrt(T(1) - Over(at.sine2, substrate.c)));
    const Complex<T> k1 = Sqrt(film.b - at.sine2), k2 = Sqrt(substrate.b - at.sine2);
    const Complex<T> Y0 = Quotient(Complex<T>{T(1), T(0)}, Complex<T>{at.cosine, T(0)});
    const T path = thickness * T(4 * std::numbers::pi * x);
    p = Airy(Quotient(Y0 - Y1, Y0 + Y1), Quotient(Y1 - Y2, Y1 + Y2), GuardedExp(TimesI(na * zc) * path, limit));
    s = Airy(Quotient(at.cosine - k1, at.cosine + k1), Quotient(k1 - k2, k1 + k2),
             GuardedExp(TimesI(k1) * path, limit));
  }
  Complex<T> p, s;

 private:
  static Complex<T> Airy(const Complex<T>& front, const Complex<T>& back, const Complex<T>& passed) {
    return Quotient(front + passed * back, T(1) + passed * front * back);
  }
};

struct FilmOnCrystal {
  enum Input { kFilmA, kFilmB, kFilmC, kSubstrateA, kSubstrateB, kSubstrateC, kAngle, kPolariser, kThickness };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "film, axis a in the plane of incidence"),
                                      Partner(1, Wo, "film, axis b across it"),
                                      Partner(2, Wo, "film, axis c along the normal"),
                                      Partner(3, Wo, "substrate, axis a"),
                                      Partner(4, Wo, "substrate, axis b"),
                                      Partner(5, Wo, "substrate, axis c"),
                                      Own(0, Wp, "angle of incidence, degrees", 65),
                                      Own(0, G, "angle of the polariser, degrees", 40),
                                      Own(1, Wp, "thickness of the film, cm", 0.0001)};
};

struct OrthoTwoLayers : FilmOnCrystal {
  static constexpr SlotUse kFills[] = {{kRp, "p-reflectivity"},
                                       {kRs, "s-reflectivity"},
                                       {kE1, "Psi, degrees"},
                                       {kE2, "magnitude of Delta, degrees"},
                                       {kS1, "(|rho|^2 - tan^2 P)/(|rho|^2 + tan^2 P)"},
                                       {kS2, "2 Re rho tan P/(|rho|^2 + tan^2 P)"},
                                       {kN1, "pseudo dielectric function, real part"},
                                       {kN2, "pseudo dielectric function, imaginary part"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Incidence<T> at(in[kAngle]);
    const FilmAmplitudes<T> r(AxesOf(in, kFilmA, kFilmB, kFilmC), AxesOf(in, kSubstrateA, kSubstrateB, kSubstrateC),
                              in[kThickness], at, in.x, 0);
    const Complex<T> rho = -Quotient(r.p, r.s);
    q[kRp] = Norm(r.p);
    q[kRs] = Norm(r.s);
    FillPsiDelta(rho, q);
    if (ValueOf(q[kE2]) < 0) q[kE2] = -q[kE2];
    FillRotatingAnalyser(rho, in[kPolariser], q);
    FillPseudoResponse(at, Quotient(T(1) - rho, T(1) + rho), q);
  }
};

struct FilmSubstrateEllips : FilmOnCrystal {
  static constexpr SlotUse kFills[] = {{kE1, "Psi, degrees"},
                                       Angle(360, {kE2, "Delta, degrees"}),
                                       {kS1, "(|rho|^2 - tan^2 P)/(|rho|^2 + tan^2 P)"},
                                       {kS2, "2 Re rho tan P/(|rho|^2 + tan^2 P)"},
                                       {kN1, "pseudo dielectric function, real part"},
                                       {kN2, "pseudo dielectric function, imaginary part"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Incidence<T> at(in[kAngle]);
    const FilmAmplitudes<T> r(AxesOf(in, kFilmA, kFilmB, kFilmC), AxesOf(in, kSubstrateA, kSubstrateB, kSubstrateC),
                              in[kThickness], at, in.x, kGainLimit);
    const Complex<T> rho = Quotient(r.p, r.s);
    FillPsiDelta(rho, q);
    FillRotatingAnalyser(rho, in[kPolariser], q);
    FillPseudoResponse(at, Quotient(T(1) - rho, T(1) + rho), q);
  }
};

}  // namespace

constinit const ModelType kOrthorhombicSample = FittedType<OrthorhombicSample, Exactly(3)>(
    3, "Orthorhombic sample",
    {.sample = "a thick crystal with three axes at oblique incidence: an ellipsometer's data, p- and s-reflectivity",
     .formula = "rp = (zc - na cos)/(zc + na cos), na = sqrt(e_a), zc = sqrt(1 - sin^2/e_c)\n"
                "rs = (cos - kb)/(cos + kb), kb = sqrt(e_b - sin^2); rho = rp/rs\n"
                "Psi = atan|rho|, Delta = arg rho; w = (1 + rho)/(1 - rho), pseudo = sin^2 (1 + tan^2 w^2)\n"
                "All results count as dependent on all three axes.",
     .source = "R. M. A. Azzam, N. M. Bashara, Ellipsometry and Polarized Light, chapter 4.7"});

constinit const ModelType kDiffOrthoSample = FittedType<DiffOrthoSample, Exactly(3)>(
    4, "Diff.-ortho. sample",
    {.sample = "a small change of a thick crystal with three axes, as with temperature or field",
     .formula = "the results of type 3 to first order: sum over the axes of their derivatives by Re and Im e at the\n"
                "reference, times the real and imaginary part of the change",
     .source = "first order of the Taylor expansion of type 3"});

constinit const ModelType kOrthoTwoLayers = FittedType<OrthoTwoLayers, Exactly(6)>(
    5, "Ortho. - 2 layers",
    {.sample = "a crystalline film on a thick crystal at oblique incidence",
     .formula =
         "p: Y1 = sqrt(e_a1)/zc1, zc = sqrt(1 - sin^2/e_c), Y2 likewise, Y0 = 1/cos, r_ab = (Y_a - Y_b)/(Y_a + Y_b)\n"
         "s: k = sqrt(e_b - sin^2), r01 = (cos - k1)/(cos + k1), r12 = (k1 - k2)/(k1 + k2)\n"
         "E = exp(4 pi i x d sqrt(e_a1) zc1) or exp(4 pi i x d k1), 1 where it would grow\n"
         "r = (r01 + E r12)/(1 + E r01 r12), rho = -rp/rs, Delta = |arg rho|, w = (1 - rho)/(1 + rho)\n"
         "rho has the opposite sign of that of type 3, and Delta has no sign.",
     .source = "R. M. A. Azzam, N. M. Bashara, Ellipsometry and Polarized Light, chapter 4.7"});

constinit const ModelType kFilmSubstrateEllips = FittedType<FilmSubstrateEllips, Exactly(6)>(
    14, "Film-substrate ellips",
    {.sample = "a crystalline film on a thick crystal at oblique incidence, the ellipsometric angles with their sign",
     .formula =
         "as type 5, with rho = rp/rs, Delta = arg rho, w = (1 - rho)/(1 + rho)\n"
         "Type 3 has the same sign of rho and w = (1 + rho)/(1 - rho). Here the pseudo dielectric function of a bulk\n"
         "isotropic sample therefore differs from its dielectric function.",
     .source = "R. M. A. Azzam, N. M. Bashara, Ellipsometry and Polarized Light, chapter 4.7"});

}  // namespace kalvex
