// What a session tells those above it: that something has changed, and which operation was done.
#pragma once

#include <cstdint>
#include <string>

namespace kalvex {

enum class ChangeKind {
  kDatasetLoaded,   // id: the dataset's id; of these three `slot` is its slot
  kDatasetChanged,  // its values, range or Quantity
  kDatasetUnloaded,
  kModelCreated,  // id: the model's number
  kModelChanged,  // values, limits, flags, the variational dielectric function
  kModelRows,     // the number or the order of its rows
  kModelLoaded,   // the same, all of them from a file
  kModelClosed,
  kExpParams,
  kFitTerms,   // the list of terms has become another one
  kFitValues,  // the same terms, but their ChiSq, the points or the parameters have changed
  kFitOptions,
  kFitRun,        // id: the iteration that a run has accepted; 0: a run begins or ends
  kGraphCreated,  // id: the graph's number
  kGraphChanged,
  kGraphClosed,
  kSettings,    // auto update, the reader of graphs, whether the fit follows
  kEverything,  // a step of the history: any of the above
};

struct Change {
  ChangeKind kind = ChangeKind::kEverything;
  std::uint32_t id = 0;
  int slot = 0;
};

// What an operation works on, as bits.
enum Influence : unsigned {
  kOnNothing = 0,
  kOnDatasets = 1,
  kOnModels = 2,
  kOnExpParams = 4,
  kOnFit = 8,
  kOnGraphs = 16,
  kOnSettings = 32,
  kOnFiles = 64,
};

// One operation as a person knows it.
struct Operation {
  std::string label;      // "set Wo of row 2 of model 1"
  std::string statement;  // the macro statement that does the same; empty where there is none
  // Operations with the same mark, one right after the other, are one step of the history; empty: each is its own.
  std::string merge;
  unsigned influence = kOnNothing;
};

class SessionListener {
 public:
  virtual ~SessionListener() = default;
  // Called after the operation, when the tables are whole again.
  virtual void Changed(const Change& change) = 0;
  // Called once for each operation that did what it says.
  virtual void Performed(const Operation&) {}
};

}  // namespace kalvex
