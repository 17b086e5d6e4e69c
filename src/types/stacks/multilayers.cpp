// Coherent stacks of layers in vacuum: with a spread of thicknesses, at oblique incidence, or for evanescent waves.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "evaluation/chains.h"
#include "evaluation/eps_sum.h"
#include "evaluation/stack_formulas.h"
#include "types/frame.h"
#include "types/stacks/stack_spectrum.h"
#include "types/types.h"

namespace kalvex {
namespace {

constexpr std::array<SlotUse, kStackResults> kFills = {{{kRefl, "reflectivity |r|^2"},
                                                        {kTrans, "transmission |t|^2"},
                                                        {kE1, "Re r"},
                                                        {kE2, "Im r"},
                                                        {kS1, "Re t, relative to the empty path"},
                                                        {kS2, "Im t, relative to the empty path"}}};
constexpr RowCell kSpreadLayer[] = {Partner(0, Wo, "layer"), Own(0, Wp, "thickness, cm", 0.0005),
                                    Own(0, G, "relative spread of the thickness, 0 for none", 0.2)};
constexpr RowCell kPlainLayer[] = {Partner(0, Wo, "layer"), Own(0, Wp, "thickness, cm", 0.0005)};

// The buffers of an evaluation of a stack, kept for its model.
struct StackRun {
  std::vector<const Model*> models;  // of the layers
  std::vector<Cplx> eps;             // of each medium and both half-spaces
  std::vector<StackMedium<double>> media;
  double emptyByScale = 0;
  Stack stack;
};

// What differs between the types: the media as functions of the dielectric functions, and the thickness nodes of a
// layer.
struct StackType {
  RowMap map;
  int firstLayer = 0;
  std::size_t heads = 0;  // numbers of the head row that can be fitted, in columns headColumn[i]
  int headColumn[2] = {};
  bool (*admits)(const Model&) = nullptr;
  StackHead (*headOf)(const Model&) = nullptr;
  void (*setNodes)(const Model&, int row, std::vector<ThicknessNode>&) = nullptr;
  bool clearsWhileWanted = false;  // only the Quantities before the first one that is not wanted are set to 0
};

double ValueAt(const Model& model, int row, int column) { return Cell(model, row, column).value; }

// Finds the models of the layers. Returns false if one is missing.
bool FindLayers(EvalContext& ctx, const Model& model, const StackType& type, StackRun& run) {
  run.models.clear();
  for (int row = type.firstLayer; row < RowCount(model); ++row) {
    const Model* const partner = PartnerAt(ctx, model, row, Wo);
    if (!partner) return false;
    run.models.push_back(partner);
  }
  return true;
}

void MakeRoom(StackRun& run) {
  const std::size_t media = run.models.size() + 2;
  run.eps.assign(media, {1, 0});
  run.media.resize(media);
  MakeRoomForMedia(run.stack, media);
}

void SetMedia(const StackHead& head, double x, StackRun& run) {
  const EmptyPath<double> path = EmptyPathOf(head, x);
  run.stack.emptyPath = path.k;
  run.emptyByScale = path.byScale;
  for (std::size_t j = 0; j < run.media.size(); ++j) {
    run.media[j] = StackMediumOf(head, x, run.eps[j]);
    run.stack.y[j] = run.media[j].y;
    run.stack.k[j] = run.media[j].k;
  }
}

// Evaluates the dielectric functions of the layers, each model once.
void AskLayers(EvalContext& ctx, double x, bool derivatives, StackRun& run) {
  for (std::size_t j = 0; j < run.models.size(); ++j) {
    const auto first = std::find(run.models.begin(), run.models.end(), run.models[j]);
    const auto same = static_cast<std::size_t>(first - run.models.begin());
    run.eps[j + 1] = same < j ? run.eps[same + 1] : EpsSum(ctx, *run.models[j], x, derivatives);
  }
}

void StoreResults(EvalContext& ctx, const StackType& type, const StackRun& run) {
  bool clearing = true;
  for (QuantityResult& quantity : ctx.quantities) {
    clearing = clearing && quantity.wanted;
    if (type.clearsWhileWanted ? clearing : quantity.wanted != 0) quantity.Put(0);
  }
  for (std::size_t i = 0; i < kStackResults; ++i) ctx.quantities[kStackSlots[i]].Put(run.stack.value[i]);
}

// Chains the slopes of the results: byEps through the model of each layer, byRow and byHead to the numbers of the rows.
template <class ByEps, class ByRow, class ByHead>
void ChainStack(EvalContext& ctx, const Model& model, const StackType& type, StackRun& run, ByEps byEps, ByRow byRow,
                ByHead byHead) {
  for (const Quantity q : kEveryQuantity) {
    QuantityResult& quantity = ctx.quantities[q];
    if (!quantity.wanted) continue;
    quantity.ClearExp();
    quantity.dRe = quantity.dIm = 0;
    for (const Model* const layer : run.models) ClearDerivativeColumn(ctx, *layer, q);
    const auto result = StackResultOf(q);
    const auto put = [&](int row, int column, double slope) {
      if (Cell(model, row, column).adjustable) {
        Cell(SlopesOf(ctx, model), row, column).Put(q, !result ? 0 : slope);
      }
    };
    for (std::size_t j = 0; j < run.models.size(); ++j) {
      if (result) {
        byEps(j + 1, *result, quantity.dRe, quantity.dIm);
        AddChain(ctx, *run.models[j], q);
      }
      const int row = type.firstLayer + static_cast<int>(j);
      put(row, Wp, !result ? 0 : byRow(j + 1, Wp, *result));
      if (type.map.group.size() > 2) put(row, G, !result ? 0 : byRow(j + 1, G, *result));
    }
    for (std::size_t i = 0; i < type.heads; ++i) {
      put(0, type.headColumn[i], !result ? 0 : byHead(i, *result));
    }
  }
}

void SetNodes(const Model& model, const StackType& type, Stack& stack) {
  for (std::size_t j = 1; j + 1 < stack.nodes.size(); ++j) {
    type.setNodes(model, type.firstLayer + static_cast<int>(j) - 1, stack.nodes[j]);
  }
  MakeRoomForPassages(stack);
}

int EvaluateStack(EvalContext& ctx, const Model& model, double x, bool derivatives, const StackType& type) {
  const int rows = RowCount(model);
  if (!type.map.rows.Admits(rows)) return type.map.rows.FailureOf(rows);
  if (type.admits && !type.admits(model)) return -1;
  auto& run = CacheOf<StackRun>(ctx, model);
  if (!FindLayers(ctx, model, type, run)) return -1;
  MakeRoom(run);
  AskLayers(ctx, x, derivatives, run);
  SetMedia(type.headOf(model), x, run);
  SetNodes(model, type, run.stack);
  AverageStack(run.stack, derivatives);
  StoreResults(ctx, type, run);
  if (!derivatives) return 0;

  const Stack& stack = run.stack;
  const auto byEps = [&](std::size_t j, std::size_t result, double& dRe, double& dIm) {
    const auto along = [&](const Cplx& dEps) {
      return stack.byY[j].Along(run.media[j].yByEps * dEps)[result] +
             stack.byK[j].Along(run.media[j].kByEps * dEps)[result];
    };
    dRe = along({1, 0});
    dIm = run.media[j].byIm == 0 ? 0 : along({0, 1});
  };
  const auto byRow = [&](std::size_t j, int column, std::size_t result) {
    return (column == Wp ? stack.byThickness : stack.bySpread)[j][result];
  };
  const auto byHead = [&](std::size_t i, std::size_t result) {
    double slope = i == 0 ? stack.byEmptyPath.Along({run.emptyByScale, 0})[result] : 0;
    for (std::size_t j = 0; j < run.media.size(); ++j) {
      slope += stack.byY[j].Along(run.media[j].yByHead[i])[result];
      slope += stack.byK[j].Along(run.media[j].kByHead[i])[result];
    }
    return slope;
  };
  ChainStack(ctx, model, type, run, byEps, byRow, byHead);
  return 0;
}

FillBlock FillerOfStack(EvalContext& ctx, const Model& model, const SpectrumRequest& request, const StackType& type) {
  if (!type.map.rows.Admits(RowCount(model)) || (type.admits && !type.admits(model))) return {};
  StackRun run;
  if (!FindLayers(ctx, model, type, run)) return {};
  StackLayout layout{.head = type.headOf(model),
                     .layers = run.models,
                     .nodes = {},
                     .firstRow = type.firstLayer,
                     .spreads = type.map.group.size() > 2,
                     .heads = type.heads,
                     .headColumn = {type.headColumn[0], type.headColumn[1]}};
  layout.nodes.resize(layout.layers.size());
  for (std::size_t j = 0; j < layout.nodes.size(); ++j) {
    type.setNodes(model, type.firstLayer + static_cast<int>(j), layout.nodes[j]);
  }
  return StackFillerOf(ctx, model, request, layout);
}

int AfterStack(EvalContext& ctx, const Model& model, const StackType& type) {
  const int rows = RowCount(model);
  if (!type.map.rows.Admits(rows)) return type.map.rows.FailureOf(rows);
  if (type.admits && !type.admits(model)) return -1;
  auto& run = CacheOf<StackRun>(ctx, model);
  if (!FindLayers(ctx, model, type, run)) return -1;
  for (const Model* const layer : run.models) SeedDependencies(ctx, *layer);
  ChainStack(
      ctx, model, type, run, [](std::size_t, std::size_t, double& dRe, double& dIm) { dRe = dIm = 1; },
      [](std::size_t, int, std::size_t) { return 1.0; }, [](std::size_t, std::size_t) { return 1.0; });
  return 0;
}

// ---- normal incidence

StackHead NormalHead(const Model&) { return {}; }

void SetSpreadNodes(const Model& model, int row, std::vector<ThicknessNode>& nodes) {
  SetAveragingNodes(nodes, ValueAt(model, row, Wp), ValueAt(model, row, G));
}

constexpr StackType kNormal = {
    .map = {.rows = AtLeast(0), .head = {}, .group = kSpreadLayer, .groupStart = 0, .groupRows = 1},
    .headOf = NormalHead,
    .setNodes = SetSpreadNodes,
    .clearsWhileWanted = true};

// ---- normal incidence, with nodes of equal weight

constexpr RowCell kNodesHead[] = {Setting(0, Wp, "number of nodes of each layer with a spread", 4)};

void SetEqualNodes(const Model& model, int row, std::vector<ThicknessNode>& nodes) {
  constexpr double kMostNodes = 10000;
  const double d = ValueAt(model, row, Wp), spread = ValueAt(model, row, G);
  if (spread == 0) return SetSingleNode(nodes, d);
  const int count = static_cast<int>(std::clamp(ValueAt(model, 0, Wp), 1.0, kMostNodes));
  nodes.clear();
  for (int k = 0; k < count; ++k) {
    const double u = 2.0 * k / count - 1, factor = u * spread + 1;
    nodes.push_back({std::max(d * factor, 0.0), 1.0 / count, factor, u * d});
  }
}

constexpr StackType kEqualNodes = {
    .map = {.rows = AtLeast(2), .head = kNodesHead, .group = kSpreadLayer, .groupStart = 1, .groupRows = 1},
    .firstLayer = 1,
    .headOf = NormalHead,
    .setNodes = SetEqualNodes};

void SetOneNode(const Model& model, int row, std::vector<ThicknessNode>& nodes) {
  SetSingleNode(nodes, ValueAt(model, row, Wp));
}

// ---- oblique incidence

constexpr RowCell kObliqueHead[] = {Own(0, Wp, "angle of incidence, between 0 and 90 degrees", 50),
                                    Setting(0, G, "polarisation: 0 for p, 1 for s", 0)};

bool AdmitsOblique(const Model& model) { return ValueAt(model, 0, Wp) > 0 && ValueAt(model, 0, Wp) < 90; }

StackHead ObliqueHead(const Model& model) {
  const double angle = ValueAt(model, 0, Wp) * kRadiansPerDegree;
  return {.geometry = StackGeometry::kOblique,
          .sine = std::sin(angle),
          .bySine = std::cos(angle) * kRadiansPerDegree,
          .sPolarised = static_cast<int>(ValueAt(model, 0, G)) == 1};
}

constexpr StackType kOblique = {
    .map = {.rows = AtLeast(2), .head = kObliqueHead, .group = kPlainLayer, .groupStart = 1, .groupRows = 1},
    .firstLayer = 1,
    .heads = 1,
    .headColumn = {Wp, Wp},
    .admits = AdmitsOblique,
    .headOf = ObliqueHead,
    .setNodes = SetOneNode};

// ---- waves of a given wavelength along the layers

constexpr RowCell kFiniteHead[] = {Own(0, Wo, "scale of the frequency", 1),
                                   Own(0, Wp, "wavelength along the layers, cm", 0.03)};

StackHead FiniteHead(const Model& model) {
  return {.geometry = StackGeometry::kFinite,
          .scale = ValueAt(model, 0, Wo),
          .wavelength = HeldFromZero(ValueAt(model, 0, Wp))};
}

constexpr StackType kFinite = {
    .map = {.rows = AtLeast(2), .head = kFiniteHead, .group = kPlainLayer, .groupStart = 1, .groupRows = 1},
    .firstLayer = 1,
    .heads = 2,
    .headColumn = {Wo, Wp},
    .headOf = FiniteHead,
    .setNodes = SetOneNode};

template <const StackType& kType>
int Evaluate(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  return EvaluateStack(ctx, model, x, derivatives, kType);
}
template <const StackType& kType>
int After(EvalContext& ctx, const Model& model) {
  return AfterStack(ctx, model, kType);
}
template <const StackType& kType>
FillBlock Filler(EvalContext& ctx, const Model& model, const SpectrumRequest& request) {
  return FillerOfStack(ctx, model, request, kType);
}
template <const StackType& kType>
constexpr ModelType Make(int code, const char* name, const TypePage& page) {
  return {code, name, Evaluate<kType>, After<kType>, true, false, kType.map, kFills, page, false, Filler<kType>};
}

}  // namespace

constinit const ModelType kMultilayerSample = Make<kNormal>(
    2, "Multilayer sample",
    {.sample = "a stack of layers in vacuum at normal incidence, each with a thickness that may spread",
     .formula =
         "rho = (N_b - N_a)/(N_b + N_a) at each interface, matrices [[1, rho], [rho E, E]], E = exp(4 pi i x N d)\n"
         "of the layer in front; their product P gives r = P10/P00, t = product of (1 + rho) exp(2 pi i x N d)/P00\n"
         "times exp(-2 pi i x D), D the whole thickness\n"
         "spread s: ten nodes d (1 + (2u - 1) s), those of the averages over the thickness of a bulk sample, whose\n"
         "weights sum to 1.000074; results are averages over all combinations of nodes",
     .source = "M. Born, E. Wolf, Principles of Optics, chapter 1.6"});

constinit const ModelType kMultilayerSample2 = Make<kEqualNodes>(
    32, "Multilayer sample - 2",
    {.sample = "a stack of layers in vacuum at normal incidence, the average over thicknesses with a number of nodes",
     .formula = "as type 2; spread s: m nodes d (1 + (2k/m - 1) s), k = 0 ... m - 1, of equal weight",
     .source = "M. Born, E. Wolf, Principles of Optics, chapter 1.6"});

constinit const ModelType kMultilayer3 = Make<kOblique>(
    92, "Multilayer - 3",
    {.sample = "a stack of layers in vacuum at oblique incidence, p- or s-polarised",
     .formula =
         "m = sqrt(e - sin^2); p: y = e/m, s: y = m; rho = (y_b - y_a)/(y_b + y_a), E = exp(4 pi i x m d), else as\n"
         "type 2. A layer with gain counts with Im e = 1e-5.",
     .source = "M. Born, E. Wolf, Principles of Optics, chapter 1.6; the switch for s is a choice of this program"});

constinit const ModelType kMultilayerFiniteQ = Make<kFinite>(
    106, "Multilayer-finite Q",
    {.sample = "a stack of layers in vacuum for waves of a given wavelength along the layers, evanescent ones too",
     .formula =
         "k0 = 2 pi x scale, q = 2 pi/wavelength, k = sqrt(e k0^2 - q^2), y = e/k, rho = (y_b - y_a)/(y_b + y_a),\n"
         "E = exp(2ikd), t relative to exp(i k0 D), else as type 2",
     .source = "M. Born, E. Wolf, Principles of Optics, chapter 1.6"});

}  // namespace kalvex
