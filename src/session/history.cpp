#include "session/history.h"

#include <algorithm>
#include <array>
#include <utility>

#include "graphs/graph_table.h"

namespace kalvex {
namespace {

class SavedParams : public SavedPiece {
 public:
  SavedParams(const std::vector<ParamPlace>& places, const ParamTables& tables) {
    params_.reserve(places.size());
    for (const ParamPlace& place : places) params_.emplace_back(place, ParamAt(tables, place));
  }
  void Swap(SessionTables& tables) override {
    for (auto& [place, param] : params_) std::swap(ParamAt(tables.params, place), param);
  }
  bool IsAsBefore(const SessionTables& tables) const override {
    return std::all_of(params_.begin(), params_.end(),
                       [&](const auto& saved) { return ParamAt(tables.params, saved.first) == saved.second; });
  }
  std::size_t Bytes() const override { return params_.size() * sizeof(params_.front()); }

 private:
  std::vector<std::pair<ParamPlace, ModelParam>> params_;
};

class SavedModel : public SavedPiece {
 public:
  SavedModel(std::size_t entry, const ParamTables& tables) : entry_(entry), model_(tables.models[entry]) {}
  void Swap(SessionTables& tables) override { std::swap(tables.params.models[entry_], model_); }
  // A notification alone, which resets `dirty`, is no change.
  bool IsAsBefore(const SessionTables& tables) const override {
    const Model& now = tables.params.models[entry_];
    return now.number == model_.number && now.name == model_.name && now.epsInf == model_.epsInf &&
           now.rows == model_.rows && now.vdf == model_.vdf;
  }
  std::size_t Bytes() const override {
    return sizeof(*this) + model_.rows.size() * sizeof(ModelParam) + model_.vdf.mesh.size() * sizeof(VdfMeshPoint);
  }

 private:
  std::size_t entry_;
  Model model_;
};

class SavedDataset : public SavedPiece {
 public:
  SavedDataset(std::size_t entry, const DatasetTable& table) : entry_(entry), dataset_(table.slots[entry]) {}
  void Swap(SessionTables& tables) override { std::swap(tables.datasets.slots[entry_], dataset_); }
  bool IsAsBefore(const SessionTables& tables) const override { return tables.datasets.slots[entry_] == dataset_; }
  std::size_t Bytes() const override { return sizeof(*this) + dataset_.points.size() * sizeof(DataRow); }

 private:
  std::size_t entry_;
  Dataset dataset_;
};

class SavedExpParams : public SavedPiece {
 public:
  explicit SavedExpParams(const ParamTables& tables) : params_(tables.ExpParams) {}
  void Swap(SessionTables& tables) override { std::swap(tables.params.ExpParams, params_); }
  bool IsAsBefore(const SessionTables& tables) const override { return tables.params.ExpParams == params_; }
  std::size_t Bytes() const override { return sizeof(*this); }

 private:
  std::array<ModelParam, kExpParamCount> params_;
};

// The existing graphs with their slots. Their strokes are not stored: they are rebuilt when a graph is painted.
class SavedGraphs : public SavedPiece {
 public:
  explicit SavedGraphs(const GraphTable& table) {
    for (std::size_t slot = 0; slot < table.slots.size(); ++slot) {
      if (table.slots[slot].number != 0) graphs_.emplace_back(slot, WithoutPicture(table.slots[slot]));
    }
  }
  void Swap(SessionTables& tables) override {
    SavedGraphs present(tables.graphs);
    for (const auto& [slot, graph] : present.graphs_) tables.graphs.slots[slot] = Graph();
    for (auto& [slot, graph] : graphs_) tables.graphs.slots[slot] = std::move(graph);
    graphs_ = std::move(present.graphs_);
  }
  bool IsAsBefore(const SessionTables& tables) const override {
    const auto& slots = tables.graphs.slots;
    const auto count = std::count_if(slots.begin(), slots.end(), [](const Graph& graph) { return graph.number != 0; });
    return graphs_.size() == static_cast<std::size_t>(count) &&
           std::all_of(graphs_.begin(), graphs_.end(),
                       [&](const auto& saved) { return LooksTheSame(saved.second, slots[saved.first]); });
  }
  std::size_t Bytes() const override {
    std::size_t bytes = graphs_.size() * sizeof(graphs_.front());
    for (const auto& [slot, graph] : graphs_) bytes += graph.curves.size() * sizeof(Curve);
    return bytes;
  }

