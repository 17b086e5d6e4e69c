// A tilted plane-parallel plate with partial coherence, measured by an ellipsometer.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "types/stacks/film_optics.h"
#include "types/types.h"

namespace kalvex {
namespace {

struct Plate {
  static constexpr Hooks kHooks = hook::kIdle | hook::kAdmits;
  enum Input {
    kSample,
    kAngle,
    kAnalyser,
    kThickness,
    kCoherence,
    kThicknessNodes,
    kAngleNodes,
    kOffset,
    kScale,
    kThicknessSpread,
    kAngleSpread
  };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "plate"),
                                      Own(0, Wp, "angle of incidence, between 0 and 90 degrees", 50),
                                      Own(0, G, "angle of the analyser P, degrees", 40),
                                      Own(1, Wo, "thickness, cm", 0.0008),
                                      Own(1, Wp, "coherence, 0 to 1", 0.6),
                                      Setting(1, G, "number of nodes of the thickness average", 3),
                                      Setting(2, Wo, "number of nodes of the angle average", 2),
                                      Own(2, Wp, "offset of Quantity 4", 0.5),
                                      Own(2, G, "scale of Quantity 0", 1),
                                      Experimental(kalvex::kThicknessSpread, "spread of the thickness"),
                                      Experimental(kalvex::kAngleSpread, "spread of the angle")};
  static constexpr std::uint64_t kOfPlate =
      InputBits({kSample, kAngle, kThickness, kCoherence, kThicknessSpread, kAngleSpread});
  static constexpr SlotUse kFills[] = {
      {kRefl, "reflectivity through the analyser", kOfPlate | InputBits({kAnalyser, kScale})},
      {kRps, "order of interference 2 x d Re q, plus the offset", InputBits({kSample, kAngle, kThickness, kOffset})},
      {kE1, "Psi, degrees", kOfPlate},
      {kE2, "Delta, 0 to 180 degrees", kOfPlate},
      {kS1, "(Rs sin^2 P - Rp cos^2 P)/A", kOfPlate | InputBits({kAnalyser})},
      {kS2, "2 C cos P sin P/A", kOfPlate | InputBits({kAnalyser})}};

