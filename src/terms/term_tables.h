// The tables that calculators build on first use and keep between calls.
#pragma once

#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <optional>
#include <vector>

#include "terms/boson_coupling.h"
#include "terms/gap_table.h"
#include "terms/term_environment.h"

namespace kalvex {

// Mean of f(c + sqrt(2) S x) over a Gaussian of width S about c: the sum of weight times f at 121 points x from -3 to
// 3.
struct GaussianNode {
  double x;
  double weight;
};
using GaussianNodes = std::array<GaussianNode, 121>;

inline GaussianNodes MakeGaussianNodes() {
  GaussianNodes nodes;
  for (std::size_t k = 0; k < nodes.size(); ++k) {
    const double x = -3 + 0.05 * static_cast<double>(k);
    nodes[k] = {x, std::exp(-x * x) * 0.05 / std::sqrt(std::numbers::pi)};
  }
  return nodes;
}

struct TermTables {
  std::optional<GapTable> gap;
  std::optional<GaussianNodes> gaussian;
  std::vector<CouplingNodes> couplings;  // for the most recent datasets and mesh counts, the oldest first
};

inline TermTables& TablesOf(TermEnvironment& environment) {
  if (!environment.tables) environment.tables = std::make_shared<TermTables>();
  return *environment.tables;
}

// Copies the tables of another environment. The copy can grow independently.
inline void CopyTables(TermEnvironment& environment, const TermEnvironment& from) {
  environment.tables = from.tables ? std::make_shared<TermTables>(*from.tables) : nullptr;
}

inline const GapTable& GapTableOf(TermEnvironment& environment) {
  auto& gap = TablesOf(environment).gap;
  if (!gap) gap = MakeGapTable();
  return *gap;
}

inline const GaussianNodes& GaussianNodesOf(TermEnvironment& environment) {
  auto& nodes = TablesOf(environment).gaussian;
  if (!nodes) nodes = MakeGaussianNodes();
  return *nodes;
}

}  // namespace kalvex