 private:
  static Graph WithoutPicture(const Graph& graph) {
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

  std::vector<std::pair<std::size_t, Graph>> graphs_;
};

class SavedNoise : public SavedPiece {
 public:
  explicit SavedNoise(const NoiseGenerator& noise) : noise_(noise) {}
  void Swap(SessionTables& tables) override { std::swap(tables.noise, noise_); }
  bool IsAsBefore(const SessionTables& tables) const override { return tables.noise == noise_; }
  std::size_t Bytes() const override { return sizeof(*this); }

 private:
  NoiseGenerator noise_;
};

class SavedFit : public SavedPiece {
 public:
  // touched: by the operation itself; otherwise the fit only follows the other pieces.
  SavedFit(const FitState& fit, bool touched) : fit_(fit), touched_(touched) {}
  void Swap(SessionTables& tables) override { std::swap(tables.fit, fit_); }
  bool IsAsBefore(const SessionTables& tables) const override {
    return touched_ ? tables.fit == fit_ : HasSameTerms(tables.fit);
  }
  // The present state may share the lists of points and parameters with a step. They are counted for the step in any
  // case, so the bound is safe.
  std::size_t Bytes() const override {
    std::size_t bytes = sizeof(*this);
    for (const ChiSqTerm& term : fit_.list.terms) bytes += sizeof(ChiSqTerm) + term.params.Get().size() * sizeof(int);
    bytes +=
        fit_.params.size() * sizeof(FitParam) + (fit_.startValues.size() + fit_.startErrors.size()) * sizeof(double);
    for (const FitSpectrum& spectrum : fit_.spectra) {
      bytes += spectrum.x.size() * (sizeof(double) + sizeof(QuantitySet));
      for (const TermPoints& points : spectrum.terms) bytes += points.y.size() * (2 * sizeof(double) + 1);
    }
    return bytes;
  }

 private:
  // What a person has put into the fit. The rest of a fit that follows changes is computed again at each operation.
  bool HasSameTerms(const FitState& now) const {
    const auto isSame = [](const ChiSqTerm& a, const ChiSqTerm& b) {
      return a.id == b.id && a.datasetId == b.datasetId && a.modelId == b.modelId && a.weight == b.weight;
    };
    const auto &mine = fit_.list.terms, &present = now.list.terms;
    return std::equal(mine.begin(), mine.end(), present.begin(), present.end(), isSame);
  }

