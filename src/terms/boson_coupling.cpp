#include "terms/boson_coupling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "core/limits.h"
#include "datasets/interpolation.h"
#include "numeric/digamma.h"
#include "terms/formula.h"
#include "terms/term_table.h"
#include "terms/term_tables.h"
#include "terms/units.h"

namespace kalvex {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kFloor = 1e-10;  // cm-1
constexpr std::size_t kMostTables = 8;

// ---- Re K = [g(y - x) - 2 g(y) + g(y + x)]/x with g(u) = u R(u), R = Re psi(1 + i u)
// Its slope under scaling is the same difference with u g'(u) - g(u) = u^2 R'(u) instead of g(u).

struct ValueAndSlope {
  double value = 0;
  double slope = 0;
};

ValueAndSlope DirectDifference(double x, double y) {
  ValueAndSlope sum;
  const auto add = [&](double factor, double u) {
    std::array<Cplx, 2> psi;
    Polygammas({1, u}, psi);
    sum.value += factor * u * psi[0].re;
    sum.slope -= factor * u * u * psi[1].im;  // R' = Re(i psi')
  };
  add(1, y - x);
  add(-2, y);
  add(1, y + x);
  return {sum.value / x, sum.slope / x};
}

// The same by the series x g'' + x^3 g''''/12 + x^5 g''''''/360, used where the difference would cancel. The next term
// is smaller than the first by about (x/|1 + i y|)^6.
constexpr double kSeriesRadius = 0.015;

ValueAndSlope SeriesDifference(double x, double y) {
  std::array<Cplx, 8> psi;
  Polygammas({1, y}, psi);
  std::array<double, 8> R;  // derivatives of R: Re(i^n psi^(n))
  for (std::size_t n = 0; n < R.size(); ++n) {
    const double part = n % 2 == 0 ? psi[n].re : -psi[n].im;
    R[n] = n % 4 < 2 ? part : -part;
  }
  ValueAndSlope sum;
  const double factors[] = {x, x * x * x / 12, x * x * x * x * x / 360};
  for (std::size_t n = 2; const double factor : factors) {
    const auto order = static_cast<double>(n);
    sum.value += factor * (y * R[n] + order * R[n - 1]);
    sum.slope += factor * (y * (y * R[n + 1] + 2 * order * R[n]) + order * (order - 1) * R[n - 1]);
    n += 2;
  }
  return sum;
}

// One direction of derivatives: the common scale of x and y.

using Scaled = Dual<1>;

// 1 - exp(-2 pi u)
Scaled Rest(const Scaled& u) { return -Expm1(-2 * kPi * u); }
Scaled Coth(const Scaled& u) { return 2.0 / Rest(u) - 1.0; }
// Number of thermal bosons, (coth(pi u) - 1)/2
Scaled Bose(const Scaled& u) { return Exp(-2 * kPi * u) / Rest(u); }
// c(u) for u >= 0
Scaled TimesCoth(const Scaled& u) { return u.a == 0 ? Scaled(1 / kPi) : u * Coth(u); }

Scaled ImaginaryPart(const Scaled& x, const Scaled& y) {
  const Scaled sum = y + x;
  if (2 * x.a >= y.a) {
    const Scaled difference = x > y ? x - y : y - x;
    return kPi * Coth(y) - 0.5 * kPi * (TimesCoth(sum) - TimesCoth(difference)) / x;
  }
  // coth a - coth b = -sinh(a - b)/(sinh a sinh b), which vanishes without thermal bosons.
  const Scaled difference = y - x;
  const Scaled fall = Exp(-2 * kPi * difference) * Rest(2.0 * x) / (Rest(sum) * Rest(difference));
  return kPi * (2.0 * Bose(y) - Bose(sum) - Bose(difference) + y / x * fall);
}

double AtLeast(double x, double floor) { return x > floor ? x : floor; }

const Dataset* DatasetOf(const TermCall& call, double number) {
  if (!call.environment->datasets || !(number >= 1 && number <= kMaxDatasets)) return nullptr;
  const Dataset* dataset = DatasetInSlot(*call.environment->datasets, static_cast<int>(number));
  return dataset && dataset->id != 0 ? dataset : nullptr;
}

const std::vector<CouplingNode>& NodesOf(TermEnvironment& environment, const Dataset& dataset, double meshCount) {
  auto& tables = TablesOf(environment).couplings;
  for (const CouplingNodes& table : tables) {
    if (table.datasetId == dataset.id && table.meshCount == meshCount) return table.nodes;
  }
  if (tables.size() == kMostTables) tables.erase(tables.begin());
  tables.push_back({dataset.id, meshCount, MakeCouplingNodes(dataset, meshCount)});
  return tables.back().nodes;
}

// The memory function and its derivative by T.
struct Memory {
  Cplx value;
  Cplx slope;
};

Memory MemoryOf(const std::vector<CouplingNode>& nodes, double w, double kelvins) {
  const double t = kWavenumberPerKelvin * kelvins;
  const double unit = 2 * kPi * AtLeast(t, kFloor);
  Cplx value, slope;
  for (const CouplingNode& node : nodes) {
    const BosonKernel K = BosonKernelAt(w / unit, node.W / unit);
    value += node.weight * K.value;
    slope += node.weight * K.slope;
  }
  Memory memory{TimesI(value) * -2.0, {}};
  if (t > kFloor) memory.slope = TimesI(slope) * (2 / kelvins);
  return memory;
}

}  // namespace

