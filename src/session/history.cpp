#include "session/history.h"

#include <algorithm>
#include <type_traits>

#include "graphs/graph_table.h"

namespace kalvex {
namespace {

std::size_t BytesOfModel(const Model& model) {
  return sizeof(Model) + model.rows.size() * sizeof(ModelParam) + model.vdf.mesh.size() * sizeof(VdfMeshPoint);
}

std::size_t BytesOfDataset(const Dataset& dataset) { return sizeof(Dataset) + dataset.points.size() * sizeof(DataRow); }

// The present state may share the lists of points and parameters with a step. They are counted for the step in any
// case, so the bound is safe.
std::size_t BytesOfFit(const FitState& fit) {
  std::size_t bytes = sizeof(FitState) + fit.list.terms.size() * sizeof(ChiSqTerm);
  bytes += fit.params.size() * (sizeof(FitParam) + fit.list.terms.size()) + fit.startValues.size() * sizeof(double);
  for (const FitSpectrum& spectrum : fit.spectra) {
    bytes += spectrum.x.size() * (sizeof(double) + sizeof(QuantitySet));
    for (const TermPoints& points : spectrum.terms) bytes += points.y.size() * (2 * sizeof(double) + 1);
  }
  return bytes;
}

// The strokes of a graph are not stored. They are rebuilt when the graph is painted.
Graph WithoutPicture(const Graph& graph) {
  Graph kept = graph;
  for (Curve& curve : kept.curves) {
    curve.strokes = curve.oldStrokes = {};
    curve.changed = false;
  }
  kept.readerCurve = Graph().readerCurve;
  kept.columnNew.clear();
  kept.columnOld.clear();
  return kept;
}

std::vector<std::pair<std::size_t, Graph>> GraphsOf(const GraphTable& table) {
  std::vector<std::pair<std::size_t, Graph>> graphs;
  for (std::size_t slot = 0; slot < table.slots.size(); ++slot) {
    if (table.slots[slot].number != 0) graphs.emplace_back(slot, WithoutPicture(table.slots[slot]));
  }
  return graphs;
}

bool AreSameGraphs(const std::vector<std::pair<std::size_t, Graph>>& graphs, const GraphTable& table) {
  const auto isThere = [&](const auto& graph) { return LooksTheSame(graph.second, table.slots[graph.first]); };
  const auto count =
      std::count_if(table.slots.begin(), table.slots.end(), [](const Graph& graph) { return graph.number != 0; });
  return graphs.size() == static_cast<std::size_t>(count) && std::all_of(graphs.begin(), graphs.end(), isThere);
}

// A notification alone, which resets `dirty`, is no change.
bool IsSameModel(const Model& a, const Model& b) {
  return a.number == b.number && a.name == b.name && a.epsInf == b.epsInf && a.rows == b.rows && a.vdf == b.vdf;
}

// What a person has put into the fit. The rest of a fit that follows changes is computed again at each operation.
bool HasSameTerms(const FitState& a, const FitState& b) {
  const auto isSame = [](const ChiSqTerm& of, const ChiSqTerm& as) {
    return of.id == as.id && of.datasetId == as.datasetId && of.modelId == as.modelId && of.weight == as.weight;
  };
  const auto& terms = a.list.terms;
  return std::equal(terms.begin(), terms.end(), b.list.terms.begin(), b.list.terms.end(), isSame);
}

}  // namespace

History::SavedRest History::RestOf(const SessionTables& tables) {
  return {tables.params.nextModelNumber, tables.datasets.nextId, tables.graphs.nextNumber,
          tables.autoScreenUpdate,       tables.graphReader,     tables.fitFollows};
}

History::Dirty History::DirtyOf(const ParamTables& tables) {
  Dirty dirty;
  for (std::size_t entry = 0; entry < kMaxModels; ++entry) dirty[entry] = tables.models[entry].dirty;
  dirty[kMaxModels] = tables.expParamsDirty;
  return dirty;
}

void History::SetDirty(const Dirty& dirty, ParamTables& tables) {
  for (std::size_t entry = 0; entry < kMaxModels; ++entry) tables.models[entry].dirty = dirty[entry];
  tables.expParamsDirty = dirty[kMaxModels];
}

void History::Begin(const Operation& operation, const Pieces& touched, const SessionTables& tables) {
  const bool merges =
      mayMerge_ && !operation.merge.empty() && !back_.empty() && back_.back().operation.merge == operation.merge;
  mayMerge_ = true;
  if (merges) {
    open_.push_back(std::move(back_.back()));
    back_.pop_back();
    open_.back().operation = operation;
    return;
  }
  Step step{operation, {}, open_.empty() ? DirtyOf(tables.params) : open_.front().dirty, 0};
  if (!touched.params.empty()) {
    SavedParams params;
    for (const ParamPlace& place : touched.params) params.params.emplace_back(place, ParamAt(tables.params, place));
    step.saved.emplace_back(std::move(params));
  }
  for (const std::size_t entry : touched.models) {
    const Model& model = tables.params.models[entry];
    step.saved.emplace_back(SavedModel{entry, std::make_unique<Model>(model)});
  }
  for (const std::size_t entry : touched.datasets) {
    const Dataset& dataset = tables.datasets.slots[entry];
    step.saved.emplace_back(SavedDataset{entry, std::make_unique<Dataset>(dataset)});
  }
  if (touched.expParams) {
    using ExpParams = std::array<ModelParam, kExpParamCount>;
    step.saved.emplace_back(SavedExpParams{std::make_unique<ExpParams>(tables.params.ExpParams)});
  }
  if (touched.graphs) step.saved.emplace_back(SavedGraphs{GraphsOf(tables.graphs)});
  if (touched.noise) step.saved.emplace_back(SavedNoise{tables.noise});
  // During a run only graphs change. The state of the run belongs to the step of the fit.
  if (touched.fit || (tables.fitFollows && !tables.fit.FitRunning)) {
    step.saved.emplace_back(SavedFit{std::make_unique<FitState>(tables.fit), touched.fit});
  }
  step.saved.emplace_back(RestOf(tables));
  for (const Saved& saved : step.saved) step.bytes += BytesOf(saved);
  bytes_ += step.bytes;
  open_.push_back(std::move(step));
}

bool History::End(const SessionTables& tables) {
  Step step = std::move(open_.back());
  open_.pop_back();
  // The last pieces of a step are small, and an operation on large pieces usually changes one of them. So the large
  // pieces are rarely compared to their end.
  const bool asBefore = std::all_of(step.saved.rbegin(), step.saved.rend(),
                                    [&](const Saved& saved) { return IsAsBefore(saved, tables); });
  if (asBefore) {
    bytes_ -= step.bytes;
    mayMerge_ = false;
    return false;
  }
  DropForward();
  for (Step& outer : open_) FollowGraphs(outer, tables);
  back_.push_back(std::move(step));
  HoldBound();
  return true;
}

void History::FollowGraphs(Step& outer, const SessionTables& tables) {
  for (Saved& saved : outer.saved) {
    auto* const rest = std::get_if<SavedRest>(&saved);
    if (!rest) continue;
    rest->nextGraphNumber = tables.graphs.nextNumber;
    rest->autoScreenUpdate = tables.autoScreenUpdate;
    rest->graphReader = tables.graphReader;
  }
}

bool History::Back(SessionTables& tables) {
  if (back_.empty()) return false;
  SwapAll(back_.back(), tables);
  forward_.push_back(std::move(back_.back()));
  back_.pop_back();
  mayMerge_ = false;
  return true;
}

bool History::Forward(SessionTables& tables) {
  if (forward_.empty()) return false;
  SwapAll(forward_.back(), tables);
  back_.push_back(std::move(forward_.back()));
  forward_.pop_back();
  mayMerge_ = false;
  return true;
}

void History::SetBound(std::size_t bytes) {
  bound_ = bytes;
  HoldBound();
}

void History::DropForward() {
  for (const Step& step : forward_) bytes_ -= step.bytes;
  forward_.clear();
}

void History::HoldBound() {
  while (!back_.empty() && bytes_ > bound_) {
    bytes_ -= back_.front().bytes;
    back_.pop_front();
  }
}

std::vector<std::string> History::LabelsOf(const std::deque<Step>& steps) {
  std::vector<std::string> labels;
  labels.reserve(steps.size());
  for (const Step& step : steps) labels.push_back(step.operation.label);
  return labels;
}

void History::Swap(Saved& saved, SessionTables& tables) {
  const auto swapWith = [&](auto& piece) {
    using std::swap;
    using Piece = std::decay_t<decltype(piece)>;
    if constexpr (std::is_same_v<Piece, SavedParams>) {
      for (auto& [place, param] : piece.params) swap(ParamAt(tables.params, place), param);
    } else if constexpr (std::is_same_v<Piece, SavedModel>) {
      swap(tables.params.models[piece.entry], *piece.model);
    } else if constexpr (std::is_same_v<Piece, SavedDataset>) {
      swap(tables.datasets.slots[piece.entry], *piece.dataset);
    } else if constexpr (std::is_same_v<Piece, SavedExpParams>) {
      swap(tables.params.ExpParams, *piece.params);
    } else if constexpr (std::is_same_v<Piece, SavedGraphs>) {
      auto present = GraphsOf(tables.graphs);
      for (const auto& [slot, graph] : present) tables.graphs.slots[slot] = Graph();
      for (auto& [slot, graph] : piece.graphs) tables.graphs.slots[slot] = std::move(graph);
      piece.graphs = std::move(present);
    } else if constexpr (std::is_same_v<Piece, SavedNoise>) {
      swap(tables.noise, piece.noise);
    } else if constexpr (std::is_same_v<Piece, SavedFit>) {
      swap(tables.fit, *piece.fit);
    } else {
      swap(tables.params.nextModelNumber, piece.nextModelNumber);
      swap(tables.datasets.nextId, piece.nextDatasetId);
      swap(tables.graphs.nextNumber, piece.nextGraphNumber);
      swap(tables.autoScreenUpdate, piece.autoScreenUpdate);
      swap(tables.graphReader, piece.graphReader);
      swap(tables.fitFollows, piece.fitFollows);
    }
  };
  std::visit(swapWith, saved);
}

bool History::IsAsBefore(const Saved& saved, const SessionTables& tables) {
  return std::visit(
      [&](const auto& piece) -> bool {
        using Piece = std::decay_t<decltype(piece)>;
        if constexpr (std::is_same_v<Piece, SavedParams>) {
          return std::all_of(piece.params.begin(), piece.params.end(),
                             [&](const auto& param) { return ParamAt(tables.params, param.first) == param.second; });
        } else if constexpr (std::is_same_v<Piece, SavedModel>) {
          return IsSameModel(tables.params.models[static_cast<std::size_t>(piece.entry)], *piece.model);
        } else if constexpr (std::is_same_v<Piece, SavedDataset>) {
          return tables.datasets.slots[static_cast<std::size_t>(piece.entry)] == *piece.dataset;
        } else if constexpr (std::is_same_v<Piece, SavedExpParams>) {
          return tables.params.ExpParams == *piece.params;
        } else if constexpr (std::is_same_v<Piece, SavedGraphs>) {
          return AreSameGraphs(piece.graphs, tables.graphs);
        } else if constexpr (std::is_same_v<Piece, SavedNoise>) {
          return tables.noise == piece.noise;
        } else if constexpr (std::is_same_v<Piece, SavedFit>) {
          return piece.touched ? tables.fit == *piece.fit : HasSameTerms(tables.fit, *piece.fit);
        } else {
          return piece == RestOf(tables);
        }
      },
      saved);
}

// Back and forward swap the pieces in the same order. That is correct although parameters are parts of models, because
// no operation saves both a parameter and its whole model.
void History::SwapAll(Step& step, SessionTables& tables) {
  const Dirty dirty = DirtyOf(tables.params);
  bytes_ -= step.bytes;
  step.bytes = 0;
  for (Saved& saved : step.saved) {
    Swap(saved, tables);
    step.bytes += BytesOf(saved);
  }
  bytes_ += step.bytes;
  SetDirty(step.dirty, tables.params);
  step.dirty = dirty;
}

std::size_t History::BytesOf(const Saved& saved) {
  return std::visit(
      [](const auto& piece) -> std::size_t {
        using Piece = std::decay_t<decltype(piece)>;
        if constexpr (std::is_same_v<Piece, SavedParams>) {
          return piece.params.size() * sizeof(piece.params.front());
        } else if constexpr (std::is_same_v<Piece, SavedModel>) {
          return BytesOfModel(*piece.model);
        } else if constexpr (std::is_same_v<Piece, SavedDataset>) {
          return BytesOfDataset(*piece.dataset);
        } else if constexpr (std::is_same_v<Piece, SavedGraphs>) {
          std::size_t bytes = piece.graphs.size() * sizeof(piece.graphs.front());
          for (const auto& [slot, graph] : piece.graphs) bytes += graph.curves.size() * sizeof(Curve);
          return bytes;
        } else if constexpr (std::is_same_v<Piece, SavedFit>) {
          return BytesOfFit(*piece.fit);
        } else if constexpr (std::is_same_v<Piece, SavedExpParams>) {
          return sizeof(*piece.params);
        } else {
          return sizeof(Piece);
        }
      },
      saved);
}

}  // namespace kalvex
