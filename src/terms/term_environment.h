// The input of a calculator besides its parameters, and the tables that it builds on first use. Each EvalContext has
// one.
#pragma once

#include <memory>
#include <vector>

#include "datasets/dataset.h"

namespace kalvex {

struct TermTables;  // created by the first calculator that needs it, see term_tables.h

struct TermEnvironment {
  const DatasetTable* datasets = nullptr;
  bool dcFlag = false;  // Quantities are computed at zero frequency
  std::shared_ptr<TermTables> tables;
};

}  // namespace kalvex