  static bool Admits(const TypeInputs<double>& in) { return in.value(kAngle) > 0 && in.value(kAngle) < 90; }
  static std::uint64_t Idle(const TypeInputs<double>& in) {
    std::uint64_t idle = 0;
    if (NodesOf(in, kThicknessNodes) == 1) idle |= InputBits({kThicknessSpread});
    if (NodesOf(in, kAngleNodes) == 1) idle |= InputBits({kAngleSpread});
    return idle;
  }

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    Reflected<T> mean;
    const int thicknesses = NodesOf(in, kThicknessNodes), angles = NodesOf(in, kAngleNodes);
    const T weight(1.0 / (thicknesses * angles)), coherence = Clipped01(in[kCoherence]);
    for (int j = 0; j < angles; ++j) {
      const T angle = in[kAngle] * (T(1) + in[kAngleSpread] * T(NodeOf(j, angles)));
      const Faces<T> faces(in.eps(kSample), angle);
      for (int i = 0; i < thicknesses; ++i) {
        const T d = in[kThickness] * (T(1) + in[kThicknessSpread] * T(NodeOf(i, thicknesses)));
        const Complex<T> once = PassageFactor(faces.q, d, in.x);
        mean.Add(faces, once * once, coherence, weight);
      }
    }
    FillFrom(in, mean, q);
    const Faces<T> nominal(in.eps(kSample), in[kAngle]);
    q[kRps] = T(2 * in.x) * in[kThickness] * nominal.q.re + in[kOffset];
  }

 private:
  // The interfaces of the plate at an angle in degrees.
  template <class T>
  struct Faces {
    Faces(const Complex<T>& eps, const T& degrees) {
      const T c = Cos(degrees * T(kRadiansPerDegree)), s2 = T(1) - c * c;
      q = Sqrt(eps - s2);
      rp = Quotient(q - eps * c, q + eps * c);
      rs = Quotient(c - q, c + q);
    }
    Complex<T> q, rp, rs;
  };

  // p- and s-reflectivity and the cross term of both, E the factor of a round trip.
  template <class T>
  struct Reflected {
    T p{}, s{}, cross{};

    void Add(const Faces<T>& faces, const Complex<T>& E, const T& coherence, const T& weight) {
      const Complex<T> p2 = faces.rp * faces.rp, s2 = faces.rs * faces.rs;
      const Complex<T> ap = Quotient(faces.rp * (T(1) - E), T(1) - p2 * E),
                       as = Quotient(faces.rs * (T(1) - E), T(1) - s2 * E);
      const T B = Norm(E);
      const auto incoherent = [&](const Complex<T>& r, const Complex<T>& r2) {
        return Norm(r) * (T(1) + Norm(T(1) - r2) * B / AtLeast(T(1) - Norm(r) * Norm(r) * B));
      };
      const Complex<T> passes = Quotient((T(1) - p2) * Conj(T(1) - s2) * B, T(1) - p2 * Conj(s2) * B);
      const T incoherentCross = (faces.rp * Conj(faces.rs) * (T(1) + passes)).re;
      const auto blend = [&](const T& apart, const T& together) {
        return weight * (apart + (together - apart) * coherence);
      };
      p += blend(incoherent(faces.rp, p2), Norm(ap));
      s += blend(incoherent(faces.rs, s2), Norm(as));
      cross += blend(incoherentCross, T(0.5) * (ap * Conj(as) + Conj(ap) * as).re);
    }

    // A denominator, at least 1e-30.
    static T AtLeast(const T& value) { return ValueOf(value) < kTinyNorm ? T(kTinyNorm) : value; }
  };

  template <class T>
  static void FillFrom(const TypeInputs<T>& in, const Reflected<T>& r, Slots<T>& q) {
    const T P = in[kAnalyser] * T(kRadiansPerDegree), c = Cos(P), s = Sin(P);
    const T A = r.s * s * s + r.p * c * c;
    q[kRefl] = in[kScale] * A;
    const T ratio = Positive(r.p / Reflected<T>::AtLeast(r.s));
    if (ValueOf(ratio) > 0) q[kE1] = T(kDegreesPerRadian) * Atan(Sqrt(ratio));
    const T product = Positive(r.p * r.s);
    if (ValueOf(product) > 0) q[kE2] = T(kDegreesPerRadian) * Arccosine(r.cross / Sqrt(product));
    q[kS1] = (r.s * s * s - r.p * c * c) / Reflected<T>::AtLeast(A);
    q[kS2] = T(2) * r.cross * c * s / Reflected<T>::AtLeast(A);
  }
  template <class T>
  static T Positive(const T& value) {
    return ValueOf(value) < 0 ? -value : value;
  }
  // By rounding the argument can be slightly above 1.
  template <class T>
  static T Arccosine(const T& value) {
    if (ValueOf(value) >= 1) return T(0);
    if (ValueOf(value) <= -1) return T(std::numbers::pi);
    return T(std::numbers::pi / 2) - Atan(value / Sqrt(T(1) - value * value));
  }

  template <class T>
  static int NodesOf(const TypeInputs<T>& in, std::size_t input) {
    constexpr int kMostNodes = 1000;
    return std::clamp(in.setting(input), 1, kMostNodes);
  }
  // Middles of equal parts of -1 to 1.
  static double NodeOf(int i, int count) { return -1 + (2.0 * i + 1) / count; }
};

}  // namespace

constinit const ModelType kPlate = FittedType<Plate, AtLeast(3)>(
    13, "Plate",
    {.sample = "a tilted plane-parallel plate with partial coherence, measured by an ellipsometer",
     .formula =
         "q = sqrt(e - sin^2), rp = (q - e cos)/(q + e cos), rs = (cos - q)/(cos + q), E = exp(4 pi i x d q)\n"
         "coherent: a = r (1 - E)/(1 - r^2 E), R = |a|^2, C = Re(ap conj as)\n"
         "incoherent: B = |E|^2, R = |r|^2 [1 + |1 - r^2|^2 B/(1 - |r|^4 B)],\n"
         "C = Re{rp conj rs [1 + (1 - rp^2) conj(1 - rs^2) B/(1 - rp^2 conj(rs^2) B)]}\n"
         "each is a mean of both, weighted by the coherence; then equal averages over d (1 + u s), angle (1 + u s'),\n"
         "u the middles of N equal parts of -1 to 1, s and s' the spreads of the experimental parameters\n"
         "A = Rs sin^2 P + Rp cos^2 P, Psi = atan sqrt(Rp/Rs), Delta = acos(C/sqrt(Rp Rs))",
     .source =
         "M. Born, E. Wolf, Principles of Optics, chapter 7.6; the incoherent cross term is the same sum with the "
         "phase of each passage left out; both averages are a choice of this program"});

}  // namespace kalvex
