// Lists that are outdated because rows, meshes or models were removed. Each operation on the fit rebuilds them, and its
// result equals that with up-to-date lists. Under the sanitizers this detects an access to a removed parameter.
#include <functional>
#include <string>
#include <vector>

#include "files/model_file.h"
#include "fit/derivative_test.h"
#include "fit/param_places.h"
#include "fit/running.h"
#include "records/vdf_mesh.h"
#include "support/program_state.h"

namespace kalvex {
namespace {

// Model 1 has three rows, model 2 a row and a mesh, and model 3 only a constant. Each has a term. The meshes have the
// frequencies of datasets 4 and 5.
struct Stale : SampleFit {
  Model& rows;
  Model& mesh;
  Model& constant;

  Stale() : rows(AddModel(4, 120, 250, 8)), mesh(AddModel(3, 90, 150, 15)), constant(AddModel(2.5, 400, 0, 1)) {
    FixAll(constant, true);
    for (const int slot : {4, 5}) Measure(slot, rows, kRefl, 0.01, 0, slot == 4 ? 12 : 5);
    AddRow(150);
    AddRow(200);
    MakeMesh(4);
    Measure(1, rows, kRefl, 0.01, 0.002, 30);
    Measure(2, mesh, kE2, 0.5, 0.1, 30);
    Measure(3, constant, kE1, 0.1, 0.02, 4);
    constant.epsInf.adjustable = 1;
    Cell(rows, 0, Wp).value *= 1.05;
    Cell(mesh, 0, Wo).value *= 1.02;
    constant.epsInf.value = 2.6;
    for (int slot = 1; slot <= 3; ++slot) Term(slot, static_cast<std::uint32_t>(slot));
    fit().options.StopOnIterations = true;
    fit().options.MaxIterations = 2;
  }

  void AddRow(double wo) {
    const int row = RowCount(rows);
    InsertRow(rows, row);
    Cell(rows, row, Wo).value = wo;
    Cell(rows, row, Wp).value = 60;
    Cell(rows, row, G).value = 6;
  }
  void MakeMesh(int slot) {
    VarDielFunc& vdf = mesh.vdf;
    vdf.source[0].datasetId = tables.datasets.slots[static_cast<std::size_t>(slot - 1)].id;
    vdf.initOn = vdf.initFitActive = 1;
    ASSERT_TRUE(InitVdfMesh(vdf, tables.datasets).Ok());
  }
};

struct Change {
  const char* name;
  void (*make)(Stale&);
};
const Change kChanges[] = {
    {"TwoRemovedRows",
     [](Stale& s) {
       RemoveRow(s.rows, 2);
       RemoveRow(s.rows, 0);
       s.rows.rows.shrink_to_fit();
     }},
    {"NoRowLeft",
     [](Stale& s) {
       ClearRows(s.rows);
       s.rows.rows.shrink_to_fit();
     }},
    {"AShorterLoadedModel",
     [](Stale& s) {
       ASSERT_TRUE(SaveModel(s.tables.eval, s.mesh, 0, "short.kvm").Ok());
       ASSERT_TRUE(LoadModel(s.rows, "short.kvm").Ok());
       s.rows.rows.shrink_to_fit();
     }},
    {"ANewMesh",
     [](Stale& s) {
       s.MakeMesh(5);
       s.mesh.vdf.mesh.shrink_to_fit();
     }},
    {"NoMeshLeft",
     [](Stale& s) {
       ClearVdf(s.mesh.vdf);
       s.mesh.vdf.mesh.shrink_to_fit();
     }},
    {"AClosedModel", [](Stale& s) { CloseModelRecord(s.rows); }},
    {"AClosedModelAndANewOneInItsEntry",
     [](Stale& s) {
       CloseModelRecord(s.rows);
       ASSERT_EQ(CreateModel(s.tables.params), &s.rows);
     }},
};

// The result of an operation: its file, the values, the lists and the sums of squares.
struct Left {
  Status status;
  std::string file;
  std::vector<double> numbers;
  Texts places;
  int free = 0;
};

class StaleLists : public testing::TestWithParam<Change> {
 protected:
  StaleLists() : inside(folder.Name()) {}

  Left After(bool fresh, const std::function<Status(Stale&)>& operation, const std::string& file) {
    Stale s;
    GetParam().make(s);
    if (fresh) s.Rebuild();
    Left left;
    left.status = operation(s);
    if (!file.empty()) left.file = folder.Read(file);
    for (const Model& model : s.tables.params.models) {
      ForEachParam(model, [&](const ModelParam& param) {
        left.numbers.push_back(param.value);
        left.numbers.push_back(param.error);
      });
    }
    for (const ChiSqTerm& term : s.fit().list.terms) left.numbers.push_back(term.termChiSq);
    left.numbers.push_back(s.fit().TotalChiSq);
    left.places = Places(s.fit());
    left.free = s.fit().NumFreeParams;
    return left;
  }

