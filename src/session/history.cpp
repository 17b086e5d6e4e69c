#include "session/history.h"

#include <type_traits>

namespace kalvex {
namespace {

std::size_t BytesOfModel(const Model& model) {
  return sizeof(Model) + model.rows.size() * sizeof(ModelParam) + model.vdf.mesh.size() * sizeof(VdfMeshPoint);
}

std::size_t BytesOfDataset(const Dataset& dataset) { return sizeof(Dataset) + dataset.points.size() * sizeof(DataRow); }

// The lists of points and parameters are shared with the present state as long as that has the same, so that counting
// them as a step's own errs on the safe side.
std::size_t BytesOfFit(const FitState& fit) {
  std::size_t bytes = sizeof(FitState) + fit.list.terms.size() * sizeof(ChiSqTerm);
  bytes += fit.params.size() * (sizeof(FitParam) + fit.list.terms.size()) + fit.startValues.size() * sizeof(double);
  for (const FitSpectrum& spectrum : fit.spectra) {
    bytes += spectrum.x.size() * (sizeof(double) + sizeof(QuantitySet));
    for (const TermPoints& points : spectrum.terms) bytes += points.y.size() * (2 * sizeof(double) + 1);
  }
  return bytes;
}

// What is drawn of a graph is made anew when somebody looks.
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
  for (const int entry : touched.models) {
    step.saved.emplace_back(SavedModel{entry, tables.params.models[static_cast<std::size_t>(entry)]});
  }
  for (const int entry : touched.datasets) {
    step.saved.emplace_back(SavedDataset{entry, tables.datasets.slots[static_cast<std::size_t>(entry)]});
  }
  if (touched.expParams) step.saved.emplace_back(SavedExpParams{tables.params.ExpParams});
  if (touched.graphs) {
    SavedGraphs graphs;
    for (const Graph& graph : tables.graphs.slots) graphs.graphs.push_back(WithoutPicture(graph));
    step.saved.emplace_back(std::move(graphs));
  }
  if (touched.noise) step.saved.emplace_back(SavedNoise{tables.noise});
  step.saved.emplace_back(SavedRest{tables.fit, tables.params.nextModelNumber, tables.datasets.nextId,
                                    tables.graphs.nextNumber, tables.autoScreenUpdate, tables.graphReader,
                                    tables.fitFollows});
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
      swap(tables.params.models[static_cast<std::size_t>(piece.entry)], piece.model);
    } else if constexpr (std::is_same_v<Piece, SavedDataset>) {
      swap(tables.datasets.slots[static_cast<std::size_t>(piece.entry)], piece.dataset);
    } else if constexpr (std::is_same_v<Piece, SavedExpParams>) {
      swap(tables.params.ExpParams, piece.params);
    } else if constexpr (std::is_same_v<Piece, SavedGraphs>) {
      for (std::size_t i = 0; i < piece.graphs.size(); ++i) {
        Graph present = WithoutPicture(tables.graphs.slots[i]);
        tables.graphs.slots[i] = std::exchange(piece.graphs[i], std::move(present));
      }
    } else if constexpr (std::is_same_v<Piece, SavedNoise>) {
      swap(tables.noise, piece.noise);
    } else {
      swap(tables.fit, piece.fit);
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

// Parameters lie inside of models: back and forward they are swapped before and after them alike, since no operation
// touches a parameter and the whole model that holds it.
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
          return BytesOfModel(piece.model);
        } else if constexpr (std::is_same_v<Piece, SavedDataset>) {
          return BytesOfDataset(piece.dataset);
        } else if constexpr (std::is_same_v<Piece, SavedGraphs>) {
          std::size_t bytes = piece.graphs.size() * sizeof(Graph);
          for (const Graph& graph : piece.graphs) bytes += graph.curves.size() * sizeof(Curve);
          return bytes;
        } else if constexpr (std::is_same_v<Piece, SavedRest>) {
          return BytesOfFit(piece.fit);
        } else {
          return sizeof(Piece);
        }
      },
      saved);
}

}  // namespace kalvex
