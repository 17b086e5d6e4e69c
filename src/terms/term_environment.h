// What a calculator may read beside its inputs, and the tables that it builds on first use. One in each EvalContext.
#pragma once

#include <memory>
#include <vector>

#include "datasets/dataset.h"

namespace kalvex {

struct TermTables;  // made by the calculator that needs it first, see term_tables.h

struct TermEnvironment {
  const DatasetTable* datasets = nullptr;
  bool dcFlag = false;  // Quantities are wanted at zero frequency
  std::shared_ptr<TermTables> tables;
};

}  // namespace kalvex
