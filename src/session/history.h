// Undo and redo. Before an operation, the pieces of the tables that it changes are copied. A step back swaps the copies
// and the tables; a step forward swaps them again. So no operation needs an inverse. After the operation the copies are
// compared with the tables: an operation that changed nothing is not a step.
#pragma once

#include <bitset>
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "core/noise.h"
#include "datasets/dataset.h"
#include "fit/fit_state.h"
#include "graphs/graph.h"
#include "records/model.h"
#include "records/param_place.h"
#include "session/change.h"

namespace kalvex {

struct SessionTables {
  DatasetTable datasets;
  ParamTables params;
  FitState fit;
  GraphTable graphs;
  NoiseGenerator noise;
  bool autoScreenUpdate = true;
  bool graphReader = false;
  bool fitFollows = false;
};

// The pieces of the tables that an operation changes. The counters and switches are small and always included. The
// state of the fit is included while the fit follows changes.
struct Pieces {
  std::vector<ParamPlace> params;
  std::vector<std::size_t> models;    // entries of the model table
  std::vector<std::size_t> datasets;  // entries of the dataset table
  bool expParams = false;
  bool graphs = false;
  bool noise = false;
  bool fit = false;

  Pieces& Model(int entry) { return models.push_back(static_cast<std::size_t>(entry)), *this; }
  Pieces& Dataset(int entry) { return datasets.push_back(static_cast<std::size_t>(entry)), *this; }
  Pieces& ExpParams() { return expParams = true, *this; }
  Pieces& Graphs() { return graphs = true, *this; }
  Pieces& Noise() { return noise = true, *this; }
  Pieces& Fit() { return fit = true, *this; }
};

// All rows, meshes and epsInf of all models.
Pieces PiecesOfAllModels(const ParamTables& tables);

// A piece of the tables as it was. The kinds of pieces are in history.cpp.
class SavedPiece {
 public:
  virtual ~SavedPiece() = default;
  // Exchanges the piece and its copy.
  virtual void Swap(SessionTables& tables) = 0;
  virtual bool IsAsBefore(const SessionTables& tables) const = 0;
  virtual std::size_t Bytes() const = 0;
};

class History {
 public:
  static constexpr std::size_t kUsualBound = std::size_t{256} << 20;  // bytes

  // Copies the pieces in their present state, unless the operation continues the last step.
  void Begin(const Operation& operation, const Pieces& touched, const SessionTables& tables);
  // Ends the operation. If all pieces are as before the step, deletes the step and returns false. Otherwise deletes the
  // steps that could be redone, then the oldest steps until the rest is within the bound. A step that is larger than
  // the bound is deleted too. With a bound of 0 nothing is copied, and every operation counts as a change.
  bool End(const SessionTables& tables);
  // The next operation is a step of its own.
  void EndGesture() { mayMerge_ = false; }

  // False, and changes nothing, if there is no such step.
  bool Back(SessionTables& tables);
  bool Forward(SessionTables& tables);

  // The steps that can be undone, the last one at the end; and the steps that can be redone, the next one at the end.
  std::vector<std::string> LabelsBack() const { return LabelsOf(back_); }
  std::vector<std::string> LabelsForward() const { return LabelsOf(forward_); }
  std::size_t Bytes() const { return bytes_; }
  std::size_t Bound() const { return bound_; }
  void SetBound(std::size_t bytes);  // between two operations

 private:
  // The small tables that every step contains.
  struct SavedRest {
    std::uint32_t nextModelNumber, nextDatasetId, nextGraphNumber;
    bool autoScreenUpdate, graphReader, fitFollows;
    bool operator==(const SavedRest&) const = default;
  };
  using Dirty = std::bitset<kMaxModels + 1>;  // which models are dirty, and the experimental parameters
  struct Step {
    Operation operation;
    std::vector<std::unique_ptr<SavedPiece>> saved;
    SavedRest rest;
    Dirty dirty;
    std::size_t bytes = 0;
  };

  static std::vector<std::string> LabelsOf(const std::deque<Step>& steps);
  static SavedRest RestOf(const SessionTables& tables);
  static void SetRest(const SavedRest& rest, SessionTables& tables);
  static Dirty DirtyOf(const ParamTables& tables);
  static void SetDirty(const Dirty& dirty, ParamTables& tables);
  static std::size_t BytesOf(const Step& step);
  void Swap(Step& step, SessionTables& tables);
  void DropForward();
  void HoldBound();

  std::deque<Step> back_, forward_;
  std::vector<Step> open_;  // operations that have begun: a fit, and in it one on graphs
  std::size_t bytes_ = 0;   // the sum over all steps
  std::size_t bound_ = kUsualBound;
  bool mayMerge_ = false;
};

}  // namespace kalvex
