// Cleaning and parsing: the form of the language.
#include <gtest/gtest.h>

#include "macro/clean.h"
#include "macro/command_table.h"
#include "macro/parse.h"

namespace kalvex {
namespace {

TEST(Cleaning, CommentsBlanksTabsAndLineEndsGo) {
  EXPECT_EQ(CleanMacro("a b\tc # d \"e\n f\n"), "abcf");
  EXPECT_EQ(CleanMacro("Data set No = 1 0\n"), "DatasetNo=10");
  EXPECT_EQ(CleanMacro("x(\"a b\tc\");#z\n"), "x(\"a bc\");");
}

TEST(Cleaning, InsideATextANumberSignStaysAndInsideACommentAQuoteDoesNothing) {
  EXPECT_EQ(CleanMacro("x(\"a#b\"); # \" c\ny\n"), "x(\"a#b\");y");
}

TEST(Cleaning, ATextThatIsOpenAtItsLinesEndProtectsNoMore) {
  EXPECT_EQ(CleanMacro("x(\"a b\nc d#e\n\" f g\");\n"), "x(\"a bcd\" f g\");");
}

TEST(Cleaning, ALastLineThatIsACommentWithoutALineEndCostsTheFirstLine) {
  EXPECT_EQ(CleanMacro("first;\nsecond;\n# end"), "second;");
  EXPECT_EQ(CleanMacro("first;\nsecond;\n# end\n"), "first;second;");
  EXPECT_EQ(CleanMacro("only; # end"), "");
  EXPECT_EQ(CleanMacro("a;\nb; # end"), "b;");
  EXPECT_EQ(CleanMacro("a;\n\"open # text"), "a;\"open # text");
}

TEST(Cleaning, ALoneReturnIsACharacter) { EXPECT_EQ(CleanMacro("a\rb\n"), "a\rb"); }

TEST(Cleaning, EveryCharacterKnowsItsPlace) {
  std::vector<std::uint32_t> sources;
  const std::string text = "ab #c\n  d\n";
  EXPECT_EQ(CleanMacro(text, &sources), "abd");
  EXPECT_EQ(sources, (std::vector<std::uint32_t>{0, 1, 8}));
  EXPECT_EQ(PlaceOf(text, 8).line, 2);
  EXPECT_EQ(PlaceOf(text, 8).column, 3);
}

std::vector<MacroStatement> Parsed(const std::string& text) {
  std::vector<MacroStatement> statements;
  MacroFault fault;
  EXPECT_TRUE(ParseMacro(text, statements, fault)) << text << ": " << fault.description;
  return statements;
}

std::string FaultOf(const std::string& text) {
  std::vector<MacroStatement> statements;
  MacroFault fault;
  if (ParseMacro(text, statements, fault)) return "none";
  return std::to_string(fault.at) + ": " + fault.description;
}

const MacroSlot& Slot(const MacroStatement& statement, const std::string& name) {
  for (std::size_t i = 0; i < statement.block.size(); ++i) {
    if (statement.command->params[i].name == name) return statement.block[i];
  }
  ADD_FAILURE() << name;
  return statement.block[0];
}

TEST(Parsing, BothFormsOfAStatement) {
  const auto s = Parsed("Wait;EndLoop();Fit(NumIters=5,);");
  ASSERT_EQ(s.size(), 3u);
  EXPECT_STREQ(s[0].command->name, "Wait");
  EXPECT_FALSE(Slot(s[0], "Time").given);
  EXPECT_TRUE(Slot(s[2], "NumIters").given);
  EXPECT_EQ(Slot(s[2], "NumIters").intValue, 5);
}

TEST(Parsing, ItemsInAnyOrderAndTheLastOfARepeatedOne) {
  const auto s = Parsed("TransformDataset(Shift=2,Scale=3,DatasetNo=4,Shift=5);");
  EXPECT_EQ(Slot(s[0], "Shift").realValue, 5);
  EXPECT_EQ(Slot(s[0], "Scale").realValue, 3);
  EXPECT_EQ(Slot(s[0], "DatasetNo").intValue, 4);
}

TEST(Parsing, Integers) {
  const auto value = [](const std::string& text) { return Slot(Parsed("Fit(NumIters=" + text + ");")[0], "NumIters"); };
  EXPECT_EQ(value("12").intValue, 12);
  EXPECT_EQ(value("-3").intValue, -3);
  EXPECT_EQ(value("+4").intValue, 4);
  EXPECT_EQ(value("-").intValue, 0);
  EXPECT_EQ(value("99999999999").intValue, 2147483647);
  EXPECT_EQ(value("7").loopColumn, -1);
  EXPECT_EQ(value("%3").loopColumn, 2);
  EXPECT_EQ(value("%3").intValue, 0);
  EXPECT_EQ(value("%0").loopColumn, -1);
  EXPECT_EQ(FaultOf("Fit(NumIters=1.5);"), "14: found '.', ',' or ')' behind a value was expected");
  EXPECT_EQ(FaultOf("Fit(NumIters=+-5);"), "14: found '-', ',' or ')' behind a value was expected");
  EXPECT_EQ(FaultOf("Fit(NumIters=x);"), "13: found 'x', an integer or a loop column for NumIters was expected");
  EXPECT_EQ(FaultOf("Fit(NumIters=%);"), "13: found '%', an integer or a loop column for NumIters was expected");
  EXPECT_EQ(FaultOf("Fit(NumIters=\"5\");"), "13: found '\"', an integer or a loop column for NumIters was expected");
}

TEST(Parsing, Numbers) {
  const auto value = [](const std::string& text) {
    return Slot(Parsed("AddNoise(Sigma=" + text + ");")[0], "Sigma").realValue;
  };
  EXPECT_EQ(value("1.5e2"), 150);
  EXPECT_EQ(value("-.5"), -0.5);
  EXPECT_EQ(value("+1E-1"), 0.1);
  EXPECT_EQ(value("1-2"), 1);
  EXPECT_EQ(value("1e"), 1);
  EXPECT_EQ(value("."), 0);
  EXPECT_EQ(value("--1"), 0);
  EXPECT_EQ(Slot(Parsed("AddNoise(Sigma=%12);")[0], "Sigma").loopColumn, 11);
  EXPECT_EQ(FaultOf("AddNoise(Sigma=0x10);"), "16: found 'x', ',' or ')' behind a value was expected");
  EXPECT_EQ(FaultOf("AddNoise(Sigma=e5);"), "15: found 'e', a number or a loop column for Sigma was expected");
}

TEST(Parsing, TextsAreCutToTheirCapacity) {
  const auto text = [](const std::string& in) {
    return Slot(Parsed("LoadDataset(Quantity=\"" + in + "\");")[0], "Quantity").text;
  };
  EXPECT_EQ(text("R"), "R");
  EXPECT_EQ(text(""), "");
  EXPECT_EQ(text("0123456789abc"), "0123456789");
  EXPECT_EQ(text("%1;,)"), "%1;,)");
  EXPECT_EQ(FaultOf("LoadDataset(Quantity=\"R);"), "22: a text that does not end, '\"' was expected");
  EXPECT_EQ(FaultOf("LoadDataset(Quantity=%1);"), "21: found '%', a text in quotes for Quantity was expected");
}

TEST(Parsing, EachFaultHasItsPlaceAndWhatWasExpected) {
  EXPECT_EQ(FaultOf("Wait;Foo();"), "5: unknown command 'Foo', a command name was expected");
  EXPECT_EQ(FaultOf("1Wait;"), "0: found '1', a command name was expected");
  EXPECT_EQ(FaultOf("Wait;;"), "5: found ';', a command name was expected");
  EXPECT_EQ(FaultOf("Wait=1;"), "4: found '=', '(' or ';' behind Wait was expected");
  EXPECT_EQ(FaultOf("Wait(5);"), "5: found '5', a parameter name or ')' was expected");
  EXPECT_EQ(FaultOf("Wait(,);"), "5: found ',', a parameter name or ')' was expected");
  EXPECT_EQ(FaultOf("Wait(Tim_e=5);"), "8: found '_', '=' behind Time was expected");
  EXPECT_EQ(FaultOf("Wait(Speed=5);"), "5: unknown parameter 'Speed' of Wait, one of Time was expected");
  EXPECT_EQ(FaultOf("EndLoop(X=5);"), "8: unknown parameter 'X' of EndLoop, ')', for it has none, was expected");
  EXPECT_EQ(FaultOf("Wait(Time=5"), "none");  // no ';' at all: no statement is read
  EXPECT_EQ(FaultOf("Wait(Time=5;"), "11: found ';', ',' or ')' behind a value was expected");
  EXPECT_EQ(FaultOf("Wait(Time=5)x;"), "12: found 'x', ';' was expected");
  EXPECT_EQ(FaultOf("LoadDatasetX();"), "0: unknown command 'LoadDatasetX', a command name was expected");
}

TEST(Parsing, TextBehindTheLastSemicolonIsIgnored) {
  EXPECT_EQ(Parsed("Wait;Fit(NumIters=5)").size(), 1u);
  EXPECT_EQ(Parsed("Wait;???").size(), 1u);
  EXPECT_EQ(Parsed("").size(), 0u);
  EXPECT_EQ(Parsed("nothing").size(), 0u);
}

TEST(Parsing, ASemicolonInsideATextCountsAsAStatementToCome) {
  EXPECT_EQ(Parsed("MainWindow(Title=\"a;b\");").size(), 1u);
  EXPECT_EQ(FaultOf("MainWindow(Title=\"a;b\");Fit(NumIters=5)"), "39: the text ends, ';' was expected");
}

TEST(Names, AbbreviationsMeanTheFirstOfTheTable) {
  const auto command = [](const char* name) { return std::string(FindCommand(name)->name); };
  EXPECT_EQ(command("Load"), "LoadDataset");
  EXPECT_EQ(command("LoadM"), "LoadModel");
  EXPECT_EQ(command("E"), "EndLoop");
  EXPECT_EQ(command("Ex"), "Exit");
  EXPECT_EQ(command("Fi"), "FixAllModelParams");
  EXPECT_EQ(command("Fit"), "Fit");
  EXPECT_EQ(command("fit"), "Fit");
  EXPECT_EQ(command("FitO"), "FitOptions");
  EXPECT_EQ(command("Ec"), "Echo");
  EXPECT_EQ(FindCommand("Fitx"), nullptr);
  const MacroCommand& load = *FindCommand("LoadDataset");
  EXPECT_STREQ(FindParam(load, "X")->name, "XMethod");
  EXPECT_STREQ(FindParam(load, "XMi")->name, "XMin");
  EXPECT_STREQ(FindParam(*FindCommand("Fit"), "n")->name, "NumIters");
}

TEST(Names, EveryWholeNameFindsItselfAndNoneOfOursShadowsOneOfTheFormat) {
  for (const auto table : {MacroCommandTable(), MacroExtraTable()}) {
    for (const MacroCommand& command : table) {
      EXPECT_EQ(FindCommand(command.name), &command) << command.name;
      for (const MacroParam& param : command.params) EXPECT_EQ(FindParam(command, param.name), &param) << param.name;
    }
  }
}

struct Signature {
  const char* name;
  const char* params;  // name and type: i, r, or the capacity of a text
};

// The commands that macros of this format may use, in the order that gives abbreviations their meaning.
constexpr Signature kFormat[] = {
    {"BeginLoop", "LoopFile:200"},
    {"EndLoop", ""},
    {"MainWindow", "XPos:i YPos:i Width:i Height:i Title:200"},
    {"Wait", "Time:i"},
    {"Suspend", ""},
    {"Exit", "QuitApp:i"},
    {"DatasetManager", "XPos:i YPos:i"},
    {"LoadDataset",
     "DatasetNo:i Quantity:10 MasterFile:200 XMethod:i XFile:200 XMin:r XMax:r XPts:i XGrid:i YMethod:i YVal:r "
     "YErrMethod:i YErrFile:200 YErrVal:r Match:i"},
    {"UnloadDataset", "DatasetNo:i"},
    {"TransformDataset", "DatasetNo:i Scale:r Shift:r"},
    {"ExportDataset", "DatasetNo:i File:200 ExportFitted:i ExportErrorBars:i"},
    {"AddNoise", "DatasetNo:i Sigma:r"},
    {"CutDataset", "DatasetNo:i XMin:r XMax:r"},
    {"NewModel", "XPos:i YPos:i Width:i Height:i VarDielFuncSeen:i"},
    {"SaveModel", "ModelNo:i File:200"},
    {"LoadModel", "ModelNo:i File:200"},
    {"SaveVarDielFunc", "ModelNo:i File:200"},
    {"LoadVarDielFunc", "ModelNo:i File:200"},
    {"SetModelParam",
     "ModelNo:i ParamName:100 LorNo:i Value:r FitActive:i MinLimit:r MaxLimit:r MinOn:i MaxOn:i CoupledTo:i Update:i"},
    {"CopyModelParam", "DestModelNo:i DestParamName:100 DestLorNo:i SourceModelNo:i SourceParamName:100 SourceLorNo:i"},
    {"FixAllModelParams", "ModelNo:i"},
    {"FreeShape", "ModelNo:i Key:100"},
    {"VarDielFunc",
     "ModelNo:i Source1DatasetNo:i Source1Every2nd:i Source2DatasetNo:i Source2Every2nd:i Source3DatasetNo:i "
     "Source3Every2nd:i KK:i On:i FitActive:i"},
    {"NewGraph", "XPos:i YPos:i Width:i Height:i"},
    {"GraphProperties", "GraphNo:i Xmin:r Xmax:r Xlog:i XTitle:100 Ymin:r Ymax:r Ylog:i YTitle:100 ShowFitted:i"},
    {"AddDataCurve",
     "GraphNo:i DatasetNo:i nColor:i ShowLine:i ShowSymbol:i ShowError:i nSymbolSize:i nSymbolShape:i SymbolOpen:i "
     "Scale:r Shift:r"},
    {"AddModelCurve", "GraphNo:i ModelNo:i Quantity:10 nColor:i Scale:r Shift:r"},
    {"DeleteDataCurve", "GraphNo:i DatasetNo:i"},
    {"DeleteModelCurve", "GraphNo:i ModelNo:i Quantity:10"},
    {"ExportModelCurve", "File:200 ModelNo:i XMethod:i Quantity:10 XMin:r XMax:r XPts:i XGrid:i Deriv:i"},
    {"ExpParams", "XPos:i YPos:i"},
    {"SetExpParam", "ParamName:100 Value:r FitActive:i MinLimit:r MaxLimit:r MinOn:i MaxOn:i CoupledTo:i"},
    {"WindowFit", "XPos:i YPos:i"},
    {"AddChiSqTerm", "DatasetNo:i ModelNo:i Weight:r"},
    {"DeleteChiSqTerm", "DatasetNo:i ModelNo:i"},
    {"Fit", "NumIters:i"},
};

TEST(Names, TheFormatHas36CommandsWithTheirParametersInOrder) {
  const auto table = MacroCommandTable();
  ASSERT_EQ(table.size(), std::size(kFormat));
  for (std::size_t i = 0; i < table.size(); ++i) {
    EXPECT_STREQ(table[i].name, kFormat[i].name);
    std::string params;
    for (const MacroParam& param : table[i].params) {
      const std::string type = param.type == ParamType::kInteger ? "i"
                               : param.type == ParamType::kReal  ? "r"
                                                                 : std::to_string(param.length);
      params += (params.empty() ? "" : " ") + std::string(param.name) + ':' + type;
    }
    EXPECT_EQ(params, kFormat[i].params) << kFormat[i].name;
  }
}

}  // namespace
}  // namespace kalvex
