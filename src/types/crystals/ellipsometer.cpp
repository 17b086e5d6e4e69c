// A sequence of polarising elements, one of which is turned.
#include <utility>

#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

struct Ellipsometer {
  static constexpr Hooks kHooks = hook::kAdmits;
  enum Head { kCount, kTurned, kAmplitude };
  enum Element { k11, k11Im, kRotation, k12, k12Im, k21, k21Im, k22, k22Im };
  static constexpr RowCell kHead[] = {Setting(0, Wo, "number n of elements", 2),
                                      Setting(0, Wp, "number of the element that x turns", 2),
                                      Own(0, G, "amplitude of the incoming beam", 1.5)};
  static constexpr RowCell kGroup[] = {
      Own(0, Wo, "Re J11", 1),    Own(0, Wp, "Im J11", 0.3),  Own(0, G, "rotation of the element, degrees", 20),
      Own(1, Wo, "Re J12", 0.2),  Own(1, Wp, "Im J12", -0.1), Own(2, Wo, "Re J21", 0.15),
      Own(2, Wp, "Im J21", 0.25), Own(3, Wo, "Re J22", 0.4),  Own(3, Wp, "Im J22", -0.5)};
  static constexpr int kGroupStart = 1, kGroupRows = 4;
  static constexpr SlotUse kFills[] = {{kRefl, "intensity"}};

  static bool Admits(const TypeInputs<double>& in) {
    const int n = in.setting(kCount), turned = in.setting(kTurned);
    return std::cmp_equal(n, in.groups()) && turned >= 1 && turned <= n;
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    Complex<T> Ex{in[kAmplitude], T(0)}, Ey;
    for (std::size_t k = 0; k < in.groups(); ++k) {
      const auto element = [&](std::size_t cell) { return Complex<T>{in[in.Of(k, cell)], in[in.Of(k, cell + 1)]}; };
      const Complex<T> J11 = element(k11), J12 = element(k12), J21 = element(k21), J22 = element(k22);
      const T degrees = std::cmp_equal(k + 1, in.setting(kTurned)) ? T(in.x) : in[in.Of(k, kRotation)];
      const T a = degrees * T(kRadiansPerDegree), c = Cos(a), s = Sin(a), cc = c * c, ss = s * s, cs = c * s;
      const Complex<T> Jxx = J11 * cc - (J12 + J21) * cs + J22 * ss, Jxy = J12 * cc + (J11 - J22) * cs - J21 * ss;
      const Complex<T> Jyx = J21 * cc + (J11 - J22) * cs - J12 * ss, Jyy = J22 * cc + (J12 + J21) * cs + J11 * ss;
      const Complex<T> behind = Jxx * Ex + Jxy * Ey;
      Ey = Jyx * Ex + Jyy * Ey;
      Ex = behind;
    }
    q[kRefl] = Norm(Ex) + Norm(Ey);
  }
};

}  // namespace

constinit const ModelType kEllipsometer = FittedType<Ellipsometer, RowRule{5, kAnyNumber, 4, -1}>(
    23, "Ellipsometer",
    {.sample =
         "an optical bench of polarisers, plates and samples, one of which is turned: intensity against the angle",
     .formula =
         "E = (amplitude, 0); for each element E = R(a)^T J R(a) E with its Jones matrix J and rotation a:\n"
         "Jxx = J11 c^2 - (J12 + J21) cs + J22 s^2, Jxy = J12 c^2 + (J11 - J22) cs - J21 s^2,\n"
         "Jyx = J21 c^2 + (J11 - J22) cs - J12 s^2, Jyy = J22 c^2 + (J12 + J21) cs + J11 s^2\n"
         "intensity |Ex|^2 + |Ey|^2. All rows count as fit parameters, also the rotation of the element that x turns.",
     .source = "R. C. Jones, J. Opt. Soc. Am. 31, 488 (1941)",
     .from = 0,
     .to = 360,
     .axis = "angle of the turned element, degrees"});

}  // namespace kalvex
