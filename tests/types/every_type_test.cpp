// Properties of every special model, tested for each type of the table. The samples come from the row maps.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <tuple>

#include "evaluation/eval_model.h"
#include "fit/fit_lists.h"
#include "fit/run_fit.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "support/difference_quotient.h"
#include "support/scratch_folder.h"
#include "support/tolerances.h"
#include "types/describe.h"
#include "types/type_sample.h"
#include "types/types.h"

namespace kalvex {
namespace {

std::vector<const ModelType*> AllTypes() { return {std::begin(ModelTypeTable), std::end(ModelTypeTable)}; }

class EveryType : public testing::TestWithParam<const ModelType*> {
 protected:
  const ModelType& type() { return *GetParam(); }

 private:
  // Some types write files into the current directory.
  ScratchFolder folder_;
  InFolder inside_{folder_.Name()};
};
class EveryFittedType : public EveryType {};

std::string NameOfCase(const testing::TestParamInfo<const ModelType*>& info) {
  return "Code" + std::to_string(info.param->code);
}

std::vector<const ModelType*> FittedTypes() {
  std::vector<const ModelType*> types;
  for (const ModelType* const type : AllTypes()) {
    if (type->fitted) types.push_back(type);
  }
  return types;
}

INSTANTIATE_TEST_SUITE_P(Table, EveryType, testing::ValuesIn(AllTypes()), NameOfCase);
INSTANTIATE_TEST_SUITE_P(Table, EveryFittedType, testing::ValuesIn(FittedTypes()), NameOfCase);

TEST_P(EveryType, FillsItsQuantitiesWithNumbersAndTheOthersWithZero) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    TypeSample s(type(), seed);
    const auto filled = s.Filled();
    for (const Quantity q : kEveryQuantity) {
      const double value = s.Value(q, s.x);
      EXPECT_TRUE(std::isfinite(value)) << "seed " << seed << " Quantity " << q;
      // Type 2 sets only the Quantities before the first one that is not wanted to 0.
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
    while (RowCount(s.model()) > rows) RemoveRow(s.model(), RowCount(s.model()) - 1);
    while (RowCount(s.model()) < rows) InsertRow(s.model(), RowCount(s.model()));
    for (QuantityResult& quantity : s.program.eval.quantities) quantity.wanted = 1, quantity.value = 77;
    EXPECT_EQ(EvalModel(s.program.eval, s.model(), s.x, true), rule.FailureOf(rows)) << rows;
    for (const QuantityResult& quantity : s.program.eval.quantities) EXPECT_EQ(quantity.value, 77);
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
      for (QuantityResult& quantity : s.program.eval.quantities) quantity.wanted = 1, quantity.value = 77;
      EXPECT_EQ(EvalModel(s.program.eval, s.model(), s.x, true), -1) << cell.meaning << ' ' << number;
      for (const QuantityResult& quantity : s.program.eval.quantities) EXPECT_EQ(quantity.value, 77);
      if (!type().fitted) continue;
      EXPECT_EQ(EvalModelAfter(s.program.eval, s.model()), -1) << cell.meaning << ' ' << number;
    }
  }
}

TEST_P(EveryType, GivesTheSameForOneQuantityAsForAll) {
  TypeSample s(type(), 3);
  WantOnly(s.program.eval.quantities, kEveryQuantity);
  ASSERT_EQ(EvalModel(s.program.eval, s.model(), s.x, true), 0);
  const QuantityTable all = s.program.eval.quantities;
  for (const Quantity q : s.Filled()) EXPECT_EQ(s.Value(q, s.x), all[q].value) << q;
}

// Changes a number or setting of a model of the sample.
void Change(TypeSample& s, std::size_t place) {
  for (Model& model : s.program.params.models) {
    if (model.number == 0) continue;
    if (place < model.rows.size()) {
      ModelParam& param = model.rows[place];
      param.value = param.adjustable ? 1.01 * param.value : param.value + 1;
      return;
    }
    place -= model.rows.size();
  }
}

