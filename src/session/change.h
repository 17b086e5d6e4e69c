// What a session reports to its listeners: the changes of its tables, and the operations that were done.
#pragma once

#include <cstdint>
#include <string>

namespace kalvex {

enum class ChangeKind {
  kDatasetLoaded,   // id: the dataset's id; slot: its slot, also for the next two
  kDatasetChanged,  // its values, range or Quantity
  kDatasetUnloaded,
  kModelCreated,  // id: the model's number
  kModelChanged,  // values, limits, flags, the variational dielectric function
  kModelRows,     // the number or the order of its rows
  kModelLoaded,   // the same, all of them from a file
  kModelClosed,
  kExpParams,
  kFitTerms,   // terms were added, removed or replaced
  kFitValues,  // same terms, but their ChiSq, the points or the parameters changed
  kFitOptions,
  kFitRun,        // id: the accepted iteration of a run; 0: a run begins or ends
  kGraphCreated,  // id: the graph's number
  kGraphChanged,
  kGraphClosed,
  kSettings,    // auto update, the reader of graphs, FitFollows
  kEverything,  // a step of the history; any of the above may have changed
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

// One operation with its description for a person.
struct Operation {
  std::string label;      // "set Wo of row 2 of model 1"
  std::string statement;  // the macro statements that do the same, one a line; empty if there are none
  // Consecutive operations with the same mark are one step of the history. If it is empty, the operation is a step of
  // its own.
  std::string merge;
  unsigned influence = kOnNothing;
};

class SessionListener {
 public:
  virtual ~SessionListener() = default;
  // Called after the operation, when all tables are consistent.
  virtual void Changed(const Change& change) = 0;
  // Called once for each operation that succeeded, or failed after it changed something.
  virtual void Performed(const Operation&) {}
};

}  // namespace kalvex
