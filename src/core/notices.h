// How a change reaches those who must hear of it. The tables below know nothing of graphs and windows: they send a
// notice, and the program decides at start who listens.
#pragma once

#include <cstdint>

namespace kalvex {

enum class GraphEvent : int {
  kDatasetUnloaded = 0,   // id: the dataset's id
  kDatasetChanged = 1,    // id: not used
  kModelClosed = 2,       // id: the model's number
  kModelRowsChanged = 3,  // id: the model's number
  kModelParamChanged = 4,
  kExpParamChanged = 5,
  kForcedUpdate = 6,  // id: -1, or the id of the dataset to which noise was added
  kReaderToggled = 7,
};

enum class FitNotice { kDatasetGone, kDatasetChanged, kModelGone, kModelParamsChanged, kExpParamsChanged, kRecompute };

struct Notices {
  void* owner = nullptr;
  void (*graphs)(void* owner, GraphEvent event, std::int64_t id) = nullptr;
  void (*fit)(void* owner, FitNotice notice, std::uint32_t id) = nullptr;  // sent on only while the fit window is open
};

inline void NotifyGraphs(const Notices& notices, GraphEvent event, std::int64_t id) {
  if (notices.graphs) notices.graphs(notices.owner, event, id);
}

inline void NotifyFit(const Notices& notices, FitNotice notice, std::uint32_t id = 0) {
  if (notices.fit) notices.fit(notices.owner, notice, id);
}

}  // namespace kalvex
