// Coherent films on a thick substrate without fringes of its own, and the phase of a transmitted wave.
#include <cmath>
#include <numbers>

#include "types/stacks/film_optics.h"
#include "types/types.h"

namespace kalvex {
namespace {

enum Layer { kModel, kThickness };
// The thickness of the substrate affects only transmission.
constexpr std::uint64_t kSubstrateThickness = InputBits({kThickness});
constexpr RowCell kLayers[] = {Partner(0, Wo, "layer, from the front; the last one is the substrate"),
                               Own(0, Wp, "thickness, cm", 0.0005)};

// Amplitudes of the electric field of films on a half-space.
template <class T>
struct FilmAmplitudes {
  Complex<T> r{};
  // The transmitted amplitude is t exp(passed). exp(passed) may underflow; the phase stays known.
  Complex<T> t{T(1), T(0)};
  Complex<T> passed{};

  Complex<T> Transmitted() const { return t * Exp(passed); }
  // Phase of the transmitted amplitude, in turns.
  T Turns() const { return (Argument(t) + passed.im) / T(2 * std::numbers::pi); }

  // Adds an interface on the front of the stack. `exponent`: of one passage through the medium after this interface.
  void PutInFront(const Complex<T>& before, const Complex<T>& behind, const Complex<T>& exponent) {
    const Complex<T> rho = InterfaceReflection(before, behind), once = Exp(exponent), back = r * once * once,
                     sum = T(1) + rho * back;
    r = Quotient(rho + back, sum);
    t = Quotient((T(1) - rho) * t, sum);
    passed += exponent;
  }
};

// Amplitudes of the stack from `vacuum` into the last layer. admittanceOf(k) and waveOf(k) return the admittance of
// layer k and its index along the normal.
template <class T, class Admittance, class Wave>
FilmAmplitudes<T> AmplitudesIntoLast(const TypeInputs<T>& in, const Complex<T>& vacuum, Admittance admittanceOf,
                                     Wave waveOf) {
  FilmAmplitudes<T> films;
  for (std::size_t k = in.groups(); k-- > 0;) {
    const bool last = k + 1 == in.groups();
    const Complex<T> exponent = last ? Complex<T>{} : PassageExponent(waveOf(k), in[in.Of(k, kThickness)], in.x);
    films.PutInFront(k == 0 ? vacuum : admittanceOf(k - 1), admittanceOf(k), exponent);
  }
  return films;
}

// exp(-2 pi i x D), the inverse of the phase factor of the empty path.
template <class T>
Complex<T> EmptyPath(const TypeInputs<T>& in) {
  T D(0);
  for (std::size_t k = 0; k < in.groups(); ++k) D += in[in.Of(k, kThickness)];
  const T phase = D * T(2 * std::numbers::pi * in.x);
  return {Cos(phase), -Sin(phase)};
}

// x times the sum of (n' - offset) d: the expected phase in turns.
template <class T>
double ExpectedTurns(const TypeInputs<T>& in, double offset) {
  double turns = 0;
  for (std::size_t k = 0; k < in.groups(); ++k) {
    const Cplx n = Sqrt(ValueOf(in.eps(in.Of(k, kModel))));
    turns += in.x * (n.re - offset) * ValueOf(in[in.Of(k, kThickness)]);
  }
  return turns;
}

// Adds the whole number of turns that brings a phase closest to the expected one.
template <class T>
T NearTurns(const T& turns, double expected) {
  return turns + T(std::round(expected - ValueOf(turns)));
}

// p- and s-amplitudes at an angle of incidence in degrees, with the signs of those of a bare metal.
template <class T>
struct ObliqueAmplitudes {
  ObliqueAmplitudes(const TypeInputs<T>& in, const T& degrees) {
    const T c = Cos(degrees * T(kRadiansPerDegree)), s2 = T(1) - c * c;
    const auto wave = [&](std::size_t k) { return Sqrt(in.eps(in.Of(k, kModel)) - s2); };
    const auto admittance = [&](std::size_t k) { return Quotient(in.eps(in.Of(k, kModel)), wave(k)); };
    p = -AmplitudesIntoLast(in, Complex<T>{T(1) / c, T(0)}, admittance, wave).r;
    s = -AmplitudesIntoLast(in, Complex<T>{c, T(0)}, wave, wave).r;
  }
  Complex<T> p, s;
};

// The films at normal incidence and one passage through the substrate, without echoes in it.
template <class T>
FilmAmplitudes<T> NormalAmplitudes(const TypeInputs<T>& in) {
  const auto index = [&](std::size_t k) { return Sqrt(in.eps(in.Of(k, kModel))); };
  FilmAmplitudes<T> films = AmplitudesIntoLast(in, Complex<T>{T(1), T(0)}, index, index);
  if (in.groups() > 0) {
    const std::size_t last = in.groups() - 1;
    const Complex<T> n = index(last);
    films.t = films.t * Quotient(T(2) * n, n + T(1));
    films.passed += PassageExponent(n, in[in.Of(last, kThickness)], in.x);
  }
  return films;
}

// Psi and Delta in degrees, from the intensities and the cross term. They stay 0 if Rs is 0.
template <class T>
void FillAngles(const T& Rp, const T& Rs, const Complex<T>& cross, Slots<T>& q) {
  if (ValueOf(Rs) < kTinyNorm) return;
  q[kN1] = T(kDegreesPerRadian) * (ValueOf(Rp) > 0 ? Atan(Sqrt(Rp / Rs)) : T(0));
  q[kN2] = T(kDegreesPerRadian) * Argument(cross);
}

struct FilmSubstrate {
  enum Head { kAngle };
  static constexpr RowCell kHead[] = {
      Experimental(kAngleOfIncidence, "angle of incidence, of Quantities 2 to 4, 9, 10")};
  static constexpr std::span<const RowCell> kGroup = kLayers;
  static constexpr int kGroupStart = 0, kGroupRows = 1;
  static constexpr std::uint64_t kNormal = ~InputBits({kAngle});
  static constexpr SlotUse kFills[] = {
      {kRefl, "reflectivity", kNormal, kSubstrateThickness},
      {kTrans, "transmission", kNormal},
      {kRp, "p-reflectivity at the angle of incidence", kAllInputs, kSubstrateThickness},
      {kRs, "s-reflectivity at the angle of incidence", kAllInputs, kSubstrateThickness},
      {kRps, "their ratio", kAllInputs, kSubstrateThickness},
      {kE1, "Re r", kNormal, kSubstrateThickness},
      {kE2, "Im r", kNormal, kSubstrateThickness},
      {kS1, "Re t, relative to the empty path", kNormal},
      {kS2, "Im t, relative to the empty path", kNormal},
      {kN1, "Psi, degrees", kAllInputs, kSubstrateThickness},
      Angle(360, {kN2, "Delta, degrees", kAllInputs, kSubstrateThickness}),
      {kDepth, "phase of t including whole turns, radians", kNormal},
      {kLoss, "1 - R - T", kNormal}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    FillNormal(in, q);
    if (in.groups() == 0) return;
    const ObliqueAmplitudes<T> oblique(in, in[kAngle]);
    q[kRp] = Norm(oblique.p);
    q[kRs] = Norm(oblique.s);
    if (ValueOf(q[kRs]) >= kTinyNorm) q[kRps] = q[kRp] / q[kRs];
    FillAngles(q[kRp], q[kRs], oblique.p * Conj(oblique.s), q);
  }

