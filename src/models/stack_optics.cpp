#include "models/stack_optics.h"

#include <algorithm>

#include "models/quantity_formulas.h"

namespace kalvex {
namespace {

// Tangential fields of the wave that goes on and of the one that comes back, up to a common factor.
struct Fields {
  Cplx on{1, 0};
  Cplx back{};
};

// Derivatives of a result by both fields.
struct Covector {
  Cplx on{};
  Cplx back{};
  Covector& operator+=(const Covector& c) {
    on += c.on;
    back += c.back;
    return *this;
  }
  friend Covector operator*(const Covector& c, const Cplx& z) { return {c.on * z, c.back * z}; }
};

// What goes up the tree: sums over the branches with their weights.
struct Sums {
  Covector r, R, t, T;  // derivatives of the amplitudes by the fields; R and T those times the conjugate amplitude
  Cplx sumT;            // t
  double sumTT = 0;     // |t|^2
};

// Whether the exponential would grow.
bool Grows(const Cplx& k, double thickness) { return -k.im * thickness > 0; }

void PrepareInterfaces(Stack& stack) {
  stack.rho.assign(stack.media.size(), {});
  stack.through = {1, 0};
  for (std::size_t j = 1; j < stack.media.size(); ++j) {
    const Cplx &a = stack.media[j - 1].y, &b = stack.media[j].y;
    const Cplx sum = a + b;
    stack.rho[j] = Norm(sum) < kTinyNorm ? Cplx{} : (b - a) / sum;
    stack.through *= 1.0 + stack.rho[j];
  }
}

void PreparePassages(Stack& stack) {
  stack.passages.resize(stack.media.size());
  for (std::size_t j = 1; j + 1 < stack.media.size(); ++j) {
    const StackMedium& layer = stack.media[j];
    auto& passages = stack.passages[j];
    passages.clear();
    for (const ThicknessNode& node : layer.nodes) {
      const double d = node.thickness;
      const bool grows = Grows(layer.k, d);
      const Cplx once = grows ? Cplx{1, 0} : Exp(TimesI(layer.k) * d);
      const double empty = stack.emptyPath * d;
      passages.push_back({once * once, once * Cplx{std::cos(empty), -std::sin(empty)}, {grows ? 0.0 : 1.0, 0}});
    }
  }
}

// (on, back) before an interface from those behind it.
Fields BeforeInterface(const Cplx& rho, const Fields& behind) {
  return {behind.on + rho * behind.back, rho * behind.on + behind.back};
}
Covector BehindInterface(const Cplx& rho, const Covector& before) {
  return {before.on + rho * before.back, rho * before.on + before.back};
}

class Walk {
 public:
  explicit Walk(Stack& stack) : stack_(stack) {}

  // The branch that ends before medium j with these fields behind the interface in front of it.
  template <bool kDerivatives>
  Sums Visit(std::size_t j, const Fields& behind, const Cplx& passed, double weight) {
    const Cplx& rho = stack_.rho[j];
    const Fields before = BeforeInterface(rho, behind);
    if (j == 1) return Leaf<kDerivatives>(before, behind, passed, weight);
    Sums total;
    const std::size_t layer = j - 1;
    const StackMedium& medium = stack_.media[layer];
    for (std::size_t k = 0; k < medium.nodes.size(); ++k) {
      const Stack::Passage& passage = stack_.passages[layer][k];
      const ThicknessNode& node = medium.nodes[k];
      const Fields front{before.on, before.back * passage.round};
      const Sums sums = Visit<kDerivatives>(layer, front, passed * passage.once, weight * node.weight);
      if constexpr (kDerivatives) {
        AddOfNode(layer, node, passage, front, sums);
        Carry(sums, passage.round, total);
      }
    }
    if constexpr (kDerivatives) {
      AddOfInterface(j, behind, total);
      total = {BehindInterface(rho, total.r),
               BehindInterface(rho, total.R),
               BehindInterface(rho, total.t),
               BehindInterface(rho, total.T),
               total.sumT,
               total.sumTT};
    }
    return total;
  }

 private:
  template <bool kDerivatives>
  Sums Leaf(const Fields& before, const Fields& behind, const Cplx& passed, double weight) {
    const Cplx inverse = Cplx{1, 0} / before.on;
    const Cplx r = before.back * inverse, t = passed * inverse;
    stack_.value[kStackR] += weight * Norm(r);
    stack_.value[kStackT] += weight * Norm(t);
    stack_.value[kStackReR] += weight * r.re;
    stack_.value[kStackImR] += weight * r.im;
    stack_.value[kStackReT] += weight * t.re;
    stack_.value[kStackImT] += weight * t.im;
    if constexpr (!kDerivatives) {
      return {};
    } else {
      const Cplx unit = inverse * weight;
      Sums sums;
      sums.r = {-(r * unit), unit};
      sums.R = sums.r * Conj(r);
      sums.t = {-(t * unit), {}};
      sums.T = sums.t * Conj(t);
      sums.sumT = t * weight;
      sums.sumTT = weight * Norm(t);
      AddOfInterface(1, behind, sums);
      return {BehindInterface(stack_.rho[1], sums.r),
              BehindInterface(stack_.rho[1], sums.R),
              BehindInterface(stack_.rho[1], sums.t),
              BehindInterface(stack_.rho[1], sums.T),
              sums.sumT,
              sums.sumTT};
    }
  }

