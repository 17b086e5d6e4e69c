// Crystals whose axes do not lie along the surface.
#include <cmath>

#include "types/crystals/normal_modes.h"
#include "types/stacks/film_optics.h"
#include "types/types.h"

namespace kalvex {
namespace {

// Turns a symmetric tensor about the axis w by an angle, in the direction from u to v.
template <class T>
void Turn(Complex<T>& uu, Complex<T>& vv, Complex<T>& uv, Complex<T>& wu, Complex<T>& wv, const T& degrees) {
  const T angle = degrees * T(kRadiansPerDegree), c = Cos(angle), s = Sin(angle);
  const T cc = c * c, ss = s * s, cs = c * s;
  const Complex<T> twice = T(2) * uv * cs;
  const Complex<T> newUu = uu * cc - twice + vv * ss, newVv = vv * cc + twice + uu * ss;
  const Complex<T> newUv = uv * (cc - ss) + (uu - vv) * cs;
  const Complex<T> newWu = wu * c - wv * s, newWv = wv * c + wu * s;
  uu = newUu;
  vv = newVv;
  uv = newUv;
  wu = newWu;
  wv = newWv;
}

// A biaxial crystal turned about x, y and z in this order.
struct OrthoTilted {
  static constexpr Hooks kHooks = hook::kKeep;
  enum Input { kA, kB, kC, kAboutX, kAboutY, kAboutZ, kAngle };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "axis a, along x before the turns"),
                                      Partner(1, Wo, "axis b, along y"),
                                      Partner(2, Wo, "axis c, along z, the normal"),
                                      Own(0, Wp, "turn about x, degrees", 25),
                                      Own(1, Wp, "turn about y, degrees", 35),
                                      Own(2, Wp, "turn about z, degrees", 50),
                                      Own(0, G, "angle of incidence, degrees", 60)};
  static constexpr SlotUse kFills[] = {{kRefl, "0"},       {kE1, "Re eps_xx"}, {kE2, "Im eps_xx"}, {kS1, "Re eps_yy"},
                                       {kS2, "Im eps_yy"}, {kN1, "Re eps_zz"}, {kN2, "Im eps_zz"}};

  template <class T>
  static SymmetricTensor<T> TensorOf(const TypeInputs<T>& in) {
    SymmetricTensor<T> e{.xx = in.eps(kA), .yy = in.eps(kB), .zz = in.eps(kC), .xy = {}, .xz = {}, .yz = {}};
    Turn(e.yy, e.zz, e.yz, e.xy, e.xz, in[kAboutX]);
    Turn(e.xx, e.zz, e.xz, e.xy, e.yz, in[kAboutY]);
    Turn(e.xx, e.yy, e.xy, e.xz, e.yz, in[kAboutZ]);
    return e;
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const SymmetricTensor<T> e = TensorOf(in);
    q[kE1] = e.xx.re;
    q[kE2] = e.xx.im;
    q[kS1] = e.yy.re;
    q[kS2] = e.yy.im;
    q[kN1] = e.zz.re;
    q[kN2] = e.zz.im;
  }

  static void Keep(TypeRun& run, const TypeInputs<double>& in) {
    CacheOf<NormalModes>(run.context(), run.model()) =
        NormalModesOf(TensorOf(in), std::sin(in[kAngle] * kRadiansPerDegree));
  }
};

// A surface cut at an angle between two principal axes. The field inside includes that of depolarisation.
struct MiscutVelmont {
  enum Input { kFirst, kSecond, kCut };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "first axis, e0"), Partner(1, Wo, "second axis, e1"),
                                      Own(0, Wp, "angle of the cut, degrees", 30)};
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity"}, {kE1, "Re e"}, {kE2, "Im e"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const T a = in[kCut] * T(3.1415926535 * 0.005555555555555556), c = Cos(a), s = Sin(a);
    const T cc = c * c, ss = s * s;
    const Complex<T> d0 = in.eps(kFirst) - T(1), d1 = in.eps(kSecond) - T(1);
    const Complex<T> e = T(1) + Quotient(d1 * cc + d0 * ss + d0 * d1, T(1) + d1 * ss + d0 * cc);
    q[kRefl] = NormalReflectivity(e);
    q[kE1] = e.re;
    q[kE2] = e.im;
  }
};

