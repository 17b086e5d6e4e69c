// The formulas of a stack, for double and for packs of frequencies.
//
// Width makes the instances for different widths of the vector units distinct types, which keeps the linker from
// merging them: void for double, a type of internal linkage for packs.
#pragma once

#include <cmath>
#include <numbers>
#include <type_traits>

#include "core/limits.h"
#include "evaluation/stack_optics.h"
#include "numeric/real.h"

namespace kalvex {

template <class Num, class Condition>
Complex<Num> SelectComplex(const Condition& condition, const Complex<Num>& yes, const Complex<Num>& no) {
  return {Select(condition, yes.re, no.re), Select(condition, yes.im, no.im)};
}

// ---- media

template <class Num>
EmptyPath<Num> EmptyPathOf(const StackHead& head, const Num& x) {
  const Num perScale = Num(2 * std::numbers::pi) * x;
  if (head.geometry == StackGeometry::kFinite) return {perScale * Num(head.scale), perScale};
  return {perScale, Num(0)};
}

// sqrt(z), kept away from 0, with its derivative by z.
template <class Num>
struct HeldRoot {
  Complex<Num> root;
  Complex<Num> byZ;
};
template <class Num>
HeldRoot<Num> HeldRootOf(const Complex<Num>& z) {
  constexpr double kLeast = 1e-10;
  const Complex<Num> root = Sqrt(z), zero{Num(0), Num(0)};
  const auto small = Norm(root) < Num(kLeast);
  return {SelectComplex(small, {Num(kLeast), Num(0)}, root), SelectComplex(small, zero, Num(0.5) / root)};
}

template <class Num>
StackMedium<Num> NormalMedium(const Num& k0, const Complex<Num>& eps) {
  const HeldRoot<Num> n = HeldRootOf(eps);
  return {n.root, n.root * k0, n.byZ, n.byZ * k0, {}, {}};
}

// m = sqrt(eps - sin^2); y = eps/m for p, m for s polarisation. m depends on the angle only through its sine. A layer
// with gain is treated as one with slight absorption.
template <class Num>
StackMedium<Num> ObliqueMedium(const StackHead& head, const Num& k0, const Complex<Num>& given) {
  constexpr double kLeastAbsorption = 1e-05;
  const auto gain = given.im < Num(0);
  const Num byIm = Select(gain, Num(0), Num(1));
  const Complex<Num> eps{given.re, Select(gain, Num(kLeastAbsorption), given.im)};
  const HeldRoot<Num> m = HeldRootOf(eps - Num(head.sine * head.sine));
  const Complex<Num> mByAngle = m.byZ * Num(-2 * head.sine * head.bySine);
  if (head.sPolarised) return {m.root, m.root * k0, m.byZ, m.byZ * k0, {mByAngle, {}}, {mByAngle * k0, {}}, byIm};
  const Complex<Num> perM = Num(1) / m.root, y = eps * perM, byM = -(y * perM);
  return {y, m.root * k0, byM * m.byZ + perM, m.byZ * k0, {byM * mByAngle, {}}, {mByAngle * k0, {}}, byIm};
}

// k = sqrt(eps k0^2 - q^2) with q = 2 pi/wavelength, y = eps/k
template <class Num>
StackMedium<Num> FiniteMedium(const StackHead& head, const Num& k0, const Num& k0ByScale, const Complex<Num>& eps) {
  const double q = 2 * std::numbers::pi / head.wavelength;
  const Complex<Num> root = Sqrt(eps * (k0 * k0) - Num(q * q));
  const Complex<Num> k = SelectComplex(Norm(root) < Num(kTinyNorm), {Num(1e-15), Num(0)}, root);
  const Complex<Num> perK = Num(1) / k, halfPerK = perK * Num(0.5), y = eps * perK, byK = -(y * perK);
  const Complex<Num> kByEps = halfPerK * (k0 * k0), kByScale = halfPerK * eps * (Num(2) * k0 * k0ByScale);
  const Complex<Num> kByWavelength = halfPerK * Num(2 * q * q / head.wavelength);
  return {y, k, perK + byK * kByEps, kByEps, {byK * kByScale, byK * kByWavelength}, {kByScale, kByWavelength}};
}

template <class Num>
StackMedium<Num> StackMediumOf(const StackHead& head, const Num& x, const Complex<Num>& eps) {
  const EmptyPath<Num> path = EmptyPathOf(head, x);
  if (head.geometry == StackGeometry::kNormal) return NormalMedium(path.k, eps);
  if (head.geometry == StackGeometry::kOblique) return ObliqueMedium(head, path.k, eps);
  return FiniteMedium(head, path.k, path.byScale, eps);
}

// ---- interfaces and passages

template <class Num>
void PrepareInterfaces(StackOf<Num>& stack) {
  stack.through = {Num(1), Num(0)};
  for (std::size_t j = 1; j < stack.y.size(); ++j) {
    const Complex<Num>&a = stack.y[j - 1], &b = stack.y[j];
    const Complex<Num> sum = a + b;
    stack.rho[j] = SelectComplex(Norm(sum) < Num(kTinyNorm), {}, (b - a) / sum);
    stack.through *= Num(1) + stack.rho[j];
  }
}

template <class Num>
void PreparePassages(StackOf<Num>& stack) {
  const Complex<Num> one{Num(1), Num(0)};
  for (std::size_t j = 1; j + 1 < stack.y.size(); ++j) {
    for (std::size_t n = 0; n < stack.nodes[j].size(); ++n) {
      const double d = stack.nodes[j][n].thickness;
      const auto grows = -stack.k[j].im * Num(d) > Num(0);
      const Complex<Num> once = SelectComplex(grows, one, Exp(TimesI(stack.k[j]) * Num(d)));
      const Complex<Num> empty = Exp(Complex<Num>{Num(0), -(stack.emptyPath * Num(d))});
      stack.passages[j][n] = {once * once, once * empty, Select(grows, Num(0), Num(1)), {}, {}, {}};
    }
  }
}

// ---- the tree

// Tangential fields of the forward wave (on) and of the backward wave (back), up to a common factor.
template <class Num>
struct StackFields {
  Complex<Num> on;
  Complex<Num> back;
};

// Derivatives of a result by both fields.
template <class Num>
struct Covector {
  Complex<Num> on;
  Complex<Num> back;
  Covector& operator+=(const Covector& c) {
    on += c.on;
    back += c.back;
    return *this;
  }
  friend Covector operator*(const Covector& c, const Complex<Num>& z) { return {c.on * z, c.back * z}; }
};

// Sums over the branches of the tree with their weights, for amplitudes and for intensities.
template <class Num>
struct AmplitudeSums {
  Covector<Num> r, t;  // derivatives of the amplitudes by the fields
  Complex<Num> sumT;   // t
};
template <class Num>
struct IntensitySums {
  Covector<Num> R, T;  // derivatives of the amplitudes times the conjugate amplitude
  Num sumTT{};         // |t|^2
};
struct NoSums {};
template <class Num, bool kSlopes, bool kAmplitudes>
struct StackSums {
  [[no_unique_address]] std::conditional_t<kSlopes, IntensitySums<Num>, NoSums> intensity;
  [[no_unique_address]] std::conditional_t<kSlopes && kAmplitudes, AmplitudeSums<Num>, NoSums> amplitude;
};

// (on, back) in front of an interface, from the fields after it.
template <class Num>
StackFields<Num> BeforeInterface(const Complex<Num>& rho, const StackFields<Num>& behind) {
  return {behind.on + rho * behind.back, rho * behind.on + behind.back};
}
template <class Num>
Covector<Num> BehindInterface(const Complex<Num>& rho, const Covector<Num>& before) {
  return {before.on + rho * before.back, rho * before.on + before.back};
}

// kSlopes: compute derivatives. kAmplitudes: also those of the amplitudes, not only those of R and T.
template <class Num, class Width, bool kSlopes, bool kAmplitudes>
class StackWalk {
 public:
  using Sums = StackSums<Num, kSlopes, kAmplitudes>;
  static constexpr bool kAmplitudeSlopes = kSlopes && kAmplitudes;

