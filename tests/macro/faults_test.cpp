// The place of a fault in a macro file: file, line and column as an editor shows them.
#include "macro/executing.h"

namespace kalvex {
namespace {

class Faults : public Executing {
 protected:
  std::string FaultIn(const std::string& text) { return Run(text) == kMacroFailed ? desk.macro.fault : "none"; }
};

TEST_F(Faults, CommentsBlanksAndTabsCountInLinesAndColumns) {
  EXPECT_EQ(FaultIn("# head\n\nNewModel(); # one\n\t Foo();\n"),
            "m.kvs:4:3: unknown command 'Foo'; expected a command name");
  EXPECT_EQ(FaultIn("New Model(\n  XPos = 1,\n  Y Pos = x);\n"),
            "m.kvs:3:11: found 'x'; expected an integer or a loop column for YPos");
  EXPECT_EQ(FaultIn("Wait();  New Moddel ( );"), "m.kvs:1:10: unknown command 'NewModdel'; expected a command name");
}

TEST_F(Faults, EachKindHasItsPlace) {
  const struct {
    const char* text;
    const char* fault;
  } kCases[] = {
      {"Wait();\n9;", "m.kvs:2:1: found '9'; expected a command name"},
      {"Wait();\nWait =5;", "m.kvs:2:6: found '='; expected '(' or ';' after Wait"},
      {"Wait( 5 );", "m.kvs:1:7: found '5'; expected a parameter name or ')'"},
      {"Wait( Tome=5 );", "m.kvs:1:7: unknown parameter 'Tome' of Wait; expected one of Time"},
      {"Wait( Time 5 );", "m.kvs:1:7: unknown parameter 'Time5' of Wait; expected one of Time"},
      {"Wait( Time : 5 );", "m.kvs:1:12: found ':'; expected '=' after Time"},
      {"Wait(Time= \"5\");", "m.kvs:1:12: found '\"'; expected an integer or a loop column for Time"},
      {"Wait(Time=1\n.5);", "m.kvs:2:1: found '.'; expected ',' or ')' after a value"},
      {"AddNoise(Sigma= a);", "m.kvs:1:17: found 'a'; expected a number or a loop column for Sigma"},
      {"Echo(Text= hi);", "m.kvs:1:12: found 'h'; expected a text in quotes for Text"},
      {"Wait()\n Wait();", "m.kvs:2:2: found 'W'; expected ';'"},
  };
  for (const auto& c : kCases) EXPECT_EQ(FaultIn(c.text), c.fault) << c.text;
}

TEST_F(Faults, ATextThatDoesNotEndIsPlacedBehindItsQuote) {
  EXPECT_EQ(FaultIn("Wait();\nEcho(Text=\"abc);\nWait();\n"),
            "m.kvs:2:12: a text without its closing quote; expected '\"'");
}

TEST_F(Faults, TheEndOfTheTextIsTheEndOfTheFile) {
  EXPECT_EQ(FaultIn("MainWindow(Title=\"a;b\");\nFit(NumIters=5)\n"), "m.kvs:3:1: the file ends; expected ';'");
  EXPECT_EQ(FaultIn("MainWindow(Title=\"a;b\"); Fit"), "m.kvs:1:29: the file ends; expected '(' or ';' after Fit");
}

TEST_F(Faults, PlacesHoldInFilesOfAnotherSystemAndInThoseThatLoseTheirFirstLine) {
  EXPECT_EQ(FaultIn("Wait();\r\n Foo();\r\n"), "m.kvs:2:2: unknown command 'Foo'; expected a command name");
  EXPECT_EQ(FaultIn("Foo();\nBar();\n# end"), "m.kvs:2:1: unknown command 'Bar'; expected a command name");
}

TEST_F(Faults, AQuotedFileIsNamedWithoutItsQuotes) {
  folder.Write("my macro.kvs", "Foo;");
  EXPECT_EQ(RunMacro(desk, "\"my macro.kvs\""), kMacroFailed);
  EXPECT_EQ(desk.macro.fault, "my macro.kvs:1:1: unknown command 'Foo'; expected a command name");
}

TEST_F(Faults, ALaterRunThatSucceedsForgetsThem) {
  FaultIn("Foo;");
  EXPECT_EQ(Run("Wait();"), kMacroEnded);
  EXPECT_EQ(desk.macro.fault, "");
}

}  // namespace
}  // namespace kalvex
