// The executor: results of a run, loops, and commands for the flow of a macro.
#include "macro/executing.h"

namespace kalvex {
namespace {

TEST_F(Executing, AnEmptyFileOrOneOfCommentsDoesNothing) {
  EXPECT_EQ(Run(""), kMacroEnded);
  EXPECT_EQ(Run("# one\n# two\n"), kMacroEnded);
  EXPECT_EQ(Run("\n \t\n"), kMacroEnded);
  EXPECT_EQ(Models(), 0);
}

TEST_F(Executing, ExitEndsTheMacroAndLeavesTheProgramOpen) {
  EXPECT_EQ(Run("NewModel();Exit();NewModel();"), kMacroEnded);
  EXPECT_EQ(Models(), 1);
  EXPECT_EQ(Run("NewModel();Exit(QuitApp=0);NewModel();"), kMacroEnded);
  EXPECT_EQ(Models(), 2);
}

TEST_F(Executing, ExitWithQuitAppAsksToLeave) {
  EXPECT_EQ(Run("NewModel();Exit(QuitApp=1);NewModel();"), kMacroQuit);
  EXPECT_EQ(Models(), 1);
  EXPECT_EQ(Run("Exit(QuitApp=-5);"), kMacroQuit);
  EXPECT_FALSE(desk.macro.running);
}

TEST_F(Executing, AFaultAnywhereMeansThatNothingRuns) {
  EXPECT_EQ(Run("NewModel();\n  Foo();\n"), kMacroFailed);
  EXPECT_EQ(Models(), 0);
  EXPECT_EQ(Run("NewModel();NewModel(XPos=1.5);"), kMacroFailed);
  EXPECT_EQ(Models(), 0);
  EXPECT_FALSE(desk.macro.running);
}

TEST_F(Executing, AFinalStatementWithoutSemicolonIsIgnored) {
  EXPECT_EQ(Run("NewModel();\nNewModel()"), kMacroEnded);
  EXPECT_EQ(Models(), 1);
}

TEST_F(Executing, AFileWhoseLastLineIsACommentWithoutLineFeedLosesItsFirstLine) {
  EXPECT_EQ(Run("NewModel();NewModel();\nNewModel();\n# done"), kMacroEnded);
  EXPECT_EQ(Models(), 1);
}

TEST_F(Executing, LinesMayEndInReturnAndLineFeed) {
  EXPECT_EQ(Run("NewModel(); # one\r\nNew\r\nModel();\r\n"), kMacroEnded);
  EXPECT_EQ(Models(), 2);
}

TEST_F(Executing, TheNameMayStandInQuotes) {
  folder.Write("m.kvs", "NewModel();");
  EXPECT_EQ(RunMacro(desk, "\"m.kvs\""), kMacroEnded);
  EXPECT_EQ(Models(), 1);
  // Quotes are removed only as a pair. A name may begin or end with one quote.
  folder.Write("\"m.kvs", "NewModel();");
  EXPECT_EQ(RunMacro(desk, "\"m.kvs"), kMacroEnded);
  EXPECT_EQ(Models(), 2);
  EXPECT_EQ(RunMacro(desk, "m.kvs\""), kMacroFailed);
}

TEST_F(Executing, AnEmptyNameOrAnUnreadableFileFails) {
  folder.Write("m.kvs", "NewModel();");
  const struct {
    const char* name;
    const char* fault;
  } kCases[] = {{"", "no macro file is given"},
                {"\"\"", "no macro file is given"},
                {"none.kvs", "none.kvs: the macro file cannot be opened"},
                {"\"no ne.kvs\"", "no ne.kvs: the macro file cannot be opened"},
                {".", ".: the macro file cannot be opened"}};
  for (const auto& c : kCases) {
    EXPECT_EQ(RunMacro(desk, c.name), kMacroFailed) << c.name;
    EXPECT_EQ(desk.macro.fault, c.fault);
    EXPECT_FALSE(desk.macro.running);
  }
  EXPECT_EQ(Models(), 0);
}

TEST_F(Executing, ASecondMacroWhileOneRunsIsRefused) {
  int second = 0, nameless = 0;
  onPump = [&] {
    second = RunMacro(desk, "m.kvs");
    nameless = RunMacro(desk, "");
  };
  EXPECT_EQ(Run("Wait();NewModel();"), kMacroEnded);
  EXPECT_EQ(second, kMacroAlreadyRunning);
  EXPECT_EQ(nameless, kMacroAlreadyRunning);
  EXPECT_EQ(Models(), 1);
  onPump = nullptr;
  EXPECT_EQ(Run("NewModel();"), kMacroEnded);
}

TEST_F(Executing, CheckingReadsAndParsesButRunsNothing) {
  folder.Write("good.kvs", "NewModel();BeginLoop(LoopFile=\"none\");");
  folder.Write("bad.kvs", "NewModel();\nNewModel()Foo;");
  EXPECT_EQ(CheckMacro(desk, "good.kvs"), kMacroEnded);
  EXPECT_EQ(CheckMacro(desk, "bad.kvs"), kMacroFailed);
  EXPECT_EQ(desk.macro.fault, "bad.kvs:2:11: found 'F'; expected ';'");
  EXPECT_EQ(CheckMacro(desk, "none.kvs"), kMacroFailed);
  EXPECT_EQ(Models(), 0);
}

TEST_F(Executing, WaitPumpsAndThenSleeps) {
  EXPECT_EQ(Run("Wait();Wait(Time=30);Wait;Wait(Time=0);"), kMacroEnded);
  EXPECT_EQ(happened, "pps30pps0");
}

TEST_F(Executing, AWaitOfNegativeTimeIsNone) {
  EXPECT_EQ(Run("Wait(Time=-5);"), kMacroEnded);
  EXPECT_EQ(slept, std::vector<int>{0});
}

TEST_F(Executing, WaitingInALoopOfThreeLinesHappensThreeTimes) {
  folder.Write("three", "1\n2\n3\n");
  EXPECT_EQ(Run("BeginLoop(LoopFile=\"three\");Wait(Time=1000);EndLoop();"), kMacroEnded);
  EXPECT_EQ(slept, (std::vector<int>{1000, 1000, 1000}));
}

TEST_F(Executing, ALoopRunsOnceALineAndThenGoesOn) {
  folder.Write("lines", "10\n20\n\n30");
  EXPECT_EQ(Run("BeginLoop(LoopFile=\"lines\");Wait(Time=%1);EndLoop();NewModel();"), kMacroEnded);
  EXPECT_EQ(slept, (std::vector<int>{10, 20, 0, 30}));
  EXPECT_EQ(Models(), 1);
}

TEST_F(Executing, TheStoredStatementIsFilledAfreshInEachPass) {
  folder.Write("two", "10 x\n\n");
  EXPECT_EQ(Run("BeginLoop(LoopFile=\"two\");MainWindow(Title=\"%2\");EndLoop();"), kMacroEnded);
  EXPECT_EQ(desk.mainWindow.title, "Kalvex");
  folder.Write("back", "%2 a\nb c\n");
  EXPECT_EQ(Run("BeginLoop(LoopFile=\"back\");MainWindow(Title=\"%1\");EndLoop();"), kMacroEnded);
  EXPECT_EQ(desk.mainWindow.title, "Kalvex b");
}

class OddLoops : public Executing {
 protected:
  // The waiting times of a macro.
  std::vector<int> Waits(const std::string& text) {
    folder.Write("two", "1\n2\n");
    folder.Write("three", "10\n20\n30\n");
    slept.clear();
    EXPECT_EQ(Run(text), kMacroEnded) << text;
    return slept;
  }
  using Times = std::vector<int>;
};

TEST_F(OddLoops, BeginLoopWithoutAFileStartsNone) {
  EXPECT_EQ(Waits("BeginLoop();Wait(Time=5);Wait(Time=%1);EndLoop();"), (Times{5, 0}));
}

TEST_F(OddLoops, EndLoopWithoutALoopDoesNothing) {
  EXPECT_EQ(Waits("EndLoop();Wait(Time=5);EndLoop();EndLoop();"), Times{5});
}

TEST_F(OddLoops, ALoopWithoutAnEndRunsOnce) {
  EXPECT_EQ(Waits("BeginLoop(LoopFile=\"three\");Wait(Time=%1);"), Times{10});
}

TEST_F(OddLoops, ExitInsideALoopEndsTheMacro) {
  EXPECT_EQ(Waits("BeginLoop(LoopFile=\"three\");Wait(Time=%1);Exit();EndLoop();Wait(Time=5);"), Times{10});
}

TEST_F(OddLoops, QuittingInsideALoopEndsTheMacro) {
  folder.Write("three", "1\n2\n3\n");
  EXPECT_EQ(Run("BeginLoop(LoopFile=\"three\");Wait(Time=1);Exit(QuitApp=%1);EndLoop();"), kMacroQuit);
  EXPECT_EQ(slept, Times{1});
}

TEST_F(OddLoops, ALoopInsideALoopReplacesIt) {
  EXPECT_EQ(Waits("BeginLoop(LoopFile=\"three\");Wait(Time=%1);BeginLoop(LoopFile=\"two\");Wait(Time=%1);EndLoop();"
                  "Wait(Time=%1);EndLoop();Wait(Time=7);"),
            (Times{10, 1, 2, 0, 7}));
}

TEST_F(OddLoops, BeginLoopWithoutAFileInsideALoopChangesNothing) {
  EXPECT_EQ(Waits("BeginLoop(LoopFile=\"three\");BeginLoop();Wait(Time=%1);EndLoop();"), (Times{10, 20, 30}));
}

TEST_F(OddLoops, OneLoopAfterTheOther) {
  EXPECT_EQ(Waits("BeginLoop(LoopFile=\"two\");Wait(Time=%1);EndLoop();"
                  "BeginLoop(LoopFile=\"three\");Wait(Time=%1);EndLoop();"),
            (Times{1, 2, 10, 20, 30}));
}

TEST_F(OddLoops, AnInnerLoopFileMayComeFromTheRow) {
  folder.Write("names", "two\n");
  EXPECT_EQ(Waits("BeginLoop(LoopFile=\"names\");BeginLoop(LoopFile=\"%1\");Wait(Time=%1);EndLoop();"), (Times{1, 2}));
}

TEST_F(OddLoops, OutsideALoopAColumnIsZeroAndATextKeepsIt) {
  EXPECT_EQ(Waits("Wait(Time=%1);MainWindow(Title=\"%1\");"), Times{0});
  EXPECT_EQ(desk.mainWindow.title, "Kalvex %1");
  EXPECT_EQ(Waits("BeginLoop(LoopFile=\"two\");EndLoop();Wait(Time=%1);"), Times{0});
}

TEST_F(OddLoops, ALoopThatWasLeftOpenDoesNotReachTheNextMacro) {
  Waits("BeginLoop(LoopFile=\"three\");");
  EXPECT_EQ(Waits("Wait(Time=%1);EndLoop();Wait(Time=4);"), (Times{0, 4}));
}

TEST_F(Executing, AMissingOrEmptyLoopFileEndsTheMacroThere) {
  folder.Write("empty", "");
  for (const std::string name : {"none", "empty", ""}) {
    const int before = Models();
    EXPECT_EQ(Run("NewModel();\n  BeginLoop(LoopFile=\"" + name + "\");\nNewModel();\n"), kMacroFailed);
    EXPECT_EQ(Models(), before + 1);
    EXPECT_EQ(desk.macro.fault, "m.kvs:2:3: the loop file '" + name +
                                    "' cannot be opened or is empty; it should have a line for each pass");
    EXPECT_FALSE(desk.macro.running);
  }
}

TEST_F(Executing, AMissingInnerLoopFileEndsTheMacroToo) {
  folder.Write("names", "none\n");
  EXPECT_EQ(Run("BeginLoop(LoopFile=\"names\");NewModel();BeginLoop(LoopFile=\"%1\");NewModel();"), kMacroFailed);
  EXPECT_EQ(Models(), 1);
  EXPECT_NE(desk.macro.fault.find("the loop file 'none'"), std::string::npos);
}

TEST_F(Executing, ContinuingFromSuspendGoesOn) {
  EXPECT_EQ(Run("Suspend();NewModel();Suspend();"), kMacroEnded);
  EXPECT_EQ(Models(), 1);
  EXPECT_EQ(asked, 2);
}

TEST_F(Executing, ExitMacroFromSuspendEndsIt) {
  answer = SuspendAnswer::kExitMacro;
  EXPECT_EQ(Run("Suspend();NewModel();"), kMacroEnded);
  EXPECT_EQ(Models(), 0);
  EXPECT_EQ(Run("Suspend();NewModel();"), kMacroEnded);  // Suspend asks again after the end of another macro
  EXPECT_EQ(asked, 2);
}

TEST_F(Executing, DoNotSuspendAnymoreHoldsForLaterMacrosToo) {
  answer = SuspendAnswer::kContinueAndNeverAskAgain;
  EXPECT_EQ(Run("Suspend();Suspend();NewModel();"), kMacroEnded);
  answer = SuspendAnswer::kExitMacro;
  EXPECT_EQ(Run("Suspend();NewModel();"), kMacroEnded);
  EXPECT_EQ(Models(), 2);
  EXPECT_EQ(asked, 1);
}

TEST_F(Executing, AFailedOperationDoesNotStopTheMacro) {
  EXPECT_EQ(Run("LoadDataset(MasterFile=\"none\");SaveModel(ModelNo=9);NewModel();"), kMacroEnded);
  EXPECT_EQ(platform.messages, std::vector<std::string>{"Error: Cannot open master file."});
  EXPECT_EQ(Models(), 1);
}

TEST(TwoDesks, LiveSideBySide) {
  const ScratchFolder folder;
  const std::string file = folder.Write("m.kvs", "NewModel();");
  const auto one = std::make_unique<OpenDesk>(), other = std::make_unique<OpenDesk>();
  EXPECT_EQ(RunMacro(one->desk, file), kMacroEnded);
  EXPECT_EQ(RunMacro(one->desk, file), kMacroEnded);
  EXPECT_EQ(RunMacro(other->desk, file), kMacroEnded);
  EXPECT_EQ(CountModels(one->params), 2);
  EXPECT_EQ(CountModels(other->params), 1);
}

}  // namespace
}  // namespace kalvex