  FitState fit_;
  bool touched_;
};

}  // namespace

Pieces PiecesOfAllModels(const ParamTables& tables) {
  Pieces pieces;
  for (std::size_t entry = 0; entry < tables.models.size(); ++entry) {
    if (tables.models[entry].number != 0) pieces.models.push_back(entry);
  }
  return pieces;
}

History::SavedRest History::RestOf(const SessionTables& tables) {
  return {tables.params.nextModelNumber, tables.datasets.nextId, tables.graphs.nextNumber,
          tables.autoScreenUpdate,       tables.graphReader,     tables.fitFollows};
}

void History::SetRest(const SavedRest& rest, SessionTables& tables) {
  tables.params.nextModelNumber = rest.nextModelNumber;
  tables.datasets.nextId = rest.nextDatasetId;
  tables.graphs.nextNumber = rest.nextGraphNumber;
  tables.autoScreenUpdate = rest.autoScreenUpdate;
  tables.graphReader = rest.graphReader;
  tables.fitFollows = rest.fitFollows;
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
  if (bound_ == 0) return;
  const bool merges =
      mayMerge_ && !operation.merge.empty() && !back_.empty() && back_.back().operation.merge == operation.merge;
  mayMerge_ = true;
  if (merges) {
    open_.push_back(std::move(back_.back()));
    back_.pop_back();
    open_.back().operation = operation;
    return;
  }
  Step step{operation, {}, RestOf(tables), open_.empty() ? DirtyOf(tables.params) : open_.front().dirty};
  auto& saved = step.saved;
  if (!touched.params.empty()) saved.push_back(std::make_unique<SavedParams>(touched.params, tables.params));
  for (const std::size_t entry : touched.models) saved.push_back(std::make_unique<SavedModel>(entry, tables.params));
  for (const std::size_t entry : touched.datasets) {
    saved.push_back(std::make_unique<SavedDataset>(entry, tables.datasets));
  }
  if (touched.expParams) saved.push_back(std::make_unique<SavedExpParams>(tables.params));
  if (touched.graphs) saved.push_back(std::make_unique<SavedGraphs>(tables.graphs));
  if (touched.noise) saved.push_back(std::make_unique<SavedNoise>(tables.noise));
  // During a run only graphs change. The state of the run belongs to the step of the fit.
  if (touched.fit || (tables.fitFollows && !tables.fit.FitRunning)) {
    saved.push_back(std::make_unique<SavedFit>(tables.fit, touched.fit));
  }
  step.bytes = BytesOf(step);
  bytes_ += step.bytes;
  open_.push_back(std::move(step));
}

bool History::End(const SessionTables& tables) {
  if (bound_ == 0) return true;
  Step step = std::move(open_.back());
  open_.pop_back();
  // The last pieces of a step are small, and an operation on large pieces usually changes one of them. So the large
  // pieces are rarely compared to their end.
  const bool asBefore =
      step.rest == RestOf(tables) &&
      std::all_of(step.saved.rbegin(), step.saved.rend(), [&](const auto& saved) { return saved->IsAsBefore(tables); });
  if (asBefore) {
    bytes_ -= step.bytes;
    mayMerge_ = false;
    return false;
  }
  DropForward();
  // This step comes before that of the operation around it, which therefore starts from its graphs.
  for (Step& outer : open_) {
    outer.rest.nextGraphNumber = tables.graphs.nextNumber;
    outer.rest.autoScreenUpdate = tables.autoScreenUpdate;
    outer.rest.graphReader = tables.graphReader;
  }
  back_.push_back(std::move(step));
  HoldBound();
  return true;
}

bool History::Back(SessionTables& tables) {
  if (back_.empty()) return false;
  Swap(back_.back(), tables);
  forward_.push_back(std::move(back_.back()));
  back_.pop_back();
  mayMerge_ = false;
  return true;
}

bool History::Forward(SessionTables& tables) {
  if (forward_.empty()) return false;
  Swap(forward_.back(), tables);
  back_.push_back(std::move(forward_.back()));
  forward_.pop_back();
  mayMerge_ = false;
  return true;
}

void History::SetBound(std::size_t bytes) {
  bound_ = bytes;
  if (bytes == 0) DropForward();
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

// Back and forward swap the pieces in the same order. That is correct although parameters are parts of models, because
// no operation saves both a parameter and its whole model.
void History::Swap(Step& step, SessionTables& tables) {
  const SavedRest rest = RestOf(tables);
  const Dirty dirty = DirtyOf(tables.params);
  for (const auto& saved : step.saved) saved->Swap(tables);
  SetRest(std::exchange(step.rest, rest), tables);
  SetDirty(std::exchange(step.dirty, dirty), tables.params);
  bytes_ -= step.bytes;
  step.bytes = BytesOf(step);
  bytes_ += step.bytes;
}

std::size_t History::BytesOf(const Step& step) {
  std::size_t bytes = sizeof(Step);
  for (const auto& saved : step.saved) bytes += saved->Bytes();
  return bytes;
}

}  // namespace kalvex
