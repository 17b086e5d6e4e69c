// Loop files, substitution and the executor.
#include <gtest/gtest.h>

#include <functional>

#include "macro/loop_file.h"
#include "macro/parse.h"
#include "macro/run_macro.h"
#include "models/model_table.h"
#include "support/scratch_folder.h"

namespace kalvex {
namespace {

class LoopFiles : public testing::Test {
 protected:
  std::vector<LoopRow> Rows(const std::string& text) {
    std::vector<LoopRow> rows;
    readable = ReadLoopFile(folder.Write("loop", text), rows);
    return rows;
  }
  static std::vector<std::string> Tokens(const LoopRow& row) {
    std::vector<std::string> tokens;
    for (std::size_t c = 0; c < row.TokenCount(); ++c) tokens.emplace_back(LoopToken(row, c));
    return tokens;
  }
  ScratchFolder folder;
  bool readable = false;
};

using Texts = std::vector<std::string>;

TEST_F(LoopFiles, LinesFallApartAtBlanksOnly) {
  const auto rows = Rows("a  b\tc d\n\n  e\r\nlast");
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(Tokens(rows[0]), (Texts{"a", "b\tc", "d"}));
  EXPECT_EQ(Tokens(rows[1]), Texts{});
  EXPECT_EQ(Tokens(rows[2]), Texts{"e"});
  EXPECT_EQ(Tokens(rows[3]), Texts{"last"});
}

TEST_F(LoopFiles, ATokenOf20CharactersRunsOnIntoTheNext) {
  const auto rows = Rows("1234567890123456789 x\n12345678901234567890abc next z\n12345678901234567890\n");
  EXPECT_EQ(Tokens(rows[0]), (Texts{"1234567890123456789", "x"}));
  EXPECT_EQ(Tokens(rows[1]), (Texts{"12345678901234567890next", "next", "z"}));
  EXPECT_EQ(Tokens(rows[2]), (Texts{"12345678901234567890"}));
}

TEST_F(LoopFiles, ALongLineIsCutAt999Characters) {
  const auto rows = Rows(std::string(998, ' ') + "ab c\nd\n");
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(Tokens(rows[0]), Texts{"a"});
  EXPECT_EQ(Tokens(rows[1]), (Texts{"b", "c"}));
  EXPECT_EQ(Tokens(rows[2]), Texts{"d"});
}

TEST_F(LoopFiles, AtMost1000LinesOf200Tokens) {
  std::string many;
  for (int i = 0; i < 250; ++i) many += "t ";
  std::string text = many + "\n";
  for (int i = 0; i < 1200; ++i) text += "x\n";
  const auto rows = Rows(text);
  EXPECT_EQ(rows.size(), 1000u);
  EXPECT_EQ(rows[0].TokenCount(), 200u);
}

TEST_F(LoopFiles, AnEmptyOrMissingFileFails) {
  Rows("");
  EXPECT_FALSE(readable);
  std::vector<LoopRow> rows;
  EXPECT_FALSE(ReadLoopFile(folder.Path("none"), rows));
  Rows("\n");
  EXPECT_TRUE(readable);
}

class Substitution : public LoopFiles {
 protected:
  MacroBlock Filled(const std::string& statement, const std::string& line) {
    std::vector<MacroStatement> statements;
    MacroFault fault;
    EXPECT_TRUE(ParseMacro(statement, statements, fault)) << fault.description;
    MacroBlock block = statements[0].block;
    SubstituteLoopValues(*statements[0].command, Rows(line)[0], block);
    return block;
  }
  std::string Text(const std::string& text, const std::string& line) {
    return Filled("LoadModel(File=\"" + text + "\");", line)[1].text;
  }
};

TEST_F(Substitution, NumbersTakeTheirColumnOrStay) {
  EXPECT_EQ(Filled("AddNoise(Sigma=%2);", "1.5 2")[1].realValue, 2);
  EXPECT_EQ(Filled("AddNoise(Sigma=%3);", "1.5 2")[1].realValue, 0);
  EXPECT_EQ(Filled("AddNoise(Sigma=7);", "1.5 2")[1].realValue, 7);
  EXPECT_EQ(Filled("AddNoise(DatasetNo=%1,Sigma=%1);", "12abc")[0].intValue, 12);
  EXPECT_EQ(Filled("AddNoise(DatasetNo=%1,Sigma=%1);", "x")[0].intValue, 0);
  EXPECT_EQ(Filled("AddNoise(Sigma=%0);", "5")[1].realValue, 0);
  EXPECT_EQ(Filled("AddNoise(Sigma=%12);", "1 2 3 4 5 6 7 8 9 10 11 12.5")[1].realValue, 12.5);
}

TEST_F(Substitution, TextsTakeColumns1To8) {
  EXPECT_EQ(Text("%1_%3_%2", "a b"), "a__b");
  EXPECT_EQ(Text("%8%9%0%%x%", "1 2 3 4 5 6 7 8 9"), "8%9%0%%x%");
  EXPECT_EQ(Text("plain", "a"), "plain");
  EXPECT_EQ(Text("%1.dat", "\n"), ".dat");
}

TEST_F(Substitution, TextsStayInsideTheirCapacity) {
  const std::string statement = "LoadDataset(Quantity=\"%1%1%1\");";
  EXPECT_EQ(Filled(statement, "abcd")[1].text, "abcdabcdab");
}

class Executing : public testing::Test {
 protected:
  Executing() : inside(folder.Name()) {
    program.platform.self = this;
    program.platform.sleep = [](void* self, int ms) { static_cast<Executing*>(self)->slept.push_back(ms); };
    program.platform.pumpEvents = [](void* self) {
      auto& test = *static_cast<Executing*>(self);
      ++test.pumped;
      if (test.onPump) test.onPump();
    };
    program.platform.askSuspend = [](void* self) {
      auto& test = *static_cast<Executing*>(self);
      ++test.asked;
      return test.answer;
    };
  }
  int Run(const std::string& text) {
    folder.Write("m.kvs", text);
    return RunMacro(program, "m.kvs");
  }
  int Models() { return CountModels(program.params); }