  template <class T>
  static void FillNormal(const TypeInputs<T>& in, Slots<T>& q) {
    const FilmAmplitudes<T> normal = NormalAmplitudes(in);
    const Complex<T> t = normal.Transmitted() * EmptyPath(in);
    q[kRefl] = Norm(normal.r);
    q[kTrans] = Norm(t);
    q[kE1] = normal.r.re;
    q[kE2] = normal.r.im;
    q[kS1] = t.re;
    q[kS2] = t.im;
    q[kDepth] = NearTurns(normal.Turns(), ExpectedTurns(in, 0)) * T(2 * std::numbers::pi);
    q[kLoss] = T(1) - q[kRefl] - q[kTrans];
  }
};

// Films on a substrate, with Psi and Delta averaged over the angles of the beam.
struct FilmSubstrateBeam {
  enum Head { kAngle, kSpread };
  static constexpr RowCell kHead[] = {Experimental(kAngleOfIncidence, "angle of incidence, of Quantities 9 and 10"),
                                      Experimental(kAngleSpread, "spread of the angle")};
  static constexpr std::span<const RowCell> kGroup = kLayers;
  static constexpr int kGroupStart = 0, kGroupRows = 1;
  static constexpr std::uint64_t kNormal = ~InputBits({kAngle, kSpread});
  static constexpr SlotUse kFills[] = {
      {kRefl, "reflectivity", kNormal, kSubstrateThickness},
      {kTrans, "transmission", kNormal},
      {kE1, "Re r", kNormal, kSubstrateThickness},
      {kE2, "Im r", kNormal, kSubstrateThickness},
      {kS1, "Re t, relative to the empty path", kNormal},
      {kS2, "Im t, relative to the empty path", kNormal},
      {kN1, "Psi, degrees, averaged over the angles", kAllInputs, kSubstrateThickness},
      Angle(360, {kN2, "Delta, degrees, averaged over the angles", kAllInputs, kSubstrateThickness}),
      {kDepth, "phase of t including whole turns, radians", kNormal},
      {kLoss, "1 - R - T", kNormal}};

