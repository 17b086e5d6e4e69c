// Where a fault of a macro file is said to be: file, line and column as an editor shows them.
#include "macro/executing.h"

namespace kalvex {
namespace {

class Faults : public Executing {
 protected:
  std::string FaultIn(const std::string& text) { return Run(text) == kMacroFailed ? desk.macro.fault : "none"; }
};

TEST_F(Faults, CommentsBlanksAndTabsCountInLinesAndColumns) {
  EXPECT_EQ(FaultIn("# head\n\nNewModel(); # one\n\t Foo();\n"),
            "m.kvs:4:3: unknown command 'Foo', a command name was expected");
  EXPECT_EQ(FaultIn("New Model(\n  XPos = 1,\n  Y Pos = x);\n"),
            "m.kvs:3:11: found 'x', an integer or a loop column for YPos was expected");
  EXPECT_EQ(FaultIn("Wait();  New Moddel ( );"),
            "m.kvs:1:10: unknown command 'NewModdel', a command name was expected");
}

TEST_F(Faults, EachKindHasItsPlace) {
  const struct {
    const char* text;
    const char* fault;
  } kCases[] = {
      {"Wait();\n9;", "m.kvs:2:1: found '9', a command name was expected"},
      {"Wait();\nWait =5;", "m.kvs:2:6: found '=', '(' or ';' behind Wait was expected"},
      {"Wait( 5 );", "m.kvs:1:7: found '5', a parameter name or ')' was expected"},
      {"Wait( Tome=5 );", "m.kvs:1:7: unknown parameter 'Tome' of Wait, one of Time was expected"},
      {"Wait( Time 5 );", "m.kvs:1:7: unknown parameter 'Time5' of Wait, one of Time was expected"},
      {"Wait( Time : 5 );", "m.kvs:1:12: found ':', '=' behind Time was expected"},
      {"Wait(Time= \"5\");", "m.kvs:1:12: found '\"', an integer or a loop column for Time was expected"},
      {"Wait(Time=1\n.5);", "m.kvs:2:1: found '.', ',' or ')' behind a value was expected"},
      {"AddNoise(Sigma= a);", "m.kvs:1:17: found 'a', a number or a loop column for Sigma was expected"},
      {"Echo(Text= hi);", "m.kvs:1:12: found 'h', a text in quotes for Text was expected"},
      {"Wait()\n Wait();", "m.kvs:2:2: found 'W', ';' was expected"},
  };
  for (const auto& c : kCases) EXPECT_EQ(FaultIn(c.text), c.fault) << c.text;
}

TEST_F(Faults, ATextThatDoesNotEndIsPlacedBehindItsQuote) {
  EXPECT_EQ(FaultIn("Wait();\nEcho(Text=\"abc);\nWait();\n"),
            "m.kvs:2:12: a text that does not end, '\"' was expected");
}

TEST_F(Faults, TheEndOfTheTextIsTheEndOfTheFile) {
  EXPECT_EQ(FaultIn("MainWindow(Title=\"a;b\");\nFit(NumIters=5)\n"), "m.kvs:3:1: the text ends, ';' was expected");
  EXPECT_EQ(FaultIn("MainWindow(Title=\"a;b\"); Fit"), "m.kvs:1:29: the text ends, '(' or ';' behind Fit was expected");
}

TEST_F(Faults, PlacesHoldInFilesOfAnotherSystemAndInThoseThatLoseTheirFirstLine) {
  EXPECT_EQ(FaultIn("Wait();\r\n Foo();\r\n"), "m.kvs:2:2: unknown command 'Foo', a command name was expected");
  EXPECT_EQ(FaultIn("Foo();\nBar();\n# end"), "m.kvs:2:1: unknown command 'Bar', a command name was expected");
}

TEST_F(Faults, AQuotedFileIsNamedWithoutItsQuotes) {
  folder.Write("my macro.kvs", "Foo;");
  EXPECT_EQ(RunMacro(desk, "\"my macro.kvs\""), kMacroFailed);
  EXPECT_EQ(desk.macro.fault, "my macro.kvs:1:1: unknown command 'Foo', a command name was expected");
}

TEST_F(Faults, ALaterRunThatSucceedsForgetsThem) {
  FaultIn("Foo;");
  EXPECT_EQ(Run("Wait();"), kMacroEnded);
  EXPECT_EQ(desk.macro.fault, "");
}

}  // namespace
}  // namespace kalvex