struct TiltedReflection {
  enum Input { kFirst, kSecond, kTilt };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "first axis, e1"), Partner(0, Wp, "second axis, e2"),
                                      Own(0, G, "tilt, degrees", 30)};
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity"}};

  static void Fill(const TypeInputs<double>& in, Slots<double>& q) {
    const double a = in[kTilt] * kRadiansPerDegree, ss = std::sin(a) * std::sin(a), cc = std::cos(a) * std::cos(a);
    const Cplx e1 = in.eps(kFirst), e2 = in.eps(kSecond);
    q[kRefl] = NormalReflectivity(Quotient(e1 * e2, e1 * ss + e2 * cc));
  }
};

// A diagonal tensor turned in the plane of its first two axes.
struct AnisotropicMagnetic {
  enum Input { kFirst, kSecond, kThird, kTurn };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "axis 1, m1"), Partner(0, Wp, "axis 2, m2"),
                                      Partner(1, Wo, "axis 3, m3"), Own(0, G, "turn, degrees", 30)};
  static constexpr std::uint64_t kPlane = InputBits({kFirst, kSecond, kTurn});
  static constexpr SlotUse kFills[] = {{kE1, "Re of element 11", kPlane},
                                       {kS1, "Re of element 22", kPlane},
                                       {kN1, "Re of element 33", InputBits({kThird})},
                                       {kDepth, "Re of element 12", kPlane}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const T a = in[kTurn] * T(kRadiansPerDegree), c = Cos(a), s = Sin(a);
    const T m1 = in.eps(kFirst).re, m2 = in.eps(kSecond).re;
    q[kE1] = c * c * m1 + s * s * m2;
    q[kS1] = s * s * m1 + c * c * m2;
    q[kN1] = in.eps(kThird).re;
    q[kDepth] = (m1 - m2) * s * c;
  }
};

}  // namespace

constinit const ModelType kOrthoTilted = FittedType<OrthoTilted, Exactly(3)>(
    16, "Ortho-tilted",
    {.sample = "a crystal with three axes that is turned: its dielectric tensor in the frame of the surface",
     .formula =
         "diag(e_a, e_b, e_c) turned about x, then y, then z; a turn from u to v about w:\n"
         "uu' = uu c^2 - 2 uv cs + vv s^2, vv' = vv c^2 + 2 uv cs + uu s^2, uv' = uv (c^2 - s^2) + (uu - vv) cs,\n"
         "wu' = wu c - wv s, wv' = wv c + wu s\n"
         "The four wave vectors along the normal are computed from the tensor, but no reflectivity is computed\n"
         "from them: Quantity 0 is 0. Every result counts as dependent on every input.",
     .source = "D. W. Berreman, J. Opt. Soc. Am. 62, 502 (1972)"});

constinit const ModelType kMiscutVelmont = FittedType<MiscutVelmont, Exactly(2)>(
    19, "Miscut Velmont",
    {.sample = "a sample that was cut at an angle between two principal axes",
     .formula = "d0 = e0 - 1, d1 = e1 - 1, e = 1 + (d1 cos^2 a + d0 sin^2 a + d0 d1)/(1 + d1 sin^2 a + d0 cos^2 a)\n"
                "R = |(1 - sqrt e)/(1 + sqrt e)|^2",
     .source = "transverse field across a tilted uniaxial medium, L. D. Landau, E. M. Lifshitz, Electrodynamics of "
               "Continuous Media, chapter XI: e = e0 e1/(e0 cos^2 a + e1 sin^2 a)"});

constinit const ModelType kTiltedReflection = ShownType<TiltedReflection, Exactly(1)>(
    108, "refl. tilted",
    {.sample = "the reflectivity of a tilted uniaxial sample",
     .formula = "e = e1 e2/(e1 sin^2 a + e2 cos^2 a), R = |(1 - sqrt e)/(1 + sqrt e)|^2",
     .source = "extraordinary wave along the normal, M. Born, E. Wolf, Principles of Optics, chapter 15.3"});

constinit const ModelType kAnisotropicMagnetic = FittedType<AnisotropicMagnetic, AtLeast(0)>(
    109, "Anisotr. magnetic",
    {.sample = "a tensor with three principal axes, turned about the third: susceptibilities, permeabilities",
     .formula = "c^2 m1 + s^2 m2, s^2 m1 + c^2 m2, m3, (m1 - m2) s c; real parts of the models",
     .source = "rotation of a tensor; the order of the rows is a choice of this program"});

}  // namespace kalvex
