#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "session/person.h"
#include "session/session_state.h"
#include "support/scratch_folder.h"
#include "support/test_platform.h"

namespace kalvex {
namespace {

class HistoryOfAPerson : public testing::TestWithParam<unsigned> {
 protected:
  HistoryOfAPerson() { folder.Write("R_spectrum.dat", SpectrumText()); }
  ScratchFolder folder;
  InFolder inside{folder.Name()};
  TestPlatform platform;
  Session session{platform, 1, Defaults::kFormer};
};

TEST_P(HistoryOfAPerson, AllStepsBackAndAllForwardLeadThroughTheSameStatesToTheLastBit) {
  Person person(session, GetParam());
  std::vector<std::string> states{StateOf(session)};  // indexed by the number of steps
  for (int i = 0; i < 400; ++i) {
    person.DoSomething();
    const std::size_t steps = session.GetHistory().LabelsBack().size();
    ASSERT_GE(steps + 2, states.size());  // a merged operation can take the last step back to its start
    states.resize(steps + 1);
    states[steps] = StateOf(session);  // a merged operation changes the last step
  }
  ASSERT_GT(states.size(), 50u);
  for (std::size_t k = states.size() - 1; k > 0; --k) {
    ASSERT_EQ(StateOf(session), states[k]) << "before step back number " << k;
    ASSERT_TRUE(session.StepBack().Ok());
  }
  EXPECT_EQ(StateOf(session), states[0]);
  EXPECT_EQ(session.StepBack().Code(), StatusCode::kNothingToDo);
  for (std::size_t k = 1; k < states.size(); ++k) {
    ASSERT_TRUE(session.StepForward().Ok());
    ASSERT_EQ(StateOf(session), states[k]) << "after step forward number " << k;
  }
  EXPECT_EQ(session.StepForward().Code(), StatusCode::kNothingToDo);
}

INSTANTIATE_TEST_SUITE_P(Seeds, HistoryOfAPerson, testing::Range(1u, 21u));

TEST_F(HistoryOfAPerson, ADraggedSliderIsOneStep) {
  const std::uint32_t model = *session.NewModel();
  const double before = session.FindModel(model)->epsInf.value;
  for (const double value : {4.0, 5.0, 6.0}) {
    ParamEdit edit;
    edit.value = value;
    ASSERT_TRUE(session.SetParam(ParamRef::EpsInf(model), edit).Ok());
  }
  ASSERT_EQ(session.GetHistory().LabelsBack(), (std::vector<std::string>{"new model", "set Einf of model 1"}));
  ASSERT_TRUE(session.StepBack().Ok());
  EXPECT_EQ(session.FindModel(model)->epsInf.value, before);
  ASSERT_TRUE(session.StepForward().Ok());
  EXPECT_EQ(session.FindModel(model)->epsInf.value, 6.0);
}

TEST_F(HistoryOfAPerson, TheEndOfAGestureBeginsAStepOfItsOwn) {
  const std::uint32_t model = *session.NewModel();
  ParamEdit edit;
  edit.value = 4;
  ASSERT_TRUE(session.SetParam(ParamRef::EpsInf(model), edit).Ok());
  session.EndGesture();
  edit.value = 5;
  ASSERT_TRUE(session.SetParam(ParamRef::EpsInf(model), edit).Ok());
  EXPECT_EQ(session.GetHistory().LabelsBack().size(), 3u);
}

TEST_F(HistoryOfAPerson, ANewOperationForgetsTheStepsThatWereTakenBack) {
  ASSERT_TRUE(session.NewModel().Ok());
  ASSERT_TRUE(session.StepBack().Ok());
  ASSERT_TRUE(session.NewGraph().Ok());
  EXPECT_EQ(session.StepForward().Code(), StatusCode::kNothingToDo);
}

TEST_F(HistoryOfAPerson, TheOldestStepsGoFirstWhereTheBoundOfMemoryIsReached) {
  DatasetSource source;
  source.MasterFile = folder.Path("R_spectrum.dat");
  ASSERT_TRUE(session.LoadDataset(1, source).Ok());
  for (int i = 0; i < 20; ++i) ASSERT_TRUE(session.TransformDataset(1, 2, 0).Ok());
  const std::size_t all = session.GetHistory().LabelsBack().size(), bytes = session.GetHistory().Bytes();
  ASSERT_EQ(all, 21u);
  session.SetHistoryBound(bytes / 2);
  EXPECT_LE(session.GetHistory().Bytes(), bytes / 2);
  const auto left = session.GetHistory().LabelsBack();
  EXPECT_LT(left.size(), all);
  EXPECT_GT(left.size(), all / 3);
  EXPECT_EQ(left.front(), "scale dataset 1");  // the load was the oldest
  const double y = session.FindDataset(1)->points[0].y;
  ASSERT_TRUE(session.StepBack().Ok());
  EXPECT_EQ(session.FindDataset(1)->points[0].y, y / 2);
}

TEST_F(HistoryOfAPerson, ABoundOfZeroKeepsNoStep) {
  ASSERT_TRUE(session.NewModel().Ok());
  ASSERT_TRUE(session.NewModel().Ok());
  ASSERT_TRUE(session.StepBack().Ok());
  session.SetHistoryBound(0);
  ASSERT_TRUE(session.NewGraph().Ok());
  EXPECT_EQ(session.GetHistory().Bytes(), 0u);
  EXPECT_EQ(session.StepBack().Code(), StatusCode::kNothingToDo);
  EXPECT_EQ(session.StepForward().Code(), StatusCode::kNothingToDo);
  session.SetHistoryBound(History::kUsualBound);
  ASSERT_TRUE(session.NewModel().Ok());
  ASSERT_TRUE(session.StepBack().Ok());
  EXPECT_EQ(CountModels(session.Params()), 1);
}

TEST_F(HistoryOfAPerson, WhatFailsIsNoStep) {
  EXPECT_EQ(session.CloseModel(7).Code(), StatusCode::kNotThere);
  EXPECT_EQ(session.UndoFit().Code(), StatusCode::kNothingToDo);
  EXPECT_TRUE(session.GetHistory().LabelsBack().empty());
}

TEST_F(HistoryOfAPerson, WhatChangesNothingIsNoStepAndKeepsTheStepsThatCanBeRedone) {
  DatasetSource source;
  source.MasterFile = kSpectrumFile;
  ASSERT_TRUE(session.LoadDataset(1, source).Ok());
  const std::uint32_t model = *session.NewModel(), graph = *session.NewGraph();
  ASSERT_TRUE(session.OpenFit().Ok());
  ASSERT_TRUE(session.AddTerm(1, model, {}).Ok());
  ASSERT_TRUE(session.RunFit({.iterations = 2, .byHand = true}).Ok());
  ASSERT_TRUE(session.TransformDataset(1, 2, 0).Ok());
  ASSERT_TRUE(session.StepBack().Ok());
  const auto steps = session.GetHistory().LabelsBack();
  const std::size_t bytes = session.GetHistory().Bytes();
  const Dataset& dataset = *session.FindDataset(1);
  const ParamRef wo = ParamRef::Row(model, 1, Wo);
  const std::vector<std::function<Status()>> empty = {
      [&] { return session.SwitchMesh(model, {}, {}, {}); },  // Cancel of the dialog of the mesh
      [&] { return session.InitMesh(model, {}, false, false, false); },
      [&] { return session.ToggleMeshOn(model); },
      [&] { return session.ToggleMeshKK(model); },
      [&] { return session.ToggleMeshFitActive(model); },
      [&] { return session.MakeMeshPositive(model); },
      [&] { return session.ClearDataset(2); },
      [&] { return session.UnloadDataset(2); },
      [&] { return session.TransformDataset(1, 1, 0); },
      [&] { return session.CutDataset(1, dataset.CutMin, {}, Heard::kAtOnce); },
      [&] { return session.SetDatasetQuantity(1, dataset.Quantity, Heard::kAtOnce); },
      [&] { return session.SetParam(wo, {.value = session.FindParam(wo)->value}); },
      [&] { return session.SetParam(ParamRef::Exp(0), {.value = session.FindParam(ParamRef::Exp(0))->value}); },
      [&] { return session.CopyParam(wo, wo); },
      [&] { return session.SortRows(model, 1); },
      [&] { return session.AddTerms({}); },
      [&] { return session.RemoveTerms({}); },
      [&] { return session.WeighTerms({}, 3); },
      [&] { return session.SetFitOptions(session.Fit().options); },
      [&] { return session.Recompute(); },
      [&] { return session.OpenFit(); },
      [&] { return session.EditGraph(graph, {}); },
      [&] { return session.ResizeGraph(graph, {}, {}); },
      [&] { return session.SetCurves(graph, {}); },
      [&] { return session.SetAutoScreenUpdate(session.AutoScreenUpdate()); },
      [&] { return session.SetGraphReader(session.GraphReader()); },
  };
  for (std::size_t i = 0; i < empty.size(); ++i) {
    EXPECT_TRUE(empty[i]().Ok()) << "operation " << i;
    EXPECT_EQ(session.GetHistory().LabelsBack(), steps) << "operation " << i;
  }
  EXPECT_EQ(session.GetHistory().Bytes(), bytes);
  EXPECT_EQ(session.GetHistory().LabelsForward(), (std::vector<std::string>{"scale dataset 1"}));
  EXPECT_TRUE(session.StepForward().Ok());
}

TEST_F(HistoryOfAPerson, ASliderThatReturnsToItsStartIsNoStep) {
  const std::uint32_t model = *session.NewModel();
  const ParamRef param = ParamRef::EpsInf(model);
  ASSERT_TRUE(session.SetParam(param, {.value = 4}).Ok());
  session.EndGesture();
  for (const double value : {5, 6, 4, 7}) ASSERT_TRUE(session.SetParam(param, {.value = value}).Ok());
  ASSERT_TRUE(session.StepBack().Ok());
  EXPECT_EQ(session.FindParam(param)->value, 4);  // the gesture before stays a step of its own
  ASSERT_TRUE(session.SetParam(param, {.value = 5}).Ok());
  ASSERT_TRUE(session.SetParam(param, {.value = 4}).Ok());
  EXPECT_EQ(session.GetHistory().LabelsBack(), (std::vector<std::string>{"new model", "set Einf of model 1"}));
}

// A free slot has the id 0, and so have terms of free slots.
TEST_F(HistoryOfAPerson, UnloadingAFreeSlotIsAStepIfATermOfTheFitGoes) {
  const std::uint32_t model = *session.NewModel();
  ASSERT_TRUE(session.OpenFit().Ok());
  ASSERT_TRUE(session.AddTerm(3, model, {}).Ok());
  ASSERT_TRUE(session.UnloadDataset(3).Ok());
  ASSERT_TRUE(session.StepBack().Ok());
  EXPECT_EQ(session.Fit().list.terms.size(), 1u);
}

}  // namespace
}  // namespace kalvex