// Results that are cached between frequencies depend on the numbers of the rows.
TEST_P(EveryType, KeepsNothingOfNumbersThatHaveChanged) {
  TypeSample kept(type(), 1);
  std::size_t places = 0;
  for (const Model& model : kept.program.params.models) places += model.number != 0 ? model.rows.size() : 0;
  for (std::size_t place = 0; place < places; ++place) {
    TypeSample before(type(), 1), fresh(type(), 1);
    for (const Quantity q : before.Filled()) before.Value(q, before.x);
    Change(before, place);
    Change(fresh, place);
    for (const Quantity q : before.Filled()) {
      const double value = fresh.Value(q, fresh.x), again = before.Value(q, before.x);
      if (std::isnan(value) && std::isnan(again)) continue;
      EXPECT_EQ(again, value) << "Quantity " << q << ", number " << place;
    }
  }
}

// Results that are undefined: a ratio of the rotating analyser without reflected light, and a dipole at height 0.
bool HasNoValue(const ModelType& type, Quantity quantity, const std::string& edge) {
  const int code = type.code;
  if (code == 3 || code == 5 || code == 14) return quantity == kS2 && edge == "vacuum";
  const bool tip = code == 80 || code == 83 || code == 105 || code == 107 || code == 110;
  return tip && edge == "row 3 column 1 = 0";
}

void ExpectFinite(TypeSample& s, const std::string& edge) {
  for (const Quantity q : kEveryQuantity) {
    if (s.Differentiate(q) != 0 || HasNoValue(s.type, q, edge)) continue;
    EXPECT_TRUE(std::isfinite(s.program.eval.quantities[q].value)) << edge << ", Quantity " << q;
    for (const auto& free : s.FreeParams()) {
      EXPECT_TRUE(std::isfinite(free.param->savedSlopes.dQuantity[q]))
          << edge << ", Quantity " << q << " by " << free.name;
    }
  }
}

// A fit must be able to pass such a point: one NaN would end it.
TEST_P(EveryType, GivesNumbersAtTheEdgesOfItsParameters) {
  const ScratchFolder folder;
  const InFolder here(folder.Name());  // at zero field type 93 writes files
  for (const double x : {0.0, -100.0, 1e8}) {
    TypeSample s(type(), 1);
    s.x = x;
    ExpectFinite(s, "x = " + std::to_string(x));
  }
  const int rows = RowCount(TypeSample(type(), 1).model());
  for (int place = 0; place < rows * kColumns; ++place) {
    const int row = place / kColumns, column = place % kColumns;
    for (const double factor : {0.0, -1.0}) {
      TypeSample s(type(), 1);
      ModelParam& param = Cell(s.model(), row, column);
      if (!param.adjustable) break;
      param.value *= factor;
      ExpectFinite(s, "row " + std::to_string(row + 1) + " column " + std::to_string(column) +
                          (factor == 0 ? " = 0" : " negative"));
    }
  }
}

TEST_P(EveryType, GivesNumbersForMediaAtTheirEdges) {
  struct Edge {
    const char* name;
    double epsInf, Wo, Wp, G;
  };
  for (const Edge& edge :
       {Edge{"vacuum", 1, 100, 0, 10}, Edge{"permittivity 0", 0, 100, 0, 10}, Edge{"mirror", 1e20, 100, 0, 10},
        Edge{"opaque metal", 4, 0, 1e5, 100}, Edge{"gain", 4, 150, 500, -30}, Edge{"without loss", 4, 150, 300, 0}}) {
    TypeSample s(type(), 1);
    for (Model& medium : s.program.params.models) {
      if (medium.number == 0 || medium.epsInf.value < 0) continue;
      medium.epsInf.value = edge.epsInf;
      Cell(medium, 0, Wo).value = edge.Wo;
      Cell(medium, 0, Wp).value = edge.Wp;
      Cell(medium, 0, G).value = edge.G;
    }
    ExpectFinite(s, edge.name);
  }
}

