// Notifications after operations on datasets: to the graphs, to the fit, and to the listeners of the session.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "core/noise.h"
#include "pictures/pixel_surface.h"
#include "session/session_state.h"
#include "support/scratch_folder.h"
#include "support/test_platform.h"

namespace kalvex {
namespace {

using Told = std::vector<std::string>;

// Records notifications in order: the changes of datasets and of the fit, and the number of rows in slot 2 at that
// time.
class Ears : public SessionListener {
 public:
  explicit Ears(const Session& session) : session_(session) {}
  Told told, statements;
  void Performed(const Operation& operation) override { statements.push_back(operation.statement); }
  void Changed(const Change& change) override {
    const char* const what = WordOf(change.kind);
    if (!what) return;
    std::string line = what;
    if (change.slot != 0) line += " " + std::to_string(change.slot) + ", id " + std::to_string(change.id);
    told.push_back(line + ", " + std::to_string(session_.Datasets().slots[1].points.size()) + " rows");
  }

 private:
  static const char* WordOf(ChangeKind kind) {
    switch (kind) {
      case ChangeKind::kDatasetLoaded:
        return "loaded";
      case ChangeKind::kDatasetChanged:
        return "changed";
      case ChangeKind::kDatasetUnloaded:
        return "unloaded";
      case ChangeKind::kFitTerms:
        return "terms";
      case ChangeKind::kFitValues:
        return "values";
      default:
        return nullptr;
    }
  }
  const Session& session_;
};

// Slot 2 has five rows and the id 1. An open fit compares it with a model, and a graph shows both.
class Datasets : public testing::Test {
 protected:
  Datasets() {
    folder.Write("R.dat", "100 0.1 0.1\n200 0.2 0.1\n300 0.3 0.1\n400 0.4 0.1\n500 0.5 0.1\n");
    source.MasterFile = folder.Path("R.dat");
    EXPECT_TRUE(session.LoadDataset(2, source).Ok());
    model = *session.NewModel();
    graph = *session.NewGraph();
    EXPECT_TRUE(session.AddCurve(graph, DataCurve(Slot())).Ok());
    EXPECT_TRUE(session.AddCurve(graph, ModelCurve(*session.FindModel(model), kRefl)).Ok());
    EXPECT_TRUE(session.AddCurve(graph, ChiSqCurve(Slot(), *session.FindModel(model))).Ok());
    EXPECT_TRUE(session.OpenFit().Ok());
    EXPECT_TRUE(session.AddTerm(2, model, {}).Ok());
    session.Listen(ears);
    Look();
  }
  const Dataset& Slot() const { return session.Datasets().slots[1]; }
  const Graph& Shown() const { return *session.FindGraph(graph); }
  // Paints the graph, so that nothing in it is stale.
  void Look() {
    PixelSurface surface(Shown().Width, Shown().Height, 0);
    session.PaintGraph(graph, surface);
    ASSERT_EQ(Shown().staleKinds, 0u);
  }
  std::vector<CurveKind> StaleKinds() const {
    std::vector<CurveKind> kinds;
    for (int kind = 0; kind < kCurveKinds; ++kind) {
      if (Shown().staleKinds >> kind & 1u) kinds.push_back(static_cast<CurveKind>(kind));
    }
    return kinds;
  }
  std::vector<CurveKind> CurvesShown() const {
    std::vector<CurveKind> kinds;
    for (const Curve& curve : Shown().curves) kinds.push_back(curve.kind);
    return kinds;
  }
  std::size_t Terms() const { return session.Fit().list.terms.size(); }
  using Kinds = std::vector<CurveKind>;