  explicit StackWalk(StackOf<Num>& stack) : stack_(stack) {}

  // The branch that ends in front of medium j. `behind`: the fields after the interface between media j - 1 and j.
  __attribute__((flatten)) Sums Visit(std::size_t j, const StackFields<Num>& behind, const Complex<Num>& passed,
                                      double weight) {
    const StackFields<Num> before = BeforeInterface(stack_.rho[j], behind);
    Sums total = j == 1 ? Leaf(before, passed, weight) : Branches(j - 1, before, passed, weight);
    if constexpr (kSlopes) CrossInterface(j, behind, total);
    return total;
  }

 private:
  // All nodes of a layer. `before`: the fields at the back of the layer.
  Sums Branches(std::size_t layer, const StackFields<Num>& before, const Complex<Num>& passed, double weight) {
    Sums total;
    for (std::size_t n = 0; n < stack_.nodes[layer].size(); ++n) {
      auto& passage = stack_.passages[layer][n];
      const StackFields<Num> front{before.on, before.back * passage.round};
      const Sums sums = Visit(layer, front, passed * passage.once, weight * stack_.nodes[layer][n].weight);
      if constexpr (kSlopes) {
        AddOfPassage(front, sums, passage);
        Carry(sums, passage.round, total);
      }
    }
    return total;
  }