  ScratchFolder folder;
  InFolder inside;
  Program program;
  std::vector<int> slept;
  int pumped = 0, asked = 0;
  SuspendAnswer answer = SuspendAnswer::kContinue;
  std::function<void()> onPump;
};

TEST_F(Executing, AnEmptyFileOrOneOfCommentsDoesNothing) {
  EXPECT_EQ(Run(""), 0);
  EXPECT_EQ(Run("# one\n# two\n"), 0);
}

TEST_F(Executing, ExitStopsOrQuits) {
  EXPECT_EQ(Run("NewModel();Exit();NewModel();"), 0);
  EXPECT_EQ(Models(), 1);
  EXPECT_EQ(Run("Exit(QuitApp=0);NewModel();"), 0);
  EXPECT_EQ(Run("Exit(QuitApp=1);NewModel();"), 1);
  EXPECT_EQ(Models(), 1);
}

TEST_F(Executing, AFaultAnywhereMeansThatNothingRuns) {
  EXPECT_EQ(Run("NewModel();\n  Foo();\n"), -1);
  EXPECT_EQ(program.macro.fault, "m.kvs:2:3: unknown command 'Foo', a command name was expected");
  EXPECT_EQ(Models(), 0);
}

TEST_F(Executing, NamesMayStandInQuotesAndMustBeReadable) {
  folder.Write("m.kvs", "NewModel();");
  EXPECT_EQ(RunMacro(program, "\"m.kvs\""), 0);
  EXPECT_EQ(Models(), 1);
  for (const char* const name : {"", "\"\"", "none.kvs", "\"m.kvs", "."})
    EXPECT_EQ(RunMacro(program, name), -1) << name;
  EXPECT_FALSE(program.macro.running);
}

TEST_F(Executing, ASecondMacroWhileOneRunsIsRefused) {
  int second = 0;
  onPump = [&] { second = RunMacro(program, "m.kvs"); };
  EXPECT_EQ(Run("Wait();NewModel();"), 0);
  EXPECT_EQ(second, -2);
  EXPECT_EQ(Models(), 1);
}

TEST_F(Executing, WaitPumpsAndThenSleeps) {
  EXPECT_EQ(Run("Wait();Wait(Time=30);Wait(Time=-5);"), 0);
  EXPECT_EQ(pumped, 3);
  EXPECT_EQ(slept, (std::vector<int>{30, 0}));
}

TEST_F(Executing, ALoopRunsOnceALine) {
  folder.Write("three", "10\n20\n\n");
  EXPECT_EQ(Run("BeginLoop(LoopFile=\"three\");Wait(Time=%1);EndLoop();NewModel();"), 0);
  EXPECT_EQ(slept, (std::vector<int>{10, 20, 0}));
  EXPECT_EQ(Models(), 1);
}

TEST_F(Executing, TheStoredStatementIsFilledAfreshInEachPass) {
  folder.Write("two", "10 x\n\n");
  EXPECT_EQ(Run("BeginLoop(LoopFile=\"two\");MainWindow(Title=\"%2\");EndLoop();"), 0);
  EXPECT_EQ(program.mainWindow.title, "Kalvex");
}

TEST_F(Executing, OddLoops) {
  folder.Write("two", "1\n2\n");
  folder.Write("three", "1\n2\n3\n");
  const auto passes = [&](const std::string& text) {
    slept.clear();
    EXPECT_EQ(Run(text), 0) << text;
    return slept.size();
  };
  EXPECT_EQ(passes("BeginLoop();Wait(Time=1);EndLoop();"), 1u);
  EXPECT_EQ(passes("EndLoop();Wait(Time=1);EndLoop();"), 1u);
  EXPECT_EQ(passes("BeginLoop(LoopFile=\"three\");Wait(Time=1);"), 1u);
  EXPECT_EQ(passes("BeginLoop(LoopFile=\"three\");Wait(Time=1);Exit();EndLoop();"), 1u);
  // A loop inside a loop replaces it: one pass of the outer body, two of the inner, and the outer EndLoop does nothing.
  EXPECT_EQ(
      passes(
          "BeginLoop(LoopFile=\"three\");Wait(Time=1);BeginLoop(LoopFile=\"two\");Wait(Time=2);EndLoop();EndLoop();"),
      3u);
}

TEST_F(Executing, AnInnerLoopFileMayComeFromTheRow) {
  folder.Write("names", "two\n");
  folder.Write("two", "5\n6\n");
  EXPECT_EQ(Run("BeginLoop(LoopFile=\"names\");BeginLoop(LoopFile=\"%1\");Wait(Time=%1);EndLoop();"), 0);
  EXPECT_EQ(slept, (std::vector<int>{5, 6}));
}

TEST_F(Executing, AMissingLoopFileEndsTheMacroThere) {
  EXPECT_EQ(Run("NewModel();\nBeginLoop(LoopFile=\"none\");\nNewModel();\n"), -1);
  EXPECT_EQ(Models(), 1);
  EXPECT_EQ(program.macro.fault.substr(0, 10), "m.kvs:2:1:");
  EXPECT_FALSE(program.macro.running);
}

TEST_F(Executing, OutsideALoopAColumnIsZeroAndATextKeepsIt) {
  EXPECT_EQ(Run("Wait(Time=%1);MainWindow(Title=\"%1\");"), 0);
  EXPECT_EQ(slept, std::vector<int>{0});
  EXPECT_EQ(program.mainWindow.title, "Kalvex %1");
}

TEST_F(Executing, SuspendGoesOnOrEndsTheMacroAndMayBeTheLastQuestion) {
  EXPECT_EQ(Run("Suspend();NewModel();"), 0);
  EXPECT_EQ(Models(), 1);
  answer = SuspendAnswer::kExitMacro;
  EXPECT_EQ(Run("Suspend();NewModel();"), 0);
  EXPECT_EQ(Models(), 1);
  answer = SuspendAnswer::kContinueAndNeverAskAgain;
  EXPECT_EQ(Run("Suspend();NewModel();"), 0);
  answer = SuspendAnswer::kExitMacro;
  EXPECT_EQ(Run("Suspend();NewModel();"), 0);
  EXPECT_EQ(Models(), 3);
  EXPECT_EQ(asked, 3);
}

TEST_F(Executing, TheMainWindowMovesIfBothPlacesAreGiven) {
  const MainWindow before = program.mainWindow;
  Run("MainWindow(XPos=5,Width=7);");
  EXPECT_EQ(program.mainWindow.x, before.x);
  Run("MainWindow(XPos=5,YPos=6,Width=700,Title=\"of Anna\");");
  EXPECT_EQ(program.mainWindow.x, 5);
  EXPECT_EQ(program.mainWindow.width, 700);
  EXPECT_EQ(program.mainWindow.height, before.height);
  EXPECT_EQ(program.mainWindow.title, "Kalvex of Anna");
}

}  // namespace
}  // namespace kalvex