  ScratchFolder folder;
  InFolder inside{folder.Name()};
  TestPlatform platform;
  Session session{platform, 1, Defaults::kFormer};
  Ears ears{session};
  DatasetSource source;
  std::uint32_t model = 0, graph = 0;
};

TEST_F(Datasets, ALoadIsToldWithTheNewIdAndNeitherGraphsNorFitHearOfIt) {
  const double chiSq = session.Fit().TotalChiSq;
  ASSERT_TRUE(session.LoadDataset(3, source).Ok());
  EXPECT_EQ(ears.told, (Told{"loaded 3, id 2, 5 rows"}));
  EXPECT_EQ(StaleKinds(), Kinds());
  EXPECT_EQ(session.Fit().TotalChiSq, chiSq);
}

TEST_F(Datasets, TransformingMakesCurvesOfDataStaleAndComputesTheFitAnew) {
  const double chiSq = session.Fit().TotalChiSq;
  ASSERT_TRUE(session.TransformDataset(2, 4, 0.5).Ok());
  EXPECT_EQ(Slot().points[1].y, 4 * 0.2 + 0.5);
  EXPECT_EQ(StaleKinds(), (Kinds{CurveKind::kData, CurveKind::kChiSq}));
  EXPECT_NE(session.Fit().TotalChiSq, chiSq);
  EXPECT_EQ(Terms(), 1u);
  EXPECT_EQ(ears.told, (Told{"values, 5 rows", "changed 2, id 1, 5 rows"}));
}

TEST_F(Datasets, NoiseMakesTheTermsLeaveTheFitAndForcesAnUpdateOfTheGraphs) {
  ASSERT_TRUE(session.SetAutoScreenUpdate(false).Ok());
  Look();
  ears.told.clear();
  ASSERT_TRUE(session.AddNoise(2, 0.25).Ok());
  for (const DataRow& row : Slot().points) EXPECT_EQ(row.sigma, 0.25);
  EXPECT_EQ(StaleKinds(), (Kinds{CurveKind::kModel, CurveKind::kChiSq, CurveKind::kMulti, CurveKind::kFreq}));
  EXPECT_EQ(Terms(), 0u);
  EXPECT_EQ(session.Fit().TotalChiSq, 0);
  EXPECT_EQ(ears.told, (Told{"terms, 5 rows", "changed 2, id 1, 5 rows"}));
}

TEST_F(Datasets, NoiseStartsFromTheClock) {
  platform.clock = [] { return std::int64_t{77}; };
  Session later(platform);
  ASSERT_TRUE(later.LoadDataset(2, source).Ok());
  ASSERT_TRUE(later.AddNoise(3, 1).Ok());  // no random numbers are drawn for a slot without rows
  ASSERT_TRUE(later.AddNoise(2, 0.5).Ok());
  NoiseGenerator same;
  SeedNoise(same, 77);
  const std::vector<DataRow>& rows = later.Datasets().slots[1].points;
  for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(rows[i].y, Slot().points[i].y + 0.5 * NextNormal(same));
}

TEST_F(Datasets, ACutThatIsHeardLaterReachesNeitherGraphsNorFit) {
  const double chiSq = session.Fit().TotalChiSq;
  ASSERT_TRUE(session.CutDataset(2, 200, 400, Heard::kLater).Ok());
  EXPECT_EQ(Slot().nActive, 2);
  EXPECT_EQ(StaleKinds(), Kinds());
  EXPECT_EQ(session.Fit().TotalChiSq, chiSq);
  EXPECT_EQ(ears.told, (Told{"changed 2, id 1, 5 rows"}));
  // The new range takes effect at the next rebuilding.
  ASSERT_TRUE(session.TransformDataset(2, 1, 0).Ok());
  EXPECT_LT(session.Fit().TotalChiSq, chiSq);
}

TEST_F(Datasets, ACutThatIsHeardAtOnceReachesBoth) {
  const double chiSq = session.Fit().TotalChiSq;
  ASSERT_TRUE(session.CutDataset(2, 200, 400, Heard::kAtOnce).Ok());
  EXPECT_EQ(StaleKinds(), (Kinds{CurveKind::kData, CurveKind::kChiSq}));
  EXPECT_LT(session.Fit().TotalChiSq, chiSq);
}

TEST_F(Datasets, AnotherQuantityIsHeardLaterOrAtOnce) {
  const double chiSq = session.Fit().TotalChiSq;
  ASSERT_TRUE(session.SetDatasetQuantity(2, kE1, Heard::kLater).Ok());
  EXPECT_EQ(Slot().Quantity, kE1);
  EXPECT_EQ(session.Fit().TotalChiSq, chiSq);
  ASSERT_TRUE(session.SetDatasetQuantity(2, kE2, Heard::kAtOnce).Ok());
  EXPECT_NE(session.Fit().TotalChiSq, chiSq);
  EXPECT_EQ(StaleKinds(), (Kinds{CurveKind::kData, CurveKind::kChiSq}));
  EXPECT_EQ(Slot().Quantity, kE2);
}

TEST_F(Datasets, UnloadingTakesCurvesAndTermsAndIsToldOnceTheSlotIsFree) {
  ASSERT_TRUE(session.UnloadDataset(2).Ok());
  EXPECT_EQ(CurvesShown(), (Kinds{CurveKind::kModel}));
  EXPECT_EQ(Terms(), 0u);
  EXPECT_EQ(session.FindDataset(2), nullptr);
  EXPECT_EQ(ears.told, (Told{"terms, 0 rows", "unloaded 2, id 1, 0 rows"}));
}

TEST_F(Datasets, WhileTheFitIsClosedItDoesNotHearOfThem) {
  ASSERT_TRUE(session.CloseFit().Ok());
  const double chiSq = session.Fit().TotalChiSq;
  ASSERT_TRUE(session.TransformDataset(2, 4, 0.5).Ok());
  ASSERT_TRUE(session.AddNoise(2, 0.25).Ok());
  ASSERT_TRUE(session.UnloadDataset(2).Ok());
  EXPECT_EQ(Terms(), 1u);
  EXPECT_EQ(session.Fit().TotalChiSq, chiSq);
  EXPECT_EQ(CurvesShown(), (Kinds{CurveKind::kModel}));  // the graphs are notified in any case
}

// The session does not check whether a slot is loaded. For an empty slot the notification has the id 0.
TEST_F(Datasets, OperationsOnAFreeSlotSayTheIdZeroAndChangeNothing) {
  ASSERT_TRUE(session.TransformDataset(3, 2, 1).Ok());
  ASSERT_TRUE(session.CutDataset(3, 5, 6, Heard::kLater).Ok());
  ASSERT_TRUE(session.AddNoise(3, 1).Ok());
  ASSERT_TRUE(session.UnloadDataset(3).Ok());
  EXPECT_EQ(ears.told, (Told{"values, 5 rows", "changed 3, id 0, 5 rows", "changed 3, id 0, 5 rows", "terms, 5 rows",
                             "changed 3, id 0, 5 rows", "terms, 5 rows", "unloaded 3, id 0, 5 rows"}));
  EXPECT_EQ(CurvesShown().size(), 3u);
  EXPECT_EQ(Terms(), 1u);
  EXPECT_EQ(CountDatasets(session.Datasets()), 1);
}

TEST_F(Datasets, ATermOfAFreeSlotLeavesTheFitWithIt) {
  ASSERT_TRUE(session.AddTerm(3, model, {}).Ok());
  ASSERT_EQ(Terms(), 2u);
  ASSERT_TRUE(session.UnloadDataset(4).Ok());  // any free slot: the term's dataset has the id 0
  EXPECT_EQ(Terms(), 1u);
}

TEST_F(Datasets, WithoutListenersTheyWorkTheSame) {
  Session alone(platform);
  ASSERT_TRUE(alone.LoadDataset(2, source).Ok());
  EXPECT_TRUE(alone.TransformDataset(2, 2, 0).Ok());
  EXPECT_TRUE(alone.AddNoise(2, 0).Ok());
  EXPECT_EQ(alone.FindDataset(2)->points[4].y, 1.0);
  EXPECT_TRUE(alone.UnloadDataset(2).Ok());
  EXPECT_EQ(CountDatasets(alone.Datasets()), 0);
}

TEST_F(Datasets, SlotsOutsideTheTableAreRefusedAndNobodyIsTold) {
  const std::string before = StateOf(session);
  for (const int slot : {0, 101, -1}) {
    const std::array outcomes = {session.LoadDataset(slot, source),
                                 session.ClearDataset(slot),
                                 session.UnloadDataset(slot),
                                 session.TransformDataset(slot, 1, 1),
                                 session.CutDataset(slot, 1, 2, Heard::kAtOnce),
                                 session.SetDatasetQuantity(slot, kE1, Heard::kAtOnce),
                                 session.AddNoise(slot, 1),
                                 session.ExportDataset(slot, folder.Path("c"), false, false)};
    for (const Status& status : outcomes) EXPECT_EQ(status.Code(), StatusCode::kBadArgument) << slot;
  }
  EXPECT_FALSE(folder.Has("c"));
  EXPECT_EQ(StateOf(session), before);
  EXPECT_TRUE(ears.told.empty());
}

TEST_F(Datasets, ALoadThatFailsAtItsLastCheckLeavesRowsUntilAllAreUnloaded) {
  source.YErrMethod = ErrorSource::kFixed;
  source.YErrVal = 0;
  EXPECT_EQ(session.LoadDataset(3, source).Text(), "YErr should be larger than 0.");
  EXPECT_EQ(session.FindDataset(3), nullptr);
  EXPECT_EQ(session.Datasets().slots[2].points.size(), 5u);
  EXPECT_EQ(ears.told, (Told{"loaded 3, id 0, 5 rows"}));
  ASSERT_TRUE(session.UnloadAllDatasets().Ok());
  EXPECT_TRUE(session.Datasets().slots[2].points.empty());
  EXPECT_EQ(CountDatasets(session.Datasets()), 0);
}

TEST_F(Datasets, UnloadingAllIsOneStep) {
  for (const int slot : {1, 4}) ASSERT_TRUE(session.LoadDataset(slot, source).Ok());
  const std::string loaded = StateOf(session);
  ears.told.clear();
  ears.statements.clear();
  ASSERT_TRUE(session.UnloadAllDatasets().Ok());
  EXPECT_EQ(CountDatasets(session.Datasets()), 0);
  EXPECT_EQ(ears.statements,
            (Told{"UnloadDataset(DatasetNo=1);\nUnloadDataset(DatasetNo=2);\nUnloadDataset(DatasetNo=4);"}));
  ASSERT_TRUE(session.StepBack().Ok());
  EXPECT_EQ(StateOf(session), loaded);
  EXPECT_EQ(CountDatasets(session.Datasets()), 3);
}

TEST_F(Datasets, ClearingForgetsTheSourceOfAFailedLoad) {
  source.MasterFile = "none.dat";
  EXPECT_FALSE(session.LoadDataset(3, source).Ok());
  EXPECT_EQ(session.Datasets().slots[2].MasterFile, "none.dat");
  ASSERT_TRUE(session.ClearDataset(3).Ok());
  EXPECT_EQ(session.Datasets().slots[2].MasterFile, "");
}

}  // namespace
}  // namespace kalvex
