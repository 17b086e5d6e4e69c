// What every special model promises, tried on each member of the table from its row map alone.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "fit/fit_lists.h"
#include "fit/run_fit.h"
#include "models/eval_model.h"
#include "models/model_rows.h"
#include "models/model_table.h"
#include "models/types/describe.h"
#include "models/types/type_sample.h"
#include "models/types/types.h"
#include "support/difference_quotient.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

std::vector<const ModelType*> ComputedTypes() {
  std::vector<const ModelType*> types;
  for (const ModelType* const type : ModelTypeTable) {
    if (*type->page.sample) types.push_back(type);
  }
  return types;
}

class EveryType : public testing::TestWithParam<const ModelType*> {
 protected:
  const ModelType& type() { return *GetParam(); }
};
class EveryFittedType : public EveryType {};

std::string NameOfCase(const testing::TestParamInfo<const ModelType*>& info) {
  return "Code" + std::to_string(info.param->code);
}

std::vector<const ModelType*> FittedTypes() {
  std::vector<const ModelType*> types;
  for (const ModelType* const type : ComputedTypes()) {
    if (type->fitted) types.push_back(type);
  }
  return types;
}

INSTANTIATE_TEST_SUITE_P(Table, EveryType, testing::ValuesIn(ComputedTypes()), NameOfCase);
INSTANTIATE_TEST_SUITE_P(Table, EveryFittedType, testing::ValuesIn(FittedTypes()), NameOfCase);

TEST_P(EveryType, FillsItsQuantitiesWithNumbersAndTheOthersWithZero) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    TypeSample s(type(), seed);
    const auto filled = s.Filled();
    for (int q = 0; q < kQuantityCount; ++q) {
      const double value = s.Value(q, s.x);
      EXPECT_TRUE(std::isfinite(value)) << "seed " << seed << " Quantity " << q;
      // A multilayer clears from the first Quantity on only as long as they are wanted.
      if (type().code == 2 || std::find(filled.begin(), filled.end(), q) != filled.end()) continue;
      EXPECT_EQ(value, 0) << "seed " << seed << " Quantity " << q;
    }
  }
}

TEST_P(EveryType, WithAWrongNumberOfRowsLeavesTheQuantitiesAsTheyStood) {
  const RowRule& rule = type().map.rows;
  for (const int rows : {rule.least - 1, rule.least + 1, rule.most == kAnyNumber ? -1 : rule.most + 1}) {
    if (rows < 0 || rule.Admits(rows)) continue;
    TypeSample s(type(), 1);
    while (RowCount(s.model()) > rows) RemoveRow(&s.model(), RowCount(s.model()) - 1);
    while (RowCount(s.model()) < rows) InsertRow(&s.model(), RowCount(s.model()));
    for (Quantity& quantity : s.program.eval.quantities) quantity.wanted = 1, quantity.value = 77;
    EXPECT_EQ(EvalModel(s.program.eval, s.model(), s.x, true), rule.FailureOf(rows)) << rows;
    for (const Quantity& quantity : s.program.eval.quantities) EXPECT_EQ(quantity.value, 77);
  }
}

TEST_P(EveryType, WithAMissingPartnerLeavesTheQuantitiesAsTheyStood) {
  for (const RowCell& cell : type().map.head) {
    const bool optional = cell.use == CellUse::kOptional || cell.use == CellUse::kEvaluatedIf;
    const bool needed = cell.use == CellUse::kPartner || cell.use == CellUse::kReference ||
                        cell.use == CellUse::kEvaluated || cell.use == CellUse::kMeshPartner;
    if (!needed && !optional) continue;
    for (const double number : {optional ? 88.0 : 0.0, 1.5, 77.0, -1.0}) {
      TypeSample s(type(), 1);
      Cell(s.model(), cell.row, cell.column).value = number;
      for (Quantity& quantity : s.program.eval.quantities) quantity.wanted = 1, quantity.value = 77;
      EXPECT_EQ(EvalModel(s.program.eval, s.model(), s.x, true), -1) << cell.meaning << ' ' << number;
      for (const Quantity& quantity : s.program.eval.quantities) EXPECT_EQ(quantity.value, 77);
      if (!type().fitted) continue;
      EXPECT_EQ(EvalModelAfter(s.program.eval, s.model()), -1) << cell.meaning << ' ' << number;
    }
  }
}

