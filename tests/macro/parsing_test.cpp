// The second phase of reading a macro: from the compact text to statements, or to the first fault.
#include <gtest/gtest.h>

#include "macro/clean.h"
#include "macro/parsed.h"

namespace kalvex {
namespace {

TEST(Parsing, AStatementIsANameWithOrWithoutAList) {
  const auto s = Parsed("Wait;EndLoop();Fit(NumIters=5);Fit(NumIters=6,);");
  ASSERT_EQ(s.size(), 4u);
  EXPECT_STREQ(s[0].command->name, "Wait");
  EXPECT_FALSE(Slot(s[0], "Time").given);
  EXPECT_STREQ(s[1].command->name, "EndLoop");
  EXPECT_TRUE(Slot(s[2], "NumIters").given);
  EXPECT_EQ(Slot(s[2], "NumIters").intValue, 5);
  EXPECT_EQ(Slot(s[3], "NumIters").intValue, 6);
}

TEST(Parsing, TheThreeLinesThatShowEveryFormOfTheLanguage) {
  const auto s =
      Parsed(CleanMacro("LoadDataset(DatasetNo=%1, MasterFile=\"%2.dat\", XMethod=1);\n"
                        "Fit(NumIters=20);\nExit(QuitApp=1);\n"));
  ASSERT_EQ(s.size(), 3u);
  EXPECT_EQ(Slot(s[0], "DatasetNo").loopColumn, 0);
  EXPECT_EQ(Slot(s[0], "MasterFile").text, "%2.dat");
  EXPECT_EQ(Slot(s[0], "XMethod").intValue, 1);
  EXPECT_EQ(Slot(s[1], "NumIters").intValue, 20);
  EXPECT_EQ(Slot(s[2], "QuitApp").intValue, 1);
}

TEST(Parsing, WhatIsNotGivenIsClear) {
  const auto s = Parsed("SetModelParam(ModelNo=2,Value=3.5);");
  for (std::size_t i = 0; i < s[0].block.size(); ++i) {
    const std::string name = s[0].command->params[i].name;
    const MacroSlot& slot = s[0].block[i];
    EXPECT_EQ(slot.given, name == "ModelNo" || name == "Value") << name;
    if (slot.given) continue;
    EXPECT_EQ(slot.intValue, 0);
    EXPECT_EQ(slot.realValue, 0);
    EXPECT_EQ(slot.text, "");
  }
}

TEST(Parsing, ItemsStandInAnyOrderAndTheLastOfARepeatedOneHolds) {
  const auto s = Parsed("TransformDataset(Shift=2,Scale=3,DatasetNo=4,Shift=5);");
  EXPECT_EQ(Slot(s[0], "Shift").realValue, 5);
  EXPECT_EQ(Slot(s[0], "Scale").realValue, 3);
  EXPECT_EQ(Slot(s[0], "DatasetNo").intValue, 4);
  EXPECT_EQ(SlotIn("Fit(NumIters=%3,N=5);", "NumIters").loopColumn, -1);
  EXPECT_EQ(SlotIn("Fit(NumIters=5,N=%3);", "NumIters").intValue, 0);
  EXPECT_EQ(SlotIn("Echo(Text=\"first and long\",T=\"2nd\");", "Text").text, "2nd");
}

TEST(Parsing, CaseOfNamesDoesNotCount) {
  EXPECT_EQ(SlotIn("fit(numiters=5);", "NumIters").intValue, 5);
  EXPECT_EQ(SlotIn("FIT(NUMITERS=5);", "NumIters").intValue, 5);
  EXPECT_EQ(SlotIn("Fit(N=5);", "NumIters").intValue, 5);
}

TEST(Parsing, IntegersTakeTheLongestValidBeginning) {
  const auto value = [](const std::string& text) { return SlotIn("Fit(NumIters=" + text + ");", "NumIters"); };
  EXPECT_EQ(value("12").intValue, 12);
  EXPECT_EQ(value("007").intValue, 7);
  EXPECT_EQ(value("-3").intValue, -3);
  EXPECT_EQ(value("+4").intValue, 4);
  EXPECT_EQ(value("-").intValue, 0);
  EXPECT_EQ(value("+").intValue, 0);
  EXPECT_EQ(value("2147483647").intValue, 2147483647);
  EXPECT_EQ(value("-2147483648").intValue, -2147483647 - 1);
  EXPECT_EQ(value("7").loopColumn, -1);
}

TEST(Parsing, AnIntegerEndsWithItsDigits) {
  EXPECT_EQ(FaultOf("Fit(NumIters=1.5);"), "14: found '.'; expected ',' or ')' after a value");
  EXPECT_EQ(FaultOf("Fit(NumIters=1e3);"), "14: found 'e'; expected ',' or ')' after a value");
  EXPECT_EQ(FaultOf("Fit(NumIters=+-5);"), "14: found '-'; expected ',' or ')' after a value");
  EXPECT_EQ(FaultOf("Fit(NumIters=1-2);"), "14: found '-'; expected ',' or ')' after a value");
  for (const char* const wrong : {"x", ".5", "%", "%x", "\"5\"", ",", ")", ";", "="}) {
    EXPECT_EQ(FaultOf("Fit(NumIters=" + std::string(wrong) + ");"),
              "13: found '" + std::string(wrong).substr(0, 1) + "'; expected an integer or a loop column for NumIters");
  }
}

TEST(Parsing, RealsTakeTheLongestValidBeginningOfWhatTheScannerTakes) {
  const auto value = [](const std::string& text) { return SlotIn("AddNoise(Sigma=" + text + ");", "Sigma").realValue; };
  EXPECT_EQ(value("3"), 3);
  EXPECT_EQ(value("1.5e2"), 150);
  EXPECT_EQ(value("-.5"), -0.5);
  EXPECT_EQ(value(".5"), 0.5);
  EXPECT_EQ(value("5."), 5);
  EXPECT_EQ(value("+1E-1"), 0.1);
  EXPECT_EQ(value("1-2"), 1);
  EXPECT_EQ(value("1.2.3"), 1.2);
  EXPECT_EQ(value("1e2e3"), 100);
  EXPECT_EQ(value("1e"), 1);
  EXPECT_EQ(value("1e+"), 1);
  EXPECT_EQ(value("."), 0);
  EXPECT_EQ(value("--1"), 0);
  EXPECT_EQ(value("+-5"), 0);
  EXPECT_EQ(value("-e5"), 0);
  EXPECT_EQ(value("0.1"), 0.1);
  EXPECT_EQ(value("1e-400"), 0);
}

TEST(Parsing, ARealStartsWithADigitASignOrAPoint) {
  EXPECT_EQ(FaultOf("AddNoise(Sigma=0x10);"), "16: found 'x'; expected ',' or ')' after a value");
  EXPECT_EQ(FaultOf("AddNoise(Sigma=-inf);"), "16: found 'i'; expected ',' or ')' after a value");
  for (const char* const wrong : {"e5", "nan", "%", "\"1\"", ")"}) {
    EXPECT_EQ(FaultOf("AddNoise(Sigma=" + std::string(wrong) + ");"),
              "15: found '" + std::string(wrong).substr(0, 1) + "'; expected a number or a loop column for Sigma");
  }
}

TEST(Parsing, LoopColumnsOfNumbersCountFromOneAndTheValueIsZero) {
  for (const auto& [text, column] : {std::pair{"%1", 0}, {"%8", 7}, {"%9", 8}, {"%200", 199}, {"%0", -1}, {"%01", 0}}) {
    const MacroSlot integer = SlotIn("Fit(NumIters=" + std::string(text) + ");", "NumIters");
    EXPECT_TRUE(integer.given);
    EXPECT_EQ(integer.loopColumn, column) << text;
    EXPECT_EQ(integer.intValue, 0);
    const MacroSlot real = SlotIn("AddNoise(Sigma=" + std::string(text) + ");", "Sigma");
    EXPECT_EQ(real.loopColumn, column) << text;
    EXPECT_EQ(real.realValue, 0);
  }
  EXPECT_EQ(FaultOf("Fit(NumIters=%1%2);"), "15: found '%'; expected ',' or ')' after a value");
  EXPECT_EQ(FaultOf("AddNoise(Sigma=%1.5);"), "17: found '.'; expected ',' or ')' after a value");
}

TEST(Parsing, TextsAreCutToTheirCapacity) {
  const auto text = [](const std::string& in) {
    return SlotIn("LoadDataset(Quantity=\"" + in + "\");", "Quantity").text;
  };
  EXPECT_EQ(text("R"), "R");
  EXPECT_EQ(text(""), "");
  EXPECT_EQ(text("0123456789"), "0123456789");
  EXPECT_EQ(text("0123456789abc"), "0123456789");
  EXPECT_EQ(text("012345678\u03C9"), "012345678");  // characters are not split
  EXPECT_EQ(SlotIn("FreeShape(Key=\"" + std::string(150, 'k') + "\");", "Key").text, std::string(100, 'k'));
  EXPECT_EQ(SlotIn("Echo(Text=\"" + std::string(999, 't') + "\");", "Text").text, std::string(200, 't'));
}

TEST(Parsing, InsideATextEveryCharacterIsText) {
  EXPECT_EQ(SlotIn("LoadDataset(Quantity=\"%1;,()=#\");", "Quantity").text, "%1;,()=#");
  EXPECT_EQ(SlotIn("LoadDataset(Quantity=\"\\\");", "Quantity").text, "\\");
}

TEST(Parsing, ATextStandsInQuotesAndHasAnEnd) {
  EXPECT_EQ(FaultOf("LoadDataset(Quantity=\"R);"), "22: a text without its closing quote; expected '\"'");
  EXPECT_EQ(FaultOf("LoadDataset(Quantity=%1);"), "21: found '%'; expected a text in quotes for Quantity");
  EXPECT_EQ(FaultOf("LoadDataset(Quantity=R);"), "21: found 'R'; expected a text in quotes for Quantity");
  EXPECT_EQ(FaultOf("LoadDataset(Quantity=5);"), "21: found '5'; expected a text in quotes for Quantity");
}

TEST(Parsing, ATextOpenAtItsLinesEndGoesOnToTheNextQuote) {
  EXPECT_EQ(SlotIn(CleanMacro("MainWindow(Title=\"a b\n c d\");\n"), "Title").text, "a bcd");
}

TEST(Parsing, EachFaultHasItsPlaceAndWhatWasExpected) {
  const struct {
    const char* text;
    const char* fault;
  } kFaults[] = {
      {"Wait;Foo();", "5: unknown command 'Foo'; expected a command name"},
      {"LoadDatasetX();", "0: unknown command 'LoadDatasetX'; expected a command name"},
      {"Fit2;", "0: unknown command 'Fit2'; expected a command name"},
      {"1Wait;", "0: found '1'; expected a command name"},
      {"_Wait;", "0: found '_'; expected a command name"},
      {";", "0: found ';'; expected a command name"},
      {"Wait;;", "5: found ';'; expected a command name"},
      {"Wait();;Fit();", "7: found ';'; expected a command name"},
      {"\"Wait\";", "0: found '\"'; expected a command name"},
      {"Wait=1;", "4: found '='; expected '(' or ';' after Wait"},
      {"Wait_x;", "4: found '_'; expected '(' or ';' after Wait"},
      {"Wa;Wa", "none"},
      {"Wait(5);", "5: found '5'; expected a parameter name or ')'"},
      {"Wait(,);", "5: found ','; expected a parameter name or ')'"},
      {"Wait(Time=5,,);", "12: found ','; expected a parameter name or ')'"},
      {"Wait(;", "5: found ';'; expected a parameter name or ')'"},
      {"Wait(=5);", "5: found '='; expected a parameter name or ')'"},
      {"Wait(Tim_e=5);", "8: found '_'; expected '=' after Time"},
      {"Wait(Time);", "9: found ')'; expected '=' after Time"},
      {"Wait(Time5=5);", "5: unknown parameter 'Time5' of Wait; expected one of Time"},
      {"AddNoise(Foo=5);", "9: unknown parameter 'Foo' of AddNoise; expected one of DatasetNo, Sigma"},
      {"EndLoop(x=1);", "8: unknown parameter 'x' of EndLoop; expected ')', since it has no parameters"},
      {"Wait(Time=5;", "11: found ';'; expected ',' or ')' after a value"},
      {"Wait(Time=5 );", "11: found ' '; expected ',' or ')' after a value"},
      {"Wait(Time=5)x;", "12: found 'x'; expected ';'"},
      {"Wait(Time=5));", "12: found ')'; expected ';'"},
      {"Wait()Fit;", "6: found 'F'; expected ';'"},
      {"Echo(Text=\"a\"\"b\");", "13: found '\"'; expected ',' or ')' after a value"},
  };
  for (const auto& c : kFaults) EXPECT_EQ(FaultOf(c.text), c.fault) << c.text;
}

TEST(Parsing, AnEmptyListIsAcceptedAndSoIsACommaAtItsEnd) {
  EXPECT_EQ(Parsed("Wait();").size(), 1u);
  EXPECT_EQ(Parsed("EndLoop();").size(), 1u);
  EXPECT_EQ(SlotIn("AddNoise(DatasetNo=2,Sigma=1,);", "Sigma").realValue, 1);
  EXPECT_EQ(SlotIn("Echo(Text=\"a\",);", "Text").text, "a");
}

TEST(Parsing, TextBehindTheLastSemicolonIsIgnored) {
  EXPECT_EQ(Parsed("Wait;Fit(NumIters=5)").size(), 1u);
  EXPECT_EQ(Parsed("Wait;???").size(), 1u);
  EXPECT_EQ(Parsed("Wait;Foo()").size(), 1u);
  EXPECT_EQ(Parsed("").size(), 0u);
  EXPECT_EQ(Parsed("nothing at all").size(), 0u);
}

// All semicolons are counted, so each one inside a text allows for one more statement after the last ';'.
TEST(Parsing, ASemicolonInsideATextMakesTheParserReadOn) {
  EXPECT_EQ(Parsed("MainWindow(Title=\"a;b\");").size(), 1u);
  EXPECT_EQ(FaultOf("MainWindow(Title=\"a;b\");Fit(NumIters=5)"), "39: the file ends; expected ';'");
  EXPECT_EQ(FaultOf("MainWindow(Title=\"a;b\");Fit"), "27: the file ends; expected '(' or ';' after Fit");
  EXPECT_EQ(FaultOf("MainWindow(Title=\"a;b\");Fit("), "28: the file ends; expected a parameter name or ')'");
  EXPECT_EQ(FaultOf("MainWindow(Title=\"a;b\");Fit(N"), "29: the file ends; expected '=' after NumIters");
  EXPECT_EQ(FaultOf("MainWindow(Title=\"a;b\");Fit(N="),
            "30: the file ends; expected an integer or a loop column for NumIters");
  EXPECT_EQ(FaultOf("MainWindow(Title=\"a;b\");Fit(N=5"), "31: the file ends; expected ',' or ')' after a value");
  EXPECT_EQ(FaultOf("MainWindow(Title=\"a;b\");?"), "24: found '?'; expected a command name");
}

TEST(Parsing, TheFirstFaultEndsTheReading) {
  EXPECT_EQ(FaultOf("Foo();Bar();"), "0: unknown command 'Foo'; expected a command name");
}

}  // namespace
}  // namespace kalvex
