#include "windows/redraw.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "records/model_table.h"
#include "records/param_value.h"

namespace kalvex {
namespace {

// Two models and a pair of ears: "4:1" is graph event 4 about model 1, "fit 3" a notice to the fit.
class Redrawing : public testing::Test {
 protected:
  Redrawing() : first(*CreateModel(tables)), second(*CreateModel(tables)) {
    notices.owner = &heard;
    notices.graphs = [](void* self, GraphEvent event, std::int64_t id) {
      static_cast<std::vector<std::string>*>(self)->push_back(std::to_string(static_cast<int>(event)) + ':' +
                                                              std::to_string(id));
    };
    notices.fit = [](void* self, FitNotice notice, std::uint32_t) {
      static_cast<std::vector<std::string>*>(self)->push_back(
          notice == FitNotice::kModelParamsChanged ? "fit hears of a model"
          : notice == FitNotice::kExpParamsChanged ? "fit hears of the experiment"
                                                   : "fit hears something else");
    };
  }
  using Heard = std::vector<std::string>;
  Heard heard;
  Notices notices;
  ParamTables tables;
  Model& first;
  Model& second;
};

TEST_F(Redrawing, GraphsHearOfAParameterBeforeTheFit) {
  second.dirty = true;
  RefreshModelWindow(notices, second);
  EXPECT_EQ(heard, (Heard{"4:2", "fit hears of a model"}));
  EXPECT_FALSE(second.dirty);
}

TEST_F(Redrawing, AQuietRefreshSparesTheFit) {
  first.dirty = true;
  RefreshModelWindow(notices, first, true);
  EXPECT_EQ(heard, Heard{"4:1"});
  EXPECT_FALSE(first.dirty);
}

TEST_F(Redrawing, OfRowsTheGraphsHearBeforeTheValues) {
  first.dirty = true;
  RefreshModelRows(notices, first);
  EXPECT_EQ(heard, (Heard{"3:1", "4:1", "fit hears of a model"}));
  EXPECT_FALSE(first.dirty);
}

TEST_F(Redrawing, TheExperimentIsToldToGraphsAndThenToTheFit) {
  tables.expParamsDirty = true;
  RefreshExpParams(notices, tables);
  EXPECT_EQ(heard, (Heard{"5:-1", "fit hears of the experiment"}));
  EXPECT_FALSE(tables.expParamsDirty);
  heard.clear();
  RefreshExpParams(notices, tables, true);
  EXPECT_EQ(heard, Heard{"5:-1"});
}

TEST_F(Redrawing, OnlyWhatIsDirtyIsDrawnAnewAndTheExperimentLast) {
  RedrawDirty(notices, tables);
  EXPECT_TRUE(heard.empty());
  first.dirty = second.dirty = tables.expParamsDirty = true;
  RedrawDirty(notices, tables);
  EXPECT_EQ(heard, (Heard{"4:1", "fit hears of a model", "4:2", "fit hears of a model", "5:-1",
                          "fit hears of the experiment"}));
  heard.clear();
  RedrawDirty(notices, tables);
  EXPECT_TRUE(heard.empty());
}

TEST_F(Redrawing, AValueSetInOneModelDrawsTheCoupledOneAnew) {
  tables.ExpParams = DefaultExpParams();
  SetCoupling(tables, Cell(first, 0, G), 1);
  SetCoupling(tables, Cell(second, 0, G), 1);
  first.dirty = second.dirty = false;
  SetValue(tables, Cell(first, 0, G), 33);
  RedrawDirty(notices, tables);
  EXPECT_EQ(heard, (Heard{"4:1", "fit hears of a model", "4:2", "fit hears of a model"}));
  EXPECT_EQ(Cell(second, 0, G).value, 33);
}

TEST_F(Redrawing, AClosedModelIsNotDrawn) {
  second.dirty = true;
  CloseModelRecord(second);
  second.dirty = true;
  RedrawDirty(notices, tables);
  EXPECT_TRUE(heard.empty());
}

TEST_F(Redrawing, WithoutListenersNothingIsTold) {
  first.dirty = tables.expParamsDirty = true;
  RedrawDirty({}, tables);
  EXPECT_FALSE(first.dirty);
  EXPECT_FALSE(tables.expParamsDirty);
}

}  // namespace
}  // namespace kalvex