TEST_P(EveryType, HasAPageThatNamesItsRowsAndResults) {
  EXPECT_STRNE(type().page.sample, "");
  EXPECT_STRNE(type().page.formula, "");
  EXPECT_STRNE(type().page.source, "");
  EXPECT_TRUE(type().material || !type().fills.empty() || type().code == 112);
  EXPECT_LE(type().map.head.size() + type().map.group.size(), 64u) << "InputBits has a bit for each cell";
  std::set<Quantity> quantities;
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

// Types whose rules mark more parameters than a Quantity depends on. 3, 4, 5, 14, 16: all results of a crystal count as
// dependent on all axes and angles, although s-light depends on one axis and only some results on the polariser. 9: a
// medium with a permeability marks by the weights of its Quantities, also if they are 0. 23: the rotation of the
// element that x turns is marked like the others.
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
    for (const Quantity q : s.Filled()) {
      std::set<ModelParam*> ofQuantity;
      for (const auto& free : s.Marked(q)) {
        ofQuantity.insert(free.param);
        marked.insert(free.name + " in Quantity " + NamesOf(q).shortName);
      }
      ASSERT_EQ(s.Differentiate(q), 0);
      const double value = std::fabs(s.program.eval.quantities[q].value);
      for (const auto& free : s.FreeParams()) {
        const double slope = free.param->savedSlopes.dQuantity[q];
        const std::string where = free.name + " in Quantity " + NamesOf(q).shortName;
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
          if (type().code == 1) continue;  // its reference is held fixed
          EXPECT_NEAR(estimate.value * scale, 0, kSlopeOfFormula * value) << "not marked: " << where;
          continue;
        }
        constexpr double kSteadiness = 1e-10;  // of the value, where it hardly depends on the parameter
        EXPECT_NEAR(slope, estimate.value,
                    kRidders * estimate.error + kSlopeOfFormula * std::fabs(slope) + kSteadiness * value / scale)
            << "seed " << seed << ' ' << where << " at x = " << s.x;
      }
    }
  }
  if (MarksMoreThanItNeeds(type().code)) return;
  for (const std::string& name : marked) EXPECT_TRUE(influential.count(name)) << "marked without influence: " << name;
}

