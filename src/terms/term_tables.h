// The tables that calculators build on first use and keep between calls, each a member of its own.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "terms/boson_coupling.h"
#include "terms/gap_table.h"
#include "terms/term_environment.h"

namespace kalvex {

struct TermTables {
  std::optional<GapTable> gap;
  std::vector<CouplingNodes> couplings;  // the last few datasets and mesh counts, the oldest first
};

inline TermTables& TablesOf(TermEnvironment& environment) {
  if (!environment.tables) environment.tables = std::make_shared<TermTables>();
  return *environment.tables;
}

inline const GapTable& GapTableOf(TermEnvironment& environment) {
  auto& gap = TablesOf(environment).gap;
  if (!gap) gap = MakeGapTable();
  return *gap;
}

}  // namespace kalvex