  Sums Leaf(const StackFields<Num>& before, const Complex<Num>& passed, double weight) {
    const Complex<Num> inverse = Num(1) / before.on;
    const Complex<Num> r = before.back * inverse, t = passed * inverse;
    const Num share(weight), normT = Norm(t);
    stack_.value[kStackR] += share * Norm(r);
    stack_.value[kStackT] += share * normT;
    if constexpr (kAmplitudes) {
      stack_.value[kStackReR] += share * r.re;
      stack_.value[kStackImR] += share * r.im;
      stack_.value[kStackReT] += share * t.re;
      stack_.value[kStackImT] += share * t.im;
    }
    Sums sums;
    if constexpr (kSlopes) {
      const Complex<Num> unit = inverse * share, unitR = unit * Conj(r);
      sums.intensity = {{-(r * unitR), unitR}, {-(unit * normT), {}}, share * normT};
      if constexpr (kAmplitudes) sums.amplitude = {{-(r * unit), unit}, {-(t * unit), {}}, t * share};
    }
    return sums;
  }

  // Converts derivatives by the fields in front of an interface into those by the fields after it: d(on, back) = (back,
  // on) drho. The contribution of the factors 1 + rho of t is added in ChainInterfaces.
  void CrossInterface(std::size_t j, const StackFields<Num>& behind, Sums& sums) {
    const Complex<Num>& rho = stack_.rho[j];
    const auto cross = [&](Covector<Num>& c, Complex<Num>& byRho) {
      byRho += c.on * behind.back + c.back * behind.on;
      c = BehindInterface(rho, c);
    };
    cross(sums.intensity.R, stack_.byRho[j].R);
    cross(sums.intensity.T, stack_.byRho[j].T);
    if constexpr (kAmplitudes) {
      cross(sums.amplitude.r, stack_.byRho[j].r);
      cross(sums.amplitude.t, stack_.byRho[j].t);
    }
  }

  // A passage multiplies the backward wave by exp(2ikd), and t by exp(ikd - i emptyPath d).
  static void AddOfPassage(const StackFields<Num>& front, const Sums& sums, typename StackOf<Num>::Passage& passage) {
    const Complex<Num> twice = TimesI(front.back) * (Num(2) * passage.rate);
    passage.byPhase.R += sums.intensity.R.back * twice;
    passage.byPhase.T += sums.intensity.T.back * twice;
    passage.sumTT += sums.intensity.sumTT;
    if constexpr (kAmplitudes) {
      passage.byPhase.r += sums.amplitude.r.back * twice;
      passage.byPhase.t += sums.amplitude.t.back * twice;
      passage.sumT += sums.amplitude.sumT;
    }
  }

  static void Carry(const Sums& of, const Complex<Num>& round, Sums& total) {
    const auto before = [&](const Covector<Num>& c) { return Covector<Num>{c.on, c.back * round}; };
    total.intensity.R += before(of.intensity.R);
    total.intensity.T += before(of.intensity.T);
    total.intensity.sumTT += of.intensity.sumTT;
    if constexpr (kAmplitudes) {
      total.amplitude.r += before(of.amplitude.r);
      total.amplitude.t += before(of.amplitude.t);
      total.amplitude.sumT += of.amplitude.sumT;
    }
  }