// Holds parameters without influence on the data, as a user must: with them the matrix of the fit is singular.
void HoldWithoutInfluence(TypeSample& s, const std::vector<Quantity>& quantities) {
  std::set<const ModelParam*> influential;
  for (int i = 0; i < 10; ++i) {
    s.x = s.type.page.from + (s.type.page.to - s.type.page.from) * (i + 0.5) / 10;
    for (const Quantity q : quantities) {
      s.Differentiate(q);
      for (const auto& free : s.FreeParams()) {
        if (free.param->savedSlopes.dQuantity[q] != 0) influential.insert(free.param);
      }
    }
  }
  for (const auto& free : s.FreeParams()) free.param->adjustable = influential.count(free.param) != 0;
  // A user does not fit all parameters of a chain of models at once either.
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
  RebuildFitParams(fit, s.program.params, s.program.eval);
  ASSERT_GT(fit.NumFitParams, 0);
  for (std::size_t i = 0; i < fit.params.size(); ++i) {
    ParamAt(s.program.params, fit.params[i].place).value *= i % 2 == 0 ? 1.01 : 0.99;
  }
  ComputeChiSq(fit, s.program.eval);
  const double before = fit.TotalChiSq;
  fit.options.StopOnIterations = true;
  fit.options.MaxIterations = 200;
  fit.options.ReductionAmount = 1e-12;
  FitObserver silent;
  ASSERT_TRUE(RunFit(fit, s.program.params, s.program.eval, s.program.platform, silent).Ok());
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

// The table on which users' files rely: name, number of rows, and whether parameters can be fitted. Type 23 has one row
// and four for each element; stacks with a head row need at least one layer.
struct KnownType {
  int code;
  const char* name;
  RowRule rows;
  bool fitted;
};

TEST(TypeTable, HoldsNamesAndNumbersOfRowsAsUsersKnowThem) {
  constexpr KnownType kKnown[] = {
      {1, "Differential model", AtLeast(2, 0), true},
      {2, "Multilayer sample", AtLeast(0), true},
      {3, "Orthorhombic sample", Exactly(3), true},
      {4, "Diff.-ortho. sample", Exactly(3), true},
      {5, "Ortho. - 2 layers", Exactly(6), true},
      {6, "Extended Drude", Exactly(1), true},
      {7, "Bilayer-local field", Exactly(4), false},
      {8, "Serial resistor", Exactly(2), false},
      {9, "Epsilon+Mu", Exactly(1), true},
      {10, "Spectral Weight", Exactly(1), true},
      {11, "Universal omega/T", Exactly(2), true},
      {12, "EPI (adjustable a2F)", Exactly(3), true},
      {13, "Plate", AtLeast(3), true},
      {14, "Film-substrate ellips", Exactly(6), true},
      {15, "EMA - powder", Exactly(1), false},
      {16, "Ortho-tilted", Exactly(3), true},
      {17, "Refl. sample in medium", Exactly(1), true},
      {18, "Magn. film - substr.", Exactly(2), true},
      {19, "Miscut Velmont", Exactly(2), true},
      {20, "Time-domain", Exactly(4), true},
      {21, "Thin sample on mirror", AtLeast(2), true},
      {22, "Time-domain - 2", Exactly(4), true},
      {23, "Ellipsometer", RowRule{5, kAnyNumber, 4, -1}, true},
      {24, "TP-thermo1", AtLeast(3), true},
      {25, "RXD (Sorvald)", InGroups(0, 2), true},
      {26, "STM (Tarneck)", Exactly(8), true},
      {27, "STM (band structure)", AtLeast(4), false},
      {28, "Diff. model (general)", Between(1, 2, 0), true},
      {29, "Faraday", AtLeast(0), false},
      {31, "Bands+Cond Bilayer", AtLeast(7), false},
      {32, "Multilayer sample - 2", AtLeast(2), true},
      {33, "Film-Subst, no Fab-Per", AtLeast(0), true},
      {34, "DF bilayer", Exactly(9), true},
      {35, "DF bilayer", AtLeast(3), true},
      {36, "DF bilayer - 2", AtLeast(9), true},
      {37, "DF bilayer - 2", AtLeast(3), true},
      {38, "DF bilayer + phonon", AtLeast(9), true},
      {39, "Fano", Exactly(2), false},
      {40, "EMA - 2 components", Exactly(2), false},
      {41, "Graphene-magnetooptics", AtLeast(4), true},
      {42, "Fano-original", AtLeast(2), true},
      {43, "Lorentz-test", Exactly(2), false},
      {44, "Vesk-Faraday", AtLeast(0), true},
      {45, "Magneto-Drude", AtLeast(0), true},
      {46, "Fano2-original", AtLeast(4), true},
      {47, "2DEG - Faraday", AtLeast(3), false},
      {48, "Magnetooptics", AtLeast(4), true},
      {49, "Magnetooptics-eps/sig", AtLeast(0), true},
      {50, "Magnetooptics-ref/tran", Exactly(3), true},
      {51, "Time-domain - eps/mu", Exactly(4), true},
      {52, "Graphene-circular", Exactly(6), false},
      {53, "Voigt-DL", Exactly(1), true},
      {54, "Oskel-phase", AtLeast(0), true},
      {55, "Graphite-magnetooptics", Exactly(9), true},
      {56, "Graphite-magnetoopt.-2", Exactly(1), false},
      {57, "Renvik-Dalmor model", Exactly(2), true},
      {58, "Intrinsic Kerr", Exactly(2), false},
      {60, "Graphite-magnetoopt.-3", AtLeast(0), true},
      {61, "Graphite-magnetoopt.-4", AtLeast(0), false},
      {62, "2L graph. - magn.opt.", Exactly(9), true},
      {63, "2L graph. - bands", Exactly(1), false},
      {66, "DF trilayer", AtLeast(0), true},
      {70, "Magnetoplasmon stripes", AtLeast(0), false},
      {71, "Like 33, better psidel", AtLeast(0), true},
      {72, "SPP", Exactly(1), false},
      {73, "Rp(q,w) - near field", Exactly(2), false},
      {74, "Bismuth-magnetoopt", Exactly(10), true},
      {75, "Bismuth-bands", Exactly(1), false},
      {76, "Graphene-ribbons", AtLeast(5), false},
      {77, "Rp(q,w) anis. substr", Exactly(3), false},
      {78, "Rp(q,w) anis. substr", Exactly(2), false},
      {79, "Faraday_check1", Exactly(3), false},
      {80, "sSNOM", AtLeast(5), false},
      {81, "Ratio for -33", Exactly(3), true},
      {82, "Gapped bilayer - Kerr", Exactly(5), false},
      {83, "sSNOM-2", Exactly(7), false},
      {84, "Graphene-EMA", Exactly(4), false},
      {85, "Complex waveplates", AtLeast(3), false},
      {86, "Graphene-cavity", Exactly(4), true},
      {87, "Model1 minus Model2", Exactly(1), false},
      {88, "R and T in pressure", Exactly(2), true},
      {89, "Magneto-optics-dichro", Exactly(2), false},
      {90, "Photocurrent", AtLeast(3), true},
      {91, "Time-domain - 3", Exactly(4), true},
      {92, "Multilayer - 3", AtLeast(2), true},
      {93, "Weyl-Kubo", AtLeast(6), false},
      {94, "Weyl-bands", Exactly(1), false},
      {95, "Ratio for -50", Exactly(3), true},
      {96, "Magnetotrans. for -49", Exactly(2), true},
      {97, "Graphene MO cond.", AtLeast(0), true},
      {98, "Graphene MO device", AtLeast(7), true},
      {99, "Ratio for -98", AtLeast(3), true},
      {100, "MO device from -98", AtLeast(5), true},
      {101, "MO-ext. Drude", AtLeast(0), true},
      {102, "Special-Strain", Exactly(3), true},
      {103, "Gas Corr.", AtLeast(3), false},
      {104, "Magnetoplasmon-97", AtLeast(7), false},
      {105, "sSNOM-3", AtLeast(6), false},
      {106, "Multilayer-finite Q", AtLeast(2), true},
      {107, "sSNOM-4", AtLeast(5), false},
      {108, "refl. tilted", Exactly(1), false},
      {109, "Anisotr. magnetic", AtLeast(0), true},
      {110, "sSNOM-5", AtLeast(5), false},
      {111, "BLG-magnetooptics", Exactly(7), true},
      {112, "BLG-LLs", AtLeast(0), false},
      {113, "Raman", AtLeast(3), true},
  };
  ASSERT_EQ(std::size(kKnown), std::size(ModelTypeTable));
  for (std::size_t i = 0; i < std::size(kKnown); ++i) {
    const ModelType& type = *ModelTypeTable[i];
    const KnownType& known = kKnown[i];
    ASSERT_EQ(type.code, known.code);
    EXPECT_STREQ(type.name, known.name);
    const RowRule &rows = type.map.rows, &expected = known.rows;
    EXPECT_EQ(std::tuple(rows.least, rows.most, rows.step, rows.failure),
              std::tuple(expected.least, expected.most, expected.step, expected.failure))
        << type.code;
    EXPECT_EQ(type.fitted, known.fitted) << type.code;
  }
}

TEST(TypeTable, LeavesAModelWithACodeOfNoTypePlain) {
  Tables program;
  Model& model = *CreateModel(program.params);
  model.epsInf.value = -30;
  model.epsInf.adjustable = 0;
  WantOnly(program.eval.quantities, QuantitySet{kE1});
  ASSERT_EQ(EvalModel(program.eval, model, 100, false), 0);
  EXPECT_EQ(program.eval.quantities[kE1].value, -30);
  EXPECT_STREQ(TypeNameOf(program.eval, model), "Diel. function");
}

}  // namespace
}  // namespace kalvex