  void ExpectTheSameAsWithFreshLists(const std::function<Status(Stale&)>& operation, const std::string& file) {
    const Left stale = After(false, operation, file), fresh = After(true, operation, file);
    EXPECT_TRUE(stale.status.Ok());
    EXPECT_TRUE(fresh.status.Ok());
    EXPECT_EQ(stale.file, fresh.file);
    EXPECT_EQ(stale.places, fresh.places);
    EXPECT_EQ(stale.free, fresh.free);
    EXPECT_GT(fresh.free, 0);
    EXPECT_TRUE(SameBits(stale.numbers, fresh.numbers));
  }

  ScratchFolder folder;
  InFolder inside;
};

TEST_P(StaleLists, AreMadeAnewForTheTestOfDerivatives) {
  ExpectTheSameAsWithFreshLists([](Stale& s) { return TestDerivatives(s.fit(), s.tables.params, s.tables.eval); },
                                "TestDeriv1.txt");
}

TEST_P(StaleLists, AreMadeAnewForTheTestOfQuantities) {
  const auto test = [](Stale& s) {
    Status status = TestQuantityDerivatives(s.fit(), s.tables.params, s.tables.eval);
    ComputeChiSq(s.fit(), s.tables.eval);
    return status;
  };
  ExpectTheSameAsWithFreshLists(test, "TestDeriv.txt");
}

TEST_P(StaleLists, AreMadeAnewForErrorBarsOfAQuantity) {
  ExpectTheSameAsWithFreshLists([](Stale& s) { return s.ErrorBars(); }, "QntyErrorBars.dat");
}

TEST_P(StaleLists, AreMadeAnewForARun) {
  const auto run = [](Stale& s) {
    s.fit().options.CalcConfidence = true;
    s.Run();
    EXPECT_GT(s.fit().IterationCount, 0);
    EXPECT_LT(s.fit().TotalChiSq, s.fit().report.startChiSq);
    return Status();
  };
  ExpectTheSameAsWithFreshLists(run, "Params.dat");
}

TEST_P(StaleLists, CanBeTakenBackFromTheValuesStoredAnew) {
  const auto runAndUndo = [](Stale& s) {
    std::vector<double> before, after;
    const auto valuesInto = [&](std::vector<double>& values) {
      for (const ModelParam* const cell : s.Cells()) values.push_back(cell->value);
    };
    StoreStartValues(s.fit(), s.tables.params, s.tables.eval);
    valuesInto(before);
    EXPECT_EQ(s.fit().startValues, before);
    s.Run();
    s.Undo();
    valuesInto(after);
    EXPECT_EQ(after, before);
    return Status();
  };
  ExpectTheSameAsWithFreshLists(runAndUndo, "");
}

TEST_P(StaleLists, TakeNothingBackFromARunOnWhatIsGone) {
  Stale s;
  s.RunWithUndo();
  GetParam().make(s);
  std::vector<double> before, after;
  const auto valuesInto = [&](std::vector<double>& values) {
    for (const Model& model : s.tables.params.models) {
      ForEachParam(model, [&](const ModelParam& param) { values.push_back(param.value); });
    }
  };
  valuesInto(before);
  s.Undo();
  valuesInto(after);
  EXPECT_EQ(after, before);
  EXPECT_FALSE(s.fit().startValuesStored);
  const Texts places = Places(s.fit());
  s.Rebuild();
  EXPECT_EQ(places, Places(s.fit()));
}

INSTANTIATE_TEST_SUITE_P(Of, StaleLists, testing::ValuesIn(kChanges),
                         [](const testing::TestParamInfo<Change>& change) { return change.param.name; });

// A row after the others removes no parameter, but all of them move in memory.
TEST_F(Running, ListsFromBeforeANewRowKeepTheirParameters) {
  Prepare(0.02);
  const Texts places = Places(fit());
  model.rows.shrink_to_fit();
  InsertRow(model, 1);
  Cell(model, 1, Wo).value = 180;
  ASSERT_TRUE(TestDerivatives(fit(), s.tables.params, s.tables.eval).Ok());
  EXPECT_EQ(Places(fit()), places);
  const std::string table = folder.Read("TestDeriv1.txt");
  EXPECT_EQ(table.substr(0, table.find('\n')), "NumParams = 4");
  EXPECT_EQ(table.find("(!!!)"), std::string::npos);
  s.RunWithUndo();
  EXPECT_LT(fit().TotalChiSq, fit().report.startChiSq);
  s.Undo();
  EXPECT_EQ(Cell(model, 0, Wo).value, 116);
}

TEST_F(Running, WithAllItsParametersGoneARunHasNothingToFit) {
  Prepare(0.02);
  CloseModelRecord(model);
  options().LogFit = true;
  int calls = 0;
  RunWatch watch;
  watch.iterationDone = watch.poll = [&] { ++calls; };
  s.Run(watch);
  EXPECT_EQ(Stop(), "no parameter to fit");
  EXPECT_EQ(fit().NumFitParams, 0);
  EXPECT_EQ(calls, 0);
  EXPECT_FALSE(fit().FitRunning);
  EXPECT_FALSE(folder.Has("Fitlog.dat"));
}

}  // namespace
}  // namespace kalvex
