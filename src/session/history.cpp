#include "session/history.h"

#include <type_traits>

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

}  // namespace

void History::Begin(const Operation& operation, const Pieces& touched, const SessionTables& tables) {
  for (const Step& step : forward_) bytes_ -= step.bytes;
  forward_.clear();
  begun_ =
      !(mayMerge_ && !operation.merge.empty() && !back_.empty() && back_.back().operation.merge == operation.merge);
  mayMerge_ = true;
  if (!begun_) {
    back_.back().operation = operation;
    return;
  }
  Step step{operation, {}, 0};
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
  if (touched.fit || tables.fitFollows) step.saved.emplace_back(SavedFit{std::make_unique<FitState>(tables.fit)});
  step.saved.emplace_back(SavedRest{tables.params.nextModelNumber, tables.datasets.nextId, tables.graphs.nextNumber,
                                    tables.autoScreenUpdate, tables.graphReader, tables.fitFollows});
  for (const Saved& saved : step.saved) step.bytes += BytesOf(saved);
  bytes_ += step.bytes;
  back_.push_back(std::move(step));
}

void History::Abandon() {
  if (begun_) {
    bytes_ -= back_.back().bytes;
    back_.pop_back();
  }
  begun_ = false;
}

void History::End() {
  begun_ = false;
  HoldBound();
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

// Back and forward swap the pieces in the same order. That is correct although parameters are parts of models, because
// no operation saves both a parameter and its whole model.
void History::SwapAll(Step& step, SessionTables& tables) {
  bytes_ -= step.bytes;
  step.bytes = 0;
  for (Saved& saved : step.saved) {
    Swap(saved, tables);
    step.bytes += BytesOf(saved);
  }
  bytes_ += step.bytes;
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
