// Verbose output: for each executed statement its place, and what it did or why it did nothing.
#include "app/kalvex_run.h"
#include "macro/command_table.h"

namespace kalvex {
namespace {

class Verbose : public Kalvex {
 protected:
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < run.err.size();) {
      const std::size_t end = run.err.find('\n', at);
      lines.push_back(run.err.substr(at, end - at));
      at = end + 1;
    }
    return lines;
  }
};
using Texts = std::vector<std::string>;

TEST_F(Verbose, EveryCommandSaysSomethingOnALineOfItsOwn) {
  std::string macro = "# all of them without parameters\n";
  Texts names;
  for (const auto table : {MacroCommandTable(), MacroExtraTable()}) {
    for (const MacroCommand& command : table) {
      if (std::string(command.name) == "Exit" || std::string(command.name) == "LoadDataset") continue;
      names.emplace_back(command.name);
      macro += std::string(command.name) + "();\n";
    }
  }
  Run(macro + "Exit();\n");
  names.emplace_back("Exit");
  const Texts lines = Lines();
  ASSERT_EQ(lines.size(), names.size()) << run.err;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string start = "macro.kvs:" + std::to_string(i + 2) + ": " + names[i] + ": ";
    EXPECT_EQ(lines[i].substr(0, start.size()), start);
    EXPECT_GT(lines[i].size(), start.size()) << lines[i];
  }
}

TEST_F(Verbose, WithoutItOneLineCountsTheStatementsThatDidNothing) {
  folder.Write("m.kvs", "NewModel();SaveModel(ModelNo=9);NewGraph();AddNoise();Fit();");
  const ProgramRun quiet = RunProgram(folder, {"m.kvs"});
  EXPECT_EQ(quiet.status, 0);
  EXPECT_EQ(quiet.out + quiet.err, "3 of 5 statements did nothing: --verbose tells which\n");
  folder.Write("m.kvs", "NewModel();NewGraph();");
  const ProgramRun silent = RunProgram(folder, {"m.kvs"});
  EXPECT_EQ(silent.out + silent.err, "");
}

TEST_F(Verbose, RowsOfASpecialModelAreCalledByWhatTheyMean) {
  Run("NewModel();\nSetModelParam(ModelNo=1,ParamName=\"Einf\",Value=-17,FitActive=0);\n"
      "SetModelParam(ModelNo=1,ParamName=\"wo\",LorNo=1,Value=2,FitActive=0);\n"
      "SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=1,Value=0.5,FitActive=0);\nInsertModelRow(ModelNo=1);\n"
      "SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=2,Value=3,FitActive=0);\n"
      "SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=1,FitActive=0);\n"
      "SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=1,Value=4,FitActive=0);\n");
  const Texts lines = Lines();
  ASSERT_EQ(lines.size(), 8U);
  EXPECT_EQ(lines[1], "macro.kvs:2: SetModelParam: model 1 Einf (Refl. sample in medium) = -17, fixed");
  EXPECT_EQ(lines[2], "macro.kvs:3: SetModelParam: model 1 wo (medium) = 2, fixed");
  EXPECT_EQ(lines[3], "macro.kvs:4: SetModelParam: model 1 G (scale) = 0.5, fixed");
  EXPECT_EQ(lines[5], "macro.kvs:6: SetModelParam: model 1 G (not used) = 3, fixed");
  EXPECT_EQ(lines[7], "macro.kvs:8: SetModelParam: model 1 G = 4, fixed");
}

TEST_F(Verbose, ASpecialModelThatComputesNothingIsTold) {
  Run("NewModel();\nSetModelParam(ModelNo=1,ParamName=\"Einf\",Value=-2,FitActive=0);\n"
      "SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=7);\n"
      "ExportModelCurve(File=\"a\",ModelNo=1,Quantity=\"R\",XMin=1,XMax=5,XPts=3);\n"
      "SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=3,FitActive=0);\n"
      "ExportModelCurve(File=\"b\",ModelNo=1,Quantity=\"R\",XMin=1,XMax=5,XPts=3);\n");
  const Texts lines = Lines();
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[3].substr(0, 84),
            "macro.kvs:4: ExportModelCurve: written to 'a'; but the model could not be evaluated:");
  EXPECT_EQ(lines[5], "macro.kvs:6: ExportModelCurve: written to 'b'");
}

TEST_F(Verbose, APassOfALoopIsToldEachTime) {
  folder.Write("loop", "5\n6\n");
  Run("EndLoop();\nBeginLoop(LoopFile=\"loop\");\n  Wait(\n  Time=%1);\nEndLoop();\nEndLoop();\nBeginLoop();\n");
  EXPECT_EQ(Lines(), (Texts{"macro.kvs:1: EndLoop: nothing done: there is no loop",
                            "macro.kvs:2: BeginLoop: loop over the lines of 'loop'", "macro.kvs:3: Wait: waited 5 ms",
                            "macro.kvs:5: EndLoop: continues with pass 2 of 2", "macro.kvs:3: Wait: waited 6 ms",
                            "macro.kvs:5: EndLoop: the loop has ended, number of passes: 2",
                            "macro.kvs:6: EndLoop: nothing done: there is no loop",
                            "macro.kvs:7: BeginLoop: nothing done: LoopFile is missing, so there is no loop"}));
}

TEST_F(Verbose, FlowCommandsTellWhatTheyDid) {
  Run("MainWindow(Title=\"x\");Wait();Suspend();Exit(QuitApp=1);");
  EXPECT_EQ(Lines(),
            (Texts{"macro.kvs:1: MainWindow: main window 'Kalvex x'", "macro.kvs:1: Wait: pending events handled",
                   "macro.kvs:1: Suspend: continued", "macro.kvs:1: Exit: macro ended, program quits"}));
  EXPECT_EQ(SaidLast("Exit();"), "macro ended");
  EXPECT_EQ(SaidLast("DatasetManager(XPos=3,YPos=4);"), "open");
  EXPECT_EQ(SaidLast("ExpParams(XPos=1,YPos=2);"), "open");
  EXPECT_EQ(SaidLast("WindowFit(XPos=1,YPos=2);"), "open, 0 ChiSq terms");
}

TEST_F(Verbose, LinesAreThoseOfTheFileAlsoWhereTheFirstIsLost) {
  Run("NewModel();\n\n  NewModel(); NewModel();\n# end");
  EXPECT_EQ(Lines(), (Texts{"macro.kvs:3: NewModel: model 1 created", "macro.kvs:3: NewModel: model 2 created"}));
}

TEST_F(Verbose, AbbreviationsAreToldByTheirWholeName) {
  Run("newm(w=5); ec(t=\"x\");");
  EXPECT_EQ(Lines(), (Texts{"macro.kvs:1: NewModel: model 1 created", "macro.kvs:1: Echo: one line printed"}));
}

TEST_F(Verbose, AFaultIsNoStatementAndNothingIsToldOfThoseBeforeIt) {
  folder.Write("m.kvs", "NewModel();\nFoo();");
  const ProgramRun bad = RunProgram(folder, {"--verbose", "m.kvs"});
  EXPECT_EQ(bad.err, "m.kvs:2:1: unknown command 'Foo'; expected a command name\n");
}

}  // namespace
}  // namespace kalvex
