// Steps back and forward. Before an operation the pieces of the tables that it touches are copied; a step back swaps
// the copies and the tables, and a step forward swaps them again. Nothing has to know how to undo itself.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <utility>
#include <variant>
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

// What an operation touches. The fit, the counters and the switches, which are small, are always among it.
struct Pieces {
  std::vector<ParamPlace> params;
  std::vector<int> models;    // entries of the model table
  std::vector<int> datasets;  // entries of the dataset table
  bool expParams = false;
  bool graphs = false;
  bool noise = false;

  Pieces& Model(int entry) { return models.push_back(entry), *this; }
  Pieces& Dataset(int entry) { return datasets.push_back(entry), *this; }
  Pieces& ExpParams() { return expParams = true, *this; }
  Pieces& Graphs() { return graphs = true, *this; }
  Pieces& Noise() { return noise = true, *this; }
};

class History {
 public:
  static constexpr std::size_t kUsualBound = std::size_t{256} << 20;  // bytes

  // Keeps the pieces as they are now, unless the operation goes on with the last step. Steps that were taken back are
  // forgotten.
  void Begin(const Operation& operation, const Pieces& touched, const SessionTables& tables);
  // The operation did nothing: what Begin kept is forgotten.
  void Abandon();
  // The operation is done. The oldest steps go until the rest is within the bound; a step above it is not kept at all.
  void End();
  // The next operation is a step of its own.
  void EndGesture() { mayMerge_ = false; }

  // False, with nothing done, where there is no such step.
  bool Back(SessionTables& tables);
  bool Forward(SessionTables& tables);

  // The steps that can be taken back, the last one at the end; and those that can be done again, the next one at the
  // end.
  std::vector<std::string> LabelsBack() const { return LabelsOf(back_); }
  std::vector<std::string> LabelsForward() const { return LabelsOf(forward_); }
  std::size_t Bytes() const { return bytes_; }
  std::size_t Bound() const { return bound_; }
  void SetBound(std::size_t bytes);

 private:
  struct SavedParams {
    std::vector<std::pair<ParamPlace, ModelParam>> params;
  };
  struct SavedModel {
    int entry;
    Model model;
  };
  struct SavedDataset {
    int entry;
    Dataset dataset;
  };
  struct SavedExpParams {
    std::array<ModelParam, kExpParamCount> params;
  };
  struct SavedGraphs {
    std::vector<Graph> graphs;  // without what is drawn
  };
  struct SavedNoise {
    NoiseGenerator noise;
  };
  // What belongs to every step.
  struct SavedRest {
    FitState fit;
    std::uint32_t nextModelNumber, nextDatasetId, nextGraphNumber;
    bool autoScreenUpdate, graphReader, fitFollows;
  };
  using Saved = std::variant<SavedParams, SavedModel, SavedDataset, SavedExpParams, SavedGraphs, SavedNoise, SavedRest>;
  struct Step {
    Operation operation;
    std::vector<Saved> saved;
    std::size_t bytes = 0;
  };

  static std::vector<std::string> LabelsOf(const std::deque<Step>& steps);
  static void Swap(Saved& saved, SessionTables& tables);
  static std::size_t BytesOf(const Saved& saved);
  void SwapAll(Step& step, SessionTables& tables);
  void HoldBound();

  std::deque<Step> back_, forward_;
  std::size_t bytes_ = 0;  // of all steps
  std::size_t bound_ = kUsualBound;
  bool mayMerge_ = false;
  bool begun_ = false;  // a step was added by the last Begin
};

}  // namespace kalvex