TEST_P(EveryType, GivesTheSameForOneQuantityAsForAll) {
  TypeSample s(type(), 3);
  WantOnly(s.program.eval.quantities, static_cast<QuantitySet>((1u << kQuantityCount) - 1));
  ASSERT_EQ(EvalModel(s.program.eval, s.model(), s.x, true), 0);
  const QuantityTable all = s.program.eval.quantities;
  for (const int q : s.Filled()) EXPECT_EQ(s.Value(q, s.x), all[static_cast<std::size_t>(q)].value) << q;
}

TEST_P(EveryType, HasAPageThatNamesItsRowsAndResults) {
  EXPECT_STRNE(type().page.formula, "");
  EXPECT_STRNE(type().page.source, "");
  EXPECT_TRUE(type().material || !type().fills.empty() || type().code == 112);
  std::set<int> quantities;
  for (const SlotUse& slot : type().fills) {
    EXPECT_STRNE(slot.meaning, "") << slot.quantity;
    EXPECT_TRUE(quantities.insert(slot.quantity).second) << slot.quantity;
  }
  std::set<std::pair<int, int>> cells;
  for (const auto& map : {type().map.head, type().map.group}) {
    cells.clear();
    for (const RowCell& cell : map) {
      EXPECT_STRNE(cell.meaning, "");
      if (cell.use == CellUse::kExperimental) continue;
      EXPECT_TRUE(cells.insert({cell.row, cell.column}).second) << cell.meaning;
    }
  }
}

// Types that mark by rule more than a Quantity needs. 3, 4, 5, 14, 16: all results of a crystal count as dependent on
// all axes and angles, though s-light sees only one axis, and only some results the polariser. 9: a medium with a
// permeability marks by the weights of its Quantities, also where these are 0. 23: the rotation of the element that x
// turns counts as the others.
bool MarksMoreThanItNeeds(int code) {
  constexpr int kCodes[] = {3, 4, 5, 9, 14, 16, 23};
  return std::find(std::begin(kCodes), std::end(kCodes), code) != std::end(kCodes);
}

bool IsExperimental(TypeSample& s, const ModelParam* param) {
  const auto& block = s.program.params.ExpParams;
  return std::any_of(block.begin(), block.end(), [&](const ModelParam& member) { return &member == param; });
}

TEST_P(EveryFittedType, DerivativesAgreeWithRiddersQuotients) {
  std::set<std::string> marked, influential;
  for (unsigned seed = 1; seed <= 12; ++seed) {
    TypeSample s(type(), seed);
    for (const int q : s.Filled()) {
      std::set<ModelParam*> ofQuantity;
      for (const auto& free : s.Marked(q)) {
        ofQuantity.insert(free.param);
        marked.insert(free.name + " in Quantity " + std::to_string(q));
      }
      ASSERT_EQ(s.Differentiate(q), 0);
      const double value = std::fabs(s.program.eval.quantities[static_cast<std::size_t>(q)].value);
      for (const auto& free : s.FreeParams()) {
        const double slope = free.param->dQuantity[static_cast<std::size_t>(q)];
        const std::string where = free.name + " in Quantity " + std::to_string(q);
        const double start = free.param->value;
        const double scale = std::fmax(std::fabs(start), 1e-3);
        const SlopeEstimate estimate = RiddersSlope(
            [&](double v) {
              free.param->value = v;
              const double at = s.Value(q, s.x);
              free.param->value = start;
              return at;
            },
            start, 0.1 * scale);
        if (slope != 0) influential.insert(where);
        // A differential model takes the slopes by the experimental parameters from its reference.
        if (type().code == 1 && IsExperimental(s, free.param)) continue;
        if (ofQuantity.count(free.param) == 0) {
          if (type().code == 1) continue;  // its reference is held fixed on purpose
          EXPECT_NEAR(estimate.value * scale, 0, 1e-9 * value) << "not marked: " << where;
          continue;
        }
        EXPECT_NEAR(slope, estimate.value, 20 * estimate.error + 1e-9 * std::fabs(slope) + 1e-10 * value / scale)
            << "seed " << seed << ' ' << where << " at x = " << s.x;
      }
    }
  }
  if (MarksMoreThanItNeeds(type().code)) return;
  for (const std::string& name : marked) EXPECT_TRUE(influential.count(name)) << "marked without influence: " << name;
}

