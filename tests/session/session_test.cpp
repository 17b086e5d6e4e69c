#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "session/session_state.h"
#include "support/scratch_folder.h"
#include "support/test_platform.h"

namespace kalvex {
namespace {

class Ears : public SessionListener {
 public:
  std::vector<ChangeKind> heard;
  std::vector<std::string> statements;
  void Changed(const Change& change) override { heard.push_back(change.kind); }
  void Performed(const Operation& operation) override { statements.push_back(operation.statement); }
  bool Has(ChangeKind kind) const { return std::find(heard.begin(), heard.end(), kind) != heard.end(); }
};

class Sessions : public testing::Test {
 protected:
  Sessions() {
    session.Listen(ears);
    std::string text;
    for (int i = 0; i < 1000; ++i)
      text += std::to_string(100 + i * 0.4) + ' ' + std::to_string(0.3 + 0.0001 * i) + " 0.01\n";
    folder.Write("R_spectrum.dat", text);
  }
  void Load(int slot = 1) {
    DatasetSource source;
    source.MasterFile = folder.Path("R_spectrum.dat");
    ASSERT_TRUE(session.LoadDataset(slot, source).Ok());
  }
  // Fits a model with a constrained mesh of the dataset's 1000 points for two iterations.
  std::uint32_t FitAMesh() {
    const std::uint32_t model = *session.NewModel();
    EXPECT_TRUE(session.InitMesh(model, {{{session.FindDataset(1)->id, false}, {}, {}}}, true, true, true).Ok());
    EXPECT_TRUE(session.AddTerm(1, model, {}).Ok());
    FitRequest request;
    request.iterations = 2;
    EXPECT_TRUE(session.RunFit(request).Ok());
    return model;
  }

