// The model table, rows, values, coupling and codes.
#include <gtest/gtest.h>

#include <cmath>

#include "evaluation/sample_models.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "records/param_value.h"
#include "records/row_code.h"

namespace kalvex {
namespace {

ParamTables& Fresh(ParamTables& tables) {
  tables.ExpParams = DefaultExpParams();
  return tables;
}

struct FreshTables : ParamTables {
  FreshTables() { Fresh(*this); }
};

TEST(ModelTable, ANewModelHasItsDefaults) {
  FreshTables tables;
  const Model& model = *CreateModel(tables);
  EXPECT_EQ(model.number, 1u);
  EXPECT_EQ(model.name, "M1");
  EXPECT_EQ(NameOf(model.epsInf), "Epsilon at infinity");
  EXPECT_EQ(model.epsInf.value, 3);
  EXPECT_EQ(model.epsInf.max, 100);
  EXPECT_EQ(model.epsInf.adjustable, 1u);
  ASSERT_EQ(RowCount(model), 1);
  const char* const names[] = {"TO frequency", "Plasma frequency", "Linewidth"};
  const double values[] = {100, 100, 10};
  for (int c = 0; c < kColumns; ++c) {
    const ModelParam& param = Cell(model, 0, c);
    EXPECT_EQ(NameOf(param), names[c]);
    EXPECT_EQ(param.value, values[c]);
    EXPECT_EQ(param.adjustable, 1u);
    EXPECT_EQ(param.min, 0);
    EXPECT_EQ(param.max, 100000);
    EXPECT_EQ(param.useMin + param.useMax + param.coupling, 0u);
    EXPECT_EQ(param.error, 0);
  }
}

TEST(ModelTable, TheExperimentalParametersHaveTheirDefaults) {
  const auto params = DefaultExpParams();
  const char* const names[] = {"Sample thickness", "Thickness spread",    "Angle of incidence",
                               "Angle spread",     "Scaling factor of R", "Scaling factor of T"};
  const double values[] = {0.0015, 0, 80, 0, 1, 1}, most[] = {1, 1, 90, 90, 2, 2};
  for (std::size_t k = 0; k < params.size(); ++k) {
    EXPECT_EQ(NameOf(params[k]), names[k]);
    EXPECT_EQ(params[k].value, values[k]);
    EXPECT_EQ(params[k].min, 0);
    EXPECT_EQ(params[k].max, most[k]);
    EXPECT_EQ(params[k].adjustable + params[k].useMin + params[k].useMax + params[k].coupling, 0u);
  }
}

TEST(ModelTable, The101stIsRefusedAndAFreedEntryGetsANewNumber) {
  FreshTables tables;
  for (int i = 0; i < 100; ++i) ASSERT_NE(CreateModel(tables), nullptr);
  EXPECT_EQ(CreateModel(tables), nullptr);
  CloseModelRecord(*GetModelByNumber(tables, 40));
  EXPECT_EQ(CountModels(tables), 99);
  Model* const model = CreateModel(tables);
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(model->number, 101u);
  EXPECT_EQ(model->name, "M101");
  EXPECT_EQ(SlotOf(tables, *model), 39);
  EXPECT_EQ(ListModelNumbers(tables)[39], 101u);
}

TEST(ModelTable, NumbersAreFoundWholeAndOtherThanZero) {
  FreshTables tables;
  CreateModel(tables);
  Model* const second = CreateModel(tables);
  EXPECT_EQ(GetModelByNumber(tables, 2), second);
  EXPECT_EQ(GetModelByNumber(tables, 0), nullptr);
  EXPECT_EQ(GetModelByNumber(tables, 3), nullptr);
  EXPECT_EQ(GetModelByReal(tables, 2.0), second);
  for (const double number : {2.5, 0.0, -2.0, 3.0, 1e300, std::nan("")})
    EXPECT_EQ(GetModelByReal(tables, number), nullptr);
}

TEST(Rows, InsertClampsThePositionAndMovesLaterRows) {
  FreshTables tables;
  Model* const model = CreateModel(tables);
  Cell(*model, 0, Wo).value = 7;
  InsertRow(*model, -5);
  EXPECT_EQ(Cell(*model, 1, Wo).value, 7);
  InsertRow(*model, 99);
  EXPECT_EQ(Cell(*model, 1, Wo).value, 7);
  EXPECT_EQ(RowCount(*model), 3);
  EXPECT_EQ(Cell(*model, 2, G).value, 10);
}

TEST(Rows, RemoveClampsAndLeavesAnEmptyModelAlone) {
  FreshTables tables;
  Model* const model = CreateModel(tables);
  InsertRow(*model, 1);
  Cell(*model, 0, Wo).value = 1;
  Cell(*model, 1, Wo).value = 2;
  RemoveRow(*model, 50);
  EXPECT_EQ(Cell(*model, 0, Wo).value, 1);
  RemoveRow(*model, -1);
  EXPECT_EQ(RowCount(*model), 0);
  RemoveRow(*model, 0);
  EXPECT_EQ(RowCount(*model), 0);
}

TEST(Rows, MovingTheFirstUpOrTheLastDownChangesNothing) {
  FreshTables tables;
  Model* const model = CreateModel(tables);
  InsertRow(*model, 1);
  InsertRow(*model, 2);
  for (int r = 0; r < 3; ++r) Cell(*model, r, Wo).value = r;
  const auto order = [&] {
    return std::array{Cell(*model, 0, Wo).value, Cell(*model, 1, Wo).value, Cell(*model, 2, Wo).value};
  };
  MoveRowUp(*model, 0);
  MoveRowDown(*model, 2);
  EXPECT_EQ(order(), (std::array{0.0, 1.0, 2.0}));
  MoveRowUp(*model, 9);  // replaced by the last
  EXPECT_EQ(order(), (std::array{0.0, 2.0, 1.0}));
  MoveRowDown(*model, -9);  // replaced by the first
  EXPECT_EQ(order(), (std::array{2.0, 0.0, 1.0}));
}

TEST(Rows, SortingByEachKeyTurnsAroundWhenRepeated) {
  FreshTables tables;
  Model* const model = CreateModel(tables);
  InsertRow(*model, 1);
  InsertRow(*model, 2);
  const double rows[3][3] = {{100, 300, 5}, {200, 100, 50}, {50, 200, 20}};
  const auto set = [&] {
    for (int r = 0; r < 3; ++r) {
      for (int c = 0; c < 3; ++c) Cell(*model, r, c).value = rows[r][c];
    }
  };
  const double sorted[5][3] = {{50, 100, 200}, {200, 50, 100}, {100, 50, 200}, {200, 100, 50}, {100, 200, 50}};
  for (int key = 1; key <= 5; ++key) {
    set();
    SortRows(*model, static_cast<SortKey>(key));
    SortRows(*model, static_cast<SortKey>(key));
    const bool ascending = Cell(*model, 0, Wo).value == sorted[key - 1][0];
    for (int pass = 0; pass < 2; ++pass) {
      for (int r = 0; r < 3; ++r) {
        const int expected = (ascending == (pass == 0)) ? r : 2 - r;
        EXPECT_EQ(Cell(*model, r, Wo).value, sorted[key - 1][expected]) << key;
      }
      SortRows(*model, static_cast<SortKey>(key));
    }
  }
}

TEST(Rows, SortingRunsDescendingIfTheFirstIsNotAboveTheLast) {
  FreshTables tables;
  Model* const model = CreateModel(tables);
  InsertRow(*model, 1);
  Cell(*model, 0, Wo).value = 1;
  Cell(*model, 1, Wo).value = 2;
  SortRows(*model, SortKey::kWo);
  EXPECT_EQ(Cell(*model, 0, Wo).value, 2);
}

TEST(Rows, WithoutAKeyOrWithoutRowsSortingChangesNothing) {
  FreshTables tables;
  Model* const model = CreateModel(tables);
  InsertRow(*model, 1);
  Cell(*model, 0, Wo).value = 1;
  Cell(*model, 1, Wo).value = 2;
  SortRows(*model, SortKey::kNone);
  EXPECT_EQ(Cell(*model, 0, Wo).value, 1);
  ClearRows(*model);
  SortRows(*model, SortKey::kWo);
  EXPECT_EQ(RowCount(*model), 0);
}

TEST(Rows, ComputedColumnsAndTheirMarkers) {
  FreshTables tables;
  Model* const model = CreateModel(tables);
  Cell(*model, 0, Wp).value = 50;
  EXPECT_EQ(ComputedValue(model, 0, 0), 0.25);
  EXPECT_EQ(ComputedValue(model, 0, 1), 0.1);
  EXPECT_EQ(ComputedValue(model, 0, 2), 0);
  Cell(*model, 0, Wo).value = 0;
  EXPECT_EQ(ComputedValue(model, 0, 0), 7.77777e77);
  EXPECT_EQ(ComputedValue(model, 0, 1), 7.77777e77);
  EXPECT_EQ(ComputedValue(model, 1, 0), -7.77777e77);
  EXPECT_EQ(ComputedValue(nullptr, 0, 0), -7.77777e77);
}

TEST(Rows, FixingAllPassesCouplingBy) {
  FreshTables tables;
  Model* const model = CreateModel(tables);
  Model* const other = CreateModel(tables);
  SetCoupling(tables, Cell(*model, 0, Wo), 2);
  SetCoupling(tables, Cell(*other, 0, Wo), 2);
  FixAll(*model, true);
  EXPECT_EQ(model->epsInf.adjustable + Cell(*model, 0, Wo).adjustable + Cell(*model, 0, G).adjustable, 0u);
  EXPECT_EQ(Cell(*other, 0, Wo).adjustable, 1u);
  FixAll(*model, false);
  EXPECT_EQ(Cell(*model, 0, G).adjustable, 1u);
}

TEST(SetValue, HoldsLimitsAndTheClampWithTheirCodes) {
  FreshTables tables;
  ModelParam param;
  param.min = 2;
  param.max = 5;
  EXPECT_EQ(SetValue(tables, param, 1), kStored);  // limits are not active
  EXPECT_EQ(param.value, 1);
  param.useMin = 1;
  EXPECT_EQ(SetValue(tables, param, 1), kRaisedToMin);
  EXPECT_EQ(param.value, 2);
  EXPECT_EQ(SetValue(tables, param, 1e71), kClampedTo1e70);
  EXPECT_EQ(param.value, 1e70);
  param.useMax = 1;
  EXPECT_EQ(SetValue(tables, param, 1e71), kLoweredToMax);
  EXPECT_EQ(param.value, 5);
  param.useMin = param.useMax = 0;
  EXPECT_EQ(SetValue(tables, param, -1e71), kClampedTo1e70);
  EXPECT_EQ(param.value, -1e70);
  EXPECT_EQ(SetValue(tables, param, 1e70), kStored);
  param.useMin = 1;
  param.min = 1e72;  // a limit beyond the clamp: the clamp is applied last
  EXPECT_EQ(SetValue(tables, param, 0), kClampedTo1e70);
  EXPECT_EQ(param.value, 1e70);
}

TEST(Coupling, AChangeCopiesTheWholeRecordOverEveryMember) {
  FreshTables tables;
  Model* const a = CreateModel(tables);
  Model* const b = CreateModel(tables);
  ModelParam& first = Cell(*a, 0, Wp);
  SetName(first, "shared");
  SetCoupling(tables, first, 3);
  SetCoupling(tables, Cell(*b, 0, G), 3);
  SetCoupling(tables, b->epsInf, 3);
  SetCoupling(tables, tables.ExpParams[2], 3);
  a->dirty = b->dirty = tables.expParamsDirty = false;
  first.useMax = 1;
  first.max = 60;
  EXPECT_EQ(SetValue(tables, first, 77), kLoweredToMax);
  for (const ModelParam* const member : {&Cell(*b, 0, G), &b->epsInf, &tables.ExpParams[2]}) {
    EXPECT_EQ(member->value, 60);
    EXPECT_EQ(member->max, 60);
    EXPECT_EQ(NameOf(*member), "shared");
  }
  EXPECT_TRUE(a->dirty);
  EXPECT_TRUE(b->dirty);
  EXPECT_TRUE(tables.expParamsDirty);
  EXPECT_EQ(Cell(*b, 0, Wo).value, 100);
}

TEST(Coupling, JoiningAGroupTakesTheRecordOfItsFirstMember) {
  FreshTables tables;
  Model* const a = CreateModel(tables);
  Model* const b = CreateModel(tables);
  tables.ExpParams[0].coupling = 4;
  Cell(*b, 0, Wo).value = 222;
  Cell(*b, 0, Wo).coupling = 4;
  SetCoupling(tables, Cell(*a, 0, G), 4);
  EXPECT_EQ(Cell(*a, 0, G).value, 222);
  EXPECT_EQ(NameOf(Cell(*a, 0, G)), "TO frequency");
  SetCoupling(tables, a->epsInf, 4);  // now row 0 of a comes first
  EXPECT_EQ(a->epsInf.value, 222);
}

TEST(Coupling, AFirstMemberKeepsItsRecordAndAGroupAbove24IsNone) {
  FreshTables tables;
  Model* const a = CreateModel(tables);
  SetCoupling(tables, a->epsInf, 24);
  EXPECT_EQ(a->epsInf.coupling, 24u);
  EXPECT_EQ(a->epsInf.value, 3);
  for (const int group : {25, 1000, 0, -3}) {
    SetCoupling(tables, a->epsInf, group);
    EXPECT_EQ(a->epsInf.coupling, 0u) << group;
  }
}

TEST(Coupling, SettingTheFlagReachesTheGroupToo) {
  FreshTables tables;
  Model* const a = CreateModel(tables);
  SetCoupling(tables, Cell(*a, 0, Wo), 1);
  SetCoupling(tables, Cell(*a, 0, Wp), 1);
  SetAdjustable(tables, Cell(*a, 0, Wo), 0);
  EXPECT_EQ(Cell(*a, 0, Wp).adjustable, 0u);
}

TEST(Codes, ARowsCodeIsAnExactWholeNumberThatIsHeld) {
  ModelParam param;
  const auto code = [&](double value, std::uint32_t adjustable) {
    param.value = value;
    param.adjustable = adjustable;
    return RowCode(param);
  };
  EXPECT_EQ(code(-1000, 1), 0);
  EXPECT_EQ(code(-1000, 0), 1000);
  EXPECT_EQ(code(-1000.5, 0), 0);
  EXPECT_EQ(code(1000, 0), 0);
  EXPECT_EQ(code(0, 0), 0);
  EXPECT_EQ(code(-2147483647.0, 0), 2147483647);
  EXPECT_EQ(code(-3e9, 0), 0);
  EXPECT_EQ(code(std::nan(""), 0), 0);
}

TEST(Codes, AModelsTypeIsOnlyCutToAWholeNumber) {
  Tables program;
  Model& model = *CreateModel(program.params);
  const auto type = [&](double value, std::uint32_t adjustable) {
    model.epsInf.value = value;
    model.epsInf.adjustable = adjustable;
    return std::string(TypeNameOf(program.eval, model));
  };
  EXPECT_EQ(type(-1, 0), "Differential model");
  EXPECT_EQ(type(-1.7, 0), "Differential model");
  EXPECT_EQ(type(-1, 1), "Diel. function");
  EXPECT_EQ(type(-999, 0), "Diel. function");
  EXPECT_EQ(type(0, 0), "Diel. function");
  EXPECT_EQ(type(1, 0), "Diel. function");
}

}  // namespace
}  // namespace kalvex
