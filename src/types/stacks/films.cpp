// One film: on a substrate, on a mirror, in a medium; and the wave along an interface.
#include <numbers>

#include "types/stacks/film_optics.h"
#include "types/types.h"

namespace kalvex {
namespace {

// Reflectivity of a film: the mean of the incoherent and coherent ones, weighted by the coherence, 0 to 1.
template <class T>
T PartlyCoherent(const Complex<T>& r01, const Complex<T>& r12, const Complex<T>& round, const T& coherence) {
  const T apart = IncoherentReflectivity(r01, r12, round), together = CoherentReflectivity(r01, r12, round);
  return apart + (together - apart) * Clipped01(coherence);
}

struct MagneticFilm {
  enum Input { kFilm, kSubstrate, kThickness, kPermeability, kCoherence };
  static constexpr RowCell kHead[] = {
      Partner(0, Wo, "film"), Partner(0, Wp, "substrate"), Own(0, G, "thickness of the film, cm", 0.001),
      Own(1, Wo, "permeability of the film", 1.2), Own(1, Wp, "coherence, 0 to 1", 0.6)};
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Complex<T> eps = in.eps(kFilm), mu{in[kPermeability], T(0)}, one{T(1), T(0)};
    const Complex<T> n1 = Sqrt(eps * mu), z1 = Sqrt(Quotient(mu, eps)), z2 = Quotient(one, Sqrt(in.eps(kSubstrate)));
    const Complex<T> once = PassageFactor(n1, in[kThickness], in.x);
    q[kRefl] = PartlyCoherent(InterfaceReflection(one, z1), InterfaceReflection(z1, z2), once * once, in[kCoherence]);
  }
};

struct SampleOnMirror {
  enum Input { kFilm, kThickness, kCoherence, kScale };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "film"), Own(1, Wo, "thickness, cm", 0.001),
                                      Own(1, Wp, "coherence, 0 to 1", 0.6), Own(1, G, "scale", 1)};
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Complex<T> one{T(1), T(0)}, n = Sqrt(in.eps(kFilm));
    const Complex<T> once = PassageFactor(n, in[kThickness], in.x);
    q[kRefl] = in[kScale] * PartlyCoherent(InterfaceReflection(n, one), -one, once * once, in[kCoherence]);
  }
};

struct PressureCell {
  enum Input { kMedium, kSample, kThickness, kScaleR, kScaleT };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "medium around the sample"), Partner(0, Wp, "sample"),
                                      Own(0, G, "thickness of the sample, cm", 0.001), Own(1, Wo, "scale of R", 1),
                                      Own(1, Wp, "scale of T", 1)};
  static constexpr SlotUse kFills[] = {
      {kRefl, "reflectivity of the front face", InputBits({kMedium, kSample, kScaleR})},
      {kTrans, "transmission of both faces, without echoes", InputBits({kMedium, kSample, kThickness, kScaleT})}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Complex<T> n1 = Sqrt(in.eps(kMedium)), n2 = Sqrt(in.eps(kSample)), r = InterfaceReflection(n1, n2);
    q[kRefl] = in[kScaleR] * Norm(r);
    q[kTrans] = in[kScaleT] * Norm((T(1) - r * r) * PassageFactor(n2, in[kThickness], in.x));
  }
};

struct SurfacePlasmon {
  enum Input { kFirst, kSecond };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "first medium, e1"), Partner(0, Wp, "second medium, e2")};
  static constexpr SlotUse kFills[] = {{kRefl, "propagation length 1/(2 Im q), cm"},
                                       {kE1, "Re q, wave vector along the interface, 1/cm"},
                                       {kE2, "Im q"},
                                       {kS1, "Re of the normal component in the first medium, 1/cm"},
                                       {kS2, "Im of the normal component in the first medium"},
                                       {kN1, "Re of the normal component in the second medium, 1/cm"},
                                       {kN2, "Im of the normal component in the second medium"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    const double k0 = 2 * std::numbers::pi * in.x;
    const Cplx e1 = in.eps(kFirst), e2 = in.eps(kSecond);
    const Cplx along = Sqrt(Quotient(e1 * e2, e1 + e2)) * k0;
    const Cplx first = Sqrt(e1 * (k0 * k0) - along * along), second = Sqrt(e2 * (k0 * k0) - along * along);
    q[kRefl] = along.im == 0 ? kNoValue : 1 / (2 * along.im);
    q[kE1] = along.re;
    q[kE2] = along.im;
    q[kS1] = first.re;
    q[kS2] = first.im;
    q[kN1] = second.re;
    q[kN2] = second.im;
  }
};

}  // namespace

constinit const ModelType kMagneticFilm = FittedType<MagneticFilm, Exactly(2)>(
    18, "Magn. film - substr.",
    {.sample = "a film with a permeability on a thick substrate, with partial coherence",
     .formula = "n1 = sqrt(e m), z1 = sqrt(m/e), z2 = 1/n2; r01 = (z1 - 1)/(z1 + 1), r12 = (z2 - z1)/(z2 + z1)\n"
                "E = exp(4 pi i x n1 d); coherent |(r01 + r12 E)/(1 + r01 r12 E)|^2\n"
                "incoherent |r01|^2 + |1 - r01^2|^2 |r12|^2 |E|^2/(1 - |r01|^2 |r12|^2 |E|^2)\n"
                "R is the mean of both, weighted by the coherence",
     .source = "Airy sum with impedances, M. Born, E. Wolf, Principles of Optics, chapter 1.6; the magnetic factor as "
               "permeability is a choice of this program"});

constinit const ModelType kSampleOnMirror = FittedType<SampleOnMirror, AtLeast(2)>(
    21, "Thin sample on mirror",
    {.sample = "a film on a perfect mirror, with partial coherence",
     .formula = "r01 = (1 - n)/(1 + n), r12 = -1, E = exp(4 pi i x n d); coherent |(r01 - E)/(1 - r01 E)|^2\n"
                "incoherent |r01|^2 + |1 - r01^2|^2 |E|^2/(1 - |r01|^2 |E|^2)\n"
                "R is the mean of both, weighted by the coherence, times the scale",
     .source = "Airy sum, M. Born, E. Wolf, Principles of Optics, chapter 7.6"});

constinit const ModelType kPressureCell = FittedType<PressureCell, Exactly(2)>(
    88, "R and T in pressure",
    {.sample = "a sample in the medium of a pressure cell",
     .formula = "r = (n2 - n1)/(n2 + n1), R = s |r|^2, T = s' |(1 - r^2) exp(2 pi i x n2 d)|^2",
     .source = "Fresnel amplitudes of both faces; echoes are left out"});

constinit const ModelType kSurfacePlasmon = ShownType<SurfacePlasmon, Exactly(1)>(
    72, "SPP",
    {.sample = "the wave along the interface of two media: surface plasmon or phonon polariton",
     .formula = "q = 2 pi x sqrt(e1 e2/(e1 + e2)), normal components sqrt(e (2 pi x)^2 - q^2), length 1/(2 Im q),\n"
                "1e30 without loss",
     .source = "H. Raether, Surface Plasmons, Springer 1988, chapter 2"});

}  // namespace kalvex
