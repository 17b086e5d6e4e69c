// The additional commands: rows of a model, closing models, dumps and lines on standard output.
#include <cmath>

#include "app/kalvex_run.h"
#include "app/saved_model.h"

namespace kalvex {
namespace {

class OwnCommands : public Kalvex {
 protected:
  // A model whose rows have these frequencies; Wp falls and G rises from row to row.
  static std::string Rows(const std::vector<int>& frequencies) {
    std::string macro = "NewModel();RemoveModelRow(ModelNo=1,LorNo=1);";
    for (std::size_t r = 1; r <= frequencies.size(); ++r) {
      macro += "InsertModelRow(ModelNo=1);" +
               Setting(1, "Wo", static_cast<int>(r), "Value=" + std::to_string(frequencies[r - 1])) +
               Setting(1, "Wp", static_cast<int>(r), "Value=" + std::to_string(900 - 100 * r)) +
               Setting(1, "G", static_cast<int>(r), "Value=" + std::to_string(r));
    }
    return macro;
  }
  std::vector<int> FrequenciesAfter(const std::string& macro) {
    Run(macro + "SaveModel(File=\"m.kvm\");");
    const SavedModel model = SavedModelOf(folder.Read("m.kvm"));
    std::vector<int> found;
    for (std::size_t i = 0; i < model.elements.size(); i += 3)
      found.push_back(static_cast<int>(model.elements[i].value));
    return found;
  }
};
using Frequencies = std::vector<int>;

TEST_F(OwnCommands, ARowIsInsertedAtItsPlaceOrAtTheEnd) {
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20}) + "InsertModelRow(ModelNo=1,LorNo=1);"), (Frequencies{100, 10, 20}));
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20}) + "InsertModelRow(ModelNo=1,LorNo=2);"), (Frequencies{10, 100, 20}));
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20}) + "InsertModelRow(ModelNo=1,LorNo=3);"), (Frequencies{10, 20, 100}));
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20}) + "InsertModelRow(ModelNo=1);"), (Frequencies{10, 20, 100}));
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20}) + "InsertModelRow(ModelNo=1,LorNo=99);"), (Frequencies{10, 20, 100}));
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20}) + "InsertModelRow(ModelNo=1,LorNo=-5);"), (Frequencies{100, 10, 20}));
  EXPECT_EQ(Said("InsertModelRow"), "model 1 has 3 rows");
}

TEST_F(OwnCommands, ARowIsRemoved) {
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20, 30}) + "RemoveModelRow(ModelNo=1,LorNo=2);"), (Frequencies{10, 30}));
  EXPECT_EQ(FrequenciesAfter(Rows({10}) + "RemoveModelRow(ModelNo=1,LorNo=1);"), Frequencies{});
}

TEST_F(OwnCommands, ARowMovesUpOrDown) {
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20, 30}) + "MoveModelRow(ModelNo=1,LorNo=3,Up=1);"), (Frequencies{10, 30, 20}));
  EXPECT_EQ(Said("MoveModelRow"), "row 3 moved up");
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20, 30}) + "MoveModelRow(ModelNo=1,LorNo=1,Up=0);"), (Frequencies{20, 10, 30}));
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20, 30}) + "MoveModelRow(ModelNo=1,LorNo=2);"), (Frequencies{10, 30, 20}));
  EXPECT_EQ(Said("MoveModelRow"), "row 2 moved down");
}

TEST_F(OwnCommands, TheFirstRowDoesNotMoveUpNorTheLastDown) {
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20}) + "MoveModelRow(ModelNo=1,LorNo=1,Up=1);"), (Frequencies{10, 20}));
  EXPECT_EQ(Said("MoveModelRow"), "nothing done: row 1 is the first");
  EXPECT_EQ(FrequenciesAfter(Rows({10, 20}) + "MoveModelRow(ModelNo=1,LorNo=2);"), (Frequencies{10, 20}));
  EXPECT_EQ(Said("MoveModelRow"), "nothing done: row 2 is the last");
}