  ScratchFolder folder;
  InFolder inside{folder.Name()};
  TestPlatform platform;
  Session session{platform, 1, Defaults::kFormer};
  Ears ears;
};

TEST_F(Sessions, WhatWasKeptForAModelGoesWithIt) {
  Load();
  ASSERT_TRUE(session.OpenFit().Ok());
  std::size_t first = 0;
  for (int i = 0; i < 5; ++i) {
    const std::uint32_t model = FitAMesh();
    if (i == 0) first = session.BytesKeptForEvaluation();
    EXPECT_GT(session.BytesKeptForEvaluation(), std::size_t{1000} * 1000 * sizeof(double) / 2);
    EXPECT_LE(session.BytesKeptForEvaluation(), first) << "model " << model;
    ASSERT_TRUE(session.CloseModel(model).Ok());
    EXPECT_EQ(session.BytesKeptForEvaluation(), 0u);
  }
}

TEST_F(Sessions, NothingPullsTheGroundAwayFromUnderARunningFit) {
  Load();
  const std::uint32_t model = *session.NewModel();
  const std::uint32_t graph = *session.NewGraph();
  ASSERT_TRUE(session.OpenFit().Ok());
  ASSERT_TRUE(session.AddTerm(1, model, {}).Ok());
  const std::vector<std::function<Status()>> refused = {
      [&] { return session.LoadDataset(2, {}); },
      [&] { return session.UnloadDataset(1); },
      [&] { return session.TransformDataset(1, 2, 0); },
      [&] { return session.AddNoise(1, 1); },
      [&] { return session.CutDataset(1, 1, 2, Heard::kLater); },
      [&] { return session.SetDatasetQuantity(1, kRs, Heard::kLater); },
      [&] { return session.NewModel().GetStatus(); },
      [&] { return session.CloseModel(model); },
      [&] { return session.InsertRow(model, 1); },
      [&] { return session.RemoveRow(model, 1); },
      [&] { return session.SortRows(model, 1); },
      [&] { return session.FixAllParams(model, true); },
      [&] { return session.LoadModel(model, "a.kvm"); },
      [&] { return session.SetParam(ParamRef::EpsInf(model), {}); },
      [&] { return session.CopyParam(ParamRef::EpsInf(model), ParamRef::EpsInf(model)); },
      [&] { return session.LoadParams("a.kvp"); },
      [&] { return session.InitMesh(model, {}, true, true, true); },
      [&] { return session.ToggleMeshOn(model); },
      [&] { return session.AddTerm(1, model, {}); },
      [&] { return session.DeleteTerm(1, 1); },
      [&] { return session.SetFitOptions({}); },
      [&] { return session.UndoFit(); },
      [&] { return session.Recompute(); },
      [&] { return session.WriteQuantityErrorBars(); },
      [&] { return session.DumpDerivatives(); },
      [&] { return session.TestDerivatives(); },
      [&] { return session.TestQuantityDerivatives(); },
      [&] { return session.StepBack(); },
      [&] { return session.StepForward(); },
  };
  int tried = 0;
  platform.events = [&] {
    if (!session.Fit().FitRunning || tried > 0) return;
    const std::string before = StateOf(session);
    for (const auto& operation : refused) {
      EXPECT_EQ(operation().Code(), StatusCode::kBusy) << "operation " << tried;
      ++tried;
    }
    EXPECT_EQ(StateOf(session), before);
    // Graphs can be changed and the run can be stopped.
    EXPECT_TRUE(session.EditGraph(graph, {}).Ok());
    session.StopFit();
  };
  ASSERT_TRUE(session.RunFit({}).Ok());
  EXPECT_EQ(tried, static_cast<int>(refused.size()));
  EXPECT_EQ(session.Fit().report.stop, "stopped by the user");
}

TEST_F(Sessions, AGraphClosedDuringAFitIsAStepBeforeThatOfTheFit) {
  Load();
  const std::uint32_t model = *session.NewModel();
  const std::uint32_t graph = *session.NewGraph();
  ASSERT_TRUE(session.AddCurve(graph, ModelCurve(*session.FindModel(model), kRefl)).Ok());
  ASSERT_TRUE(session.OpenFit().Ok());
  ASSERT_TRUE(session.AddTerm(1, model, {}).Ok());
  const std::string before = StateOf(session);
  platform.events = [&] {
    if (!session.Fit().FitRunning || !session.FindGraph(graph)) return;
    EXPECT_TRUE(session.CloseGraph(graph).Ok());
  };
  ASSERT_TRUE(session.RunFit({}).Ok());
  platform.events = {};
  ASSERT_EQ(session.FindGraph(graph), nullptr);
  ASSERT_GT(session.Fit().IterationCount, 0);
  const std::string after = StateOf(session);

  ASSERT_TRUE(session.StepBack().Ok());
  EXPECT_EQ(session.FindGraph(graph), nullptr);
  const std::string between = StateOf(session);
  ASSERT_TRUE(session.StepBack().Ok());
  EXPECT_EQ(StateOf(session), before);
  ASSERT_TRUE(session.StepForward().Ok());
  EXPECT_EQ(StateOf(session), between);
  ASSERT_TRUE(session.StepForward().Ok());
  EXPECT_EQ(StateOf(session), after);
}

TEST_F(Sessions, EachChangeIsToldOnceTheTablesAreWhole) {
  Load();
  EXPECT_EQ(ears.heard, (std::vector{ChangeKind::kDatasetLoaded}));
  ears.heard.clear();
  const std::uint32_t model = *session.NewModel();
  EXPECT_TRUE(ears.Has(ChangeKind::kModelCreated));
  ASSERT_TRUE(session.OpenFit().Ok());
  ASSERT_TRUE(session.AddTerm(1, model, {}).Ok());
  EXPECT_TRUE(ears.Has(ChangeKind::kFitTerms));
  ears.heard.clear();
  ASSERT_TRUE(session.InsertRow(model, 1).Ok());
  EXPECT_TRUE(ears.Has(ChangeKind::kModelRows));
  EXPECT_TRUE(ears.Has(ChangeKind::kFitValues));
  ears.heard.clear();
  ASSERT_TRUE(session.CloseModel(model).Ok());
  EXPECT_TRUE(ears.Has(ChangeKind::kModelClosed));
  EXPECT_TRUE(ears.Has(ChangeKind::kFitTerms));  // its term was removed
  EXPECT_TRUE(session.Fit().list.terms.empty());
}

TEST_F(Sessions, WhileTheFitIsClosedItsListsStayAsTheyWere) {
  Load();
  const std::uint32_t model = *session.NewModel();
  ASSERT_TRUE(session.AddTerm(1, model, {}).Ok());
  const double chiSq = session.Fit().TotalChiSq;
  ASSERT_TRUE(session.TransformDataset(1, 2, 0).Ok());
  ASSERT_TRUE(session.CloseModel(model).Ok());
  EXPECT_EQ(session.Fit().TotalChiSq, chiSq);
  EXPECT_EQ(session.Fit().list.terms.size(), 1u);
  ASSERT_TRUE(session.OpenFit().Ok());
  EXPECT_EQ(session.Fit().TotalChiSq, 0);
}

TEST_F(Sessions, AFailureSaysWhatItIsAbout) {
  const Status status = session.RemoveRow(3, 1);
  EXPECT_EQ(status.Code(), StatusCode::kNotThere);
  EXPECT_EQ(status.Text(), "model 3 does not exist");
  EXPECT_EQ(status.About(), "model 3");
  DatasetSource source;
  source.MasterFile = "nowhere.dat";
  EXPECT_EQ(session.LoadDataset(1, source).Text(), "Cannot open master file.");
  EXPECT_EQ(session.LoadDataset(1, source).About(), "nowhere.dat");
}

TEST_F(Sessions, AnOperationIsAlsoAStatement) {
  Load(2);
  const std::uint32_t model = *session.NewModel();
  ParamEdit edit;
  edit.value = 0.1;
  ASSERT_TRUE(session.SetParam(ParamRef::Row(model, 1, Wp), edit).Ok());
  EXPECT_EQ(ears.statements[1], "NewModel();");
  EXPECT_EQ(ears.statements[2], "SetModelParam(ModelNo=1, ParamName=\"Wp\", LorNo=1, Value=0.1);");
}

TEST_F(Sessions, AStatementWritesEveryNumberAndNoTextThatCannotBeRead) {
  const std::uint32_t model = *session.NewModel(), graph = *session.NewGraph();
  const auto statementOf = [&](double value) {
    EXPECT_TRUE(session.SetParam(ParamRef::Row(model, 1, Wp), {.value = value}).Ok());
    return ears.statements.back();
  };
  const std::string begin = "SetModelParam(ModelNo=1, ParamName=\"Wp\", LorNo=1, Value=";
  EXPECT_EQ(statementOf(1.0 / 3), begin + "0.3333333333333333);");
  EXPECT_EQ(statementOf(5e-324), begin + "5e-324);");
  EXPECT_EQ(statementOf(-0.0), begin + "-0);");
  EXPECT_EQ(statementOf(std::numeric_limits<double>::infinity()), begin + "1e999);");
  EXPECT_EQ(statementOf(std::nan("")), "");
  for (const char* const title : {"\"", "a\tb", "a\nb"}) {
    GraphEdit edit;
    edit.x.title = title;
    ASSERT_TRUE(session.EditGraph(graph, edit).Ok());
    EXPECT_EQ(ears.statements.back(), "") << title;
  }
}

TEST_F(Sessions, AFitThatIsNotOpenDoesNotRun) {
  EXPECT_EQ(session.RunFit({}).Code(), StatusCode::kNothingToDo);
  ASSERT_TRUE(session.OpenFit().Ok());
  EXPECT_TRUE(session.RunFit({}).Ok());
}

TEST_F(Sessions, AFreeSlotHasNoQuantityToSet) {
  EXPECT_EQ(session.SetDatasetQuantity(1, kE1, Heard::kAtOnce).Text(), "dataset 1 is not loaded");
  EXPECT_EQ(session.Datasets().slots[0].Quantity, kRefl);
}

}  // namespace
}  // namespace kalvex