  StackOf<Num>& stack_;
};

template <class Num>
void ClearStackSlopes(StackOf<Num>& stack) {
  for (std::size_t j = 0; j < stack.y.size(); ++j) {
    stack.byY[j] = stack.byK[j] = stack.byRho[j] = {};
    stack.byThickness[j] = stack.bySpread[j] = {};
  }
  stack.byEmptyPath = {};
}

// Chain rule from the phases of the passages, summed over the branches, to wave vectors, thicknesses and the empty
// path.
template <class Num>
void ChainPassages(StackOf<Num>& stack) {
  for (std::size_t layer = 1; layer + 1 < stack.y.size(); ++layer) {
    for (std::size_t n = 0; n < stack.nodes[layer].size(); ++n) {
      const auto& passage = stack.passages[layer][n];
      const ThicknessNode& node = stack.nodes[layer][n];
      StackGradient<Num> byPhase = passage.byPhase;
      byPhase.t += TimesI(passage.sumT) * passage.rate;
      byPhase.T.im += passage.sumTT * passage.rate;
      const Num d(node.thickness);
      stack.byK[layer] += {byPhase.r * d, byPhase.t * d, byPhase.R * d, byPhase.T * d};
      stack.byEmptyPath.t -= TimesI(passage.sumT) * d;
      stack.byEmptyPath.T.im -= d * passage.sumTT;
      StackSlopes<Num> slopes = byPhase.Along(stack.k[layer]);
      const Complex<Num> ofEmpty = TimesI(passage.sumT) * -stack.emptyPath;
      slopes[kStackReT] += ofEmpty.re;
      slopes[kStackImT] += ofEmpty.im;
      for (std::size_t q = 0; q < slopes.size(); ++q) {
        stack.byThickness[layer][q] += Num(node.byThickness) * slopes[q];
        stack.bySpread[layer][q] += Num(node.bySpread) * slopes[q];
      }
    }
  }
}

// Chain rule from the reflections of the interfaces to the admittances of the media on both sides. sumT, sumTT: sums
// over all branches.
template <class Num>
void ChainInterfaces(StackOf<Num>& stack, const Complex<Num>& sumT, const Num& sumTT) {
  for (std::size_t j = 1; j < stack.y.size(); ++j) {
    StackGradient<Num> g = stack.byRho[j];
    const Complex<Num>&a = stack.y[j - 1], &b = stack.y[j], sum = a + b, through = Num(1) + stack.rho[j];
    // The slopes are 0 if there is no interface, or if nothing is transmitted.
    const auto noInterface = Norm(sum) < Num(kTinyNorm), nothingThrough = Norm(through) == Num(0);
    const auto none = noInterface | nothingThrough;
    const Complex<Num> perRho = Num(1) / through;
    g.t += sumT * perRho;
    g.T += perRho * sumTT;
    const Complex<Num> perSquare = Num(2) / (sum * sum);
    const Complex<Num> byA = -(b * perSquare), byB = a * perSquare;
    const auto kept = [&](const Complex<Num>& z) { return SelectComplex(none, {}, z); };
    stack.byY[j - 1] += {kept(g.r * byA), kept(g.t * byA), kept(g.R * byA), kept(g.T * byA)};
    stack.byY[j] += {kept(g.r * byB), kept(g.t * byB), kept(g.R * byB), kept(g.T * byB)};
  }
}

template <class Num, class Width, bool kSlopes, bool kAmplitudes>
void WalkStack(StackOf<Num>& stack) {
  stack.value = {};
  PrepareInterfaces(stack);
  PreparePassages(stack);
  if constexpr (kSlopes) ClearStackSlopes(stack);
  StackWalk<Num, Width, kSlopes, kAmplitudes> walk(stack);
  const StackFields<Num> end{{Num(1), Num(0)}, {}};
  const auto all = walk.Visit(stack.y.size() - 1, end, stack.through, 1);
  if constexpr (kSlopes) {
    ChainPassages(stack);
    if constexpr (kAmplitudes) {
      ChainInterfaces(stack, all.amplitude.sumT, all.intensity.sumTT);
    } else {
      ChainInterfaces(stack, {}, all.intensity.sumTT);
    }
  }
}

}  // namespace kalvex
