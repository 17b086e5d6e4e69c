// Graphs in macros: verbose texts and exported files of the real program.
#include "app/kalvex_run.h"

namespace kalvex {
namespace {

class GraphCommands : public Kalvex {
 protected:
  // A dataset of three points in slot 1, model 1 with one oscillator, graph 1.
  std::string Start() {
    folder.Write("R_a.dat", "100 0.5 0.1\n200 0.6 0.1\n300 0.7 0.1\n");
    return "LoadDataset(MasterFile=\"R_a.dat\");" + OscillatorModel({2, 150, 300, 20}) + "NewGraph();";
  }
  // The header and the rows of an exported graph.
  std::string header;
  Table Exported(const std::string& commands) {
    Run(Start() + commands + "ExportGraph(GraphNo=1,File=\"g.dat\");");
    const std::string text = folder.Read("g.dat");
    header = text.substr(0, text.find('\n'));
    return NumbersOf(text.substr(text.find('\n') + 1));
  }
};

TEST_F(GraphCommands, SayWhatTheyDid) {
  EXPECT_EQ(SaidLast("NewGraph();"), "graph 1: plot of 329 x 243 pixels");
  EXPECT_EQ(SaidLast("NewGraph(XPos=1,YPos=2,Width=800,Height=600);"), "graph 1: plot of 729 x 543 pixels");
  EXPECT_EQ(SaidLast("NewGraph(XPos=1,Width=800,Height=600);"), "graph 1: plot of 329 x 243 pixels");
  EXPECT_EQ(SaidLast(Start() + "AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"r\",nColor=5);"),
            "graph 1: MODEL [R] \"M1\", Cyan");
  EXPECT_EQ(SaidLast(Start() + "AddDataCurve(GraphNo=1,DatasetNo=1,ShowLine=1);"),
            "graph 1: DATA [R] \"R_a.dat\", Black");
  EXPECT_EQ(SaidLast(Start() + "AddChiSqCurve(GraphNo=1,DatasetNo=1,ModelNo=1);"),
            "graph 1: CHI-SQ [R] \"R_a.dat\" - \"M1\", Black");
  EXPECT_EQ(SaidLast(Start() + "AddMultiCurve(GraphNo=1,ModelNo=1,Quantity=\"E1\");"),
            "graph 1: MULTI [E1] \"M1\", Black");
  EXPECT_EQ(SaidLast(Start() + "AddFreqCurve(GraphNo=1,ModelNo=1);"), "graph 1: FREQ \"M1\", Black");
  EXPECT_EQ(SaidLast(Start() + "CloseGraph(GraphNo=1);"), "graph 1 closed");
  EXPECT_EQ(SaidLast(Start() + "AddDataCurve(GraphNo=1,DatasetNo=1);DeleteDataCurve(GraphNo=1,DatasetNo=1);"),
            "graph 1 has 0 curves");
}

TEST_F(GraphCommands, NeedWhatTheyNeed) {
  const struct {
    const char* statement;
    const char* said;
  } kCases[] = {
      {"GraphProperties(Xmin=5);", "GraphNo is missing"},
      {"GraphProperties(GraphNo=2,Xmin=5);", "graph 2 does not exist"},
      {"GraphProperties(GraphNo=-1);", "graph -1 does not exist"},
      {"AddDataCurve(GraphNo=1);", "DatasetNo is missing"},
      {"AddDataCurve(GraphNo=1,DatasetNo=2);", "dataset 2 is not loaded"},
      {"AddDataCurve(GraphNo=1,DatasetNo=101);", "dataset 101 is not loaded"},
      {"AddModelCurve(GraphNo=1,Quantity=\"R\");", "ModelNo is missing"},
      {"AddModelCurve(GraphNo=1,ModelNo=9,Quantity=\"R\");", "model 9 does not exist"},
      {"AddModelCurve(GraphNo=1,ModelNo=1);", "Quantity is missing"},
      {"AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"Refl\");", "'Refl' is not a Quantity"},
      {"AddMultiCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");", "a MULTI curve can show E1, E2, S1 and S2 only"},
      {"AddChiSqCurve(GraphNo=1,DatasetNo=1);", "ModelNo is missing"},
      {"AddFreqCurve(GraphNo=7,ModelNo=1);", "graph 7 does not exist"},
      {"DeleteModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");", "graph 1 has no such curve"},
      {"DeleteDataCurve(GraphNo=1,DatasetNo=1);", "graph 1 has no such curve"},
      {"ExportGraph(GraphNo=1);", "File is missing"},
      {"ExportGraph(GraphNo=1,File=\"no/such/folder\");", "'no/such/folder' cannot be written"},
      {"DrawGraph(GraphNo=1,File=\"g.jpg\");", "'g.jpg' does not end in .svg, .pdf or .png"},
      {"DrawGraph(GraphNo=1,File=\"g.png\",Width=0);", "a picture has 1 to 16000 pixels along each side"},
      {"DrawGraph(GraphNo=1,File=\"no/such/g.png\");", "'no/such/g.png' cannot be written"},
      {"CloseGraph();", "GraphNo is missing"},
  };
  for (const auto& [statement, said] : kCases) {
    EXPECT_EQ(SaidLast(Start() + statement), std::string("nothing done: ") + said) << statement;
  }
}

TEST_F(GraphCommands, ExportALineForEachColumnOfTheFrame) {
  const Table rows = Exported(
      "GraphProperties(GraphNo=1,Xmin=50,Xmax=450);AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\",Scale=5,Shift=1);"
      "AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"E2\");AddFreqCurve(GraphNo=1,ModelNo=1);"
      "AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"E1\");");
  EXPECT_EQ(header, "W R E2");
  ASSERT_EQ(rows.size(), 329u);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    ASSERT_EQ(rows[i].size(), 3u);
    const double x = 50 + 400.0 * static_cast<double>(i) / 328;
    EXPECT_NEAR(rows[i][0], x, kSixDigits * x);
    const auto eps = EpsOf({2, 150, 300, 20}, x);
    EXPECT_NEAR(rows[i][1], ReflectivityOf(eps), kSixDigits * rows[i][1]);
    EXPECT_NEAR(rows[i][2], eps.imag(), kSixDigits * rows[i][2]);
  }
}

TEST_F(GraphCommands, ExportOfDataAloneGivesTheFrequencies) {
  const Table rows = Exported(
      "AddDataCurve(GraphNo=1,DatasetNo=1,ShowLine=1);AddModelCurve(GraphNo=1,ModelNo=1,"
      "Quantity=\"R\");");
  EXPECT_EQ(header, "W");
  ASSERT_EQ(rows.size(), 329u);
  EXPECT_EQ(rows.back(), std::vector<double>{1000});
}

TEST_F(GraphCommands, ExportOfAnAxisOfDecadesHasEqualSteps) {
  const Table rows = Exported("GraphProperties(GraphNo=1,Xmin=0,Xmax=0,Xlog=1);");
  EXPECT_EQ(rows.front().front(), 1);
  EXPECT_EQ(rows.back().front(), 100);
  const double step = std::pow(100.0, 1.0 / static_cast<double>(rows.size() - 1));
  for (std::size_t i = 1; i < rows.size(); ++i) EXPECT_NEAR(rows[i][0] / rows[i - 1][0], step, 4 * kSixDigits);
}

TEST_F(GraphCommands, ExportOfAWindowWithoutAPlotIsEmpty) {
  Run(Start() + "NewGraph(XPos=0,YPos=0,Width=30,Height=30);ExportGraph(GraphNo=2,File=\"g.dat\");");
  EXPECT_EQ(folder.Read("g.dat"), "");
  EXPECT_EQ(Said("ExportGraph"), "0 curves at 0 points written to 'g.dat'");
}

TEST_F(GraphCommands, LimitsThatAreEqualGoAUnitApart) {
  EXPECT_EQ(SaidLast(Start() + "GraphProperties(GraphNo=1,Ymin=1,Ymax=1);").substr(0, 8), "graph 1:");
  EXPECT_NE(Said("GraphProperties").find("Y 1 to 2"), std::string::npos);
}

TEST_F(GraphCommands, AClosedModelLeavesTheGraphs) {
  Exported("AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");CloseModel(ModelNo=1);");
  EXPECT_EQ(header, "W");
}

TEST_F(GraphCommands, ExportTheModelAsTheFitLeavesIt) {
  const Table rows = Exported(
      "AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");WindowFit();"
      "AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit(NumIters=3);"
      "ExportModelCurve(ModelNo=1,File=\"c.dat\",Quantity=\"R\",XMin=0,XMax=1000,XPts=329);");
  const Table curve = Written("c.dat");
  ASSERT_GE(curve.size(), 328u);
  for (std::size_t i = 0; i < 328; ++i) EXPECT_NEAR(rows[i][1], curve[i][1], kSixDigits) << i;
}

}  // namespace
}  // namespace kalvex