  // A detector adds intensities: the average is over Rp, Rs and the cross term.
  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    FilmSubstrate::FillNormal(in, q);
    if (in.groups() == 0) return;
    T Rp(0), Rs(0);
    Complex<T> cross;
    for (const AveragingNode& node : kAveragingNodes) {
      const T factor = T(1) + T(2 * node.x - 1) * in[kSpread];
      const ObliqueAmplitudes<T> oblique(in, in[kAngle] * factor);
      Rp += T(node.g) * Norm(oblique.p);
      Rs += T(node.g) * Norm(oblique.s);
      cross += oblique.p * Conj(oblique.s) * T(node.g);
    }
    FillAngles(Rp, Rs, cross, q);
  }
};

// The phase of the wave transmitted by a coherent stack in vacuum.
struct TransmittedPhase {
  static constexpr RowCell kGroup[] = {Partner(0, Wo, "layer"), Own(0, Wp, "thickness, cm", 0.0005)};
  static constexpr int kGroupStart = 0, kGroupRows = 1;
  static constexpr SlotUse kFills[] = {{kTrans, "transmission"},
                                       {kRp, "phase of t relative to the empty path, degrees"},
                                       {kRps, "that phase over 360 x D"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const auto index = [&](std::size_t k) { return Sqrt(in.eps(in.Of(k, kModel))); };
    const Complex<T> one{T(1), T(0)};
    FilmAmplitudes<T> stack;
    T D(0);
    for (std::size_t k = in.groups(); k-- > 0;) {
      const bool last = k + 1 == in.groups();
      const Complex<T> n = index(k);
      if (last) stack.PutInFront(n, one, {});
      stack.PutInFront(k == 0 ? one : index(k - 1), n, PassageExponent(n, in[in.Of(k, kThickness)], in.x));
      D += in[in.Of(k, kThickness)];
    }
    q[kTrans] = Norm(stack.Transmitted());
    q[kRp] = T(360) * NearTurns(stack.Turns() - D * T(in.x), ExpectedTurns(in, 1));
    if (ValueOf(D) != 0 && in.x != 0) q[kRps] = q[kRp] / (T(360 * in.x) * D);
  }
};

}  // namespace

constinit const ModelType kFilmSubstrateNoFringes = FittedType<FilmSubstrate, AtLeast(0)>(
    33, "Film-Subst, no Fab-Per",
    {.sample = "films on a substrate without fringes of its own: R, T, phases, and an ellipsometer's data",
     .formula =
         "films coherent from vacuum into the substrate: r, t_f; T = |t_f exp(2 pi i x n_s d_s) 2 n_s/(n_s + 1)|^2\n"
         "at an angle: p with y = e/m, s with y = m, m = sqrt(e - sin^2); rho = rp/rs, Psi = atan|rho|,\n"
         "Delta = arg rho, 0 at normal incidence, where p and s are equal\n"
         "the phase of t has the number of whole turns that brings it closest to x times the sum of n' d",
     .source =
         "M. Born, E. Wolf, Principles of Optics, chapter 1.6; one passage through the substrate; the choice of the "
         "Quantities is this program's"});

constinit const ModelType kFilmSubstrateBetterPsiDelta = FittedType<FilmSubstrateBeam, AtLeast(0)>(
    71, "Like 33, better psidel",
    {.sample = "films on a substrate as type 33, with Psi and Delta of a beam that has a spread of angles",
     .formula =
         "as type 33; Psi = atan sqrt(<|rp|^2>/<|rs|^2>), Delta = arg <rp conj rs>, averaged over the same ten angles\n"
         "as for a bulk sample",
     .source = "M. Born, E. Wolf, Principles of Optics, chapter 1.6; the choice of the Quantities is this program's"});

constinit const ModelType kOskelPhase = FittedType<TransmittedPhase, AtLeast(0)>(
    54, "Oskel-phase",
    {.sample = "the phase of a wave transmitted by layers, as measured by an interferometer or with pulses",
     .formula =
         "coherent stack in vacuum; phase of t relative to the empty path, with the number of whole turns closest to\n"
         "x times the sum of (n' - 1) d; divided by 360 x D it tends to n' - 1 for a thick layer and to (e - 1)/2\n"
         "for a thin one",
     .source = "M. Born, E. Wolf, Principles of Optics, chapter 1.6; the choice of the Quantities is this program's"});

}  // namespace kalvex