TEST_F(OwnCommands, SortingFlipsTheOrderOfTheEnds) {
  const std::string rows = Rows({20, 10, 30});
  const auto sorted = [&](int key) { return "SortModelRows(ModelNo=1,Key=" + std::to_string(key) + ");"; };
  EXPECT_EQ(FrequenciesAfter(rows + sorted(1)), (Frequencies{30, 20, 10}));
  EXPECT_EQ(FrequenciesAfter(rows + sorted(1) + sorted(1)), (Frequencies{10, 20, 30}));
  EXPECT_EQ(FrequenciesAfter(rows + sorted(2)), (Frequencies{30, 10, 20}));  // Wp 800, 700, 600
  EXPECT_EQ(FrequenciesAfter(rows + sorted(3)), (Frequencies{30, 10, 20}));  // G 1, 2, 3
  // (Wp/Wo)^2 is 1600, 4900, 400 and G/Wo is 0.05, 0.2, 0.1.
  EXPECT_EQ(FrequenciesAfter(rows + sorted(4)), (Frequencies{30, 20, 10}));
  EXPECT_EQ(FrequenciesAfter(rows + sorted(5)), (Frequencies{10, 30, 20}));
}

TEST_F(OwnCommands, RowCommandsNeedAModelAndARow) {
  const struct {
    const char* statement;
    const char* said;
  } kCases[] = {
      {"InsertModelRow(LorNo=1);", "ModelNo is missing"},
      {"InsertModelRow(ModelNo=2);", "model 2 does not exist"},
      {"RemoveModelRow(LorNo=1);", "ModelNo is missing"},
      {"RemoveModelRow(ModelNo=2,LorNo=1);", "model 2 does not exist"},
      {"RemoveModelRow(ModelNo=1);", "LorNo is missing"},
      {"RemoveModelRow(ModelNo=1,LorNo=2);", "model 1 has no row 2"},
      {"RemoveModelRow(ModelNo=1,LorNo=0);", "model 1 has no row 0"},
      {"MoveModelRow(LorNo=1);", "ModelNo is missing"},
      {"MoveModelRow(ModelNo=1);", "LorNo is missing"},
      {"MoveModelRow(ModelNo=1,LorNo=3,Up=1);", "model 1 has no row 3"},
      {"SortModelRows(Key=1);", "ModelNo is missing"},
      {"SortModelRows(ModelNo=1);", "Key is missing"},
      {"SortModelRows(ModelNo=1,Key=0);", "Key should be 1 to 5"},
      {"SortModelRows(ModelNo=1,Key=6);", "Key should be 1 to 5"},
      {"CloseModel();", "ModelNo is missing"},
      {"CloseModel(ModelNo=2);", "model 2 does not exist"},
      {"CloseModel(ModelNo=0);", "model 0 does not exist"},
      {"FitOptions();", "no option is given"},
      {"MakeVarDielFuncPositive(ModelNo=1);", "model 1 has no mesh"},
      {"MakeVarDielFuncPositive();", "ModelNo is missing"},
      {"SaveParams(File=\"no/x\");", "'no/x' cannot be written"},
      {"LoadParams(File=\"none\");", "'none' cannot be opened"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(SaidLast("NewModel();" + std::string(c.statement)), "nothing done: " + std::string(c.said))
        << c.statement;
  }
  EXPECT_EQ(SaidLast("NewModel();RemoveModelRow(ModelNo=1,LorNo=1);SortModelRows(ModelNo=1,Key=1);"),
            "nothing done: there are no rows");
}

TEST_F(OwnCommands, AClosedModelIsGone) {
  Run("NewModel();NewModel();CloseModel(ModelNo=1);SaveModel(ModelNo=1,File=\"a.kvm\");NewModel();");
  EXPECT_EQ(Said("CloseModel"), "model 1 closed");
  EXPECT_EQ(Said("SaveModel"), "nothing done: model 1 does not exist");
  EXPECT_EQ(Said("NewModel"), "model 3 created");
}

TEST_F(OwnCommands, EchoPrintsOneLineOnStandardOutput) {
  folder.Write("loop", "a 1\nb\n");
  Run("Echo(Text=\"outside %1\");Echo();Echo(Text=\" two  blanks # \");BeginLoop(LoopFile=\"loop\");"
      "Echo(Text=\"%1-%2-%9\");EndLoop();");
  EXPECT_EQ(run.out, "outside %1\n\n two  blanks # \na-1-%9\nb--%9\n");
  EXPECT_EQ(Said("Echo"), "one line printed");
  Run("Echo(Text=\"" + std::string(300, 'x') + "\");");
  EXPECT_EQ(run.out, std::string(200, 'x') + "\n");
}

TEST_F(OwnCommands, DumpsOfAModelThatDependsOnNoMeshAreZeroAndUndefined) {
  folder.Write("R.dat", "100 .5\n200 .5\n300 .5\n");
  const std::string models = "NewModel();NewModel();NewModel();LoadDataset(MasterFile=\"R.dat\");";
  const std::string meshes = "VarDielFunc(ModelNo=1,Source1DatasetNo=1);VarDielFunc(ModelNo=2,Source1DatasetNo=1);";
  EXPECT_EQ(SaidLast(models + meshes + "CutDataset(XMax=250);DumpSensitivity();"), "written to 'Jakob2.dat'");
  EXPECT_EQ(folder.Read("Jakob2.dat"), "100 2E+30 2E+30\n200 2E+30 2E+30\n");
  EXPECT_EQ(SaidLast(models + meshes + "NewModel();DumpDerivatives();"), "written to 'Jakob.dat'");
  const Table dump = Written("Jakob.dat");
  ASSERT_EQ(dump.size(), 3u);
  for (const auto& line : dump) {
    ASSERT_EQ(line.size(), 17u);
    for (std::size_t i = 1; i < 17; ++i) EXPECT_EQ(line[i], 0);
  }
}

TEST_F(OwnCommands, DumpsNeedTheirModelsAndTheirDataset) {
  EXPECT_EQ(SaidLast("DumpDerivatives();"), "nothing done: it needs dataset 1 and models 1 to 4");
  EXPECT_EQ(SaidLast("NewModel();NewModel();DumpSensitivity();"), "nothing done: it needs dataset 1 and models 1 to 3");
  EXPECT_EQ(SaidLast("QuantityErrorBars();"), "nothing done: it needs three ChiSq terms");
}

// The third dataset has tiny error bars and fixes the reflectivity at 0.90 to 1.10 of the fitted one. The sum of the
// other two terms then follows by hand.
TEST_F(OwnCommands, ErrorBarsOfAQuantityAreChiSqAgainstItsValue) {
  folder.Write("Ra.dat", "100 0.25 0.1\n200 0.25 0.1\n");
  folder.Write("Rb.dat", "100 0.25 0.2\n");
  folder.Write("Rc.dat", "100 0.3 1e-7\n200 0.3 1e-7\n");
  Run("LoadDataset(MasterFile=\"Ra.dat\");LoadDataset(DatasetNo=2,MasterFile=\"Rb.dat\");"
      "LoadDataset(DatasetNo=3,MasterFile=\"Rc.dat\");" +
      FlatModel(1, 4) +
      "WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);AddChiSqTerm(DatasetNo=2,ModelNo=1,Weight=3);"
      "AddChiSqTerm(DatasetNo=3,ModelNo=1);QuantityErrorBars();ExportDataset(DatasetNo=3,File=\"after\");");
  EXPECT_EQ(Said("QuantityErrorBars"), "written to 'QntyErrorBars.dat'");
  const Table bars = Written("QntyErrorBars.dat");
  ASSERT_EQ(bars.size(), 2u);
  // The runs stop when ChiSq falls by less than 0.001. The constant and ChiSq are then this far from the minimum.
  constexpr double kStopRule = 1e-4, kStopRuleOfChiSq = 1e-3;
  for (const auto& line : bars) {
    ASSERT_EQ(line.size(), 13u);
    EXPECT_CLOSE(line[1], 0.25, kStopRule);
    for (int k = -5; k <= 5; ++k) {
      const double d = 0.25 - line[1] * (1 + 0.02 * k);
      const double expected = 2 * std::pow(d / 0.1, 2) + 3 * std::pow(d / 0.2, 2);
      EXPECT_NEAR(line[static_cast<std::size_t>(7 + k)], expected, kStopRuleOfChiSq * expected + 2 * kSixDigits) << k;
    }
  }
  EXPECT_EQ(bars[1][0], 200);
  EXPECT_EQ(folder.Read("after"), "100 0.3\n200 0.3\n");
}

}  // namespace
}  // namespace kalvex
