#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "session/session_state.h"
#include "support/scratch_folder.h"
#include "support/test_platform.h"

namespace kalvex {
namespace {

// The text of a spectrum that a model can describe.
std::string SpectrumText() {
  std::string text;
  for (int i = 0; i < 40; ++i)
    text += std::to_string(50 + 10 * i) + ' ' + std::to_string(0.3 + 0.01 * (i % 7)) + " 0.01\n";
  return text;
}

// Performs random operations, often with wrong arguments.
class Person {
 public:
  Person(Session& session, const ScratchFolder& folder, unsigned seed)
      : session_(session), file_(folder.Path("R_spectrum.dat")), model_(folder.Path("m.kvm")), random_(seed) {}

  void DoSomething() {
    const std::uint32_t model = Number(), graph = Number();
    const int slot = Below(4), row = Below(4);
    const double value = 50.0 * Below(12) + 1;
    switch (Below(35)) {
      case 0: {
        DatasetSource source;
        source.MasterFile = file_;
        return session_.LoadDataset(slot, source).Ignore();
      }
      case 1:
        return session_.UnloadDataset(slot).Ignore();
      case 2:
        return session_.TransformDataset(slot, 1.25, -0.5).Ignore();
      case 3:
        return session_.AddNoise(slot, 0.125).Ignore();
      case 4:
        return session_.CutDataset(slot, value, {}, Coin() ? Heard::kAtOnce : Heard::kLater).Ignore();
      case 5:
        return session_.SetDatasetQuantity(slot, AnyQuantity(), Coin() ? Heard::kAtOnce : Heard::kLater).Ignore();
      case 6:
      case 7:
        return session_.NewModel().GetStatus().Ignore();
      case 8:
        return session_.CloseModel(model).Ignore();
      case 9:
        return session_.InsertRow(model, row).Ignore();
      case 10:
        return session_.RemoveRow(model, row).Ignore();
      case 11:
        return session_.MoveRow(model, row, Coin()).Ignore();
      case 12:
        return session_.SortRows(model, Below(7)).Ignore();
      case 13:
        return session_.FixAllParams(model, Coin()).Ignore();
      case 14:
      case 15:
      case 16:
        return session_.SetParam(Param(), Edit()).Ignore();
      case 17:
        return session_.CopyParam(ParamRef::Row(model, row, Below(3)), ParamRef::EpsInf(Number())).Ignore();
      case 18: {
        const Dataset* const dataset = session_.FindDataset(slot);
        std::array<VdfSource, 3> sources;
        if (dataset) sources[0] = {dataset->id, Coin()};
        return session_.InitMesh(model, sources, Coin(), Coin(), Coin()).Ignore();
      }
      case 19:
        return session_.ToggleMeshKK(model).Ignore();
      case 20:
        return session_.SwitchMesh(model, Coin(), {}, Coin()).Ignore();
      case 21:
        return session_.OpenFit().Ignore();
      case 22:
      case 23:
        return session_.AddTerm(slot, model, Coin() ? std::optional(2.0) : std::nullopt).Ignore();
      case 24:
        return session_.DeleteTerm(slot, Below(4)).Ignore();
      case 25: {
        FitRequest request;
        request.iterations = 2;
        request.byHand = Coin();
        return session_.RunFit(request).Ignore();
      }
      case 26:
        return session_.UndoFit().Ignore();
      case 27: {
        FitOptions options = session_.Fit().options;
        options.InitialLambda *= 2;
        return session_.SetFitOptions(options).Ignore();
      }
      case 28:
        return session_.NewGraph().GetStatus().Ignore();
      case 29:
        return session_.CloseGraph(graph).Ignore();
      case 30: {
        GraphEdit edit;
        edit.x.max = value;
        edit.y.log = Coin();
        edit.x.title = "a title";
        return session_.EditGraph(graph, edit).Ignore();
      }
      case 31: {
        const Model* const of = session_.FindModel(model);
        if (of) session_.AddCurve(graph, ModelCurve(*of, AnyQuantity())).Ignore();
        return;
      }
      case 32:
        return session_.SetAutoScreenUpdate(Coin()).Ignore();
      case 33:
        if (Below(4) == 0) session_.CloseFit().Ignore();
        return;
      default:
        session_.EndGesture();
    }
  }

 private:
  int Below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }
  bool Coin() { return Below(2) == 0; }
  Quantity AnyQuantity() { return *QuantityOfNumber(Below(kQuantityCount)); }
  std::uint32_t Number() { return static_cast<std::uint32_t>(Below(5)); }
  ParamRef Param() {
    if (Below(5) == 0) return ParamRef::Exp(Below(6));
    if (Below(4) == 0) return ParamRef::EpsInf(Number());
    return ParamRef::Row(Number(), Below(4), Below(3));
  }
  ParamEdit Edit() {
    ParamEdit edit;
    if (Coin()) edit.value = 10.0 * Below(30) + 1;
    if (Below(4) == 0) edit.adjustable = Coin();
    if (Below(6) == 0) edit.min = 5.0 * Below(10), edit.useMin = 1;
    if (Below(6) == 0) edit.coupling = Below(3);
    edit.told = Below(5) != 0;
    return edit;
  }

  Session& session_;
  std::string file_, model_;
  std::mt19937 random_;
};

class HistoryOfAPerson : public testing::TestWithParam<unsigned> {
 protected:
  HistoryOfAPerson() { folder.Write("R_spectrum.dat", SpectrumText()); }
  ScratchFolder folder;
  InFolder inside{folder.Name()};
  TestPlatform platform;
  Session session{platform};
};

TEST_P(HistoryOfAPerson, AllStepsBackAndAllForwardLeadThroughTheSameStatesToTheLastBit) {
  Person person(session, folder, GetParam());
  std::vector<std::string> states{StateOf(session)};  // indexed by the number of steps
  for (int i = 0; i < 150; ++i) {
    person.DoSomething();
    const std::size_t steps = session.GetHistory().LabelsBack().size();
    ASSERT_GE(steps + 1, states.size());
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

TEST_F(HistoryOfAPerson, WhatFailsIsNoStep) {
  EXPECT_EQ(session.CloseModel(7).Code(), StatusCode::kNotThere);
  EXPECT_EQ(session.UndoFit().Code(), StatusCode::kNothingToDo);
  EXPECT_TRUE(session.GetHistory().LabelsBack().empty());
}

}  // namespace
}  // namespace kalvex