  // d(on, back) = (back, on) drho; what the factors 1 + rho of t add follows at the end.
  void AddOfInterface(std::size_t j, const Fields& behind, const Sums& sums) {
    const auto of = [&](const Covector& c) { return c.on * behind.back + c.back * behind.on; };
    stack_.byRho[j] += {of(sums.r), of(sums.t), of(sums.R), of(sums.T)};
  }

  // A passage turns the wave that comes back by exp(2ikd) and t by exp(ikd - i emptyPath d).
  void AddOfNode(std::size_t layer, const ThicknessNode& node, const Stack::Passage& passage, const Fields& front,
                 const Sums& sums) {
    const Cplx twice = Cplx{0, 2} * passage.rate * front.back, once = TimesI(passage.rate);
    const StackGradient byPhase{sums.r.back * twice, sums.t.back * twice + once * sums.sumT, sums.R.back * twice,
                                sums.T.back * twice + once * sums.sumTT};
    const Cplx d{node.thickness, 0};
    stack_.byK[layer] += {byPhase.r * d, byPhase.t * d, byPhase.R * d, byPhase.T * d};
    const Cplx empty = TimesI(d);
    stack_.byEmptyPath += {{}, -(empty * sums.sumT), {}, -(empty * sums.sumTT)};
    StackSlopes slopes = byPhase.Along(stack_.media[layer].k);
    const Cplx ofEmpty = Cplx{0, -stack_.emptyPath} * sums.sumT;
    slopes[kStackReT] += ofEmpty.re;
    slopes[kStackImT] += ofEmpty.im;
    for (std::size_t q = 0; q < slopes.size(); ++q) {
      stack_.byThickness[layer][q] += node.byThickness * slopes[q];
      stack_.bySpread[layer][q] += node.bySpread * slopes[q];
    }
  }

  static void Carry(const Sums& of, const Cplx& round, Sums& total) {
    const auto before = [&](const Covector& c) { return Covector{c.on, c.back * round}; };
    total.r += before(of.r);
    total.R += before(of.R);
    total.t += before(of.t);
    total.T += before(of.T);
    total.sumT += of.sumT;
    total.sumTT += of.sumTT;
  }

  Stack& stack_;
};

void ClearSlopes(Stack& stack) {
  const std::size_t count = stack.media.size();
  stack.byY.assign(count, {});
  stack.byK.assign(count, {});
  stack.byRho.assign(count, {});
  stack.byThickness.assign(count, {});
  stack.bySpread.assign(count, {});
  stack.byEmptyPath = {};
}

// From the reflections of the interfaces to the admittances of the media on both sides.
void ChainInterfaces(Stack& stack, const Sums& all) {
  for (std::size_t j = 1; j < stack.media.size(); ++j) {
    StackGradient g = stack.byRho[j];
    const Cplx &a = stack.media[j - 1].y, &b = stack.media[j].y, sum = a + b;
    if (Norm(sum) < kTinyNorm || stack.rho[j] == Cplx{-1, 0}) continue;
    const Cplx perRho = Cplx{1, 0} / (1.0 + stack.rho[j]);
    g.t += all.sumT * perRho;
    g.T += perRho * all.sumTT;
    const Cplx perSquare = 2.0 / (sum * sum);
    const Cplx byA = -(b * perSquare), byB = a * perSquare;
    stack.byY[j - 1] += {g.r * byA, g.t * byA, g.R * byA, g.T * byA};
    stack.byY[j] += {g.r * byB, g.t * byB, g.R * byB, g.T * byB};
  }
}

}  // namespace

void SetSingleNode(std::vector<ThicknessNode>& nodes, double thickness) { nodes.assign(1, {thickness, 1, 1, 0}); }

void SetAveragingNodes(std::vector<ThicknessNode>& nodes, double thickness, double spread) {
  if (spread == 0) return SetSingleNode(nodes, thickness);
  nodes.clear();
  for (const AveragingNode& node : kAveragingNodes) {
    const double u = 2 * node.x - 1, factor = u * spread + 1;
    nodes.push_back({std::max(thickness * factor, 0.0), node.g, factor, u * thickness});
  }
}

void AverageStack(Stack& stack, bool derivatives) {
  stack.value = {};
  PrepareInterfaces(stack);
  PreparePassages(stack);
  Walk walk(stack);
  const std::size_t last = stack.media.size() - 1;
  if (!derivatives) {
    walk.Visit<false>(last, {}, stack.through, 1);
    return;
  }
  ClearSlopes(stack);
  ChainInterfaces(stack, walk.Visit<true>(last, {}, stack.through, 1));
}

}  // namespace kalvex
