#include "evaluation/stack_optics.h"

#include <algorithm>

#include "evaluation/quantity_formulas.h"
#include "evaluation/stack_formulas.h"

namespace kalvex {

void SetSingleNode(std::vector<ThicknessNode>& nodes, double thickness) { nodes.assign(1, {thickness, 1, 1, 0}); }

void SetAveragingNodes(std::vector<ThicknessNode>& nodes, double thickness, double spread) {
  if (spread == 0) return SetSingleNode(nodes, thickness);
  nodes.clear();
  for (const AveragingNode& node : kAveragingNodes) {
    const double u = 2 * node.x - 1, factor = u * spread + 1;
    nodes.push_back({std::max(thickness * factor, 0.0), node.g, factor, u * thickness});
  }
}

void AverageStack(Stack& stack, bool derivatives) {
  if (derivatives) {
    WalkStack<double, void, true, true>(stack);
  } else {
    WalkStack<double, void, false, true>(stack);
  }
}

}  // namespace kalvex