BosonKernel BosonKernelAt(double x, double y) {
  const bool series = x * x < kSeriesRadius * kSeriesRadius * (1 + y * y);
  const ValueAndSlope real = series ? SeriesDifference(x, y) : DirectDifference(x, y);
  Scaled scaledX(x), scaledY(y);
  scaledX.v[0] = x;
  scaledY.v[0] = y;
  const Scaled imaginary = ImaginaryPart(scaledX, scaledY);
  return {{real.value, imaginary.a}, {real.slope, imaginary.v[0]}};
}

std::vector<CouplingNode> MakeCouplingNodes(const Dataset& dataset, double meshCount) {
  std::vector<CouplingNode> nodes;
  const auto& points = dataset.points;
  const auto keep = [&](double W, double weight) {
    if (W > 0) nodes.push_back({W, weight});
  };
  if (!(meshCount >= 1)) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      const double left = points[i == 0 ? 0 : i - 1].x, right = points[std::min(i + 1, points.size() - 1)].x;
      keep(points[i].x, points[i].y * 0.5 * (right - left));
    }
    return nodes;
  }
  if (points.size() < 2) return nodes;
  const double from = points[1].x, to = points[points.size() - 2].x;
  const auto count = static_cast<int>(std::min(meshCount, kMostCouplingNodes));
  const double step = (to - from) / count;
  if (!(step > 0)) return nodes;
  for (int i = 0; i < count; ++i) {
    const double W = from + (i + 0.5) * step;
    keep(W, InterpolateY(points, W) * step);
  }
  return nodes;
}

namespace {

struct BosonCoupling {
  static constexpr const char* kName = "carriers that scatter from bosons of a measured spectrum";
  static constexpr TermCell kCells[] = {
      Number(0, Wp, "plasma frequency Wp", "cm-1", 3000),
      Number(0, G, "rate G without bosons", "cm-1", 30),
      Number(1, Wp, "temperature T", "K", 100),
      {1, G, "dataset of a2F as a function of the frequency in cm-1", "", 1, TermUse::kDataset},
      {2, Wp, "mesh count", "", 0, TermUse::kSetting},
      Number(2, G, "fraction c of the spectrum that is ignored", "", 0.2)};
  static constexpr TermPage kPage = {
      .formula =
          "-Wp^2/(w (w + i (G + (1 - c) M))), M = sum of -2 i a2F(W) dW K(w/(2 pi t), W/(2 pi t)), t = 0.69508 T\n"
          "K(x, y) = [(y - x) P(y - x) - 2 y P(y) + (y + x) P(y + x)]/x\n"
          "          - i pi ((y + x)/x) (coth pi(x + y) - coth pi y), P(u) = psi(1 + i u), psi the digamma function\n"
          "A mesh count below 1 takes the points of the dataset, each with half the distance to either neighbour.\n"
          "Otherwise it is the number of equal intervals between the second and the last but one. Points at or\n"
          "below 0 are ignored.",
      .source =
          "P. B. Allen, Phys. Rev. B 3, 305 (1971); S. V. Shulga, O. V. Dolgov and E. G. Maksimov, Physica C 178, 266 "
          "(1991)",
      .limits =
          "c = 1, or a dataset that is not loaded: a Drude term. Far below all bosons M is the mass "
          "enhancement alone; far above, the rate is 2 pi times the integral of a2F. t and w are held at "
          "1e-10 cm-1 or more. 1e30 in both parts where the denominator is 0.",
      .causality = "This holds if a2F is nowhere negative and c is at most 1."};

  static int Calc(const TermCall& call, Cplx& result) {
    enum Input { kWp, kG, kT, kDataset, kMesh, kMixing };
    const auto value = [&](Input i) { return call.inputs[i].value; };
    const double w = AtLeast(call.environment->dcFlag ? kFloor : call.w, kFloor);
    const double share = 1 - value(kMixing), squared = value(kWp) * value(kWp);

    Memory memory;
    if (const Dataset* dataset = DatasetOf(call, value(kDataset))) {
      memory = MemoryOf(NodesOf(*call.environment, *dataset, value(kMesh)), w, value(kT));
    }
    const Cplx D = w * (w + TimesI(value(kG) + share * memory.value));
    Cplx inverse;
    if (!Divide(Cplx{1, 0}, D, inverse)) {
      GiveMarker(call, result);
      return 0;
    }
    result = -squared * inverse;
    if (!call.derivatives) return 0;
    const Cplx byRate = -w * TimesI(result * inverse);  // d eps/dG
    PutSlope(call.inputs[kWp], -2 * value(kWp) * inverse);
    PutSlope(call.inputs[kG], byRate);
    PutSlope(call.inputs[kT], byRate * memory.slope * share);
    PutSlope(call.inputs[kDataset], {0, 0});
    PutSlope(call.inputs[kMesh], {0, 0});
    PutSlope(call.inputs[kMixing], -(byRate * memory.value));
    return 0;
  }
};

}  // namespace

constinit const TermRecord kBosonCoupling41 = MakeTerm<BosonCoupling, 41, 43>();
constinit const TermRecord kBosonCoupling44 = MakeTerm<BosonCoupling, 44, 46>();

}  // namespace kalvex