// A user holds what has no influence on the data: it would leave the fit without a direction.
void HoldWithoutInfluence(TypeSample& s, const std::vector<int>& quantities) {
  std::set<const ModelParam*> influential;
  for (int i = 0; i < 10; ++i) {
    s.x = s.type.page.from + (s.type.page.to - s.type.page.from) * (i + 0.5) / 10;
    for (const int q : quantities) {
      s.Differentiate(q);
      for (const auto& free : s.FreeParams()) {
        if (free.param->dQuantity[static_cast<std::size_t>(q)] != 0) influential.insert(free.param);
      }
    }
  }
  for (const auto& free : s.FreeParams()) free.param->adjustable = influential.count(free.param) != 0;
  // Nor does he fit all of a chain of models at once.
  constexpr std::size_t kMost = 12;
  const auto free = s.FreeParams();
  for (std::size_t k = kMost; k < free.size(); ++k) free[k].param->adjustable = 0;
}

// The data are the model's own values; the fit starts with every number 1 % away.
TEST_P(EveryFittedType, IsFittedBackFromPerturbedParameters) {
  constexpr int kPoints = 30;
  TypeSample s(type(), 2);
  FitState& fit = s.program.fit;
  auto filled = s.Filled();
  filled.resize(std::min<std::size_t>(filled.size(), 4));
  HoldWithoutInfluence(s, filled);
  int slot = 50;
  for (std::size_t k = 0; k < filled.size(); ++k) {
    Dataset& dataset = s.program.datasets.slots[static_cast<std::size_t>(slot)];
    dataset.id = static_cast<std::uint32_t>(1000 + slot);
    dataset.Quantity = filled[k];
    double largest = 0;
    for (int i = 0; i < kPoints; ++i) {
      const double at = type().page.from + (type().page.to - type().page.from) * (i + 0.5) / kPoints;
      dataset.points.push_back({at, s.Value(filled[k], at), 1});
      largest = std::fmax(largest, std::fabs(dataset.points.back().y));
    }
    if (largest == 0) largest = 1;
    for (DataRow& row : dataset.points) row.sigma = 1e-3 * largest;
    dataset.firstActive = 0;
    dataset.nActive = kPoints;
    dataset.lastActive = kPoints - 1;
    ChiSqTerm& term = InsertChiSqTerm(fit, fit.list, static_cast<int>(k));
    term.datasetId = dataset.id;
    term.modelId = s.model().number;
    ++slot;
  }
  for (ModelParam& param : s.program.params.ExpParams) param.adjustable = 0;
  RebuildFitPoints(fit, s.program.eval);
  RebuildFitParams(fit, s.program.eval);
  ASSERT_GT(fit.NumFitParams, 0);
  for (std::size_t i = 0; i < static_cast<std::size_t>(fit.NumFitParams); ++i) {
    fit.params[i].cell->value *= i % 2 == 0 ? 1.01 : 0.99;
  }
  ComputeChiSq(fit, s.program.eval);
  const double before = fit.TotalChiSq;
  fit.options.StopOnIterations = true;
  fit.options.MaxIterations = 200;
  fit.options.ReductionAmount = 1e-12;
  ASSERT_EQ(RunFit(fit, s.program.eval, s.program.platform, {}), 0);
  EXPECT_LT(fit.TotalChiSq, 1e-6 * before) << "from " << before << ", " << fit.report.stop;
}

TEST(TypeTable, HoldsTheCodesInOrderWithNamesOfAtMost49Letters) {
  EXPECT_EQ(std::size(ModelTypeTable), 106u);
  int last = 0;
  for (const ModelType* const type : ModelTypeTable) {
    EXPECT_GT(type->code, last);
    last = type->code;
    EXPECT_LE(std::string(type->name).size(), 49u);
    EXPECT_NE(type->evaluate, nullptr);
    EXPECT_NE(type->after, nullptr);
  }
  for (const int gap : {30, 59, 64, 65, 67, 68, 69}) EXPECT_EQ(TypeOfCode(gap), nullptr) << gap;
  EXPECT_EQ(last, 113);
  for (const auto& [a, b] : {std::pair(34, 35), std::pair(36, 37), std::pair(77, 78)}) {
    EXPECT_STREQ(TypeOfCode(a)->name, TypeOfCode(b)->name);
  }
}

TEST(TypeTable, LeavesAModelWithACodeOfNoTypePlain) {
  Program program;
  Model& model = *CreateModel(program.params);
  model.epsInf.value = -30;
  model.epsInf.adjustable = 0;
  WantOnly(program.eval.quantities, SetOf(kE1));
  ASSERT_EQ(EvalModel(program.eval, model, 100, false), 0);
  EXPECT_EQ(program.eval.quantities[kE1].value, -30);
  EXPECT_STREQ(TypeNameOf(program.eval, model), "Diel. function");
}

}  // namespace
}  // namespace kalvex
